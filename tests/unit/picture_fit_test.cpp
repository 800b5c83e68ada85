// The picture window's arithmetic: the photograph fitted into the 550 x 388 well, the title's place,
// and the picture number read from the end of a picture's path.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "setup/picture_fit.h"

namespace {

void ExpectFit(int32_t width, int32_t height, int32_t fittedWidth, int32_t fittedHeight) {
    PictureSize fitted = FitPictureToWell(width, height);
    EXPECT_EQ(fitted.width, fittedWidth) << width << " x " << height;
    EXPECT_EQ(fitted.height, fittedHeight) << width << " x " << height;
}

}  // namespace

TEST(PictureFitWell, PictureOfTheWellsSizeKeepsItsSize) { ExpectFit(550, 388, 550, 388); }

TEST(PictureFitWell, TallPictureIsFittedToTheWellsHeight) { ExpectFit(300, 600, 194, 388); }

TEST(PictureFitWell, WidePictureIsFittedToTheWellsWidth) { ExpectFit(1100, 400, 550, 200); }

// q = 550 * 776 / 1100 = 388 exactly: not above 388, so the width binds.
TEST(PictureFitWell, QuotientOfExactly388IsWidthBound) { ExpectFit(1100, 776, 550, 388); }

// q = 550 * 777 / 1100 = 388.5: the height binds, 1100 * 388 / 777 = 549.29...
TEST(PictureFitWell, QuotientJustAbove388IsHeightBound) { ExpectFit(1100, 777, 549, 388); }

// The factor is never rounded before the multiplication: 800 x 600 photographs (the game's own) fill
// the well's height to the last row.
TEST(PictureFitWell, FourByThreePhotographFillsTheWellsHeightExactly) {
    ExpectFit(800, 600, 517, 388);
    ExpectFit(1024, 768, 517, 388);
    ExpectFit(640, 480, 517, 388);
}

TEST(PictureFitWell, SmallPictureIsEnlargedToTheWell) { ExpectFit(55, 20, 550, 200); }

TEST(PictureFitWell, PictureWithoutAreaGivesNothing) {
    ExpectFit(0, 100, 0, 0);
    ExpectFit(100, 0, 0, 0);
    ExpectFit(-5, 100, 0, 0);
}

TEST(PictureFitWell, HairlinePictureKeepsOnePixelAcross) {
    ExpectFit(1, 100000, 1, 388);
    ExpectFit(100000, 1, 550, 1);
}

TEST(PictureFitWell, HugeSidesDoNotOverflow) { ExpectFit(2000000000, 1000000000, 550, 275); }

// Every fit keeps inside the well, touches one of its sides and keeps the picture's shape to within the
// truncation of one side.
TEST(PictureFitWell, EveryFitStaysInsideTheWellAndKeepsTheShape) {
    for (int32_t width = 1; width <= 1200; width += 7)
        for (int32_t height = 1; height <= 1200; height += 11) {
            PictureSize fitted = FitPictureToWell(width, height);
            ASSERT_LE(fitted.width, kPictureWellWidth) << width << " x " << height;
            ASSERT_LE(fitted.height, kPictureWellHeight) << width << " x " << height;
            ASSERT_TRUE(fitted.width == kPictureWellWidth || fitted.height == kPictureWellHeight)
                << width << " x " << height;
            // fittedWidth / fittedHeight against width / height, cross-multiplied: the truncated side is
            // less than one pixel off (a width of 550 means the width bound).
            int64_t across = int64_t(fitted.width) * height - int64_t(fitted.height) * width;
            int64_t allowance = fitted.width == kPictureWellWidth ? width : height;
            ASSERT_LT(across < 0 ? -across : across, allowance)
                << width << " x " << height;
        }
}

