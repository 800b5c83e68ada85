// The information screens' portable half: the orchid text's shape (pages, paragraphs, first and last
// lines, line lengths, the steps between lines), its page turns and line places, and the gallery's
// pages of fifteen and where its wells and buttons stand on the panel.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "extras/gallery_rules.h"
#include "extras/info_text.h"

namespace {

// Lines per paragraph of a page, read from the paragraph ends.
std::vector<int> ParagraphSizes(int page) {
    std::vector<int> sizes;
    int lines = 0;
    for (int line = 0; line < kInfoLinesPerPage; ++line) {
        const InfoLine* entry = InfoTextLine(page, line);
        if (!entry) return {};
        ++lines;
        if (entry->endsParagraph) {
            sizes.push_back(lines);
            lines = 0;
        }
    }
    if (lines) sizes.push_back(lines);  // an unfinished paragraph shows as an extra entry
    return sizes;
}

std::string Line(int page, int line) {
    const InfoLine* entry = InfoTextLine(page, line);
    return entry && entry->text ? entry->text : "<none>";
}

bool Overlap(PanelPlace a, int32_t aWidth, int32_t aHeight, PanelPlace b, int32_t bWidth, int32_t bHeight) {
    return a.x < b.x + bWidth && b.x < a.x + aWidth && a.y < b.y + bHeight && b.y < a.y + aHeight;
}

}  // namespace

TEST(InfoText, TwoPagesOfTwentySixLines) {
    for (int page = 0; page < kInfoPageCount; ++page)
        for (int line = 0; line < kInfoLinesPerPage; ++line) {
            const InfoLine* entry = InfoTextLine(page, line);
            ASSERT_NE(entry, nullptr) << "page " << page << " line " << line;
            ASSERT_NE(entry->text, nullptr) << "page " << page << " line " << line;
        }
    EXPECT_EQ(kInfoPageCount, 2);
    EXPECT_EQ(kInfoLinesPerPage, 26);
    EXPECT_EQ(InfoTextLine(0, 26), nullptr);
    EXPECT_EQ(InfoTextLine(2, 0), nullptr);
    EXPECT_EQ(InfoTextLine(-1, 0), nullptr);
    EXPECT_EQ(InfoTextLine(0, -1), nullptr);
}

TEST(InfoText, PageZeroParagraphsHoldOneTwoTwoTwoFourThreeTwoOneTwoTwoThreeTwoLines) {
    EXPECT_EQ(ParagraphSizes(0), (std::vector<int>{1, 2, 2, 2, 4, 3, 2, 1, 2, 2, 3, 2}));
}

TEST(InfoText, PageOneParagraphsHoldOneThreeThreeOneThreeTwoOneTwoOneTwoThreeOneThreeLines) {
    EXPECT_EQ(ParagraphSizes(1), (std::vector<int>{1, 3, 3, 1, 3, 2, 1, 2, 1, 2, 3, 1, 3}));
}

TEST(InfoText, PageZeroOpensWithTheOrchidFamilyAndEndsWithThePrice) {
    EXPECT_EQ(Line(0, 0),
              "Orchids constitute one of the largest and most highly evolved flower families on our planet.");
    EXPECT_EQ(Line(0, 0).rfind("Orchids constitute one of the", 0), 0u);
    EXPECT_EQ(Line(0, 25), "for a superior plant. Now you can purchase a very nice one for less than $25.");
}

TEST(InfoText, PageOneOpensWithGrowthFormsAndEndsWithPollinators) {
    EXPECT_EQ(Line(1, 0), "Orchids can be:");
    EXPECT_EQ(Line(1, 25), "specific insects or birds.");
}

TEST(InfoText, EveryLineFitsItsHundredByteBuffer) {
    for (int page = 0; page < kInfoPageCount; ++page)
        for (int line = 0; line < kInfoLinesPerPage; ++line) {
            std::string text = Line(page, line);
            EXPECT_LT(text.size(), size_t(kInfoLineCapacity)) << "page " << page << " line " << line;
            EXPECT_FALSE(text.empty()) << "page " << page << " line " << line;
        }
}

