// `CWNDHONOR`: the composed screen, the thirty row labels, the wipe and close buttons, and the ranking
// check with the name question whose answer stores the record.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/message_window_win32.h"
#include "app/platform.h"
#include "app/theme.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "extras/honour_win32.h"
#include "finished_puzzle.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "puzzle/model.h"
#include "puzzle/score.h"
#include "win32_support.h"

namespace {

// The screen the tests lay the table out for: the panel stands at (80, 60).
constexpr int32_t kScreenWidth = 800, kScreenHeight = 600;
constexpr int32_t kPanelLeft = 80, kPanelTop = 60;

// Palette indices of the test pictures, all over MakeDib8's one palette.
constexpr uint8_t kPanelIndex = 20;
constexpr uint8_t kTitleIndex[2] = {31, 30};  // Spanish, English
constexpr int32_t kTitleWidth = 200, kTitleHeight = 40;
// The tile: four 40 x 40 quarters of their own, so that a misplaced step shows.
uint8_t TileIndex(int x, int y) { return uint8_t(40 + (x / 40) + 2 * (y / 40)); }

constexpr size_t kFileSize = 296;

std::string EmptyName() { return std::string(23, '-'); }

// A records file of ten rows, built here by hand; names are written as given, then zeros.
std::string TableBytes(const std::vector<std::pair<std::string, int32_t>>& rows) {
    std::string bytes(kFileSize, '\0');
    std::memcpy(&bytes[0], "QmRecords", 9);
    int32_t count = 10;
    std::memcpy(&bytes[12], &count, 4);
    for (size_t i = 0; i < rows.size() && i < 10; ++i) {
        std::memcpy(&bytes[16 + 28 * i], rows[i].first.data(), rows[i].first.size() < 24 ? rows[i].first.size() : 24);
        std::memcpy(&bytes[16 + 28 * i + 24], &rows[i].second, 4);
    }
    return bytes;
}

// "Player0" .. "Player9" with 10000, 9000, .., 1000.
std::vector<std::pair<std::string, int32_t>> TenPlayers() {
    std::vector<std::pair<std::string, int32_t>> rows;
    for (int i = 0; i < 10; ++i) rows.emplace_back("Player" + std::to_string(i), 10000 - 1000 * i);
    return rows;
}

std::string NameField(const std::string& file, int i) { return file.substr(16 + 28 * size_t(i), 24); }
int32_t ScoreIn(const std::string& file, int i) {
    int32_t value;
    std::memcpy(&value, &file[16 + 28 * size_t(i) + 24], 4);
    return value;
}

std::string LabelText(HWND label) {
    char text[256] = "";
    SendMessageA(label, PM_TXT_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    return text;
}

RECT PlaceInParent(HWND child) {
    RECT r = {};
    GetWindowRect(child, &r);
    MapWindowPoints(HWND_DESKTOP, GetParent(child), reinterpret_cast<POINT*>(&r), 2);
    return r;
}

std::vector<HWND> ChildrenOf(HWND window) {
    std::vector<HWND> found;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        found.push_back(child);
    return found;
}

std::string ClassOf(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

// The game's loop for a while: characters for a child are first offered to its parent.
void PumpFor(DWORD ms) {
    DWORD start = GetTickCount();
    for (;;) {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
        DWORD elapsed = GetTickCount() - start;
        if (elapsed >= ms) break;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, ms - elapsed, QS_ALLINPUT);
    }
}

// A program folder, a pack with the screen's pictures, the classes, and the globals the honour roll
// reads; restores what it changed. No main window unless a test asks: an activated owner costs two
// seconds on destroy under Wine without a window manager.
struct HonourFixture : ::testing::Test {
    TempFolder folder;
    char savedFolder[kPathCapacity];
    int32_t savedWidth = g_screenWidth, savedHeight = g_screenHeight, savedLanguage = g_language;
    HWND savedMain = g_mainWindow;
    std::vector<uint8_t*> art;
    HWND honour = nullptr;

    void SetUp() override {
        std::memcpy(savedFolder, g_appFolder, sizeof savedFolder);
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s", folder.path.c_str());
        static bool registered = false;
        if (!registered) {
            EnsureControlClasses();
            RegisterMessageWindowClass(GetModuleHandleA(nullptr));
            RegisterHonourClass(GetModuleHandleA(nullptr));
            registered = true;
        }
        g_screenWidth = kScreenWidth;
        g_screenHeight = kScreenHeight;
        g_language = kEnglish;
        g_mainWindow = nullptr;
        auto add = [&](uint8_t* dib) {
            art.push_back(dib);
            return dib;
        };
        std::vector<std::pair<uint32_t, const uint8_t*>> items = {
            {kArtBackdropTile, add(MakeDib8(80, 80, 256, TileIndex))},
            {kArtHonourPanel, add(MakeDib8(640, 480, 256, [](int, int) { return kPanelIndex; }))},
            {kArtHonourTitle + 0, add(MakeDib8(kTitleWidth, kTitleHeight, 256, [](int, int) { return kTitleIndex[0]; }))},
            {kArtHonourTitle + 1, add(MakeDib8(kTitleWidth, kTitleHeight, 256, [](int, int) { return kTitleIndex[1]; }))},
            {kArtWipeButton, add(MakeDib24(500, 50, [](int x, int) { return RGB(x / 50 * 20, 90, 30); }))},
            {kArtCloseAnimButton, add(MakeDib24(500, 50, [](int x, int) { return RGB(30, x / 50 * 20, 90); }))},
        };
        std::string pack = folder.File("Tavirel.rf");
        ASSERT_TRUE(WriteTestPack(pack, items));
        ASSERT_TRUE(OpenPack(&g_pack, pack.c_str()));
    }

    void TearDown() override {
        if (HWND message = CurrentMessageWindow()) DestroyWindow(message);
        if (honour && IsWindow(honour)) DestroyWindow(honour);
        if (HWND left = CurrentHonourWindow()) DestroyWindow(left);
        PumpMessages(100);  // an answer still on its way finds no question
        ClosePack(&g_pack);
        for (uint8_t* dib : art) FreePackedDib(dib);
        g_mainWindow = savedMain;
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
        g_language = savedLanguage;
        std::memcpy(g_appFolder, savedFolder, sizeof savedFolder);
    }

    std::string RecordsPath() const { return folder.File("Records.qmr"); }
    void WriteRecordsFile(const std::string& bytes) { ASSERT_TRUE(WriteFileBytes(RecordsPath(), bytes)); }
    std::string RecordsFile() const { return ReadFileBytes(RecordsPath()); }
    bool RecordsExist() const { return GetFileAttributesA(RecordsPath().c_str()) != INVALID_FILE_ATTRIBUTES; }

    // The screen as its class builds it, kept hidden: nothing is activated and no other test's window
    // is covered.
    HWND Open() {
        honour = CreateWindowExA(0, kHonourClass, "", WS_POPUP | WS_CLIPCHILDREN, 0, 0, kScreenWidth, kScreenHeight,
                                 nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
        return honour;
    }

    HWND Rank(int i) const { return GetDlgItem(honour, kHonourFirstRankId + i); }
    HWND Name(int i) const { return GetDlgItem(honour, kHonourFirstNameId + i); }
    HWND Score(int i) const { return GetDlgItem(honour, kHonourFirstScoreId + i); }
    HWND Wipe() const { return GetDlgItem(honour, kHonourWipeId); }
    HWND Close() const { return GetDlgItem(honour, kHonourCloseId); }
    const uint8_t* Composed() const {
        return reinterpret_cast<const uint8_t*>(SendMessageA(Name(0), PM_GETIMAGE, 0, 0));
    }
    void Notify(WPARAM event, HWND control) {
        SendMessageA(honour, PM_NOTIFY, event, reinterpret_cast<LPARAM>(control));
    }

    // The ranking check as a finished puzzle runs it; the table and the question it opens.
    void CheckRecord(uint32_t elapsed) {
        FinishedPuzzle puzzle(elapsed);
        CheckForRecord();
        honour = CurrentHonourWindow();
    }
    // Types into the question's name field and answers with Enter (13) or Escape (27); returns when the
    // answer has reached StoreRecord.
    void Answer(const char* name, WPARAM key) {
        HWND message = CurrentMessageWindow();
        ASSERT_NE(message, nullptr);
        HWND field = FindWindowExA(message, nullptr, "EDIT", nullptr);
        ASSERT_NE(field, nullptr);
        SendMessageA(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name));
        SendMessageA(message, WM_CHAR, key, 0);
        for (int i = 0; i < 200 && IsWindow(message); ++i) PumpFor(10);
        ASSERT_FALSE(IsWindow(message));
        PumpFor(300);  // the answer waits 45 ms on its timer
    }
};

using HonourWindow = HonourFixture;
using HonourRecord = HonourFixture;
// Asks which window is in front, which another test program running beside could change: runs alone.
using ForegroundHonourWindow = HonourFixture;

// ---- The screen ----

TEST_F(HonourWindow, NoFileShowsTenRowsOfDashesAndZero) {
    ASSERT_NE(Open(), nullptr);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(LabelText(Rank(i)), std::to_string(i + 1)) << "row " << i;
        EXPECT_EQ(LabelText(Name(i)), EmptyName()) << "row " << i;
        EXPECT_EQ(LabelText(Score(i)), "0") << "row " << i;
    }
    EXPECT_FALSE(RecordsExist());
}

TEST_F(HonourWindow, RowsShowTheFileNamesAndScores) {
    WriteRecordsFile(TableBytes(TenPlayers()));
    ASSERT_NE(Open(), nullptr);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(LabelText(Name(i)), "Player" + std::to_string(i)) << "row " << i;
        EXPECT_EQ(LabelText(Score(i)), std::to_string(10000 - 1000 * i)) << "row " << i;
    }
}

