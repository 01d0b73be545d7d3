// The links a new route crosses, and those it only comes near.
#include "model/crossing.h"

#include <gtest/gtest.h>

namespace {

const Polyline route{FloatPoint(0, 5), FloatPoint(10, 5), FloatPoint(10, 12)};

TEST(Crossing, LinkAcrossTheRouteIsFound) {
    Polyline across{FloatPoint(4, 0), FloatPoint(4, 9)};
    EXPECT_TRUE(polylinesCross(route, across));
    EXPECT_TRUE(polylinesCross(across, route));
}

TEST(Crossing, NearMissTouchAndSharedEndAreNot) {
    EXPECT_FALSE(polylinesCross(route, Polyline{FloatPoint(4, 0), FloatPoint(4, 4.5)}));
    EXPECT_FALSE(polylinesCross(route, Polyline{FloatPoint(4, 0), FloatPoint(4, 5)}));
    EXPECT_FALSE(polylinesCross(route, Polyline{FloatPoint(0, 5), FloatPoint(0, 9)}));
    EXPECT_FALSE(polylinesCross(route, Polyline{FloatPoint(10.0005, 8), FloatPoint(14, 8)}));
}

TEST(Crossing, CrossedLinksInTheirOrder) {
    std::vector<LinkRoute> others{
        {1, Polyline{FloatPoint(4, 0), FloatPoint(4, 4.5)}},
        {2, Polyline{FloatPoint(8, 8), FloatPoint(12, 8)}},
        {3, Polyline{FloatPoint(2, 1), FloatPoint(2, 3), FloatPoint(6, 3), FloatPoint(6, 7)}},
        {4, Polyline{}},
    };
    EXPECT_EQ(crossedLinks(route, others), (std::vector<int>{2, 3}));
}

}  // namespace
