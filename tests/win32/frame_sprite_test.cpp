// FrameSprite: frame geometry, masked and raster-operation draws between DCs and packed DIBs, the
// saved background, invalidation and loading the grid from the pack.
#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "app/platform.h"
#include "gfx/dib.h"
#include "gfx/frame_sprite_win32.h"
#include "gfx/pack.h"
#include "win32_support.h"

namespace {

// A grid of frames; when masked, every row of frames is followed by a row of masks.
struct Grid {
    int rows, columns, frameWidth, frameHeight;
    bool masked;
    int Width() const { return columns * frameWidth; }
    int Height() const { return rows * frameHeight * (masked ? 2 : 1); }
};

// Frame k's shape: which of its pixels are opaque, and what they hold.
bool Opaque(int k, int x, int y) { return (x * 3 + y + k) % 4 != 0; }
COLORREF FrameColor(int k, int x, int y) { return PatternColor(x, y, 50 + uint32_t(k)); }
uint8_t FrameIndex(int k, int x, int y) { return uint8_t(1 + (x * 5 + y * 3 + k * 11) % 250); }

// The grid's pixel at picture position (sx, sy): frames are black where transparent, masks white
// where transparent and black where opaque.
COLORREF GridColor(const Grid& g, int sx, int sy) {
    int band = g.frameHeight * (g.masked ? 2 : 1);
    int k = (sy / band) * g.columns + sx / g.frameWidth;
    int x = sx % g.frameWidth, y = sy % band;
    if (y >= g.frameHeight) return Opaque(k, x, y - g.frameHeight) ? RGB(0, 0, 0) : RGB(255, 255, 255);
    return Opaque(k, x, y) ? FrameColor(k, x, y) : RGB(0, 0, 0);
}

uint8_t GridIndex(const Grid& g, int sx, int sy) {
    int band = g.frameHeight * (g.masked ? 2 : 1);
    int k = (sy / band) * g.columns + sx / g.frameWidth;
    int x = sx % g.frameWidth, y = sy % band;
    if (y >= g.frameHeight) return Opaque(k, x, y - g.frameHeight) ? 0x00 : 0xFF;
    return Opaque(k, x, y) ? FrameIndex(k, x, y) : 0;
}

void PaintGrid(Canvas* canvas, const Grid& g) {
    for (int y = 0; y < g.Height(); ++y)
        for (int x = 0; x < g.Width(); ++x) canvas->Set(x, y, GridColor(g, x, y));
}

uint8_t* GridDib24(const Grid& g) {
    return MakeDib24(g.Width(), g.Height(), [&](int x, int y) { return GridColor(g, x, y); });
}

uint8_t* GridDib8(const Grid& g) {
    return MakeDib8(g.Width(), g.Height(), 256, [&](int x, int y) { return GridIndex(g, x, y); });
}

uint8_t TargetIndex(int x, int y) { return uint8_t((x * 7 + y * 13 + 1) % 256); }

uint8_t* TargetDib8(int width, int height) { return MakeDib8(width, height, 256, TargetIndex); }
uint8_t* TargetDib24(int width, int height) {
    return MakeDib24(width, height, [](int x, int y) { return PatternColor(x, y, 9); });
}

std::vector<uint32_t> DibSnapshot(const uint8_t* dib) {
    std::vector<uint32_t> all;
    const DibHeader* h = DibHeaderOf(dib);
    for (int y = 0; y < h->biHeight; ++y)
        for (int x = 0; x < h->biWidth; ++x) all.push_back(DibAt(dib, x, y));
    return all;
}

bool Inside(int x, int y, int left, int top, int width, int height) {
    return x >= left && x < left + width && y >= top && y < top + height;
}

const char* RopName(DWORD rop) {
    return rop == SRCCOPY ? "SRCCOPY" : rop == SRCAND ? "SRCAND" : rop == SRCINVERT ? "SRCINVERT" : "other";
}

uint32_t ApplyRop(DWORD rop, uint32_t target, uint32_t source) {
    if (rop == SRCAND) return target & source;
    if (rop == SRCINVERT) return target ^ source;
    return source;
}

}  // namespace

