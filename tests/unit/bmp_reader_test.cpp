// The BMP file reader: opening rules, whole reads and the resampling read.
#include <gtest/gtest.h>

#include "gfx/bmp_reader.h"
#include "test_support.h"

namespace {

// A 24-bit value naming its source pixel: x in the low 12 bits, file row in the high 12.
uint32_t Coded(int32_t x, int32_t y) { return uint32_t(x) | (uint32_t(y) << 12); }

struct OpenedBmp {
    ScratchFolder folder;
    BmpFileReader reader;
    explicit OpenedBmp(const std::vector<uint8_t>& bytes) {
        InitBmpReader(&reader);
        WriteBytes(folder.File("photo.bmp"), bytes);
    }
    bool Open() { return OpenBmp(&reader, folder.File("photo.bmp").c_str()); }
    ~OpenedBmp() { CloseBmp(&reader); }
};

}  // namespace

TEST(BmpReader, ShrinkingToQuarterTopDownTakesEveryFourthRowAndColumn) {
    OpenedBmp bmp(MakeBmp(1000, 800, 24, 0, Coded));
    ASSERT_TRUE(bmp.Open());
    ASSERT_EQ(BmpResampledBytes(&bmp.reader, 250, -200), 752 * 200);
    std::vector<uint8_t> out(752 * 200, 0xEE);
    ASSERT_TRUE(ReadBmpResampled(&bmp.reader, 250, -200, out.data()));
    // Top-down output: its last row holds file row 0 (the picture's bottom), its first file row 796.
    for (int32_t r = 0; r < 200; ++r)
        for (int32_t c = 0; c < 250; ++c)
            ASSERT_EQ(PixelInRow(&out[size_t(r) * 752], 24, c), Coded(4 * c, 4 * (199 - r))) << r << "," << c;
}

TEST(BmpReader, EnlargingThreefoldRepeatsRowsAndColumnsThreeTimes) {
    OpenedBmp bmp(MakeBmp(100, 100, 24, 0, Coded));
    ASSERT_TRUE(bmp.Open());
    int32_t stride = 900;
    std::vector<uint8_t> out(size_t(stride) * 300, 0);
    ASSERT_TRUE(ReadBmpResampled(&bmp.reader, 300, 300, out.data()));
    for (int32_t r = 0; r < 300; ++r)
        for (int32_t c = 0; c < 300; ++c)
            ASSERT_EQ(PixelInRow(&out[size_t(r) * stride], 24, c), Coded(c / 3, r / 3)) << r << "," << c;
}

TEST(BmpReader, EqualSizeCopiesTheFileUnchanged) {
    auto bytes = MakeBmp(37, 23, 24, 0, Coded);
    OpenedBmp bmp(bytes);
    ASSERT_TRUE(bmp.Open());
    std::vector<uint8_t> out(size_t(BmpResampledBytes(&bmp.reader, 37, 23)));
    ASSERT_TRUE(ReadBmpResampled(&bmp.reader, 37, 23, out.data()));
    // Same sign, same size: the rows come out exactly as stored, padding included.
    ASSERT_EQ(out.size(), bytes.size() - 54);
    EXPECT_EQ(0, std::memcmp(out.data(), bytes.data() + 54, out.size()));
}

TEST(BmpReader, EqualSizeFlipsOnlyWhenTheHeightSignsDiffer) {
    auto bytes = MakeBmp(8, 6, 8, 256, [](int32_t x, int32_t y) { return uint32_t(y * 10 + x); });
    OpenedBmp bmp(bytes);
    ASSERT_TRUE(bmp.Open());
    std::vector<uint8_t> out(8 * 6);
    ASSERT_TRUE(ReadBmpResampled(&bmp.reader, 8, -6, out.data()));
    for (int32_t r = 0; r < 6; ++r) EXPECT_EQ(out[size_t(r) * 8], (5 - r) * 10) << r;
    // A top-down file read top-down is not flipped.
    OpenedBmp topDown(MakeBmp(8, -6, 8, 256, [](int32_t x, int32_t y) { return uint32_t(y * 10 + x); }));
    ASSERT_TRUE(topDown.Open());
    ASSERT_TRUE(ReadBmpResampled(&topDown.reader, 8, -6, out.data()));
    for (int32_t r = 0; r < 6; ++r) EXPECT_EQ(out[size_t(r) * 8 + 1], r * 10 + 1) << r;
}