TEST(InfoText, StepIsThirteenWithinAParagraphAndTwentyAfterIt) {
    for (int page = 0; page < kInfoPageCount; ++page)
        for (int line = 0; line < kInfoLinesPerPage; ++line) {
            const InfoLine* entry = InfoTextLine(page, line);
            ASSERT_NE(entry, nullptr);
            EXPECT_EQ(InfoScreenStep(page, line), entry->endsParagraph ? 20 : 13)
                << "page " << page << " line " << line;
        }
}

TEST(InfoText, LinesStartAtTheScreensMiddleLessThreeHundredAndTwoHundredFifty) {
    EXPECT_EQ(InfoTextLeft(800), 100);
    EXPECT_EQ(InfoTextTop(600), 50);
    EXPECT_EQ(InfoTextLeft(1024), 212);
    EXPECT_EQ(InfoTextTop(768), 134);
}

TEST(InfoText, EachLineTopAddsTheStepsOfTheLinesAboveIt) {
    for (int page = 0; page < kInfoPageCount; ++page) {
        int32_t expected = 50;
        for (int line = 0; line < kInfoLinesPerPage; ++line) {
            EXPECT_EQ(InfoLineTop(50, page, line), expected) << "page " << page << " line " << line;
            expected += InfoScreenStep(page, line);
        }
    }
    // Page 0: 25 steps, eleven of them after a paragraph's last line.
    EXPECT_EQ(InfoLineTop(0, 0, 25), 11 * 20 + 14 * 13);
    // Page 1: twelve paragraph ends among its first 25 lines.
    EXPECT_EQ(InfoLineTop(0, 1, 25), 12 * 20 + 13 * 13);
}

TEST(InfoText, NextPageOnlyFromPageZero) {
    EXPECT_EQ(InfoNextPage(0), 1);
    EXPECT_EQ(InfoNextPage(1), 1);
}

TEST(InfoText, PreviousPageOnlyFromPageOne) {
    EXPECT_EQ(InfoPreviousPage(1), 0);
    EXPECT_EQ(InfoPreviousPage(0), 0);
}

// The text's last line on its longer page ends above the buttons.
TEST(InfoText, ButtonsStandBelowTheLastLineAndInsideThePanel) {
    int32_t lastTop = InfoLineTop(50, 1, 25) > InfoLineTop(50, 0, 25) ? InfoLineTop(50, 1, 25) : InfoLineTop(50, 0, 25);
    const PanelPlace places[] = {kInfoClosePlace, kInfoPrintPlace, kInfoNextPlace, kInfoPreviousPlace};
    for (const PanelPlace& place : places) {
        EXPECT_GT(place.y, lastTop + 16);
        EXPECT_LE(place.x + 60, kPanelWidth - 30);
        EXPECT_LE(place.y + kPanelButtonSide, kPanelHeight - 30);
    }
    EXPECT_FALSE(Overlap(kInfoPreviousPlace, 60, 36, kInfoNextPlace, 60, 36));
    EXPECT_FALSE(Overlap(kInfoNextPlace, 60, 36, kInfoPrintPlace, 50, 50));
    EXPECT_FALSE(Overlap(kInfoPrintPlace, 50, 50, kInfoClosePlace, 50, 50));
}

TEST(GalleryRules, NextMovesFifteenOnWhilePicturesRemain) {
    EXPECT_EQ(GalleryNextFirst(0, 16), 15);
    EXPECT_EQ(GalleryNextFirst(0, 40), 15);
    EXPECT_EQ(GalleryNextFirst(15, 40), 30);
}