TEST(FrameSprite, StartsWithAOneByOneGridAndNoBackground) {
    FrameSprite sprite;
    FrameSprite_Init(&sprite, nullptr);
    EXPECT_EQ(sprite.rows, 1);
    EXPECT_EQ(sprite.columns, 1);
    EXPECT_EQ(sprite.backgroundSaved, 0);
    EXPECT_EQ(sprite.backing, nullptr);
    EXPECT_EQ(sprite.ownImage, nullptr);
    FrameSprite_Destroy(&sprite);
}

TEST(FrameSprite, FrameSizeIsIntegerDivisionOfTheGrid) {
    uint8_t* dib = AllocPackedDib(10, 9, 8, 0);
    ASSERT_NE(dib, nullptr);
    Canvas canvas(10, 9, RGB(0, 0, 0));
    FrameSprite sprite;
    FrameSprite_Init(&sprite, nullptr);

    FrameSprite_SetSourceDib(&sprite, dib, false);
    EXPECT_EQ(sprite.frameWidth, 10);
    EXPECT_EQ(sprite.frameHeight, 9);
    FrameSprite_SetGrid(&sprite, 2, 3);
    EXPECT_EQ(sprite.frameWidth, 3);   // 10 / 3
    EXPECT_EQ(sprite.frameHeight, 4);  // 9 / 2
    FrameSprite_SetSourceDib(&sprite, dib, true);
    EXPECT_EQ(sprite.frameWidth, 3);
    EXPECT_EQ(sprite.frameHeight, 2);  // 9 / (2 * 2)

    // The same with a DC source, whose size comes from its selected bitmap.
    FrameSprite_SetSourceDc(&sprite, canvas.dc, false);
    EXPECT_EQ(sprite.frameWidth, 3);
    EXPECT_EQ(sprite.frameHeight, 4);
    FrameSprite_SetSourceDc(&sprite, canvas.dc, true);
    EXPECT_EQ(sprite.frameHeight, 2);
    FrameSprite_SetGrid(&sprite, 1, 4);
    EXPECT_EQ(sprite.frameWidth, 2);   // 10 / 4
    EXPECT_EQ(sprite.frameHeight, 4);  // 9 / 2
    FrameSprite_Destroy(&sprite);
    FreePackedDib(dib);
}

TEST(FrameSprite, MaskedDrawDcToDcKeepsMaskedOutPixels) {
    const Grid g{2, 3, 4, 3, true};
    Canvas source(g.Width(), g.Height(), RGB(0, 0, 0));
    PaintGrid(&source, g);
    Canvas target(16, 10, RGB(0, 0, 0));
    target.FillPattern(1);

    FrameSprite sprite;
    FrameSprite_Init(&sprite, nullptr);
    FrameSprite_SetSourceDc(&sprite, source.dc, true);
    FrameSprite_SetGrid(&sprite, g.rows, g.columns);
    FrameSprite_SetTargetDc(&sprite, target.dc);
    ASSERT_EQ(sprite.frameWidth, 4);
    ASSERT_EQ(sprite.frameHeight, 3);

    for (int k : {4, 0, 2}) {
        target.FillPattern(1);
        const int X = 5, Y = 2;
        FrameSprite_DrawMasked(&sprite, k, X, Y, false, false, false);
        int opaque = 0, clear = 0;
        for (int y = 0; y < target.height; ++y)
            for (int x = 0; x < target.width; ++x) {
                COLORREF expected = PatternColor(x, y, 1);
                if (Inside(x, y, X, Y, 4, 3) && Opaque(k, x - X, y - Y)) {
                    expected = FrameColor(k, x - X, y - Y);
                    ++opaque;
                } else if (Inside(x, y, X, Y, 4, 3)) {
                    ++clear;
                }
                ASSERT_EQ(target.At(x, y), expected) << "frame " << k << " at " << x << "," << y;
            }
        EXPECT_GT(opaque, 0);
        EXPECT_GT(clear, 0);
    }
    FrameSprite_Destroy(&sprite);
}

