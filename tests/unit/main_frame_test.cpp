// The frame of the playing screen: which parts of the main window no child covers, the grain each part
// gets and the rail round the table, at the screen sizes players use.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/main_frame.h"

namespace {

// The strips the game ships: side buttons 50 x 46 a frame, the info button 40 x 40.
const FrameChildren kShipped = {50, 46, 40, 40};

struct ScreenSize {
    int32_t width, height;
};
const ScreenSize kSizes[] = {{800, 600}, {1024, 768}, {1280, 1024}, {1920, 1080}, {801, 599}};

std::string Describe(const FrameBox& r) {
    return "{" + std::to_string(r.left) + ", " + std::to_string(r.top) + ", " + std::to_string(r.right) + ", " +
           std::to_string(r.bottom) + "}";
}

bool SameRect(const FrameBox& a, const FrameBox& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

bool HasArea(const std::vector<FrameArea>& areas, const FrameBox& r, FrameGrain grain) {
    for (const FrameArea& a : areas)
        if (SameRect(a.rect, r) && a.grain == grain) return true;
    return false;
}

std::string DescribeAll(const std::vector<FrameArea>& areas) {
    std::string text;
    for (const FrameArea& a : areas) text += Describe(a.rect) + (a.grain == kGrainUpright ? "u " : "a ");
    return text;
}

// How often each pixel of the screen is counted: once per area, once per child.
std::vector<int> CountCover(int32_t w, int32_t h, const std::vector<FrameBox>& rects) {
    std::vector<int> count(size_t(w) * size_t(h), 0);
    for (const FrameBox& r : rects) {
        FrameBox in = IntersectRects(r, FrameBox{0, 0, w, h});
        for (int32_t y = in.top; y < in.bottom; ++y)
            for (int32_t x = in.left; x < in.right; ++x) ++count[size_t(y) * size_t(w) + size_t(x)];
    }
    return count;
}

std::vector<FrameBox> RectsOf(const std::vector<FrameArea>& areas) {
    std::vector<FrameBox> rects;
    for (const FrameArea& a : areas) rects.push_back(a.rect);
    return rects;
}

}  // namespace

TEST(MainFrame, NoAreaLiesUnderAChild) {
    for (const ScreenSize& s : kSizes) {
        std::vector<FrameBox> children = MainWindowChildren(s.width, s.height, kShipped);
        for (const FrameArea& a : MainFrameAreas(s.width, s.height, kShipped))
            for (const FrameBox& c : children)
                EXPECT_FALSE(RectsOverlap(a.rect, c)) << s.width << "x" << s.height << ": area " << Describe(a.rect)
                                                      << " under child " << Describe(c);
    }
}

TEST(MainFrame, AreasAndChildrenTogetherCoverEveryPixelOfTheScreen) {
    for (const ScreenSize& s : kSizes) {
        std::vector<FrameArea> areas = MainFrameAreas(s.width, s.height, kShipped);
        std::vector<int> byAreas = CountCover(s.width, s.height, RectsOf(areas));
        std::vector<int> byChildren = CountCover(s.width, s.height, MainWindowChildren(s.width, s.height, kShipped));
        int bare = 0, twice = 0;
        for (size_t i = 0; i < byAreas.size(); ++i) {
            if (byAreas[i] == 0 && byChildren[i] == 0) ++bare;
            if (byAreas[i] > 1) ++twice;
        }
        EXPECT_EQ(bare, 0) << s.width << "x" << s.height << " pixels neither painted nor covered";
        EXPECT_EQ(twice, 0) << s.width << "x" << s.height << " pixels painted by two areas";
    }
}

TEST(MainFrame, AreasStayInsideTheScreen) {
    for (const ScreenSize& s : kSizes)
        for (const FrameArea& a : MainFrameAreas(s.width, s.height, kShipped)) {
            EXPECT_GE(a.rect.left, 0);
            EXPECT_GE(a.rect.top, 0);
            EXPECT_LE(a.rect.right, s.width);
            EXPECT_LE(a.rect.bottom, s.height);
            EXPECT_LT(a.rect.left, a.rect.right);
            EXPECT_LT(a.rect.top, a.rect.bottom);
        }
}

TEST(MainFrame, GapsOf1024x768AreTheStripsRoundTheTable) {
    std::vector<FrameArea> areas = MainFrameAreas(1024, 768, kShipped);
    SCOPED_TRACE(DescribeAll(areas));
    // Between the tools bar and the table, from the title bar down to the table's foot.
    EXPECT_TRUE(HasArea(areas, FrameBox{25, 78, 49, 718}, kGrainUpright));
    // Under the table, from the tools bar to the right edge, above the options bar.
    EXPECT_TRUE(HasArea(areas, FrameBox{25, 718, 1024, 743}, kGrainAcross));
    // Right of the table: above the info button, between it and the side buttons, beside the buttons'
    // hidden halves, and below them.
    EXPECT_TRUE(HasArea(areas, FrameBox{996, 78, 1024, 80}, kGrainAcross));
    EXPECT_TRUE(HasArea(areas, FrameBox{996, 120, 1024, 272}, kGrainUpright));
    EXPECT_TRUE(HasArea(areas, FrameBox{996, 272, 999, 548}, kGrainUpright));
    EXPECT_TRUE(HasArea(areas, FrameBox{996, 548, 1024, 718}, kGrainUpright));
    EXPECT_EQ(areas.size(), 6u);
}

TEST(MainFrame, SideButtonsFollowTheScreenHeightAt800x600) {
    std::vector<FrameArea> areas = MainFrameAreas(800, 600, kShipped);
    SCOPED_TRACE(DescribeAll(areas));
    // Buttons from 188 to 464: the column right of the table opens above and below them.
    EXPECT_TRUE(HasArea(areas, FrameBox{772, 120, 800, 188}, kGrainUpright));
    EXPECT_TRUE(HasArea(areas, FrameBox{772, 188, 775, 464}, kGrainUpright));
    EXPECT_TRUE(HasArea(areas, FrameBox{772, 464, 800, 550}, kGrainUpright));
    EXPECT_TRUE(HasArea(areas, FrameBox{25, 550, 800, 575}, kGrainAcross));
}

TEST(MainFrame, NarrowerInfoButtonLeavesFrameBesideIt) {
    FrameChildren wide = kShipped;
    wide.infoWidth = 20;  // narrower than the gap: a sliver of frame shows left of it
    std::vector<FrameArea> areas = MainFrameAreas(1024, 768, wide);
    SCOPED_TRACE(DescribeAll(areas));
    EXPECT_TRUE(HasArea(areas, FrameBox{996, 80, 1004, 120}, kGrainUpright));
}

TEST(MainFrame, RailRingsGrowOutFromTheTable) {
    FrameBox table = TableRect(1024, 768);
    EXPECT_TRUE(SameRect(table, FrameBox{49, 78, 996, 718})) << Describe(table);
    EXPECT_TRUE(SameRect(RailRing(1024, 768, 1), FrameBox{48, 77, 997, 719}));
    EXPECT_TRUE(SameRect(RailRing(800, 600, kRailRings), FrameBox{44, 73, 777, 555}));
}

TEST(MainFrame, RailShowsOnTheLeftAndBelowTheTable) {
    // Each ring's left and bottom lines fall in the frame, so the rail is seen there whole.
    for (const ScreenSize& s : kSizes) {
        std::vector<FrameArea> areas = MainFrameAreas(s.width, s.height, kShipped);
        for (int d = 1; d <= kRailRings; ++d) {
            FrameBox ring = RailRing(s.width, s.height, d);
            FrameBox left{ring.left, kFrameTitleHeight, ring.left + 1, ring.bottom};
            FrameBox bottom{ring.left, ring.bottom - 1, ring.right - 3, ring.bottom};
            int32_t leftPixels = 0, bottomPixels = 0;
            for (const FrameArea& a : areas) {
                FrameBox l = IntersectRects(a.rect, left), b = IntersectRects(a.rect, bottom);
                leftPixels += (l.right - l.left) * (l.bottom - l.top);
                bottomPixels += (b.right - b.left) * (b.bottom - b.top);
            }
            EXPECT_EQ(leftPixels, left.bottom - left.top) << s.width << "x" << s.height << " ring " << d;
            EXPECT_EQ(bottomPixels, bottom.right - bottom.left) << s.width << "x" << s.height << " ring " << d;
        }
    }
}

TEST(MainFrame, RailColoursAreBrassAndNeverBlack) {
    for (uint32_t color : kRailColors) EXPECT_NE(color, 0u);
    EXPECT_NE(kFrameFallbackColor, 0u);
}

TEST(UncoveredRects, NothingCoveredGivesTheWholeArea) {
    std::vector<FrameBox> out = UncoveredRects(FrameBox{3, 4, 50, 60}, {});
    ASSERT_EQ(out.size(), 1u);
    EXPECT_TRUE(SameRect(out[0], FrameBox{3, 4, 50, 60}));
}

TEST(UncoveredRects, AllCoveredGivesNothing) {
    EXPECT_TRUE(UncoveredRects(FrameBox{0, 0, 10, 10}, {{0, 0, 10, 5}, {-5, 5, 20, 30}}).empty());
}

TEST(UncoveredRects, HoleInTheMiddleLeavesFourPieces) {
    std::vector<FrameBox> out = UncoveredRects(FrameBox{0, 0, 10, 10}, {{3, 3, 7, 7}});
    ASSERT_EQ(out.size(), 4u);
    EXPECT_TRUE(SameRect(out[0], FrameBox{0, 0, 10, 3}));
    EXPECT_TRUE(SameRect(out[1], FrameBox{0, 3, 3, 7}));
    EXPECT_TRUE(SameRect(out[2], FrameBox{7, 3, 10, 7}));
    EXPECT_TRUE(SameRect(out[3], FrameBox{0, 7, 10, 10}));
}

TEST(UncoveredRects, OverlappingCoversCountOnce) {
    std::vector<FrameBox> out = UncoveredRects(FrameBox{0, 0, 10, 4}, {{1, 0, 5, 4}, {3, 0, 6, 4}});
    ASSERT_EQ(out.size(), 2u);
    EXPECT_TRUE(SameRect(out[0], FrameBox{0, 0, 1, 4}));
    EXPECT_TRUE(SameRect(out[1], FrameBox{6, 0, 10, 4}));
}

TEST(UncoveredRects, EmptyOrInvertedOrFarAwayRectsCoverNothing) {
    std::vector<FrameBox> out =
        UncoveredRects(FrameBox{0, 0, 8, 8}, {{4, 4, 4, 9}, {6, 6, 2, 2}, {100, 100, 200, 200}, {-9, -9, 0, 0}});
    ASSERT_EQ(out.size(), 1u);
    EXPECT_TRUE(SameRect(out[0], FrameBox{0, 0, 8, 8}));
}

TEST(UncoveredRects, EmptyAreaGivesNothing) {
    EXPECT_TRUE(UncoveredRects(FrameBox{5, 5, 5, 9}, {}).empty());
    EXPECT_TRUE(UncoveredRects(FrameBox{5, 5, 2, 2}, {}).empty());
}

TEST(MainFrame, ScreenTooSmallForTheTableStillGivesSaneAreas) {
    // Far below what the game accepts: the table turns inside out; nothing may leave the screen.
    for (const ScreenSize& s : {ScreenSize{60, 40}, ScreenSize{1, 1}, ScreenSize{0, 0}})
        for (const FrameArea& a : MainFrameAreas(s.width, s.height, kShipped)) {
            EXPECT_GE(a.rect.left, 0);
            EXPECT_LE(a.rect.right, s.width);
            EXPECT_GE(a.rect.top, 0);
            EXPECT_LE(a.rect.bottom, s.height);
        }
}
