// `CWNDFILE` and `CWNDPREVFILE`: the saved-puzzle browser's children, its list and scroll range, labels,
// the name filter, picking, deleting after the question, saving, opening, closing and moving.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/message_loop_win32.h"
#include "app/message_window_win32.h"
#include "app/theme.h"
#include "board_test_helpers.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "puzzle/board_window_win32.h"
#include "puzzle/model.h"
#include "setup/browser_rules.h"
#include "setup/browser_win32.h"
#include "setup/saved_puzzle.h"
#include "setup/saved_puzzle_win32.h"
#include "win32_support.h"

namespace {

const COLORREF kBackdropColor = RGB(150, 100, 50);
const COLORREF kUnpainted = RGB(1, 2, 3);
constexpr int32_t kThumbWidth = 80, kThumbHeight = 60;

// 5-5-5 thumbnail colours of the saved files, and roughly what the screen shows for them.
struct ThumbColour {
    uint16_t bits;
    COLORREF shown;
};
ThumbColour Thumb(int r5, int g5, int b5) {
    auto widen = [](int v) { return (v << 3) | (v >> 2); };
    return ThumbColour{uint16_t((r5 << 10) | (g5 << 5) | b5), RGB(widen(r5), widen(g5), widen(b5))};
}

bool Near(COLORREF a, COLORREF b, int tolerance = 8) {
    return std::abs(int(GetRValue(a)) - int(GetRValue(b))) <= tolerance &&
           std::abs(int(GetGValue(a)) - int(GetGValue(b))) <= tolerance &&
           std::abs(int(GetBValue(a)) - int(GetBValue(b))) <= tolerance;
}

void PutU32(std::string& bytes, size_t at, uint32_t v) { std::memcpy(&bytes[at], &v, 4); }

// A saved file as the format lays it out, for a 2 x 2 puzzle: a header, counts, order and pieces left
// zero, then a one-colour thumbnail. Enough for the thumbnail reader, not for loading.
std::string SavedFileBytes(uint16_t pixel, bool magic = true, int32_t width = kThumbWidth,
                           int32_t height = kThumbHeight) {
    const uint32_t n = 4;
    const size_t stride = size_t((width * 2 + 3) / 4) * 4;
    std::string bytes(488 + 28 + 20 * n + stride * size_t(height), '\0');
    std::memcpy(&bytes[0], magic ? "QMPF10" : "QMPF99", 6);
    PutU32(bytes, 28, 2);
    PutU32(bytes, 32, 2);
    PutU32(bytes, 36, 5000);
    PutU32(bytes, 444, 2);
    PutU32(bytes, 448, 2);
    double scale = 1.0;
    std::memcpy(&bytes[456], &scale, 8);
    bytes[473] = 1;
    PutU32(bytes, 476, 20 * n + 28);
    PutU32(bytes, 480, uint32_t(width));
    PutU32(bytes, 484, uint32_t(height));
    size_t at = 488 + 28 + 20 * n;
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) std::memcpy(&bytes[at + size_t(y) * stride + 2 * size_t(x)], &pixel, 2);
    return bytes;
}

// A program folder with the browser's classes registered, a stand-in main window, a save button, the
// globals the browser reads, and optionally a pack with its pictures. Restores what it changed.
struct BrowserFixture {
    TempFolder folder;
    char savedFolder[kPathCapacity];
    int32_t savedWidth, savedHeight;
    HWND savedMain, savedSaveButton;
    uint8_t savedPaused;
    TestWindow main{20, 20, 60, 40};
    LoggingParent buttons{60, 60};
    HWND saveButton = nullptr;
    bool packOpened = false;
    std::vector<uint8_t*> packItems;
    HWND browser = nullptr;

    BrowserFixture()
        : savedWidth(g_screenWidth), savedHeight(g_screenHeight), savedMain(g_mainWindow),
          savedSaveButton(g_saveButton), savedPaused(g_puzzle.paused) {
        std::memcpy(savedFolder, g_appFolder, sizeof savedFolder);
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s", folder.path.c_str());
        HINSTANCE instance = GetModuleHandleA(nullptr);
        EnsureControlClasses();
        RegisterMessageWindowClass(instance);
        RegisterBrowserClasses(instance);
        g_screenWidth = 1024;
        g_screenHeight = 768;
        // The browser is owned by the main window; tests leave g_mainWindow unset so that closing does not
        // activate the stand-in (an activated window costs two seconds on destroy without a window manager).
        g_mainWindow = nullptr;
        saveButton = CreateControl("CQMCOMMAND", buttons.hwnd, 0, 0);
        SendMessageA(saveButton, PM_SETENABLE, 0, 1);
        g_saveButton = saveButton;
    }
    ~BrowserFixture() {
        if (browser && IsWindow(browser)) DestroyWindow(browser);
        if (HWND message = CurrentMessageWindow()) DestroyWindow(message);
        PumpMessages(60);  // answers still pending reach a browser that is gone, harmlessly
        if (packOpened) ClosePack(&g_pack);
        for (uint8_t* item : packItems) FreePackedDib(item);
        g_saveButton = savedSaveButton;
        g_mainWindow = savedMain;
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
        g_puzzle.paused = savedPaused;
        std::memcpy(g_appFolder, savedFolder, sizeof savedFolder);
    }

