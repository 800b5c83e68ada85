// Undo, redo, the game's keys and gathering the edge pieces on the real playing screen: every key reaches
// its command from the table and from a box, none fires while a name is typed, Esc puts a dragged piece
// back, undo gives a tray its empty artwork back, and the gather button dims when no box is empty.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/language_chooser_win32.h"
#include "app/launchers_win32.h"
#include "app/main_window_win32.h"
#include "app/message_loop_win32.h"
#include "app/message_window_win32.h"
#include "app/shortcuts_win32.h"
#include "app/startup_win32.h"
#include "app/title_window_win32.h"
#include "board_test_helpers.h"
#include "controls/animated_button_win32.h"
#include "extras/bar_layout.h"
#include "extras/bars_win32.h"
#include "puzzle/gather.h"
#include "puzzle/history.h"
#include "puzzle/join.h"
#include "puzzle/picture.h"
#include "setup/browser_rules.h"
#include "setup/browser_win32.h"
#include "setup/piece_box_win32.h"

namespace {

COLORREF EmptyTrayColor(int k) { return RGB(30 * k + 10, 20, 220); }
COLORREF FullTrayColor(int k) { return RGB(30 * k + 10, 220, 20); }

COLORREF SideButtonColor(HWND button) {
    const uint8_t* image = reinterpret_cast<const uint8_t*>(SendMessageA(button, PM_GETIMAGE, 0, 0));
    return image ? COLORREF(DibAt(image, 5, 5)) : COLORREF(0xFFFFFFFF);
}

// A top-level window of the class made by this test process: another test program may run beside it.
HWND OurWindow(const char* className) {
    for (HWND w = FindWindowExA(nullptr, nullptr, className, nullptr); w; w = FindWindowExA(nullptr, w, className, nullptr)) {
        DWORD process = 0;
        GetWindowThreadProcessId(w, &process);
        if (process == GetCurrentProcessId()) return w;
    }
    return nullptr;
}

// What the commands without a screen of their own yet did, counted.
int g_honourRollOpened, g_musicOpened, g_clothOpened, g_newPuzzleOpened, g_helpLaunched;
int g_savedPuzzlesOpened[2];
void CountHonourRoll() { ++g_honourRollOpened; }
void CountMusic() { ++g_musicOpened; }
void CountCloth() { ++g_clothOpened; }
void CountNewPuzzle() { ++g_newPuzzleOpened; }
void CountSavedPuzzles(uint8_t mode) { ++g_savedPuzzlesOpened[mode ? 1 : 0]; }
BOOL WINAPI CountShell(SHELLEXECUTEINFOA*) {
    ++g_helpLaunched;
    return TRUE;
}

// Messages as the game's own loop treats them: keys are offered to the game first.
void PumpAsTheGame(DWORD ms) {
    const DWORD end = GetTickCount() + ms;
    for (;;) {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            if (OfferShortcut(&msg) || OfferChildChar(&msg)) continue;
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
        const DWORD now = GetTickCount();
        if (int32_t(end - now) <= 0) break;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, end - now, QS_ALLINPUT);
    }
}

struct Snapshot {
    std::vector<PieceRecord> pieces;
    std::vector<uint32_t> order;
};
Snapshot Take() {
    const uint32_t n = PieceCount(&g_puzzle);
    return Snapshot{std::vector<PieceRecord>(g_puzzle.pieces, g_puzzle.pieces + n),
                    std::vector<uint32_t>(g_puzzle.order, g_puzzle.order + n)};
}
bool Same(const Snapshot& a, const Snapshot& b) {
    if (a.order != b.order) return false;
    for (size_t i = 0; i < a.pieces.size(); ++i)
        if (std::memcmp(&a.pieces[i], &b.pieces[i], sizeof(PieceRecord)) != 0) return false;
    return true;
}

// The real main window at 800 x 600 with a rows x cols puzzle cut from a test photograph, its boxes,
// bars and title bar, the commands that have no screen yet counted.
struct PlayingScreen {
    TempFolder folder;
    char savedFolder[kPathCapacity];
    std::vector<uint8_t*> dibs;
    HWND window = nullptr;
    bool cut = false;
    BarActions savedActions = g_barActions;

