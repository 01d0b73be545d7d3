// DrawArea, the canvas that paints a list of drawing objects, and DrawArea1Buffer, which paints off screen
// first.
#ifndef TRELLIS_DRAWAREA_H
#define TRELLIS_DRAWAREA_H

#include "quill/point.h"
#include "trellis/widget.h"

class QPainter;

extern Class class_DrawArea;
extern Class class_DrawArea1Buffer;

extern Symbol WidgetExpose;        // the area was painted; listeners may paint over it
extern Symbol DownGraphic;         // a button went down; data the world point, a FloatPoint
extern Symbol UpGraphic;           // a button went up
extern Symbol MoveDownGraphic;     // the pointer moved with a button down
extern Symbol MoveGraphic;         // the pointer moved
extern Symbol DoubleClickGraphic;  // a double click
extern Symbol WheelGraphic;        // the wheel turned over the point; the steps in pointer()

// The pointer event being raised: its button (1 left, 2 middle, 3 right; 0
// for a move without one), the modifier masks held with it and, for the
// wheel, its steps (positive away from the user).
struct PointerState {
    enum { SHIFT_MASK = 1, CONTROL_MASK = 4, ALT_MASK = 8 };
    int button = 0;
    unsigned modifiers = 0;
    int steps = 0;
};

// The world shown starts at origin, scaled by zoom (window pixels per
// world unit). The area owns the icons of its list.
class DrawArea : public CppPrimitive {
    DECLARE_MEMBERS(DrawArea)
public:
    DrawArea(const char* name, CppWidget* parent, int width = 400, int height = 300);
    ~DrawArea() noexcept(false) override;

    OrderedCltn& list() const { return *icons; }
    // The world point at the window's top left corner.
    void setOrigin(const FloatPoint& origin);
    const FloatPoint& origin() const { return origin_; }
    // A zoom at or below 0 is 1.
    void setZoom(double zoom);
    double zoom() const { return zoom_; }
    // The map from the world to the window as it stands now.
    const TranslCoord& transl() const;
    // The background colour's name, "white" unless set.
    void setBackgroundColor(const char* colorName);
    void redraw();
    // The button and modifiers of the pointer event that is being raised.
    const PointerState& pointer() const { return pointer_; }
    // Raises a pointer event at the world point, as the window does.
    void raisePointer(const Symbol& event, const FloatPoint& world, int button, unsigned modifiers,
                      int steps = 0);

    // Paints the background and the list, then raises WidgetExpose.
    virtual void paint(QPainter& painter);

private:
    OrderedCltn* icons;
    FloatPoint origin_;
    double zoom_;
    String background;
    mutable TranslCoord map;
    PointerState pointer_;
};

// Paints into an image of the window's size and copies it to the window.
class DrawArea1Buffer : public DrawArea {
    DECLARE_MEMBERS(DrawArea1Buffer)
public:
    DrawArea1Buffer(const char* name, CppWidget* parent, int width = 400, int height = 300);
    void paint(QPainter& painter) override;
};

#endif