TEST(GalleryRules, NextDoesNothingOnTheLastPage) {
    EXPECT_EQ(GalleryNextFirst(0, 15), 0);
    EXPECT_EQ(GalleryNextFirst(0, 3), 0);
    EXPECT_EQ(GalleryNextFirst(0, 0), 0);
    EXPECT_EQ(GalleryNextFirst(30, 40), 30);
    EXPECT_EQ(GalleryNextFirst(15, 30), 15);
}

TEST(GalleryRules, PreviousMovesFifteenBackNotBelowZero) {
    EXPECT_EQ(GalleryPreviousFirst(30), 15);
    EXPECT_EQ(GalleryPreviousFirst(15), 0);
    EXPECT_EQ(GalleryPreviousFirst(7), 0);
}

TEST(GalleryRules, PreviousDoesNothingOnTheFirstPage) { EXPECT_EQ(GalleryPreviousFirst(0), 0); }

TEST(GalleryRules, ButtonShowsFirstPlusItsIndexOrNothingPastTheEnd) {
    EXPECT_EQ(GalleryPictureOnButton(0, 0, 11), 0);
    EXPECT_EQ(GalleryPictureOnButton(0, 10, 11), 10);
    EXPECT_EQ(GalleryPictureOnButton(0, 11, 11), -1);
    EXPECT_EQ(GalleryPictureOnButton(15, 4, 20), 19);
    EXPECT_EQ(GalleryPictureOnButton(15, 5, 20), -1);
    EXPECT_EQ(GalleryPictureOnButton(0, 15, 40), -1);
    EXPECT_EQ(GalleryPictureOnButton(0, -1, 40), -1);
}

TEST(GalleryRules, PageArrowsOnlyForMoreThanFifteenPictures) {
    EXPECT_FALSE(GalleryHasPages(0));
    EXPECT_FALSE(GalleryHasPages(15));
    EXPECT_TRUE(GalleryHasPages(16));
}

TEST(GalleryRules, FifteenWellsInThreeRowsOfFiveInsideThePanel) {
    for (int32_t k = 0; k < kGalleryPageSize; ++k) {
        PanelPlace well = GalleryWellPlace(k);
        EXPECT_EQ(well.x, 70 + 136 * (k % 5)) << k;
        EXPECT_EQ(well.y, 70 + 136 * (k / 5)) << k;
        EXPECT_GE(well.x, 30);
        EXPECT_GE(well.y, 30);
        EXPECT_LE(well.x + kGalleryWellSide, kPanelWidth - 30);
        EXPECT_LE(well.y + kGalleryWellSide, kPanelHeight - 30);
        for (int32_t other = k + 1; other < kGalleryPageSize; ++other)
            EXPECT_FALSE(Overlap(well, kGalleryWellSide, kGalleryWellSide, GalleryWellPlace(other), kGalleryWellSide,
                                 kGalleryWellSide))
                << k << " and " << other;
    }
    EXPECT_EQ(GalleryWellPlace(15).x, -1);
}

TEST(GalleryRules, ThumbnailAndItsHoverFrameFitTheWell) {
    // The frame's band lies one to three pixels outside the thumbnail.
    EXPECT_LE(kGalleryThumbnailSide + 2 * 3, kGalleryWellSide);
}

TEST(GalleryRules, ButtonsStandBelowTheWellsWithoutOverlapping) {
    const PanelPlace buttons[] = {kGalleryPreviousPlace, kGalleryNextPlace, kGalleryInfoPlace, kGalleryClosePlace};
    int32_t wellsBottom = GalleryWellPlace(kGalleryPageSize - 1).y + kGalleryWellSide;
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_GT(buttons[i].y, wellsBottom);
        EXPECT_LE(buttons[i].y + kPanelButtonSide, kPanelHeight - 30);
        for (size_t j = i + 1; j < 4; ++j)
            EXPECT_FALSE(Overlap(buttons[i], kPanelButtonSide, kPanelButtonSide, buttons[j], kPanelButtonSide,
                                 kPanelButtonSide));
    }
    // The page arrows straddle the middle of the panel, under the middle well.
    EXPECT_EQ(kGalleryPreviousPlace.x + kPanelButtonSide + kGalleryNextPlace.x, kPanelWidth);
}

