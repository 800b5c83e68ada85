// The program frame: the message loop's child-character filter, the language chooser, localised
// strings, the title bar and the side buttons of the main window.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <vector>

#include "app/app_win32.h"
#include "app/settings.h"
#include "app/art_ids.h"
#include "app/language_chooser_win32.h"
#include "app/main_window_win32.h"
#include "app/message_loop_win32.h"
#include "app/strings_win32.h"
#include "app/theme.h"
#include "app/title_window_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "setup/piece_box_win32.h"
#include "message_log_win32.h"
#include "win32_support.h"

namespace {

// A parent that answers PM_CHILDCHAR with a chosen value and counts what it was offered.
LRESULT g_childCharAnswer;
int g_childCharsOffered;
std::vector<WPARAM> g_charsReceived;

LRESULT CALLBACK FilterParentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == PM_CHILDCHAR) {
        ++g_childCharsOffered;
        return g_childCharAnswer;
    }
    if (message == WM_CHAR) g_charsReceived.push_back(wParam);
    return DefWindowProcA(window, message, wParam, lParam);
}

LRESULT CALLBACK CharLoggerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CHAR) g_charsReceived.push_back(wParam);
    return DefWindowProcA(window, message, wParam, lParam);
}

void RegisterTestClass(const char* name, WNDPROC proc) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = proc;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = name;
    RegisterClassA(&windowClass);
}

// Posts one character to the window, then WM_QUIT, and runs the real message loop over both.
void RunLoopOverChar(HWND window, WPARAM ch) {
    PostMessageA(window, WM_CHAR, ch, 1);
    PostQuitMessage(7);
    EXPECT_EQ(RunMessageLoop(), 7);
}

struct FilterWindows {
    HWND parent, child;
    FilterWindows() {
        RegisterTestClass("FilterParent", FilterParentProc);
        RegisterTestClass("CharLogger", CharLoggerProc);
        parent = CreateWindowExA(0, "FilterParent", "", WS_POPUP, 0, 0, 50, 50, nullptr, nullptr,
                                 GetModuleHandleA(nullptr), nullptr);
        child = CreateWindowExA(0, "CharLogger", "", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, parent, nullptr,
                                GetModuleHandleA(nullptr), nullptr);
        g_childCharsOffered = 0;
        g_charsReceived.clear();
    }
    ~FilterWindows() { DestroyWindow(parent); }
};

}  // namespace

TEST(MessageLoop, ChildCharSwallowedWhenParentAnswersOne) {
    FilterWindows w;
    g_childCharAnswer = 1;
    RunLoopOverChar(w.child, 'a');
    EXPECT_EQ(g_childCharsOffered, 1);
    EXPECT_TRUE(g_charsReceived.empty());
}

TEST(MessageLoop, ChildCharPassesWhenParentAnswersZero) {
    FilterWindows w;
    g_childCharAnswer = 0;
    RunLoopOverChar(w.child, 'b');
    EXPECT_EQ(g_childCharsOffered, 1);
    ASSERT_EQ(g_charsReceived.size(), 1u);
    EXPECT_EQ(g_charsReceived[0], WPARAM('b'));
}

TEST(MessageLoop, TopLevelWindowsNeverSeeChildChar) {
    FilterWindows w;
    g_childCharAnswer = 1;
    RunLoopOverChar(w.parent, 'c');
    EXPECT_EQ(g_childCharsOffered, 0);
    ASSERT_EQ(g_charsReceived.size(), 1u);  // the parent got its own character
    EXPECT_EQ(g_charsReceived[0], WPARAM('c'));
}

TEST(LocalStrings, LanguagesTwoToFiveHaveNoResolutionOrPrintingText) {
    char text[300];
    for (int32_t language = 2; language <= 5; ++language) {
        g_language = language;
        EXPECT_EQ(LoadLocalString(200, text, sizeof text), 0) << language;
        EXPECT_STREQ(text, "");
        EXPECT_EQ(LoadLocalString(210, text, sizeof text), 0) << language;
        EXPECT_EQ(LoadLocalString(1000, text, sizeof text), 0) << language;  // a base nobody uses
        EXPECT_GT(LoadLocalString(50, text, sizeof text), 0) << language;    // "Rows:" exists in all six
    }
    g_language = kEnglish;
    ASSERT_GT(LoadLocalString(200, text, sizeof text), 0);
    EXPECT_EQ(std::strncmp(text, "Tavirel Puzzle needs a minimal resolution", 41), 0);
}

