// TextShower: a TextEditor that only shows a text, to be read and copied.
#ifndef PANEL_TEXTSHOW_H
#define PANEL_TEXTSHOW_H

#include "panel/textedt.h"

extern Class class_TextShower;

class TextShower : public TextEditor {
    DECLARE_MEMBERS(TextShower)
public:
    TextShower(const char* name, CppWidget* parent, const char* title = 0);
    void show(const char* text);
    void append(const char* text);
};

#endif
