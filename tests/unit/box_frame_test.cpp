// The piece box's geometry: grips, the move and the resize with its 201-pixel minimum, the layout after a
// resize, and the cuts of titles and typed names.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "setup/box_frame.h"

namespace {

::testing::AssertionResult SameRect(const Rect& got, const Rect& expected) {
    if (got.x == expected.x && got.y == expected.y && got.width == expected.width && got.height == expected.height)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got {" << got.x << ", " << got.y << ", " << got.width << ", "
                                         << got.height << "} expected {" << expected.x << ", " << expected.y << ", "
                                         << expected.width << ", " << expected.height << "}";
}

const Rect kStart = {100, 80, 300, 300};

}  // namespace

TEST(BoxGrip, OuterSixPixelsAreTheEdges) {
    EXPECT_EQ(BoxGripAt(300, 300, 0, 150), uint32_t(GRIP_LEFT));
    EXPECT_EQ(BoxGripAt(300, 300, 5, 150), uint32_t(GRIP_LEFT));
    EXPECT_EQ(BoxGripAt(300, 300, 299, 150), uint32_t(GRIP_RIGHT));
    EXPECT_EQ(BoxGripAt(300, 300, 294, 150), uint32_t(GRIP_RIGHT));
    EXPECT_EQ(BoxGripAt(300, 300, 150, 0), uint32_t(GRIP_TOP));
    EXPECT_EQ(BoxGripAt(300, 300, 150, 5), uint32_t(GRIP_TOP));
    EXPECT_EQ(BoxGripAt(300, 300, 150, 299), uint32_t(GRIP_BOTTOM));
    EXPECT_EQ(BoxGripAt(300, 300, 150, 294), uint32_t(GRIP_BOTTOM));
}

TEST(BoxGrip, SeventhPixelInwardIsNoLongerAnEdge) {
    EXPECT_EQ(BoxGripAt(300, 300, 6, 150), uint32_t(GRIP_NONE));   // the view's area
    EXPECT_EQ(BoxGripAt(300, 300, 293, 150), uint32_t(GRIP_NONE));
    EXPECT_EQ(BoxGripAt(300, 300, 150, 6), uint32_t(GRIP_MOVE));   // the title strip
    EXPECT_EQ(BoxGripAt(300, 300, 150, 293), uint32_t(GRIP_NONE));
}

TEST(BoxGrip, TitleStripBetweenFrameAndViewMovesTheBox) {
    EXPECT_EQ(BoxGripAt(300, 300, 10, 10), uint32_t(GRIP_MOVE));
    EXPECT_EQ(BoxGripAt(300, 300, 200, 35), uint32_t(GRIP_MOVE));
    EXPECT_EQ(BoxGripAt(300, 300, 200, 36), uint32_t(GRIP_NONE));  // the view begins here
}

TEST(BoxGrip, BottomRightSixteenPixelSquareResizesBothWays) {
    EXPECT_EQ(BoxGripAt(300, 300, 284, 284), uint32_t(GRIP_RIGHT | GRIP_BOTTOM));
    EXPECT_EQ(BoxGripAt(300, 300, 299, 299), uint32_t(GRIP_RIGHT | GRIP_BOTTOM));
    EXPECT_EQ(BoxGripAt(300, 300, 284, 297), uint32_t(GRIP_RIGHT | GRIP_BOTTOM));
    EXPECT_EQ(BoxGripAt(300, 300, 283, 297), uint32_t(GRIP_BOTTOM));
    EXPECT_EQ(BoxGripAt(250, 220, 240, 210), uint32_t(GRIP_RIGHT | GRIP_BOTTOM));
}

TEST(BoxGrip, OtherCornersTakeTheirTwoEdges) {
    EXPECT_EQ(BoxGripAt(300, 300, 2, 2), uint32_t(GRIP_LEFT | GRIP_TOP));
    EXPECT_EQ(BoxGripAt(300, 300, 297, 2), uint32_t(GRIP_RIGHT | GRIP_TOP));
    EXPECT_EQ(BoxGripAt(300, 300, 2, 297), uint32_t(GRIP_LEFT | GRIP_BOTTOM));
}

TEST(BoxGrip, PointsOutsideTheBoxGripNothing) {
    EXPECT_EQ(BoxGripAt(300, 300, -1, 10), uint32_t(GRIP_NONE));
    EXPECT_EQ(BoxGripAt(300, 300, 10, -1), uint32_t(GRIP_NONE));
    EXPECT_EQ(BoxGripAt(300, 300, 300, 10), uint32_t(GRIP_NONE));
    EXPECT_EQ(BoxGripAt(300, 300, 10, 300), uint32_t(GRIP_NONE));
}

TEST(BoxGrip, EachGripShowsItsOwnCursor) {
    EXPECT_EQ(BoxCursorFor(GRIP_NONE), BOX_CURSOR_ARROW);
    EXPECT_EQ(BoxCursorFor(GRIP_MOVE), BOX_CURSOR_MOVE);
    EXPECT_EQ(BoxCursorFor(GRIP_LEFT), BOX_CURSOR_WE);
    EXPECT_EQ(BoxCursorFor(GRIP_RIGHT), BOX_CURSOR_WE);
    EXPECT_EQ(BoxCursorFor(GRIP_TOP), BOX_CURSOR_NS);
    EXPECT_EQ(BoxCursorFor(GRIP_BOTTOM), BOX_CURSOR_NS);
    EXPECT_EQ(BoxCursorFor(GRIP_RIGHT | GRIP_BOTTOM), BOX_CURSOR_NWSE);
    EXPECT_EQ(BoxCursorFor(GRIP_LEFT | GRIP_TOP), BOX_CURSOR_NWSE);
    EXPECT_EQ(BoxCursorFor(GRIP_RIGHT | GRIP_TOP), BOX_CURSOR_NESW);
    EXPECT_EQ(BoxCursorFor(GRIP_LEFT | GRIP_BOTTOM), BOX_CURSOR_NESW);
}

TEST(BoxDrag, MoveShiftsTheBoxAndKeepsItsSize) {
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_MOVE, 37, -12), Rect{137, 68, 300, 300}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_MOVE, -500, 0), Rect{-400, 80, 300, 300}));
}

