// DrawDib drawing of packed DIBs, the rectangle painter and the invalidation helper, checked by reading
// pixels back from a memory DC and update regions back from a real window.
#include <gtest/gtest.h>
#include <windows.h>

#include "gfx/dib.h"
#include "gfx/image_object_win32.h"
#include "win32_support.h"

TEST(DrawDib, DrawsEightBitPackedDibWithItsPalette) {
    uint8_t* dib = AllocPackedDib(4, 2, 8, 3);
    ASSERT_NE(dib, nullptr);
    DibColor* palette = DibPalette(dib);
    palette[0] = DibColor{0, 0, 255, 0};   // red
    palette[1] = DibColor{0, 255, 0, 0};   // green
    palette[2] = DibColor{255, 0, 0, 0};   // blue
    // Bottom-up: the first stored row is the picture's bottom row.
    uint8_t* pixels = DibPixels(dib);
    const uint8_t bottom[4] = {0, 1, 2, 0}, top[4] = {2, 2, 1, 1};
    memcpy(pixels, bottom, 4);
    memcpy(pixels + 4, top, 4);

    Canvas canvas(8, 4, RGB(10, 20, 30));
    DrawPackedDib(canvas.dc, 2, 1, 4, 2, dib, 0, 0);
    EXPECT_EQ(canvas.At(2, 1), RGB(0, 0, 255));
    EXPECT_EQ(canvas.At(4, 1), RGB(0, 255, 0));
    EXPECT_EQ(canvas.At(2, 2), RGB(255, 0, 0));
    EXPECT_EQ(canvas.At(3, 2), RGB(0, 255, 0));
    EXPECT_EQ(canvas.At(4, 2), RGB(0, 0, 255));
    // Outside the drawn area nothing changed.
    EXPECT_EQ(canvas.At(1, 1), RGB(10, 20, 30));
    EXPECT_EQ(canvas.At(6, 1), RGB(10, 20, 30));
    EXPECT_EQ(canvas.At(2, 3), RGB(10, 20, 30));
    FreePackedDib(dib);
}

TEST(DrawDib, ZeroSizedDrawDoesNothing) {
    uint8_t* dib = AllocPackedDib(2, 2, 24, 0);
    ASSERT_NE(dib, nullptr);
    Canvas canvas(4, 4, RGB(1, 2, 3));
    DrawPackedDib(canvas.dc, 0, 0, 0, 2, dib, 0, 0);
    DrawPackedDib(canvas.dc, 0, 0, 2, 0, dib, 0, 0);
    EXPECT_EQ(canvas.At(0, 0), RGB(1, 2, 3));
    FreePackedDib(dib);
}

TEST(DrawDib, EightBitSourceOffsetCountsRowsFromTheTop) {
    // 6 x 5 picture, each pixel its own palette entry, so the drawn colour names its source pixel.
    uint8_t* dib = MakeDib8(6, 5, 30, [](int x, int y) { return uint8_t(y * 6 + x); });
    ASSERT_NE(dib, nullptr);
    Canvas canvas(8, 8, RGB(10, 20, 30));
    DrawPackedDib(canvas.dc, 1, 2, 3, 2, dib, 2, 1);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) {
            bool inside = x >= 1 && x < 4 && y >= 2 && y < 4;
            COLORREF expected = inside ? TestPaletteEntry(uint32_t((y - 2 + 1) * 6 + (x - 1 + 2))) : RGB(10, 20, 30);
            EXPECT_EQ(canvas.At(x, y), expected) << "at " << x << "," << y;
        }
    FreePackedDib(dib);
}

TEST(DrawDib, DrawsTwentyFourBitDibExactly) {
    // An odd width, so the rows carry padding that must not shift the pixels.
    uint8_t* dib = MakeDib24(5, 3, [](int x, int y) { return PatternColor(x, y, 7); });
    ASSERT_NE(dib, nullptr);
    Canvas canvas(9, 6, RGB(10, 20, 30));
    DrawPackedDib(canvas.dc, 2, 1, 5, 3, dib, 0, 0);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 9; ++x) {
            bool inside = x >= 2 && x < 7 && y >= 1 && y < 4;
            COLORREF expected = inside ? PatternColor(x - 2, y - 1, 7) : RGB(10, 20, 30);
            EXPECT_EQ(canvas.At(x, y), expected) << "at " << x << "," << y;
        }
    FreePackedDib(dib);
}