    PlayingScreen(int32_t rows, int32_t cols) {
        std::memcpy(savedFolder, g_appFolder, sizeof savedFolder);
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s", folder.path.c_str());
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        auto add = [&](uint32_t id, uint8_t* dib) {
            dibs.push_back(dib);
            items.push_back({id, dib});
        };
        add(kArtCutPattern, MakeBoardPattern());
        add(kArtCloth, MakeDib8(100, 100, 16, [](int x, int y) { return uint8_t((x / 10 + y / 10) % 16); }));
        for (int k = 0; k < kPieceBoxCount; ++k) {
            add(kArtTrayEmptyButton + uint32_t(k), MakeDib24(50, 138, [k](int, int) { return EmptyTrayColor(k); }));
            add(kArtTrayFullButton + uint32_t(k), MakeDib24(50, 138, [k](int, int) { return FullTrayColor(k); }));
        }
        add(kArtGatherEdgesButton, MakeDib24(550, 50, [](int x, int) { return RGB(x / 50 * 20, 60, 90); }));
        add(kArtMessageFrame, MakeSolidDib(500, 300, RGB(200, 180, 150)));
        add(kArtBrowserPanel, MakeSolidDib(640, 300, RGB(120, 90, 60)));
        add(kArtBrowserScroll, MakeSolidDib(30, 384, RGB(140, 70, 70)));
        for (uint32_t language = 0; language < 2; ++language)
            add(kArtMessageHeading + language, MakeSolidDib(100, 30, RGB(150, 100, 50)));
        add(kArtMessageOkButton, MakeFrameStrip(60, 30, {RGB(0, 90, 0), RGB(0, 91, 0), RGB(0, 92, 0)}));
        add(kArtMessageCancelButton, MakeFrameStrip(60, 30, {RGB(90, 0, 0), RGB(91, 0, 0), RGB(92, 0, 0)}));
        const std::string pack = folder.File("Tavirel.rf"), picture = folder.File("photo.bmp");
        EXPECT_TRUE(WriteTestPack(pack, items));
        EXPECT_TRUE(OpenPack(&g_pack, pack.c_str()));
        uint8_t* photo = MakeDib24(40 * cols, 40 * rows, BoardPhotoColor);
        dibs.push_back(photo);
        EXPECT_TRUE(WriteDibAsBmp(picture.c_str(), photo));
        EXPECT_TRUE(LoadCurrentPicture(picture.c_str()));

        RegisterWindowClasses(GetModuleHandleA(nullptr));
        g_screenWidth = 800;
        g_screenHeight = 600;
        window = CreateMainWindow();
        if (!window) return;
        RECT frame = {0, 0, 800, 600};
        AdjustWindowRect(&frame, DWORD(GetWindowLongPtrA(window, GWL_STYLE)), FALSE);
        SetWindowPos(window, HWND_TOP, frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top,
                     SWP_SHOWWINDOW | SWP_NOACTIVATE);
        PumpMessages(100);
        g_barActions.openHonourRoll = CountHonourRoll;
        g_barActions.openMusic = CountMusic;
        g_openClothChooser = CountCloth;
        g_openNewPuzzleScreen = CountNewPuzzle;
        g_openSavedPuzzles = CountSavedPuzzles;
        g_shellExecute = CountShell;
        g_honourRollOpened = g_musicOpened = g_clothOpened = g_newPuzzleOpened = g_helpLaunched = 0;
        g_savedPuzzlesOpened[0] = g_savedPuzzlesOpened[1] = 0;
        g_puzzle.rows = rows;
        g_puzzle.cols = cols;
        g_puzzle.scale = 1.0;
        cut = StartNewGame(0);
        ClearHistory(&g_history);
        PumpAsTheGame(50);
    }

    ~PlayingScreen() {
        if (HWND message = CurrentMessageWindow()) DestroyWindow(message);
        while (HWND w = OurWindow(kLanguageChooserClass)) DestroyWindow(w);
        PumpMessages(80);
        if (window) DestroyWindow(window);
        MSG quit;
        PeekMessageA(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);  // the main window's goodbye
        g_barActions = savedActions;
        g_openClothChooser = nullptr;
        g_openNewPuzzleScreen = nullptr;
        g_openSavedPuzzles = nullptr;
        g_shellExecute = ShellExecuteExA;
        ClearHistory(&g_history);
        ClosePack(&g_pack);
        ClearCurrentPicture();
        for (uint8_t* dib : dibs) FreePackedDib(dib);
        std::memcpy(g_appFolder, savedFolder, sizeof savedFolder);
    }
    PlayingScreen(const PlayingScreen&) = delete;
    PlayingScreen& operator=(const PlayingScreen&) = delete;

