// WinOstream: the console window that receives standard output and standard error.
#ifndef TRELLIS_CONSOLE_H
#define TRELLIS_CONSOLE_H

#include "trellis/shell.h"

class CppText;

extern Class class_WinOstream;

// While attached, what the program writes on std::cout and std::cerr goes
// into the window and still to the terminal.
class WinOstream : public CppShell {
    DECLARE_MEMBERS(WinOstream)
public:
    WinOstream(const char* name, const char* title);
    ~WinOstream() noexcept(false) override;

    void attach();
    void detach();
    bool holdsOutput() const;
    // All that was written, to be read again.
    String text() const;
    void write(const char* bytes, int count);

private:
    class Buffer;

    CppText* pane;
    Buffer* out;
    Buffer* err;
};

// The console of the toolkit's start, or null without a screen.
extern WinOstream* console;

#endif
