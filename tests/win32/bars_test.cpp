// The tool and options bars with their slide-out panels: layout at two screen sizes, the buttons and their
// set-up, showing, the auto-hide with the real pointer, painting, the buttons' actions, the magnifier
// toggle, the hint button's reset, the labels' language and the shared animated-button feedback.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/language_chooser_win32.h"
#include "app/launchers_win32.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "extras/bar_layout.h"
#include "extras/bars_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "win32_support.h"

namespace {

// --- artwork ---

const uint32_t kToolsButtonArts[] = {kArtAssembleButton, kArtHintButton, kArtMusicButton, kArtHonourButton};
const uint32_t kOptionsButtonArts[] = {kArtHelpButton, kArtPreviewButton, kArtQuitButton};

// Tiles: a colour of their own at every pixel, so that any misplaced copy shows.
COLORREF TileColor(uint32_t art, int x, int y) { return PatternColor(x, y, art); }

// Animated strips: ten 50 x 50 frames side by side; frame k of the strip of `art` in one flat colour.
COLORREF FrameColor(uint32_t art, int k) { return RGB(20 * k + 5, art & 0xFF, 40 + (art >> 4) % 200); }

// Label strips: three frames (normal, lit, pressed); a colour per language and frame.
COLORREF LabelColor(uint32_t art, int frame) { return RGB(art % 250, 60 + 40 * frame, 200); }

LPARAM Dib(const void* dib) { return reinterpret_cast<LPARAM>(dib); }

// A pack holding every picture of the bars and panels, open as the game's pack while the test runs.
struct BarsPack {
    TempFolder folder;
    BarsPack() {
        std::vector<uint8_t*> dibs;
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        auto add = [&](uint32_t id, uint8_t* dib) {
            dibs.push_back(dib);
            items.push_back({id, dib});
        };
        auto tile = [&](uint32_t id, int w, int h) {
            add(id, MakeDib24(w, h, [id](int x, int y) { return TileColor(id, x, y); }));
        };
        tile(kArtToolsBarTile, kToolsBarTileWidth, kToolsBarTileHeight);
        tile(kArtOptionsBarTile, kOptionsBarTileWidth, kOptionsBarTileHeight);
        tile(kArtToolsPanelTile, kToolsPanelTileWidth, kToolsPanelTileHeight);
        tile(kArtOptionsPanelTile, kOptionsPanelTileWidth, kOptionsPanelTileHeight);
        for (uint32_t language : {0u, 1u}) {
            uint32_t tools = kArtToolsBarLabel + language, options = kArtOptionsBarLabel + language;
            add(tools, MakeDib24(25, 420, [tools](int, int y) { return LabelColor(tools, y / 140); }));
            add(options, MakeDib24(104, 75, [options](int, int y) { return LabelColor(options, y / 25); }));
        }
        for (uint32_t art : kToolsButtonArts)
            add(art, MakeDib24(500, 50, [art](int x, int) { return FrameColor(art, x / 50); }));
        for (uint32_t art : kOptionsButtonArts)
            add(art, MakeDib24(500, 50, [art](int x, int) { return FrameColor(art, x / 50); }));
        std::string path = folder.File("Tavirel.rf");
        EXPECT_TRUE(WriteTestPack(path, items));
        for (uint8_t* dib : dibs) FreePackedDib(dib);
        EXPECT_TRUE(OpenPack(&g_pack, path.c_str()));
    }
    ~BarsPack() { ClosePack(&g_pack); }
};

void EnsureBarClasses() {
    static bool registered = false;
    if (registered) return;
    EnsureControlClasses();
    RegisterBarClasses(GetModuleHandleA(nullptr));
    registered = true;
}

// --- the actions the screens would provide ---

int g_assembled, g_hinted, g_musicOpened, g_honourOpened, g_helpOpened, g_magnifierToggles, g_quits;
uint8_t g_hintAnswer;

void CountAssemble() { ++g_assembled; }
uint8_t CountHint() {
    ++g_hinted;
    return g_hintAnswer;
}
void CountMusic() { ++g_musicOpened; }
void CountHonour() { ++g_honourOpened; }
void CountHelp() { ++g_helpOpened; }

void ResetCounts() {
    g_assembled = g_hinted = g_musicOpened = g_honourOpened = g_helpOpened = g_magnifierToggles = g_quits = 0;
    g_hintAnswer = 1;
}

// The screen size, language, hooks and main window a test sets are put back when it ends.
struct SavedGlobals {
    int32_t width = g_screenWidth, height = g_screenHeight, language = g_language;
    BarActions actions = g_barActions;
    HWND main = g_mainWindow, magnifier = g_magnifierWindow;
    void (*reload)() = g_reloadBarLabels;
    ~SavedGlobals() {
        g_screenWidth = width;
        g_screenHeight = height;
        g_language = language;
        g_barActions = actions;
        g_mainWindow = main;
        g_magnifierWindow = magnifier;
        g_reloadBarLabels = reload;
    }
};

// A hidden table window of a whole screen's size: enough for positions, never drawn, so it cannot
// cover the windows of tests running beside this one.
LRESULT CALLBACK HiddenTableProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

HWND CreateHiddenTable(int width, int height) {
    static bool registered = false;
    if (!registered) {
        WNDCLASSA wc = {};
        wc.lpfnWndProc = HiddenTableProc;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.lpszClassName = "TavirelBarsHiddenTable";
        registered = RegisterClassA(&wc) != 0;
    }
    return CreateWindowExA(0, "TavirelBarsHiddenTable", "", WS_POPUP | WS_CLIPCHILDREN, 0, 0, width, height, nullptr,
                           nullptr, GetModuleHandleA(nullptr), nullptr);
}

// The bars on a hidden table of a real screen size.
struct HiddenBars {
    SavedGlobals saved;
    BarsPack pack;
    HWND table;
    HiddenBars(int width, int height) {
        EnsureBarClasses();
        g_screenWidth = width;
        g_screenHeight = height;
        g_language = kEnglish;
        table = CreateHiddenTable(width, height);
        EXPECT_TRUE(CreateBars(table));
    }
    ~HiddenBars() {
        DestroyWindow(table);
        FlushMessages();
    }
};

// The bars on a visible table standing for a small 320 x 360 screen, so that every pixel can be read
// back without covering the windows of other tests.
constexpr int kSmallWidth = 320, kSmallHeight = 360;

struct VisibleBars {
    SavedGlobals saved;
    BarsPack pack;
    LoggingParent table{kSmallWidth, kSmallHeight, RGB(0, 0, 0)};
    explicit VisibleBars(int32_t language = kEnglish) {
        EnsureBarClasses();
        g_screenWidth = kSmallWidth;
        g_screenHeight = kSmallHeight;
        g_language = language;
        ResetCounts();
        g_barActions.assemble = CountAssemble;
        g_barActions.hint = CountHint;
        g_barActions.openMusic = CountMusic;
        g_barActions.openHonourRoll = CountHonour;
        g_barActions.openHelp = CountHelp;
        EXPECT_TRUE(CreateBars(table.hwnd));
        PumpMessages(30);
    }
    ~VisibleBars() {
        DestroyWindow(table.hwnd);
        table.hwnd = nullptr;
        FlushMessages();
    }
};

// --- observation helpers ---

RECT RectInParent(HWND window) {
    RECT r;
    GetWindowRect(window, &r);
    MapWindowPoints(HWND_DESKTOP, GetParent(window), reinterpret_cast<POINT*>(&r), 2);
    return r;
}

void ExpectPlace(HWND window, int x, int y, int width, int height, const std::string& what) {
    ASSERT_NE(window, nullptr) << what;
    RECT r = RectInParent(window);
    EXPECT_EQ(r.left, x) << what;
    EXPECT_EQ(r.top, y) << what;
    EXPECT_EQ(r.right - r.left, width) << what;
    EXPECT_EQ(r.bottom - r.top, height) << what;
}

DWORD StyleOf(HWND window) { return DWORD(GetWindowLongPtrA(window, GWL_STYLE)); }

std::string ClassOf(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

bool HasVisibleStyle(HWND window) { return (StyleOf(window) & WS_VISIBLE) != 0; }

LRESULT Ask(HWND window, UINT message) { return SendMessageA(window, message, 0, 0); }

// Control messages (1324..1424) sent to the skinned controls while it is installed, in order.
struct ControlMessageLog {
    struct Entry {
        HWND target;
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    };
    static std::vector<Entry>* entries;
    HHOOK hook;
    std::vector<Entry> log;

    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam) {
        if (code == HC_ACTION && entries) {
            auto* sent = reinterpret_cast<CWPSTRUCT*>(lParam);
            std::string name = ClassOf(sent->hwnd);
            if (sent->message >= PM_FIRST && sent->message <= PM_LAST && (name == "CQMANIM" || name == "CQMCOMMAND"))
                entries->push_back(Entry{sent->hwnd, sent->message, sent->wParam, sent->lParam});
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }
    ControlMessageLog() {
        entries = &log;
        hook = SetWindowsHookExA(WH_CALLWNDPROC, Hook, nullptr, GetCurrentThreadId());
    }
    ~ControlMessageLog() {
        UnhookWindowsHookEx(hook);
        entries = nullptr;
    }
    std::vector<Entry> To(HWND target) const {
        std::vector<Entry> out;
        for (const Entry& e : log)
            if (e.target == target) out.push_back(e);
        return out;
    }
};
std::vector<ControlMessageLog::Entry>* ControlMessageLog::entries = nullptr;

void ExpectMessages(const std::vector<ControlMessageLog::Entry>& got,
                    std::initializer_list<std::pair<UINT, LPARAM>> expected, const std::string& what) {
    std::string gotText, expectedText;
    for (const auto& e : got)
        gotText += " " + std::to_string(e.message) + "(" + std::to_string(e.wParam) + "," +
                   std::to_string(static_cast<long long>(e.lParam)) + ")";
    for (const auto& e : expected)
        expectedText += " " + std::to_string(e.first) + "(0," + std::to_string(static_cast<long long>(e.second)) + ")";
    EXPECT_EQ(gotText, expectedText) << what;
}

// Paints a flat mark straight onto the window: it stays until something draws over it.
constexpr COLORREF kMark = RGB(1, 254, 3);
void DrawMark(HWND window, int x, int y) {
    HDC dc = GetDC(window);
    RECT r = {x, y, x + 8, y + 8};
    HBRUSH brush = CreateSolidBrush(kMark);
    FillRect(dc, &r, brush);
    DeleteObject(brush);
    ReleaseDC(window, dc);
}

void MoveOver(HWND bar) { SendMessageA(bar, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5)); }

// Whether the panel's auto-hide timer ran; stops it, so that a test can hold a panel out while it
// looks at it whatever the pointer does.
bool StopAutoHideTimer(HWND panel) { return KillTimer(panel, kAutoHideTimer) != 0; }

void ExpectButtonsVisible(const BarPair& pair, int count, bool visible, const char* what) {
    for (int i = 0; i < count; ++i) EXPECT_EQ(HasVisibleStyle(pair.buttons[i]), visible) << what << " button " << i;
}

}  // namespace