    // A key pressed while `target` has the keyboard, with Ctrl and Shift held as told.
    void Press(HWND target, UINT key, bool ctrl = false, bool shift = false) {
        BYTE keys[256];
        GetKeyboardState(keys);
        keys[VK_CONTROL] = keys[VK_LCONTROL] = ctrl ? 0x80 : 0;
        keys[VK_SHIFT] = keys[VK_LSHIFT] = shift ? 0x80 : 0;
        SetKeyboardState(keys);
        PostMessageA(target, WM_KEYDOWN, key, 1);
        PumpAsTheGame(60);
        keys[VK_CONTROL] = keys[VK_LCONTROL] = keys[VK_SHIFT] = keys[VK_LSHIFT] = 0;
        SetKeyboardState(keys);
    }

    // A gesture through the engine: the top piece of the table dropped at (x, y) of view `to`.
    void MoveTopPiece(int to, int32_t x, int32_t y) {
        BeginGesture(&g_history, &g_puzzle);
        DropPiece(&g_puzzle, to, kTableView, g_puzzle.views[kTableView].entries[0], x, y);
        if (g_puzzleHooks.enableSave) g_puzzleHooks.enableSave();  // as every release does
        EndGesture(&g_history, &g_puzzle);
        PumpAsTheGame(20);
    }

    HWND Table() const { return ViewWindow(kTableView); }
};

bool Visible(HWND hwnd) { return hwnd && IsWindowVisible(hwnd); }


}  // namespace

TEST(PlayComforts, UndoAndRedoKeysReachTheGameFromTheTableAndFromABox) {
    PlayingScreen screen(3, 4);
    ASSERT_TRUE(screen.cut);
    const Snapshot start = Take();
    screen.MoveTopPiece(kTableView, 300, 200);
    const Snapshot moved = Take();
    ASSERT_FALSE(Same(start, moved));

    screen.Press(screen.Table(), 'Z', true);
    EXPECT_TRUE(Same(start, Take()));
    screen.Press(g_pieceBoxes[2], 'Y', true);  // from a box (hidden or not, it has the keyboard)
    EXPECT_TRUE(Same(moved, Take()));
    screen.Press(g_pieceBoxes[4], 'Z', true);
    EXPECT_TRUE(Same(start, Take()));
    screen.Press(screen.Table(), 'Z', true, true);  // Ctrl+Shift+Z redoes too
    EXPECT_TRUE(Same(moved, Take()));
}

TEST(PlayComforts, EachCommandKeyReachesItsCommandFromTheTableAndFromABox) {
    PlayingScreen screen(4, 5);
    ASSERT_TRUE(screen.cut);
    for (HWND target : {screen.Table(), g_pieceBoxes[5]}) {
        SCOPED_TRACE(target == screen.Table() ? "from the table" : "from box 6");
        const uint32_t hints = g_puzzle.hintsUsed;
        screen.Press(target, 'H');
        EXPECT_EQ(g_puzzle.hintsUsed, hints + 1);

        const uint32_t edges = CountLooseEdgePieces(&g_puzzle);
        ASSERT_GT(edges, 0u);
        screen.Press(target, 'E');
        EXPECT_EQ(g_puzzle.views[0].count, edges);
        EXPECT_TRUE(Visible(g_pieceBoxes[0]));
        screen.Press(target, 'Z', true);  // gathering is one gesture
        EXPECT_EQ(g_puzzle.views[0].count, 0u);
        TogglePieceBox(0);

        const bool third = Visible(g_pieceBoxes[2]);
        screen.Press(target, '3');
        EXPECT_NE(Visible(g_pieceBoxes[2]), third);
        screen.Press(target, '3');
        EXPECT_EQ(Visible(g_pieceBoxes[2]), third);

        const bool magnifier = Visible(g_magnifierWindow);
        screen.Press(target, 'P');
        EXPECT_NE(Visible(g_magnifierWindow), magnifier);
        screen.Press(target, 'P');

        const int help = g_helpLaunched, honour = g_honourRollOpened, music = g_musicOpened, cloth = g_clothOpened;
        screen.Press(target, VK_F1);
        screen.Press(target, 'R');
        screen.Press(target, 'M');
        screen.Press(target, 'C');
        EXPECT_EQ(g_helpLaunched, help + 1);
        EXPECT_EQ(g_honourRollOpened, honour + 1);
        EXPECT_EQ(g_musicOpened, music + 1);
        EXPECT_EQ(g_clothOpened, cloth + 1);

        screen.Press(target, 'L');
        HWND chooser = OurWindow(kLanguageChooserClass);
        EXPECT_TRUE(Visible(chooser));
        if (chooser) DestroyWindow(chooser);
        PumpAsTheGame(20);

        // New puzzle and Open ask first about a changed game; unchanged, they go straight on.
        g_puzzle.puzzle_dirty = 0;
        const int opened = g_newPuzzleOpened, open = g_savedPuzzlesOpened[1], save = g_savedPuzzlesOpened[0];
        screen.Press(target, 'N', true);
        screen.Press(target, 'O', true);
        screen.Press(target, 'S', true);
        EXPECT_EQ(g_newPuzzleOpened, opened + 1);
        EXPECT_EQ(g_savedPuzzlesOpened[1], open + 1);
        EXPECT_EQ(g_savedPuzzlesOpened[0], save + 1);
        g_puzzle.puzzle_dirty = 1;
        screen.Press(target, 'N', true);
        EXPECT_NE(CurrentMessageWindow(), nullptr) << "a changed game is not left without asking";
        EXPECT_EQ(g_newPuzzleOpened, opened + 1);
        if (HWND message = CurrentMessageWindow()) DestroyWindow(message);
        PumpAsTheGame(80);
    }

    // Assemble asks first; no answers no, yes ends the game.
    screen.Press(screen.Table(), 'A');
    HWND question = CurrentMessageWindow();
    ASSERT_NE(question, nullptr);
    SendMessageA(question, WM_CHAR, VK_ESCAPE, 1);
    PumpAsTheGame(150);
    EXPECT_FALSE(g_puzzle.finished);
    screen.Press(g_pieceBoxes[1], 'A');
    question = CurrentMessageWindow();
    ASSERT_NE(question, nullptr);
    SendMessageA(question, WM_CHAR, VK_RETURN, 1);
    PumpAsTheGame(150);
    EXPECT_TRUE(g_puzzle.finished);
    screen.Press(screen.Table(), 'Z', true);  // nothing comes back after the end
    EXPECT_TRUE(g_puzzle.finished);
    EXPECT_TRUE(IsPuzzleComplete(&g_puzzle));
}

