// InterpreterPanel: the execution display, a read-only copy of the source with numbered lines and their
// marks.
#include <cstdio>
#include <string>

#include "interpreter/panel/intpanel.h"
#include "quill/integer.h"
#include "trellis/menu.h"
#include "trellis/shell.h"
#include "trellis/text.h"

namespace {

// The editing commands that would change the copy.
const char* const editingEntries[] = {"Cut", "Paste", "Undo"};

const char* const NO_MARK = "  ";

}  // namespace

// Each line of the source as "%s%6d: %s\n": its mark, its number from 1, its
// text; lineStarts keeps where each begins, so that a mark is overwritten in place.
void InterpreterPanel::showExecution() {
    fileText = getText();
    editingTitle = getShell().title();
    lineStarts.deleteContents();
    std::string source = fileText.asCharPointer(), display;
    std::string::size_type from = 0;
    for (int line = 1; from < source.size(); ++line) {
        std::string::size_type end = source.find('\n', from);
        if (end == std::string::npos) end = source.size();
        char head[32];
        bool marked = hasBreakpoint(line);
        std::snprintf(head, sizeof head, "%s%6d: ", marked ? "BP" : NO_MARK, line);
        lineStarts.add(*new Integer(int(display.size())));
        display += head + source.substr(from, end - from) + "\n";
        from = end + 1;
    }
    executing = true;
    setStatus("");
    setText(display.c_str());
    textWidget().setReadOnly(true);
    getShell().setTitle((String("(executing)  ") + fileName()).asCharPointer());
    for (const char* entry : editingEntries) editMenu().disableChoice(entry);
}

// Back to the source as it was before the run.
void InterpreterPanel::showSource() {
    setText(fileText.asCharPointer());
    textWidget().setReadOnly(false);
    executing = false;
    lineStarts.deleteContents();
    getShell().setTitle(editingTitle.asCharPointer());
    for (const char* entry : editingEntries) editMenu().enableChoice(entry);
}

String InterpreterPanel::textToSave() { return executing ? fileText : getText(); }

int InterpreterPanel::lineStart(int line) const {
    return static_cast<Integer*>(lineStarts.at(line - 1))->value();
}

// The line whose start is the last at or before position.
int InterpreterPanel::lineAt(int position) const {
    int line = 0;
    while (line < int(lineStarts.size()) && lineStart(line + 1) <= position) ++line;
    return line;
}

// Overwrites the two characters of the line's mark, the selection left as it was.
void InterpreterPanel::setMark(int line, const char* mark) {
    if (line < 1 || line > int(lineStarts.size())) return;
    CppText& text = textWidget();
    int start = text.selectionStart(), length = int(text.selectedText().size());
    text.select(lineStart(line), 2);
    text.replaceSelection(mark);
    text.select(start, length);
}

// The arrow moves to the current line, which the view scrolls to; the line
// it leaves gets its own mark back.
void InterpreterPanel::showCurrentLine() {
    if (markedLine >= 0) setMark(markedLine, savedMark.asCharPointer());
    if (currentLine_ < 1 || currentLine_ > int(lineStarts.size())) {
        markedLine = -1;
        return;
    }
    String shown = textWidget().getText();
    savedMark = String(shown.asCharPointer() + lineStart(currentLine_)).left(2);
    markedLine = currentLine_;
    setMark(markedLine, "->");
    textWidget().setCaret(lineStart(markedLine));
}

void InterpreterPanel::clearCurrentLine() {
    if (markedLine >= 0) setMark(markedLine, savedMark.asCharPointer());
    markedLine = -1;
    savedMark = "";
}