TEST_F(HonourWindow, OnlyTheTextUpToTheNulIsShown) {
    std::vector<std::pair<std::string, int32_t>> rows = TenPlayers();
    rows[0].first = std::string("Bo\0imiliana Fernandez", 21);
    rows[1].first = std::string(24, 'x');
    WriteRecordsFile(TableBytes(rows));
    ASSERT_NE(Open(), nullptr);
    EXPECT_EQ(LabelText(Name(0)), "Bo");
    EXPECT_EQ(LabelText(Name(1)), std::string(24, 'x'));
}

TEST_F(HonourWindow, NegativeScoresShowWithAMinusSign) {
    std::vector<std::pair<std::string, int32_t>> rows = TenPlayers();
    rows[9].second = -2147483647 - 1;
    WriteRecordsFile(TableBytes(rows));
    ASSERT_NE(Open(), nullptr);
    EXPECT_EQ(LabelText(Score(9)), "-2147483648");
}

TEST_F(HonourWindow, LabelsStandInThreeColumnsOfTenRowsOnThePanel) {
    ASSERT_NE(Open(), nullptr);
    for (int i = 0; i < 10; ++i) {
        int32_t y = kPanelTop + 63 + 30 * i;
        RECT rank = PlaceInParent(Rank(i)), name = PlaceInParent(Name(i)), score = PlaceInParent(Score(i));
        EXPECT_EQ(rank.left, kPanelLeft + 30) << "row " << i;
        EXPECT_EQ(name.left, kPanelLeft + 60) << "row " << i;
        EXPECT_EQ(score.left, kPanelLeft + 420) << "row " << i;
        EXPECT_EQ(rank.top, y) << "row " << i;
        EXPECT_EQ(name.top, y) << "row " << i;
        EXPECT_EQ(score.top, y) << "row " << i;
    }
}

