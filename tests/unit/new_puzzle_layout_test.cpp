// The new-puzzle screen's geometry and small rules: thumbnail fitting and centring, slot places, the
// image scroll range, which entry a slot shows, shape cycling and the page wipe's strips.
#include <gtest/gtest.h>

#include "setup/new_puzzle_layout.h"

TEST(NewPuzzleLayout, LandscapeThumbnailTouchesTheWidthAndIsCentred) {
    Rect r = PlaceThumbnail(640, 480);
    EXPECT_EQ(r.width, 104);
    EXPECT_EQ(r.height, 78);
    EXPECT_EQ(r.x, 2);
    EXPECT_EQ(r.y, 24);  // (127 - 78) / 2
}

TEST(NewPuzzleLayout, PortraitThumbnailTouchesTheHeightAndIsCentred) {
    Rect r = PlaceThumbnail(480, 640);
    EXPECT_EQ(r.width, 92);
    EXPECT_EQ(r.height, 123);
    EXPECT_EQ(r.x, 8);
    EXPECT_EQ(r.y, 2);
}

TEST(NewPuzzleLayout, ThumbnailOfTheBoxShapeFillsTheBoxWithTheFrameBandAllRound) {
    Rect r = PlaceThumbnail(1040, 1230);
    EXPECT_EQ(r.x, 2);
    EXPECT_EQ(r.y, 2);
    EXPECT_EQ(r.width, 104);
    EXPECT_EQ(r.height, 123);
    EXPECT_EQ(r.x + r.width + kSelectionFrameWidth, kSlotWidth);
    EXPECT_EQ(r.y + r.height + kSelectionFrameWidth, kSlotHeight);
}

TEST(NewPuzzleLayout, SmallImagesAreEnlargedToTheBox) {
    Rect r = PlaceThumbnail(52, 39);
    EXPECT_EQ(r.width, 104);
    EXPECT_EQ(r.height, 78);
}

TEST(NewPuzzleLayout, ImageWithoutAreaHasNoThumbnail) {
    Rect r = PlaceThumbnail(0, 480);
    EXPECT_EQ(r.width, 0);
    EXPECT_EQ(r.height, 0);
}

TEST(NewPuzzleLayout, SlotsStand111PixelsApartFrom106) {
    EXPECT_EQ(SlotLeft(0), 106);
    EXPECT_EQ(SlotLeft(1), 217);
    EXPECT_EQ(SlotLeft(2), 328);
    EXPECT_EQ(SlotLeft(3), 439);
    // The last slot ends left of the image scroll bar.
    EXPECT_LE(SlotLeft(3) + kSlotWidth, kImageScrollAt.x);
}

TEST(NewPuzzleLayout, TabsFitSideBySideAboveThePage) {
    EXPECT_EQ(TabLeft(0), kPageArea.x + 1);
    for (int i = 1; i < kNewPuzzlePageCount; ++i) EXPECT_GE(TabLeft(i), TabLeft(i - 1) + 120);
    EXPECT_LE(TabLeft(kNewPuzzlePageCount - 1) + 120, kPageArea.x + kPageArea.width);
}

TEST(NewPuzzleLayout, ImageScrollRunsFromFourLessCountToZero) {
    EXPECT_EQ(ImageScrollMinimum(7), -3);
    EXPECT_EQ(ImageScrollMinimum(5), -1);
    EXPECT_EQ(ImageScrollMinimum(4), 0);
}

TEST(NewPuzzleLayout, FewerThanFourImagesCannotScroll) {
    EXPECT_EQ(ImageScrollMinimum(3), 0);
    EXPECT_EQ(ImageScrollMinimum(2), 0);
    EXPECT_EQ(ImageScrollMinimum(0), 0);
}

TEST(NewPuzzleLayout, SlotShowsEntrySlotLessScrollPosition) {
    EXPECT_EQ(SlotEntry(0, 0, 7), 0);
    EXPECT_EQ(SlotEntry(3, 0, 7), 3);
    EXPECT_EQ(SlotEntry(0, -3, 7), 3);
    EXPECT_EQ(SlotEntry(3, -3, 7), 6);
    EXPECT_EQ(SlotEntry(2, -1, 7), 3);
}

TEST(NewPuzzleLayout, SlotsBeyondTheListShowNothing) {
    EXPECT_EQ(SlotEntry(0, 0, 2), 0);
    EXPECT_EQ(SlotEntry(1, 0, 2), 1);
    EXPECT_EQ(SlotEntry(2, 0, 2), -1);
    EXPECT_EQ(SlotEntry(3, 0, 2), -1);
    EXPECT_EQ(SlotEntry(0, 0, 0), -1);
    EXPECT_EQ(SlotEntry(0, 1, 7), -1);  // a position above the maximum would point before the list
}

TEST(NewPuzzleLayout, ShapesCycleBackToTheFirstAfterThree) {
    EXPECT_EQ(NextShape(0), 1);
    EXPECT_EQ(NextShape(1), 2);
    EXPECT_EQ(NextShape(2), 0);
    int shape = 0;
    for (int i = 0; i < 3; ++i) shape = NextShape(shape);
    EXPECT_EQ(shape, 0);
}

TEST(NewPuzzleLayout, WipeCoversThePageAreaInFourPixelStripsFromTheTop) {
    ASSERT_EQ(WipeStripCount(), 58);  // v = 2, 6, .., 230
    int32_t next = 0;
    for (int k = 0; k < WipeStripCount(); ++k) {
        Rect s = WipeStrip(k);
        EXPECT_EQ(s.x, 0);
        EXPECT_EQ(s.width, 500);
        EXPECT_EQ(s.y, next) << k;
        EXPECT_EQ(s.height, k + 1 < WipeStripCount() ? 4 : 2) << k;
        next = s.y + s.height;
    }
    EXPECT_EQ(next, 230);
}

TEST(NewPuzzleLayout, ShapeChecksStandInAColumnRightOfTheShapePicture) {
    for (int k = 0; k < kShapeCount; ++k) {
        Point p = ShapeCheckPlace(k);
        EXPECT_GE(p.x, kShapePictureAt.x + 200);
        EXPECT_LE(p.x + 150, kPageArea.x + kPageArea.width);
        if (k) {
            EXPECT_EQ(p.y - ShapeCheckPlace(k - 1).y, 40);
        }
    }
}
