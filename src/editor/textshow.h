// TextShower: a TextEditor that only shows a text, to be read and copied.
#ifndef EDITOR_TEXTSHOW_H
#define EDITOR_TEXTSHOW_H

#include "editor/textedt.h"

extern Class class_TextShower;

class TextShower : public TextEditor {
    DECLARE_MEMBERS(TextShower)
public:
    TextShower(const char* name, CppWidget* parent, const char* title = 0);
    void show(const char* text);
    void append(const char* text);
};

#endif
