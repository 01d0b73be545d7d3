// InterpreterPanel: breakpoints, the line numbers of the execution display at which a run stops.
#include "interpreter/panel/intpanel.h"
#include "quill/integer.h"
#include "trellis/text.h"

// By value, without making an Integer: the handler asks at every statement.
bool InterpreterPanel::hasBreakpoint(int line) const {
    for (unsigned i = 0; i < breakpoints_.size(); ++i)
        if (static_cast<Integer*>(breakpoints_.at(int(i)))->value() == line) return true;
    return false;
}

void InterpreterPanel::toggleBreakpoint() {
    if (state_ == PAUSED) toggleBreakpointAt(lineAt(textWidget().caret()));
}

// The line's mark follows, except on the current line, whose arrow stays and
// whose mark to come back changes.
void InterpreterPanel::toggleBreakpointAt(int line) {
    if (line < 1 || line > int(lineStarts.size())) return;
    Integer key(line);
    int index = breakpoints_.indexOf(key);
    const char* mark = "BP";
    if (index >= 0) {
        delete breakpoints_.removeAtIndex(index);
        mark = "  ";
    } else {
        int at = 0;
        while (at < int(breakpoints_.size()) && static_cast<Integer*>(breakpoints_.at(at))->value() < line)
            ++at;
        breakpoints_.addAtIndex(at, *new Integer(line));
    }
    if (line == markedLine)
        savedMark = mark;
    else
        setMark(line, mark);
}

void InterpreterPanel::removeAllBreakpoints() {
    if (state_ != PAUSED) return;
    while (breakpoints_.size() > 0) toggleBreakpointAt(static_cast<Integer*>(breakpoints_.last())->value());
}
