// CppLabel: a line or block of text that the user can't edit.
#ifndef TRELLIS_LABEL_H
#define TRELLIS_LABEL_H

#include "trellis/widget.h"

extern Class class_CppLabel;

class CppLabel : public CppPrimitive {
    DECLARE_MEMBERS(CppLabel)
public:
    CppLabel(const char* name, CppWidget* parent, const char* text = 0, bool managed = true);
    void setText(const char* text);
    String text() const;
    void setFramed(bool framed);
};

#endif
