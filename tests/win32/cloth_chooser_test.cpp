// `CWNDMOSAIC`: the cloth chooser's opening and closing, its children, the preview stepping through the
// ten cloths with the selector following, the selector's buttons at both ends of its range, the table's
// cloth and the remembered choice, help, dragging and palette repaints.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/launchers_win32.h"
#include "app/main_window_win32.h"
#include "app/settings.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "puzzle/compose.h"
#include "setup/cloth_chooser_win32.h"
#include "win32_support.h"

namespace {

const COLORREF kPanelColor = RGB(200, 180, 140);
const COLORREF kBadgeColor = RGB(180, 150, 40);
const COLORREF kUnpainted = RGB(1, 2, 3);
constexpr int kCloths = 10;

// Cloth k of the test pack is one colour: palette entry k.
COLORREF ClothColor(int k) { return TestPaletteEntry(uint32_t(k)); }

// The colour the board's table shows at its top-left texel.
COLORREF TableTexel() {
    const uint8_t* texel = g_tableTexture.rows[0];
    return RGB(texel[2], texel[1], texel[0]);
}

std::vector<std::string> g_shellFiles;

BOOL WINAPI RecordShellCall(SHELLEXECUTEINFOA* info) {
    g_shellFiles.push_back(info->lpFile ? info->lpFile : "");
    info->hProcess = nullptr;
    return TRUE;
}

// A program folder with a pack holding the panel, the badge, the four strips and the ten cloths; a
// stand-in owner; the globals the chooser reads. Restores what it changed, the table's cloth included.
struct ClothFixture {
    TempFolder folder;
    char savedFolder[kPathCapacity];
    int32_t savedWidth = g_screenWidth, savedHeight = g_screenHeight;
    HWND savedMain = g_mainWindow;
    int32_t savedCloth = g_tableBackground;
    std::unique_ptr<TableTexture> savedTexture{new TableTexture(g_tableTexture)};
    std::vector<uint8_t*> packItems;
    TestWindow owner{10, 10, 60, 40};
    HWND chooser = nullptr;

    ClothFixture() {
        std::memcpy(savedFolder, g_appFolder, sizeof savedFolder);
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s", folder.path.c_str());
        HINSTANCE instance = GetModuleHandleA(nullptr);
        EnsureControlClasses();
        RegisterClothChooserClass(instance);
        g_screenWidth = 1024;
        g_screenHeight = 768;
        // Left unset so that closing does not activate the stand-in (that costs two seconds on destroy).
        g_mainWindow = nullptr;
        g_tableBackground = 0;
        g_shellFiles.clear();
        g_shellExecute = RecordShellCall;
        WritePack();
    }
    ~ClothFixture() {
        if (chooser && IsWindow(chooser)) DestroyWindow(chooser);
        PumpMessages(20);
        ClosePack(&g_pack);
        for (uint8_t* item : packItems) FreePackedDib(item);
        g_shellExecute = ShellExecuteExA;
        g_tableTexture = *savedTexture;
        g_tableBackground = savedCloth;
        g_mainWindow = savedMain;
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
        std::memcpy(g_appFolder, savedFolder, sizeof savedFolder);
    }

    void WritePack() {
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        auto add = [&](uint32_t id, uint8_t* dib) {
            packItems.push_back(dib);
            items.emplace_back(id, dib);
        };
        add(kArtClothPanel, MakeSolidDib(420, 300, kPanelColor));
        add(kArtClothPanelBadge, MakeSolidDib(200, 44, kBadgeColor));
        add(kArtClothCloseButton, MakeFrameStrip(90, 36, {RGB(90, 0, 0), RGB(120, 0, 0), RGB(150, 0, 0)}));
        add(kArtPanelHelpButton, MakeDib24(500, 50, [](int x, int) { return RGB(x / 50 * 20, 40, 90); }));
        add(kArtClothPreview, MakeDib24(100, 1000, [](int, int y) { return ClothColor(y / 100); }));
        add(kArtClothScroll, MakeDib24(30, 3 * 159, [](int, int y) { return RGB(60, y / 3, 120); }));
        for (int k = 0; k < kCloths; ++k)
            add(kArtCloth + uint32_t(k), MakeDib8(100, 100, 16, [k](int, int) { return uint8_t(k); }));
        std::string path = folder.File("Tavirel.rf");
        ASSERT_TRUE(WriteTestPack(path, items));
        ASSERT_FALSE(IsPackOpen(&g_pack));
        ASSERT_TRUE(OpenPack(&g_pack, path.c_str()));
    }

