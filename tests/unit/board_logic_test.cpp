// The board's gestures without windows: hit test, press, drag arithmetic and pixels, selection, holding
// pieces inside a view, release, and the play clock.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "puzzle/board_logic.h"
#include "puzzle/compose.h"
#include "puzzle/cut.h"
#include "puzzle/drag_pixels.h"
#include "puzzle/join.h"
#include "puzzle/play_clock.h"
#include "puzzle_test_support.h"

namespace {

struct Board : ::testing::Test {
    void SetUp() override {
        InstallRecordingHooks();
        FixRandom(5);
        p = PuzzleState{};
        d = DragState{};
        ASSERT_TRUE(CutTestPuzzle(&p, 3, 4, 400, 300, 2, 2, 1.0, true, 24, 947, 640));  // cells 100 x 100
        GiveViewPictures(&p);
        g_hookLog.events.clear();
    }
    void TearDown() override {
        ReleaseTestPuzzle(&p);
        g_puzzleHooks = PuzzleHooks{};
    }
    void Place(uint32_t i, int32_t x, int32_t y) {
        p.pieces[i].x = x;
        p.pieces[i].y = y;
    }
    void Raise(uint32_t i) {
        int view;
        uint32_t position;
        ASSERT_TRUE(FindPieceInViews(&p, i, &view, &position));
        MoveRun(&p, view, position, 1, view);
    }
    // Fills piece i's whole box as inside, so that its edges can be probed.
    void MakeSolid(uint32_t i) {
        for (int32_t y = 0; y < p.boxHeight; ++y)
            for (int32_t x = 0; x < p.boxWidth; ++x) *SheetPixel(&p, i, x, y) |= 1u << 24;
        ASSERT_TRUE(IndexPieceOutlines(&p));
    }
    PuzzleState p;
    DragState d;
};

}  // namespace

TEST_F(Board, HitTestIsStrictOnTheLeftAndTopEdgesOnly) {
    MakeSolid(5);
    Raise(5);
    Place(5, 100, 200);
    uint32_t position = 99;
    EXPECT_NE(HitTestView(&p, kTableView, 100, 250, nullptr), 5);  // first column
    EXPECT_NE(HitTestView(&p, kTableView, 150, 200, nullptr), 5);  // first row
    EXPECT_EQ(HitTestView(&p, kTableView, 101, 201, &position), 5);
    EXPECT_EQ(position, 0u);
    EXPECT_EQ(HitTestView(&p, kTableView, 100 + p.boxWidth - 1, 200 + p.boxHeight - 1, nullptr), 5);
    EXPECT_NE(HitTestView(&p, kTableView, 100 + p.boxWidth, 250, nullptr), 5);
    // Composing includes the first column: the pixel there is the piece's.
    RepaintView(&p, kTableView, false);
    const ViewSurface& s = p.surfaces[kTableView];
    const uint8_t* px = s.pixels + int64_t(s.height - 1 - 250) * s.stride + 3 * 100;
    uint32_t shown = uint32_t(px[0]) | uint32_t(px[1]) << 8 | uint32_t(px[2]) << 16;
    EXPECT_EQ(shown, *SheetPixel(&p, 5, 0, 50) & 0xFFFFFF);
}

TEST_F(Board, PressingOnATransparentCornerTakesThePieceBelow) {
    Place(5, 300, 300);
    Place(6, 300, 300);
    Raise(5);
    Raise(6);  // 6 on top of 5, same box
    int32_t bx, by;
    ASSERT_TRUE(FindInsidePixel(&p, 5, &bx, &by));
    // A corner pixel of the box is outside every outline; find one where 5 is inside and 6 is not.
    bool found = false;
    for (int32_t y = 1; y < p.boxHeight && !found; ++y)
        for (int32_t x = 1; x < p.boxWidth && !found; ++x)
            if ((*SheetPixel(&p, 5, x, y) >> 24) && !(*SheetPixel(&p, 6, x, y) >> 24)) {
                bx = x;
                by = y;
                found = true;
            }
    ASSERT_TRUE(found);
    uint32_t position;
    EXPECT_EQ(HitTestView(&p, kTableView, 300 + bx, 300 + by, &position), 5);
    EXPECT_EQ(position, 1u);
    EXPECT_EQ(PressOnView(&p, &d, kTableView, Point{300 + bx, 300 + by}), PRESS_PIECE);
    EXPECT_EQ(p.views[kTableView].entries[0], 5u);
}

