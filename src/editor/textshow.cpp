// TextShower: a read-only text with "Copy" as its only edit entry.
#include "editor/textshow.h"

#include "trellis/shell.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(TextShower, TextEditor, 1, 0)

TextShower::TextShower(const char* name, CppWidget* parent, const char* title)
    : TextEditor(name, parent, true) {
    getShell().setTitle(title ? title : name);
    start();
}

void TextShower::show(const char* text) { setText(text); }

void TextShower::append(const char* text) { textWidget().append(text); }