TEST(DrawDib, TwentyFourBitSourceOffsetCountsRowsFromTheTop) {
    uint8_t* dib = MakeDib24(7, 6, [](int x, int y) { return PatternColor(x, y, 3); });
    ASSERT_NE(dib, nullptr);
    Canvas canvas(4, 4, RGB(10, 20, 30));
    DrawPackedDib(canvas.dc, 0, 0, 2, 3, dib, 4, 0);
    DrawPackedDib(canvas.dc, 2, 1, 2, 3, dib, 1, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 2; ++x) EXPECT_EQ(canvas.At(x, y), PatternColor(x + 4, y, 3)) << x << "," << y;
    for (int y = 1; y < 4; ++y)
        for (int x = 2; x < 4; ++x) EXPECT_EQ(canvas.At(x, y), PatternColor(x - 2 + 1, y - 1 + 3, 3)) << x << "," << y;
    EXPECT_EQ(canvas.At(0, 3), RGB(10, 20, 30));
    EXPECT_EQ(canvas.At(3, 0), RGB(10, 20, 30));
    FreePackedDib(dib);
}

TEST(PaintRect, WithoutDibPaintsBlack) {
    Canvas canvas(6, 5, RGB(10, 20, 30));
    RECT rect = {1, 2, 4, 5};
    PaintRect(canvas.dc, &rect, nullptr);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 6; ++x) {
            bool inside = x >= 1 && x < 4 && y >= 2 && y < 5;
            EXPECT_EQ(canvas.At(x, y), inside ? RGB(0, 0, 0) : RGB(10, 20, 30)) << "at " << x << "," << y;
        }
}

TEST(PaintRect, WithDibDrawsTheSameRectangleInPlace) {
    uint8_t* dib = MakeDib24(8, 6, [](int x, int y) { return PatternColor(x, y, 11); });
    ASSERT_NE(dib, nullptr);
    Canvas canvas(8, 6, RGB(10, 20, 30));
    RECT rect = {3, 1, 7, 4};
    PaintRect(canvas.dc, &rect, dib);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 8; ++x) {
            bool inside = x >= 3 && x < 7 && y >= 1 && y < 4;
            EXPECT_EQ(canvas.At(x, y), inside ? PatternColor(x, y, 11) : RGB(10, 20, 30)) << "at " << x << "," << y;
        }
    FreePackedDib(dib);
}

TEST(PaintRect, WithEightBitDibUsesItsPalette) {
    uint8_t* dib = MakeDib8(5, 4, 20, [](int x, int y) { return uint8_t(y * 5 + x); });
    ASSERT_NE(dib, nullptr);
    Canvas canvas(5, 4, RGB(10, 20, 30));
    RECT rect = {1, 1, 3, 4};
    PaintRect(canvas.dc, &rect, dib);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x) {
            bool inside = x >= 1 && x < 3 && y >= 1;
            COLORREF expected = inside ? TestPaletteEntry(uint32_t(y * 5 + x)) : RGB(10, 20, 30);
            EXPECT_EQ(canvas.At(x, y), expected) << "at " << x << "," << y;
        }
    FreePackedDib(dib);
}

TEST(InvalidateArea, InvalidatesExactlyThatRectangle) {
    TestWindow window(0, 0, 200, 150);
    ASSERT_NE(window.hwnd, nullptr);
    ValidateRect(window.hwnd, nullptr);
    RECT update;
    ASSERT_FALSE(GetUpdateRect(window.hwnd, &update, FALSE));

    InvalidateArea(window.hwnd, Point{10, 20}, Point{30, 40}, false);
    ASSERT_TRUE(GetUpdateRect(window.hwnd, &update, FALSE));
    EXPECT_EQ(update.left, 10);
    EXPECT_EQ(update.top, 20);
    EXPECT_EQ(update.right, 40);
    EXPECT_EQ(update.bottom, 60);
    // One plain rectangle, not merely a region whose bounds happen to match.
    HRGN region = CreateRectRgn(0, 0, 0, 0);
    EXPECT_EQ(GetUpdateRgn(window.hwnd, region, FALSE), SIMPLEREGION);
    DeleteObject(region);
}

TEST(InvalidateArea, EraseFlagDecidesWhetherTheBackgroundIsErased) {
    TestWindow window(0, 0, 120, 90);
    ASSERT_NE(window.hwnd, nullptr);
    ValidateRect(window.hwnd, nullptr);
    int before = ErasesSeen(window.hwnd);

    InvalidateArea(window.hwnd, Point{5, 5}, Point{10, 10}, false);
    UpdateWindow(window.hwnd);
    EXPECT_EQ(ErasesSeen(window.hwnd), before);

    InvalidateArea(window.hwnd, Point{5, 5}, Point{10, 10}, true);
    UpdateWindow(window.hwnd);
    EXPECT_EQ(ErasesSeen(window.hwnd), before + 1);
}