// ---------------------------------------------------------------------------------------------------
// Classes and layout

TEST(BarClasses, OwnDcStyleArrowCursorAndNoBrush) {
    EnsureBarClasses();
    HCURSOR arrow = LoadCursorA(nullptr, IDC_ARROW);
    for (const char* name : {kOptionsPanelClass, kOptionsBarClass, kToolsPanelClass, kToolsBarClass}) {
        WNDCLASSA info = {};
        ASSERT_TRUE(GetClassInfoA(GetModuleHandleA(nullptr), name, &info)) << name;
        EXPECT_EQ(info.style, 32u) << name;
        EXPECT_EQ(info.hCursor, arrow) << name;
        EXPECT_EQ(info.hbrBackground, nullptr) << name;
    }
}

TEST(BarWindows, PlacedAndSizedFor1024x768) {
    HiddenBars f(1024, 768);
    ExpectPlace(g_optionsPair.panel, 0, 665, 1024, 103, "options panel");
    ExpectPlace(g_toolsPair.panel, 0, 78, 98, 690, "tools panel");
    ExpectPlace(g_optionsPair.bar, 0, 743, 1024, 25, "options bar");
    ExpectPlace(g_toolsPair.bar, 0, 78, 25, 665, "tools bar");
}

TEST(BarWindows, PlacedAndSizedFor800x600) {
    HiddenBars f(800, 600);
    ExpectPlace(g_optionsPair.panel, 0, 497, 800, 103, "options panel");
    ExpectPlace(g_toolsPair.panel, 0, 78, 98, 522, "tools panel");
    ExpectPlace(g_optionsPair.bar, 0, 575, 800, 25, "options bar");
    ExpectPlace(g_toolsPair.bar, 0, 78, 25, 497, "tools bar");
}

TEST(BarWindows, BarsVisiblePanelsHiddenAllClippingChildren) {
    HiddenBars f(1024, 768);
    const DWORD common = WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
    EXPECT_EQ(StyleOf(g_optionsPair.panel) & (common | WS_VISIBLE), common);
    EXPECT_EQ(StyleOf(g_toolsPair.panel) & (common | WS_VISIBLE), common);
    EXPECT_EQ(StyleOf(g_optionsPair.bar) & (common | WS_VISIBLE), common | WS_VISIBLE);
    EXPECT_EQ(StyleOf(g_toolsPair.bar) & (common | WS_VISIBLE), common | WS_VISIBLE);
    EXPECT_EQ(ClassOf(g_optionsPair.panel), "CWNDOPCIONES");
    EXPECT_EQ(ClassOf(g_toolsPair.panel), "CWNDHerramientas");
    EXPECT_EQ(ClassOf(g_optionsPair.bar), "CWNDBARRAOPC");
    EXPECT_EQ(ClassOf(g_toolsPair.bar), "CWNDBARRAHER");
    EXPECT_EQ(g_optionsPair.shown, 0);
    EXPECT_EQ(g_toolsPair.shown, 0);
}

TEST(BarWindows, CreatedInOrderSoPanelsLieAboveTheBars) {
    HiddenBars f(1024, 768);
    // Children are listed from the top of the Z order; each new child goes below the earlier ones.
    HWND first = GetWindow(f.table, GW_CHILD);
    HWND second = GetWindow(first, GW_HWNDNEXT);
    HWND third = GetWindow(second, GW_HWNDNEXT);
    HWND fourth = GetWindow(third, GW_HWNDNEXT);
    EXPECT_EQ(first, g_optionsPair.panel);
    EXPECT_EQ(second, g_toolsPair.panel);
    EXPECT_EQ(third, g_optionsPair.bar);
    EXPECT_EQ(fourth, g_toolsPair.bar);
    EXPECT_EQ(GetWindow(fourth, GW_HWNDNEXT), nullptr);
}

TEST(BarLabels, PlacedCentredAndSizedByTheirStripsFor1024x768) {
    HiddenBars f(1024, 768);
    ExpectPlace(g_toolsPair.label, 0, 236, 25, 140, "tools label");  // screen y 314
    ExpectPlace(g_optionsPair.label, 460, 0, 104, 25, "options label");
    for (HWND label : {g_toolsPair.label, g_optionsPair.label}) {
        EXPECT_EQ(ClassOf(label), "CQMCOMMAND");
        const DWORD style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS;
        EXPECT_EQ(StyleOf(label) & style, style);
    }
}

