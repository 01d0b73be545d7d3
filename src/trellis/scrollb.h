// CppScrollbar and CppViewport: the scroll bar, and the window that scrolls one child.
#ifndef TRELLIS_SCROLLB_H
#define TRELLIS_SCROLLB_H

#include "trellis/widget.h"

extern Class class_CppScrollbar;
extern Class class_CppViewport;

extern Symbol CppScrollbarChanged;  // the value moved; data the new value, an int

class CppScrollbar : public CppPrimitive {
    DECLARE_MEMBERS(CppScrollbar)
public:
    CppScrollbar(const char* name, CppWidget* parent, bool horizontal = true);
    // The value runs from minimum to maximum; thumb is the visible part.
    void setRange(int minimum, int maximum, int thumb);
    int value() const;
    // Raises CppScrollbarChanged when the value moves.
    void setValue(int value);
    int minimum() const;
    int maximum() const;
    int thumb() const;
};

// Its one child is shown in a window with scroll bars; a child smaller than
// the window is stretched to it.
class CppViewport : public CppComposite {
    DECLARE_MEMBERS(CppViewport)
public:
    CppViewport(const char* name, CppWidget* parent, bool managed = true);
    void add(CppWidget& child) override;
};

#endif