    // The panel as the game opens it: shown active, the owner disabled.
    HWND Open(int32_t cloth) {
        g_tableBackground = cloth;
        chooser = OpenClothChooser(owner.hwnd);
        if (chooser) {
            UpdateWindow(chooser);
            PumpMessages(30);
        }
        return chooser;
    }

    // The same panel, owned by the stand-in but shown without activation: under Wine without a window
    // manager an activated window costs two seconds when it goes.
    HWND Show(int32_t cloth) {
        g_tableBackground = cloth;
        chooser = CreateWindowExA(0, kClothChooserClass, "", WS_POPUP | WS_CLIPCHILDREN, 302, 234, 420, 300,
                                  owner.hwnd, nullptr, GetModuleHandleA(nullptr), nullptr);
        if (chooser) {
            SetWindowPos(chooser, HWND_TOP, 0, 0, 0, 0, SWP_SHOWWINDOW | SWP_NOACTIVATE | SWP_NOMOVE | SWP_NOSIZE);
            UpdateWindow(chooser);
            PumpMessages(30);
        }
        return chooser;
    }

    HWND Child(int id) const { return GetDlgItem(chooser, id); }
    HWND Preview() const { return Child(kClothPreviewId); }
    HWND Selector() const { return Child(kClothSelectorId); }
    int32_t Frame() const { return int32_t(SendMessageA(Preview(), PM_ANIM_GETFRAME, 0, 0)); }
    int32_t Position() const { return int32_t(SendMessageA(Selector(), PM_SCR_GETPOSITION, 0, 0)); }

    // What the settings file holds for the cloth; "none" when nothing was written.
    std::string Remembered() const {
        char value[16] = "";
        GetPrivateProfileStringA(kSettingsSection, "Tapete", "none", value, sizeof value, SettingsFilePath());
        return value;
    }
};

// What a control sends when clicked, as the chooser receives it.
void Notify(HWND control, WPARAM event = NOTIFY_CLICKED) {
    SendMessageA(GetParent(control), PM_NOTIFY, event, reinterpret_cast<LPARAM>(control));
}

RECT PlaceOf(HWND child) {
    RECT r = {};
    GetWindowRect(child, &r);
    MapWindowPoints(HWND_DESKTOP, GetParent(child), reinterpret_cast<POINT*>(&r), 2);
    return r;
}

bool Overlap(const RECT& a, const RECT& b) {
    RECT both;
    return IntersectRect(&both, &a, &b) != 0;
}

}  // namespace

TEST(ClothChooser, OpeningDisablesTheOwnerAndClosingEnablesItAgain) {
    NoActivation quiet;
    ClothFixture f;
    ASSERT_NE(f.Open(0), nullptr);
    EXPECT_FALSE(IsWindowEnabled(f.owner.hwnd));
    EXPECT_EQ(GetWindow(f.chooser, GW_OWNER), f.owner.hwnd);
    EXPECT_EQ(CurrentClothChooser(), f.chooser);
    char name[32] = "";
    GetClassNameA(f.chooser, name, sizeof name);
    EXPECT_STREQ(name, "CWNDMOSAIC");
    SendMessageA(f.chooser, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(f.chooser));
    EXPECT_TRUE(IsWindowEnabled(f.owner.hwnd));
    EXPECT_EQ(CurrentClothChooser(), nullptr);
}

