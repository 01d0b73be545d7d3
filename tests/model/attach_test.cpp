// The side a point is on and the attachment points around a 3 by 2 node.
#include <gtest/gtest.h>

#include <cmath>

#include "model/route.h"

namespace {

const FloatRect node(10, 20, 3, 2);

TEST(SideOf, WithinTheToleranceOfAnEdgeElseTheBottom) {
    EXPECT_EQ(sideOf(node, FloatPoint(10.009, 21)), LeftSide);
    EXPECT_EQ(sideOf(node, FloatPoint(12.991, 21)), RightSide);
    EXPECT_EQ(sideOf(node, FloatPoint(10.02, 20.005)), TopSide);
    EXPECT_EQ(sideOf(node, FloatPoint(11, 20.02)), BottomSide);
    EXPECT_EQ(sideOf(node, FloatPoint(12.98, 21)), BottomSide);
}

// Top and bottom within the width, left and right half a cell from the
// corners, and beyond a corner the top or bottom next to it.
TEST(AttachmentPoint, NearestOnTheEdge) {
    const double cases[][4] = {{11.7, 20.3, 11.5, 20}, {11.2, 25, 11, 22}, {12.5, 18, 12.5, 20},
                               {10.5, 21, 10.5, 22},   {9, 21.3, 10, 21},  {15, 20.2, 13, 20.5},
                               {15, 21.9, 13, 21.5},   {8, 17, 10.5, 20},  {16, 30, 12.5, 22}};
    for (const auto& c : cases)
        EXPECT_EQ(attachmentPoint(node, FloatPoint(c[0], c[1])), FloatPoint(c[2], c[3]))
            << c[0] << ", " << c[1];
}

// Points all around the node land on its edge, on the half-cell grid, never
// on a corner.
TEST(AttachmentPoint, AroundTheNodeOnTheEdgeAndGrid) {
    for (double x = 6; x <= 17; x += 0.3)
        for (double y = 16; y <= 26; y += 0.3) {
            FloatPoint p = attachmentPoint(node, FloatPoint(x, y)) - node.origin();
            bool onVertical = p.x() == 0 || p.x() == 3, onHorizontal = p.y() == 0 || p.y() == 2;
            EXPECT_TRUE(onVertical != onHorizontal) << x << ", " << y;
            EXPECT_EQ(std::floor(p.x() * 2), p.x() * 2);
            EXPECT_EQ(std::floor(p.y() * 2), p.y() * 2);
            EXPECT_TRUE(p.x() >= 0 && p.x() <= 3 && p.y() >= 0 && p.y() <= 2);
        }
}

}  // namespace
