// The side of a node a point lies on, attachment points on a node's edge,
// and the table of the sixteen route shapes.
#include "model/route.h"

#include <algorithm>
#include <cmath>

#include "model/routemirror.h"

namespace {

const double sideTolerance = 0.01;

double halfCell(double v) { return std::floor(v * 2) / 2; }

// The offset on the left or right edge, or next to a corner on the top or
// bottom edge when the point lies above or below the box.
FloatPoint sideOffset(double dx, double dy, double w, double h) {
    bool rightSide = dx > w - 0.5;
    if (dy >= 0 && dy <= h)
        return FloatPoint(rightSide ? w : 0.0, std::max(0.5, std::min(halfCell(dy), h - 0.5)));
    return FloatPoint(rightSide ? w - 0.5 : 0.5, dy > h ? h : 0.0);
}

using Shape = Polyline (*)(const RouteEnds&);

template <Shape shape>
Polyline exchange(const RouteEnds& e) {
    return reversed(shape(exchanged(e)));
}

template <Shape shape>
Polyline negateX(const RouteEnds& e) {
    return negatedX(shape(negatedX(e)));
}

template <Shape shape>
Polyline exchangeAxes(const RouteEnds& e) {
    return transposed(shape(transposed(e)));
}

// By to side + 4 * from side. From the left: the right's shapes with x
// negated; from the top or bottom into the left or right: the shapes that
// leave those sides, ends exchanged; between top and bottom: the shapes
// between left and right with the axes exchanged.
const Shape shapes[16] = {
    // From the left into the left, right, top and bottom.
    negateX<rightToRight>,
    negateX<rightToLeft>,
    negateX<rightToTop>,
    negateX<rightToBottom>,
    // From the right.
    rightToLeft,
    rightToRight,
    rightToTop,
    rightToBottom,
    // From the top.
    exchange<negateX<rightToTop>>,
    exchange<rightToTop>,
    exchangeAxes<negateX<rightToRight>>,
    exchangeAxes<negateX<rightToLeft>>,
    // From the bottom.
    exchange<negateX<rightToBottom>>,
    exchange<rightToBottom>,
    exchangeAxes<rightToLeft>,
    exchangeAxes<rightToRight>,
};

}  // namespace

int sideOf(const FloatRect& box, const FloatPoint& point) {
    double dx = point.x() - box.x(), dy = point.y() - box.y();
    if (std::fabs(dx) < sideTolerance) return LeftSide;
    if (std::fabs(dx - box.width()) < sideTolerance) return RightSide;
    if (std::fabs(dy) < sideTolerance) return TopSide;
    return BottomSide;
}

FloatPoint attachmentPoint(const FloatRect& box, const FloatPoint& point) {
    double dx = point.x() - box.x(), dy = point.y() - box.y(), w = box.width(), h = box.height();
    if (dx >= 0.5 && dx <= w - 0.5) return box.origin() + FloatPoint(halfCell(dx), dy >= h * 0.5 ? h : 0.0);
    return box.origin() + sideOffset(dx, dy, w, h);
}

Polyline orthogonalRoute(const FloatRect& fromBox, const FloatRect& toBox, const FloatPoint& start,
                         const FloatPoint& end) {
    Shape shape = shapes[sideOf(toBox, end) + 4 * sideOf(fromBox, start)];
    return shape(RouteEnds{fromBox, toBox, start, end});
}

Polyline selfRoute(const FloatRect& box, const std::vector<Polyline>& loops) {
    const double tolerance = 0.001;
    double top = box.y(), left = box.x(), right = box.x() + box.width(), sum = 0;
    bool onTop = !loops.empty();
    for (const Polyline& loop : loops)
        for (const FloatPoint& p : {loop.front(), loop.back()}) {
            onTop = onTop && std::fabs(p.y() - top) <= tolerance && p.x() >= left && p.x() <= right;
            sum += p.x();
        }
    double middle = onTop ? halfCell(sum / double(2 * loops.size())) : (left + right) * 0.5;
    double k = double(loops.size());
    double half = std::min(box.width() * 0.25 + 0.5 * k, box.width() * 0.5 - 0.5);
    double from = std::max(left + 0.5, middle - half), to = std::min(right - 0.5, middle + half);
    double over = top - 1.0 - k * box.height();
    return Polyline{FloatPoint(from, top), FloatPoint(from, over), FloatPoint(middle, over),
                    FloatPoint(to, over), FloatPoint(to, top)};
}