TEST(ClothChooser, DestroyingThePanelDirectlyAlsoEnablesTheOwner) {
    NoActivation quiet;
    ClothFixture f;
    ASSERT_NE(f.Open(0), nullptr);
    DestroyWindow(f.chooser);
    EXPECT_TRUE(IsWindowEnabled(f.owner.hwnd));
}

TEST(ClothChooser, OpensCentredOnTheScreenAtThePanelsSize) {
    NoActivation quiet;
    ClothFixture f;
    ASSERT_NE(f.Open(0), nullptr);
    RECT r = {};
    GetWindowRect(f.chooser, &r);
    EXPECT_EQ(r.right - r.left, 420);
    EXPECT_EQ(r.bottom - r.top, 300);
    EXPECT_EQ(r.left, (1024 - 420) / 2);
    EXPECT_EQ(r.top, (768 - 300) / 2);
}

TEST(ClothChooser, OpeningAgainWhileOpenGivesTheSamePanel) {
    NoActivation quiet;
    ClothFixture f;
    ASSERT_NE(f.Open(0), nullptr);
    EXPECT_EQ(OpenClothChooser(f.owner.hwnd), f.chooser);
    DestroyWindow(f.chooser);
    EXPECT_TRUE(IsWindowEnabled(f.owner.hwnd));
}

TEST(ClothChooser, StartsFromTheTablesClothWithTheSelectorAtMinusItsIndex) {
    ClothFixture f;
    ASSERT_NE(f.Show(3), nullptr);
    EXPECT_EQ(f.Frame(), 3);
    EXPECT_EQ(SendMessageA(f.Preview(), PM_ANIM_GETROWS, 0, 0), 10);
    EXPECT_EQ(SendMessageA(f.Preview(), PM_ANIM_GETCOLUMNS, 0, 0), 1);
    HWND selector = f.Selector();
    EXPECT_EQ(f.Position(), -3);
    EXPECT_EQ(SendMessageA(selector, PM_SCR_GETMINIMUM, 0, 0), -9);
    EXPECT_EQ(SendMessageA(selector, PM_SCR_GETMAXIMUM, 0, 0), 0);
    EXPECT_EQ(SendMessageA(selector, PM_SCR_GETSTEP, 0, 0), 1);
    EXPECT_EQ(SendMessageA(selector, PM_SCR_GETEXTRA, 0, 0), 40);
    EXPECT_EQ(SendMessageA(selector, PM_SCR_GETUPPERHEIGHT, 0, 0), 37);
    EXPECT_EQ(SendMessageA(selector, PM_SCR_GETMIDDLEHEIGHT, 0, 0), 83);
    EXPECT_EQ(SendMessageA(selector, PM_SCR_GETLOWERHEIGHT, 0, 0), 39);
    // Opening only shows the cloth: nothing is written and the table keeps what it had.
    EXPECT_EQ(f.Remembered(), "none");
    EXPECT_EQ(g_tableBackground, 3);
}

TEST(ClothChooser, ControlsTakeTheirStripsAndStandInsideThePanelApart) {
    ClothFixture f;
    ASSERT_NE(f.Show(0), nullptr);
    const int ids[4] = {kClothCloseId, kClothHelpId, kClothPreviewId, kClothSelectorId};
    const char* classes[4] = {"CQMCOMMAND", "CQMANIM", "CQMANIM", "CQMSROLL"};
    const SIZE sizes[4] = {{90, 36}, {50, 50}, {100, 100}, {30, 159}};
    RECT places[4];
    RECT panel = {0, 0, 420, 300};
    for (int i = 0; i < 4; ++i) {
        HWND child = f.Child(ids[i]);
        ASSERT_NE(child, nullptr) << "control " << ids[i];
        char name[32] = "";
        GetClassNameA(child, name, sizeof name);
        EXPECT_STREQ(name, classes[i]);
        EXPECT_NE(SendMessageA(child, PM_GETIMAGE, 0, 0), 0) << name << " has its strip";
        places[i] = PlaceOf(child);
        EXPECT_EQ(places[i].right - places[i].left, sizes[i].cx) << "control " << ids[i];
        EXPECT_EQ(places[i].bottom - places[i].top, sizes[i].cy) << "control " << ids[i];
        RECT inside;
        IntersectRect(&inside, &places[i], &panel);
        EXPECT_TRUE(EqualRect(&inside, &places[i])) << "control " << ids[i] << " inside the panel";
    }
    for (int i = 0; i < 4; ++i)
        for (int j = i + 1; j < 4; ++j) EXPECT_FALSE(Overlap(places[i], places[j])) << ids[i] << " and " << ids[j];
    // The selector stands right of the preview.
    EXPECT_GE(places[3].left, places[2].right);
}