TEST(BoxDrag, RightAndBottomEdgesFollowThePointer) {
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_RIGHT, 40, 99), Rect{100, 80, 340, 300}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_BOTTOM, 99, -50), Rect{100, 80, 300, 250}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_RIGHT | GRIP_BOTTOM, 25, 60), Rect{100, 80, 325, 360}));
}

TEST(BoxDrag, LeftAndTopEdgesMoveTheOriginAndKeepTheOppositeEdge) {
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_LEFT, -30, 5), Rect{70, 80, 330, 300}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_TOP, 5, 40), Rect{100, 120, 300, 260}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_LEFT | GRIP_TOP, 10, 10), Rect{110, 90, 290, 290}));
}

TEST(BoxDrag, RightEdgeStopsAt201) {
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_RIGHT, -99, 0), Rect{100, 80, 201, 300}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_RIGHT, -100, 0), Rect{100, 80, 201, 300}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_RIGHT, -5000, 0), Rect{100, 80, 201, 300}));
}

TEST(BoxDrag, BottomEdgeStopsAt201) {
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_BOTTOM, 0, -98), Rect{100, 80, 300, 202}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_BOTTOM, 0, -400), Rect{100, 80, 300, 201}));
}

TEST(BoxDrag, LeftEdgeStopsAt201WithTheRightEdgeInPlace) {
    Rect r = DraggedBoxRect(kStart, GRIP_LEFT, 250, 0);
    EXPECT_TRUE(SameRect(r, Rect{199, 80, 201, 300}));
    EXPECT_EQ(r.x + r.width, kStart.x + kStart.width);
}

TEST(BoxDrag, TopEdgeStopsAt201WithTheBottomEdgeInPlace) {
    Rect r = DraggedBoxRect(kStart, GRIP_TOP, 0, 1000);
    EXPECT_TRUE(SameRect(r, Rect{100, 179, 300, 201}));
    EXPECT_EQ(r.y + r.height, kStart.y + kStart.height);
}

TEST(BoxDrag, CornerStopsAt201BothWays) {
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_RIGHT | GRIP_BOTTOM, -250, -120), Rect{100, 80, 201, 201}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_RIGHT | GRIP_BOTTOM, -250, 10), Rect{100, 80, 201, 310}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_LEFT | GRIP_TOP, 300, 300), Rect{199, 179, 201, 201}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_RIGHT | GRIP_TOP, -300, 300), Rect{100, 179, 201, 201}));
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_LEFT | GRIP_BOTTOM, 300, -300), Rect{199, 80, 201, 201}));
}

TEST(BoxDrag, NoGripLeavesTheBoxWhereItIs) {
    EXPECT_TRUE(SameRect(DraggedBoxRect(kStart, GRIP_NONE, 40, 40), kStart));
}