TEST_F(HonourWindow, PanelPlaceTruncatesOddHalves) {
    g_screenWidth = 1025;
    g_screenHeight = 769;
    ASSERT_NE(Open(), nullptr);
    RECT name = PlaceInParent(Name(0));
    EXPECT_EQ(name.left, 192 + 60);
    EXPECT_EQ(name.top, 144 + 63);
}

TEST_F(HonourWindow, ThereAreExactlyThirtyLabelsAndTwoButtons) {
    ASSERT_NE(Open(), nullptr);
    int labels = 0, buttons = 0;
    for (HWND child : ChildrenOf(honour)) {
        std::string name = ClassOf(child);
        if (name == "CQMTXT") ++labels;
        else if (name == "CQMANIM") ++buttons;
        else ADD_FAILURE() << "unexpected child of class " << name;
    }
    EXPECT_EQ(labels, 30);
    EXPECT_EQ(buttons, 2);
}

TEST_F(HonourWindow, LabelsAreDisabledShadowedTextsInTheCommonColour) {
    ASSERT_NE(Open(), nullptr);
    for (int i = 0; i < 10; ++i)
        for (HWND label : {Rank(i), Name(i), Score(i)}) {
            SCOPED_TRACE("row " + std::to_string(i) + ": " + LabelText(label));
            EXPECT_EQ(SendMessageA(label, PM_GETENABLE, 0, 0), 0);
            EXPECT_EQ(SendMessageA(label, PM_TXT_GETSHADOW, 0, 0), 1);
            EXPECT_EQ(SendMessageA(label, PM_TXT_GETSHADOWOFFSET, 0, 0), 1);
            EXPECT_EQ(COLORREF(SendMessageA(label, PM_TXT_GETSHADOWCOLOR, 0, 0)), 0u);
            EXPECT_EQ(COLORREF(SendMessageA(label, PM_TXT_GETDISABLEDCOLOR, 0, 0)), COLORREF(kCommonTextColor));
            EXPECT_EQ(SendMessageA(label, PM_TXT_GETHEIGHT, 0, 0), 30);
            EXPECT_EQ(SendMessageA(label, PM_TXT_GETLITWEIGHT, 0, 0), 400);
        }
}

