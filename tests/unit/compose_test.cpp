// Composing views: the rule (topmost inside pixel, stipple, cloth), the 5 x 5 tiling of large repaints,
// the fast composer against the reference on thousands of random states, and view pictures.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "puzzle/compose.h"
#include "puzzle/cut.h"
#include "puzzle/views.h"
#include "puzzle_test_support.h"

namespace {

// A cloth whose texels all differ in at least one channel: index = (x + 3 * y) & 255 and a palette of
// 256 distinct colours.
std::vector<uint8_t> MakeCloth(uint32_t seed) {
    std::vector<uint8_t> cloth = MakePackedDib(kTextureSize, kTextureSize, 8);
    std::mt19937 random(seed);
    for (int i = 0; i < 256; ++i) {
        DibColor c{uint8_t(i), uint8_t(random()), uint8_t(random()), 0};
        std::memcpy(cloth.data() + kDibPaletteOffset + 4 * i, &c, 4);
    }
    for (int y = 0; y < kTextureSize; ++y)
        for (int x = 0; x < kTextureSize; ++x)
            cloth[kDibPixelOffset + y * kTextureSize + x] = uint8_t((x + 3 * y + seed) & 255);
    return cloth;
}

struct Composing : ::testing::Test {
    void SetUp() override {
        InstallRecordingHooks();
        FixRandom(3);
        p = PuzzleState{};
        cloth = MakeCloth(5);
        SetTableTexture(nullptr, cloth.data());
    }
    void TearDown() override {
        ReleaseTestPuzzle(&p);
        SetTableTexture(nullptr, nullptr);
        g_puzzleHooks = PuzzleHooks{};
    }
    // The three bytes of view pixel (x, y), y from the top.
    uint32_t At(int view, int32_t x, int32_t y) const {
        const ViewSurface& s = p.surfaces[view];
        const uint8_t* px = s.pixels + int64_t(s.height - 1 - y) * s.stride + 3 * x;
        return uint32_t(px[0]) | uint32_t(px[1]) << 8 | uint32_t(px[2]) << 16;
    }
    uint32_t ClothAt(int32_t x, int32_t y) const {
        uint8_t index = cloth[kDibPixelOffset + (99 - y % 100) * 100 + x % 100];
        const uint8_t* c = cloth.data() + kDibPaletteOffset + 4 * index;
        return uint32_t(c[0]) | uint32_t(c[1]) << 8 | uint32_t(c[2]) << 16;
    }
    uint32_t SheetColor(uint32_t piece, int32_t bx, int32_t by) const {
        return *SheetPixel(&p, piece, bx, by) & 0xFFFFFF;
    }
    void Garble(int view, uint8_t value) {
        const ViewSurface& s = p.surfaces[view];
        std::memset(s.pixels, value, size_t(s.stride) * s.height);
    }
    std::vector<uint8_t> Picture(int view) const {
        const ViewSurface& s = p.surfaces[view];
        return std::vector<uint8_t>(s.pixels, s.pixels + size_t(s.stride) * s.height);
    }
    PuzzleState p;
    std::vector<uint8_t> cloth;
};

}  // namespace

