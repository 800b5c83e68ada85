// `CWNDPUZZLE` under the real pointer: presses on transparent corners, the selection rectangle, drags that
// recompose nothing and reach the screen in one copy, a grouped piece dragged alone, releases outside every
// window, drops on a hidden tray's side button, the play clock, a whole game played by dragging, and the
// time a drag step takes.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>

#include "app/title_window_win32.h"
#include "board_test_helpers.h"
#include "extras/bars_win32.h"
#include "puzzle/play_clock.h"

namespace {

// A screen point no window of the tests ever covers: the bare desktop.
constexpr int kOutsideX = 1010, kOutsideY = 20;

void PointerToTable(const BoardScreen& screen, Point at) { PointerToClient(screen.table, at.x, at.y); }

Point PiecePosition(uint32_t piece) { return Point{g_puzzle.pieces[piece].x, g_puzzle.pieces[piece].y}; }

// A point of the table where piece i is the one the pointer takes.
Point GrabPoint(const BoardScreen& screen, uint32_t piece) {
    Point centre = screen.Centre(piece);
    if (HitTestView(&g_puzzle, kTableView, centre.x, centre.y, nullptr) == int32_t(piece)) return centre;
    const PieceRecord& at = g_puzzle.pieces[piece];
    for (int32_t y = at.y + 1; y < at.y + g_puzzle.boxHeight; ++y)
        for (int32_t x = at.x + 1; x < at.x + g_puzzle.boxWidth; ++x)
            if (x >= 0 && y >= 0 && x < kBoardTableWidth && y < kBoardTableHeight &&
                HitTestView(&g_puzzle, kTableView, x, y, nullptr) == int32_t(piece))
                return Point{x, y};
    ADD_FAILURE() << "piece " << piece << " cannot be taken anywhere";
    return centre;
}

COLORREF Inverse(COLORREF c) { return RGB(255 - GetRValue(c), 255 - GetGValue(c), 255 - GetBValue(c)); }

}  // namespace

TEST(PointerBoardPress, TransparentCornerOfTheTopPieceTakesThePieceBelow) {
    PointerLock lock;
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    // Piece 0 on top; the corner of its box is outside its outline, and piece 3 lies there underneath.
    const Point corner{63, 63};
    screen.LayOut({0, 3, 1, 2}, {Point{60, 60}, Point{160, 150}, Point{5, 150}, Point{14, 27}});
    ASSERT_EQ(*SheetPixel(&g_puzzle, 0, 3, 3) >> 24, 0u);
    ASSERT_EQ(HitTestView(&g_puzzle, kTableView, corner.x, corner.y, nullptr), 3);

    PointerToTable(screen, corner);
    LeftDown();
    EXPECT_EQ(g_puzzle.dragMode, 1u);
    EXPECT_EQ(g_puzzle.views[kTableView].entries[0], 3u);
    EXPECT_TRUE(ScreenShows(kTableView, 3, Point{14, 27}));
    LeftUp();
    EXPECT_EQ(g_puzzle.dragMode, 0u);
    EXPECT_EQ(PiecePosition(3).x, 14);
    EXPECT_EQ(PiecePosition(3).y, 27);
    EXPECT_EQ(PiecePosition(0).x, 60);
    EXPECT_TRUE(ScreenShows(kTableView));
}

TEST(PointerBoardPress, TransparentCornerWithNothingBelowStartsASelectionRectangle) {
    PointerLock lock;
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.LayOut({0, 1, 2, 3}, {Point{60, 60}, Point{160, 5}, Point{5, 150}, Point{160, 150}});
    const Point corner{63, 63};
    ASSERT_EQ(HitTestView(&g_puzzle, kTableView, corner.x, corner.y, nullptr), -1);

    PointerToTable(screen, corner);
    LeftDown();
    EXPECT_EQ(g_puzzle.dragMode, 2u);
    PointerToTable(screen, Point{200, 100});
    // The outline is drawn by inversion: along its top edge every pixel is the picture's or its inverse,
    // and the dash-dot pen inverts a good part of them.
    std::vector<COLORREF> shown = ReadClient(screen.table);
    int inverted = 0, other = 0;
    for (int x = 64; x < 200; ++x) {
        COLORREF picture = PicturePixel(kTableView, x, 63), got = shown[size_t(63) * kBoardTableWidth + x];
        if (got == Inverse(picture))
            ++inverted;
        else if (got != picture)
            ++other;
    }
    EXPECT_GT(inverted, 136 / 3);
    EXPECT_EQ(other, 0);
    int invertedLeft = 0;  // and down its left edge
    for (int y = 64; y < 100; ++y)
        if (shown[size_t(y) * kBoardTableWidth + 63] == Inverse(PicturePixel(kTableView, 63, y))) ++invertedLeft;
    EXPECT_GT(invertedLeft, 36 / 3);

    LeftUp();
    EXPECT_EQ(g_puzzle.dragMode, 0u);
    // Pieces 0 and 1 meet the rectangle (63, 63) - (200, 100); 2 and 3 do not.
    EXPECT_EQ(g_puzzle.pieces[0].lit, 0);
    EXPECT_EQ(g_puzzle.pieces[1].lit, 0);
    EXPECT_EQ(g_puzzle.pieces[2].lit, 1);
    EXPECT_EQ(g_puzzle.pieces[3].lit, 1);
    PumpMessages(30);
    EXPECT_TRUE(ScreenShows(kTableView));  // the outline is gone, the stipple shows
}

