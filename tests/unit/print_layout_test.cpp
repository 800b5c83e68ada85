// Printed page arithmetic: the banners, the photograph's five bands, the caption's path and file, and
// the lines of the information pages.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "extras/info_text.h"
#include "extras/print_layout.h"
#include "test_support.h"

namespace {

// An A4 sheet at 300 dots per inch, as Wine's PostScript driver offers it.
constexpr int32_t kA4Width = 2479, kA4Height = 3508;

PrintFrame A4Frame() {
    PrintFrame frame{};
    EXPECT_TRUE(LayOutPrintFrame(kA4Width, kA4Height, &frame));
    return frame;
}

std::string CaptionOf(const char* imagePath, size_t capacity = 260) {
    std::vector<char> buffer(capacity + 8, '#');
    std::memcpy(buffer.data(), imagePath, std::strlen(imagePath) + 1);
    MakeCaptionPath(buffer.data(), capacity);
    return std::string(buffer.data());
}

// Bottom of a page's last line for a layout.
int32_t LastLineBottom(const InfoPrintLayout& layout) {
    return layout.y[kInfoLinesPerPage - 1] + layout.lineHeight;
}

}  // namespace

TEST(PrintLayout, BannersSpanTheWidthOfAPortraitPage) {
    PrintFrame frame = A4Frame();
    // Scale 2479 / 1496 for both: 1496 and 243, 228 grow to 2479 x 402 and 2479 x 377.
    EXPECT_EQ(frame.headerWidth, 2479);
    EXPECT_EQ(frame.headerHeight, 402);
    EXPECT_EQ(frame.footerWidth, 2479);
    EXPECT_EQ(frame.footerHeight, 377);
}

TEST(PrintLayout, BannersOnAStripTooLowForThemAreLimitedByThePageHeight) {
    PrintFrame frame{};
    ASSERT_TRUE(LayOutPrintFrame(3000, 150, &frame));
    // At the page's width the header would be 487 high and the footer 457: both scale to 150 high.
    EXPECT_EQ(frame.headerHeight, 150);
    EXPECT_EQ(frame.headerWidth, 923);   // 1496 * 150 / 243 = 923.4
    EXPECT_EQ(frame.footerHeight, 150);
    EXPECT_EQ(frame.footerWidth, 984);   // 1496 * 150 / 228 = 984.2
}

TEST(PrintLayout, PageWithoutAreaHasNoFrame) {
    PrintFrame frame{};
    EXPECT_FALSE(LayOutPrintFrame(0, 3508, &frame));
    EXPECT_FALSE(LayOutPrintFrame(2479, 0, &frame));
    EXPECT_FALSE(LayOutPrintFrame(-5, -5, &frame));
}

TEST(PrintLayout, WidePhotographIsLimitedByThePageWidth) {
    PrintFrame frame = A4Frame();
    PhotoPrintLayout photo{};
    ASSERT_TRUE(LayOutPhotograph(&frame, 1024, 640, &photo));
    // 640 * 2479 / 1024 = 1549 fits the 2327 between the banners: the width sets the scale.
    EXPECT_DOUBLE_EQ(photo.scale, 2479.0 / 1024.0);
    EXPECT_EQ(photo.width, 2479);
    EXPECT_EQ(photo.x, 0);
    EXPECT_EQ(photo.bandHeight, 309);  // 640 * 2.4209 / 5 = 309.9
    EXPECT_EQ(photo.bandRows, 128);
    EXPECT_EQ(photo.top, (3508 - 5 * 309) / 2);
}

TEST(PrintLayout, TallPhotographIsLimitedByTheRoomBetweenTheBanners) {
    PrintFrame frame = A4Frame();
    PhotoPrintLayout photo{};
    ASSERT_TRUE(LayOutPhotograph(&frame, 600, 1200, &photo));
    // The room is 3508 - 2 * 402 - 377 = 2327; at the page's width the picture would be 4958 high.
    EXPECT_DOUBLE_EQ(photo.scale, 2327.0 / 1200.0);
    EXPECT_EQ(photo.width, 1163);       // 600 * 1.9392 = 1163.5
    EXPECT_EQ(photo.bandHeight, 465);   // 2327 / 5 = 465.4
    EXPECT_EQ(photo.x, (2479 - 1163) / 2);
}