TEST_F(Board, PressingOnATransparentCornerWithNothingBelowStartsASelectionRectangle) {
    Place(5, 10, 10);
    Raise(5);
    for (uint32_t i = 0; i < PieceCount(&p); ++i)
        if (i != 5) Place(i, 700, 450);
    // Box pixel (1, 1) lies in the corner margin, outside every outline.
    ASSERT_FALSE(*SheetPixel(&p, 5, 1, 1) >> 24);
    EXPECT_EQ(PressOnView(&p, &d, kTableView, Point{11, 11}), PRESS_SELECTION);
    EXPECT_EQ(p.dragMode, 2u);
    for (const Point& corner : d.outline) {
        EXPECT_EQ(corner.x, 11);
        EXPECT_EQ(corner.y, 11);
    }
    UpdateSelectionOutline(&d, Point{5, 40});
    Rect r = SelectionRectangle(&d);
    EXPECT_EQ(r.x, 5);
    EXPECT_EQ(r.y, 11);
    EXPECT_EQ(r.width, 6);
    EXPECT_EQ(r.height, 29);
    EXPECT_EQ(d.outline[4].x, d.outline[0].x);
    EXPECT_EQ(d.outline[2].y, 40);
}

TEST_F(Board, FirstGrabAfterACutStartsTheClockRaisesThePieceAndComposesWithoutIt) {
    ASSERT_EQ(p.clockPending, 1);
    p.paused = 1;
    Place(7, 400, 300);
    int32_t bx, by;
    ASSERT_TRUE(FindInsidePixel(&p, 7, &bx, &by));
    for (uint32_t i = 0; i < PieceCount(&p); ++i)
        if (i != 7) Place(i, 10, 10);
    ASSERT_EQ(PressOnView(&p, &d, kTableView, Point{400 + bx, 300 + by}), PRESS_PIECE);
    EXPECT_EQ(p.clockPending, 0);
    EXPECT_EQ(p.paused, 0);
    EXPECT_EQ(g_hookLog.count("start clock"), 1);
    EXPECT_EQ(p.views[kTableView].entries[0], 7u);
    EXPECT_EQ(p.dragMode, 1u);
    EXPECT_EQ(d.dragPos.x, 400);
    EXPECT_EQ(d.grabOffset.x, bx);
    EXPECT_EQ(d.grabOffset.y, by);
    // The picture under the lifted piece shows the cloth, ready for the background store.
    const ViewSurface& s = p.surfaces[kTableView];
    const uint8_t* px = s.pixels + int64_t(s.height - 1 - (300 + by)) * s.stride + 3 * (400 + bx);
    uint32_t shown = uint32_t(px[0]) | uint32_t(px[1]) << 8 | uint32_t(px[2]) << 16;
    EXPECT_NE(shown, *SheetPixel(&p, 7, bx, by) & 0xFFFFFF);
    ReleasePiece(&p, &d, PointerWindow{POINTER_OUTSIDE, 0});
    PressOnView(&p, &d, kTableView, Point{400 + bx, 300 + by});
    EXPECT_EQ(g_hookLog.count("start clock"), 1);  // only the first grab
}

TEST_F(Board, DragStepFollowsTheGrabOffsetAndOverATraysButtonShowsAtItsTopLeft) {
    d.grabOffset = Point{30, 40};
    d.dragView = kTableView;
    EXPECT_EQ(DragStepPosition(&d, Point{500, 300}, false).x, 470);
    EXPECT_EQ(DragStepPosition(&d, Point{500, 300}, false).y, 260);
    EXPECT_EQ(DragStepPosition(&d, Point{500, 300}, true).x, 0);
    EXPECT_EQ(DragStepPosition(&d, Point{500, 300}, true).y, 0);
    EXPECT_EQ(DragTargetView(&d, PointerWindow{POINTER_DROP_TARGET, 103}), 3);
    EXPECT_EQ(DragTargetView(&d, PointerWindow{POINTER_VIEW, 103}), kTableView);  // a tray's view: no switch
    EXPECT_EQ(DragTargetView(&d, PointerWindow{POINTER_DROP_TARGET, 120}), kTableView);
    EXPECT_EQ(DragTargetView(&d, PointerWindow{POINTER_OUTSIDE, 0}), kTableView);
    Rect area;
    EXPECT_TRUE(DragStepArea(Rect{10, 10, 50, 50}, Rect{30, 40, 50, 50}, &area));
    EXPECT_EQ(area.x, 10);
    EXPECT_EQ(area.width, 70);
    EXPECT_EQ(area.height, 80);
    EXPECT_TRUE(DragStepArea(Rect{10, 10, 50, 50}, Rect{60, 10, 50, 50}, &area));  // touching
    EXPECT_EQ(area.width, 100);
    EXPECT_FALSE(DragStepArea(Rect{10, 10, 50, 50}, Rect{61, 10, 50, 50}, &area));
    EXPECT_EQ(area.x, 61);
    EXPECT_EQ(area.width, 50);
}