TEST(PointerBoardRelease, OutsideAllWindowsPutsThePieceBack) {
    PointerLock lock;
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.LayOut({0, 1, 2, 3}, SpreadPositions());
    // Wine keeps a capture only for the foreground thread once the pointer is over another program's
    // window (here the desktop), as the game's own screen always is; the cost is a slower destroy.
    SetForegroundWindow(screen.parent.hwnd);
    PumpMessages(30);
    const std::vector<uint8_t> before(g_puzzle.surfaces[kTableView].pixels,
                                      g_puzzle.surfaces[kTableView].pixels +
                                          size_t(g_puzzle.surfaces[kTableView].stride) * kBoardTableHeight);
    const Point grab = GrabPoint(screen, 0);
    PointerToTable(screen, grab);
    LeftDown();
    PointerToTable(screen, Point{grab.x + 40, grab.y + 30});
    EXPECT_TRUE(ScreenShows(kTableView, 0, Point{45, 35}));
    PointerTo(kOutsideX, kOutsideY);
    LeftUp();
    EXPECT_EQ(g_puzzle.dragMode, 0u);
    EXPECT_EQ(PiecePosition(0).x, 5);
    EXPECT_EQ(PiecePosition(0).y, 5);
    EXPECT_EQ(g_puzzle.views[kTableView].count, 4u);
    EXPECT_EQ(g_puzzle.puzzle_dirty, 0);
    const ViewSurface& after = g_puzzle.surfaces[kTableView];
    EXPECT_TRUE(std::equal(before.begin(), before.end(), after.pixels));
    PumpMessages(30);
    EXPECT_TRUE(ScreenShows(kTableView));
}

TEST(PointerBoardRelease, LosingTheCaptureMidDragPutsThePieceBack) {
    PointerLock lock;
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.LayOut({0, 1, 2, 3}, SpreadPositions());
    const Point grab = GrabPoint(screen, 1);
    PointerToTable(screen, grab);
    LeftDown();
    PointerToTable(screen, Point{grab.x - 30, grab.y + 20});
    ASSERT_EQ(g_puzzle.dragMode, 1u);
    // Client point (-1, -1) of the table lies on the playing screen itself, not a child: a cancel.
    ReleaseCapture();
    EXPECT_EQ(g_puzzle.dragMode, 0u);
    EXPECT_EQ(PiecePosition(1).x, 150);
    EXPECT_EQ(PiecePosition(1).y, 5);
    LeftUp();
    PumpMessages(30);
    EXPECT_TRUE(ScreenShows(kTableView));
}

TEST(PointerBoardDrag, GroupedPieceMovesAloneUntilTheDropThenTheGroupFollows) {
    PointerLock lock;
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.LayOut({0, 1, 2, 3}, {Point{20, 20}, Point{80, 20}, Point{5, 150}, Point{150, 150}});
    g_puzzle.pieces[0].group = g_puzzle.pieces[1].group = 2;  // joined: 1 lies one cell right of 0
    ASSERT_TRUE(PuzzleInvariantsHold(&g_puzzle));
    const Point grab = GrabPoint(screen, 1);
    PointerToTable(screen, grab);
    LeftDown();
    PointerToTable(screen, Point{grab.x + 30, grab.y + 40});
    ASSERT_EQ(g_puzzle.dragMode, 1u);
    // On the screen only piece 1 moved; piece 0 still shows where it lies, and neither record changed.
    EXPECT_TRUE(ScreenShows(kTableView, 1, Point{110, 60}));
    const Point centre0 = screen.Centre(0);
    COLORREF piece0;
    ASSERT_TRUE(PiecePixel(0, centre0.x - 20, centre0.y - 20, &piece0));
    EXPECT_EQ(ClientPixel(screen.table, centre0.x, centre0.y), piece0);
    EXPECT_EQ(PiecePosition(0).x, 20);
    EXPECT_EQ(PiecePosition(1).x, 80);
    LeftUp();
    EXPECT_EQ(PiecePosition(0).x, 50);
    EXPECT_EQ(PiecePosition(0).y, 60);
    EXPECT_EQ(PiecePosition(1).x, 110);
    EXPECT_EQ(PiecePosition(1).y, 60);
    EXPECT_TRUE(PuzzleInvariantsHold(&g_puzzle));
    EXPECT_EQ(g_puzzle.puzzle_dirty, 1);
    PumpMessages(30);
    EXPECT_TRUE(ScreenShows(kTableView));
}