TEST(BmpReader, FourBitOddTargetWidthLeavesTheLastLowNibbleUnwritten) {
    // Every source nibble is 0xA; the fifth target pixel fills the high nibble of byte 2 and the low
    // nibble beside it belongs to no pixel: it keeps the row buffer's value and never takes a source one.
    OpenedBmp bmp(MakeBmp(10, 2, 4, 16, [](int32_t, int32_t) { return 0xAu; }));
    ASSERT_TRUE(bmp.Open());
    std::vector<uint8_t> out(4 * 2, 0xFF);
    ASSERT_TRUE(ReadBmpResampled(&bmp.reader, 5, 2, out.data()));
    for (int row = 0; row < 2; ++row) {
        EXPECT_EQ(out[row * 4 + 0], 0xAA);
        EXPECT_EQ(out[row * 4 + 1], 0xAA);
        EXPECT_EQ(out[row * 4 + 2] >> 4, 0xA);
        EXPECT_EQ(out[row * 4 + 2] & 0x0F, 0x0);
    }
}

TEST(BmpReader, FourBitNibblesFollowTheColumnMap) {
    // Source nibble x holds x % 16; halving the width takes nibbles 0, 2, 4, ...
    OpenedBmp bmp(MakeBmp(16, 1, 4, 16, [](int32_t x, int32_t) { return uint32_t(x); }));
    ASSERT_TRUE(bmp.Open());
    std::vector<uint8_t> out(4, 0);
    ASSERT_TRUE(ReadBmpResampled(&bmp.reader, 8, 1, out.data()));
    EXPECT_EQ(out[0], 0x02);
    EXPECT_EQ(out[1], 0x46);
    EXPECT_EQ(out[2], 0x8A);
    EXPECT_EQ(out[3], 0xCE);
}

TEST(BmpReader, ThirtyTwoBitFilesResampleAsWords) {
    OpenedBmp bmp(MakeBmp(4, 4, 32, 0, [](int32_t x, int32_t y) { return uint32_t(0x01000000 * y + x); }));
    ASSERT_TRUE(bmp.Open());
    std::vector<uint8_t> out(2 * 4 * 2);
    ASSERT_TRUE(ReadBmpResampled(&bmp.reader, 2, 2, out.data()));
    EXPECT_EQ(PixelInRow(&out[0], 32, 1), 2u);
    EXPECT_EQ(PixelInRow(&out[8], 32, 1), 0x02000002u);
}

TEST(BmpReader, WrongMagicBitFieldsOrTwoPlanesFailToOpen) {
    auto good = MakeBmp(4, 4, 24, 0, Coded);
    auto badMagic = good;
    badMagic[0] = 'M';
    badMagic[1] = 'B';
    auto bitFields = good;
    PutLE<uint32_t>(bitFields, 14 + 16, 3);
    auto twoPlanes = good;
    PutLE<uint16_t>(twoPlanes, 14 + 12, 2);
    auto noWidth = good;
    PutLE<int32_t>(noWidth, 14 + 4, 0);
    auto sixteenBits = MakeBmp(4, 4, 16, 0, Coded);  // no colour count rule for 16 bits without biClrUsed
    for (const auto* bytes : {&badMagic, &bitFields, &twoPlanes, &noWidth, &sixteenBits}) {
        OpenedBmp bmp(*bytes);
        EXPECT_FALSE(bmp.Open());
        EXPECT_EQ(bmp.reader.file, nullptr);
    }
    OpenedBmp ok(good);
    EXPECT_TRUE(ok.Open());
    EXPECT_EQ(ok.reader.state, 1);
}

TEST(BmpReader, ColourCountComesFromTheHeaderOrTheDepth) {
    OpenedBmp four(MakeBmp(4, 4, 4, 0, Coded));
    ASSERT_TRUE(four.Open());
    EXPECT_EQ(four.reader.colorCount, 16u);
    OpenedBmp eight(MakeBmp(4, 4, 8, 0, Coded));
    ASSERT_TRUE(eight.Open());
    EXPECT_EQ(eight.reader.colorCount, 256u);
    OpenedBmp used(MakeBmp(4, 4, 8, 7, Coded));
    ASSERT_TRUE(used.Open());
    EXPECT_EQ(used.reader.colorCount, 7u);
    OpenedBmp rgb(MakeBmp(4, 4, 24, 0, Coded));
    ASSERT_TRUE(rgb.Open());
    EXPECT_EQ(rgb.reader.colorCount, 0u);
}