TEST_F(HonourWindow, EveryLabelDrawsOverTheComposedScreenAndFitsItsText) {
    ASSERT_NE(Open(), nullptr);
    const uint8_t* composed = Composed();
    ASSERT_NE(composed, nullptr);
    EXPECT_EQ(DibHeaderOf(composed)->biWidth, kScreenWidth);
    EXPECT_EQ(DibHeaderOf(composed)->biHeight, kScreenHeight);
    for (int i = 0; i < 10; ++i)
        for (HWND label : {Rank(i), Name(i), Score(i)}) {
            EXPECT_EQ(reinterpret_cast<const uint8_t*>(SendMessageA(label, PM_GETIMAGE, 0, 0)), composed);
            // Ready labels size themselves to their text and shadow, away from the 50 x 50 they began with.
            SIZE size = WindowSize(label);
            EXPECT_GT(size.cy, 20) << "row " << i;
            EXPECT_LT(size.cy, 50) << "row " << i;
        }
    EXPECT_GT(WindowSize(Name(0)).cx, WindowSize(Rank(0)).cx);
}

TEST_F(HonourWindow, ComposedScreenTilesTheBackdropInEightyPixelSteps) {
    ASSERT_NE(Open(), nullptr);
    const uint8_t* composed = Composed();
    ASSERT_NE(composed, nullptr);
    const POINT outsidePanel[] = {{0, 0}, {45, 45}, {79, 59}, {85, 50}, {250, 41}, {770, 10}, {799, 599},
                                  {5, 590}, {721, 300}, {40, 545}, {600, 545}};
    for (POINT p : outsidePanel)
        EXPECT_EQ(DibAt(composed, p.x, p.y), TileIndex(p.x % 80, p.y % 80)) << p.x << ", " << p.y;
}