TEST(FrameSprite, MaskedDrawOntoEightBitDibKeepsMaskedOutPixels) {
    const Grid g{2, 2, 5, 4, true};
    uint8_t* source = GridDib8(g);
    uint8_t* target = TargetDib8(13, 11);
    ASSERT_TRUE(source && target);

    FrameSprite sprite;
    FrameSprite_Init(&sprite, nullptr);
    FrameSprite_SetSourceDib(&sprite, source, true);
    FrameSprite_SetGrid(&sprite, g.rows, g.columns);
    FrameSprite_SetTargetDib(&sprite, target);
    const int k = 3, X = 6, Y = 5;
    FrameSprite_DrawMasked(&sprite, k, X, Y, false, false, false);
    for (int y = 0; y < 11; ++y)
        for (int x = 0; x < 13; ++x) {
            uint32_t expected = TargetIndex(x, y);
            if (Inside(x, y, X, Y, 5, 4) && Opaque(k, x - X, y - Y)) expected = FrameIndex(k, x - X, y - Y);
            ASSERT_EQ(DibAt(target, x, y), expected) << "at " << x << "," << y;
        }
    FrameSprite_Destroy(&sprite);
    FreePackedDib(source);
    FreePackedDib(target);
}

TEST(FrameSprite, MaskedDrawOntoTwentyFourBitDibKeepsMaskedOutPixels) {
    const Grid g{1, 3, 3, 5, true};
    uint8_t* source = GridDib24(g);
    uint8_t* target = TargetDib24(9, 8);
    ASSERT_TRUE(source && target);

    FrameSprite sprite;
    FrameSprite_Init(&sprite, nullptr);
    FrameSprite_SetSourceDib(&sprite, source, true);
    FrameSprite_SetGrid(&sprite, g.rows, g.columns);
    FrameSprite_SetTargetDib(&sprite, target);
    const int k = 1, X = 4, Y = 1;
    FrameSprite_DrawMasked(&sprite, k, X, Y, false, false, false);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 9; ++x) {
            uint32_t expected = PatternColor(x, y, 9);
            if (Inside(x, y, X, Y, 3, 5) && Opaque(k, x - X, y - Y)) expected = FrameColor(k, x - X, y - Y);
            ASSERT_EQ(DibAt(target, x, y), expected) << "at " << x << "," << y;
        }
    FrameSprite_Destroy(&sprite);
    FreePackedDib(source);
    FreePackedDib(target);
}

TEST(FrameSprite, DrawWithRopDcToDc) {
    for (bool masked : {false, true}) {
        const Grid g{2, 2, 3, 2, masked};
        Canvas source(g.Width(), g.Height(), RGB(0, 0, 0));
        source.FillPattern(21);
        for (DWORD rop : {DWORD(SRCCOPY), DWORD(SRCAND), DWORD(SRCINVERT)}) {
            Canvas target(10, 7, RGB(0, 0, 0));
            target.FillPattern(22);
            FrameSprite sprite;
            FrameSprite_Init(&sprite, nullptr);
            FrameSprite_SetSourceDc(&sprite, source.dc, masked);
            FrameSprite_SetGrid(&sprite, g.rows, g.columns);
            FrameSprite_SetTargetDc(&sprite, target.dc);
            // Frame 3 sits at column 1, row 1; a masked grid puts a row of masks between the rows.
            const int X = 6, Y = 4, x0 = 3, y0 = masked ? 4 : 2;
            FrameSprite_DrawWithRop(&sprite, 3, X, Y, false, false, false, rop);
            for (int y = 0; y < 7; ++y)
                for (int x = 0; x < 10; ++x) {
                    uint32_t old = PatternColor(x, y, 22), expected = old;
                    if (Inside(x, y, X, Y, 3, 2))
                        expected = ApplyRop(rop, old, PatternColor(x - X + x0, y - Y + y0, 21));
                    ASSERT_EQ(target.At(x, y), expected)
                        << RopName(rop) << (masked ? " masked" : "") << " at " << x << "," << y;
                }
            FrameSprite_Destroy(&sprite);
        }
    }
}