TEST(PrintLayout, BothPhotographsAreCentredOnTheFullPageHeight) {
    PrintFrame frame = A4Frame();
    for (auto size : {std::make_pair(1024, 640), std::make_pair(600, 1200), std::make_pair(3000, 100)}) {
        PhotoPrintLayout photo{};
        ASSERT_TRUE(LayOutPhotograph(&frame, size.first, size.second, &photo));
        int32_t printed = 5 * photo.bandHeight;
        EXPECT_EQ(photo.top, (kA4Height - printed) / 2) << size.first << "x" << size.second;
        // Not centred between the banners, whose middle lies lower (the header is the taller one).
        int32_t betweenBanners = (frame.headerHeight + kA4Height - frame.footerHeight - printed) / 2;
        EXPECT_NE(photo.top, betweenBanners) << size.first << "x" << size.second;
    }
}

TEST(PrintLayout, FirstBandReadIsTheBottomOneAndEachNextGoesOneBandHigher) {
    PrintFrame frame = A4Frame();
    PhotoPrintLayout photo{};
    ASSERT_TRUE(LayOutPhotograph(&frame, 1024, 640, &photo));
    EXPECT_EQ(PhotoBandY(&photo, 0), (3508 - 5 * 309) / 2 + 4 * 309);
    for (int32_t band = 1; band < kPrintBandCount; ++band)
        EXPECT_EQ(PhotoBandY(&photo, band), PhotoBandY(&photo, band - 1) - photo.bandHeight) << band;
    EXPECT_EQ(PhotoBandY(&photo, 4), photo.top);
    for (int32_t band = 0; band < kPrintBandCount; ++band) EXPECT_EQ(PhotoBandFirstRow(&photo, band), band * 128);
}

TEST(PrintLayout, HeightNotAMultipleOfFiveLosesItsTopRows) {
    PrintFrame frame = A4Frame();
    PhotoPrintLayout photo{};
    ASSERT_TRUE(LayOutPhotograph(&frame, 1024, 819, &photo));
    EXPECT_EQ(photo.bandRows, 163);
    // The five bands hold bottom-up rows 0 .. 814; rows 815 .. 818, the top four, are never printed.
    int32_t lastPrinted = PhotoBandFirstRow(&photo, 4) + photo.bandRows - 1;
    EXPECT_EQ(lastPrinted, 814);
    EXPECT_EQ(819 - 1 - lastPrinted, 819 % 5);
    // The bands are still as high as a fifth of the whole picture at that scale.
    EXPECT_EQ(photo.bandHeight, int32_t(819 * photo.scale * 0.2));
}

TEST(PrintLayout, PhotographLowerThanFiveRowsHasEmptyBands) {
    PrintFrame frame = A4Frame();
    PhotoPrintLayout photo{};
    ASSERT_TRUE(LayOutPhotograph(&frame, 20, 4, &photo));
    EXPECT_EQ(photo.bandRows, 0);
}

TEST(PrintLayout, ImageOrRoomWithoutAreaIsRefused) {
    PrintFrame frame = A4Frame();
    PhotoPrintLayout photo{};
    EXPECT_FALSE(LayOutPhotograph(&frame, 0, 640, &photo));
    EXPECT_FALSE(LayOutPhotograph(&frame, 1024, 0, &photo));
    EXPECT_FALSE(LayOutPhotograph(&frame, 1024, -640, &photo));
    // A landscape strip whose banners leave no room between them.
    PrintFrame strip{};
    ASSERT_TRUE(LayOutPrintFrame(3000, 150, &strip));
    EXPECT_FALSE(LayOutPhotograph(&strip, 1024, 640, &photo));
}