TEST_F(HonourWindow, ComposedScreenHasThePanelCentred) {
    ASSERT_NE(Open(), nullptr);
    const uint8_t* composed = Composed();
    ASSERT_NE(composed, nullptr);
    for (POINT p : {POINT{80, 60}, POINT{719, 539}, POINT{400, 300}, POINT{80, 539}})
        EXPECT_EQ(DibAt(composed, p.x, p.y), kPanelIndex) << p.x << ", " << p.y;
    for (POINT p : {POINT{79, 300}, POINT{720, 300}, POINT{400, 59}, POINT{400, 540}})
        EXPECT_NE(DibAt(composed, p.x, p.y), kPanelIndex) << p.x << ", " << p.y;
    EXPECT_EQ(DibHeaderOf(composed)->biBitCount, 8);
    COLORREF entry = TestPaletteEntry(kPanelIndex);
    const DibColor& colour = DibPalette(composed)[kPanelIndex];
    EXPECT_EQ(RGB(colour.red, colour.green, colour.blue), entry);
}

TEST_F(HonourWindow, ComposedScreenHasTheLocalisedTitleCentredAtTheTop) {
    ASSERT_NE(Open(), nullptr);
    const uint8_t* composed = Composed();
    ASSERT_NE(composed, nullptr);
    const int32_t left = (kScreenWidth - kTitleWidth) / 2;
    EXPECT_EQ(DibAt(composed, left, 0), kTitleIndex[kEnglish]);
    EXPECT_EQ(DibAt(composed, left + kTitleWidth - 1, kTitleHeight - 1), kTitleIndex[kEnglish]);
    EXPECT_EQ(DibAt(composed, left - 1, 0), TileIndex((left - 1) % 80, 0));
    EXPECT_EQ(DibAt(composed, left, kTitleHeight), TileIndex(left % 80, kTitleHeight));
}

TEST_F(HonourWindow, TitleFollowsTheLanguage) {
    g_language = kSpanish;
    ASSERT_NE(Open(), nullptr);
    EXPECT_EQ(DibAt(Composed(), kScreenWidth / 2, 10), kTitleIndex[kSpanish]);
}

TEST_F(HonourWindow, PaintingCopiesTheComposedScreen) {
    ASSERT_NE(Open(), nullptr);
    Canvas canvas(kScreenWidth, kScreenHeight, RGB(1, 2, 3));
    SendMessageA(honour, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc), PRF_CLIENT);
    GdiFlush();
    EXPECT_EQ(canvas.At(400, 300), TestPaletteEntry(kPanelIndex));
    EXPECT_EQ(canvas.At(400, 20), TestPaletteEntry(kTitleIndex[kEnglish]));
    EXPECT_EQ(canvas.At(10, 50), TestPaletteEntry(TileIndex(10, 50)));
    EXPECT_EQ(canvas.At(790, 590), TestPaletteEntry(TileIndex(790 % 80, 590 % 80)));
}

TEST_F(HonourWindow, ButtonsStandAtTheirScreenFractions) {
    ASSERT_NE(Open(), nullptr);
    // 800 x 0.7421866.. = 593.7, 800 x 0.8640652.. = 691.3, 600 x 0.8354218.. = 501.3, all truncated.
    RECT wipe = PlaceInParent(Wipe()), close = PlaceInParent(Close());
    EXPECT_EQ(wipe.left, 593);
    EXPECT_EQ(wipe.top, 501);
    EXPECT_EQ(close.left, 691);
    EXPECT_EQ(close.top, 501);
    EXPECT_EQ(WindowSize(Wipe()).cx, 50);
    EXPECT_EQ(WindowSize(Wipe()).cy, 50);
    EXPECT_EQ(WindowSize(Close()).cx, 50);
    EXPECT_EQ(WindowSize(Close()).cy, 50);
}