TEST(FrameSprite, DrawWithRopDibToDib) {
    for (int bits : {8, 24}) {
        for (bool masked : {false, true}) {
            const Grid g{3, 2, 4, 2, masked};
            uint8_t* source = bits == 8 ? MakeDib8(g.Width(), g.Height(), 256,
                                                   [](int x, int y) { return uint8_t(x * 17 + y * 29 + 3); })
                                        : MakeDib24(g.Width(), g.Height(),
                                                    [](int x, int y) { return PatternColor(x, y, 31); });
            ASSERT_NE(source, nullptr);
            for (DWORD rop : {DWORD(SRCCOPY), DWORD(SRCAND), DWORD(SRCINVERT)}) {
                uint8_t* target = bits == 8 ? TargetDib8(11, 9) : TargetDib24(11, 9);
                std::vector<uint32_t> before = DibSnapshot(target);
                FrameSprite sprite;
                FrameSprite_Init(&sprite, nullptr);
                FrameSprite_SetSourceDib(&sprite, source, masked);
                FrameSprite_SetGrid(&sprite, g.rows, g.columns);
                FrameSprite_SetTargetDib(&sprite, target);
                // Frame 5: column 1, row 2.
                const int X = 2, Y = 6, x0 = 4, y0 = 2 * 2 * (masked ? 2 : 1);
                FrameSprite_DrawWithRop(&sprite, 5, X, Y, false, false, false, rop);
                for (int y = 0; y < 9; ++y)
                    for (int x = 0; x < 11; ++x) {
                        uint32_t old = before[size_t(y * 11 + x)], expected = old;
                        if (Inside(x, y, X, Y, 4, 2))
                            expected = ApplyRop(rop, old, DibAt(source, x - X + x0, y - Y + y0));
                        ASSERT_EQ(DibAt(target, x, y), expected) << bits << "-bit " << RopName(rop)
                                                                 << (masked ? " masked" : "") << " at " << x << ","
                                                                 << y;
                    }
                FrameSprite_Destroy(&sprite);
                FreePackedDib(target);
            }
            FreePackedDib(source);
        }
    }
}

TEST(FrameSprite, DcTargetWithDibSourceCopiesAndIgnoresTheMask) {
    const Grid g{1, 2, 4, 3, true};
    uint8_t* source = GridDib24(g);
    ASSERT_NE(source, nullptr);
    Canvas target(10, 6, RGB(0, 0, 0));

    FrameSprite sprite;
    FrameSprite_Init(&sprite, nullptr);
    FrameSprite_SetSourceDib(&sprite, source, true);
    FrameSprite_SetGrid(&sprite, g.rows, g.columns);
    FrameSprite_SetTargetDc(&sprite, target.dc);

    // Both halves of the masked draw are plain copies, so the frame's black shows where the mask is clear.
    target.FillPattern(4);
    const int k = 1, X = 3, Y = 2;
    FrameSprite_DrawMasked(&sprite, k, X, Y, false, false, false);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 10; ++x) {
            COLORREF expected = Inside(x, y, X, Y, 4, 3) ? GridColor(g, x - X + 4, y - Y) : PatternColor(x, y, 4);
            ASSERT_EQ(target.At(x, y), expected) << "masked at " << x << "," << y;
        }

    // A raster operation is ignored in the same way.
    target.FillPattern(4);
    FrameSprite_DrawWithRop(&sprite, 0, 1, 1, false, false, false, SRCAND);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 10; ++x) {
            COLORREF expected = Inside(x, y, 1, 1, 4, 3) ? GridColor(g, x - 1, y - 1) : PatternColor(x, y, 4);
            ASSERT_EQ(target.At(x, y), expected) << "SRCAND at " << x << "," << y;
        }
    FrameSprite_Destroy(&sprite);
    FreePackedDib(source);
}