TEST(ClothChooser, PaintsThePanelWithTheBadgeCopiedAtSeventeenTen) {
    ClothFixture f;
    ASSERT_NE(f.Show(0), nullptr);
    Canvas canvas(420, 300, kUnpainted);
    SendMessageA(f.chooser, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc), PRF_CLIENT);
    EXPECT_EQ(canvas.At(17, 10), kBadgeColor);
    EXPECT_EQ(canvas.At(216, 53), kBadgeColor);
    EXPECT_EQ(canvas.At(16, 10), kPanelColor);
    EXPECT_EQ(canvas.At(17, 9), kPanelColor);
    EXPECT_EQ(canvas.At(217, 30), kPanelColor);
    EXPECT_EQ(canvas.At(100, 54), kPanelColor);
    EXPECT_EQ(canvas.At(419, 299), kPanelColor);
}

TEST(ClothChooser, ClickingThePreviewTenTimesReturnsToTheStartingClothAndTheSelectorFollowsEveryStep) {
    ClothFixture f;
    ASSERT_NE(f.Show(7), nullptr);
    for (int click = 1; click <= kCloths; ++click) {
        Notify(f.Preview());
        int expected = (7 + click) % kCloths;
        EXPECT_EQ(f.Frame(), expected) << "click " << click;
        EXPECT_EQ(f.Position(), -expected) << "click " << click;
        EXPECT_EQ(g_tableBackground, expected) << "click " << click;
        EXPECT_EQ(TableTexel(), ClothColor(expected)) << "click " << click;
    }
    EXPECT_EQ(f.Frame(), 7);
    EXPECT_EQ(f.Position(), -7);
    EXPECT_EQ(g_tableBackground, 7);
}

TEST(ClothChooser, PreviewEventsOtherThanAClickChangeNothing) {
    ClothFixture f;
    ASSERT_NE(f.Show(2), nullptr);
    for (WPARAM event : {NOTIFY_PRESSED, NOTIFY_RELEASED, NOTIFY_ENTERED, NOTIFY_LEFT, NOTIFY_SPECIAL})
        Notify(f.Preview(), event);
    EXPECT_EQ(f.Frame(), 2);
    EXPECT_EQ(f.Position(), -2);
    EXPECT_EQ(f.Remembered(), "none");
}

TEST(ClothChooser, SelectorChangeTakesTheClothMinusItsPositionAndDressesTheTable) {
    ClothFixture f;
    ASSERT_NE(f.Show(0), nullptr);
    COLORREF before = TableTexel();
    SendMessageA(f.Selector(), PM_SCR_SETPOSITION, 0, -6);
    Notify(f.Selector());
    EXPECT_EQ(g_tableBackground, 6);
    EXPECT_EQ(f.Frame(), 6);
    EXPECT_TRUE(g_tableTexture.present);
    EXPECT_EQ(TableTexel(), ClothColor(6));
    EXPECT_NE(TableTexel(), before);
}

TEST(ClothChooser, ChosenClothIsRememberedInTheSettingsFile) {
    ClothFixture f;
    ASSERT_NE(f.Show(4), nullptr);
    EXPECT_EQ(f.Remembered(), "none");
    Notify(f.Preview());
    EXPECT_EQ(f.Remembered(), "5");
    SendMessageA(f.Selector(), PM_SCR_SETPOSITION, 0, -9);
    Notify(f.Selector());
    EXPECT_EQ(f.Remembered(), "9");
    SendMessageA(f.chooser, WM_CLOSE, 0, 0);
    EXPECT_EQ(f.Remembered(), "9");
    EXPECT_EQ(g_tableBackground, 9);
}