TEST_F(HonourWindow, ButtonsShowTheirStripsInTenColumns) {
    ASSERT_NE(Open(), nullptr);
    for (HWND button : {Wipe(), Close()}) {
        EXPECT_EQ(SendMessageA(button, PM_ANIM_GETCOLUMNS, 0, 0), 10);
        const uint8_t* strip = reinterpret_cast<const uint8_t*>(SendMessageA(button, PM_GETIMAGE, 0, 0));
        ASSERT_NE(strip, nullptr);
        EXPECT_EQ(DibHeaderOf(strip)->biWidth, 500);
    }
    const uint8_t* wipe = reinterpret_cast<const uint8_t*>(SendMessageA(Wipe(), PM_GETIMAGE, 0, 0));
    const uint8_t* close = reinterpret_cast<const uint8_t*>(SendMessageA(Close(), PM_GETIMAGE, 0, 0));
    EXPECT_EQ(DibAt(wipe, 0, 0), RGB(0, 90, 30));
    EXPECT_EQ(DibAt(close, 0, 0), RGB(30, 0, 90));
}

TEST_F(HonourWindow, CupWindowClassStaysUnregistered) {
    ASSERT_NE(Open(), nullptr);
    WNDCLASSA found;
    EXPECT_FALSE(GetClassInfoA(GetModuleHandleA(nullptr), "CWNDCOPAHONOR", &found));
    EXPECT_EQ(FindWindowExA(honour, nullptr, "CWNDCOPAHONOR", nullptr), nullptr);
}

TEST_F(HonourWindow, PressOnAButtonShowsItsFullGlowAtOnce) {
    ASSERT_NE(Open(), nullptr);
    Notify(NOTIFY_PRESSED, Wipe());
    EXPECT_EQ(SendMessageA(Wipe(), PM_ANIM_GETFRAME, 0, 0), kButtonGlowFrame);
    EXPECT_EQ(SendMessageA(Close(), PM_ANIM_GETFRAME, 0, 0), kButtonRestFrame);
}

TEST_F(HonourWindow, PointerOverAButtonStartsItsGlow) {
    ASSERT_NE(Open(), nullptr);
    Notify(NOTIFY_ENTERED, Close());
    EXPECT_EQ(SendMessageA(Close(), PM_ANIM_GETRUNNING, 0, 0), 1);
    EXPECT_EQ(SendMessageA(Close(), PM_ANIM_GETUSERVALUE, 0, 0), 1);
    Notify(NOTIFY_SPECIAL, Close());
    EXPECT_EQ(SendMessageA(Close(), PM_ANIM_GETFRAME, 0, 0), 1);
    EXPECT_EQ(SendMessageA(Wipe(), PM_ANIM_GETRUNNING, 0, 0), 0);
}

TEST_F(HonourWindow, WipeButtonRemovesTheFileAndShowsTheEmptyTable) {
    WriteRecordsFile(TableBytes(TenPlayers()));
    ASSERT_NE(Open(), nullptr);
    ASSERT_EQ(LabelText(Name(0)), "Player0");
    Notify(NOTIFY_CLICKED, Wipe());
    EXPECT_FALSE(RecordsExist());
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(LabelText(Name(i)), EmptyName()) << "row " << i;
        EXPECT_EQ(LabelText(Score(i)), "0") << "row " << i;
        EXPECT_EQ(LabelText(Rank(i)), std::to_string(i + 1)) << "row " << i;
    }
    EXPECT_TRUE(IsWindow(honour));
}

TEST_F(HonourWindow, CloseButtonDestroysTheWindow) {
    ASSERT_NE(Open(), nullptr);
    Notify(NOTIFY_CLICKED, Close());
    EXPECT_FALSE(IsWindow(honour));
    EXPECT_EQ(CurrentHonourWindow(), nullptr);
}

TEST_F(HonourWindow, ClosingFreesEveryPicture) {
    size_t before = SysLiveBlocks();
    ASSERT_NE(Open(), nullptr);
    EXPECT_GT(SysLiveBlocks(), before);
    DestroyWindow(honour);
    EXPECT_EQ(SysLiveBlocks(), before);
}