namespace {

// A width x height area of 32-bit pixels in one colour, shaded as a socket.
std::vector<uint8_t> ShadedArea(int32_t width, int32_t height, uint8_t blue, uint8_t green, uint8_t red) {
    std::vector<uint8_t> pixels(size_t(width) * size_t(height) * 4);
    for (size_t i = 0; i < pixels.size(); i += 4) {
        pixels[i] = blue;
        pixels[i + 1] = green;
        pixels[i + 2] = red;
        pixels[i + 3] = 0;
    }
    ShadeButtonSocket(pixels.data(), width, height, width * 4);
    return pixels;
}

const uint8_t* PixelAt(const std::vector<uint8_t>& pixels, int32_t width, int32_t x, int32_t y) {
    return &pixels[(size_t(y) * size_t(width) + size_t(x)) * 4];
}

}  // namespace

// 30 % of the way to dark walnut (red 42, green 23, blue 12): 200 -> 152.6, 180 -> 132.9, 140 -> 101.6.
TEST(GalleryRules, SocketDarkensItsMiddleThirtyPercentTowardsWalnut) {
    std::vector<uint8_t> pixels = ShadedArea(58, 58, 140, 180, 200);
    for (int32_t y = 8; y < 50; y += 6)
        for (int32_t x = 1; x < 57; x += 5) {
            const uint8_t* p = PixelAt(pixels, 58, x, y);
            EXPECT_EQ(p[0], 102) << x << "," << y;
            EXPECT_EQ(p[1], 133) << x << "," << y;
            EXPECT_EQ(p[2], 153) << x << "," << y;
            EXPECT_EQ(p[3], 0) << x << "," << y;
        }
}

TEST(GalleryRules, SocketLeavesItsRoundedCornersAlone) {
    std::vector<uint8_t> pixels = ShadedArea(58, 58, 140, 180, 200);
    for (const auto& corner : {std::pair<int, int>{0, 0}, {57, 0}, {0, 57}, {57, 57}, {1, 1}, {56, 56}}) {
        const uint8_t* p = PixelAt(pixels, 58, corner.first, corner.second);
        EXPECT_EQ(p[0], 140) << corner.first << "," << corner.second;
        EXPECT_EQ(p[1], 180) << corner.first << "," << corner.second;
        EXPECT_EQ(p[2], 200) << corner.first << "," << corner.second;
    }
}

// The straight sides are shaded to their last pixel; on the corner arcs a pixel the arc crosses is
// shaded by the part of it that lies inside.
TEST(GalleryRules, SocketSidesAreShadedToTheEdgeAndItsCornerArcsSoftly) {
    std::vector<uint8_t> pixels = ShadedArea(58, 58, 140, 180, 200);
    EXPECT_EQ(PixelAt(pixels, 58, 0, 29)[2], 153);
    EXPECT_EQ(PixelAt(pixels, 58, 29, 0)[2], 153);
    EXPECT_EQ(PixelAt(pixels, 58, 57, 29)[2], 153);
    EXPECT_EQ(PixelAt(pixels, 58, 29, 57)[2], 153);
    // (2.5, 2.5) lies 0.22 inside the arc round (8, 8): 72 % covered, 21.6 % of the way.
    EXPECT_EQ(PixelAt(pixels, 58, 2, 2)[2], 166);
    EXPECT_EQ(PixelAt(pixels, 58, 55, 55)[2], 166);
}

TEST(GalleryRules, SocketRefusesAreasItCannotHold) {
    uint8_t pixels[16] = {9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9};
    ShadeButtonSocket(nullptr, 2, 2, 8);
    ShadeButtonSocket(pixels, 2, 2, 4);  // a stride shorter than a row
    ShadeButtonSocket(pixels, 0, 2, 8);
    for (uint8_t value : pixels) EXPECT_EQ(value, 9);
}
