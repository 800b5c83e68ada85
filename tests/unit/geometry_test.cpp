// Point arithmetic and the rectangle relation.
#include <gtest/gtest.h>

#include "gfx/geometry.h"

TEST(Points, ArithmeticAndComparison) {
    Point a = MakePoint(3, -4), b = MakePoint(10, 20);
    EXPECT_TRUE(PointsEqual(AddPoints(a, b), MakePoint(13, 16)));
    EXPECT_TRUE(PointsEqual(SubtractPoints(a, b), MakePoint(-7, -24)));
    Point c = a;
    AddToPoint(&c, b);
    SubtractFromPoint(&c, a);
    EXPECT_TRUE(PointsEqual(c, b));
    EXPECT_EQ(DotProduct(a, b), 3 * 10 + -4 * 20);
    EXPECT_TRUE(PointsDiffer(a, b));
    EXPECT_FALSE(PointsDiffer(a, a));
}

TEST(Points, MultiplyAndDivideTruncateTowardZero) {
    EXPECT_TRUE(PointsEqual(MultiplyPoint(MakePoint(7, -7), 0.5), MakePoint(3, -3)));
    EXPECT_TRUE(PointsEqual(DividePoint(MakePoint(10, -10), 3.0), MakePoint(3, -3)));
    Point p = MakePoint(5, 9);
    MultiplyPointInPlace(&p, 1.5);
    EXPECT_TRUE(PointsEqual(p, MakePoint(7, 13)));
    DividePointInPlace(&p, 2.0);
    EXPECT_TRUE(PointsEqual(p, MakePoint(3, 6)));
}

TEST(RectRelation, OverlapGivesIntersectionAndUnion) {
    Rect a{0, 0, 10, 10}, b{5, 6, 10, 10}, out;
    EXPECT_TRUE(RectRelation(a, b, RECT_INTERSECTION, &out));
    EXPECT_EQ(out.x, 5);
    EXPECT_EQ(out.y, 6);
    EXPECT_EQ(out.width, 5);
    EXPECT_EQ(out.height, 4);
    EXPECT_TRUE(RectRelation(a, b, RECT_UNION, &out));
    EXPECT_EQ(out.x, 0);
    EXPECT_EQ(out.y, 0);
    EXPECT_EQ(out.width, 15);
    EXPECT_EQ(out.height, 16);
}

TEST(RectRelation, SharedEdgeTouchesWithZeroWidth) {
    Rect a{0, 0, 10, 10}, b{10, 0, 5, 5}, out;
    EXPECT_TRUE(RectRelation(a, b, RECT_INTERSECTION, &out));
    EXPECT_EQ(out.x, 10);
    EXPECT_EQ(out.width, 0);
    EXPECT_EQ(out.height, 5);
    Rect below{0, 10, 5, 5};
    EXPECT_TRUE(RectRelation(a, below, RECT_INTERSECTION, &out));
    EXPECT_EQ(out.height, 0);
}

TEST(RectRelation, DisjointRectanglesGiveZerosButUnionStillReported) {
    Rect a{0, 0, 10, 10}, b{11, 0, 5, 5}, out{1, 1, 1, 1};
    EXPECT_FALSE(RectRelation(a, b, RECT_INTERSECTION, &out));
    EXPECT_EQ(out.x, 0);
    EXPECT_EQ(out.y, 0);
    EXPECT_EQ(out.width, 0);
    EXPECT_EQ(out.height, 0);
    EXPECT_FALSE(RectRelation(a, b, RECT_UNION, &out));
    EXPECT_EQ(out.width, 16);
    Rect above{0, -6, 4, 5};
    EXPECT_FALSE(RectRelation(a, above, RECT_INTERSECTION, &out));
}

TEST(RectRelation, ContainedRectangleAndOtherModes) {
    Rect outer{0, 0, 100, 100}, inner{10, 20, 5, 6}, out;
    EXPECT_TRUE(RectRelation(inner, outer, RECT_INTERSECTION, &out));
    EXPECT_EQ(out.x, 10);
    EXPECT_EQ(out.width, 5);
    EXPECT_TRUE(RectRelation(outer, inner, RECT_INTERSECTION, &out));
    EXPECT_EQ(out.y, 20);
    EXPECT_EQ(out.height, 6);
    out = Rect{9, 9, 9, 9};
    EXPECT_TRUE(RectRelation(outer, inner, 3, &out));
    EXPECT_EQ(out.width, 0);
    EXPECT_EQ(out.x, 0);
}