TEST(BarLabels, PlacedCentredAndSizedByTheirStripsFor800x600) {
    HiddenBars f(800, 600);
    ExpectPlace(g_toolsPair.label, 0, 152, 25, 140, "tools label");  // screen y 230
    ExpectPlace(g_optionsPair.label, 348, 0, 104, 25, "options label");
}

TEST(BarLabels, GetOnlyTheirStripInTheCurrentLanguage) {
    EnsureBarClasses();
    SavedGlobals saved;
    BarsPack pack;
    g_screenWidth = 1024;
    g_screenHeight = 768;
    g_language = kEnglish;
    HWND table = CreateHiddenTable(1024, 768);
    {
        ControlMessageLog log;
        ASSERT_TRUE(CreateBars(table));
        ExpectMessages(log.To(g_toolsPair.label), {{PM_SETIMAGE, Dib(ImageObject_Dib(&g_toolsPair.labelStrip))}},
                       "tools label");
        ExpectMessages(log.To(g_optionsPair.label),
                       {{PM_SETIMAGE, Dib(ImageObject_Dib(&g_optionsPair.labelStrip))}}, "options label");
    }
    // The English strips: 2111 and 2121.
    const uint8_t* tools = reinterpret_cast<const uint8_t*>(Ask(g_toolsPair.label, PM_GETIMAGE));
    const uint8_t* options = reinterpret_cast<const uint8_t*>(Ask(g_optionsPair.label, PM_GETIMAGE));
    ASSERT_NE(tools, nullptr);
    ASSERT_NE(options, nullptr);
    EXPECT_EQ(DibAt(tools, 3, 3), LabelColor(kArtToolsBarLabel + 1, 0));
    EXPECT_EQ(DibAt(options, 3, 3), LabelColor(kArtOptionsBarLabel + 1, 0));
    DestroyWindow(table);
    FlushMessages();
}

TEST(PanelButtons, AtTheirPlacesFor1024x768CreatedHidden) {
    HiddenBars f(1024, 768);
    const int toolsY[] = {103, 241, 379, 517};
    for (int i = 0; i < 4; ++i) {
        ExpectPlace(g_toolsPair.buttons[i], 0, toolsY[i], 50, 50, "tools button " + std::to_string(i + 1));
        EXPECT_EQ(ClassOf(g_toolsPair.buttons[i]), "CQMANIM");
        EXPECT_EQ(StyleOf(g_toolsPair.buttons[i]) & (WS_CHILD | WS_CLIPSIBLINGS | WS_VISIBLE),
                  DWORD(WS_CHILD | WS_CLIPSIBLINGS));
        EXPECT_EQ(GetParent(g_toolsPair.buttons[i]), g_toolsPair.panel);
    }
    const int optionsX[] = {221, 477, 733};
    for (int i = 0; i < 3; ++i) {
        ExpectPlace(g_optionsPair.buttons[i], optionsX[i], 27, 50, 50, "options button " + std::to_string(i + 1));
        EXPECT_EQ(ClassOf(g_optionsPair.buttons[i]), "CQMANIM");
        EXPECT_EQ(StyleOf(g_optionsPair.buttons[i]) & (WS_CHILD | WS_CLIPSIBLINGS | WS_VISIBLE),
                  DWORD(WS_CHILD | WS_CLIPSIBLINGS));
        EXPECT_EQ(GetParent(g_optionsPair.buttons[i]), g_optionsPair.panel);
    }
    // Ours: the cloth button in the free space left of help, the language button right of quit.
    ExpectPlace(g_optionsPair.buttons[kClothButton], 85, 27, 50, 50, "cloth button");
    ExpectPlace(g_optionsPair.buttons[kLanguageButton], 878, 27, 50, 50, "language button");
    EXPECT_EQ(GetParent(g_optionsPair.buttons[kClothButton]), g_optionsPair.panel);
    EXPECT_EQ(GetParent(g_optionsPair.buttons[kLanguageButton]), g_optionsPair.panel);
}

TEST(PanelButtons, AtTheirPlacesFor800x600) {
    HiddenBars f(800, 600);
    const int toolsY[] = {69, 173, 277, 381};
    for (int i = 0; i < 4; ++i)
        ExpectPlace(g_toolsPair.buttons[i], 0, toolsY[i], 50, 50, "tools button " + std::to_string(i + 1));
    const int optionsX[] = {165, 365, 565};
    for (int i = 0; i < 3; ++i)
        ExpectPlace(g_optionsPair.buttons[i], optionsX[i], 27, 50, 50, "options button " + std::to_string(i + 1));
}

TEST(PanelButtons, ConfiguredOneRowTenColumnsFrameZeroThenTheirStrip) {
    EnsureBarClasses();
    SavedGlobals saved;
    BarsPack pack;
    g_screenWidth = 800;
    g_screenHeight = 600;
    HWND table = CreateHiddenTable(800, 600);
    {
        ControlMessageLog log;
        ASSERT_TRUE(CreateBars(table));
        for (int i = 0; i < 4; ++i)
            ExpectMessages(log.To(g_toolsPair.buttons[i]),
                           {{PM_ANIM_SETROWS, 1}, {PM_ANIM_SETCOLUMNS, 10}, {PM_ANIM_SETFRAME, 0},
                            {PM_SETIMAGE, Dib(ImageObject_Dib(&g_toolsPair.buttonStrips[i]))}},
                           "tools button " + std::to_string(i + 1));
        for (int i = 0; i < 3; ++i)
            ExpectMessages(log.To(g_optionsPair.buttons[i]),
                           {{PM_ANIM_SETROWS, 1}, {PM_ANIM_SETCOLUMNS, 10}, {PM_ANIM_SETFRAME, 0},
                            {PM_SETIMAGE, Dib(ImageObject_Dib(&g_optionsPair.buttonStrips[i]))}},
                           "options button " + std::to_string(i + 1));
    }
    // Each button holds its own strip from the pack.
    for (int i = 0; i < 4; ++i) {
        auto* strip = reinterpret_cast<const uint8_t*>(Ask(g_toolsPair.buttons[i], PM_GETIMAGE));
        ASSERT_NE(strip, nullptr);
        EXPECT_EQ(DibAt(strip, 10, 10), FrameColor(kToolsButtonArts[i], 0)) << i;
        EXPECT_EQ(Ask(g_toolsPair.buttons[i], PM_ANIM_GETROWS), 1);
        EXPECT_EQ(Ask(g_toolsPair.buttons[i], PM_ANIM_GETCOLUMNS), 10);
    }
    for (int i = 0; i < 3; ++i) {
        auto* strip = reinterpret_cast<const uint8_t*>(Ask(g_optionsPair.buttons[i], PM_GETIMAGE));
        ASSERT_NE(strip, nullptr);
        EXPECT_EQ(DibAt(strip, 10, 10), FrameColor(kOptionsButtonArts[i], 0)) << i;
    }
    DestroyWindow(table);
    FlushMessages();
}

