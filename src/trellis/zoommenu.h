// ZoomMenu: the zoom entries of a menu, and the dialogue "Zoom At".
#ifndef TRELLIS_ZOOMMENU_H
#define TRELLIS_ZOOMMENU_H

#include "quill/qclass.h"
#include "quill/symbol.h"

class MotifMenu;
class CppWidget;

extern Class class_ZoomMenu;

extern Symbol Zoomed;  // raised on the owner; data the new zoom, a double

// "Zoom In" doubles the zoom, "Zoom Out" halves it, "Zoom 10:n" sets n/10,
// "Zoom at..." asks x for a zoom of x/100.
class ZoomMenu : public Object {
    DECLARE_MEMBERS(ZoomMenu)
public:
    ZoomMenu(Object& owner, MotifMenu& menu, CppWidget* dialogParent);
    double zoom() const { return current; }
    // Sets the zoom and raises Zoomed; one at or below 0 is refused.
    void setZoom(double zoom);
    // The dialogue "Zoom Dialog": the x of "Zoom 100 to x", or 0 when cancelled.
    int askZoom();

private:
    void menuPressed(Cback& cb);

    Object& owner;
    MotifMenu& menu;
    CppWidget* dialogParent;
    double current;
};

#endif
