// Proper crossings between polylines, with a tolerance in distance.
#include "model/crossing.h"

#include <cmath>

namespace {

const double tolerance = 0.001;

// Which side of the line through a and b the point c lies on: +1, -1, or 0
// when it is within the tolerance of the line.
int orientation(const FloatPoint& a, const FloatPoint& b, const FloatPoint& c) {
    FloatPoint ab = b - a, ac = c - a;
    double cross = ab.x() * ac.y() - ab.y() * ac.x();
    double limit = tolerance * std::hypot(ab.x(), ab.y());
    return cross > limit ? 1 : (cross < -limit ? -1 : 0);
}

// Each segment has its ends strictly on both sides of the other's line.
bool segmentsCross(const FloatPoint& a1, const FloatPoint& a2, const FloatPoint& b1, const FloatPoint& b2) {
    return orientation(a1, a2, b1) * orientation(a1, a2, b2) < 0 &&
           orientation(b1, b2, a1) * orientation(b1, b2, a2) < 0;
}

bool segmentCrosses(const FloatPoint& a1, const FloatPoint& a2, const Polyline& b) {
    for (size_t j = 1; j < b.size(); ++j)
        if (segmentsCross(a1, a2, b[j - 1], b[j])) return true;
    return false;
}

}  // namespace

bool polylinesCross(const Polyline& a, const Polyline& b) {
    for (size_t i = 1; i < a.size(); ++i)
        if (segmentCrosses(a[i - 1], a[i], b)) return true;
    return false;
}

std::vector<int> crossedLinks(const Polyline& route, const std::vector<LinkRoute>& others) {
    std::vector<int> crossed;
    for (const LinkRoute& link : others)
        if (polylinesCross(route, link.points)) crossed.push_back(link.id);
    return crossed;
}