TEST_F(Composing, TopmostInsidePixelWinsAndTransparentPartsShowWhatLiesBelow) {
    ASSERT_TRUE(CutTestPuzzle(&p, 2, 2, 200, 200, 2, 2, 1.0, true, 24, 400, 300));
    GiveViewPictures(&p);
    LayOut(&p, {6, 6, 6, 6});
    // Piece 3 on top of piece 0, both at (50, 50); the others far away.
    p.order[0] = 3, p.order[1] = 0, p.order[2] = 1, p.order[3] = 2;
    p.pieces[3].x = p.pieces[3].y = p.pieces[0].x = p.pieces[0].y = 50;
    p.pieces[1].x = p.pieces[2].x = 300;
    p.pieces[1].y = p.pieces[2].y = 200;
    RepaintView(&p, kTableView, false);
    int topWins = 0, showsBelow = 0, cloth = 0;
    for (int32_t by = 0; by < p.boxHeight; ++by)
        for (int32_t bx = 0; bx < p.boxWidth; ++bx) {
            bool topIn = *SheetPixel(&p, 3, bx, by) >> 24, lowIn = *SheetPixel(&p, 0, bx, by) >> 24;
            uint32_t expected = topIn ? SheetColor(3, bx, by) : lowIn ? SheetColor(0, bx, by) : ClothAt(50 + bx, 50 + by);
            ASSERT_EQ(At(kTableView, 50 + bx, 50 + by), expected) << bx << ", " << by;
            (topIn ? topWins : lowIn ? showsBelow : cloth)++;
        }
    EXPECT_GT(topWins, 0);
    EXPECT_GT(showsBelow, 0);
    EXPECT_GT(cloth, 0);
}

TEST_F(Composing, SelectedPieceIsInvertedOnEverySecondRowAtEveryThirdColumn) {
    ASSERT_TRUE(CutTestPuzzle(&p, 2, 2, 200, 200, 2, 2, 1.0, true, 24, 400, 300));
    GiveViewPictures(&p);
    LayOut(&p, {6, 0, 0, 0});
    p.pieces[0].x = 17;
    p.pieces[0].y = 23;
    p.pieces[0].lit = 0;
    RepaintView(&p, kTableView, false);
    int inverted = 0;
    for (int32_t by = 0; by < p.boxHeight; ++by)
        for (int32_t bx = 0; bx < p.boxWidth; ++bx) {
            if (!(*SheetPixel(&p, 0, bx, by) >> 24)) continue;
            uint32_t color = SheetColor(0, bx, by);
            bool marked = by % 2 == 0 && bx % 3 == 0;
            ASSERT_EQ(At(kTableView, 17 + bx, 23 + by), marked ? (~color & 0xFFFFFF) : color) << bx << ", " << by;
            inverted += marked;
        }
    EXPECT_GT(inverted, 100);
}

TEST_F(Composing, ClothTexelsAreReadBottomUpAndRepeatEveryHundredPixels) {
    // No puzzle at all: every view shows only the cloth.
    p.tableWidth = 947;
    p.tableHeight = 640;
    GiveViewPictures(&p);
    RepaintView(&p, kTableView, false);
    for (int32_t y = 0; y < 640; y += 7)
        for (int32_t x = 0; x < 947; x += 5) ASSERT_EQ(At(kTableView, x, y), ClothAt(x, y)) << x << ", " << y;
    // The bitmap's first stored row is the cloth's bottom row.
    uint8_t index = cloth[kDibPixelOffset + 0 * 100 + 0];
    const uint8_t* c = cloth.data() + kDibPaletteOffset + 4 * index;
    EXPECT_EQ(At(kTableView, 0, 99), uint32_t(c[0]) | uint32_t(c[1]) << 8 | uint32_t(c[2]) << 16);
    EXPECT_EQ(At(kTableView, 200, 199), At(kTableView, 0, 99));
    // Without a cloth the table is black.
    SetTableTexture(&p, nullptr);
    RepaintView(&p, kTableView, false);
    EXPECT_EQ(At(kTableView, 10, 10), 0u);
    EXPECT_FALSE(SetTableTexture(&p, MakePackedDib(50, 100, 8).data()));
}

TEST_F(Composing, TilesAreFifthsMeasuredFromTheViewOriginAndTheLastReachesTheFarCorner) {
    Rect r{300, 200, 251, 103};  // tw = 50, th = 20
    Rect first = RepaintTile(r, 0, 0), middle = RepaintTile(r, 2, 3), last = RepaintTile(r, 4, 4);
    EXPECT_EQ(first.x, 0);
    EXPECT_EQ(first.y, 0);
    EXPECT_EQ(first.width, 50);
    EXPECT_EQ(first.height, 20);
    EXPECT_EQ(middle.x, 100);
    EXPECT_EQ(middle.y, 60);
    EXPECT_EQ(last.x, 200);
    EXPECT_EQ(last.y, 80);
    EXPECT_EQ(last.x + last.width, 551);
    EXPECT_EQ(last.y + last.height, 303);
}