TEST(TitleWindow, ButtonsAndClockFollowTheScreenWidth) {
    EXPECT_EQ(TitleAboutX(800), 348);
    EXPECT_EQ(TitleClockX(800), 570);
    EXPECT_EQ(TitleAboutX(1024), 423);
    EXPECT_EQ(TitleClockX(1024), 720);
}

TEST(TitleWindow, ShowClockSetsTheTextAndRedrawsOnlyTheClock) {
    RegisterControlClasses(GetModuleHandleA(nullptr));
    RegisterTitleWindowClass(GetModuleHandleA(nullptr));
    g_screenWidth = 1024;
    TestWindow parent(0, 0, 1024, 100);
    HWND title = CreateTitleWindow(parent.hwnd);
    ASSERT_NE(title, nullptr);
    UpdateWindow(title);
    EXPECT_STREQ(TitleClockText(), "00:00:00");
    ShowClock(3600 * 100 + 62, 100, 1, 2);
    EXPECT_STREQ(TitleClockText(), "100:01:02");
    RECT update;
    ASSERT_TRUE(GetUpdateRect(title, &update, FALSE));
    EXPECT_EQ(update.left, 720);
    EXPECT_EQ(update.top, 10);
    // 140 pixels, or as wide as the text when its face renders it wider: never the whole bar.
    EXPECT_GE(update.right, 860);
    EXPECT_LE(update.right, 720 + 220);
    EXPECT_EQ(update.bottom, 60);
    DestroyWindow(title);
}

