// The title bar's open and save buttons: where they stand at every screen width, the save button
// following the changed game, and the leave question before a changed game is left for a new or a
// saved puzzle.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/message_window_win32.h"
#include "app/title_window_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "puzzle/board_window_win32.h"
#include "puzzle/model.h"
#include "win32_support.h"

namespace {

// Stand-ins of the bar's pictures at the sizes the game's artwork has.
struct TitlePack {
    TempFolder folder;
    TitlePack() {
        std::vector<uint8_t*> dibs;
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        auto add = [&](uint32_t id, uint8_t* dib) {
            dibs.push_back(dib);
            items.push_back({id, dib});
        };
        add(kArtTitleBarTile, MakeSolidDib(76, 78, RGB(90, 60, 30)));
        add(kArtExitButton, MakeFrameStrip(36, 36, {RGB(1, 0, 0), RGB(2, 0, 0), RGB(3, 0, 0)}));
        add(kArtMinimiseButton, MakeFrameStrip(36, 36, {RGB(4, 0, 0), RGB(5, 0, 0), RGB(6, 0, 0)}));
        add(kArtAboutButton, MakeFrameStrip(180, 52, {RGB(7, 0, 0), RGB(8, 0, 0), RGB(9, 0, 0)}));
        for (uint32_t language = 0; language < 2; ++language) {
            add(kArtNewPuzzleButton + language, MakeFrameStrip(160, 56, {RGB(10, 0, 0), RGB(11, 0, 0), RGB(12, 0, 0)}));
            add(kArtOpenPuzzleButton + language, MakeFrameStrip(88, 56, {RGB(20, 0, 0), RGB(21, 0, 0), RGB(22, 0, 0)}));
            // The save strip starts with its dimmed frame.
            add(kArtSavePuzzleButton + language,
                MakeFrameStrip(88, 56, {RGB(30, 0, 0), RGB(31, 0, 0), RGB(32, 0, 0), RGB(33, 0, 0)}));
        }
        add(kArtMessageFrame, MakeSolidDib(500, 300, RGB(200, 180, 150)));
        for (uint32_t language = 0; language < 2; ++language)
            add(kArtMessageHeading + language, MakeSolidDib(100, 30, RGB(150, 100, 50)));
        add(kArtMessageOkButton, MakeFrameStrip(60, 30, {RGB(0, 90, 0), RGB(0, 91, 0), RGB(0, 92, 0)}));
        add(kArtMessageCancelButton, MakeFrameStrip(60, 30, {RGB(90, 0, 0), RGB(91, 0, 0), RGB(92, 0, 0)}));
        std::string path = folder.File("Tavirel.rf");
        EXPECT_TRUE(WriteTestPack(path, items));
        for (uint8_t* dib : dibs) FreePackedDib(dib);
        EXPECT_TRUE(OpenPack(&g_pack, path.c_str()));
    }
    ~TitlePack() { ClosePack(&g_pack); }
};

int g_newPuzzleOpened;
std::vector<int> g_browserModes;
void CountNewPuzzle() { ++g_newPuzzleOpened; }
void RecordBrowser(uint8_t mode) { g_browserModes.push_back(mode); }

// A title bar on its own parent at a screen width, with the hooks and globals it touches put back after.
struct TitleBar {
    TitlePack pack;
    int32_t width = g_screenWidth, language = g_language;
    HWND main = g_mainWindow;
    PuzzleHooks hooks = g_puzzleHooks;
    void (*newPuzzle)() = g_openNewPuzzleScreen;
    void (*browser)(uint8_t) = g_openSavedPuzzles;
    TestWindow parent{0, 0, 1920, 100};
    HWND bar = nullptr;

