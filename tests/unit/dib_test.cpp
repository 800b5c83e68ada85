// Packed DIB helpers and the software blit.
#include <gtest/gtest.h>

#include "app/platform.h"
#include "gfx/dib.h"

namespace {

// 8-bit image whose pixel at (x, y), y from the top, is base + y * 16 + x.
uint8_t* Numbered8(int32_t width, int32_t height, uint8_t base) {
    uint8_t* dib = AllocPackedDib8(width, height);
    int32_t stride = (width + 3) / 4 * 4;
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) DibPixels(dib)[(height - 1 - y) * stride + x] = uint8_t(base + y * 16 + x);
    return dib;
}

uint8_t At8(const uint8_t* dib, int32_t x, int32_t y) {
    const DibHeader* h = DibHeaderOf(dib);
    int32_t stride = (h->biWidth + 3) / 4 * 4;
    return DibPixels(dib)[(h->biHeight - 1 - y) * stride + x];
}

}  // namespace

TEST(PackedDib, EightBitBlockHasRoundedStrideAndImageSize) {
    size_t before = SysLiveBlocks();
    uint8_t* dib = AllocPackedDib8(5, 3);
    ASSERT_NE(dib, nullptr);
    const DibHeader* h = DibHeaderOf(dib);
    EXPECT_EQ(h->biSize, 40u);
    EXPECT_EQ(h->biWidth, 5);
    EXPECT_EQ(h->biHeight, 3);
    EXPECT_EQ(h->biPlanes, 1);
    EXPECT_EQ(h->biBitCount, 8);
    EXPECT_EQ(h->biCompression, 0u);
    EXPECT_EQ(h->biSizeImage, 8u * 3u);
    EXPECT_EQ(h->biClrUsed, 0u);
    EXPECT_EQ(SysLiveBlocks(), before + 1);
    FreePackedDib(dib);
    EXPECT_EQ(SysLiveBlocks(), before);
    EXPECT_EQ(AllocPackedDib8(0, 3), nullptr);
}

TEST(PackedDib, StrideFollowsTheDibRule) {
    EXPECT_EQ(DibStride(24, 1), 4);
    EXPECT_EQ(DibStride(24, 3), 12);
    EXPECT_EQ(DibStride(8, 5), 8);
    EXPECT_EQ(DibStride(4, 9), 8);
    EXPECT_EQ(DibStride(1, 33), 8);
    EXPECT_EQ(DibStride(32, 3), 12);
    EXPECT_EQ(DibStride(24, 1 << 30), (int64_t(24) * (1 << 30) + 31) / 32 * 4);  // no 32-bit overflow
}

TEST(PackedDib, CopyPaletteCopiesDepthCountAndUsedEntries) {
    uint8_t* from = AllocPackedDib(2, 2, 8, 3);
    uint8_t* to = AllocPackedDib(2, 2, 24, 0);
    for (int i = 0; i < 3; ++i) DibPalette(from)[i] = DibColor{uint8_t(i), uint8_t(i + 10), uint8_t(i + 20), 0};
    DibPalette(to)[3] = DibColor{9, 9, 9, 9};
    CopyPalette(from, to);
    EXPECT_EQ(DibHeaderOf(to)->biBitCount, 8);
    EXPECT_EQ(DibHeaderOf(to)->biClrUsed, 3u);
    EXPECT_EQ(DibPalette(to)[2].red, 22);
    EXPECT_EQ(DibPalette(to)[3].red, 9);  // entries past the count are left alone
    FreePackedDib(from);
    FreePackedDib(to);
}

TEST(SoftBlit, CopiesAnAreaCountingRowsFromTheTop) {
    uint8_t* src = Numbered8(6, 5, 0);
    uint8_t* dst = Numbered8(6, 5, 200);
    SoftBlit(dst, 1, 2, 3, 2, src, 2, 0, kRopSrcCopy);
    EXPECT_EQ(At8(dst, 1, 2), At8(src, 2, 0));
    EXPECT_EQ(At8(dst, 3, 3), At8(src, 4, 1));
    EXPECT_EQ(At8(dst, 0, 2), 200 + 32);  // untouched around the area
    EXPECT_EQ(At8(dst, 4, 2), 200 + 32 + 4);
    EXPECT_EQ(At8(dst, 1, 1), 200 + 16 + 1);
    FreePackedDib(src);
    FreePackedDib(dst);
}

TEST(SoftBlit, AndAndInvertCombineBytes) {
    uint8_t* src = AllocPackedDib(4, 1, 8, 0);
    uint8_t* dst = AllocPackedDib(4, 1, 8, 0);
    for (int i = 0; i < 4; ++i) {
        DibPixels(src)[i] = 0x0F;
        DibPixels(dst)[i] = 0x3C;
    }
    SoftBlit(dst, 0, 0, 2, 1, src, 0, 0, kRopSrcAnd);
    SoftBlit(dst, 2, 0, 2, 1, src, 0, 0, kRopSrcInvert);
    EXPECT_EQ(DibPixels(dst)[0], 0x0C);
    EXPECT_EQ(DibPixels(dst)[1], 0x0C);
    EXPECT_EQ(DibPixels(dst)[2], 0x33);
    EXPECT_EQ(DibPixels(dst)[3], 0x33);
    FreePackedDib(src);
    FreePackedDib(dst);
}

