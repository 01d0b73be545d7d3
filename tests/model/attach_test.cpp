// The side a point is on and the attachment points around a 3 by 2 node.
#include <gtest/gtest.h>

#include <cmath>

#include "model/route.h"

namespace {

const FloatRect node(10, 20, 3, 2);

TEST(SideOf, EachSideWithinItsTolerance) {
    EXPECT_EQ(sideOf(node, FloatPoint(10.009, 21)), LeftSide);
    EXPECT_EQ(sideOf(node, FloatPoint(12.991, 21)), RightSide);
    EXPECT_EQ(sideOf(node, FloatPoint(11, 19.991)), TopSide);
    EXPECT_EQ(sideOf(node, FloatPoint(11, 22)), BottomSide);
    EXPECT_EQ(sideOf(node, FloatPoint(10.02, 20.005)), TopSide);
}

TEST(SideOf, BeyondTheToleranceTheBottom) {
    EXPECT_EQ(sideOf(node, FloatPoint(11, 20.02)), BottomSide);
    EXPECT_EQ(sideOf(node, FloatPoint(10.02, 21)), BottomSide);
    EXPECT_EQ(sideOf(node, FloatPoint(12.98, 21)), BottomSide);
}

TEST(AttachmentPoint, TopAndBottomWithinTheWidth) {
    EXPECT_EQ(attachmentPoint(node, FloatPoint(11.7, 20.3)), FloatPoint(11.5, 20));
    EXPECT_EQ(attachmentPoint(node, FloatPoint(11.2, 25)), FloatPoint(11, 22));
    EXPECT_EQ(attachmentPoint(node, FloatPoint(12.5, 18)), FloatPoint(12.5, 20));
    EXPECT_EQ(attachmentPoint(node, FloatPoint(10.5, 21)), FloatPoint(10.5, 22));
}

TEST(AttachmentPoint, LeftAndRightKeptHalfACellFromTheCorners) {
    EXPECT_EQ(attachmentPoint(node, FloatPoint(9, 21.3)), FloatPoint(10, 21));
    EXPECT_EQ(attachmentPoint(node, FloatPoint(15, 20.2)), FloatPoint(13, 20.5));
    EXPECT_EQ(attachmentPoint(node, FloatPoint(15, 21.9)), FloatPoint(13, 21.5));
}

TEST(AttachmentPoint, BeyondACornerNextToItOnTopOrBottom) {
    EXPECT_EQ(attachmentPoint(node, FloatPoint(8, 17)), FloatPoint(10.5, 20));
    EXPECT_EQ(attachmentPoint(node, FloatPoint(16, 30)), FloatPoint(12.5, 22));
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