TEST(ScreenFormat, SixteenBitMasksGiveShiftsAndDivisorsOthersAsTheyAre) {
    ScreenFormat f;
    ASSERT_TRUE(DescribeScreenFormat(16, kBitFields, 0xF800, 0x07E0, 0x001F, &f));
    EXPECT_EQ(f.redShift, 11);
    EXPECT_EQ(f.greenShift, 5);
    EXPECT_EQ(f.blueShift, 0);
    EXPECT_EQ(f.redDivisor, 8);
    EXPECT_EQ(f.greenDivisor, 4);
    EXPECT_EQ(f.blueDivisor, 8);
    EXPECT_EQ(ScreenPixel(f, 255, 255, 255), 0xFFFFu);
    EXPECT_EQ(ScreenPixel(f, 0, 128, 0), 32u << 5);
    ASSERT_TRUE(DescribeScreenFormat(16, kBitFields, 0x7C00, 0x03E0, 0x001F, &f));
    EXPECT_EQ(f.greenDivisor, 8);
    EXPECT_EQ(ScreenPixel(f, 8, 16, 24), (3u << 10) | (2u << 5) | 1u);
    EXPECT_TRUE(DescribeScreenFormat(24, 0, 0, 0, 0, &f));
    EXPECT_TRUE(DescribeScreenFormat(32, kBitFields, 0xFF0000, 0xFF00, 0xFF, &f));
    EXPECT_FALSE(DescribeScreenFormat(8, 0, 0, 0, 0, &f));
    EXPECT_FALSE(DescribeScreenFormat(16, 0, 0, 0, 0, &f));
    EXPECT_FALSE(DescribeScreenFormat(32, 0, 0, 0, 0, &f));
    EXPECT_EQ(MaskShift(0), 32);
}

TEST_F(Board, DragStepPixelsDrawThePieceAndGiveTheBackgroundBack) {
    ScreenFormat f;
    ASSERT_TRUE(DescribeScreenFormat(32, kBitFields, 0xFF0000, 0xFF00, 0xFF, &f));
    const int32_t W = p.boxWidth, H = p.boxHeight;
    std::vector<uint8_t> screenBits(size_t(SurfaceStride(32, 400)) * 300), background(size_t(W) * H * 4),
        composition(size_t(SurfaceStride(32, 2 * W)) * 2 * H);
    for (size_t k = 0; k < screenBits.size(); ++k) screenBits[k] = uint8_t(k * 7 / 3);
    const std::vector<uint8_t> original = screenBits;
    PixelSurface screen{screenBits.data(), 400, 300, SurfaceStride(32, 400), 4};
    PixelSurface store{background.data(), W, H, SurfaceStride(32, W), 4};
    PixelSurface compose{composition.data(), 2 * W, 2 * H, SurfaceStride(32, 2 * W), 4};
    const uint32_t piece = 6;
    // The press: the background store takes what lies under the box.
    Point at{120, 90};
    CopySurfaceArea(&store, 0, 0, &screen, at.x, at.y, W, H);
    // Steps that overlap, that jump away, and that hang off the screen's edges.
    for (Point next : {Point{130, 95}, Point{140, 80}, Point{20, 10}, Point{-30, -20}, Point{320, 250}, Point{300, 200}}) {
        DragStepPixels(&p, piece, f, &screen, &store, &compose, at, next);
        at = next;
        for (int32_t y = 0; y < 300; ++y)
            for (int32_t x = 0; x < 400; ++x) {
                int32_t bx = x - at.x, by = y - at.y;
                bool inBox = bx >= 0 && by >= 0 && bx < W && by < H;
                uint32_t v;
                std::memcpy(&v, &screenBits[size_t(299 - y) * screen.stride + 4 * x], 4);
                uint32_t expected;
                if (inBox && (*SheetPixel(&p, piece, bx, by) >> 24))
                    expected = *SheetPixel(&p, piece, bx, by);  // 32 bits: as it is
                else
                    std::memcpy(&expected, &original[size_t(299 - y) * screen.stride + 4 * x], 4);
                ASSERT_EQ(v, expected) << "step to " << at.x << ", " << at.y << " pixel " << x << ", " << y;
            }
    }
}