TEST(BarLifecycle, DestroyingFreesThePicturesAndForgetsTheWindows) {
    {
        HiddenBars f(800, 600);
        EXPECT_NE(ImageObject_Dib(&g_toolsPair.labelStrip), nullptr);
        EXPECT_NE(ImageObject_Dib(&g_optionsPair.buttonStrips[2]), nullptr);
    }
    for (BarPair* pair : {&g_toolsPair, &g_optionsPair}) {
        EXPECT_EQ(pair->bar, nullptr);
        EXPECT_EQ(pair->panel, nullptr);
        EXPECT_EQ(pair->label, nullptr);
        EXPECT_EQ(ImageObject_Dib(&pair->labelStrip), nullptr);
        EXPECT_EQ(ImageObject_Dib(&pair->barTile), nullptr);
        EXPECT_EQ(ImageObject_Dib(&pair->panelTile), nullptr);
        for (int i = 0; i < kMaxPanelButtons; ++i) {
            EXPECT_EQ(pair->buttons[i], nullptr);
            EXPECT_EQ(ImageObject_Dib(&pair->buttonStrips[i]), nullptr);
        }
    }
    // Nothing left to show: the hint reset does nothing.
    ResetHintButton();
    EXPECT_EQ(HintButton(), nullptr);
}

// ---------------------------------------------------------------------------------------------------
// Showing a panel

TEST(BarShowing, MouseOnTheToolsBarShowsThePanelItsButtonsAndStartsTheTimer) {
    VisibleBars f;
    MoveOver(g_toolsPair.bar);
    EXPECT_EQ(g_toolsPair.shown, 1);
    EXPECT_TRUE(HasVisibleStyle(g_toolsPair.panel));
    ExpectButtonsVisible(g_toolsPair, 4, true, "tools");
    EXPECT_EQ(g_optionsPair.shown, 0);
    EXPECT_FALSE(HasVisibleStyle(g_optionsPair.panel));
    EXPECT_TRUE(StopAutoHideTimer(g_toolsPair.panel));
    // Showing changed no place or size.
    ExpectPlace(g_toolsPair.panel, 0, 78, 98, kSmallHeight - 78, "tools panel");
}

TEST(BarShowing, MouseOnTheOptionsBarShowsThePanelItsButtonsAndStartsTheTimer) {
    VisibleBars f;
    MoveOver(g_optionsPair.bar);
    EXPECT_EQ(g_optionsPair.shown, 1);
    EXPECT_TRUE(HasVisibleStyle(g_optionsPair.panel));
    ExpectButtonsVisible(g_optionsPair, 3, true, "options");
    EXPECT_EQ(g_toolsPair.shown, 0);
    EXPECT_TRUE(StopAutoHideTimer(g_optionsPair.panel));
    ExpectPlace(g_optionsPair.panel, 0, kSmallHeight - 103, kSmallWidth, 103, "options panel");
}

TEST(BarShowing, ShowingActivatesNothing) {
    VisibleBars f;
    HWND before = GetActiveWindow();
    MoveOver(g_toolsPair.bar);
    MoveOver(g_optionsPair.bar);
    EXPECT_EQ(GetActiveWindow(), before);
    StopAutoHideTimer(g_toolsPair.panel);
    StopAutoHideTimer(g_optionsPair.panel);
}

TEST(BarShowing, MouseOnTheToolsBarWhileThePanelIsOutNeitherRestartsTheSlideNorAddsATimer) {
    VisibleBars f;
    MoveOver(g_toolsPair.bar);
    ASSERT_EQ(g_toolsPair.shown, 1);
    // A mark on the panel where the slide would draw its tile again.
    DrawMark(g_toolsPair.panel, 70, 200);
    ASSERT_EQ(ClientPixel(g_toolsPair.panel, 72, 202), kMark);
    MoveOver(g_toolsPair.bar);
    SendMessageA(g_toolsPair.bar, PM_NOTIFY, NOTIFY_ENTERED, Dib(g_toolsPair.label));
    EXPECT_EQ(g_toolsPair.shown, 1);
    EXPECT_EQ(ClientPixel(g_toolsPair.panel, 72, 202), kMark) << "the slide ran again";
    EXPECT_TRUE(StopAutoHideTimer(g_toolsPair.panel));
    EXPECT_FALSE(StopAutoHideTimer(g_toolsPair.panel)) << "a second timer";
    EXPECT_FALSE(KillTimer(g_toolsPair.panel, kAutoHideTimer + 1));
}

TEST(BarShowing, MouseOnTheOptionsBarWhileThePanelIsOutNeitherRestartsTheSlideNorAddsATimer) {
    VisibleBars f;
    MoveOver(g_optionsPair.bar);
    ASSERT_EQ(g_optionsPair.shown, 1);
    DrawMark(g_optionsPair.panel, 280, 85);
    ASSERT_EQ(ClientPixel(g_optionsPair.panel, 282, 87), kMark);
    MoveOver(g_optionsPair.bar);
    SendMessageA(g_optionsPair.bar, PM_NOTIFY, NOTIFY_ENTERED, Dib(g_optionsPair.label));
    EXPECT_EQ(g_optionsPair.shown, 1);
    EXPECT_EQ(ClientPixel(g_optionsPair.panel, 282, 87), kMark) << "the slide ran again";
    EXPECT_TRUE(StopAutoHideTimer(g_optionsPair.panel));
    EXPECT_FALSE(StopAutoHideTimer(g_optionsPair.panel)) << "a second timer";
}

TEST(BarShowing, LabelPointerEnteredNoticeShowsThePanel) {
    VisibleBars f;
    SendMessageA(g_toolsPair.bar, PM_NOTIFY, NOTIFY_ENTERED, Dib(g_toolsPair.label));
    EXPECT_EQ(g_toolsPair.shown, 1);
    EXPECT_TRUE(HasVisibleStyle(g_toolsPair.panel));
    SendMessageA(g_optionsPair.bar, PM_NOTIFY, NOTIFY_ENTERED, Dib(g_optionsPair.label));
    EXPECT_EQ(g_optionsPair.shown, 1);
    EXPECT_TRUE(HasVisibleStyle(g_optionsPair.panel));
    EXPECT_TRUE(StopAutoHideTimer(g_toolsPair.panel));
    EXPECT_TRUE(StopAutoHideTimer(g_optionsPair.panel));
}

TEST(BarShowing, OtherLabelNoticesAreIgnored) {
    VisibleBars f;
    for (WPARAM event : {NOTIFY_PRESSED, NOTIFY_RELEASED, NOTIFY_LEFT, NOTIFY_CLICKED, NOTIFY_SPECIAL}) {
        SendMessageA(g_toolsPair.bar, PM_NOTIFY, event, Dib(g_toolsPair.label));
        SendMessageA(g_optionsPair.bar, PM_NOTIFY, event, Dib(g_optionsPair.label));
    }
    EXPECT_EQ(g_toolsPair.shown, 0);
    EXPECT_EQ(g_optionsPair.shown, 0);
    EXPECT_FALSE(HasVisibleStyle(g_toolsPair.panel));
    EXPECT_FALSE(HasVisibleStyle(g_optionsPair.panel));
    EXPECT_FALSE(StopAutoHideTimer(g_toolsPair.panel));
}

TEST(BarShowing, OptionsSlideLeavesTheOptionsPanelNothingToRepaint) {
    VisibleBars f;
    MoveOver(g_optionsPair.bar);
    StopAutoHideTimer(g_optionsPair.panel);
    EXPECT_FALSE(GetUpdateRect(g_optionsPair.panel, nullptr, FALSE));
}

TEST(BarShowing, ToolsSlideValidatesTheOptionsPanelAsWell) {
    VisibleBars f;
    MoveOver(g_optionsPair.bar);
    StopAutoHideTimer(g_optionsPair.panel);
    InvalidateRect(g_optionsPair.panel, nullptr, FALSE);
    ASSERT_TRUE(GetUpdateRect(g_optionsPair.panel, nullptr, FALSE));
    MoveOver(g_toolsPair.bar);
    StopAutoHideTimer(g_toolsPair.panel);
    EXPECT_FALSE(GetUpdateRect(g_optionsPair.panel, nullptr, FALSE));
    EXPECT_TRUE(GetUpdateRect(g_toolsPair.panel, nullptr, FALSE)) << "the tools panel keeps its own repaint";
}

