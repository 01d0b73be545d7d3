// Drawer, the output device of drawing objects, and WindowDrawer, which paints on a window.
#ifndef TRELLIS_DRAWER_H
#define TRELLIS_DRAWER_H

#include "quill/point.h"

class CppGC;
class OrderedCltn;
class QPainter;

extern Class class_Drawer;
extern Class class_WindowDrawer;

// Coordinates are the world's; angles in 1/64 degree. Every operation of
// the base reports itself as the subclasses' responsibility.
class Drawer : public Object {
    DECLARE_MEMBERS(Drawer)
public:
    enum PolyKind { POLYLINE = 0, POLYGON = 1, FILLED_POLYGON = 2 };

    virtual void drawLine(CppGC& gc, double x, double y, double width, double height);
    virtual void drawArc(CppGC& gc, double x, double y, double width, double height, int start, int extent,
                         bool filled);
    virtual void drawRect(CppGC& gc, double x, double y, double width, double height, bool filled);
    // An arc whose line is thickness wide.
    virtual void drawThickArc(CppGC& gc, double x, double y, double width, double height, int start,
                              int extent, double thickness);
    // A path from (x, y) through points (FloatPoints), each relative to the one before.
    virtual void drawLine(CppGC& gc, double x, double y, const OrderedCltn& points, int kind);
    virtual void drawString(CppGC& gc, double x, double y, double width, const char* text, int alignment);

    // A negative width or height moves the corner by it and becomes
    // positive; a negative extent starts the arc at start + extent.
    static void normalizeArc(double& x, double& y, double& width, double& height, int& start, int& extent);
    // The points of a path, made absolute.
    static void absolutePoints(double x, double y, const OrderedCltn& points, double* xs, double* ys);

protected:
    Drawer() {}
};

// Paints through a QPainter; the world maps to the window by a TranslCoord.
class WindowDrawer : public Drawer {
    DECLARE_MEMBERS(WindowDrawer)
public:
    WindowDrawer(QPainter& painter, const TranslCoord& map);

    void drawLine(CppGC& gc, double x, double y, double width, double height) override;
    void drawArc(CppGC& gc, double x, double y, double width, double height, int start, int extent,
                 bool filled) override;
    void drawRect(CppGC& gc, double x, double y, double width, double height, bool filled) override;
    void drawThickArc(CppGC& gc, double x, double y, double width, double height, int start, int extent,
                      double thickness) override;
    void drawLine(CppGC& gc, double x, double y, const OrderedCltn& points, int kind) override;
    void drawString(CppGC& gc, double x, double y, double width, const char* text, int alignment) override;

private:
    void usePen(CppGC& gc, double width);
    void useBrush(CppGC& gc);

    QPainter& painter;
    TranslCoord map;  // a copy: the caller's may be a temporary
};

#endif