TEST(PointerBoardDrag, StepRecomposesNothingAndCopiesTheUnionToTheScreenOnce) {
    PointerLock lock;
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.LayOut({0, 1, 2, 3}, SpreadPositions());
    const Point grab = GrabPoint(screen, 0);
    PointerToTable(screen, grab);
    LeftDown();
    ASSERT_EQ(g_puzzle.dragMode, 1u);
    ASSERT_TRUE(ScreenShows(kTableView, 0, Point{5, 5}));

    g_boardCounters = BoardCounters{};
    g_composeCounters = ComposeCounters{};
    PointerToTable(screen, Point{grab.x + 10, grab.y + 7});
    const BoardCounters steps = g_boardCounters;
    const ComposeCounters composed = g_composeCounters;
    ASSERT_GE(steps.dragSteps, 1u);
    EXPECT_EQ(steps.screenCopies, steps.dragSteps);  // one copy to the screen per step
    EXPECT_EQ(steps.restores, 0u);
    EXPECT_EQ(steps.paints, 0u);
    EXPECT_EQ(composed.piecePixels, 0u);
    EXPECT_EQ(composed.clothPixels, 0u);
    EXPECT_EQ(composed.piecesVisited, 0u);
    const int32_t W = g_puzzle.boxWidth, H = g_puzzle.boxHeight;
    EXPECT_TRUE(SameRect(steps.copies[0], Rect{5, 5, W + 10, H + 7}))
        << steps.copies[0].x << "," << steps.copies[0].y << " " << steps.copies[0].width << "x" << steps.copies[0].height;
    EXPECT_EQ(steps.copyWindows[0], screen.table);
    for (uint32_t k = 1; k < steps.screenCopies && k < uint32_t(kScreenCopyLog); ++k)
        EXPECT_TRUE(SameRect(steps.copies[k], Rect{15, 12, W, H}));  // the pointer standing still
    RECT pending;
    EXPECT_FALSE(GetUpdateRect(screen.table, &pending, FALSE));
    EXPECT_TRUE(ScreenShows(kTableView, 0, Point{15, 12}));

    // Far enough for the boxes to part: the old place gets its background straight back.
    g_boardCounters = BoardCounters{};
    PointerToTable(screen, Point{grab.x + 150, grab.y + 120});
    EXPECT_EQ(g_boardCounters.restores, 1u);
    EXPECT_TRUE(ScreenShows(kTableView, 0, Point{155, 125}));
    EXPECT_EQ(g_composeCounters.piecePixels + g_composeCounters.clothPixels, 0u);
    // The counters do see composing: the drop recomposes.
    LeftUp();
    EXPECT_GT(g_composeCounters.piecePixels + g_composeCounters.clothPixels, 0u);
}

TEST(PointerBoardDrop, OnATraysSideButtonLandsCentredInTheHiddenTrayAndTellsIt) {
    PointerLock lock;
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.LayOut({0, 1, 2, 3}, SpreadPositions());
    ASSERT_FALSE(IsWindowVisible(screen.tray));
    // The program's own tray cursor when the module carries it; a cross stands in otherwise.
    const HCURSOR own = LoadCursorA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(kResTrayCursor));
    if (own) {
        EXPECT_EQ(g_boardCursors.tray, own);
    } else {
        g_boardCursors.tray = LoadCursorA(nullptr, IDC_CROSS);
    }
    ASSERT_NE(g_boardCursors.tray, g_boardCursors.arrow);
    g_trayNotices.clear();
    const Point grab = GrabPoint(screen, 2);
    PointerToTable(screen, grab);
    LeftDown();
    PointerToClient(screen.button, kBoardButtonWidth / 2, kBoardButtonHeight / 2);
    EXPECT_EQ(GetCursor(), g_boardCursors.tray);
    EXPECT_EQ(g_drag.dragView, 0);
    EXPECT_EQ(g_drag.dragPos.x, 0);
    EXPECT_EQ(g_drag.dragPos.y, 0);
    EXPECT_TRUE(ScreenShows(kTableView));  // the piece left the table's screen
    LeftUp();

    EXPECT_EQ(g_puzzle.views[0].count, 1u);
    EXPECT_EQ(g_puzzle.views[0].entries[0], 2u);
    EXPECT_EQ(g_puzzle.views[kTableView].count, 3u);
    EXPECT_EQ(PiecePosition(2).x, (kBoardTrayViewWidth - g_puzzle.boxWidth) / 2);
    EXPECT_EQ(PiecePosition(2).y, (kBoardTrayViewHeight - g_puzzle.boxHeight) / 2);
    EXPECT_FALSE(IsWindowVisible(screen.tray));
    EXPECT_EQ(TrayNoticeCount(kViewBecameFilled, screen.trayView), 1) << DescribeLog(g_trayNotices);
    EXPECT_EQ(g_trayNotices.size(), 1u);
    EXPECT_TRUE(PuzzleInvariantsHold(&g_puzzle));
    // The tray's picture holds the piece; the table's no longer does.
    COLORREF centre;
    const Point inBox{screen.Centre(2).x - PiecePosition(2).x, screen.Centre(2).y - PiecePosition(2).y};
    ASSERT_TRUE(PiecePixel(2, inBox.x, inBox.y, &centre));
    EXPECT_EQ(PicturePixel(0, PiecePosition(2).x + inBox.x, PiecePosition(2).y + inBox.y), centre);
    EXPECT_EQ(HitTestView(&g_puzzle, kTableView, grab.x, grab.y, nullptr), -1);
    PumpMessages(30);
    EXPECT_TRUE(ScreenShows(kTableView));
}