TEST(BarShowing, SlideEndsWithTheTilesInPlace) {
    VisibleBars f;
    MoveOver(g_toolsPair.bar);
    StopAutoHideTimer(g_toolsPair.panel);
    MoveOver(g_optionsPair.bar);
    StopAutoHideTimer(g_optionsPair.panel);
    // Read before any paint message: what shows is the slide's last frame.
    EXPECT_EQ(ClientPixel(g_toolsPair.panel, 97, 0), TileColor(kArtToolsPanelTile, 97, 0));
    EXPECT_EQ(ClientPixel(g_toolsPair.panel, 60, 150), TileColor(kArtToolsPanelTile, 60, 150 - 95));
    EXPECT_EQ(ClientPixel(g_optionsPair.panel, 0, 102), TileColor(kArtOptionsPanelTile, 0, 102));
    EXPECT_EQ(ClientPixel(g_optionsPair.panel, 310, 5), TileColor(kArtOptionsPanelTile, 310 - 309, 5));
}

// ---------------------------------------------------------------------------------------------------
// Painting

TEST(BarPainting, ToolsBarTilesStepDown) {
    VisibleBars f;
    HWND bar = g_toolsPair.bar;
    // The label covers the bar's whole width from y 32 to 172.
    for (POINT p : {POINT{0, 0}, POINT{24, 31}, POINT{5, 180}, POINT{20, 256}})
        EXPECT_EQ(ClientPixel(bar, p.x, p.y), TileColor(kArtToolsBarTile, p.x, p.y % 139)) << p.x << "," << p.y;
}

TEST(BarPainting, OptionsBarTilesStepRight) {
    VisibleBars f;
    HWND bar = g_optionsPair.bar;
    // The label covers x 108 to 212.
    for (POINT p : {POINT{0, 0}, POINT{102, 24}, POINT{103, 3}, POINT{250, 12}, POINT{319, 20}})
        EXPECT_EQ(ClientPixel(bar, p.x, p.y), TileColor(kArtOptionsBarTile, p.x % 103, p.y)) << p.x << "," << p.y;
}

TEST(BarPainting, PartialRepaintStartsItsTilesAtTheUpdateEdge) {
    VisibleBars f;
    HWND bar = g_toolsPair.bar;
    RECT strip = {0, 200, 25, 210};
    InvalidateRect(bar, &strip, FALSE);
    UpdateWindow(bar);
    EXPECT_EQ(ClientPixel(bar, 7, 200), TileColor(kArtToolsBarTile, 7, 0));
    EXPECT_EQ(ClientPixel(bar, 7, 209), TileColor(kArtToolsBarTile, 7, 9));
    EXPECT_EQ(ClientPixel(bar, 7, 199), TileColor(kArtToolsBarTile, 7, 199 - 139)) << "outside the update";
}

namespace {

// Each panel on its own: where both are out, the options panel lies over the tools panel's foot.
void ExpectPanelTiles(HWND panel, uint32_t tileArt, bool vertical, std::initializer_list<POINT> points) {
    DrawMark(panel, 60, 90);
    InvalidateRect(panel, nullptr, FALSE);
    UpdateWindow(panel);
    for (POINT p : points) {
        int tx = vertical ? p.x : p.x % 103, ty = vertical ? p.y % 95 : p.y;
        EXPECT_EQ(ClientPixel(panel, p.x, p.y), TileColor(tileArt, tx, ty)) << p.x << "," << p.y;
    }
}

}  // namespace

TEST(BarPainting, ToolsPanelTilesStepDownWhenRepainted) {
    VisibleBars f;
    MoveOver(g_toolsPair.bar);
    StopAutoHideTimer(g_toolsPair.panel);
    // Away from the buttons at x 0..50.
    ExpectPanelTiles(g_toolsPair.panel, kArtToolsPanelTile, true,
                     {POINT{60, 90}, POINT{97, 0}, POINT{70, 281}, POINT{55, 190}});
}

TEST(BarPainting, OptionsPanelTilesStepRightWhenRepainted) {
    VisibleBars f;
    MoveOver(g_optionsPair.bar);
    StopAutoHideTimer(g_optionsPair.panel);
    // Away from the buttons at y 27..77.
    ExpectPanelTiles(g_optionsPair.panel, kArtOptionsPanelTile, false,
                     {POINT{60, 90}, POINT{0, 0}, POINT{110, 100}, POINT{319, 10}});
}

TEST(BarPainting, QueryNewPaletteInvalidatesTheWholeWindow) {
    VisibleBars f;
    for (HWND window : {g_toolsPair.bar, g_optionsPair.bar, g_toolsPair.panel, g_optionsPair.panel}) {
        ValidateRect(window, nullptr);
        SendMessageA(window, WM_QUERYNEWPALETTE, 0, 0);
        RECT update = {}, client = {};
        GetClientRect(window, &client);
        if (!HasVisibleStyle(window)) continue;  // a hidden window keeps no update region
        ASSERT_TRUE(GetUpdateRect(window, &update, FALSE)) << ClassOf(window);
        EXPECT_TRUE(EqualRect(&update, &client)) << ClassOf(window);
    }
}

// ---------------------------------------------------------------------------------------------------
// Buttons and their actions

TEST(PanelActions, AssembleButtonRunsTheAssembleOperation) {
    VisibleBars f;
    SendMessageA(g_toolsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(g_toolsPair.buttons[0]));
    EXPECT_EQ(g_assembled, 1);
    EXPECT_EQ(g_hinted + g_musicOpened + g_honourOpened + g_helpOpened, 0);
}

TEST(PanelActions, HintButtonTakesTheReturnedByteAsItsEnabledState) {
    VisibleBars f;
    HWND hint = g_toolsPair.buttons[kHintButton];
    EXPECT_EQ(HintButton(), hint);
    ControlMessageLog log;
    g_hintAnswer = 0;
    SendMessageA(g_toolsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(hint));
    EXPECT_EQ(g_hinted, 1);
    EXPECT_EQ(Ask(hint, PM_GETENABLE), 0);
    g_hintAnswer = 7;
    SendMessageA(g_toolsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(hint));
    EXPECT_EQ(g_hinted, 2);
    EXPECT_EQ(Ask(hint, PM_GETENABLE), 1);
    std::vector<ControlMessageLog::Entry> states;
    for (const auto& e : log.To(hint))
        if (e.message == PM_SETENABLE) states.push_back(e);
    ExpectMessages(states, {{PM_SETENABLE, 0}, {PM_SETENABLE, 7}}, "hint button");
}

TEST(PanelActions, MusicAndHonourButtonsOpenTheirWindows) {
    VisibleBars f;
    SendMessageA(g_toolsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(g_toolsPair.buttons[2]));
    EXPECT_EQ(g_musicOpened, 1);
    EXPECT_EQ(g_honourOpened, 0);
    SendMessageA(g_toolsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(g_toolsPair.buttons[3]));
    EXPECT_EQ(g_musicOpened, 1);
    EXPECT_EQ(g_honourOpened, 1);
}

TEST(PanelActions, HelpButtonOpensTheHelpPages) {
    VisibleBars f;
    EXPECT_EQ(f.saved.actions.openHelp, &LaunchHelp) << "the help launcher out of the box";
    SendMessageA(g_optionsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(g_optionsPair.buttons[0]));
    EXPECT_EQ(g_helpOpened, 1);
}