TEST_F(HonourWindow, OnlyOneTableAtATime) {
    ASSERT_NE(Open(), nullptr);
    EXPECT_EQ(CurrentHonourWindow(), honour);
    HWND second = CreateWindowExA(0, kHonourClass, "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                  GetModuleHandleA(nullptr), nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(OpenHonourWindow(), honour);
}

TEST_F(ForegroundHonourWindow, OpeningDisablesTheMainWindowAndClosingBringsItBack) {
    TestWindow main(0, 0, 60, 40);
    g_mainWindow = main.hwnd;
    honour = OpenHonourWindow();
    ASSERT_NE(honour, nullptr);
    EXPECT_FALSE(IsWindowEnabled(main.hwnd));
    EXPECT_EQ(GetWindow(honour, GW_OWNER), main.hwnd);
    LONG style = GetWindowLongA(honour, GWL_STYLE);
    EXPECT_EQ(style & (WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_MAXIMIZE),
              LONG(WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_MAXIMIZE));
    EXPECT_EQ(style & WS_CAPTION, 0);
    Notify(NOTIFY_CLICKED, Close());
    EXPECT_FALSE(IsWindow(honour));
    EXPECT_TRUE(IsWindowEnabled(main.hwnd));
    EXPECT_EQ(GetForegroundWindow(), main.hwnd);
    g_mainWindow = nullptr;
}

// ---- The ranking check and the stored record ----

TEST_F(HonourRecord, ZeroScoreOpensNothing) {
    FinishedPuzzle puzzle(0);
    g_puzzle.pieces[1].group = 0;  // two loose pieces: 0 %
    ASSERT_EQ(GetStatistics(&g_puzzle).score, 0);
    CheckForRecord();
    EXPECT_EQ(CurrentHonourWindow(), nullptr);
    EXPECT_EQ(CurrentMessageWindow(), nullptr);
    EXPECT_FALSE(RecordsExist());
}

TEST_F(HonourRecord, ScoreEqualToTheTenthOpensNothing) {
    WriteRecordsFile(TableBytes(TenPlayers()));
    {
        FinishedPuzzle puzzle(21);  // 4000 / 4
        ASSERT_EQ(GetStatistics(&g_puzzle).score, 1000);
        CheckForRecord();
    }
    EXPECT_EQ(CurrentHonourWindow(), nullptr);
    EXPECT_EQ(CurrentMessageWindow(), nullptr);
}

TEST_F(HonourRecord, PositiveScoreOpensTheTableAndAsksForANameAboveIt) {
    {
        FinishedPuzzle puzzle(0);
        ASSERT_EQ(GetStatistics(&g_puzzle).score, 4000);
    }
    CheckRecord(0);
    ASSERT_NE(honour, nullptr);
    HWND message = CurrentMessageWindow();
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(GetWindow(message, GW_OWNER), honour);
    EXPECT_NE(FindWindowExA(message, nullptr, "EDIT", nullptr), nullptr);
    EXPECT_FALSE(IsWindowEnabled(honour));  // until the question is answered
    // The table shows the file as it was until a name is given.
    EXPECT_EQ(LabelText(Name(0)), EmptyName());
}

TEST_F(HonourRecord, ConfirmedNameIsStoredAtItsRankAndShown) {
    WriteRecordsFile(TableBytes(TenPlayers()));
    CheckRecord(0);  // 4000 ties Player6: the new record goes just below
    ASSERT_NE(honour, nullptr);
    Answer("Grace", 13);
    EXPECT_TRUE(IsWindowEnabled(honour));
    for (int i = 0; i < 7; ++i) EXPECT_EQ(LabelText(Name(i)), "Player" + std::to_string(i)) << "row " << i;
    EXPECT_EQ(LabelText(Name(7)), "Grace");
    EXPECT_EQ(LabelText(Score(7)), "4000");
    EXPECT_EQ(LabelText(Name(8)), "Player7");
    EXPECT_EQ(LabelText(Score(8)), "3000");
    EXPECT_EQ(LabelText(Name(9)), "Player8");
    EXPECT_EQ(LabelText(Score(9)), "2000");
    std::string file = RecordsFile();
    ASSERT_EQ(file.size(), kFileSize);
    EXPECT_EQ(NameField(file, 6).substr(0, 8), std::string("Player6\0", 8));
    EXPECT_EQ(NameField(file, 7), std::string("Grace\0", 6) + std::string("7", 1) + std::string(17, '\0'));
    EXPECT_EQ(ScoreIn(file, 7), 4000);
    EXPECT_EQ(ScoreIn(file, 9), 2000);
    EXPECT_EQ(GetFileAttributesA((RecordsPath() + ".new").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(HonourRecord, DecliningTheQuestionStoresNothingAndKeepsTheTableOpen) {
    WriteRecordsFile(TableBytes(TenPlayers()));
    const std::string before = RecordsFile();
    CheckRecord(0);
    ASSERT_NE(honour, nullptr);
    Answer("Grace", 27);
    EXPECT_EQ(RecordsFile(), before);
    EXPECT_TRUE(IsWindow(honour));
    EXPECT_TRUE(IsWindowEnabled(honour));
    EXPECT_EQ(LabelText(Name(7)), "Player7");
}

TEST_F(HonourRecord, EmptyNameStoresNothingAndKeepsTheTableOpen) {
    CheckRecord(0);
    ASSERT_NE(honour, nullptr);
    Answer("", 13);
    EXPECT_FALSE(RecordsExist());
    EXPECT_TRUE(IsWindow(honour));
    EXPECT_TRUE(IsWindowEnabled(honour));
    EXPECT_EQ(LabelText(Name(0)), EmptyName());
}

TEST_F(HonourRecord, OneAnswerStoresOneRecord) {
    CheckRecord(0);
    ASSERT_NE(honour, nullptr);
    Answer("Ada", 13);
    const std::string stored = RecordsFile();
    ASSERT_EQ(stored.size(), kFileSize);
    StoreRecord(1);  // no ranking check since: nothing to store
    EXPECT_EQ(RecordsFile(), stored);
}

TEST_F(HonourRecord, RecordAfterAWipeRecreatesTheFileWithNineEmptyEntries) {
    WriteRecordsFile(TableBytes(TenPlayers()));
    ASSERT_NE(Open(), nullptr);
    Notify(NOTIFY_CLICKED, Wipe());
    EXPECT_FALSE(RecordsExist());
    DestroyWindow(honour);
    CheckRecord(0);
    ASSERT_NE(honour, nullptr);
    Answer("Solo", 13);
    std::string file = RecordsFile();
    ASSERT_EQ(file.size(), kFileSize);
    EXPECT_EQ(NameField(file, 0).substr(0, 5), std::string("Solo\0", 5));
    EXPECT_EQ(ScoreIn(file, 0), 4000);
    for (int i = 1; i < 10; ++i) {
        EXPECT_EQ(NameField(file, i), EmptyName() + std::string(1, '\0')) << "entry " << i;
        EXPECT_EQ(ScoreIn(file, i), 0) << "entry " << i;
    }
    EXPECT_EQ(LabelText(Name(0)), "Solo");
    EXPECT_EQ(LabelText(Name(1)), EmptyName());
}

TEST_F(HonourRecord, TwentyThreeCharacterNameIsStoredWhole) {
    CheckRecord(0);
    ASSERT_NE(honour, nullptr);
    const std::string name = "ABCDEFGHIJKLMNOPQRSTUVW";
    Answer(name.c_str(), 13);
    std::string file = RecordsFile();
    ASSERT_EQ(file.size(), kFileSize);
    EXPECT_EQ(NameField(file, 0), name + std::string(1, '\0'));
    EXPECT_EQ(LabelText(Name(0)), name);
}

}  // namespace