TEST_F(Composing, LargeRepaintRecomposesFromTheViewOriginSmallOneOnlyItsRectangle) {
    ASSERT_TRUE(CutTestPuzzle(&p, 3, 3, 240, 240, 2, 2, 1.0, true, 24, 600, 400));
    GiveViewPictures(&p);
    const int32_t W = p.boxWidth, H = p.boxHeight;
    for (bool fast : {false, true}) {
        // Wider than a box and taller than one: everything from (0, 0) to the far corner is recomposed.
        Garble(kTableView, 0xA5);
        Rect large{200, 150, W + 1, H + 1};
        if (fast)
            ComposeRect(&p, kTableView, large.x, large.y, large.width, large.height, false);
        else
            ComposeRectReference(&p, kTableView, large.x, large.y, large.width, large.height, false);
        std::vector<uint8_t> after = Picture(kTableView);
        Garble(kTableView, 0x5A);
        ComposeTileReference(&p, kTableView, Rect{0, 0, 600, 400}, false);  // the true picture
        std::vector<uint8_t> truth = Picture(kTableView);
        const ViewSurface& s = p.surfaces[kTableView];
        for (int32_t y = 0; y < 400; ++y)
            for (int32_t x = 0; x < 600; ++x) {
                size_t at = size_t(s.height - 1 - y) * s.stride + 3 * x;
                bool recomposed = x < large.x + large.width && y < large.y + large.height;
                if (recomposed)
                    ASSERT_EQ(std::memcmp(&after[at], &truth[at], 3), 0) << x << ", " << y;
                else
                    ASSERT_EQ(after[at], 0xA5) << x << ", " << y;
            }
        // As wide as a box: only the rectangle itself.
        Garble(kTableView, 0xA5);
        Rect small{200, 150, W, H + 40};
        if (fast)
            ComposeRect(&p, kTableView, small.x, small.y, small.width, small.height, false);
        else
            ComposeRectReference(&p, kTableView, small.x, small.y, small.width, small.height, false);
        after = Picture(kTableView);
        for (int32_t y = 0; y < 400; ++y)
            for (int32_t x = 0; x < 600; ++x) {
                size_t at = size_t(s.height - 1 - y) * s.stride + 3 * x;
                bool inside = x >= small.x && x < small.x + small.width && y >= small.y && y < small.y + small.height;
                if (inside)
                    ASSERT_EQ(std::memcmp(&after[at], &truth[at], 3), 0) << x << ", " << y;
                else
                    ASSERT_EQ(after[at], 0xA5) << x << ", " << y;
            }
    }
}

TEST_F(Composing, SkipTopLeavesOutTheLiftedPiece) {
    ASSERT_TRUE(CutTestPuzzle(&p, 2, 2, 200, 200, 2, 2, 1.0, true, 24, 400, 300));
    GiveViewPictures(&p);
    LayOut(&p, {6, 6, 6, 6});
    for (uint32_t i = 0; i < 4; ++i) p.pieces[i].x = p.pieces[i].y = 40;
    const uint32_t top = p.views[kTableView].entries[0], second = p.views[kTableView].entries[1];
    int32_t bx, by;
    ASSERT_TRUE(FindInsidePixel(&p, top, &bx, &by));
    RepaintRect(&p, kTableView, 40, 40, p.boxWidth, p.boxHeight, false, true);
    uint32_t shown = At(kTableView, 40 + bx, 40 + by);
    EXPECT_NE(shown, SheetColor(top, bx, by));
    if (*SheetPixel(&p, second, bx, by) >> 24) {
        EXPECT_EQ(shown, SheetColor(second, bx, by));
    }
    RepaintRect(&p, kTableView, 40, 40, p.boxWidth, p.boxHeight, false, false);
    EXPECT_EQ(At(kTableView, 40 + bx, 40 + by), SheetColor(top, bx, by));
}