TEST(FrameSprite, RestoreBackgroundPutsTheOldPixelsBackOnADc) {
    const Grid g{1, 2, 5, 4, true};
    Canvas source(g.Width(), g.Height(), RGB(0, 0, 0));
    PaintGrid(&source, g);
    Canvas target(20, 12, RGB(0, 0, 0));
    target.FillPattern(8);
    const std::vector<uint8_t> original = target.Snapshot();

    FrameSprite sprite;
    FrameSprite_Init(&sprite, nullptr);
    FrameSprite_SetSourceDc(&sprite, source.dc, true);
    FrameSprite_SetGrid(&sprite, g.rows, g.columns);
    FrameSprite_SetTargetDc(&sprite, target.dc);

    // Moving the sprite about: each restore must leave the canvas as it was before any drawing.
    const POINT places[] = {{3, 2}, {11, 7}, {0, 0}, {15, 8}};
    for (const POINT& at : places) {
        FrameSprite_DrawMasked(&sprite, 1, at.x, at.y, false, false, true);
        EXPECT_EQ(sprite.backgroundSaved, 1);
        EXPECT_EQ(sprite.lastX, at.x);
        EXPECT_EQ(sprite.lastY, at.y);
        ASSERT_NE(target.Snapshot(), original) << "nothing was drawn at " << at.x << "," << at.y;
        FrameSprite_RestoreBackground(&sprite, false, false);
        EXPECT_EQ(sprite.backgroundSaved, 0);
        ASSERT_EQ(target.Snapshot(), original) << "after restoring " << at.x << "," << at.y;
    }
    // The same with a raster-operation draw.
    FrameSprite_DrawWithRop(&sprite, 0, 7, 3, false, false, true, SRCINVERT);
    ASSERT_NE(target.Snapshot(), original);
    FrameSprite_RestoreBackground(&sprite, false, false);
    EXPECT_EQ(target.Snapshot(), original);
    FrameSprite_Destroy(&sprite);
}

TEST(FrameSprite, RestoreBackgroundPutsTheOldPixelsBackOnADib) {
    size_t baseline = SysLiveBlocks();
    for (int bits : {8, 24}) {
        const Grid g{2, 1, 6, 3, true};
        uint8_t* source = bits == 8 ? GridDib8(g) : GridDib24(g);
        uint8_t* target = bits == 8 ? TargetDib8(17, 10) : TargetDib24(17, 10);
        ASSERT_TRUE(source && target);
        const std::vector<uint32_t> original = DibSnapshot(target);

        FrameSprite sprite;
        FrameSprite_Init(&sprite, nullptr);
        FrameSprite_SetSourceDib(&sprite, source, true);
        FrameSprite_SetGrid(&sprite, g.rows, g.columns);
        FrameSprite_SetTargetDib(&sprite, target);
        const POINT places[] = {{2, 1}, {9, 6}, {11, 7}, {0, 0}};
        for (const POINT& at : places) {
            FrameSprite_DrawMasked(&sprite, 1, at.x, at.y, false, false, true);
            ASSERT_NE(DibSnapshot(target), original) << bits << "-bit: nothing drawn at " << at.x << "," << at.y;
            FrameSprite_RestoreBackground(&sprite, false, false);
            ASSERT_EQ(DibSnapshot(target), original) << bits << "-bit: after restoring " << at.x << "," << at.y;
        }
        FrameSprite_DrawWithRop(&sprite, 0, 5, 5, false, false, true, SRCCOPY);
        ASSERT_NE(DibSnapshot(target), original);
        FrameSprite_RestoreBackground(&sprite, false, false);
        EXPECT_EQ(DibSnapshot(target), original) << bits << "-bit";
        FrameSprite_Destroy(&sprite);
        FreePackedDib(source);
        FreePackedDib(target);
    }
    // The backing store's blocks went with the sprite.
    EXPECT_EQ(SysLiveBlocks(), baseline);
}