namespace {

// The language chooser's children, told apart by where they stand.
struct ChooserParts {
    HWND ok = nullptr, cancel = nullptr, spanish = nullptr, english = nullptr;
};

ChooserParts FindChooserParts(HWND chooser) {
    ChooserParts parts;
    for (HWND child = GetWindow(chooser, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        RECT r;
        GetWindowRect(child, &r);
        POINT at = {r.left, r.top};
        ScreenToClient(chooser, &at);
        if (at.y == 256) (at.x == 0 ? parts.ok : parts.cancel) = child;
        if (at.y == 60) parts.spanish = child;
        if (at.y == 90) parts.english = child;
    }
    return parts;
}

std::string IdiomaInIni() {
    char value[16] = "";
    GetPrivateProfileStringA("Tavirel", "Idioma", "none", value, sizeof value, SettingsFilePath());
    return value;
}

// Every chooser test reads and writes the one tavirel.ini: tests running side by side take turns.
struct LanguageChooser : ::testing::Test {
    TestWindow main{0, 0, 400, 400};
    HANDLE iniTurn = nullptr;
    void SetUp() override {
        iniTurn = CreateMutexA(nullptr, FALSE, "TavirelIniTests");
        WaitForSingleObject(iniTurn, 60000);
        RegisterControlClasses(GetModuleHandleA(nullptr));
        RegisterLanguageChooserClass(GetModuleHandleA(nullptr));
        WritePrivateProfileStringA("Tavirel", "Idioma", nullptr, SettingsFilePath());
        g_language = kEnglish;
        g_mainWindow = main.hwnd;
    }
    void TearDown() override {
        WritePrivateProfileStringA("Tavirel", "Idioma", nullptr, SettingsFilePath());
        g_language = kEnglish;
        g_mainWindow = nullptr;
        ReleaseMutex(iniTurn);
        CloseHandle(iniTurn);
    }
    void Click(HWND chooser, HWND control) {
        SendMessageA(chooser, PM_NOTIFY, NOTIFY_CLICKED, reinterpret_cast<LPARAM>(control));
        PumpMessages(50);
    }
};

}  // namespace

TEST_F(LanguageChooser, OkWithoutChangeWritesNothingAndCloses) {
    HWND chooser = OpenLanguageChooser();
    ASSERT_NE(chooser, nullptr);
    EXPECT_FALSE(IsWindowEnabled(main.hwnd));
    ChooserParts parts = FindChooserParts(chooser);
    ASSERT_NE(parts.ok, nullptr);
    Click(chooser, parts.english);  // already the language: nothing happens
    Click(chooser, parts.ok);
    EXPECT_FALSE(IsWindow(chooser));
    EXPECT_TRUE(IsWindowEnabled(main.hwnd));
    EXPECT_EQ(g_language, kEnglish);
    EXPECT_EQ(IdiomaInIni(), "none");
}

TEST_F(LanguageChooser, CancelAfterPickingDiscardsTheChoice) {
    HWND chooser = OpenLanguageChooser();
    ASSERT_NE(chooser, nullptr);
    ChooserParts parts = FindChooserParts(chooser);
    ASSERT_NE(parts.spanish, nullptr);
    Click(chooser, parts.spanish);
    EXPECT_EQ(SendMessageA(parts.spanish, PM_TXT_GETTEXTCOLOR, 0, 0), LRESULT(kSelectedTextColor));
    EXPECT_EQ(SendMessageA(parts.english, PM_TXT_GETTEXTCOLOR, 0, 0), LRESULT(kCommonTextColor));
    Click(chooser, parts.cancel);
    EXPECT_FALSE(IsWindow(chooser));
    EXPECT_EQ(g_language, kEnglish);
    EXPECT_EQ(IdiomaInIni(), "none");
}

TEST_F(LanguageChooser, OkAfterPickingSpanishSwitchesAndWritesIdioma) {
    HWND chooser = OpenLanguageChooser();
    ASSERT_NE(chooser, nullptr);
    ChooserParts parts = FindChooserParts(chooser);
    Click(chooser, parts.spanish);
    Click(chooser, parts.ok);
    EXPECT_FALSE(IsWindow(chooser));
    EXPECT_EQ(g_language, kSpanish);
    EXPECT_EQ(IdiomaInIni(), "0");
    char text[90];
    LoadLocalString(50, text, sizeof text);
    EXPECT_STRNE(text, "Rows:");
}

namespace {

// A pack with the six side-button strips (three 50 x 46 frames each) in a scratch folder.
struct SideButtonPack {
    TempFolder folder;
    SideButtonPack() {
        std::vector<uint8_t*> strips;
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        for (int i = 0; i < kSideButtonCount; ++i) {
            strips.push_back(MakeDib24(50, 138, [i](int, int y) { return RGB(40 * i, y, 200); }));
            items.push_back({kArtTrayEmptyButton + uint32_t(i), strips.back()});
        }
        std::string path = folder.File("Tavirel.rf");
        EXPECT_TRUE(WriteTestPack(path, items));
        for (uint8_t* strip : strips) FreePackedDib(strip);
        EXPECT_TRUE(OpenPack(&g_pack, path.c_str()));
    }
    ~SideButtonPack() { ClosePack(&g_pack); }
};

void ClickAt(int x, int y) {
    PointerTo(x - 30, y - 30);  // real movement first, so the button sees the pointer arrive
    PointerTo(x, y);
    LeftDown();
    LeftUp();
    PumpMessages(100);
}

}  // namespace

// The boxes are still plain placeholder panels (CWNDBOX without its tray view): what is tested here is
// the side button's click showing and hiding box i, which the real trays will keep.
TEST(PointerMainWindow, SideButtonClickedTwiceShowsThenHidesItsBox) {
    PointerLock lock;
    HINSTANCE instance = GetModuleHandleA(nullptr);
    RegisterControlClasses(instance);
    RegisterMainWindowClass(instance);
    RegisterTitleWindowClass(instance);
    RegisterPieceBoxClass(instance);
    SideButtonPack pack;
    g_screenWidth = GetSystemMetrics(SM_CXSCREEN);
    g_screenHeight = GetSystemMetrics(SM_CYSCREEN);
    HWND main = CreateMainWindow();
    ASSERT_NE(main, nullptr);
    // Without a window manager the maximised popup keeps its first size: give it the screen, its frame
    // just outside, as maximising does.
    RECT frame = {0, 0, g_screenWidth, g_screenHeight};
    AdjustWindowRect(&frame, DWORD(GetWindowLongPtrA(main, GWL_STYLE)), FALSE);
    SetWindowPos(main, HWND_TOP, frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_SHOWWINDOW);
    SetForegroundWindow(main);
    PumpMessages(100);
    for (int i : {0, 3, 5}) {
        ASSERT_NE(g_sideButtons[i], nullptr);
        RECT button;
        GetWindowRect(g_sideButtons[i], &button);
        EXPECT_EQ(button.left, g_screenWidth - 25);  // half off the right edge
        EXPECT_EQ(button.top, g_screenHeight / 2 - 112 + 46 * i);
        EXPECT_EQ(button.bottom - button.top, 46);   // sized by its strip
        EXPECT_FALSE(IsWindowVisible(g_pieceBoxes[i]));
        ClickAt(button.left + 10, button.top + 20);
        EXPECT_TRUE(IsWindowVisible(g_pieceBoxes[i])) << i;
        ClickAt(button.left + 10, button.top + 20);
        EXPECT_FALSE(IsWindowVisible(g_pieceBoxes[i])) << i;
    }
    DestroyWindow(main);
    MSG quit;
    PeekMessageA(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);  // the main window's goodbye
    EXPECT_EQ(g_mainWindow, nullptr);
}