namespace {

int g_closesSeen;

LRESULT CALLBACK MainStandInProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CLOSE) {
        ++g_closesSeen;  // noted, not acted on: the stand-in outlives the click
        return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

}  // namespace

TEST(PanelActions, QuitButtonClosesTheMainWindow) {
    VisibleBars f;
    EXPECT_EQ(f.saved.actions.quit, &CloseMainWindow) << "closing the main window out of the box";
    g_barActions.quit = CloseMainWindow;
    WNDCLASSA wc = {};
    wc.lpfnWndProc = MainStandInProc;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.lpszClassName = "TavirelBarsMainStandIn";
    RegisterClassA(&wc);
    HWND main = CreateWindowExA(0, "TavirelBarsMainStandIn", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                GetModuleHandleA(nullptr), nullptr);
    g_mainWindow = main;
    g_closesSeen = 0;
    SendMessageA(g_optionsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(g_optionsPair.buttons[2]));
    EXPECT_EQ(g_closesSeen, 1);
    DestroyWindow(main);
}

TEST(PanelActions, EmptyActionSlotsDoNothing) {
    VisibleBars f;
    g_barActions = BarActions{};
    HWND hint = g_toolsPair.buttons[kHintButton];
    SendMessageA(hint, PM_SETENABLE, 0, 0);
    ControlMessageLog log;
    for (int i = 0; i < 4; ++i)
        SendMessageA(g_toolsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(g_toolsPair.buttons[i]));
    for (int i = 0; i < 3; ++i)
        SendMessageA(g_optionsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(g_optionsPair.buttons[i]));
    EXPECT_EQ(g_assembled + g_hinted + g_musicOpened + g_honourOpened + g_helpOpened, 0);
    EXPECT_TRUE(log.To(hint).empty()) << "the hint button's state was sent without a hint operation";
    EXPECT_EQ(Ask(hint, PM_GETENABLE), 0);
}

TEST(PanelActions, OnlyClicksRunActions) {
    VisibleBars f;
    for (WPARAM event : {NOTIFY_PRESSED, NOTIFY_RELEASED, NOTIFY_ENTERED, NOTIFY_LEFT, NOTIFY_SPECIAL}) {
        for (int i = 0; i < 4; ++i) SendMessageA(g_toolsPair.panel, PM_NOTIFY, event, Dib(g_toolsPair.buttons[i]));
        for (int i = 0; i < 3; ++i)
            SendMessageA(g_optionsPair.panel, PM_NOTIFY, event, Dib(g_optionsPair.buttons[i]));
    }
    for (HWND button : g_toolsPair.buttons) SendMessageA(button, PM_ANIM_SETRUNNING, 0, 0);
    for (int i = 0; i < 3; ++i) SendMessageA(g_optionsPair.buttons[i], PM_ANIM_SETRUNNING, 0, 0);
    EXPECT_EQ(g_assembled + g_hinted + g_musicOpened + g_honourOpened + g_helpOpened, 0);
}

TEST(PanelActions, NoticesGoThroughTheButtonFeedback) {
    VisibleBars f;
    HWND music = g_toolsPair.buttons[2];
    SendMessageA(g_toolsPair.panel, PM_NOTIFY, NOTIFY_ENTERED, Dib(music));
    EXPECT_EQ(Ask(music, PM_ANIM_GETRUNNING), 1);
    EXPECT_EQ(Ask(music, PM_ANIM_GETUSERVALUE), 1);
    SendMessageA(g_optionsPair.panel, PM_NOTIFY, NOTIFY_PRESSED, Dib(g_optionsPair.buttons[1]));
    EXPECT_EQ(Ask(g_optionsPair.buttons[1], PM_ANIM_GETFRAME), kButtonGlowFrame);
    SendMessageA(music, PM_ANIM_SETRUNNING, 0, 0);
}

TEST(PanelHintButton, ResetSendsEnableUserValueZeroAndFrameZero) {
    VisibleBars f;
    HWND hint = g_toolsPair.buttons[kHintButton];
    SendMessageA(hint, PM_SETENABLE, 0, 0);
    SendMessageA(hint, PM_ANIM_SETUSERVALUE, 0, 1);
    SendMessageA(hint, PM_ANIM_SETFRAME, 0, 6);
    ControlMessageLog log;
    ResetHintButton();
    ExpectMessages(log.To(hint), {{PM_SETENABLE, 1}, {PM_ANIM_SETUSERVALUE, 0}, {PM_ANIM_SETFRAME, 0}}, "hint button");
    EXPECT_EQ(log.log.size(), 3u) << "messages to other buttons";
    EXPECT_EQ(Ask(hint, PM_GETENABLE), 1);
    EXPECT_EQ(Ask(hint, PM_ANIM_GETUSERVALUE), 0);
    EXPECT_EQ(Ask(hint, PM_ANIM_GETFRAME), 0);
}

// ---------------------------------------------------------------------------------------------------
// The magnifier

namespace {

LRESULT CALLBACK MagnifierStandInProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ERASEBKGND) return 1;
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

// Stands in for `CWNDPREVLUPA`: a hidden popup of the preview's size, given to the bars through
// g_magnifierWindow as the game does with the real one.
struct MagnifierStandIn {
    HWND hwnd;
    MagnifierStandIn() {
        WNDCLASSA wc = {};
        wc.lpfnWndProc = MagnifierStandInProc;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.lpszClassName = "TavirelMagnifierStandIn";
        RegisterClassA(&wc);
        hwnd = CreateWindowExA(0, "TavirelMagnifierStandIn", "Preview", WS_POPUP, 700, 40, 248, 219, nullptr,
                               nullptr, GetModuleHandleA(nullptr), nullptr);
        g_magnifierWindow = hwnd;
    }
    ~MagnifierStandIn() {
        DestroyWindow(hwnd);
        FlushMessages();
    }
};

RECT ScreenRect(HWND window) {
    RECT r;
    GetWindowRect(window, &r);
    return r;
}

}  // namespace