    explicit TitleBar(int32_t screenWidth) {
        HINSTANCE instance = GetModuleHandleA(nullptr);
        EnsureControlClasses();
        RegisterTitleWindowClass(instance);
        RegisterMessageWindowClass(instance);
        g_screenWidth = screenWidth;
        g_language = kEnglish;
        g_mainWindow = parent.hwnd;
        g_openNewPuzzleScreen = CountNewPuzzle;
        g_openSavedPuzzles = RecordBrowser;
        g_newPuzzleOpened = 0;
        g_browserModes.clear();
        bar = CreateTitleWindow(parent.hwnd);
    }
    ~TitleBar() {
        if (HWND message = CurrentMessageWindow()) DestroyWindow(message);
        PumpMessages(80);
        DestroyWindow(bar);
        g_screenWidth = width;
        g_language = language;
        g_mainWindow = main;
        g_puzzleHooks = hooks;
        g_openNewPuzzleScreen = newPuzzle;
        g_openSavedPuzzles = browser;
    }
    HWND NewPuzzleButton() const { return ChildAt(-2, 10); }
    HWND ChildAt(int x, int y) const {
        for (HWND child = GetWindow(bar, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
            RECT r;
            GetWindowRect(child, &r);
            POINT at = {r.left, r.top};
            ScreenToClient(bar, &at);
            if (at.x == x && at.y == y) return child;
        }
        return nullptr;
    }
    RECT Place(HWND child) const {
        RECT r;
        GetWindowRect(child, &r);
        MapWindowPoints(nullptr, bar, reinterpret_cast<POINT*>(&r), 2);
        return r;
    }
    void Click(HWND button) { SendMessageA(bar, PM_NOTIFY, NOTIFY_CLICKED, reinterpret_cast<LPARAM>(button)); }
};

// A puzzle that counts as changed since its last save, without cutting one: only the in-progress test reads
// these three fields.
struct ChangedGame {
    uint32_t* sheet = g_puzzle.sheet;
    uint8_t dirty = g_puzzle.puzzle_dirty, finished = g_puzzle.finished;
    uint32_t stand = 0;
    ChangedGame() {
        g_puzzle.sheet = &stand;
        g_puzzle.puzzle_dirty = 1;
        g_puzzle.finished = 0;
    }
    ~ChangedGame() {
        g_puzzle.sheet = sheet;
        g_puzzle.puzzle_dirty = dirty;
        g_puzzle.finished = finished;
    }
};

// Answers the message window as a key would, then lets its 45 ms timer deliver the answer.
void Answer(WPARAM key) {
    HWND message = CurrentMessageWindow();
    ASSERT_NE(message, nullptr);
    SendMessageA(message, WM_CHAR, key, 0);
    PumpMessages(150);
}

}  // namespace

TEST(TitleFileButtons, OpenAndSaveStandBetweenNewPuzzleAndAboutAtEveryScreenWidth) {
    for (int32_t width : {800, 1024, 1280, 1920}) {
        TitleBar title(width);
        ASSERT_NE(title.bar, nullptr);
        HWND open = TitleOpenButton(), save = TitleSaveButton(), newPuzzle = title.NewPuzzleButton();
        ASSERT_NE(open, nullptr);
        ASSERT_NE(save, nullptr);
        ASSERT_NE(newPuzzle, nullptr);
        RECT o = title.Place(open), s = title.Place(save), n = title.Place(newPuzzle);
        EXPECT_EQ(o.left, kTitleOpenX) << width;
        EXPECT_EQ(o.top, kTitleFileButtonY) << width;
        EXPECT_EQ(s.left, kTitleSaveX) << width;
        EXPECT_EQ(s.bottom - s.top, 56) << "the save strip has four frames";
        // Nothing overlaps: New puzzle, open, save, then the about button where the bar has always had it.
        EXPECT_LE(n.right, o.left) << width;
        EXPECT_LE(o.right, s.left) << width;
        EXPECT_LE(s.right, TitleAboutX(width)) << width;
        EXPECT_NE(title.ChildAt(TitleAboutX(width), -1), nullptr) << "the about button did not move";
    }
}

TEST(TitleFileButtons, SaveButtonIsDisabledUntilThePuzzleChanges) {
    TitleBar title(1024);
    HWND save = TitleSaveButton();
    ASSERT_EQ(g_saveButton, save);
    EXPECT_EQ(SendMessageA(save, PM_GETENABLE, 0, 0), 0);
    EXPECT_EQ(SendMessageA(save, PM_GETDISFRAME, 0, 0), 1);
    InstallBoardHooks();
    g_puzzleHooks.enableSave();  // what every drop calls
    EXPECT_EQ(SendMessageA(save, PM_GETENABLE, 0, 0), 1);
    EXPECT_EQ(SendMessageA(TitleOpenButton(), PM_GETENABLE, 0, 0), 1);
}

TEST(TitleFileButtons, SaveOpensTheBrowserInSaveModeAtOnce) {
    TitleBar title(1024);
    ChangedGame changed;
    title.Click(TitleSaveButton());
    EXPECT_EQ(CurrentMessageWindow(), nullptr);
    ASSERT_EQ(g_browserModes.size(), 1u);
    EXPECT_EQ(g_browserModes[0], 0);
}

TEST(TitleFileButtons, OpenWithAnUnchangedGameOpensTheBrowserWithoutAQuestion) {
    TitleBar title(1024);
    title.Click(TitleOpenButton());
    EXPECT_EQ(CurrentMessageWindow(), nullptr);
    ASSERT_EQ(g_browserModes.size(), 1u);
    EXPECT_EQ(g_browserModes[0], 1);
}

TEST(TitleFileButtons, OpenWithAChangedGameAsksAndOpensOnlyOnYes) {
    TitleBar title(1024);
    ChangedGame changed;
    title.Click(TitleOpenButton());
    EXPECT_NE(CurrentMessageWindow(), nullptr);
    EXPECT_TRUE(g_browserModes.empty()) << "nothing opens before the answer";
    Answer(27);  // Escape: stay with the game
    EXPECT_TRUE(g_browserModes.empty());
    title.Click(TitleOpenButton());
    Answer(13);  // Enter: leave it
    ASSERT_EQ(g_browserModes.size(), 1u);
    EXPECT_EQ(g_browserModes[0], 1);
}

TEST(TitleFileButtons, NewPuzzleOnAChangedGameAsksAndGoesOnOnlyOnYes) {
    TitleBar title(1024);
    {
        // Unchanged: straight to the new-puzzle screen.
        title.Click(title.NewPuzzleButton());
        EXPECT_EQ(CurrentMessageWindow(), nullptr);
        EXPECT_EQ(g_newPuzzleOpened, 1);
    }
    ChangedGame changed;
    title.Click(title.NewPuzzleButton());
    EXPECT_NE(CurrentMessageWindow(), nullptr);
    EXPECT_EQ(g_newPuzzleOpened, 1);
    Answer(27);
    EXPECT_EQ(g_newPuzzleOpened, 1) << "no leaves the changed game where it is";
    title.Click(title.NewPuzzleButton());
    Answer(13);
    EXPECT_EQ(g_newPuzzleOpened, 2);
}

TEST(TitleFileButtons, AFinishedGameIsLeftWithoutAQuestionEvenAfterMoves) {
    TitleBar title(1024);
    ChangedGame changed;
    g_puzzle.finished = 1;
    title.Click(title.NewPuzzleButton());
    EXPECT_EQ(CurrentMessageWindow(), nullptr);
    EXPECT_EQ(g_newPuzzleOpened, 1);
}