TEST_F(Board, DraggingIntoAnotherWindowRestoresTheOldOneAndDrawsInTheNew) {
    ScreenFormat f;
    ASSERT_TRUE(DescribeScreenFormat(24, 0, 0, 0, 0, &f));
    const int32_t W = p.boxWidth, H = p.boxHeight;
    const int32_t stride = SurfaceStride(24, 300);
    std::vector<uint8_t> oldBits(size_t(stride) * 200), newBits(size_t(stride) * 200), store(size_t(SurfaceStride(24, W)) * H),
        compose(size_t(SurfaceStride(24, 2 * W)) * 2 * H);
    for (size_t k = 0; k < oldBits.size(); ++k) {
        oldBits[k] = uint8_t(k * 5);
        newBits[k] = uint8_t(k * 11 + 3);
    }
    const std::vector<uint8_t> oldOriginal = oldBits, newOriginal = newBits;
    PixelSurface oldScreen{oldBits.data(), 300, 200, stride, 3}, newScreen{newBits.data(), 300, 200, stride, 3};
    PixelSurface background{store.data(), W, H, SurfaceStride(24, W), 3};
    PixelSurface composition{compose.data(), 2 * W, 2 * H, SurfaceStride(24, 2 * W), 3};
    const uint32_t piece = 1;
    CopySurfaceArea(&background, 0, 0, &oldScreen, 40, 30, W, H);
    DragStepPixels(&p, piece, f, &oldScreen, &background, &composition, Point{40, 30}, Point{44, 31});
    EXPECT_NE(oldBits, oldOriginal);
    RestoreDragBackground(&p, &oldScreen, &background, Point{44, 31});
    EXPECT_EQ(oldBits, oldOriginal);
    Rect area = DragEnterPixels(&p, piece, f, &newScreen, &background, &composition, Point{0, 0});
    EXPECT_EQ(area.width, W);
    for (int32_t y = 0; y < 200; ++y)
        for (int32_t x = 0; x < 300; ++x) {
            const size_t at = size_t(199 - y) * stride + 3 * x;
            bool drawn = x < W && y < H && (*SheetPixel(&p, piece, x, y) >> 24);
            uint32_t got = newBits[at] | newBits[at + 1] << 8 | newBits[at + 2] << 16;
            uint32_t expected = drawn ? (*SheetPixel(&p, piece, x, y) & 0xFFFFFF)
                                      : uint32_t(newOriginal[at] | newOriginal[at + 1] << 8 | newOriginal[at + 2] << 16);
            ASSERT_EQ(got, expected) << x << ", " << y;
        }
    RestoreDragBackground(&p, &newScreen, &background, Point{0, 0});
    EXPECT_EQ(newBits, newOriginal);
}

TEST_F(Board, DrawingASelectedPieceAtSixteenBitsConvertsAndStipples) {
    ScreenFormat f;
    ASSERT_TRUE(DescribeScreenFormat(16, kBitFields, 0xF800, 0x07E0, 0x001F, &f));
    const int32_t W = p.boxWidth, H = p.boxHeight;
    std::vector<uint8_t> bits(size_t(SurfaceStride(16, W)) * H, 0);
    PixelSurface s{bits.data(), W, H, SurfaceStride(16, W), 2};
    p.pieces[2].lit = 0;
    DrawPieceOnSurface(&p, 2, f, &s, 0, 0);
    int stippled = 0;
    for (int32_t y = 0; y < H; ++y)
        for (int32_t x = 0; x < W; ++x) {
            uint32_t v = *SheetPixel(&p, 2, x, y);
            uint16_t got;
            std::memcpy(&got, &bits[size_t(H - 1 - y) * s.stride + 2 * x], 2);
            if (!(v >> 24)) {
                ASSERT_EQ(got, 0) << x << ", " << y;
                continue;
            }
            if (y % 2 == 0 && x % 3 == 0) {
                v = ~v;
                ++stippled;
            }
            ASSERT_EQ(got, ScreenPixel(f, uint8_t(v), uint8_t(v >> 8), uint8_t(v >> 16))) << x << ", " << y;
        }
    EXPECT_GT(stippled, 50);
}