    std::string SavedFolder() const { return folder.File("folder"); }
    std::string SavedPath(const std::string& name) const { return folder.File(("folder\\" + name).c_str()); }

    void AddSaved(const std::string& name, uint16_t pixel = Thumb(20, 10, 5).bits, bool magic = true) {
        CreateDirectoryA(SavedFolder().c_str(), nullptr);
        ASSERT_TRUE(WriteFileBytes(SavedPath(name), SavedFileBytes(pixel, magic)));
    }
    void AddSavedFiles(int count) {
        for (int k = 0; k < count; ++k) AddSaved("Game" + std::to_string(k) + ".epf");
    }

    // A pack with the browser's pictures: a plain backdrop and strips in their own colours.
    void UsePack() {
        uint32_t language = uint32_t(g_language);
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        auto add = [&](uint32_t id, uint8_t* dib) {
            packItems.push_back(dib);
            items.emplace_back(id, dib);
        };
        add(kArtBrowserPanel, MakeSolidDib(640, 300, kBackdropColor));
        add(kArtBrowserOpenTitle + language, MakeSolidDib(300, 40, RGB(10, 120, 10)));
        add(kArtBrowserSaveTitle + language, MakeSolidDib(300, 40, RGB(120, 10, 10)));
        for (uint32_t strip : {kArtBrowserOpenButton, kArtBrowserSaveButton, kArtNewPuzzleCloseButton})
            add(strip, MakeFrameStrip(40, 40, {RGB(90, 0, 0), RGB(120, 0, 0), RGB(150, 0, 0)}));
        for (uint32_t anim : {kArtPanelHelpButton, kArtBrowserDeleteButton})
            add(anim, MakeDib24(500, 50, [](int x, int) { return RGB(x / 50 * 20, 40, 90); }));
        add(kArtBrowserScroll, MakeSolidDib(30, 384, RGB(140, 70, 70)));
        std::string path = folder.File("Test.rf");
        ASSERT_TRUE(WriteTestPack(path, items));
        ASSERT_FALSE(IsPackOpen(&g_pack));
        ASSERT_TRUE(OpenPack(&g_pack, path.c_str()));
        packOpened = true;
    }

    // The browser as the game opens it: activated, its name field focused, owned by g_mainWindow.
    HWND OpenAsTheGameDoes(uint8_t mode) {
        g_mainWindow = main.hwnd;
        browser = OpenSavedPuzzleBrowser(mode);
        if (browser) {
            UpdateWindow(browser);
            PumpMessages(30);
        }
        return browser;
    }

    // The same window, owned by the stand-in main window but shown without activation.
    HWND Open(uint8_t mode) {
        DWORD style = WS_POPUP | WS_CLIPCHILDREN | WS_DLGFRAME;
        browser = CreateWindowExA(0, kBrowserClass, "", style, 0, 0, 0, 0, main.hwnd, nullptr,
                                  GetModuleHandleA(nullptr), reinterpret_cast<void*>(uintptr_t(mode)));
        if (browser) {
            SetWindowPos(browser, HWND_TOP, 0, 0, 0, 0, SWP_SHOWWINDOW | SWP_NOACTIVATE | SWP_NOMOVE | SWP_NOSIZE);
            UpdateWindow(browser);
            PumpMessages(30);
        }
        return browser;
    }

    HWND Child(int id) const { return GetDlgItem(browser, id); }
    HWND Slot(int i) const { return Child(kBrowserFirstSlotId + i); }
    HWND Scroll() const { return Child(kBrowserScrollId); }
    HWND NameField() const { return Child(kBrowserNameFieldId); }
    int32_t Count() const { return int32_t(SendMessageA(browser, PM_BROWSER_GETCOUNT, 0, 0)); }
    int32_t Selection() const { return int32_t(SendMessageA(browser, PM_BROWSER_GETSELECTION, 0, 0)); }
    std::string Label(int slot) const {
        char text[kBrowserLabelLength + 1] = {};
        SendMessageA(browser, PM_BROWSER_GETLABEL, WPARAM(slot), reinterpret_cast<LPARAM>(text));
        return std::string(text);
    }
    bool SaveButtonEnabled() const { return SendMessageA(saveButton, PM_GETENABLE, 0, 0) != 0; }
};

// What a control sends when clicked, as the browser receives it.
void Notify(HWND control, WPARAM event = NOTIFY_CLICKED) {
    SendMessageA(GetParent(control), PM_NOTIFY, event, reinterpret_cast<LPARAM>(control));
}

