// The four basic route shapes, built from three primitives: a straight run,
// a step with one bend and a step with two bends. Runs keep one cell of
// clearance from the boxes where there is room for it.
#include "model/routeshape.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "model/routemirror.h"

namespace {

const double tolerance = 0.001;
const double clearance = 1.0;

double left(const FloatRect& b) { return b.x(); }
double right(const FloatRect& b) { return b.x() + b.width(); }
double top(const FloatRect& b) { return b.y(); }
double bottom(const FloatRect& b) { return b.y() + b.height(); }

// The span from a to b comes closer than margin to the span from low to high.
bool nearSpan(double a, double b, double low, double high, double margin) {
    return std::max(a, b) > low - margin + tolerance && std::min(a, b) < high + margin - tolerance;
}

// A horizontal run at y from x1 to x2 passes within margin of the box.
bool rowBlocked(double y, double x1, double x2, const FloatRect& box, double margin = clearance) {
    return nearSpan(y, y, top(box), bottom(box), margin) && nearSpan(x1, x2, left(box), right(box), margin);
}

// A vertical run at x from y1 to y2 passes within the clearance of the box.
bool columnBlocked(double x, double y1, double y2, const FloatRect& box) {
    return nearSpan(x, x, left(box), right(box), clearance) &&
           nearSpan(y1, y2, top(box), bottom(box), clearance);
}

Polyline run(const FloatPoint& a, const FloatPoint& b) { return {a, b}; }

// One bend: horizontal, then vertical.
Polyline bend(const FloatPoint& a, const FloatPoint& b) { return {a, FloatPoint(b.x(), a.y()), b}; }

// Two bends: horizontal, vertical at x, horizontal.
Polyline stepAcross(const FloatPoint& a, const FloatPoint& b, double x) {
    return {a, FloatPoint(x, a.y()), FloatPoint(x, b.y()), b};
}

// Two bends: vertical, horizontal at y, vertical.
Polyline stepAlong(const FloatPoint& a, const FloatPoint& b, double y) {
    return {a, FloatPoint(a.x(), y), FloatPoint(b.x(), y), b};
}

// The pieces one after the other; each starts where the one before ends.
Polyline chain(std::initializer_list<Polyline> pieces) {
    Polyline points;
    for (const Polyline& piece : pieces)
        points.insert(points.end(), piece.begin() + (points.empty() ? 0 : 1), piece.end());
    return points;
}

// A row for a horizontal run, and whether it lies between the two boxes.
struct Row {
    double y;
    bool between;
};

// A row clear of both boxes for a run that joins y1 and y2: the middle of
// the gap between them when it leaves the clearance on both sides, else
// above or below both, whichever is nearer.
Row freeRow(const FloatRect& a, const FloatRect& b, double y1, double y2) {
    if (top(b) - bottom(a) >= 2 * clearance) return Row{(bottom(a) + top(b)) / 2, true};
    if (top(a) - bottom(b) >= 2 * clearance) return Row{(bottom(b) + top(a)) / 2, true};
    double above = std::min(top(a), top(b)) - clearance, below = std::max(bottom(a), bottom(b)) + clearance;
    double viaAbove = std::fabs(y1 - above) + std::fabs(y2 - above);
    double viaBelow = std::fabs(y1 - below) + std::fabs(y2 - below);
    return Row{viaAbove < viaBelow ? above : below, false};
}

// The end lies behind the start, or too close ahead for the clearance: out
// to the right, along the free row, and into the end from its left.
Polyline rightToLeftRound(const RouteEnds& e, const Row& row) {
    const FloatPoint &s = e.start, &t = e.end;
    double out = s.x() + clearance, in = t.x() - clearance;
    if (!row.between) {
        out = std::max(out, right(e.toBox) + clearance);
        in = std::min(in, left(e.fromBox) - clearance);
    }
    FloatPoint outer(out, s.y()), inner(in, t.y());
    return chain({run(s, outer), stepAlong(outer, inner, row.y), run(inner, t)});
}

// The end's box lies across the start's row: round it, above or below,
// whichever is nearer, to the column x right of both boxes.
Polyline rightToRightAround(const RouteEnds& e, double x) {
    const FloatPoint &s = e.start, &t = e.end;
    double above = top(e.toBox) - clearance, below = bottom(e.toBox) + clearance;
    double y = std::fabs(s.y() - above) < std::fabs(s.y() - below) ? above : below;
    FloatPoint outer(s.x() + clearance, s.y()), inner(x, t.y());
    return chain({run(s, outer), stepAlong(outer, inner, y), run(inner, t)});
}

// The column to turn in when the one a cell out is too near the end's box:
// right of that box, or, when the way there runs through it, the middle of
// the narrow gap before it.
double freeColumn(const RouteEnds& e) {
    const FloatPoint& s = e.start;
    double beyond = std::max(s.x(), right(e.toBox)) + clearance;
    return rowBlocked(s.y(), s.x(), beyond, e.toBox, 0) ? (s.x() + left(e.toBox)) / 2 : beyond;
}

// Into the top (sign -1) or the bottom (sign +1) of the end's box: one bend
// when the end lies ahead and the start beyond the entry row, else out to a
// free column, along the entry row, or round the start's box when it is in
// the way and the run up or down to the end passes clear of it, and in.
Polyline rightToEdge(const RouteEnds& e, double sign) {
    const FloatPoint &s = e.start, &t = e.end;
    double entry = t.y() + sign * clearance;
    if (t.x() >= s.x() + clearance - tolerance && sign * (s.y() - entry) >= -tolerance) return bend(s, t);
    double x = s.x() + clearance;
    if (columnBlocked(x, s.y(), entry, e.toBox)) x = freeColumn(e);
    double y = entry;
    double around = sign < 0 ? std::min(top(e.fromBox), t.y()) - clearance
                             : std::max(bottom(e.fromBox), t.y()) + clearance;
    if (rowBlocked(y, x, t.x(), e.fromBox) && !columnBlocked(t.x(), around, t.y(), e.fromBox)) y = around;
    FloatPoint outer(x, s.y());
    return chain({run(s, outer), stepAlong(outer, t, y)});
}

}  // namespace

Polyline rightToLeft(const RouteEnds& e) {
    const FloatPoint &s = e.start, &t = e.end;
    bool ahead = t.x() > s.x() + tolerance;
    if (ahead && std::fabs(s.y() - t.y()) < tolerance) return run(s, t);
    if (ahead && t.x() - s.x() >= 2 * clearance - tolerance) return stepAcross(s, t, (s.x() + t.x()) / 2);
    Row row = freeRow(e.fromBox, e.toBox, s.y(), t.y());
    // Boxes too close for the clearance on any way: the short way, between them.
    if (ahead && !row.between) return stepAcross(s, t, (s.x() + t.x()) / 2);
    return rightToLeftRound(e, row);
}

Polyline rightToRight(const RouteEnds& e) {
    const FloatPoint &s = e.start, &t = e.end;
    double x = std::max(s.x(), t.x()) + clearance;
    if (rowBlocked(s.y(), s.x(), x, e.toBox)) return rightToRightAround(e, x);
    if (rowBlocked(t.y(), t.x(), x, e.fromBox)) return reversed(rightToRight(exchanged(e)));
    return stepAcross(s, t, x);
}

Polyline rightToTop(const RouteEnds& e) { return rightToEdge(e, -1); }
Polyline rightToBottom(const RouteEnds& e) { return rightToEdge(e, 1); }
