// WinOstream: a read-only pane fed by a stream buffer that also writes on to the terminal.
#include "trellis/console.h"

#include <iostream>
#include <string>

#include "trellis/form.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(WinOstream, CppShell, 1, 0)

WinOstream* console = 0;

// Collects a line, then hands it to the window and to the stream it replaced.
class WinOstream::Buffer : public std::streambuf {
public:
    Buffer(WinOstream& window, std::ostream& stream) : window(window), stream(stream), former(0) {}
    void attach() {
        if (!former) former = stream.rdbuf(this);
    }
    void detach() {
        if (!former) return;
        sync();
        stream.rdbuf(former);
        former = 0;
    }

protected:
    int overflow(int c) override {
        if (c == EOF) return 0;
        pending += char(c);
        if (c == '\n') sync();
        return c;
    }
    std::streamsize xsputn(const char* s, std::streamsize n) override {
        pending.append(s, size_t(n));
        if (pending.find('\n') != std::string::npos) sync();
        return n;
    }
    int sync() override {
        if (pending.empty()) return 0;
        window.write(pending.data(), int(pending.size()));
        if (former) former->sputn(pending.data(), std::streamsize(pending.size()));
        if (former) former->pubsync();
        pending.clear();
        return 0;
    }

private:
    WinOstream& window;
    std::ostream& stream;
    std::streambuf* former;
    std::string pending;
};

WinOstream::WinOstream(const char* name, const char* title) : CppShell(name, 0, title) {
    CppForm* form = new CppForm("ConsoleForm", this);
    pane = new CppText("ConsoleText", form, true, 20, 80);
    pane->setReadOnly(true);
    form->attachAt(*pane, 0, 0);
    form->attachHorizontal(pane, form, 0);
    form->attachVertical(pane, form, 0);
    out = new Buffer(*this, std::cout);
    err = new Buffer(*this, std::cerr);
}

WinOstream::~WinOstream() noexcept(false) {
    detach();
    delete out;
    delete err;
    if (console == this) console = 0;
}

void WinOstream::attach() {
    out->attach();
    err->attach();
}

void WinOstream::detach() {
    out->detach();
    err->detach();
}

bool WinOstream::holdsOutput() const { return pane->getText().size() > 0; }

String WinOstream::text() const { return pane->getText(); }

void WinOstream::write(const char* bytes, int count) {
    pane->append(std::string(bytes, size_t(count)).c_str());
}