TEST_F(Composing, RepaintClipsToTheViewAndInvalidatesOnlyWhenAsked) {
    ASSERT_TRUE(CutTestPuzzle(&p, 2, 2, 200, 200, 2, 2, 1.0, true, 24, 400, 300));
    GiveViewPictures(&p);
    g_hookLog.events.clear();
    RepaintRect(&p, kTableView, -20, 280, 50, 50, true, false);
    EXPECT_EQ(g_hookLog.events, std::vector<std::string>{"invalidate 6 0 280 30 20"});
    g_hookLog.events.clear();
    RepaintRect(&p, kTableView, 10, 10, 20, 20, false, false);
    RepaintRect(&p, kTableView, 500, 10, 20, 20, true, false);  // nothing left after clipping
    EXPECT_TRUE(g_hookLog.events.empty());
}

TEST_F(Composing, FastComposerMatchesTheReferenceByteForByteOnThousandsOfRandomStates) {
    // A 3 x 4 puzzle; views of table, tray and small sizes; pieces hanging off every edge, selected
    // pieces, shuffled runs, skipTop, rectangles small, large (tiled), partly outside.
    ASSERT_TRUE(CutTestPuzzle(&p, 3, 4, 132, 99, 2, 2, 1.0, true, 24, 170, 110));
    const uint32_t n = PieceCount(&p);
    const int32_t W = p.boxWidth, H = p.boxHeight;
    ResizeViewPicture(&p, kTableView, 170, 110);
    ResizeViewPicture(&p, 0, 288, 48);   // a tray
    ResizeViewPicture(&p, 1, 37, 29);    // smaller than a box
    ResizeViewPicture(&p, 2, 2, 2);
    std::mt19937 random(20240611);
    auto uniform = [&](int32_t lo, int32_t hi) {
        return std::uniform_int_distribution<int32_t>(lo, std::max(lo, hi))(random);
    };
    const int views[4] = {kTableView, 0, 1, 2};
    // Two pieces get sheets of noise, inside to their box edges, so every box column and row is exercised.
    for (uint32_t i = 0; i < 2; ++i)
        for (int32_t y = 0; y < H; ++y)
            for (int32_t x = 0; x < W; ++x)
                *SheetPixel(&p, i, x, y) = (uint32_t(random()) & 0xFFFFFF) | (uniform(0, 2) ? 1u << 24 : 0u);
    ASSERT_TRUE(IndexPieceOutlines(&p));
    int tiled = 0, states = 3000;
    for (int state = 0; state < states; ++state) {
        if (state % 500 == 0) SetTableTexture(nullptr, MakeCloth(uint32_t(state)).data());
        std::vector<int> where(n);
        for (uint32_t i = 0; i < n; ++i) where[i] = views[uniform(0, 3)];
        LayOut(&p, where);
        for (int v = 0; v < kViewCount; ++v)
            std::shuffle(p.views[v].entries, p.views[v].entries + p.views[v].count, random);
        for (uint32_t i = 0; i < n; ++i) {
            const ViewSurface& s = p.surfaces[where[i]];
            p.pieces[i].x = uniform(-W - 3, s.width + 3);
            p.pieces[i].y = uniform(-H - 3, s.height + 3);
            p.pieces[i].lit = uniform(0, 3) != 0;
        }
        const int view = views[uniform(0, 3)];
        const ViewSurface& s = p.surfaces[view];
        Rect r;
        switch (uniform(0, 3)) {
        case 0: r = Rect{0, 0, s.width, s.height}; break;
        case 1: r = Rect{uniform(-20, s.width), uniform(-20, s.height), uniform(0, W), uniform(0, s.height)}; break;
        case 2: r = Rect{uniform(0, s.width / 2), uniform(0, s.height / 2), uniform(W + 1, s.width + 10),
                         uniform(H + 1, s.height + 10)}; break;
        default: r = Rect{uniform(-W, s.width), uniform(-H, s.height), uniform(1, 2 * W), uniform(1, 2 * H)}; break;
        }
        Rect clipped = r;
        if (ClipToView(s, &clipped) && IsTiledRepaint(&p, clipped)) ++tiled;
        const bool skipTop = uniform(0, 4) == 0;
        const uint8_t garbage = uint8_t(uniform(0, 255));
        Garble(view, garbage);
        ComposeRectReference(&p, view, r.x, r.y, r.width, r.height, skipTop);
        std::vector<uint8_t> reference = Picture(view);
        Garble(view, garbage);
        ComposeRect(&p, view, r.x, r.y, r.width, r.height, skipTop);
        ASSERT_EQ(Picture(view), reference) << "state " << state << " view " << view << " rect " << r.x << ", "
                                            << r.y << ", " << r.width << " x " << r.height;
    }
    EXPECT_GT(tiled, states / 10);
}

