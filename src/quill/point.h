// Plane values: Point, FloatPoint, FloatRect and TranslCoord, the world-to-window transformation.
#ifndef QUILL_POINT_H
#define QUILL_POINT_H

#include "quill/object.h"
#include "quill/qclass.h"

extern Class class_Point;
extern Class class_FloatPoint;
extern Class class_FloatRect;
extern Class class_TranslCoord;

// Two integers; prints as "x @ y". Ordered by x, then y.
class Point : public Object {
    DECLARE_MEMBERS(Point)
public:
    Point(int x = 0, int y = 0) : xc(x), yc(y) {}
    Point(std::istream& is, Object* where);
    Point(BinIstream& is, Object* where);

    int x() const { return xc; }
    int y() const { return yc; }
    void x(int v) { xc = v; }
    void y(int v) { yc = v; }

    Point operator+(const Point& p) const { return Point(xc + p.xc, yc + p.yc); }
    Point operator-(const Point& p) const { return Point(xc - p.xc, yc - p.yc); }
    bool operator==(const Point& p) const { return xc == p.xc && yc == p.yc; }
    bool operator!=(const Point& p) const { return !(*this == p); }

    bool isEqual(const Object& ob) const override;
    int compare(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    int xc;
    int yc;
};

// Two doubles; prints as "(x @ y)" with %g. Ordered by x, then y.
class FloatPoint : public Object {
    DECLARE_MEMBERS(FloatPoint)
public:
    FloatPoint(double x = 0.0, double y = 0.0) : xc(x), yc(y) {}
    FloatPoint(std::istream& is, Object* where);
    FloatPoint(BinIstream& is, Object* where);

    double x() const { return xc; }
    double y() const { return yc; }
    void x(double v) { xc = v; }
    void y(double v) { yc = v; }

    FloatPoint operator+(const FloatPoint& p) const { return FloatPoint(xc + p.xc, yc + p.yc); }
    FloatPoint operator-(const FloatPoint& p) const { return FloatPoint(xc - p.xc, yc - p.yc); }
    FloatPoint operator*(double k) const { return FloatPoint(xc * k, yc * k); }
    bool operator==(const FloatPoint& p) const { return xc == p.xc && yc == p.yc; }
    bool operator!=(const FloatPoint& p) const { return !(*this == p); }
    double distance(const FloatPoint& p) const;

    bool isEqual(const Object& ob) const override;
    int compare(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;
    const char* asCharPointer() const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    double xc;
    double yc;
};

// A rectangle by its corner (x, y) and its extent (width, height), the way
// drawings and drawers give their boxes. Normalised, the extent is not negative.
class FloatRect : public Object {
    DECLARE_MEMBERS(FloatRect)
public:
    FloatRect(double x = 0.0, double y = 0.0, double width = 0.0, double height = 0.0)
        : xc(x), yc(y), w(width), h(height) {}
    FloatRect(const FloatPoint& origin, const FloatPoint& corner);
    FloatRect(std::istream& is, Object* where);
    FloatRect(BinIstream& is, Object* where);

    double x() const { return xc; }
    double y() const { return yc; }
    double width() const { return w; }
    double height() const { return h; }
    FloatPoint origin() const { return FloatPoint(xc, yc); }
    FloatPoint corner() const { return FloatPoint(xc + w, yc + h); }

    // No area: a zero or negative extent.
    bool isEmpty() const { return w <= 0.0 || h <= 0.0; }
    // A negative extent moves the corner by it and becomes positive.
    FloatRect normalized() const;
    // The smallest rectangle holding both; an empty one adds nothing.
    FloatRect unionWith(const FloatRect& r) const;
    // Edges included.
    bool contains(const FloatPoint& p) const;

    bool operator==(const FloatRect& r) const;
    bool operator!=(const FloatRect& r) const { return !(*this == r); }

    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;  // "(x @ y) extent (w @ h)"
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    double xc;
    double yc;
    double w;
    double h;
};

// The map between absolute window coordinates and world coordinates:
// absolute x = ax * world x + bx, absolute y = ay * world y + by, made so
// that the world rectangle covers the absolute one.
class TranslCoord : public Object {
    DECLARE_MEMBERS(TranslCoord)
public:
    TranslCoord();  // the identity on unit rectangles
    TranslCoord(const FloatRect& absolute, const FloatRect& world);
    // Stream form: the two rectangles; the map is computed from them.
    TranslCoord(std::istream& is, Object* where);
    TranslCoord(BinIstream& is, Object* where);

    void setAbsolute(const FloatRect& r);
    void setWorld(const FloatRect& r);
    const FloatRect& absolute() const { return absRect; }
    const FloatRect& world() const { return worldRect; }
    double ax() const { return axc; }
    double bx() const { return bxc; }
    double ay() const { return ayc; }
    double by() const { return byc; }

    FloatPoint toAbsolute(const FloatPoint& worldPoint) const;
    FloatPoint toWorld(const FloatPoint& absolutePoint) const;
    // Lengths, without the offsets.
    double widthToAbsolute(double worldWidth) const { return axc * worldWidth; }
    double heightToAbsolute(double worldHeight) const { return ayc * worldHeight; }

    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

private:
    void computeMatrix();

    FloatRect absRect;
    FloatRect worldRect;
    double axc, bxc, ayc, byc;
};

#endif
