// PolyLine, Polygon and FillPoly: steps, box and painting.
#include "trellis/polyline.h"

#include <algorithm>
#include <ostream>
#include <vector>

#include "quill/objio.h"
#include "quill/orderedc.h"
#include "trellis/drawer.h"

DEFINE_CLASS(PolyLine, SimpleIcon, 1, 0)
DEFINE_CLASS(Polygon, PolyLine, 1, 0)
DEFINE_CLASS(FillPoly, Polygon, 1, 0)

PolyLine::PolyLine(float x, float y, const char* colorName, CppGC* gc)
    : SimpleIcon(x, y, colorName, gc), steps(new OrderedCltn) {}

PolyLine::PolyLine(std::istream& is, Object* where) : SimpleIcon(is, where), steps(0) {
    steps = CAST(OrderedCltn, readFrom(is, class_OrderedCltn));
}

PolyLine::PolyLine(BinIstream& is, Object* where) : SimpleIcon(is, where), steps(0) {
    steps = CAST(OrderedCltn, readFrom(is, class_OrderedCltn));
}

PolyLine::~PolyLine() noexcept(false) {
    if (!steps) return;
    steps->deleteContents();
    delete steps;
}

void PolyLine::storer(std::ostream& os) const {
    SimpleIcon::storer(os);
    steps->storeOn(os);
}

void PolyLine::storer(BinOstream& os) const {
    SimpleIcon::storer(os);
    steps->storeOn(os);
}

void PolyLine::addPoint(double dx, double dy) { steps->add(*new FloatPoint(dx, dy)); }

FloatRect PolyLine::getBoundingBox() const {
    std::vector<double> xs(steps->size()), ys(steps->size());
    Drawer::absolutePoints(x, y, *steps, xs.data(), ys.data());
    double left = x, right = x, top = y, bottom = y;
    for (unsigned i = 0; i < steps->size(); ++i) {
        left = std::min(left, xs[i]);
        right = std::max(right, xs[i]);
        top = std::min(top, ys[i]);
        bottom = std::max(bottom, ys[i]);
    }
    return FloatRect(left, top, right - left, bottom - top);
}

void PolyLine::setBoundingBox(const FloatRect& box) {
    FloatRect from = getBoundingBox();
    double sx = from.width() > 0 ? box.width() / from.width() : 1.0;
    double sy = from.height() > 0 ? box.height() / from.height() : 1.0;
    x = float(box.x() + (x - from.x()) * sx);
    y = float(box.y() + (y - from.y()) * sy);
    for (unsigned i = 0; i < steps->size(); ++i) {
        FloatPoint& p = *CAST(FloatPoint, steps->at(i));
        p.x(p.x() * sx);
        p.y(p.y() * sy);
    }
}

void PolyLine::paint(Drawer& drawer) { drawer.drawLine(gc(), x, y, *steps, kind()); }

int PolyLine::kind() const { return Drawer::POLYLINE; }

int Polygon::kind() const { return Drawer::POLYGON; }

int FillPoly::kind() const { return Drawer::FILLED_POLYGON; }