TEST_F(Composing, LargeAreasComposedByTwoThreadsMatchTheReferenceAndTheOneThreadPicture) {
    // A table above the size shared with the helper thread: pieces crowded in one corner, scattered
    // elsewhere and hanging off the edges, so that the bands of rows differ in work.
    ASSERT_TRUE(CutTestPuzzle(&p, 8, 10, 400, 320, 2, 2, 1.0, true, 24, 720, 480));
    GiveViewPictures(&p);
    const uint32_t n = PieceCount(&p);
    const int32_t W = p.boxWidth, H = p.boxHeight;
    ASSERT_GE(int64_t(p.surfaces[kTableView].width) * p.surfaces[kTableView].height, 1 << 18);
    LayOut(&p, std::vector<int>(n, kTableView));
    std::mt19937 random(20240612);
    auto uniform = [&](int32_t lo, int32_t hi) { return std::uniform_int_distribution<int32_t>(lo, hi)(random); };
    for (int state = 0; state < 6; ++state) {
        std::shuffle(p.views[kTableView].entries, p.views[kTableView].entries + n, random);
        for (uint32_t i = 0; i < n; ++i) {
            const bool crowded = i % 2 == 0;
            p.pieces[i].x = crowded ? uniform(400, 560) : uniform(-W / 2, 720 - W / 2);
            p.pieces[i].y = crowded ? uniform(280, 400) : uniform(-H / 2, 480 - H / 2);
            p.pieces[i].lit = uniform(0, 4) != 0;
        }
        const bool skipTop = state % 3 == 2;
        // The whole table, and a tiled repaint that recomposes from the origin to its far corner.
        const Rect rects[2] = {Rect{0, 0, 720, 480}, Rect{uniform(200, 400), uniform(150, 300), W + 30, H + 30}};
        for (const Rect& r : rects) {
            Garble(kTableView, 0x3C);
            ComposeRectReference(&p, kTableView, r.x, r.y, r.width, r.height, skipTop);
            const std::vector<uint8_t> reference = Picture(kTableView);
            ComposeCounters counted[2];
            for (bool shared : {true, false}) {
                g_composeShared = shared;
                g_composeCounters = ComposeCounters{};
                Garble(kTableView, 0x3C);
                ComposeRect(&p, kTableView, r.x, r.y, r.width, r.height, skipTop);
                counted[shared] = g_composeCounters;
                ASSERT_EQ(Picture(kTableView), reference) << "state " << state << (shared ? " shared" : " alone");
            }
            g_composeShared = true;
            EXPECT_EQ(counted[0].piecePixels, counted[1].piecePixels);
            EXPECT_EQ(counted[0].clothPixels, counted[1].clothPixels);
            EXPECT_EQ(counted[0].piecesVisited, counted[1].piecesVisited);
        }
    }
}

