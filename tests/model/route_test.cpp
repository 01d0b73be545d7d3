// Orthogonal routes for all sixteen pairs of sides, with the target left,
// right, above, below and with overlapping ranges: the shape of the
// polyline, its ends, and its clearance from the boxes.
#include "model/route.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

// The outward step of each side: left, right, top, bottom.
const FloatPoint outward[4] = {FloatPoint(-1, 0), FloatPoint(1, 0), FloatPoint(0, -1), FloatPoint(0, 1)};

FloatPoint sideMiddle(const FloatRect& box, int side) {
    FloatPoint half(box.width() / 2, box.height() / 2);
    return box.origin() + half + FloatPoint(outward[side].x() * half.x(), outward[side].y() * half.y());
}

// The axis-parallel segment from p to q comes within margin of the box, up
// to the comparison tolerance, or passes through it when margin is 0.
bool passesNear(const FloatPoint& p, const FloatPoint& q, const FloatRect& box, double margin) {
    double m = margin > 0 ? margin - 0.001 : 0;
    return std::max(p.x(), q.x()) > box.x() - m && std::min(p.x(), q.x()) < box.x() + box.width() + m &&
           std::max(p.y(), q.y()) > box.y() - m && std::min(p.y(), q.y()) < box.y() + box.height() + m;
}

// The gap between two boxes along the axis that separates them most.
double gap(const FloatRect& a, const FloatRect& b) {
    double x = std::max(b.x() - a.x() - a.width(), a.x() - b.x() - b.width());
    return std::max(x, std::max(b.y() - a.y() - a.height(), a.y() - b.y() - b.height()));
}

// Between boxes two cells apart the runs out and in are at least a cell long
// and the others keep a cell from both boxes; closer boxes are only not crossed.
void expectRoute(const FloatRect& a, const FloatRect& b, int from, int to) {
    SCOPED_TRACE("from side " + std::to_string(from) + " to side " + std::to_string(to));
    FloatPoint start = sideMiddle(a, from), end = sideMiddle(b, to);
    Polyline route = orthogonalRoute(a, b, start, end);
    ASSERT_GE(route.size(), 2u);
    EXPECT_EQ(route.front(), start);
    EXPECT_EQ(route.back(), end);
    const FloatPoint &second = route[1], &penultimate = route[route.size() - 2];
    EXPECT_EQ(second - start, outward[from] * start.distance(second));
    EXPECT_EQ(end - penultimate, outward[to] * -penultimate.distance(end));
    double margin = gap(a, b) >= 2 ? 1 : 0;
    for (size_t i = 1; i < route.size(); ++i) {
        const FloatPoint &p = route[i - 1], &q = route[i];
        EXPECT_GT(p.distance(q), 0.001) << "segment " << i;
        EXPECT_TRUE(p.x() == q.x() || p.y() == q.y()) << "segment " << i << " is oblique";
        bool out = i == 1, in = i == route.size() - 1;
        if (out || in) {
            EXPECT_GE(p.distance(q), margin - 1e-9) << "segment " << i << " is short";
        }
        EXPECT_FALSE(passesNear(p, q, a, out ? 0 : margin)) << "segment " << i << " near the start";
        EXPECT_FALSE(passesNear(p, q, b, in ? 0 : margin)) << "segment " << i << " near the end";
    }
}

TEST(Route, SixteenPairsInEachPlacement) {
    FloatRect a(20, 20, 3, 2);
    double corners[][2] = {{40, 20}, {2, 20}, {17, 2},    {17, 40}, {40, 40}, {2, 2},   {40, 2},   {2, 40},
                           {26, 21}, {9, 19}, {21, 24.5}, {15, 16}, {24, 14}, {18, 23}, {24.5, 19}};
    for (auto& corner : corners) {
        SCOPED_TRACE("end's box at " + std::to_string(corner[0]) + ", " + std::to_string(corner[1]));
        for (int from = 0; from < 4; ++from)
            for (int to = 0; to < 4; ++to) expectRoute(a, FloatRect(corner[0], corner[1], 8, 2), from, to);
    }
}

// Boxes of random widths at least a cell apart, on the half-cell grid.
TEST(Route, SixteenPairsInRandomPlacements) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> cell(-24, 24), size(2, 9);
    for (int trial = 0; trial < 4000; ++trial) {
        FloatRect a(0, 0, size(random), 2), b(cell(random) / 2.0, cell(random) / 2.0, size(random), 2);
        SCOPED_TRACE("trial " + std::to_string(trial));
        if (gap(a, b) >= 1) expectRoute(a, b, trial % 4, trial / 4 % 4);
    }
}

TEST(Route, StraightRunAndSingleBendWhereTheyFit) {
    FloatRect a(0, 0, 3, 2);
    EXPECT_EQ(orthogonalRoute(a, FloatRect(10, 0, 3, 2), FloatPoint(3, 1), FloatPoint(10, 1)),
              (Polyline{FloatPoint(3, 1), FloatPoint(10, 1)}));
    EXPECT_EQ(orthogonalRoute(a, FloatRect(10, 10, 3, 2), FloatPoint(3, 1), FloatPoint(11.5, 10)),
              (Polyline{FloatPoint(3, 1), FloatPoint(11.5, 1), FloatPoint(11.5, 10)}));
}

}  // namespace