TEST(FrameSprite, RestoreWithoutASavedBackgroundDoesNothing) {
    const Grid g{1, 1, 4, 4, false};
    Canvas source(4, 4, RGB(0, 0, 0));
    source.FillPattern(40);
    Canvas target(8, 8, RGB(0, 0, 0));
    target.FillPattern(41);

    FrameSprite sprite;
    FrameSprite_Init(&sprite, nullptr);
    FrameSprite_SetSourceDc(&sprite, source.dc, false);
    FrameSprite_SetGrid(&sprite, g.rows, g.columns);
    FrameSprite_SetTargetDc(&sprite, target.dc);

    // Never saved.
    FrameSprite_DrawWithRop(&sprite, 0, 2, 2, false, false, false, SRCCOPY);
    std::vector<uint8_t> drawn = target.Snapshot();
    FrameSprite_RestoreBackground(&sprite, false, false);
    EXPECT_EQ(target.Snapshot(), drawn);

    // Saved once, restored once: a second restore must not paint the old background again.
    FrameSprite_DrawWithRop(&sprite, 0, 4, 4, false, false, true, SRCCOPY);
    FrameSprite_RestoreBackground(&sprite, false, false);
    FrameSprite_DrawWithRop(&sprite, 0, 4, 4, false, false, false, SRCCOPY);
    drawn = target.Snapshot();
    FrameSprite_RestoreBackground(&sprite, false, false);
    EXPECT_EQ(target.Snapshot(), drawn);
    FrameSprite_Destroy(&sprite);
}

TEST(FrameSprite, InvalidateFlagInvalidatesTheFrameRectangle) {
    TestWindow window(0, 0, 160, 120);
    ASSERT_NE(window.hwnd, nullptr);
    const Grid g{1, 2, 7, 5, true};
    Canvas source(g.Width(), g.Height(), RGB(0, 0, 0));
    PaintGrid(&source, g);
    Canvas target(160, 120, RGB(0, 0, 0));

    FrameSprite sprite;
    FrameSprite_Init(&sprite, window.hwnd);
    FrameSprite_SetSourceDc(&sprite, source.dc, true);
    FrameSprite_SetGrid(&sprite, g.rows, g.columns);
    FrameSprite_SetTargetDc(&sprite, target.dc);
    RECT update;

    ValidateRect(window.hwnd, nullptr);
    FrameSprite_DrawMasked(&sprite, 1, 30, 40, false, false, true);
    EXPECT_FALSE(GetUpdateRect(window.hwnd, &update, FALSE)) << "invalidated without being asked";

    FrameSprite_DrawMasked(&sprite, 1, 30, 40, true, false, true);
    ASSERT_TRUE(GetUpdateRect(window.hwnd, &update, FALSE));
    EXPECT_EQ(update.left, 30);
    EXPECT_EQ(update.top, 40);
    EXPECT_EQ(update.right, 37);
    EXPECT_EQ(update.bottom, 45);

    ValidateRect(window.hwnd, nullptr);
    FrameSprite_DrawWithRop(&sprite, 0, 100, 10, true, false, false, SRCCOPY);
    ASSERT_TRUE(GetUpdateRect(window.hwnd, &update, FALSE));
    EXPECT_EQ(update.left, 100);
    EXPECT_EQ(update.top, 10);
    EXPECT_EQ(update.right, 107);
    EXPECT_EQ(update.bottom, 15);

    // Restoring invalidates where the background was taken, not where the last frame went.
    ValidateRect(window.hwnd, nullptr);
    FrameSprite_RestoreBackground(&sprite, true, false);
    ASSERT_TRUE(GetUpdateRect(window.hwnd, &update, FALSE));
    EXPECT_EQ(update.left, 30);
    EXPECT_EQ(update.top, 40);
    EXPECT_EQ(update.right, 37);
    EXPECT_EQ(update.bottom, 45);
    FrameSprite_Destroy(&sprite);
}