TEST(PictureFitTitle, TitleIsCentredOnItsCharactersBeforeTheFirstPeriod) {
    // "A yellow daisy in the sun" has 25 characters before its period.
    EXPECT_EQ(TitleCharsBeforeDot("A yellow daisy in the sun.", 101), 25);
    EXPECT_EQ(PictureTitleLeft(800, "A yellow daisy in the sun.", 101), (800 - 15 * 25) / 2);
    // Only the first period counts: what follows it is not centred on.
    EXPECT_EQ(TitleCharsBeforeDot("Dew. On a leaf. At dawn.", 101), 3);
    EXPECT_EQ(PictureTitleLeft(1024, "Dew. On a leaf. At dawn.", 101), (1024 - 45) / 2);
}

TEST(PictureFitTitle, TitleWithoutAPeriodIsCountedToItsEnd) {
    EXPECT_EQ(TitleCharsBeforeDot("Storm clouds", 101), 12);
    EXPECT_EQ(PictureTitleLeft(800, "Storm clouds", 101), (800 - 180) / 2);
    EXPECT_EQ(TitleCharsBeforeDot("", 101), 0);
    EXPECT_EQ(PictureTitleLeft(800, "", 101), 400);
}

TEST(PictureFitTitle, TitleCountNeverReadsPastItsBuffer) {
    char unterminated[8];
    std::memset(unterminated, 'x', sizeof unterminated);
    EXPECT_EQ(TitleCharsBeforeDot(unterminated, int32_t(sizeof unterminated)), 8);
    EXPECT_EQ(TitleCharsBeforeDot(nullptr, 101), 0);
}

// A title wider than the screen starts left of it: the halving truncates toward zero.
TEST(PictureFitTitle, LongTitleStartsLeftOfTheScreen) {
    char title[101];
    std::memset(title, 'w', 100);
    title[100] = 0;
    EXPECT_EQ(PictureTitleLeft(800, title, 101), (800 - 1500) / 2);
    EXPECT_LT(PictureTitleLeft(800, title, 101), 0);
}

TEST(PictureFitTitle, TitleTopIs270AboveTheScreensMiddle) {
    EXPECT_EQ(PictureTitleTop(600), 30);
    EXPECT_EQ(PictureTitleTop(768), 114);
}

TEST(PictureFitNumber, PictureNumberIsTheTwoDigitsEndingTheName) {
    EXPECT_EQ(PictureNumberOfPath("C:\\Game\\Image\\Daisy11"), 11);
    EXPECT_EQ(PictureNumberOfPath("Image\\Waterdrop01"), 1);
    EXPECT_EQ(PictureNumberOfPath("Dandelion10"), 10);
}

TEST(PictureFitNumber, PictureNumberLooksPastTheExtension) {
    EXPECT_EQ(PictureNumberOfPath("C:\\Game\\Image\\Daisy11.bmp"), 11);
    EXPECT_EQ(PictureNumberOfPath("Image\\Storm09.bmp"), 9);
    // A period in a folder's name is no extension.
    EXPECT_EQ(PictureNumberOfPath("C:\\Game.v2\\Image\\Meadow06"), 6);
}

TEST(PictureFitNumber, BackslashBeforeTheUnitsMeansNoTensDigit) {
    EXPECT_EQ(PictureNumberOfPath("Image\\7"), 7);
    EXPECT_EQ(PictureNumberOfPath("Image\\7.bmp"), 7);
    EXPECT_EQ(PictureNumberOfPath("4"), 4);
}

TEST(PictureFitNumber, LetterBeforeTheUnitsMeansNoTensDigit) { EXPECT_EQ(PictureNumberOfPath("Image\\Rose7.bmp"), 7); }

TEST(PictureFitNumber, NameWithoutANumberHasNone) {
    EXPECT_EQ(PictureNumberOfPath("Image\\Rose.bmp"), -1);
    EXPECT_EQ(PictureNumberOfPath("Image\\"), -1);
    EXPECT_EQ(PictureNumberOfPath(".bmp"), -1);
    EXPECT_EQ(PictureNumberOfPath(""), -1);
    EXPECT_EQ(PictureNumberOfPath(nullptr), -1);
}