void ClickSlot(HWND slot, int x = 54, int y = 45) {
    SendMessageA(slot, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageA(slot, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

void DoubleClickSlot(HWND slot) {
    ClickSlot(slot);
    SendMessageA(slot, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(54, 45));
    if (IsWindow(slot)) SendMessageA(slot, WM_LBUTTONUP, 0, MAKELPARAM(54, 45));
}

// Characters typed into a child as the game's message loop delivers them: offered to the parent's filter
// first, and given to the child only when the filter lets them through.
void Type(HWND child, const std::string& text) {
    for (char ch : text) {
        MSG msg = {};
        msg.hwnd = child;
        msg.message = WM_CHAR;
        msg.wParam = WPARAM(uint8_t(ch));
        msg.lParam = 1;
        if (!OfferChildChar(&msg)) SendMessageA(child, WM_CHAR, msg.wParam, msg.lParam);
    }
}

std::string TextOf(HWND hwnd) {
    char text[300] = {};
    GetWindowTextA(hwnd, text, sizeof text);
    return text;
}

int32_t Minimum(HWND scroll) { return int32_t(SendMessageA(scroll, PM_SCR_GETMINIMUM, 0, 0)); }
int32_t Maximum(HWND scroll) { return int32_t(SendMessageA(scroll, PM_SCR_GETMAXIMUM, 0, 0)); }
int32_t Position(HWND scroll) { return int32_t(SendMessageA(scroll, PM_SCR_GETPOSITION, 0, 0)); }

void MoveScroll(HWND scroll, int32_t position) {
    SendMessageA(scroll, PM_SCR_SETPOSITION, 0, position);
    Notify(scroll);
}

std::unique_ptr<Canvas> PrintClient(HWND hwnd, int width, int height) {
    auto canvas = std::make_unique<Canvas>(width, height, kUnpainted);
    SendMessageA(hwnd, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas->dc), PRF_CLIENT);
    return canvas;
}
std::unique_ptr<Canvas> PrintSlot(HWND slot) { return PrintClient(slot, kBrowserSlotWidth, kBrowserSlotHeight); }

// Pixels of a printed slot that are not the backdrop.
int NonBackdropPixels(const Canvas& c) {
    int n = 0;
    for (int y = 0; y < c.height; ++y)
        for (int x = 0; x < c.width; ++x) n += c.At(x, y) != kBackdropColor;
    return n;
}

POINT PlaceOf(HWND child) {
    RECT r = {};
    GetWindowRect(child, &r);
    MapWindowPoints(HWND_DESKTOP, GetParent(child), reinterpret_cast<POINT*>(&r), 2);
    return POINT{r.left, r.top};
}

std::string ClassOf(HWND hwnd) {
    char name[64] = {};
    GetClassNameA(hwnd, name, sizeof name);
    return name;
}

// Answers the delete question as the player would with Enter or Escape, then waits for the answer.
void AnswerQuestion(bool yes) {
    HWND message = CurrentMessageWindow();
    ASSERT_NE(message, nullptr);
    SendMessageA(message, WM_CHAR, yes ? 13 : 27, 0);
    PumpMessages(200);
}

}  // namespace

TEST(SavedPuzzleBrowser, RegistersBothClassesAndTheSlotsTakeDoubleClicks) {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    RegisterBrowserClasses(instance);
    RegisterBrowserClasses(instance);  // twice is harmless
    WNDCLASSA wc = {};
    ASSERT_TRUE(GetClassInfoA(instance, "CWNDFILE", &wc));
    EXPECT_EQ(wc.hbrBackground, nullptr);
    ASSERT_TRUE(GetClassInfoA(instance, "CWNDPREVFILE", &wc));
    EXPECT_TRUE(wc.style & CS_DBLCLKS);
}

TEST(SavedPuzzleBrowser, OpensCentredWithTheBackdropLessAHundredAsItsClientAreaAndFocusesTheName) {
    BrowserFixture f;
    f.UsePack();
    ASSERT_NE(f.OpenAsTheGameDoes(0), nullptr);
    EXPECT_EQ(ClassOf(f.browser), "CWNDFILE");
    LONG_PTR style = GetWindowLongPtrA(f.browser, GWL_STYLE);
    EXPECT_EQ(style & (WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME),
              LONG_PTR(WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME));
    EXPECT_EQ(GetWindow(f.browser, GW_OWNER), f.main.hwnd);
    SIZE client = ClientSize(f.browser);
    EXPECT_EQ(client.cx, 540);
    EXPECT_EQ(client.cy, 300);
    RECT r = {};
    GetWindowRect(f.browser, &r);
    EXPECT_EQ(r.left, (1024 - (r.right - r.left)) / 2);
    EXPECT_EQ(r.top, (768 - (r.bottom - r.top)) / 2);
    EXPECT_EQ(GetFocus(), f.NameField());
    // One browser at a time: opening again gives the one that shows.
    EXPECT_EQ(OpenSavedPuzzleBrowser(1), f.browser);
    EXPECT_FALSE(IsWindowEnabled(f.main.hwnd));
    Notify(f.Child(kBrowserCloseId));
    EXPECT_FALSE(IsWindow(f.browser));
    EXPECT_TRUE(IsWindowEnabled(f.main.hwnd));
}

TEST(SavedPuzzleBrowser, MainWindowIsDisabledWhileTheBrowserExistsAndEnabledAfter) {
    BrowserFixture f;
    EXPECT_TRUE(IsWindowEnabled(f.main.hwnd));
    ASSERT_NE(f.Open(1), nullptr);
    EXPECT_FALSE(IsWindowEnabled(f.main.hwnd));
    g_puzzle.paused = 1;
    Notify(f.Child(kBrowserCloseId));
    EXPECT_FALSE(IsWindow(f.browser));
    EXPECT_TRUE(IsWindowEnabled(f.main.hwnd));
    EXPECT_EQ(g_puzzle.paused, 0);  // the play clock counts again
}

TEST(SavedPuzzleBrowser, SaveModeBuildsEveryChildAtItsPlace) {
    BrowserFixture f;
    f.UsePack();
    ASSERT_NE(f.Open(0), nullptr);
    auto expectAt = [&](int id, const char* className, int x, int y, int w, int h) {
        HWND child = f.Child(id);
        ASSERT_NE(child, nullptr) << id;
        EXPECT_EQ(ClassOf(child), className) << id;
        POINT p = PlaceOf(child);
        EXPECT_EQ(p.x, x) << id;
        EXPECT_EQ(p.y, y) << id;
        SIZE size = WindowSize(child);
        EXPECT_EQ(size.cx, w) << id;
        EXPECT_EQ(size.cy, h) << id;
    };
    expectAt(kBrowserNameFieldId, "Edit", 10, 61, 212, 24);
    expectAt(kBrowserActionId, "CQMCOMMAND", 19, 255, 40, 40);
    expectAt(kBrowserCloseId, "CQMCOMMAND", 414, 257, 40, 40);
    expectAt(kBrowserHelpId, "CQMANIM", 146, 235, 50, 50);
    expectAt(kBrowserDeleteId, "CQMANIM", 295, 235, 50, 50);
    for (int i = 0; i < 4; ++i) expectAt(kBrowserFirstSlotId + i, "CWNDPREVFILE", 6 + 111 * i, 108, 108, 90);
    EXPECT_TRUE(GetWindowLongPtrA(f.NameField(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
    HFONT font = reinterpret_cast<HFONT>(SendMessageA(f.NameField(), WM_GETFONT, 0, 0));
    LOGFONTA lf = {};
    ASSERT_TRUE(GetObjectA(font, sizeof lf, &lf));
    EXPECT_EQ(std::abs(lf.lfHeight), 20);
    EXPECT_EQ(lf.lfWeight, FW_NORMAL);
    EXPECT_STREQ(lf.lfFaceName, kCommonFontFace);
    // The save strip on the action button, the title of save mode on the backdrop.
    EXPECT_EQ(SendMessageA(f.Child(kBrowserActionId), PM_GETIMAGE, 0, 0) != 0, true);
    auto client = PrintClient(f.browser, 540, 300);
    // The title plate of save mode, centred at the top.
    EXPECT_EQ(client->At(120, 4), RGB(120, 10, 10));
    EXPECT_EQ(client->At(419, 43), RGB(120, 10, 10));
    EXPECT_EQ(client->At(119, 4), kBackdropColor);
    EXPECT_EQ(client->At(420, 43), kBackdropColor);
    EXPECT_EQ(client->At(120, 44), kBackdropColor);
    EXPECT_EQ(client->At(5, 5), kBackdropColor);
}

TEST(SavedPuzzleBrowser, OpenModeHasNoNameFieldAndShowsTheOpenTitle) {
    BrowserFixture f;
    f.UsePack();
    ASSERT_NE(f.Open(1), nullptr);
    EXPECT_EQ(f.NameField(), nullptr);
    EXPECT_NE(f.Child(kBrowserActionId), nullptr);
    auto client = PrintClient(f.browser, 540, 300);
    EXPECT_EQ(client->At(270, 24), RGB(10, 120, 10));
}

TEST(SavedPuzzleBrowser, ExactlyFourSavedFilesGiveNoScrollControl) {
    BrowserFixture f;
    f.UsePack();
    f.AddSavedFiles(4);
    ASSERT_NE(f.Open(1), nullptr);
    EXPECT_EQ(f.Count(), 4);
    EXPECT_EQ(f.Scroll(), nullptr);
    EXPECT_EQ(FindWindowExA(f.browser, nullptr, "CQMSROLL", nullptr), nullptr);
    for (int i = 0; i < 4; ++i) EXPECT_GT(NonBackdropPixels(*PrintSlot(f.Slot(i))), 0) << "slot " << i;
}

TEST(SavedPuzzleBrowser, FiveSavedFilesScrollFromMinusOneToZero) {
    BrowserFixture f;
    f.UsePack();
    f.AddSavedFiles(5);
    ASSERT_NE(f.Open(1), nullptr);
    EXPECT_EQ(f.Count(), 5);
    HWND scroll = f.Scroll();
    ASSERT_NE(scroll, nullptr);
    EXPECT_TRUE(IsWindowVisible(scroll));
    EXPECT_EQ(ClassOf(scroll), "CQMSROLL");
    EXPECT_EQ(PlaceOf(scroll).x, 455);
    EXPECT_EQ(PlaceOf(scroll).y, 75);
    EXPECT_EQ(Minimum(scroll), -1);
    EXPECT_EQ(Maximum(scroll), 0);
    EXPECT_EQ(Position(scroll), 0);
    std::vector<std::string> top;
    for (int i = 0; i < 4; ++i) top.push_back(f.Label(i));
    MoveScroll(scroll, -1);
    // Slot i now shows entry i + 1.
    for (int i = 0; i < 3; ++i) EXPECT_EQ(f.Label(i), top[i + 1]) << "slot " << i;
    EXPECT_NE(f.Label(3), top[3]);
    EXPECT_EQ(f.Label(3).substr(0, 4), "Game");
}

TEST(SavedPuzzleBrowser, FileNameOfElevenOrMoreCharactersShowsOnlyItsFirstEleven) {
    BrowserFixture f;
    f.AddSaved("LighthousesAtDusk.epf");
    ASSERT_NE(f.Open(1), nullptr);
    EXPECT_EQ(f.Label(0), "Lighthouses      ");
    EXPECT_EQ(f.Label(1), std::string(17, ' '));  // slots past the list have blank labels
}

TEST(SavedPuzzleBrowser, LabelsAreDrawnUnderTheSlotsInTheTextColour) {
    BrowserFixture f;
    f.UsePack();
    f.AddSaved("Wm.epf");
    ASSERT_NE(f.Open(1), nullptr);
    auto client = PrintClient(f.browser, 540, 300);
    auto inkIn = [&](int left) {
        int n = 0;
        for (int y = 193; y < 193 + 24; ++y)
            for (int x = left; x < left + 100; ++x) n += client->At(x, y) == COLORREF(kCommonTextColor);
        return n;
    };
    EXPECT_GT(inkIn(6), 20);
    EXPECT_EQ(inkIn(6 + 111), 0);  // the second label is all spaces
}

TEST(SavedPuzzleBrowser, LongLabelsStayInsideTheirSlotsWidth) {
    BrowserFixture f;
    f.UsePack();
    f.AddSaved("WWWWWWWWWWWW.epf");
    ASSERT_NE(f.Open(1), nullptr);
    EXPECT_EQ(f.Label(0), "WWWWWWWWWWW      ");
    auto client = PrintClient(f.browser, 540, 300);
    int inside = 0, beyond = 0;
    for (int y = 193; y < 193 + 24; ++y) {
        for (int x = 6; x < 6 + 108; ++x) inside += client->At(x, y) == COLORREF(kCommonTextColor);
        for (int x = 6 + 108; x < 6 + 222; ++x) beyond += client->At(x, y) == COLORREF(kCommonTextColor);
    }
    EXPECT_GT(inside, 100);
    EXPECT_EQ(beyond, 0);
}

TEST(SavedPuzzleBrowser, TypingAPeriodOrABackslashInTheNameFieldHasNoEffect) {
    BrowserFixture f;
    ASSERT_NE(f.Open(0), nullptr);
    Type(f.NameField(), "my.game\\one");
    EXPECT_EQ(TextOf(f.NameField()), "mygameone");
}

TEST(SavedPuzzleBrowser, NameFilterRefusesTheTenFileNameCharactersOnly) {
    BrowserFixture f;
    ASSERT_NE(f.Open(0), nullptr);
    for (char ch : std::string("\"*./:<>?\\|"))
        EXPECT_EQ(SendMessageA(f.browser, PM_CHILDCHAR, WPARAM(uint8_t(ch)), 0), 1) << ch;
    for (char ch : std::string("aZ09 _-!#'()+,;=@[]{}~"))
        EXPECT_EQ(SendMessageA(f.browser, PM_CHILDCHAR, WPARAM(uint8_t(ch)), 0), 0) << ch;
    Type(f.NameField(), "a<b>c:d\"e/f|g?h*i");
    EXPECT_EQ(TextOf(f.NameField()), "abcdefghi");
}

TEST(SavedPuzzleBrowser, FileWhoseHeaderLacksTheMagicShowsAnEmptySlotButStaysInTheList) {
    BrowserFixture f;
    f.UsePack();
    f.AddSaved("Broken.epf", Thumb(31, 0, 0).bits, false);
    ASSERT_NE(f.Open(1), nullptr);
    EXPECT_EQ(f.Count(), 1);
    EXPECT_EQ(f.Label(0), "Broken           ");
    EXPECT_EQ(NonBackdropPixels(*PrintSlot(f.Slot(0))), 0);
    // An empty slot cannot be picked.
    ClickSlot(f.Slot(0));
    EXPECT_EQ(NonBackdropPixels(*PrintSlot(f.Slot(0))), 0);
}

TEST(SavedPuzzleBrowser, ThumbnailIsCentredAtItsOwnSizeWithTheBackdropAround) {
    BrowserFixture f;
    f.UsePack();
    ThumbColour colour = Thumb(20, 10, 5);
    f.AddSaved("One.epf", colour.bits);
    ASSERT_NE(f.Open(1), nullptr);
    auto slot = PrintSlot(f.Slot(0));
    const int left = (108 - kThumbWidth) / 2, top = (90 - kThumbHeight) / 2;  // 14, 15
    EXPECT_TRUE(Near(slot->At(left, top), colour.shown));
    EXPECT_TRUE(Near(slot->At(left + kThumbWidth - 1, top + kThumbHeight - 1), colour.shown));
    EXPECT_EQ(slot->At(left - 4, top + 10), kBackdropColor);
    EXPECT_EQ(slot->At(left + kThumbWidth + 3, top + 10), kBackdropColor);
    EXPECT_EQ(slot->At(50, top + kThumbHeight + 3), kBackdropColor);
}

TEST(SavedPuzzleBrowser, SelectedSlotHasATextColouredFrameOnePixelOutsideTheThumbnail) {
    BrowserFixture f;
    f.UsePack();
    f.AddSavedFiles(2);
    ASSERT_NE(f.Open(1), nullptr);
    const int left = (108 - kThumbWidth) / 2, top = (90 - kThumbHeight) / 2;
    // Entry 0 is selected from the start.
    auto first = PrintSlot(f.Slot(0));
    const COLORREF ink = kCommonTextColor;
    // A band of two pixels on every side, starting one pixel outside the thumbnail.
    for (int d : {1, 2}) {
        EXPECT_EQ(first->At(left - d, top + 20), ink) << d;
        EXPECT_EQ(first->At(left + kThumbWidth - 1 + d, top + 20), ink) << d;
        EXPECT_EQ(first->At(left + 20, top - d), ink) << d;
        EXPECT_EQ(first->At(left + 20, top + kThumbHeight - 1 + d), ink) << d;
        EXPECT_EQ(first->At(left - d, top - d), ink) << d;  // closed at the corners
        EXPECT_EQ(first->At(left + kThumbWidth - 1 + d, top + kThumbHeight - 1 + d), ink) << d;
    }
    EXPECT_EQ(first->At(left - 3, top + 20), kBackdropColor);
    EXPECT_EQ(first->At(left + kThumbWidth + 2, top + 20), kBackdropColor);
    EXPECT_NE(first->At(left, top + 20), ink);  // the thumbnail itself is not covered
    EXPECT_NE(first->At(left + kThumbWidth - 1, top + kThumbHeight - 1), ink);
    EXPECT_EQ(PrintSlot(f.Slot(1))->At(left - 1, top + 20), kBackdropColor);
    ClickSlot(f.Slot(1));
    EXPECT_EQ(f.Selection(), 1);
    EXPECT_EQ(PrintSlot(f.Slot(1))->At(left - 1, top + 20), COLORREF(kCommonTextColor));
    EXPECT_EQ(PrintSlot(f.Slot(0))->At(left - 1, top + 20), kBackdropColor);
}

TEST(SavedPuzzleBrowser, PressedSlotShowsTheFrameUntilReleased) {
    BrowserFixture f;
    f.UsePack();
    f.AddSavedFiles(2);
    ASSERT_NE(f.Open(1), nullptr);
    const int left = (108 - kThumbWidth) / 2, top = (90 - kThumbHeight) / 2;
    SendMessageA(f.Slot(1), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 40));
    EXPECT_EQ(PrintSlot(f.Slot(1))->At(left - 1, top + 20), COLORREF(kCommonTextColor));
    // Released outside: no selection, and the frame goes.
    SendMessageA(f.Slot(1), WM_LBUTTONUP, 0, MAKELPARAM(200, 40));
    EXPECT_EQ(f.Selection(), 0);
    EXPECT_EQ(PrintSlot(f.Slot(1))->At(left - 1, top + 20), kBackdropColor);
}

TEST(SavedPuzzleBrowser, PickingInSaveModePutsTheNameWithoutItsExtensionInTheField) {
    BrowserFixture f;
    f.AddSaved("Harbour.epf");
    f.AddSaved("Mill.epf");
    ASSERT_NE(f.Open(0), nullptr);
    for (int i = 0; i < 2; ++i) {
        ClickSlot(f.Slot(i));
        EXPECT_EQ(f.Selection(), i);
        std::string label = f.Label(i);
        EXPECT_EQ(TextOf(f.NameField()), label.substr(0, label.find(' ')));
    }
}

TEST(SavedPuzzleBrowser, ScrolledClickSelectsSlotMinusPosition) {
    BrowserFixture f;
    f.AddSavedFiles(6);
    ASSERT_NE(f.Open(1), nullptr);
    ASSERT_NE(f.Scroll(), nullptr);
    EXPECT_EQ(Minimum(f.Scroll()), -2);
    MoveScroll(f.Scroll(), -2);
    ClickSlot(f.Slot(3));
    EXPECT_EQ(f.Selection(), 5);
    ClickSlot(f.Slot(0));
    EXPECT_EQ(f.Selection(), 2);
}

TEST(SavedPuzzleBrowser, DeletingTheLastRemainingFileLeavesAnEmptyBrowserAndDeleteThenDoesNothing) {
    BrowserFixture f;
    f.UsePack();
    f.AddSaved("Only.epf");
    ASSERT_NE(f.Open(1), nullptr);
    Notify(f.Child(kBrowserDeleteId));
    ASSERT_NE(CurrentMessageWindow(), nullptr);
    EXPECT_EQ(GetWindow(CurrentMessageWindow(), GW_OWNER), f.browser);
    AnswerQuestion(true);
    EXPECT_EQ(GetFileAttributesA(f.SavedPath("Only.epf").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(f.Count(), 0);
    EXPECT_EQ(f.Label(0), std::string(17, ' '));
    for (int i = 0; i < 4; ++i) EXPECT_EQ(NonBackdropPixels(*PrintSlot(f.Slot(i))), 0) << "slot " << i;
    // With nothing left the delete button asks nothing, and open does nothing either.
    Notify(f.Child(kBrowserDeleteId));
    EXPECT_EQ(CurrentMessageWindow(), nullptr);
    Notify(f.Child(kBrowserActionId));
    EXPECT_TRUE(IsWindow(f.browser));
}

TEST(SavedPuzzleBrowser, DeleteAnsweredNoKeepsTheFile) {
    BrowserFixture f;
    f.AddSaved("Keep.epf");
    ASSERT_NE(f.Open(1), nullptr);
    Notify(f.Child(kBrowserDeleteId));
    AnswerQuestion(false);
    EXPECT_NE(GetFileAttributesA(f.SavedPath("Keep.epf").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(f.Count(), 1);
    EXPECT_TRUE(IsWindowEnabled(f.browser));
}

TEST(SavedPuzzleBrowser, DeletingDownToFourHidesTheScrollAndKeepsTheSelectionInsideTheList) {
    BrowserFixture f;
    f.AddSavedFiles(5);
    ASSERT_NE(f.Open(1), nullptr);
    MoveScroll(f.Scroll(), -1);
    ClickSlot(f.Slot(3));
    ASSERT_EQ(f.Selection(), 4);
    std::string doomed = f.Label(3);
    Notify(f.Child(kBrowserDeleteId));
    AnswerQuestion(true);
    EXPECT_EQ(f.Count(), 4);
    EXPECT_FALSE(IsWindowVisible(f.Scroll()));
    EXPECT_EQ(f.Selection(), 3);  // was past the end of the shorter list
    std::string name = doomed.substr(0, doomed.find(' ')) + ".epf";
    EXPECT_EQ(GetFileAttributesA(f.SavedPath(name).c_str()), INVALID_FILE_ATTRIBUTES);
    for (int i = 0; i < 4; ++i) EXPECT_NE(f.Label(i), doomed);
}

TEST(SavedPuzzleBrowser, DeletingKeepsTheSelectionWhereItWas) {
    BrowserFixture f;
    f.AddSavedFiles(3);
    ASSERT_NE(f.Open(1), nullptr);
    ClickSlot(f.Slot(1));
    std::string last = f.Label(2);
    Notify(f.Child(kBrowserDeleteId));
    AnswerQuestion(true);
    EXPECT_EQ(f.Count(), 2);
    EXPECT_EQ(f.Selection(), 1);
    EXPECT_EQ(f.Label(1), last);
}

TEST(SavedPuzzleBrowser, SaveWithAnEmptyNameDoesNothing) {
    BrowserFixture f;
    ASSERT_NE(f.Open(0), nullptr);
    Notify(f.Child(kBrowserActionId));
    EXPECT_TRUE(IsWindow(f.browser));
    EXPECT_TRUE(f.SaveButtonEnabled());
}

TEST(SavedPuzzleBrowser, EscapeClosesTheBrowser) {
    BrowserFixture f;
    ASSERT_NE(f.Open(0), nullptr);
    Type(f.NameField(), "ab\x1b");
    EXPECT_FALSE(IsWindow(f.browser));
    EXPECT_TRUE(IsWindowEnabled(f.main.hwnd));
}

TEST(SavedPuzzleBrowser, PressOnTheBackgroundMovesTheWindowWithThePointer) {
    BrowserFixture f;
    ASSERT_NE(f.Open(1), nullptr);
    RECT before = {}, after = {};
    GetWindowRect(f.browser, &before);
    SendMessageA(f.browser, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(100, 20));
    EXPECT_EQ(GetCapture(), f.browser);
    SendMessageA(f.browser, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(130, 10));
    // Client points: after the first move the pointer stands at (100, 20) + (30, -10) + (120, 40).
    SendMessageA(f.browser, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(120, 40));
    SendMessageA(f.browser, WM_LBUTTONUP, 0, MAKELPARAM(120, 40));
    GetWindowRect(f.browser, &after);
    EXPECT_EQ(after.left - before.left, 50);
    EXPECT_EQ(after.top - before.top, 10);
    EXPECT_EQ(after.right - after.left, before.right - before.left);
    EXPECT_NE(GetCapture(), f.browser);
    SendMessageA(f.browser, WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));  // no longer following
    RECT still = {};
    GetWindowRect(f.browser, &still);
    EXPECT_EQ(still.left, after.left);
}

// ---- Saving and opening real puzzles ----

// The browser over a real 2 x 2 puzzle in play (cut through the board's test pack).
struct PlayingBrowser : BrowserFixture {
    BoardScreen screen;
    PlayingBrowser() {}
};

TEST(SavedPuzzleBrowser, SaveActionWritesFolderHdEpfCreatingTheFolderAndCloses) {
    PlayingBrowser f;
    ASSERT_TRUE(f.screen.cut);
    ASSERT_EQ(GetFileAttributesA(f.SavedFolder().c_str()), INVALID_FILE_ATTRIBUTES);  // a first save
    ASSERT_NE(f.Open(0), nullptr);
    Type(f.NameField(), "hd");
    Notify(f.Child(kBrowserActionId));
    EXPECT_FALSE(IsWindow(f.browser));
    std::string bytes = ReadFileBytes(f.SavedPath("hd.epf"));
    ASSERT_GE(bytes.size(), 488u);
    EXPECT_EQ(std::memcmp(bytes.data(), "QMPF10", 7), 0);
    EXPECT_FALSE(f.SaveButtonEnabled());
    EXPECT_TRUE(IsWindowEnabled(f.main.hwnd));
    uint8_t* preview = ReadPuzzlePreview(f.SavedPath("hd.epf").c_str());
    ASSERT_NE(preview, nullptr);  // saved with its thumbnail
    SysFreeBlock(preview);
}

TEST(SavedPuzzleBrowser, EnterInTheNameFieldSaves) {
    PlayingBrowser f;
    ASSERT_NE(f.Open(0), nullptr);
    Type(f.NameField(), "quick\r");
    EXPECT_FALSE(IsWindow(f.browser));
    EXPECT_NE(GetFileAttributesA(f.SavedPath("quick.epf").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(SavedPuzzleBrowser, DoubleClickInOpenModeLoadsTheEntryAndCloses) {
    PlayingBrowser f;
    ASSERT_TRUE(f.screen.cut);
    g_puzzle.elapsed = 4321;
    CreateDirectoryA(f.SavedFolder().c_str(), nullptr);
    ASSERT_TRUE(SavePuzzleFile(f.SavedPath("Saved.epf").c_str(), true));
    g_puzzle.elapsed = 7;
    g_puzzle.puzzle_dirty = 1;
    ASSERT_NE(f.Open(1), nullptr);
    DoubleClickSlot(f.Slot(0));
    EXPECT_FALSE(IsWindow(f.browser));
    EXPECT_EQ(g_puzzle.elapsed, 4321u);
    EXPECT_EQ(g_puzzle.puzzle_dirty, 0);
    EXPECT_FALSE(f.SaveButtonEnabled());
}

TEST(SavedPuzzleBrowser, FailedLoadClosesAndLeavesTheGameAndItsSaveButtonAsTheyWere) {
    PlayingBrowser f;
    g_puzzle.elapsed = 99;
    f.AddSaved("NotAPuzzle.epf");  // a thumbnail but no loadable puzzle
    ASSERT_NE(f.Open(1), nullptr);
    Notify(f.Child(kBrowserActionId));
    EXPECT_FALSE(IsWindow(f.browser));
    EXPECT_EQ(g_puzzle.elapsed, 99u);
    EXPECT_TRUE(f.SaveButtonEnabled());
}