TEST_F(Board, SelectionTakesOnlyLoosePieces) {
    Place(0, 100, 100);
    Place(1, 200, 100);
    Place(2, 120, 130);
    Place(3, 700, 400);
    p.pieces[0].group = p.pieces[1].group = 2;
    p.pieces[0].lit = 0;  // a stale mark on a grouped piece goes too
    p.pieces[3].lit = 0;  // a loose piece outside the new rectangle is let go
    for (uint32_t i = 4; i < PieceCount(&p); ++i) Place(i, 800, 450);
    p.dragMode = 2;
    d.sourceView = kTableView;
    d.anchor = Point{90, 90};
    UpdateSelectionOutline(&d, Point{300, 200});
    ReleaseSelection(&p, &d);
    EXPECT_EQ(p.pieces[0].lit, 1);
    EXPECT_EQ(p.pieces[1].lit, 1);
    EXPECT_EQ(p.pieces[2].lit, 0);
    EXPECT_EQ(p.pieces[3].lit, 1);
    EXPECT_EQ(p.dragMode, 0u);
    EXPECT_TRUE(g_hookLog.has("invalidate 6 0 0 947 640"));
    // Shared edges count: a box whose right edge is the rectangle's left edge is taken.
    ApplySelection(&p, kTableView, Rect{100 + p.boxWidth, 500, 10, 10});
    EXPECT_EQ(p.pieces[2].lit, 1);
    ApplySelection(&p, kTableView, Rect{120 + p.boxWidth, 130 + p.boxHeight, 0, 0});
    EXPECT_EQ(p.pieces[2].lit, 0);
}

TEST_F(Board, HoldInsideLetsTheTabMarginLeaveOnTheLeftAndTopButNotTheCellOnTheRightAndBottom) {
    // The table is 947 x 640; cells 100, margins 33.
    auto held = [&](int32_t x, int32_t y) { return HoldInsideView(&p, kTableView, Point{x, y}); };
    EXPECT_EQ(held(-40, -50).x, -33);
    EXPECT_EQ(held(-40, -50).y, -33);
    EXPECT_EQ(held(-33, -33).x, -33);
    EXPECT_EQ(held(900, 600).x, 847);
    EXPECT_EQ(held(900, 600).y, 540);
    EXPECT_EQ(held(847, 540).x, 847);
    EXPECT_EQ(held(500, 300).x, 500);
    // In a view narrower than a cell the right limit is applied last and wins.
    p.surfaces[2].width = 60;
    EXPECT_EQ(HoldInsideView(&p, 2, Point{0, 0}).x, -40);
}

TEST_F(Board, ReleasingOutsideAllWindowsPutsThePieceBackWhereItWas) {
    Place(8, 321, 222);
    int32_t bx, by;
    ASSERT_TRUE(FindInsidePixel(&p, 8, &bx, &by));
    for (uint32_t i = 0; i < PieceCount(&p); ++i)
        if (i != 8) Place(i, 700, 450);
    ASSERT_EQ(PressOnView(&p, &d, kTableView, Point{321 + bx, 222 + by}), PRESS_PIECE);
    d.dragPos = Point{10, 10};  // dragged far away
    g_hookLog.events.clear();
    DropResult r = ReleasePiece(&p, &d, PointerWindow{POINTER_OUTSIDE, 0});
    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(p.pieces[8].x, 321);
    EXPECT_EQ(p.pieces[8].y, 222);
    EXPECT_TRUE(g_hookLog.has("restore background"));
    EXPECT_TRUE(g_hookLog.has("invalidate 6 321 222 166 166"));
    EXPECT_FALSE(g_hookLog.has("enable save"));
    EXPECT_EQ(p.dragMode, 0u);
}

