// CppGraphic: a DrawArea between two rulers and two scroll bars; Ruler, the scale along one side.
#ifndef TRELLIS_GRAPHIC_H
#define TRELLIS_GRAPHIC_H

#include "quill/point.h"
#include "trellis/form.h"

class DrawArea;
class CppScrollbar;

extern Class class_Ruler;
extern Class class_CppGraphic;

// Marks of world units along the top (horizontal) or the left side of an area.
class Ruler : public CppPrimitive {
    DECLARE_MEMBERS(Ruler)
public:
    enum { THICKNESS = 20 };
    Ruler(const char* name, CppWidget* parent, DrawArea& area, bool horizontal);
    DrawArea& area() const { return area_; }
    bool isHorizontal() const { return horizontal; }

private:
    DrawArea& area_;
    bool horizontal;
};

// The scroll bars move the visible part of the drawing's extent; the
// rulers follow the area.
class CppGraphic : public CppForm {
    DECLARE_MEMBERS(CppGraphic)
public:
    CppGraphic(const char* name, CppWidget* parent, bool buffered = true);

    DrawArea& drawArea() const { return *area; }
    // The world that the scroll bars run over.
    void setExtent(const FloatRect& extent);
    const FloatRect& extent() const { return extent_; }
    void setZoom(double zoom);
    // Sets the scroll bars from the extent, the zoom and the area's size.
    void updateScrollbars();
    // Scrolls the area's origin as near to the world point as the scroll bars go.
    void scrollTo(const FloatPoint& origin);

private:
    void scrolled(Cback& cb);
    void resized(Cback& cb);

    DrawArea* area;
    Ruler* top;
    Ruler* left;
    CppScrollbar* horizontal;
    CppScrollbar* vertical;
    FloatRect extent_;
};

#endif