TEST(PlayComforts, NoKeyFiresWhileANameIsTypedInTheMessageWindow) {
    PlayingScreen screen(4, 5);
    ASSERT_TRUE(screen.cut);
    const Snapshot start = Take();
    HWND message = ShowMessage(20, screen.window, nullptr, true);
    ASSERT_NE(message, nullptr);
    HWND field = FindWindowExA(message, nullptr, "EDIT", nullptr);
    ASSERT_NE(field, nullptr);
    SetFocus(field);
    for (UINT key : {'H', 'E', '1', 'P', 'L'}) screen.Press(field, key);
    char typed[32] = "";
    GetWindowTextA(field, typed, sizeof typed);
    EXPECT_STREQ(typed, "he1pl");  // the letters went into the name
    screen.Press(field, 'Z', true);  // the field's own undo, not the game's
    EXPECT_EQ(g_puzzle.hintsUsed, 0u);
    EXPECT_TRUE(Same(start, Take()));
    EXPECT_FALSE(Visible(g_pieceBoxes[0]));
    EXPECT_EQ(OurWindow(kLanguageChooserClass), nullptr);
    // The question open (even without a focused field) keeps its keys to itself.
    SetFocus(screen.window);
    screen.Press(screen.Table(), 'H');
    EXPECT_EQ(g_puzzle.hintsUsed, 0u);
}

TEST(PlayComforts, NoKeyFiresWhileANameIsTypedInTheBrowser) {
    PlayingScreen screen(4, 5);
    ASSERT_TRUE(screen.cut);
    g_openSavedPuzzles = [](uint8_t mode) { OpenSavedPuzzleBrowser(mode); };
    screen.MoveTopPiece(kTableView, 200, 150);  // a changed game can be saved
    screen.Press(screen.Table(), 'S', true);  // the browser opens with its name field focused
    HWND browser = OurWindow(kBrowserClass);

    ASSERT_TRUE(Visible(browser));
    HWND field = GetDlgItem(browser, kBrowserNameFieldId);
    ASSERT_NE(field, nullptr);
    SetFocus(field);
    SetWindowTextA(field, "");
    const Snapshot start = Take();
    for (UINT key : {'H', 'E', '2', 'A'}) screen.Press(field, key);
    char typed[32] = "";
    GetWindowTextA(field, typed, sizeof typed);
    EXPECT_STREQ(typed, "he2a");
    EXPECT_EQ(g_puzzle.hintsUsed, 0u);
    EXPECT_TRUE(Same(start, Take()));
    EXPECT_EQ(CurrentMessageWindow(), nullptr);
    // Over the browser, away from its field, the playing screen's keys still wait.
    SetFocus(browser);
    screen.Press(browser, 'H');
    EXPECT_EQ(g_puzzle.hintsUsed, 0u);
    DestroyWindow(browser);
    PumpAsTheGame(50);
}

