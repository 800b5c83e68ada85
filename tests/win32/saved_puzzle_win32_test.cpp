// Saving and loading through the real board: box names, hidden and notified boxes, failed loads.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "app/title_window_win32.h"
#include "board_test_helpers.h"
#include "puzzle/cut.h"
#include "puzzle/join.h"
#include "setup/piece_box_win32.h"
#include "setup/saved_puzzle.h"
#include "setup/saved_puzzle_win32.h"

namespace {

// One PM_NOTIFY a stand-in box received.
struct BoxNotice {
    HWND box;
    WPARAM wParam;
    LPARAM lParam;
};
std::vector<BoxNotice> g_boxNotices;

LRESULT CALLBACK StandInBoxProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == PM_NOTIFY) {
        g_boxNotices.push_back(BoxNotice{hwnd, wParam, lParam});
        return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

const char* StandInBoxClass() {
    static bool registered = false;
    if (!registered) {
        WNDCLASSA wc = {};
        wc.lpfnWndProc = StandInBoxProc;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.lpszClassName = "TavirelSavedPuzzleTestBox";
        registered = RegisterClassA(&wc) != 0;
    }
    return "TavirelSavedPuzzleTestBox";
}

std::string WindowText(HWND hwnd) {
    char text[64] = {};
    GetWindowTextA(hwnd, text, int(sizeof text));
    return text;
}

// The board screen of the board tests, with six shown stand-in boxes as the program's piece boxes.
struct SavedGameScreen {
    BoardScreen screen{160, 120};
    HWND boxes[kPieceBoxCount] = {};
    HWND savedBoxes[kPieceBoxCount] = {};

    SavedGameScreen() {
        for (int k = 0; k < kPieceBoxCount; ++k) {
            savedBoxes[k] = g_pieceBoxes[k];
            boxes[k] = CreateWindowExA(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, StandInBoxClass(), "", WS_POPUP,
                                       10 * k, 10 * k, 60, 40, screen.parent.hwnd, nullptr,
                                       GetModuleHandleA(nullptr), nullptr);
            ShowWindow(boxes[k], SW_SHOWNA);
            g_pieceBoxes[k] = boxes[k];
        }
        g_boxNotices.clear();
    }
    ~SavedGameScreen() {
        for (int k = 0; k < kPieceBoxCount; ++k) {
            g_pieceBoxes[k] = savedBoxes[k];
            DestroyWindow(boxes[k]);
        }
    }
};

std::string Describe(const std::vector<BoxNotice>& notices, const HWND* boxes) {
    std::string text;
    for (const BoxNotice& n : notices) {
        int box = -1;
        for (int k = 0; k < kPieceBoxCount; ++k)
            if (boxes[k] == n.box) box = k;
        char line[96];
        std::snprintf(line, sizeof line, "  box %d wParam %u view %d\n", box, unsigned(n.wParam),
                      int(GetDlgCtrlID(reinterpret_cast<HWND>(n.lParam))));
        text += line;
    }
    return text;
}

TEST(SavedPuzzleWindows, BoxNamesAreSavedFromTheBoxWindowsAndGivenBackToThem) {
    SavedGameScreen s;
    ASSERT_TRUE(s.screen.cut);
    for (int k = 0; k < kPieceBoxCount; ++k) SetWindowTextA(s.boxes[k], ("Tray " + std::to_string(k)).c_str());
    SetWindowTextA(s.boxes[4], "A name much longer than twenty-three");
    const std::string path = s.screen.folder.File("named.epf");
    g_puzzle.puzzle_dirty = 1;
    ASSERT_TRUE(SavePuzzleFile(path.c_str(), true));
    EXPECT_EQ(g_puzzle.puzzle_dirty, 0);
    for (int k = 0; k < kPieceBoxCount; ++k) SetWindowTextA(s.boxes[k], "renamed");
    bool hintsLeft = false;
    ASSERT_TRUE(LoadPuzzleFile(path.c_str(), &hintsLeft));
    for (int k = 0; k < kPieceBoxCount; ++k) {
        if (k != 4) {
            EXPECT_EQ(WindowText(s.boxes[k]), "Tray " + std::to_string(k));
        }
    }
    EXPECT_EQ(WindowText(s.boxes[4]), "A name much longer than");
    // A 2 x 2 puzzle allows trunc(0.2 * 4) = 0 hints.
    EXPECT_FALSE(hintsLeft);
}

TEST(SavedPuzzleWindows, LoadHidesEveryBoxAndTellsItWhetherItsTrayHoldsPieces) {
    SavedGameScreen s;
    ASSERT_TRUE(s.screen.cut);
    // One piece in tray 0; the other trays empty.
    const uint32_t top = g_puzzle.views[kTableView].entries[0];
    DropPiece(&g_puzzle, 0, kTableView, top, 10, 10);
    ASSERT_EQ(g_puzzle.views[0].count, 1u);
    g_puzzle.elapsed = 3725;
    const std::string path = s.screen.folder.File("tray.epf");
    ASSERT_TRUE(SavePuzzleFile(path.c_str(), true));
    g_boxNotices.clear();
    bool hintsLeft = true;
    ASSERT_TRUE(LoadPuzzleFile(path.c_str(), &hintsLeft));
    for (int k = 0; k < kPieceBoxCount; ++k) EXPECT_FALSE(IsWindowVisible(s.boxes[k])) << "box " << k;
    const WPARAM expected[kPieceBoxCount] = {kViewBecameFilled, kViewBecameEmpty, kViewBecameEmpty,
                                             kViewBecameEmpty,  kViewBecameEmpty, kViewBecameEmpty};
    bool same = g_boxNotices.size() == size_t(kPieceBoxCount);
    for (int k = 0; same && k < kPieceBoxCount; ++k)
        same = g_boxNotices[k].box == s.boxes[k] && g_boxNotices[k].wParam == expected[k] &&
               g_boxNotices[k].lParam == reinterpret_cast<LPARAM>(ViewWindow(k));
    EXPECT_TRUE(same) << "expected box k wParam 2 for tray 0 and 1 for the others, lParam view k; got\n"
                      << Describe(g_boxNotices, s.boxes);
    EXPECT_EQ(g_puzzle.views[0].count, 1u);
    EXPECT_EQ(g_puzzle.pieces[top].x, 10);
    EXPECT_EQ(g_puzzle.clockPending, 1);
    EXPECT_EQ(g_puzzle.timerId, 0u);
    EXPECT_STREQ(TitleClockText(), "01:02:05");
    // A 2 x 2 puzzle allows trunc(0.8) = 0 hints.
    EXPECT_FALSE(hintsLeft);
    PumpMessages(30);
    EXPECT_TRUE(ScreenShows(kTableView));
}

TEST(SavedPuzzleWindows, FailedLoadLeavesTheBoardsGameUntouched) {
    SavedGameScreen s;
    ASSERT_TRUE(s.screen.cut);
    const std::string path = s.screen.folder.File("broken.epf");
    ASSERT_TRUE(SavePuzzleFile(path.c_str(), true));
    // The game in play becomes a 2 x 3 one with other boxes; the file's 2 x 2 game gets a group one pixel off.
    g_puzzle.rows = 2;
    g_puzzle.cols = 3;
    ASSERT_TRUE(StartNewGame(0));
    std::string bytes = ReadFileBytes(path);
    const size_t records = 516 + 4 * 4;
    auto put = [&](size_t at, uint32_t v) {
        for (int k = 0; k < 4; ++k) bytes[at + k] = char(v >> (8 * k));
    };
    put(records + 0, 2);
    put(records + 16, 2);
    put(records + 8, 0);
    put(records + 12, 0);
    put(records + 16 + 8, 1);
    put(records + 16 + 12, 0);
    ASSERT_TRUE(WriteFileBytes(path, bytes));
    for (int k = 0; k < kPieceBoxCount; ++k) SetWindowTextA(s.boxes[k], "kept");
    const std::vector<PieceRecord> pieces(g_puzzle.pieces, g_puzzle.pieces + 6);
    const std::vector<uint32_t> order(g_puzzle.order, g_puzzle.order + 6);
    const uint32_t* sheet = g_puzzle.sheet;
    const int32_t boxWidth = g_puzzle.boxWidth, boxHeight = g_puzzle.boxHeight;
    g_boxNotices.clear();
    bool hintsLeft = true;
    EXPECT_FALSE(LoadPuzzleFile(path.c_str(), &hintsLeft));
    EXPECT_TRUE(hintsLeft) << "untouched on failure";
    EXPECT_EQ(g_puzzle.rows, 2);
    EXPECT_EQ(g_puzzle.cols, 3);
    EXPECT_EQ(g_puzzle.sheet, sheet);
    EXPECT_EQ(std::vector<uint32_t>(g_puzzle.order, g_puzzle.order + 6), order);
    for (uint32_t i = 0; i < 6; ++i) {
        EXPECT_EQ(g_puzzle.pieces[i].x, pieces[i].x);
        EXPECT_EQ(g_puzzle.pieces[i].y, pieces[i].y);
        EXPECT_EQ(g_puzzle.pieces[i].group, pieces[i].group);
    }
    EXPECT_TRUE(g_boxNotices.empty()) << Describe(g_boxNotices, s.boxes);
    for (int k = 0; k < kPieceBoxCount; ++k) {
        EXPECT_EQ(WindowText(s.boxes[k]), "kept");
        EXPECT_TRUE(IsWindowVisible(s.boxes[k]));
    }
    // The drag surfaces fit the game in play again, so its pieces can still be dragged.
    EXPECT_TRUE(g_dragSurfaces.ready);
    EXPECT_EQ(g_dragSurfaces.width, DragSurfaceSizesFor(boxWidth, boxHeight).backgroundWidth);
    EXPECT_EQ(g_dragSurfaces.height, DragSurfaceSizesFor(boxWidth, boxHeight).backgroundHeight);
    PumpMessages(30);
    EXPECT_TRUE(ScreenShows(kTableView));
}

}  // namespace