TEST(ClothChooser, HelpButtonClickOpensTheHelpPageAndOtherEventsOnlyAnimateIt) {
    ClothFixture f;
    ASSERT_NE(f.Show(0), nullptr);
    HWND help = f.Child(kClothHelpId);
    Notify(help, NOTIFY_ENTERED);
    EXPECT_EQ(SendMessageA(help, PM_ANIM_GETUSERVALUE, 0, 0), 1) << "running towards the glow";
    EXPECT_NE(SendMessageA(help, PM_ANIM_GETRUNNING, 0, 0), 0);
    Notify(help, NOTIFY_PRESSED);
    Notify(help, NOTIFY_RELEASED);
    EXPECT_TRUE(g_shellFiles.empty());
    Notify(help, NOTIFY_CLICKED);
    ASSERT_EQ(g_shellFiles.size(), 1u);
    EXPECT_EQ(g_shellFiles[0], f.folder.path + "Help\\" + std::to_string(g_language) + "\\Index.htm");
    EXPECT_TRUE(IsWindow(f.chooser));
    EXPECT_EQ(g_tableBackground, 0);
}

TEST(ClothChooser, CloseButtonClosesThePanelAndKeepsTheCloth) {
    ClothFixture f;
    ASSERT_NE(f.Show(0), nullptr);
    EnableWindow(f.owner.hwnd, FALSE);  // as opening leaves it
    Notify(f.Preview());
    Notify(f.Child(kClothCloseId));
    EXPECT_FALSE(IsWindow(f.chooser));
    EXPECT_TRUE(IsWindowEnabled(f.owner.hwnd));
    EXPECT_EQ(g_tableBackground, 1);
    EXPECT_EQ(TableTexel(), ClothColor(1));
}

TEST(ClothChooser, PressOnTheBackgroundDragsThePanelWithThePointer) {
    ClothFixture f;
    ASSERT_NE(f.Show(0), nullptr);
    RECT before = {}, after = {};
    GetWindowRect(f.chooser, &before);
    SendMessageA(f.chooser, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(60, 150));
    EXPECT_EQ(GetCapture(), f.chooser);
    SendMessageA(f.chooser, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(80, 140));
    // Client points: after the first move the pointer stands at (60, 150) + (20, -10) + (70, 165).
    SendMessageA(f.chooser, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(70, 165));
    SendMessageA(f.chooser, WM_LBUTTONUP, 0, MAKELPARAM(70, 165));
    GetWindowRect(f.chooser, &after);
    EXPECT_EQ(after.left - before.left, 30);
    EXPECT_EQ(after.top - before.top, 5);
    EXPECT_EQ(after.right - after.left, 420);
    EXPECT_EQ(after.bottom - after.top, 300);
    EXPECT_NE(GetCapture(), f.chooser);
    SendMessageA(f.chooser, WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));  // no longer following
    RECT still = {};
    GetWindowRect(f.chooser, &still);
    EXPECT_EQ(still.left, after.left);
    EXPECT_EQ(still.top, after.top);
}

TEST(ClothChooser, CaptureTakenElsewhereEndsTheDrag) {
    ClothFixture f;
    ASSERT_NE(f.Show(0), nullptr);
    SendMessageA(f.chooser, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(60, 150));
    SetCapture(f.owner.hwnd);
    ReleaseCapture();
    RECT before = {}, after = {};
    GetWindowRect(f.chooser, &before);
    SendMessageA(f.chooser, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(90, 170));
    GetWindowRect(f.chooser, &after);
    EXPECT_EQ(after.left, before.left);
    EXPECT_EQ(after.top, before.top);
}