TEST(PrintLayout, CaptionPathReplacesTheExtension) {
    EXPECT_EQ(CaptionOf("C:\\Tavirel\\Image\\Daisy11.bmp"), "C:\\Tavirel\\Image\\Daisy11.txt");
    EXPECT_EQ(CaptionOf("Image\\photo.jpeg"), "Image\\photo.txt");
}

TEST(PrintLayout, CaptionPathReplacesOnlyFromTheLastDot) {
    EXPECT_EQ(CaptionOf("C:\\My.Pictures\\Image\\Rose.old.bmp"), "C:\\My.Pictures\\Image\\Rose.old.txt");
    // A dot in a folder name counts when the file name has none.
    EXPECT_EQ(CaptionOf("C:\\My.Pictures\\Image\\Rose"), "C:\\My.txt");
}

TEST(PrintLayout, PathWithoutADotGetsTheExtensionOverItsStartSoNoCaptionIsFound) {
    EXPECT_EQ(CaptionOf("C:\\Tavirel\\Image\\Daisy11"), ".txt");
    EXPECT_EQ(CaptionOf(""), ".txt");
}

TEST(PrintLayout, CaptionPathLooksAtTheFirst260CharactersOnly) {
    std::string path = "C:\\a.b\\" + std::string(300, 'x') + ".bmp";
    std::vector<char> buffer(path.begin(), path.end());
    buffer.push_back(0);
    MakeCaptionPath(buffer.data(), buffer.size());
    EXPECT_STREQ(buffer.data(), "C:\\a.txt");
}

TEST(PrintLayout, CaptionPathNeverWritesPastItsBuffer) {
    // A dot two places before the end of a 20-byte buffer: ".t" and the terminator fit, nothing more.
    std::vector<char> buffer(32, '#');
    std::memcpy(buffer.data(), "C:\\abcdefghijklmn.b", 20);
    MakeCaptionPath(buffer.data(), 20);
    EXPECT_STREQ(buffer.data(), "C:\\abcdefghijklmn.t");
    for (size_t i = 20; i < buffer.size(); ++i) EXPECT_EQ(buffer[i], '#') << i;
}

TEST(PrintLayout, CaptionIsReadWholeAndTerminated) {
    ScratchFolder folder;
    std::string text = "A yellow daisy glows in the afternoon sun.\r\nSecond line.";
    ASSERT_TRUE(WriteBytes(folder.File("Daisy.txt"), std::vector<uint8_t>(text.begin(), text.end())));
    char* caption = ReadCaptionText(folder.File("Daisy.txt").c_str());
    ASSERT_NE(caption, nullptr);
    EXPECT_EQ(std::string(caption), text);
    std::free(caption);
}

TEST(PrintLayout, MissingOrEmptyCaptionIsLeftOut) {
    ScratchFolder folder;
    EXPECT_EQ(ReadCaptionText(folder.File("none.txt").c_str()), nullptr);
    ASSERT_TRUE(WriteBytes(folder.File("empty.txt"), {}));
    EXPECT_EQ(ReadCaptionText(folder.File("empty.txt").c_str()), nullptr);
    EXPECT_EQ(ReadCaptionText(nullptr), nullptr);
}

TEST(PrintLayout, CaptionLargerThanTheLimitIsLeftOut) {
    ScratchFolder folder;
    ASSERT_TRUE(WriteBytes(folder.File("big.txt"), std::vector<uint8_t>(size_t(kCaptionLargest) + 1, 'a')));
    EXPECT_EQ(ReadCaptionText(folder.File("big.txt").c_str()), nullptr);
    ASSERT_TRUE(WriteBytes(folder.File("limit.txt"), std::vector<uint8_t>(size_t(kCaptionLargest), 'a')));
    char* caption = ReadCaptionText(folder.File("limit.txt").c_str());
    ASSERT_NE(caption, nullptr);
    EXPECT_EQ(std::strlen(caption), size_t(kCaptionLargest));
    std::free(caption);
}