TEST(PlayComforts, EscapeDuringADragPutsThePieceBack) {
    PlayingScreen screen(3, 4);
    ASSERT_TRUE(screen.cut);
    // A point inside the topmost piece somewhere on the table.
    int32_t px = -1, py = -1, piece = -1;
    for (int32_t y = 5; y < g_puzzle.tableHeight && piece < 0; y += 4)
        for (int32_t x = 5; x < g_puzzle.tableWidth && piece < 0; x += 4)
            if ((piece = HitTestView(&g_puzzle, kTableView, x, y, nullptr)) >= 0) {
                px = x;
                py = y;
            }
    ASSERT_GE(piece, 0);
    const PieceRecord before = g_puzzle.pieces[piece];
    SendMessageA(screen.Table(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(px, py));
    SendMessageA(screen.Table(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(px + 60, py + 40));
    ASSERT_EQ(g_puzzle.dragMode, 1u);
    screen.Press(screen.Table(), VK_ESCAPE);
    EXPECT_EQ(g_puzzle.dragMode, 0u);
    EXPECT_EQ(g_puzzle.pieces[piece].x, before.x);
    EXPECT_EQ(g_puzzle.pieces[piece].y, before.y);
    EXPECT_NE(GetCapture(), screen.Table());
    EXPECT_FALSE(CanUndo(&g_history, &g_puzzle)) << "a drag put back is no move";
    // The release that follows changes nothing more.
    SendMessageA(screen.Table(), WM_LBUTTONUP, 0, MAKELPARAM(px + 60, py + 40));
    EXPECT_EQ(g_puzzle.pieces[piece].x, before.x);
}

TEST(PlayComforts, UndoOfAMoveIntoATrayGivesItsSideButtonTheEmptyArtBack) {
    PlayingScreen screen(3, 4);
    ASSERT_TRUE(screen.cut);
    ASSERT_EQ(SideButtonColor(g_sideButtons[2]), EmptyTrayColor(2));
    screen.MoveTopPiece(2, 20, 20);
    ASSERT_EQ(SideButtonColor(g_sideButtons[2]), FullTrayColor(2));
    screen.Press(screen.Table(), 'Z', true);
    EXPECT_EQ(g_puzzle.views[2].count, 0u);
    EXPECT_EQ(SideButtonColor(g_sideButtons[2]), EmptyTrayColor(2));
    screen.Press(screen.Table(), 'Y', true);
    EXPECT_EQ(SideButtonColor(g_sideButtons[2]), FullTrayColor(2));
}

TEST(PlayComforts, GatherButtonStandsBelowTheFourAndDimsWhenEveryBoxHoldsPieces) {
    PlayingScreen screen(4, 5);
    ASSERT_TRUE(screen.cut);
    HWND button = GatherEdgesButton();
    ASSERT_NE(button, nullptr);
    RECT r;
    GetWindowRect(button, &r);
    MapWindowPoints(nullptr, GetParent(button), reinterpret_cast<POINT*>(&r), 2);
    EXPECT_EQ(r.left, 0);
    EXPECT_EQ(r.top, GatherButtonY(600));
    RefreshGatherButton();
    EXPECT_EQ(SendMessageA(button, PM_GETENABLE, 0, 0), 1);
    EXPECT_EQ(SendMessageA(button, PM_ANIM_GETFRAME, 0, 0), kButtonRestFrame);

    for (int k = 0; k < kPieceBoxCount; ++k) screen.MoveTopPiece(k, 10, 10);
    ASSERT_GT(CountLooseEdgePieces(&g_puzzle), 0u);
    EXPECT_EQ(SendMessageA(button, PM_GETENABLE, 0, 0), 0);
    EXPECT_EQ(SendMessageA(button, PM_ANIM_GETFRAME, 0, 0), kGatherDisabledFrame);
    const Snapshot full = Take();
    screen.Press(screen.Table(), 'E');
    EXPECT_TRUE(Same(full, Take())) << "with every box full, gathering changes nothing";

    screen.Press(screen.Table(), 'Z', true);  // box 6 empty again
    EXPECT_EQ(SendMessageA(button, PM_GETENABLE, 0, 0), 1);
    EXPECT_EQ(SendMessageA(button, PM_ANIM_GETFRAME, 0, 0), kButtonRestFrame);
    const uint32_t edges = CountLooseEdgePieces(&g_puzzle);
    screen.Press(screen.Table(), 'E');
    EXPECT_EQ(g_puzzle.views[5].count, edges);
    EXPECT_EQ(CountLooseEdgePieces(&g_puzzle), 0u);
    EXPECT_TRUE(Visible(g_pieceBoxes[5]));
}
