// Orthogonal routes for all sixteen pairs of sides, in several placements of
// the target: the shape of the polyline, its ends and its clearance.
#include "model/route.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <utility>

namespace {

const double eps = 1e-9;

// The outward step of each side: left, right, top, bottom.
const FloatPoint outward[4] = {FloatPoint(-1, 0), FloatPoint(1, 0), FloatPoint(0, -1), FloatPoint(0, 1)};

FloatPoint sideMiddle(const FloatRect& box, int side) {
    FloatPoint middle = box.origin() + FloatPoint(box.width() / 2, box.height() / 2);
    return middle + FloatPoint(outward[side].x() * box.width() / 2, outward[side].y() * box.height() / 2);
}

// The unit direction of a segment along an axis.
FloatPoint direction(const FloatPoint& a, const FloatPoint& b) {
    double length = a.distance(b);
    return FloatPoint((b.x() - a.x()) / length, (b.y() - a.y()) / length);
}

// The box grown by one cell on every side, less the comparison tolerance.
FloatRect grown(const FloatRect& box) {
    double c = 1 - 0.001;
    return FloatRect(box.x() - c, box.y() - c, box.width() + 2 * c, box.height() + 2 * c);
}

// The axis-parallel segment from p to q passes through the inside of the box.
bool passesThrough(const FloatPoint& p, const FloatPoint& q, const FloatRect& box) {
    return std::max(p.x(), q.x()) > box.x() && std::min(p.x(), q.x()) < box.x() + box.width() &&
           std::max(p.y(), q.y()) > box.y() && std::min(p.y(), q.y()) < box.y() + box.height();
}

// The first and last runs are at least stub long.
void expectWellFormed(const Polyline& route, const FloatPoint& start, const FloatPoint& end, int from, int to,
                      double stub) {
    ASSERT_GE(route.size(), 2u);
    EXPECT_EQ(route.front(), start);
    EXPECT_EQ(route.back(), end);
    for (size_t i = 1; i < route.size(); ++i) {
        EXPECT_GT(route[i - 1].distance(route[i]), 0.001) << "segment " << i;
        EXPECT_TRUE(std::fabs(route[i].x() - route[i - 1].x()) < eps ||
                    std::fabs(route[i].y() - route[i - 1].y()) < eps)
            << "segment " << i << " is oblique";
    }
    EXPECT_EQ(direction(route[0], route[1]), outward[from]);
    EXPECT_EQ(direction(route[route.size() - 2], route.back()), outward[to] * -1);
    EXPECT_GE(route[0].distance(route[1]), stub - eps);
    EXPECT_GE(route[route.size() - 2].distance(route.back()), stub - eps);
}

void expectOutsideBoxes(const Polyline& route, const FloatRect& a, const FloatRect& b) {
    for (size_t i = 1; i < route.size(); ++i) {
        EXPECT_FALSE(passesThrough(route[i - 1], route[i], a))
            << "segment " << i << " through the start's box";
        EXPECT_FALSE(passesThrough(route[i - 1], route[i], b)) << "segment " << i << " through the end's box";
    }
}

// No segment comes within a cell of a box, but for the runs that leave the
// start's box and enter the end's.
void expectClearance(const Polyline& route, const FloatRect& a, const FloatRect& b) {
    size_t last = route.size() - 1;
    for (size_t i = 1; i <= last; ++i) {
        const FloatPoint &p = route[i - 1], &q = route[i];
        EXPECT_TRUE(i == 1 || !passesThrough(p, q, grown(a))) << "segment " << i << " near the start's box";
        EXPECT_TRUE(i == last || !passesThrough(p, q, grown(b))) << "segment " << i << " near the end's box";
    }
}

// Every pair of sides from a 3 by 2 box to an 8 by 2 box with its corner at
// (x, y). Boxes at least two cells apart leave room for the clearance; closer
// ones only for shorter runs out of and into the boxes.
void forEachPairOfSides(double x, double y, bool roomy) {
    FloatRect a(20, 20, 3, 2), b(x, y, 8, 2);
    for (int from = 0; from < 4; ++from)
        for (int to = 0; to < 4; ++to) {
            SCOPED_TRACE("from side " + std::to_string(from) + " to side " + std::to_string(to));
            FloatPoint start = sideMiddle(a, from), end = sideMiddle(b, to);
            Polyline route = orthogonalRoute(a, b, start, end);
            expectWellFormed(route, start, end, from, to, roomy ? 1 : 0);
            expectOutsideBoxes(route, a, b);
            if (roomy) expectClearance(route, a, b);
        }
}

// The corner of the end's box; a plain pair, since a parameter must not throw on destruction.
using Corner = std::pair<double, double>;

class SixteenRoutes : public ::testing::TestWithParam<Corner> {};

TEST_P(SixteenRoutes, OrthogonalWithClearance) {
    forEachPairOfSides(GetParam().first, GetParam().second, true);
}

// Left, right, above, below, the four diagonals, and ranges that overlap
// the start's in x or in y, near and far.
INSTANTIATE_TEST_SUITE_P(Placements, SixteenRoutes,
                         ::testing::Values(Corner(40, 20), Corner(2, 20), Corner(17, 2), Corner(17, 40),
                                           Corner(40, 40), Corner(2, 2), Corner(40, 2), Corner(2, 40),
                                           Corner(26, 21), Corner(9, 19), Corner(21, 24.5), Corner(15, 16),
                                           Corner(24, 14)));

// Boxes closer than two cells leave no room for the clearance, but the
// route keeps its shape and stays out of both.
TEST(Route, TightPlacementsKeepTheShape) {
    for (Corner corner :
         {Corner(18, 23), Corner(24.5, 19), Corner(14, 17), Corner(11, 19), Corner(24, 22.5)}) {
        SCOPED_TRACE(std::to_string(corner.first) + ", " + std::to_string(corner.second));
        forEachPairOfSides(corner.first, corner.second, false);
    }
}

TEST(Route, StraightRunBetweenFacingSidesInLine) {
    FloatRect a(0, 0, 3, 2), b(10, 0, 3, 2);
    Polyline route = orthogonalRoute(a, b, FloatPoint(3, 1), FloatPoint(10, 1));
    EXPECT_EQ(route, (Polyline{FloatPoint(3, 1), FloatPoint(10, 1)}));
}

TEST(Route, OneBendIntoTopAheadAndBelow) {
    FloatRect a(0, 0, 3, 2), b(10, 10, 3, 2);
    Polyline route = orthogonalRoute(a, b, FloatPoint(3, 1), FloatPoint(11.5, 10));
    EXPECT_EQ(route, (Polyline{FloatPoint(3, 1), FloatPoint(11.5, 1), FloatPoint(11.5, 10)}));
}

// Any two boxes apart by two cells in x or y, with ends anywhere on the
// half-cell grid of their sides.
TEST(Route, RandomPlacementsKeepTheirShape) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> cell(-30, 30), size(2, 9);
    for (int trial = 0; trial < 400; ++trial) {
        FloatRect a(0, 0, size(random), 2), b(cell(random), cell(random) / 2, size(random), 2);
        bool apart = b.x() >= a.width() + 2 || b.x() + b.width() <= -2 || b.y() >= 4 || b.y() <= -4;
        if (!apart) continue;
        int from = trial % 4, to = trial / 4 % 4;
        FloatPoint start = sideMiddle(a, from), end = sideMiddle(b, to);
        SCOPED_TRACE("trial " + std::to_string(trial));
        expectWellFormed(orthogonalRoute(a, b, start, end), start, end, from, to, 1);
    }
}

}  // namespace
