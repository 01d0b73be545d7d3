// Mirror images of route ends and polylines.
#include "model/routemirror.h"

#include <algorithm>

namespace {

FloatPoint negatedX(const FloatPoint& p) { return FloatPoint(-p.x(), p.y()); }
FloatRect negatedX(const FloatRect& r) {
    return FloatRect(-(r.x() + r.width()), r.y(), r.width(), r.height());
}
FloatPoint transposed(const FloatPoint& p) { return FloatPoint(p.y(), p.x()); }
FloatRect transposed(const FloatRect& r) { return FloatRect(r.y(), r.x(), r.height(), r.width()); }

}  // namespace

RouteEnds exchanged(const RouteEnds& ends) {
    return RouteEnds{ends.toBox, ends.fromBox, ends.end, ends.start};
}

Polyline reversed(Polyline points) {
    std::reverse(points.begin(), points.end());
    return points;
}

RouteEnds negatedX(const RouteEnds& ends) {
    return RouteEnds{negatedX(ends.fromBox), negatedX(ends.toBox), negatedX(ends.start), negatedX(ends.end)};
}

Polyline negatedX(Polyline points) {
    for (FloatPoint& p : points) p = negatedX(p);
    return points;
}

RouteEnds transposed(const RouteEnds& ends) {
    return RouteEnds{transposed(ends.fromBox), transposed(ends.toBox), transposed(ends.start),
                     transposed(ends.end)};
}

Polyline transposed(Polyline points) {
    for (FloatPoint& p : points) p = transposed(p);
    return points;
}
