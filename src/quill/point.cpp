// Point, FloatPoint, FloatRect and TranslCoord: comparison, hashing, printing, mapping and stream forms.
#include "quill/point.h"

#include <cmath>
#include <cstring>
#include <istream>
#include <ostream>

#include "quill/binstrm.h"
#include "quill/objio.h"
#include "quill/quillstr.h"

DEFINE_CLASS(Point, Object, 1, 0)
DEFINE_CLASS(FloatPoint, Object, 1, 0)
DEFINE_CLASS(FloatRect, Object, 1, 0)
DEFINE_CLASS(TranslCoord, Object, 1, 0)

namespace {

unsigned hashDouble(double v) {
    if (v == 0.0) v = 0.0;  // -0.0 equals 0.0, so it hashes the same
    unsigned words[2];
    std::memcpy(words, &v, sizeof words);
    return words[0] ^ words[1];
}

template <typename T>
int order(T a, T b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

}  // namespace

// Point

bool Point::isEqual(const Object& ob) const {
    return ob.isSpecies(class_Point) && *this == static_cast<const Point&>(ob);
}

int Point::compare(const Object& ob) const {
    assertArgSpecies(ob, class_Point, "compare");
    const Point& p = static_cast<const Point&>(ob);
    return xc != p.xc ? order(xc, p.xc) : order(yc, p.yc);
}

unsigned Point::hash() const { return unsigned(xc) * 31u ^ unsigned(yc); }

void Point::printOn(std::ostream& os) const { os << xc << " @ " << yc; }

// FloatPoint

double FloatPoint::distance(const FloatPoint& p) const { return std::hypot(xc - p.xc, yc - p.yc); }

bool FloatPoint::isEqual(const Object& ob) const {
    return ob.isSpecies(class_FloatPoint) && *this == static_cast<const FloatPoint&>(ob);
}

int FloatPoint::compare(const Object& ob) const {
    assertArgSpecies(ob, class_FloatPoint, "compare");
    const FloatPoint& p = static_cast<const FloatPoint&>(ob);
    return xc != p.xc ? order(xc, p.xc) : order(yc, p.yc);
}

unsigned FloatPoint::hash() const { return hashDouble(xc) * 31u ^ hashDouble(yc); }

void FloatPoint::printOn(std::ostream& os) const { os << asCharPointer(); }

const char* FloatPoint::asCharPointer() const { return formatText("(%g @ %g)", xc, yc); }

// FloatRect

FloatRect::FloatRect(const FloatPoint& origin, const FloatPoint& corner)
    : xc(origin.x()), yc(origin.y()), w(corner.x() - origin.x()), h(corner.y() - origin.y()) {}

FloatRect FloatRect::normalized() const {
    FloatRect r(*this);
    if (r.w < 0.0) {
        r.xc += r.w;
        r.w = -r.w;
    }
    if (r.h < 0.0) {
        r.yc += r.h;
        r.h = -r.h;
    }
    return r;
}

FloatRect FloatRect::unionWith(const FloatRect& other) const {
    FloatRect a = normalized(), b = other.normalized();
    if (b.isEmpty()) return a;
    if (a.isEmpty()) return b;
    double left = std::fmin(a.xc, b.xc), top = std::fmin(a.yc, b.yc);
    double right = std::fmax(a.xc + a.w, b.xc + b.w), bottom = std::fmax(a.yc + a.h, b.yc + b.h);
    return FloatRect(left, top, right - left, bottom - top);
}

bool FloatRect::contains(const FloatPoint& p) const {
    FloatRect r = normalized();
    return p.x() >= r.xc && p.x() <= r.xc + r.w && p.y() >= r.yc && p.y() <= r.yc + r.h;
}

bool FloatRect::operator==(const FloatRect& r) const {
    return xc == r.xc && yc == r.yc && w == r.w && h == r.h;
}

bool FloatRect::isEqual(const Object& ob) const {
    return ob.isSpecies(class_FloatRect) && *this == static_cast<const FloatRect&>(ob);
}

unsigned FloatRect::hash() const {
    return ((hashDouble(xc) * 31u ^ hashDouble(yc)) * 31u ^ hashDouble(w)) * 31u ^ hashDouble(h);
}

void FloatRect::printOn(std::ostream& os) const {
    os << formatText("(%g @ %g) extent (%g @ %g)", xc, yc, w, h);
}

// TranslCoord

TranslCoord::TranslCoord()
    : absRect(0.0, 0.0, 1.0, 1.0), worldRect(0.0, 0.0, 1.0, 1.0), axc(1.0), bxc(0.0), ayc(1.0), byc(0.0) {}

TranslCoord::TranslCoord(const FloatRect& absolute, const FloatRect& world)
    : absRect(absolute), worldRect(world) {
    computeMatrix();
}

void TranslCoord::setAbsolute(const FloatRect& r) {
    absRect = r;
    computeMatrix();
}

void TranslCoord::setWorld(const FloatRect& r) {
    worldRect = r;
    computeMatrix();
}

// A world without extent on an axis maps that axis at scale 1, so the map
// stays invertible.
void TranslCoord::computeMatrix() {
    axc = worldRect.width() != 0.0 ? absRect.width() / worldRect.width() : 1.0;
    ayc = worldRect.height() != 0.0 ? absRect.height() / worldRect.height() : 1.0;
    if (axc == 0.0) axc = 1.0;
    if (ayc == 0.0) ayc = 1.0;
    bxc = absRect.x() - axc * worldRect.x();
    byc = absRect.y() - ayc * worldRect.y();
}

FloatPoint TranslCoord::toAbsolute(const FloatPoint& p) const {
    return FloatPoint(axc * p.x() + bxc, ayc * p.y() + byc);
}

FloatPoint TranslCoord::toWorld(const FloatPoint& p) const {
    return FloatPoint((p.x() - bxc) / axc, (p.y() - byc) / ayc);
}

bool TranslCoord::isEqual(const Object& ob) const {
    if (!ob.isSpecies(class_TranslCoord)) return false;
    const TranslCoord& t = static_cast<const TranslCoord&>(ob);
    return absRect == t.absRect && worldRect == t.worldRect;
}

unsigned TranslCoord::hash() const { return absRect.hash() * 31u ^ worldRect.hash(); }

void TranslCoord::printOn(std::ostream& os) const {
    os << "ABSOLUTE:  ";
    absRect.printOn(os);
    os << "\n   WORLD:  ";
    worldRect.printOn(os);
    os << "\n" << formatText("  MATRIX ax:%g bx:%g ay:%g by:%g", axc, bxc, ayc, byc);
}

// Stream forms: the fields in order, each followed by one blank in the text form.

Point::Point(std::istream& is, Object* where) : Object(is, where), xc(0), yc(0) { is >> xc >> yc; }
Point::Point(BinIstream& is, Object* where) : Object(is, where), xc(0), yc(0) { is >> xc >> yc; }

void Point::storer(std::ostream& os) const {
    Object::storer(os);
    os << xc << ' ' << yc << ' ';
}

void Point::storer(BinOstream& os) const {
    Object::storer(os);
    os << xc << yc;
}

FloatPoint::FloatPoint(std::istream& is, Object* where) : Object(is, where), xc(0.0), yc(0.0) {
    is >> xc >> yc;
}

FloatPoint::FloatPoint(BinIstream& is, Object* where) : Object(is, where), xc(0.0), yc(0.0) {
    is >> xc >> yc;
}

void FloatPoint::storer(std::ostream& os) const {
    Object::storer(os);
    os << xc << ' ' << yc << ' ';
}

void FloatPoint::storer(BinOstream& os) const {
    Object::storer(os);
    os << xc << yc;
}

FloatRect::FloatRect(std::istream& is, Object* where) : Object(is, where), xc(0.0), yc(0.0), w(0.0), h(0.0) {
    is >> xc >> yc >> w >> h;
}

FloatRect::FloatRect(BinIstream& is, Object* where) : Object(is, where), xc(0.0), yc(0.0), w(0.0), h(0.0) {
    is >> xc >> yc >> w >> h;
}

void FloatRect::storer(std::ostream& os) const {
    Object::storer(os);
    os << xc << ' ' << yc << ' ' << w << ' ' << h << ' ';
}

void FloatRect::storer(BinOstream& os) const {
    Object::storer(os);
    os << xc << yc << w << h;
}

TranslCoord::TranslCoord(std::istream& is, Object* where)
    : Object(is, where), axc(1.0), bxc(0.0), ayc(1.0), byc(0.0) {
    readFrom(is, "FloatRect", &absRect);
    readFrom(is, "FloatRect", &worldRect);
    computeMatrix();
}

TranslCoord::TranslCoord(BinIstream& is, Object* where)
    : Object(is, where), axc(1.0), bxc(0.0), ayc(1.0), byc(0.0) {
    readFrom(is, "FloatRect", &absRect);
    readFrom(is, "FloatRect", &worldRect);
    computeMatrix();
}

void TranslCoord::storer(std::ostream& os) const {
    Object::storer(os);
    absRect.storeOn(os);
    worldRect.storeOn(os);
}

void TranslCoord::storer(BinOstream& os) const {
    Object::storer(os);
    absRect.storeOn(os);
    worldRect.storeOn(os);
}