TEST(BoxChildren, CreatedBoxHasItsViewAt6By36Sized288By258) {
    BoxLayout layout = LayOutBox(kBoxCreatedSize, kBoxCreatedSize);
    EXPECT_TRUE(SameRect(layout.view, Rect{6, 36, 288, 258}));
    EXPECT_EQ(layout.close.x, 270);
    EXPECT_EQ(layout.close.y, 7);
    EXPECT_EQ(layout.rename.x, 246);
    EXPECT_EQ(layout.rename.y, 7);
}

TEST(BoxChildren, ViewFillsTheBoxBelowTheTitleStripAfterAResize) {
    BoxLayout layout = LayOutBox(451, 333);
    EXPECT_TRUE(SameRect(layout.view, Rect{6, 36, 439, 291}));
    EXPECT_EQ(layout.view.x + layout.view.width, 451 - kBoxFrameWidth);
    EXPECT_EQ(layout.view.y + layout.view.height, 333 - kBoxFrameWidth);
}

TEST(BoxChildren, ButtonsStayAtTheRightEdge) {
    BoxLayout layout = LayOutBox(201, 201);
    EXPECT_EQ(layout.close.x, 171);
    EXPECT_EQ(layout.close.x + kBoxButtonSize, 201 - 8);
    EXPECT_EQ(layout.rename.x + kBoxButtonSize, layout.close.x - 2);
    EXPECT_TRUE(SameRect(layout.view, Rect{6, 36, 189, 159}));
}

TEST(BoxChildren, ButtonsNeverOverlapTheFrameOrTheView) {
    BoxLayout layout = LayOutBox(kBoxMinimumSize, kBoxMinimumSize);
    EXPECT_GE(layout.close.y, kBoxFrameWidth);
    EXPECT_LE(layout.close.y + kBoxButtonSize, layout.view.y);
    EXPECT_GE(layout.rename.x, kBoxFrameWidth);
}

TEST(BoxTitle, LongTitleIsCutToForty) {
    const std::string text(57, 'x');
    EXPECT_EQ(BoxTitleLength(text.c_str()), 40u);
    EXPECT_EQ(BoxTitleLength("Box 1"), 5u);
    EXPECT_EQ(BoxTitleLength(""), 0u);
    EXPECT_EQ(BoxTitleLength(nullptr), 0u);
    EXPECT_EQ(BoxTitleLength(std::string(40, 'y').c_str()), 40u);
    EXPECT_EQ(BoxTitleLength(std::string(41, 'y').c_str()), 40u);
}

TEST(BoxTitle, CopyNeverWritesPastTheBuffer) {
    const std::string title = "Corner pieces and the sky";
    char buffer[12];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(CopyBoxTitle(title.c_str(), title.size(), buffer, 8), 7u);
    EXPECT_STREQ(buffer, "Corner ");
    for (size_t i = 8; i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], '#') << i;
}

TEST(BoxTitle, CopyOfAnEmptyBufferWritesNothing) {
    char buffer[2] = {'#', '#'};
    EXPECT_EQ(CopyBoxTitle("Box 1", 5, buffer, 0), 0u);
    EXPECT_EQ(buffer[0], '#');
    EXPECT_EQ(CopyBoxTitle("Box 1", 5, buffer, 1), 0u);
    EXPECT_EQ(buffer[0], 0);
    EXPECT_EQ(buffer[1], '#');
}

TEST(BoxTitle, CopyTakesAtMostFortyCharacters) {
    const std::string title(60, 'z');
    char buffer[100];
    EXPECT_EQ(CopyBoxTitle(title.c_str(), title.size(), buffer, sizeof buffer), 40u);
    EXPECT_EQ(std::strlen(buffer), 40u);
    EXPECT_EQ(CopyBoxTitle("Box 3", 5, buffer, sizeof buffer), 5u);
    EXPECT_STREQ(buffer, "Box 3");
}

TEST(BoxTitle, TypedNameIsCutToTwentyThree) {
    char name[kBoxNameLimit + 1];
    EXPECT_EQ(CutBoxName("abcdefghijklmnopqrstuvwxyz", name), 23u);
    EXPECT_STREQ(name, "abcdefghijklmnopqrstuvw");
    EXPECT_EQ(CutBoxName("Sky", name), 3u);
    EXPECT_STREQ(name, "Sky");
    EXPECT_EQ(CutBoxName(nullptr, name), 0u);
    EXPECT_STREQ(name, "");
}