TEST_F(Board, DraggingAPieceOfAGroupMovesOnlyItUntilTheDropThenTheGroupFollows) {
    Place(0, 100, 100);
    Place(1, 200, 100);
    Place(4, 100, 200);
    p.pieces[0].group = p.pieces[1].group = p.pieces[4].group = 5;
    for (uint32_t i : {2u, 3u, 5u, 6u, 7u, 8u, 9u, 10u, 11u}) Place(i, 800, 450);
    int32_t bx, by;
    ASSERT_TRUE(FindInsidePixel(&p, 1, &bx, &by));
    Raise(4);
    ASSERT_EQ(PressOnView(&p, &d, kTableView, Point{200 + bx, 100 + by}), PRESS_PIECE);
    // During the drag only the lifted piece's drawing moves; the model keeps every position.
    d.dragPos = DragStepPosition(&d, Point{250 + bx, 150 + by}, false);
    EXPECT_EQ(p.pieces[0].x, 100);
    EXPECT_EQ(p.pieces[1].x, 200);
    DropResult r = ReleasePiece(&p, &d, PointerWindow{POINTER_VIEW, 106});
    EXPECT_FALSE(r.cancelled);
    EXPECT_EQ(r.moved, 3u);
    EXPECT_EQ(p.pieces[1].x, 250);
    EXPECT_EQ(p.pieces[1].y, 150);
    EXPECT_EQ(p.pieces[0].x, 150);
    EXPECT_EQ(p.pieces[4].y, 250);
    // The raise put the group right under the lifted piece, in its old order (4 was above 0).
    std::vector<uint32_t> run = RunOf(&p, kTableView);
    EXPECT_EQ(run[0], 1u);
    EXPECT_EQ(run[1], 4u);
    EXPECT_EQ(run[2], 0u);
    EXPECT_EQ(p.puzzle_dirty, 1);
    EXPECT_TRUE(g_hookLog.has("enable save"));
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
}

TEST_F(Board, ASelectedPieceTakesTheSelectionAlongInItsViewWithoutJoining) {
    Place(5, 300, 300);
    Place(4, 150, 300);
    p.pieces[5].lit = p.pieces[4].lit = 0;
    for (uint32_t i : {0u, 1u, 2u, 3u, 6u, 7u, 8u, 9u, 10u, 11u}) Place(i, 800, 450);
    Raise(4);
    Raise(5);
    d.sourceView = d.dragView = kTableView;
    d.dragPos = Point{250, 350};  // 4 would land at (100, 350): exactly beside 5, yet nothing joins
    p.dragMode = 1;
    DropResult r = ReleasePiece(&p, &d, PointerWindow{POINTER_VIEW, 106});
    EXPECT_TRUE(r.selectionMoved);
    EXPECT_FALSE(r.joined);
    EXPECT_EQ(p.pieces[5].x, 250);
    EXPECT_EQ(p.pieces[4].x, 100);
    EXPECT_EQ(p.pieces[4].y, 350);
    EXPECT_EQ(p.pieces[4].group, 0u);
    EXPECT_EQ(p.pieces[4].lit, 0);  // still selected
    // Near the edge each is held inside.
    d.dragPos = Point{900, 620};
    Raise(5);
    ReleasePiece(&p, &d, PointerWindow{POINTER_VIEW, 106});
    EXPECT_EQ(p.pieces[5].x, 847);
    EXPECT_EQ(p.pieces[5].y, 540);
    EXPECT_EQ(p.pieces[4].x, 750);
}

TEST_F(Board, DroppingOnTheSourceTraysOwnButtonIsCancelled) {
    std::vector<int> where(PieceCount(&p), kTableView);
    where[3] = 2;
    LayOut(&p, where);
    Place(3, 20, 20);
    d.sourceView = d.dragView = 2;
    d.dragPos = Point{50, 50};
    DropResult r = ReleasePiece(&p, &d, PointerWindow{POINTER_DROP_TARGET, 102});
    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(p.pieces[3].x, 20);
    EXPECT_EQ(p.views[2].count, 1u);
}

TEST(PlayClock, ShowsHoursMinutesAndSecondsEachWithALeadingZeroBelowTen) {
    char text[kClockTextSize];
    FormatPlayClock(0, text);
    EXPECT_STREQ(text, "00:00:00");
    FormatPlayClock(3 * 3600 + 7 * 60 + 9, text);
    EXPECT_STREQ(text, "03:07:09");
    FormatPlayClock(10 * 3600 + 59 * 60 + 10, text);
    EXPECT_STREQ(text, "10:59:10");
    FormatPlayClock(123 * 3600 + 5, text);
    EXPECT_STREQ(text, "123:00:05");
    FormatPlayClock(4294967295u, text);
    EXPECT_STREQ(text, "1193046:28:15");
}

TEST(PlayClock, CountsEachSecondUnlessPausedAndShowsItEveryTick) {
    InstallRecordingHooks();
    PuzzleState p{};
    p.elapsed = 59;
    TickPlayClock(&p);
    EXPECT_EQ(p.elapsed, 60u);
    p.paused = 1;
    TickPlayClock(&p);
    EXPECT_EQ(p.elapsed, 60u);
    EXPECT_EQ(g_hookLog.events, (std::vector<std::string>{"clock 00:01:00", "clock 00:01:00"}));
    g_puzzleHooks = PuzzleHooks{};
}
