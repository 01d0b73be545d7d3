// InterpreterPanel: QuickWatch, the value of the variable whose name is selected.
#include <cctype>
#include <string>

#include "interpreter/executer.h"
#include "interpreter/panel/intpanel.h"
#include "trellis/ask.h"
#include "trellis/text.h"

namespace {

bool strippable(unsigned char c, bool digits) {
    if (c == '_') return false;
    return c == '\t' || c == '\n' || c == ' ' || (digits && std::isdigit(c)) || std::ispunct(c);
}

}  // namespace

String watchedName(const String& selection) {
    std::string text = selection.asCharPointer();
    std::string::size_type begin = 0, end = text.size();
    while (begin < end && strippable(text[begin], true)) ++begin;
    while (end > begin && strippable(text[end - 1], false)) --end;
    return String(text.substr(begin, end - begin).c_str());
}

void InterpreterPanel::quickWatch() {
    if (state_ != PAUSED) return;
    String name = watchedName(textWidget().selectedText());
    if (name.size() == 0)
        showMessage("Select the name of the variable to examine.", "QuickWatch");
    else
        showMessage(executer->printVariable(name).asCharPointer(), "QuickWatch");
}
