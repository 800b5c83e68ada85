// Helpers of the board tests: a photograph and a 2 x 2 cut pattern built here, a playing screen with the
// table, a hidden tray with its side button and a 2 x 2 puzzle cut through a test pack, exact layouts of
// the pieces, and the pixels a view must show (its picture, with a dragged piece over it).
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/art_ids.h"
#include "controls/control_messages.h"
#include "extras/video_win32.h"
#include "gfx/dib.h"
#include "gfx/pack_writer.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "puzzle/board_logic.h"
#include "puzzle/board_window_win32.h"
#include "puzzle/compose.h"
#include "puzzle/model.h"
#include "puzzle/picture.h"
#include "puzzle/screen_format_win32.h"
#include "win32_support.h"

// The playing screen of the tests: small enough for a test parent's screen place.
constexpr int32_t kBoardScreenWidth = 340;
constexpr int32_t kBoardScreenHeight = 360;
constexpr int32_t kBoardTableWidth = kBoardScreenWidth - 77;    // 263
constexpr int32_t kBoardTableHeight = kBoardScreenHeight - 128;  // 232
constexpr int kBoardTableX = 49, kBoardTableY = 78;
// Tray 0's side button, right of the table; the tray itself stays hidden.
constexpr int kBoardButtonX = 314, kBoardButtonY = 120, kBoardButtonWidth = 24, kBoardButtonHeight = 50;
constexpr int32_t kBoardTrayViewWidth = 288, kBoardTrayViewHeight = 200;

// ---- The cut pattern: 2 x 2 cells with a round tab on every edge, repeating across its border ----------

inline bool BoardEdgePushesRight(uint32_t pr, uint32_t pc) { return (pr * 7 + pc * 3 + 1) % 2 == 0; }
inline bool BoardEdgePushesDown(uint32_t pr, uint32_t pc) { return (pr * 5 + pc * 11) % 2 == 0; }
inline uint32_t BoardWrap(int32_t v, uint32_t n) { return uint32_t((v % int32_t(n) + int32_t(n)) % int32_t(n)); }
inline int32_t BoardFloorDiv(int32_t a, int32_t b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }

// A tab pushed across an edge, in the receiving cell: depth from the edge, position along it.
inline bool BoardInTab(int32_t depth, int32_t along) {
    if (depth < 0) return false;
    if (depth < 10 && along > 88 && along < 112) return true;
    int32_t dx = depth - 28, dy = along - 100;
    return dx * dx + dy * dy < 20 * 20;
}

// The region number at pattern pixel (x, y), y from the top, numbered as the game's patterns are.
inline uint32_t BoardPatternRegion(uint32_t rows, uint32_t columns, int32_t x, int32_t y) {
    const int32_t u = x - 66, v = y - 66;
    const int32_t cx = BoardFloorDiv(u, 200), cy = BoardFloorDiv(v, 200);
    const int32_t lx = u - cx * 200, ly = v - cy * 200;
    int32_t ox = cx, oy = cy;
    if (BoardEdgePushesRight(BoardWrap(cy, rows), BoardWrap(cx - 1, columns)) && BoardInTab(lx, ly)) ox = cx - 1;
    else if (!BoardEdgePushesRight(BoardWrap(cy, rows), BoardWrap(cx, columns)) && BoardInTab(199 - lx, ly)) ox = cx + 1;
    else if (BoardEdgePushesDown(BoardWrap(cy - 1, rows), BoardWrap(cx, columns)) && BoardInTab(ly, lx)) oy = cy - 1;
    else if (!BoardEdgePushesDown(BoardWrap(cy, rows), BoardWrap(cx, columns)) && BoardInTab(199 - ly, lx)) oy = cy + 1;
    const int32_t R = int32_t(rows), C = int32_t(columns);
    const uint32_t P = rows * columns + 1;
    const bool rowIn = oy >= 0 && oy < R, columnIn = ox >= 0 && ox < C;
    if (rowIn && columnIn) return uint32_t(oy) * columns + uint32_t(ox) + 1;
    if (oy == -1 && columnIn) return P + uint32_t(ox);
    if (ox == C && rowIn) return P + columns + uint32_t(oy);
    if (oy == R && columnIn) return P + rows + columns + uint32_t(ox);
    if (ox == -1 && rowIn) return P + 2 * columns + rows + uint32_t(oy);
    return 0;
}

inline uint8_t* MakeBoardPattern() {
    return MakeDib8(2 * 200 + 132, 2 * 200 + 132, 256,
                    [](int x, int y) { return uint8_t(BoardPatternRegion(2, 2, x, y)); });
}

// Every pixel its own colour, no channel 0 or 255.
inline COLORREF BoardPhotoColor(int x, int y) { return PatternColor(x, y, 11); }


