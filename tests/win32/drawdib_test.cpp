// DrawDib drawing of packed DIBs, checked by reading pixels back from a memory DC.
#include <gtest/gtest.h>
#include <windows.h>

#include "gfx/dib.h"
#include "gfx/image_object_win32.h"

namespace {

// A 24-bit DIB section selected into a memory DC, filled with one colour.
struct Canvas {
    HDC dc = nullptr;
    HBITMAP bitmap = nullptr;
    HGDIOBJ old = nullptr;
    uint8_t* bits = nullptr;
    int width = 0, height = 0;

    Canvas(int w, int h, COLORREF fill) : width(w), height(h) {
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = w;
        info.bmiHeader.biHeight = -h;  // top-down, so row y is at bits + y * stride
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 24;
        void* pixels = nullptr;
        bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
        bits = static_cast<uint8_t*>(pixels);
        dc = CreateCompatibleDC(nullptr);
        old = SelectObject(dc, bitmap);
        RECT all = {0, 0, w, h};
        HBRUSH brush = CreateSolidBrush(fill);
        FillRect(dc, &all, brush);
        DeleteObject(brush);
        GdiFlush();
    }
    ~Canvas() {
        SelectObject(dc, old);
        DeleteObject(bitmap);
        DeleteDC(dc);
    }
    COLORREF At(int x, int y) const {
        GdiFlush();
        int stride = (width * 3 + 3) & ~3;
        const uint8_t* p = bits + y * stride + 3 * x;
        return RGB(p[2], p[1], p[0]);
    }
};

}  // namespace

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
