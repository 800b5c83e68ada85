// Layout of the tool and options bars, their panels and buttons, and the panels' auto-hide bounds.
#include <gtest/gtest.h>

#include "extras/bar_layout.h"

namespace {

void ExpectRect(const BarRect& r, int32_t x, int32_t y, int32_t width, int32_t height, const char* what) {
    EXPECT_EQ(r.x, x) << what;
    EXPECT_EQ(r.y, y) << what;
    EXPECT_EQ(r.width, width) << what;
    EXPECT_EQ(r.height, height) << what;
}

}  // namespace

TEST(BarLayout, WindowsOf1024x768) {
    ExpectRect(OptionsPanelRect(1024, 768), 0, 665, 1024, 103, "options panel");
    ExpectRect(ToolsPanelRect(1024, 768), 0, 78, 98, 690, "tools panel");
    ExpectRect(OptionsBarRect(1024, 768), 0, 743, 1024, 25, "options bar");
    ExpectRect(ToolsBarRect(1024, 768), 0, 78, 25, 665, "tools bar");
}

TEST(BarLayout, WindowsOf800x600) {
    ExpectRect(OptionsPanelRect(800, 600), 0, 497, 800, 103, "options panel");
    ExpectRect(ToolsPanelRect(800, 600), 0, 78, 98, 522, "tools panel");
    ExpectRect(OptionsBarRect(800, 600), 0, 575, 800, 25, "options bar");
    ExpectRect(ToolsBarRect(800, 600), 0, 78, 25, 497, "tools bar");
}

TEST(BarLayout, ToolsButtonsOf768ScreenStep138) {
    EXPECT_EQ(ToolsButtonStep(768), 138);
    EXPECT_EQ(ToolsButtonY(768, 1), 103);
    EXPECT_EQ(ToolsButtonY(768, 2), 241);
    EXPECT_EQ(ToolsButtonY(768, 3), 379);
    EXPECT_EQ(ToolsButtonY(768, 4), 517);
}

TEST(BarLayout, ToolsButtonsOf600ScreenTruncateTheFifth) {
    EXPECT_EQ(ToolsButtonStep(600), 104);  // 522 * 0.2 = 104.4
    EXPECT_EQ(ToolsButtonY(600, 1), 69);
    EXPECT_EQ(ToolsButtonY(600, 2), 173);
    EXPECT_EQ(ToolsButtonY(600, 3), 277);
    EXPECT_EQ(ToolsButtonY(600, 4), 381);
}

TEST(BarLayout, ToolsStepOfAnExactFifthIsNotRoundedDown) {
    // (height - 78) a multiple of 5: the fifth is whole and must not lose one to the rounding of 0.2.
    for (int32_t height = 578; height <= 2078; height += 5)
        EXPECT_EQ(ToolsButtonStep(height), (height - 78) / 5) << height;
    EXPECT_EQ(ToolsButtonStep(582), 100);  // 100.8
}

TEST(BarLayout, OptionsButtonsDivideTheProductByFour) {
    EXPECT_EQ(OptionsButtonX(1024, 1), 221);
    EXPECT_EQ(OptionsButtonX(1024, 2), 477);
    EXPECT_EQ(OptionsButtonX(1024, 3), 733);
    EXPECT_EQ(OptionsButtonX(800, 1), 165);
    EXPECT_EQ(OptionsButtonX(800, 2), 365);
    EXPECT_EQ(OptionsButtonX(800, 3), 565);
    // k * W / 4, not k * (W / 4): 2 * 1023 / 4 = 511 where 2 * 255 would give 510.
    EXPECT_EQ(OptionsButtonX(1023, 1), 220);
    EXPECT_EQ(OptionsButtonX(1023, 2), 476);
    EXPECT_EQ(OptionsButtonX(1023, 3), 732);
}

TEST(BarLayout, LabelsCentredOnTheScreenInTheirBarsCoordinates) {
    EXPECT_EQ(ToolsLabelY(768), 236);  // 314 on the screen, less the bar's top at 78
    EXPECT_EQ(ToolsLabelY(600), 152);
    EXPECT_EQ(ToolsLabelY(601), 152);  // (601 - 140) / 2 truncates
    EXPECT_EQ(OptionsLabelX(1024), 460);
    EXPECT_EQ(OptionsLabelX(800), 348);
    EXPECT_EQ(OptionsLabelX(801), 348);
}

TEST(BarLayout, PointerOnTheRightOrBottomEdgeKeepsThePanel) {
    EXPECT_TRUE(PanelKeepsPointer(98, 100, 98, 690));
    EXPECT_TRUE(PanelKeepsPointer(50, 690, 98, 690));
    EXPECT_TRUE(PanelKeepsPointer(98, 690, 98, 690));
    EXPECT_TRUE(PanelKeepsPointer(1024, 103, 1024, 103));
}

TEST(BarLayout, PointerOnTheLeftOrTopEdgeKeepsThePanel) {
    EXPECT_TRUE(PanelKeepsPointer(0, 0, 98, 690));
    EXPECT_TRUE(PanelKeepsPointer(0, 50, 1024, 103));
}

TEST(BarLayout, PointerOnePixelPastAnyEdgeHidesThePanel) {
    EXPECT_FALSE(PanelKeepsPointer(99, 100, 98, 690));
    EXPECT_FALSE(PanelKeepsPointer(50, 691, 98, 690));
    EXPECT_FALSE(PanelKeepsPointer(-1, 100, 98, 690));
    EXPECT_FALSE(PanelKeepsPointer(50, -1, 98, 690));
    EXPECT_FALSE(PanelKeepsPointer(1025, 50, 1024, 103));
    EXPECT_FALSE(PanelKeepsPointer(500, 104, 1024, 103));
}

TEST(BarLayout, GatherButtonSitsInTheFreeSpaceBelowTheFourthButtonOnEveryScreen) {
    EXPECT_EQ(GatherButtonY(600), 451);  // between 431 and the panel's bottom at 522
    EXPECT_EQ(GatherButtonY(768), 603);  // between 567 and 690
    for (int32_t h = 600; h <= 2160; ++h) {
        const int32_t y = GatherButtonY(h), fourthBottom = ToolsButtonY(h, 4) + kPanelButtonSize;
        ASSERT_GE(y, fourthBottom + 10) << h;                                   // clear of the honour-roll button
        ASSERT_LE(y + kPanelButtonSize, ToolsPanelRect(800, h).height - 10) << h;  // inside the panel
    }
}

// The cloth and language buttons sit in the free space at both ends, clear of the three and of the edges.
TEST(BarLayout, TheClothAndLanguageButtonsStandInTheFreeSpaceAtBothEnds) {
    for (int32_t width : {800, 1024, 1280, 1920}) {
        const int32_t cloth = OptionsExtraButtonX(width, 4), language = OptionsExtraButtonX(width, 5);
        EXPECT_GE(cloth, 10) << width;
        EXPECT_LE(cloth + kPanelButtonSize + 10, OptionsButtonX(width, 1)) << width;
        EXPECT_GE(language, OptionsButtonX(width, 3) + kPanelButtonSize + 10) << width;
        EXPECT_LE(language + kPanelButtonSize + 10, width) << width;
    }
    EXPECT_EQ(OptionsExtraButtonX(800, 4), 57);
    EXPECT_EQ(OptionsExtraButtonX(800, 5), 682);
}