TEST_F(Composing, SheetFilledWithoutTheCutterIsIndexedBeforeComposing) {
    ASSERT_TRUE(CutTestPuzzle(&p, 2, 2, 200, 200, 2, 2, 1.0, true, 24, 400, 300));
    GiveViewPictures(&p);
    // A sheet written by hand: every box pixel of piece 0 inside and red.
    for (int32_t y = 0; y < p.boxHeight; ++y)
        for (int32_t x = 0; x < p.boxWidth; ++x) *SheetPixel(&p, 0, x, y) = 0x01FF0000;
    ASSERT_TRUE(IndexPieceOutlines(&p));
    std::free(p.outlineShapes);
    std::free(p.outlineShape);
    std::free(p.outlineColours);
    std::free(p.outlineColour);
    p.outlineShapes = nullptr;
    p.outlineShape = nullptr;
    p.outlineColours = nullptr;
    p.outlineColour = nullptr;
    LayOut(&p, {6, 0, 0, 0});
    p.pieces[0].x = p.pieces[0].y = 10;
    RepaintView(&p, kTableView, false);
    EXPECT_NE(p.outlineShapes, nullptr);
    EXPECT_EQ(At(kTableView, 10, 10), 0xFF0000u);
    EXPECT_EQ(At(kTableView, 10 + p.boxWidth - 1, 10 + p.boxHeight - 1), 0xFF0000u);
}

TEST(Views, ShrunkBelowTwoByTwoKeepsTheOldPicture) {
    PuzzleState p{};
    g_puzzleHooks = PuzzleHooks{};
    ASSERT_EQ(ResizeViewPicture(&p, 3, 288, 100), VIEW_FIRST_SIZE);
    uint8_t* pixels = p.surfaces[3].pixels;
    EXPECT_EQ(p.surfaces[3].stride, 864);
    EXPECT_EQ(ResizeViewPicture(&p, 3, 1, 100), VIEW_KEPT);
    EXPECT_EQ(ResizeViewPicture(&p, 3, 288, 1), VIEW_KEPT);
    EXPECT_EQ(ResizeViewPicture(&p, 3, 0, 0), VIEW_KEPT);
    EXPECT_EQ(p.surfaces[3].pixels, pixels);
    EXPECT_EQ(p.surfaces[3].width, 288);
    EXPECT_EQ(p.surfaces[3].height, 100);
    EXPECT_EQ(ResizeViewPicture(&p, 3, 2, 2), VIEW_RESIZED);
    EXPECT_EQ(p.surfaces[3].stride, 8);  // (3 * 2 + 3) rounded down to 4
    FreeViewPicture(&p, 3);
}

TEST_F(Composing, GrowingViewKeepsItsTopLeftCornerAndComposesTheNewStrips) {
    ASSERT_TRUE(CutTestPuzzle(&p, 2, 2, 200, 200, 2, 2, 1.0, true, 24, 400, 300));
    ASSERT_EQ(ResizeViewPicture(&p, 0, 100, 50), VIEW_FIRST_SIZE);
    Garble(0, 0x77);
    g_hookLog.events.clear();
    ASSERT_EQ(ResizeViewPicture(&p, 0, 130, 70), VIEW_RESIZED);
    for (int32_t y = 0; y < 70; ++y)
        for (int32_t x = 0; x < 130; ++x) {
            bool kept = x < 100 && y < 50;
            if (kept)
                ASSERT_EQ(At(0, x, y), 0x777777u) << x << ", " << y;
            else
                ASSERT_EQ(At(0, x, y), ClothAt(x, y)) << x << ", " << y;
        }
    EXPECT_TRUE(g_hookLog.has("invalidate 0 100 0 30 70"));
    EXPECT_TRUE(g_hookLog.has("invalidate 0 0 50 130 20"));
    // Shrinking keeps the corner too, and composes nothing.
    g_hookLog.events.clear();
    ASSERT_EQ(ResizeViewPicture(&p, 0, 60, 30), VIEW_RESIZED);
    EXPECT_EQ(At(0, 59, 29), 0x777777u);
    EXPECT_TRUE(g_hookLog.events.empty());
}