TEST(PointerBoardClock, StartsOnTheFirstGrabTicksEverySecondAndStandsStillWhilePaused) {
    PointerLock lock;
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    screen.LayOut({0, 1, 2, 3}, SpreadPositions());
    EXPECT_EQ(g_puzzle.clockPending, 1);
    EXPECT_EQ(g_puzzle.timerId, 0u);
    EXPECT_STREQ(TitleClockText(), "00:00:00");
    PumpMessages(1200);
    EXPECT_EQ(g_puzzle.elapsed, 0u);  // nothing counts before the first grab

    PointerToTable(screen, GrabPoint(screen, 3));
    LeftDown();
    EXPECT_NE(g_puzzle.timerId, 0u);
    EXPECT_EQ(g_puzzle.clockPending, 0);
    LeftUp();
    PumpMessages(2300);
    EXPECT_GE(g_puzzle.elapsed, 2u);
    EXPECT_LE(g_puzzle.elapsed, 3u);
    char text[kClockTextSize];
    FormatPlayClock(g_puzzle.elapsed, text);
    EXPECT_STREQ(TitleClockText(), text);

    g_puzzle.paused = 1;
    const uint32_t held = g_puzzle.elapsed;
    PumpMessages(2200);
    EXPECT_EQ(g_puzzle.elapsed, held);
    g_puzzle.paused = 0;
    PumpMessages(1200);
    EXPECT_GE(g_puzzle.elapsed, held + 1);

    // A later grab neither restarts nor resets the clock.
    const uint32_t timer = g_puzzle.timerId, counted = g_puzzle.elapsed;
    PointerToTable(screen, GrabPoint(screen, 1));
    LeftDown();
    LeftUp();
    EXPECT_EQ(g_puzzle.timerId, timer);
    EXPECT_GE(g_puzzle.elapsed, counted);
}

TEST(PointerBoardGame, PiecesDraggedToTheirHomesCompleteThePuzzleAndStartTheCompletionClip) {
    PointerLock lock;
    BoardScreen screen;
    ASSERT_TRUE(screen.cut);
    HWND hint = CreateControl("CQMANIM", screen.parent.hwnd, 0, 300, 50, 50, 0);
    g_toolsPair.buttons[kHintButton] = hint;
    SendMessageA(hint, PM_SETENABLE, 0, 0);
    screen.LayOut({0, 1, 2, 3}, SpreadPositions());
    for (uint32_t i = 0; i < 4; ++i) {
        const Point grab = GrabPoint(screen, i), at = PiecePosition(i), home = PieceHomePosition(&g_puzzle, i);
        PointerToTable(screen, grab);
        LeftDown();
        PointerToTable(screen, Point{(grab.x + home.x + grab.x - at.x) / 2, (grab.y + home.y + grab.y - at.y) / 2});
        PointerToTable(screen, Point{home.x + grab.x - at.x, home.y + grab.y - at.y});
        LeftUp();
        EXPECT_EQ(PiecePosition(i).x, home.x) << "piece " << i;
        EXPECT_EQ(PiecePosition(i).y, home.y) << "piece " << i;
        EXPECT_EQ(g_puzzle.pieces[i].group != 0, i > 0) << "piece " << i;
    }
    EXPECT_TRUE(g_puzzle.finished);
    EXPECT_EQ(g_completionClipsFinished, 1);
    EXPECT_EQ(SendMessageA(hint, PM_GETENABLE, 0, 0), 1);
    EXPECT_EQ(g_puzzle.timerId, 0u);
    EXPECT_EQ(g_puzzle.puzzle_dirty, 1);
    PumpMessages(30);
    EXPECT_TRUE(ScreenShows(kTableView));
    g_toolsPair.buttons[kHintButton] = nullptr;
}