TEST(FrameSprite, LoadSourceFromThePack) {
    TempFolder folder;
    const Grid g{1, 2, 3, 2, true};
    const Grid wide{1, 1, 8, 2, false};
    uint8_t* grid = GridDib8(g);
    uint8_t* plain = MakeDib8(wide.Width(), wide.Height(), 256, [](int x, int y) { return uint8_t(x + 10 * y); });
    ASSERT_TRUE(grid && plain);
    std::string path = folder.File("Tavirel.rf");
    ASSERT_TRUE(WriteTestPack(path, {{300, grid}, {301, plain}}));
    ASSERT_TRUE(OpenPack(&g_pack, path.c_str()));
    struct PackCloser {
        ~PackCloser() { ClosePack(&g_pack); }
    } closer;
    size_t baseline = SysLiveBlocks();

    FrameSprite sprite;
    FrameSprite_Init(&sprite, nullptr);
    FrameSprite_SetGrid(&sprite, g.rows, g.columns);
    ASSERT_TRUE(FrameSprite_LoadSource(&sprite, 300, true));
    EXPECT_EQ(sprite.frameWidth, 3);
    EXPECT_EQ(sprite.frameHeight, 2);
    EXPECT_EQ(SysLiveBlocks(), baseline + 1);

    uint8_t* target = TargetDib8(6, 4);
    FrameSprite_SetTargetDib(&sprite, target);
    FrameSprite_DrawMasked(&sprite, 1, 2, 1, false, false, false);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x) {
            uint32_t expected = TargetIndex(x, y);
            if (Inside(x, y, 2, 1, 3, 2) && Opaque(1, x - 2, y - 1)) expected = FrameIndex(1, x - 2, y - 1);
            ASSERT_EQ(DibAt(target, x, y), expected) << "at " << x << "," << y;
        }

    // A second load replaces the first grid; an absent id fails and keeps the loaded one.
    ASSERT_TRUE(FrameSprite_LoadSource(&sprite, 301, false));
    EXPECT_EQ(sprite.frameWidth, 4);  // the 1 x 2 grid set earlier still applies
    EXPECT_EQ(sprite.frameHeight, 2);
    EXPECT_EQ(SysLiveBlocks(), baseline + 2);  // the new grid and the target
    EXPECT_FALSE(FrameSprite_LoadSource(&sprite, 999, true));
    EXPECT_EQ(sprite.frameWidth, 4);
    FrameSprite_DrawWithRop(&sprite, 1, 0, 0, false, false, false, SRCCOPY);
    EXPECT_EQ(DibAt(target, 0, 0), 4u);
    EXPECT_EQ(DibAt(target, 3, 1), 17u);

    FrameSprite_Destroy(&sprite);
    FreePackedDib(target);
    EXPECT_EQ(SysLiveBlocks(), baseline);
    FreePackedDib(grid);
    FreePackedDib(plain);
}