TEST(PanelMagnifier, ToggleShowsAHiddenMagnifierWhereverItStood) {
    SavedGlobals saved;
    MagnifierStandIn magnifier;
    HWND active = GetActiveWindow();
    for (POINT at : {POINT{600, 60}, POINT{-500, -400}, POINT{3000, 2000}, POINT{-240, 700}}) {
        // Moved while hidden, as a player may have dragged it before closing it.
        SetWindowPos(magnifier.hwnd, nullptr, at.x, at.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        ASSERT_FALSE(IsWindowVisible(magnifier.hwnd));
        ToggleMagnifier();
        EXPECT_TRUE(IsWindowVisible(magnifier.hwnd)) << at.x << "," << at.y;
        RECT r = ScreenRect(magnifier.hwnd);
        EXPECT_EQ(r.left, at.x);
        EXPECT_EQ(r.top, at.y);
        EXPECT_EQ(r.right - r.left, 248);
        EXPECT_EQ(r.bottom - r.top, 219);
        EXPECT_EQ(GetActiveWindow(), active) << "the magnifier was activated";
        ToggleMagnifier();
        EXPECT_FALSE(IsWindowVisible(magnifier.hwnd)) << at.x << "," << at.y;
        r = ScreenRect(magnifier.hwnd);
        EXPECT_EQ(r.left, at.x);
        EXPECT_EQ(r.top, at.y);
    }
}

TEST(PanelMagnifier, PreviewButtonTogglesTheMagnifier) {
    VisibleBars f;
    g_barActions.toggleMagnifier = f.saved.actions.toggleMagnifier;
    EXPECT_EQ(g_barActions.toggleMagnifier, &ToggleMagnifier);
    MagnifierStandIn magnifier;
    HWND preview = g_optionsPair.buttons[1];
    SendMessageA(g_optionsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(preview));
    EXPECT_TRUE(IsWindowVisible(magnifier.hwnd));
    SendMessageA(g_optionsPair.panel, PM_NOTIFY, NOTIFY_CLICKED, Dib(preview));
    EXPECT_FALSE(IsWindowVisible(magnifier.hwnd));
}

TEST(PanelMagnifier, ToggleWithoutAMagnifierDoesNothing) {
    SavedGlobals saved;
    g_magnifierWindow = nullptr;
    ToggleMagnifier();  // must not touch any other window
    SUCCEED();
}

// ---------------------------------------------------------------------------------------------------
// Language

TEST(BarLabels, ReloadFollowsTheLanguage) {
    VisibleBars f;
    EXPECT_EQ(g_reloadBarLabels, &ReloadBarLabels) << "the language chooser reaches the labels";
    EXPECT_EQ(ClientPixel(g_toolsPair.label, 10, 70), LabelColor(kArtToolsBarLabel + kEnglish, 0));
    EXPECT_EQ(ClientPixel(g_optionsPair.label, 50, 10), LabelColor(kArtOptionsBarLabel + kEnglish, 0));
    g_language = kSpanish;
    ControlMessageLog log;
    g_reloadBarLabels();
    ExpectMessages(log.To(g_toolsPair.label), {{PM_SETIMAGE, Dib(ImageObject_Dib(&g_toolsPair.labelStrip))}},
                   "tools label");
    ExpectMessages(log.To(g_optionsPair.label), {{PM_SETIMAGE, Dib(ImageObject_Dib(&g_optionsPair.labelStrip))}},
                   "options label");
    EXPECT_EQ(ClientPixel(g_toolsPair.label, 10, 70), LabelColor(kArtToolsBarLabel + kSpanish, 0));
    EXPECT_EQ(ClientPixel(g_optionsPair.label, 50, 10), LabelColor(kArtOptionsBarLabel + kSpanish, 0));
}

// ---------------------------------------------------------------------------------------------------
// The auto-hide, with the real pointer

namespace {

POINT ClientToScreenPoint(HWND window, int x, int y) {
    POINT p = {x, y};
    ClientToScreen(window, &p);
    return p;
}

// The pointer put exactly there (no motion events on the way), then the timer given several periods.
void HoldPointerAt(HWND window, int x, int y) {
    POINT p = ClientToScreenPoint(window, x, y);
    SetCursorPos(p.x, p.y);
    PumpMessages(350);
}

void ShowByPointer(HWND bar, int x, int y) {
    PointerToClient(bar, x, y);
    PumpMessages(30);
}

}  // namespace

TEST(PointerPanel, ToolsPanelHidesOnceThePointerHasLeft) {
    PointerLock lock;
    VisibleBars f;
    ShowByPointer(g_toolsPair.bar, 12, 10);
    ASSERT_EQ(g_toolsPair.shown, 1);
    POINT away = ClientToScreenPoint(f.table.hwnd, 250, 100);
    SetCursorPos(away.x, away.y);
    EXPECT_EQ(g_toolsPair.shown, 1) << "hidden before the timer ran";
    PumpMessages(350);
    EXPECT_EQ(g_toolsPair.shown, 0);
    EXPECT_FALSE(HasVisibleStyle(g_toolsPair.panel));
    ExpectButtonsVisible(g_toolsPair, 4, false, "tools");
    EXPECT_FALSE(StopAutoHideTimer(g_toolsPair.panel)) << "the timer outlived the panel";
}

TEST(PointerPanel, OptionsPanelHidesOnceThePointerHasLeft) {
    PointerLock lock;
    VisibleBars f;
    ShowByPointer(g_optionsPair.bar, 250, 12);
    ASSERT_EQ(g_optionsPair.shown, 1);
    HoldPointerAt(f.table.hwnd, 250, 100);
    EXPECT_EQ(g_optionsPair.shown, 0);
    EXPECT_FALSE(HasVisibleStyle(g_optionsPair.panel));
    ExpectButtonsVisible(g_optionsPair, 3, false, "options");
    EXPECT_FALSE(StopAutoHideTimer(g_optionsPair.panel));
}

TEST(PointerPanel, PanelStaysOutWhileThePointerIsOnIt) {
    PointerLock lock;
    VisibleBars f;
    ShowByPointer(g_toolsPair.bar, 12, 10);
    HoldPointerAt(g_toolsPair.panel, 80, 150);
    EXPECT_EQ(g_toolsPair.shown, 1);
    EXPECT_TRUE(HasVisibleStyle(g_toolsPair.panel));
}

TEST(PointerPanel, CursorOnTheRightEdgeCoordinateKeepsThePanelOpen) {
    PointerLock lock;
    VisibleBars f;
    ShowByPointer(g_toolsPair.bar, 12, 10);
    HoldPointerAt(g_toolsPair.panel, 98, 150);  // x = the panel's width
    EXPECT_EQ(g_toolsPair.shown, 1) << "tools panel";
    ShowByPointer(g_optionsPair.bar, 250, 12);
    HoldPointerAt(g_optionsPair.panel, kSmallWidth, 90);  // x = the screen's width
    EXPECT_EQ(g_optionsPair.shown, 1) << "options panel";
    EXPECT_TRUE(HasVisibleStyle(g_optionsPair.panel));
    // One pixel further and both go.
    HoldPointerAt(g_optionsPair.panel, kSmallWidth + 1, 90);
    EXPECT_EQ(g_optionsPair.shown, 0);
    EXPECT_EQ(g_toolsPair.shown, 0);
}

TEST(PointerPanel, CursorOnTheBottomEdgeCoordinateKeepsThePanelOpen) {
    PointerLock lock;
    VisibleBars f;
    ShowByPointer(g_toolsPair.bar, 12, 10);
    HoldPointerAt(g_toolsPair.panel, 80, kSmallHeight - 78);  // y = the panel's height
    EXPECT_EQ(g_toolsPair.shown, 1) << "tools panel";
    HoldPointerAt(g_toolsPair.panel, 80, kSmallHeight - 78 + 1);
    EXPECT_EQ(g_toolsPair.shown, 0) << "tools panel, a pixel below";
    ShowByPointer(g_optionsPair.bar, 250, 12);
    HoldPointerAt(g_optionsPair.panel, 280, 103);
    EXPECT_EQ(g_optionsPair.shown, 1) << "options panel";
    HoldPointerAt(g_optionsPair.panel, 280, 104);
    EXPECT_EQ(g_optionsPair.shown, 0) << "options panel, a pixel below";
}

TEST(PointerPanel, HoveringTheLabelShowsThePanel) {
    PointerLock lock;
    VisibleBars f;
    // The label covers the bar there: the bar itself sees no pointer motion, only the label's notice.
    ShowByPointer(g_optionsPair.label, 50, 12);
    EXPECT_EQ(g_optionsPair.shown, 1);
    EXPECT_TRUE(HasVisibleStyle(g_optionsPair.panel));
}

TEST(PointerPanel, RealClicksRunTheToolsActions) {
    PointerLock lock;
    VisibleBars f;
    ShowByPointer(g_toolsPair.bar, 12, 10);
    ASSERT_EQ(g_toolsPair.shown, 1);
    for (int i = 0; i < 4; ++i) {
        PointerToClient(g_toolsPair.buttons[i], 25, 25);
        LeftDown();
        LeftUp();
    }
    EXPECT_EQ(g_assembled, 1);
    EXPECT_EQ(g_hinted, 1);
    EXPECT_EQ(g_musicOpened, 1);
    EXPECT_EQ(g_honourOpened, 1);
    EXPECT_EQ(g_toolsPair.shown, 1) << "the panel stays out under the pointer";
}

TEST(PointerPanel, RealClicksRunTheOptionsActions) {
    PointerLock lock;
    VisibleBars f;
    MagnifierStandIn magnifier;
    g_barActions.toggleMagnifier = ToggleMagnifier;
    g_barActions.quit = [] { ++g_quits; };
    ShowByPointer(g_optionsPair.bar, 250, 12);
    ASSERT_EQ(g_optionsPair.shown, 1);
    for (int i = 0; i < 3; ++i) {
        PointerToClient(g_optionsPair.buttons[i], 25, 25);
        LeftDown();
        LeftUp();
    }
    EXPECT_EQ(g_helpOpened, 1);
    EXPECT_TRUE(IsWindowVisible(magnifier.hwnd));
    EXPECT_EQ(g_quits, 1);
}

TEST(PointerPanel, HoveredButtonGlowsAndGoesBackToRestAfterThePointerLeaves) {
    PointerLock lock;
    VisibleBars f;
    ShowByPointer(g_toolsPair.bar, 12, 10);
    HWND assemble = g_toolsPair.buttons[0];
    PointerToClient(assemble, 25, 25);
    PumpMessages(1000);
    EXPECT_EQ(Ask(assemble, PM_ANIM_GETFRAME), kButtonGlowFrame);
    EXPECT_EQ(Ask(assemble, PM_ANIM_GETRUNNING), 0) << "held, not ticking";
    EXPECT_EQ(ClientPixel(assemble, 25, 25), FrameColor(kArtAssembleButton, kButtonGlowFrame));
    PointerToClient(g_toolsPair.panel, 80, 180);  // still on the panel, off the button
    PumpMessages(1100);
    EXPECT_EQ(Ask(assemble, PM_ANIM_GETFRAME), kButtonRestFrame);
    EXPECT_EQ(Ask(assemble, PM_ANIM_GETRUNNING), 0);
    EXPECT_EQ(ClientPixel(assemble, 25, 25), FrameColor(kArtAssembleButton, kButtonRestFrame));
}

// ---------------------------------------------------------------------------------------------------
// The shared animated-button feedback, on a lone button

namespace {

// A lone animated button whose parent passes every notice to the shared feedback and notes the frame
// after each tick.
struct FeedbackFixture {
    LoggingParent parent{200, 120};
    uint8_t* strip;
    HWND button;
    std::vector<int> framesAfterTicks;
    FeedbackFixture() {
        strip = MakeDib24(500, 50, [](int x, int) { return FrameColor(kArtHintButton, x / 50); });
        button = CreateControl("CQMANIM", parent.hwnd, 30, 30, 50, 50);
        SendMessageA(button, PM_ANIM_SETROWS, 0, 1);
        SendMessageA(button, PM_ANIM_SETCOLUMNS, 0, 10);
        SendMessageA(button, PM_ANIM_SETFRAME, 0, 0);
        SendMessageA(button, PM_SETIMAGE, 0, Dib(strip));
        parent.onNotify = [this](WPARAM event, HWND control) {
            AnimatedButtonFeedback(control, event);
            if (event == NOTIFY_SPECIAL) framesAfterTicks.push_back(int(Ask(control, PM_ANIM_GETFRAME)));
        };
    }
    ~FeedbackFixture() {
        DestroyWindow(button);
        FreePackedDib(strip);
    }
    void Notice(WPARAM event) { SendMessageA(parent.hwnd, PM_NOTIFY, event, Dib(button)); }
};

}  // namespace

TEST(AnimatedButton, EnteringRunsFrameByFrameUpToTheLastGlowAndHolds) {
    FeedbackFixture f;
    f.Notice(NOTIFY_ENTERED);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETRUNNING), 1);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETUSERVALUE), 1);
    PumpMessages(1200);
    EXPECT_EQ(f.framesAfterTicks, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETRUNNING), 0);
    EXPECT_EQ(ClientPixel(f.button, 25, 25), FrameColor(kArtHintButton, 9));
}