TEST(SoftBlit, OtherRasterOperationsAndEmptySizesCopyNothing) {
    uint8_t* src = Numbered8(4, 4, 0);
    uint8_t* dst = Numbered8(4, 4, 100);
    SoftBlit(dst, 0, 0, 4, 4, src, 0, 0, 0x00BB0226);  // MERGEPAINT
    SoftBlit(dst, 0, 0, 0, 4, src, 0, 0, kRopSrcCopy);
    SoftBlit(dst, 0, 0, 4, 0, src, 0, 0, kRopSrcCopy);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) EXPECT_EQ(At8(dst, x, y), 100 + y * 16 + x);
    FreePackedDib(src);
    FreePackedDib(dst);
}

TEST(SoftBlit, ClipsToTargetAndSource) {
    uint8_t* src = Numbered8(4, 4, 0);
    uint8_t* dst = Numbered8(4, 4, 100);
    // Hanging off the target's top-left: only the overlapping 2 x 2 lands, from the matching source area.
    SoftBlit(dst, -2, -2, 4, 4, src, 0, 0, kRopSrcCopy);
    EXPECT_EQ(At8(dst, 0, 0), At8(src, 2, 2));
    EXPECT_EQ(At8(dst, 1, 1), At8(src, 3, 3));
    EXPECT_EQ(At8(dst, 2, 0), 100 + 2);
    // A source area hanging off the source's bottom-right only copies what exists.
    uint8_t* dst2 = Numbered8(4, 4, 100);
    SoftBlit(dst2, 0, 0, 4, 4, src, 3, 3, kRopSrcCopy);
    EXPECT_EQ(At8(dst2, 0, 0), At8(src, 3, 3));
    EXPECT_EQ(At8(dst2, 1, 0), 100 + 1);
    EXPECT_EQ(At8(dst2, 0, 1), 100 + 16);
    // A source area left of the source moves the target corner with it.
    uint8_t* dst3 = Numbered8(4, 4, 100);
    SoftBlit(dst3, 0, 0, 3, 1, src, -1, 0, kRopSrcCopy);
    EXPECT_EQ(At8(dst3, 0, 0), 100);
    EXPECT_EQ(At8(dst3, 1, 0), At8(src, 0, 0));
    EXPECT_EQ(At8(dst3, 2, 0), At8(src, 1, 0));
    // Entirely outside: nothing.
    uint8_t* dst4 = Numbered8(4, 4, 100);
    SoftBlit(dst4, 10, 10, 4, 4, src, 0, 0, kRopSrcCopy);
    SoftBlit(dst4, 0, 0, 4, 4, src, 10, 0, kRopSrcCopy);
    EXPECT_EQ(At8(dst4, 0, 0), 100);
    EXPECT_EQ(At8(dst4, 3, 3), 100 + 48 + 3);
    for (uint8_t* d : {src, dst, dst2, dst3, dst4}) FreePackedDib(d);
}

TEST(SoftBlit, WorksBackwardsFromTheBottomRightCorner) {
    // Within one image, a copy one pixel to the right and one row down reads each source pixel before
    // it is overwritten only because the work runs from the bottom-right corner backwards.
    uint8_t* dib = Numbered8(4, 3, 0);
    SoftBlit(dib, 1, 1, 3, 2, dib, 0, 0, kRopSrcCopy);
    EXPECT_EQ(At8(dib, 1, 1), 0);
    EXPECT_EQ(At8(dib, 2, 1), 1);
    EXPECT_EQ(At8(dib, 3, 1), 2);
    EXPECT_EQ(At8(dib, 1, 2), 16);
    EXPECT_EQ(At8(dib, 3, 2), 18);
    FreePackedDib(dib);
}

TEST(SoftBlit, TwentyFourBitTargetsMoveThreeBytesAPixel) {
    uint8_t* src = AllocPackedDib(3, 2, 24, 0);
    uint8_t* dst = AllocPackedDib(3, 2, 24, 0);
    for (uint32_t i = 0; i < DibHeaderOf(src)->biSizeImage; ++i) DibPixels(src)[i] = uint8_t(i + 1);
    SoftBlit(dst, 1, 0, 2, 1, src, 0, 1, kRopSrcCopy);
    // Target row 0 from the top is stored last; source row 1 from the top is stored first.
    const uint8_t* topRow = DibPixels(dst) + 12;
    EXPECT_EQ(topRow[0], 0);
    EXPECT_EQ(topRow[3], 1);
    EXPECT_EQ(topRow[5], 3);
    EXPECT_EQ(topRow[6], 4);
    EXPECT_EQ(topRow[8], 6);
    EXPECT_EQ(DibPixels(dst)[3], 0);  // bottom row untouched
    FreePackedDib(src);
    FreePackedDib(dst);
}

TEST(SoftBlit, ImagesWhoseSizeImageIsTooSmallAreLeftAlone) {
    uint8_t* src = AllocPackedDib8(8, 8);
    uint8_t* dst = AllocPackedDib8(8, 8);
    DibHeaderOf(src)->biHeight = 1000;  // a header that lies about its rows
    DibPixels(dst)[0] = 77;
    SoftBlit(dst, 0, 0, 8, 8, src, 0, 0, kRopSrcCopy);
    EXPECT_EQ(DibPixels(dst)[0], 77);
    FreePackedDib(src);
    FreePackedDib(dst);
}