TEST(FrameSprite, RestorePutsBackTheWholeSavedAreaAfterTheFramesShrink) {
    const Grid big{1, 1, 8, 6, false}, small{1, 1, 3, 2, false};
    Canvas bigSource(big.Width(), big.Height(), RGB(0, 0, 0));
    bigSource.FillPattern(60);
    Canvas smallSource(small.Width(), small.Height(), RGB(0, 0, 0));
    smallSource.FillPattern(61);
    Canvas target(16, 12, RGB(0, 0, 0));
    target.FillPattern(62);
    const std::vector<uint8_t> original = target.Snapshot();
    TestWindow window(0, 0, 40, 40);
    ASSERT_NE(window.hwnd, nullptr);

    FrameSprite sprite;
    FrameSprite_Init(&sprite, window.hwnd);
    FrameSprite_SetSourceDc(&sprite, bigSource.dc, false);
    FrameSprite_SetTargetDc(&sprite, target.dc);
    FrameSprite_DrawWithRop(&sprite, 0, 4, 3, false, false, true, SRCCOPY);
    // The control switches to a smaller strip while its frame is still up.
    FrameSprite_SetSourceDc(&sprite, smallSource.dc, false);
    ASSERT_EQ(sprite.frameWidth, 3);
    ValidateRect(window.hwnd, nullptr);
    FrameSprite_RestoreBackground(&sprite, true, false);
    EXPECT_EQ(target.Snapshot(), original);
    RECT update;
    ASSERT_TRUE(GetUpdateRect(window.hwnd, &update, FALSE));
    EXPECT_EQ(update.left, 4);
    EXPECT_EQ(update.top, 3);
    EXPECT_EQ(update.right, 12);
    EXPECT_EQ(update.bottom, 9);
    FrameSprite_Destroy(&sprite);

    // The same on a packed DIB.
    uint8_t* bigDib = MakeDib8(8, 6, 256, [](int x, int y) { return uint8_t(200 + x + y); });
    uint8_t* smallDib = MakeDib8(3, 2, 256, [](int x, int y) { return uint8_t(100 + x + y); });
    uint8_t* dibTarget = TargetDib8(16, 12);
    const std::vector<uint32_t> before = DibSnapshot(dibTarget);
    FrameSprite_Init(&sprite, nullptr);
    FrameSprite_SetSourceDib(&sprite, bigDib, false);
    FrameSprite_SetTargetDib(&sprite, dibTarget);
    FrameSprite_DrawWithRop(&sprite, 0, 5, 2, false, false, true, SRCCOPY);
    FrameSprite_SetSourceDib(&sprite, smallDib, false);
    FrameSprite_RestoreBackground(&sprite, false, false);
    EXPECT_EQ(DibSnapshot(dibTarget), before);
    FrameSprite_Destroy(&sprite);
    FreePackedDib(bigDib);
    FreePackedDib(smallDib);
    FreePackedDib(dibTarget);
}

TEST(FrameSprite, SaveAndRestoreFollowTheTargetFromDcToDibAndBack) {
    size_t baseline = SysLiveBlocks();
    const Grid g{1, 1, 4, 3, false};
    Canvas dcSource(g.Width(), g.Height(), RGB(0, 0, 0));
    dcSource.FillPattern(70);
    uint8_t* dibSource = MakeDib24(g.Width(), g.Height(), [](int x, int y) { return PatternColor(x, y, 71); });
    Canvas dcTarget(12, 9, RGB(0, 0, 0));
    dcTarget.FillPattern(72);
    uint8_t* dibTarget = TargetDib24(12, 9);
    const std::vector<uint8_t> dcOriginal = dcTarget.Snapshot();
    const std::vector<uint32_t> dibOriginal = DibSnapshot(dibTarget);

    FrameSprite sprite;
    FrameSprite_Init(&sprite, nullptr);
    // The backing store is made for the first target kind; each switch must still save and restore.
    for (int round = 0; round < 4; ++round) {
        if (round % 2 == 0) {
            FrameSprite_SetSourceDib(&sprite, dibSource, false);
            FrameSprite_SetTargetDib(&sprite, dibTarget);
            FrameSprite_DrawWithRop(&sprite, 0, 6, 4 + round, false, false, true, SRCCOPY);
            ASSERT_NE(DibSnapshot(dibTarget), dibOriginal);
            FrameSprite_RestoreBackground(&sprite, false, false);
            EXPECT_EQ(DibSnapshot(dibTarget), dibOriginal) << "DIB target, round " << round;
        } else {
            FrameSprite_SetSourceDc(&sprite, dcSource.dc, false);
            FrameSprite_SetTargetDc(&sprite, dcTarget.dc);
            FrameSprite_DrawWithRop(&sprite, 0, 2 + round, 1, false, false, true, SRCCOPY);
            ASSERT_NE(dcTarget.Snapshot(), dcOriginal);
            FrameSprite_RestoreBackground(&sprite, false, false);
            EXPECT_EQ(dcTarget.Snapshot(), dcOriginal) << "DC target, round " << round;
        }
    }
    FrameSprite_Destroy(&sprite);
    FreePackedDib(dibSource);
    FreePackedDib(dibTarget);
    EXPECT_EQ(SysLiveBlocks(), baseline);
}