TEST(BmpReader, RleFileOpensButResamplingFailsAtOnce) {
    OpenedBmp bmp(MakeBmp(8, 8, 8, 256, Coded, 1));
    ASSERT_TRUE(bmp.Open());
    EXPECT_TRUE(bmp.reader.compressed);
    std::vector<uint8_t> out(64, 0x5A);
    EXPECT_FALSE(ReadBmpResampled(&bmp.reader, 8, 8, out.data()));
    EXPECT_EQ(out[0], 0x5A);
}

TEST(BmpReader, ZeroTargetHeightWritesNothingAndSucceeds) {
    OpenedBmp bmp(MakeBmp(8, 8, 24, 0, Coded));
    ASSERT_TRUE(bmp.Open());
    uint8_t sentinel = 0x5A;
    EXPECT_TRUE(ReadBmpResampled(&bmp.reader, 8, 0, &sentinel));
    EXPECT_EQ(sentinel, 0x5A);
}

TEST(BmpReader, WholeReadAndPaletteComeFromTheFixedOffsets) {
    auto bytes = MakeBmp(5, 3, 8, 4, [](int32_t x, int32_t y) { return uint32_t((x + y) % 4); });
    OpenedBmp bmp(bytes);
    ASSERT_TRUE(bmp.Open());
    ASSERT_EQ(BmpPixelBytes(&bmp.reader), 8 * 3);
    std::vector<uint8_t> pixels(24);
    ASSERT_TRUE(ReadBmpPixels(&bmp.reader, pixels.data()));
    EXPECT_EQ(0, std::memcmp(pixels.data(), bytes.data() + 54 + 16, 24));
    DibColor colors[2];
    ASSERT_TRUE(BmpPalette(&bmp.reader, 2, 2, colors));
    EXPECT_EQ(colors[0].blue, TestPaletteColor(2).blue);
    EXPECT_EQ(colors[1].green, TestPaletteColor(3).green);
    EXPECT_FALSE(BmpPalette(&bmp.reader, 3, 2, colors));  // past the table
    std::vector<uint8_t> info(40 + 16);
    ASSERT_TRUE(BmpInfo(&bmp.reader, info.data()));
    EXPECT_EQ(0, std::memcmp(info.data(), bytes.data() + 14, 56));
    int32_t w, h;
    ASSERT_TRUE(BmpSize(&bmp.reader, &w, &h));
    EXPECT_EQ(w, 5);
    EXPECT_EQ(h, 3);
}

TEST(BmpReader, HugeWidthFailsCleanlyWithoutAllocating) {
    auto bytes = MakeBmp(4, 4, 24, 0, Coded);
    PutLE<int32_t>(bytes, 14 + 4, 1 << 30);
    OpenedBmp bmp(bytes);
    ASSERT_TRUE(bmp.Open());  // the header itself is acceptable
    EXPECT_EQ(BmpPixelBytes(&bmp.reader), 0);
    std::vector<uint8_t> out(64);
    EXPECT_FALSE(ReadBmpPixels(&bmp.reader, out.data()));
    EXPECT_FALSE(ReadBmpResampled(&bmp.reader, 4, 4, out.data()));
}

TEST(BmpReader, TruncatedOrHostileHeightsFailCleanly) {
    auto cut = MakeBmp(64, 64, 24, 0, Coded);
    cut.resize(54 + 192 * 10);  // ten rows of sixty-four
    OpenedBmp bmp(cut);
    ASSERT_TRUE(bmp.Open());
    std::vector<uint8_t> out(size_t(192) * 64);
    EXPECT_FALSE(ReadBmpPixels(&bmp.reader, out.data()));
    EXPECT_FALSE(ReadBmpResampled(&bmp.reader, 64, 64, out.data()));

    auto minHeight = MakeBmp(4, 4, 24, 0, Coded);
    PutLE<int32_t>(minHeight, 14 + 8, INT32_MIN);
    OpenedBmp hostile(minHeight);
    EXPECT_FALSE(hostile.Open());

    auto noRows = MakeBmp(4, 4, 24, 0, Coded);
    PutLE<int32_t>(noRows, 14 + 8, 0);
    OpenedBmp empty(noRows);
    ASSERT_TRUE(empty.Open());
    EXPECT_FALSE(ReadBmpResampled(&empty.reader, 4, 4, out.data()));
}

TEST(BmpReader, MissingFileFailsAndCloseIsSafeTwice) {
    ScratchFolder folder;
    BmpFileReader reader;
    InitBmpReader(&reader);
    EXPECT_FALSE(OpenBmp(&reader, folder.File("none.bmp").c_str()));
    CloseBmp(&reader);
    CloseBmp(&reader);
    DibHeader header;
    EXPECT_FALSE(BmpHeader(&reader, &header));
}