TEST(ClothChooser, PaletteMessagesFromAnotherWindowRepaintThePanel) {
    ClothFixture f;
    ASSERT_NE(f.Show(0), nullptr);
    RECT update = {};
    ValidateRect(f.chooser, nullptr);
    SendMessageA(f.chooser, WM_PALETTECHANGED, reinterpret_cast<WPARAM>(f.chooser), 0);
    EXPECT_FALSE(GetUpdateRect(f.chooser, &update, FALSE)) << "its own palette change is not repainted";
    SendMessageA(f.chooser, WM_PALETTECHANGED, reinterpret_cast<WPARAM>(f.owner.hwnd), 0);
    EXPECT_TRUE(GetUpdateRect(f.chooser, &update, FALSE));
    EXPECT_EQ(update.right - update.left, 420);
    ValidateRect(f.chooser, nullptr);
    SendMessageA(f.chooser, WM_QUERYNEWPALETTE, 0, 0);
    EXPECT_TRUE(GetUpdateRect(f.chooser, &update, FALSE));
}

// ---- The selector's buttons, pressed with the real pointer ----

namespace {

// Client y inside the selector's upper and lower zones (37 and 39 high around an 83 middle).
constexpr int kUpperZoneY = 18;
constexpr int kLowerZoneY = 37 + 83 + 19;

void ClickSelectorZone(HWND selector, int y) {
    PointerToClient(selector, 15, y - 12);  // real movement first, so the control sees the pointer arrive
    PointerToClient(selector, 15, y);
    LeftDown();
    LeftUp();
    PumpMessages(50);
}

}  // namespace

TEST(PointerClothChooser, LowerButtonGoesToTheNextClothAndUpperBackToThePrevious) {
    PointerLock lock;
    ClothFixture f;
    ASSERT_NE(f.Show(0), nullptr);
    COLORREF before = TableTexel();
    ClickSelectorZone(f.Selector(), kLowerZoneY);
    EXPECT_EQ(f.Position(), -1);
    EXPECT_EQ(f.Frame(), 1);
    EXPECT_EQ(g_tableBackground, 1);
    EXPECT_EQ(TableTexel(), ClothColor(1));
    EXPECT_NE(TableTexel(), before);
    EXPECT_EQ(f.Remembered(), "1");
    ClickSelectorZone(f.Selector(), kUpperZoneY);
    EXPECT_EQ(f.Position(), 0);
    EXPECT_EQ(f.Frame(), 0);
    EXPECT_EQ(g_tableBackground, 0);
    EXPECT_EQ(TableTexel(), ClothColor(0));
}

TEST(PointerClothChooser, AtTheTopTheUpperButtonDoesNothingAtTheBottomTheLowerDoesNothing) {
    PointerLock lock;
    {
        ClothFixture f;
        ASSERT_NE(f.Show(0), nullptr);
        ClickSelectorZone(f.Selector(), kUpperZoneY);
        EXPECT_EQ(f.Position(), 0);
        EXPECT_EQ(f.Frame(), 0);
        EXPECT_EQ(g_tableBackground, 0);
        EXPECT_EQ(f.Remembered(), "none") << "the cloth was not changed again";
    }
    {
        ClothFixture f;
        ASSERT_NE(f.Show(9), nullptr);
        ClickSelectorZone(f.Selector(), kLowerZoneY);
        EXPECT_EQ(f.Position(), -9);
        EXPECT_EQ(f.Frame(), 9);
        EXPECT_EQ(g_tableBackground, 9);
        EXPECT_EQ(f.Remembered(), "none") << "the cloth was not changed again";
    }
}

// ---- Closing hands the foreground back to the main window ----

TEST(ForegroundClothChooser, ClosingBringsTheMainWindowToTheForeground) {
    ClothFixture f;
    ASSERT_NE(f.Open(0), nullptr);
    g_mainWindow = f.owner.hwnd;
    SetForegroundWindow(f.chooser);
    PumpMessages(30);
    SendMessageA(f.chooser, WM_CLOSE, 0, 0);
    PumpMessages(30);
    EXPECT_FALSE(IsWindow(f.chooser));
    EXPECT_EQ(GetForegroundWindow(), f.owner.hwnd);
    g_mainWindow = nullptr;
}