TEST(PrintLayout, InfoLineStepsFollowParagraphsAndSections) {
    // Page 0 opens with a one-line paragraph, then a paragraph of two lines that ends a section.
    ASSERT_TRUE(InfoTextLine(0, 0)->endsParagraph);
    ASSERT_FALSE(InfoTextLine(0, 1)->endsParagraph);
    ASSERT_TRUE(InfoTextLine(0, 2)->endsSection);
    EXPECT_EQ(InfoPrintStep(134, 0, 0), 134 + 67);
    EXPECT_EQ(InfoPrintStep(134, 0, 1), 134);
    EXPECT_EQ(InfoPrintStep(134, 0, 2), 268);
    // Every line of both pages takes one of the three steps, by its marks.
    for (int32_t page = 0; page < kInfoPageCount; ++page)
        for (int32_t line = 0; line < kInfoLinesPerPage; ++line) {
            const InfoLine* entry = InfoTextLine(page, line);
            int32_t expected = entry->endsSection ? 2 * 77 : entry->endsParagraph ? 77 + 38 : 77;
            EXPECT_EQ(InfoPrintStep(77, page, line), expected) << page << "," << line;
        }
}

TEST(PrintLayout, InfoLinesTakeTheFullLineHeightOnAPageThatHoldsThem) {
    PrintFrame frame{};
    ASSERT_TRUE(LayOutPrintFrame(kA4Width, 6000, &frame));
    ASSERT_EQ(frame.headerHeight, 402);
    InfoPrintLayout layout{};
    ASSERT_TRUE(LayOutInfoPage(&frame, 0, &layout));
    EXPECT_EQ(layout.lineHeight, 402 / 3);
    EXPECT_EQ(layout.x, 2479 / 10);
    EXPECT_EQ(layout.y[0], 402 + 2 * 134);
    EXPECT_EQ(layout.y[1], layout.y[0] + 402 / 6 + 134);  // a new paragraph
    EXPECT_EQ(layout.y[2], layout.y[1] + 134);            // the same paragraph
    EXPECT_EQ(layout.y[3], layout.y[2] + 2 * 134);        // after a section's end
    EXPECT_LE(LastLineBottom(layout), 6000 - frame.footerHeight);
}

TEST(PrintLayout, InfoLinesOnAnA4SheetShrinkToEndAboveTheFooter) {
    PrintFrame frame = A4Frame();
    for (int32_t page = 0; page < kInfoPageCount; ++page) {
        InfoPrintLayout layout{};
        ASSERT_TRUE(LayOutInfoPage(&frame, page, &layout));
        // At 134 the 26 lines would run to about 4,700, far past the footer's top at 3131.
        EXPECT_EQ(layout.lineHeight, 77) << page;
        EXPECT_EQ(layout.y[0], 402 + 2 * 77) << page;
        EXPECT_LE(LastLineBottom(layout), kA4Height - frame.footerHeight) << page;
        // One more would not fit: 77 is the largest height that does.
        int32_t bottom = 402 + 2 * 78 + 78;
        for (int32_t line = 0; line + 1 < kInfoLinesPerPage; ++line) bottom += InfoPrintStep(78, page, line);
        EXPECT_GT(bottom, kA4Height - frame.footerHeight) << page;
    }
}

TEST(PrintLayout, InfoPageOutsideTheTextOrWithoutRoomIsRefused) {
    PrintFrame frame = A4Frame();
    InfoPrintLayout layout{};
    EXPECT_FALSE(LayOutInfoPage(&frame, -1, &layout));
    EXPECT_FALSE(LayOutInfoPage(&frame, 2, &layout));
    PrintFrame strip{};
    ASSERT_TRUE(LayOutPrintFrame(3000, 150, &strip));
    EXPECT_FALSE(LayOutInfoPage(&strip, 0, &layout));
}