// ---- The tray window: hidden, it logs the notices its view sends ---------------------------------------

inline std::vector<LoggedMessage> g_trayNotices;

inline LRESULT CALLBACK BoardTestTrayProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == PM_NOTIFY) {
        g_trayNotices.push_back(LoggedMessage{message, wParam, lParam});
        return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

inline const char* BoardTestTrayClass() {
    static bool registered = false;
    if (!registered) {
        WNDCLASSA wc = {};
        wc.lpfnWndProc = BoardTestTrayProc;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.lpszClassName = "TavirelBoardTestTray";
        registered = RegisterClassA(&wc) != 0;
    }
    return "TavirelBoardTestTray";
}

inline int TrayNoticeCount(WPARAM event, HWND view) {
    int n = 0;
    for (const LoggedMessage& m : g_trayNotices)
        if (m.message == PM_NOTIFY && m.wParam == event && m.lParam == reinterpret_cast<LPARAM>(view)) ++n;
    return n;
}

// ---- Pixels -----------------------------------------------------------------------------------------

inline COLORREF PicturePixel(int view, int x, int y) {
    const ViewSurface& s = g_puzzle.surfaces[view];
    const uint8_t* p = s.pixels + int64_t(s.height - 1 - y) * s.stride + 3 * int64_t(x);
    return RGB(p[2], p[1], p[0]);
}

// Piece pixel at box position (bx, by) as a view shows it (selected pieces stippled); false when outside.
inline bool PiecePixel(uint32_t piece, int bx, int by, COLORREF* color) {
    uint32_t v = *SheetPixel(&g_puzzle, piece, bx, by);
    if (!(v >> 24)) return false;
    if (!g_puzzle.pieces[piece].lit && by % 2 == 0 && bx % 3 == 0) v ^= 0x00FFFFFFu;
    *color = RGB((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
    return true;
}

// The client area of a window as the screen holds it, row by row.
inline std::vector<COLORREF> ReadClient(HWND hwnd) {
    SIZE size = ClientSize(hwnd);
    Canvas canvas(size.cx, size.cy, RGB(1, 2, 3));
    HDC dc = GetDC(hwnd);
    BitBlt(canvas.dc, 0, 0, size.cx, size.cy, dc, 0, 0, SRCCOPY);
    ReleaseDC(hwnd, dc);
    std::vector<COLORREF> pixels(size_t(size.cx) * size.cy);
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x) pixels[size_t(y) * size.cx + x] = canvas.At(x, y);
    return pixels;
}

// The view's window shows its picture, with `piece` (unless -1) drawn over it with its box at `at`.
inline ::testing::AssertionResult ScreenShows(int view, int32_t piece = -1, Point at = Point{0, 0}) {
    HWND hwnd = ViewWindow(view);
    const ViewSurface& s = g_puzzle.surfaces[view];
    SIZE size = ClientSize(hwnd);
    if (size.cx != s.width || size.cy != s.height)
        return ::testing::AssertionFailure() << "client " << size.cx << "x" << size.cy << " picture " << s.width
                                             << "x" << s.height;
    std::vector<COLORREF> screen = ReadClient(hwnd);
    int wrong = 0;
    std::string first;
    for (int y = 0; y < s.height; ++y)
        for (int x = 0; x < s.width; ++x) {
            COLORREF expected = PicturePixel(view, x, y);
            const int bx = x - at.x, by = y - at.y;
            COLORREF pieceColor;
            if (piece >= 0 && bx >= 0 && by >= 0 && bx < g_puzzle.boxWidth && by < g_puzzle.boxHeight &&
                PiecePixel(uint32_t(piece), bx, by, &pieceColor))
                expected = pieceColor;
            COLORREF got = screen[size_t(y) * s.width + x];
            if (got == expected) continue;
            if (wrong++ == 0) {
                char text[120];
                std::snprintf(text, sizeof text, "first at (%d, %d): expected %06lX got %06lX", x, y,
                              static_cast<unsigned long>(expected), static_cast<unsigned long>(got));
                first = text;
            }
        }
    if (wrong == 0) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << wrong << " pixels differ; " << first;
}

// ---- The playing screen -------------------------------------------------------------------------------

inline int g_completionClipsFinished = 0;

// A test parent standing in for the playing screen with the table, tray 0 (hidden, its view inside it) and
// tray 0's side button, the test pack with cut pattern 5000, a cloth, and a 2 x 2 puzzle cut from a
// photograph of the given size at scale 1 by StartNewGame.
struct BoardScreen {
    TempFolder folder;
    LoggingParent parent{kBoardScreenWidth, kBoardScreenHeight};
    int32_t savedWidth, savedHeight;
    uint8_t* photo = nullptr;
    uint8_t* pattern = nullptr;
    uint8_t* cloth = nullptr;
    HWND table = nullptr, button = nullptr, tray = nullptr, trayView = nullptr;
    bool cut = false;

    explicit BoardScreen(int32_t photoWidth = 120, int32_t photoHeight = 90)
        : savedWidth(g_screenWidth), savedHeight(g_screenHeight) {
        g_screenWidth = kBoardScreenWidth;
        g_screenHeight = kBoardScreenHeight;
        g_trayNotices.clear();
        g_completionClipsFinished = 0;
        EXPECT_TRUE(RegisterBoardClass(GetModuleHandleA(nullptr)));
        photo = MakeDib24(photoWidth, photoHeight, BoardPhotoColor);
        pattern = MakeBoardPattern();
        cloth = MakeDib8(100, 100, 16, [](int x, int y) { return uint8_t((x / 10 + y / 10) % 16); });
        std::string pack = folder.File("Tavirel.rf"), picture = folder.File("photo.bmp");
        EXPECT_TRUE(WriteTestPack(pack, {{kArtCutPattern, pattern}}));
        EXPECT_TRUE(OpenPack(&g_pack, pack.c_str()));
        EXPECT_TRUE(WriteDibAsBmp(picture.c_str(), photo));
        EXPECT_TRUE(LoadCurrentPicture(picture.c_str()));
        SetTableTexture(&g_puzzle, cloth);
        g_puzzle.rows = 2;
        g_puzzle.cols = 2;
        g_puzzle.scale = 1.0;
        table = CreateTable(parent.hwnd);
        button = CreateControl("CQMBOXSCOMMAND", parent.hwnd, kBoardButtonX, kBoardButtonY, kBoardButtonWidth,
                               kBoardButtonHeight, kViewControlBase + 0);
        tray = CreateWindowExA(0, BoardTestTrayClass(), "", WS_CHILD | WS_CLIPCHILDREN, 0, 0, 300, 240, parent.hwnd,
                               reinterpret_cast<HMENU>(INT_PTR(400)), GetModuleHandleA(nullptr), nullptr);
        trayView = CreateTrayView(tray, 0, 6, 30, kBoardTrayViewWidth, kBoardTrayViewHeight, button);
        cut = StartNewGame(0);
        // The test's own record of the completion clip: the clip cannot play here, so its flow goes on at once.
        g_videoHooks.completionFinished = [] { ++g_completionClipsFinished; };
        UpdateWindow(table);
        PumpMessages(30);
    }

    ~BoardScreen() {
        g_videoHooks.completionFinished = nullptr;
        if (trayView) DestroyWindow(trayView);
        if (tray) DestroyWindow(tray);
        if (table) DestroyWindow(table);
        FlushMessages();
        ClosePack(&g_pack);
        ClearCurrentPicture();
        SetTableTexture(&g_puzzle, nullptr);
        FreePackedDib(photo);
        FreePackedDib(pattern);
        FreePackedDib(cloth);
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
    }

    // Lays the table out exactly: the run from the top, every piece loose and lit at its place (by index).
    void LayOut(const std::vector<uint32_t>& topFirst, const std::vector<Point>& at) {
        PuzzleState* p = &g_puzzle;
        for (int v = 0; v < kViewCount; ++v) p->views[v].count = 0;
        p->views[kTableView].count = uint32_t(topFirst.size());
        RelinkViewRuns(p);
        for (size_t k = 0; k < topFirst.size(); ++k) p->views[kTableView].entries[k] = topFirst[k];
        for (size_t i = 0; i < at.size(); ++i) {
            p->pieces[i].x = at[i].x;
            p->pieces[i].y = at[i].y;
            p->pieces[i].group = 0;
            p->pieces[i].lit = 1;
        }
        for (int v = 0; v < kViewCount; ++v) RepaintView(p, v, true);
        UpdateWindow(table);
        PumpMessages(30);
    }

    // The centre of piece i's cell in table coordinates: always inside the piece.
    Point Centre(uint32_t i) const {
        const PieceRecord& piece = g_puzzle.pieces[i];
        const int32_t mx = (g_puzzle.boxWidth - g_puzzle.cellWidth) / 2;
        const int32_t my = (g_puzzle.boxHeight - g_puzzle.cellHeight) / 2;
        return Point{piece.x + mx + g_puzzle.cellWidth / 2, piece.y + my + g_puzzle.cellHeight / 2};
    }
};

// Four pieces apart, none near a true neighbour: 0 top left, 1 top right, 2 bottom left, 3 bottom right.
inline std::vector<Point> SpreadPositions() { return {Point{5, 5}, Point{150, 5}, Point{5, 150}, Point{150, 150}}; }

inline bool SameRect(const Rect& a, const Rect& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}
