// PolyLine with Polygon and FillPoly: paths of points, each relative to the one before.
#ifndef TRELLIS_POLYLINE_H
#define TRELLIS_POLYLINE_H

#include "trellis/drawicon.h"

extern Class class_PolyLine;
extern Class class_Polygon;
extern Class class_FillPoly;

// The path starts at the reference point; each point is the step from the
// one before.
class PolyLine : public SimpleIcon {
    DECLARE_MEMBERS(PolyLine)
public:
    PolyLine(float x = 0, float y = 0, const char* colorName = 0, CppGC* gc = 0);
    // Stream form: the base, then the collection of FloatPoints.
    PolyLine(std::istream& is, Object* where);
    PolyLine(BinIstream& is, Object* where);
    ~PolyLine() noexcept(false) override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    void addPoint(double dx, double dy);
    const OrderedCltn& points() const { return *steps; }
    FloatRect getBoundingBox() const override;
    // Scales the steps into the box.
    void setBoundingBox(const FloatRect& box) override;

protected:
    void paint(Drawer& drawer) override;
    virtual int kind() const;

private:
    OrderedCltn* steps;
};

class Polygon : public PolyLine {
    DECLARE_MEMBERS(Polygon)
public:
    Polygon(float x = 0, float y = 0, const char* colorName = 0, CppGC* gc = 0)
        : PolyLine(x, y, colorName, gc) {}
    Polygon(std::istream& is, Object* where) : PolyLine(is, where) {}
    Polygon(BinIstream& is, Object* where) : PolyLine(is, where) {}

protected:
    int kind() const override;
};

class FillPoly : public Polygon {
    DECLARE_MEMBERS(FillPoly)
public:
    FillPoly(float x = 0, float y = 0, const char* colorName = 0, CppGC* gc = 0)
        : Polygon(x, y, colorName, gc) {}
    FillPoly(std::istream& is, Object* where) : Polygon(is, where) {}
    FillPoly(BinIstream& is, Object* where) : Polygon(is, where) {}

protected:
    int kind() const override;
};

#endif