TEST(AnimatedButton, LeavingRunsBackToRestAndStops) {
    FeedbackFixture f;
    SendMessageA(f.button, PM_ANIM_SETFRAME, 0, kButtonGlowFrame);
    SendMessageA(f.button, PM_ANIM_SETUSERVALUE, 0, 1);
    f.Notice(NOTIFY_LEFT);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETUSERVALUE), 0);
    PumpMessages(1200);
    EXPECT_EQ(f.framesAfterTicks, (std::vector<int>{8, 7, 6, 5, 4, 3, 2, 1, 0}));
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETRUNNING), 0);
    EXPECT_EQ(ClientPixel(f.button, 25, 25), FrameColor(kArtHintButton, 0));
}

TEST(AnimatedButton, LeavingHalfwayTurnsBackFromWhereItIs) {
    FeedbackFixture f;
    f.Notice(NOTIFY_ENTERED);
    PumpMessages(250);
    f.Notice(NOTIFY_LEFT);
    size_t turn = f.framesAfterTicks.size();
    ASSERT_GE(turn, 1u);
    ASSERT_LT(f.framesAfterTicks.back(), 9);
    PumpMessages(1000);
    for (size_t i = turn; i < f.framesAfterTicks.size(); ++i)
        EXPECT_EQ(f.framesAfterTicks[i], f.framesAfterTicks[i - 1] - 1) << "tick " << i;
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETFRAME), 0);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETRUNNING), 0);
}

TEST(AnimatedButton, PressShowsTheFullGlowAtOnce) {
    FeedbackFixture f;
    f.Notice(NOTIFY_PRESSED);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETFRAME), kButtonGlowFrame);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETRUNNING), 0);
    EXPECT_EQ(ClientPixel(f.button, 25, 25), FrameColor(kArtHintButton, 9));
}

TEST(AnimatedButton, ReleaseAndClickLeaveTheLookAlone) {
    FeedbackFixture f;
    SendMessageA(f.button, PM_ANIM_SETFRAME, 0, 4);
    f.Notice(NOTIFY_RELEASED);
    f.Notice(NOTIFY_CLICKED);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETFRAME), 4);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETRUNNING), 0);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETUSERVALUE), 0);
}

TEST(AnimatedButton, TickAtRestStopsTheAnimation) {
    FeedbackFixture f;
    SendMessageA(f.button, PM_ANIM_SETRUNNING, 0, 1);
    PumpMessages(200);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETRUNNING), 0);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETFRAME), 0);
    EXPECT_LE(f.framesAfterTicks.size(), 1u);
}

TEST(AnimatedButton, FrameOutsideTheStripSettlesAtTheEndOfTheDirection) {
    FeedbackFixture f;
    SendMessageA(f.button, PM_ANIM_SETFRAME, 0, 42);
    f.Notice(NOTIFY_LEFT);
    PumpMessages(200);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETFRAME), 0);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETRUNNING), 0);
}

TEST(PointerAnimatedButton, HoverGlowsAndLeavingRunsBack) {
    PointerLock lock;
    FeedbackFixture f;
    PointerToClient(f.button, 25, 25);
    PumpMessages(1000);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETFRAME), kButtonGlowFrame);
    EXPECT_EQ(ClientPixel(f.button, 25, 25), FrameColor(kArtHintButton, 9));
    PointerToClient(f.parent.hwnd, 180, 100);
    PumpMessages(1100);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETFRAME), kButtonRestFrame);
    EXPECT_EQ(Ask(f.button, PM_ANIM_GETRUNNING), 0);
}
