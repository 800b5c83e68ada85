// `CWNDINFO`, `CWNDBUTTONINFO` and `CWNDPREVIEWINFO`: the gallery's picture buttons over "Image\*.bmp",
// its pages of fifteen, the hover frame, a picture opening the picture window, its buttons; the
// information text's pages, lines, page buttons, print and close buttons.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/art_ids.h"
#include "app/theme.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "extras/gallery_rules.h"
#include "extras/info_text.h"
#include "extras/info_win32.h"
#include "gfx/dib.h"
#include "gfx/file_list.h"
#include "gfx/pack.h"
#include "gfx/pack_writer.h"
#include "message_log_win32.h"
#include "setup/picture_fit.h"
#include "setup/picture_window_win32.h"
#include "win32_support.h"

namespace {

constexpr int kScreenWidth = 1024;
constexpr int kScreenHeight = 768;
constexpr int kPanelLeft = (kScreenWidth - 800) / 2;
constexpr int kPanelTop = (kScreenHeight - 600) / 2;
const COLORREF kGalleryPanelColour = RGB(120, 100, 80);
const COLORREF kTextPanelColour = RGB(240, 230, 200);
const COLORREF kBlack = RGB(0, 0, 0);
const COLORREF kUnpainted = RGB(1, 2, 3);
const COLORREF kHighlight = COLORREF(kSelectedTextColor);

// The colour of picture number n ("Pic07.bmp" is number 7).
COLORREF PictureColour(int n) { return RGB(10 + 7 * n, 240 - 6 * n, 100 + 3 * n); }

int g_printCalls = 0;
HWND g_printOwner = nullptr;
std::string g_printPath;
void RecordPrint(HWND owner, const char* path) {
    ++g_printCalls;
    g_printOwner = owner;
    g_printPath = path ? path : "<null>";
}

std::string ClassOf(HWND hwnd) {
    char name[64] = {};
    GetClassNameA(hwnd, name, sizeof name);
    return name;
}

RECT ChildRect(HWND parent, HWND child) {
    RECT r = {};
    GetWindowRect(child, &r);
    MapWindowPoints(HWND_DESKTOP, parent, reinterpret_cast<POINT*>(&r), 2);
    return r;
}

// A program folder with an image folder, a pack with the screens' pictures, the globals they read and
// a stand-in owner. Restores what it changed; closes whatever the test left open.
struct InfoFixture {
    NoActivation quiet;
    TempFolder folder;
    char savedFolder[kPathCapacity];
    int32_t savedWidth, savedHeight;
    PrintFunction savedPrint;
    std::vector<uint8_t*> packItems;
    TestWindow owner{20, 20, 60, 40};
    HWND screen = nullptr;

    InfoFixture() : savedWidth(g_screenWidth), savedHeight(g_screenHeight), savedPrint(g_printWithWaitWindow) {
        std::memcpy(savedFolder, g_appFolder, sizeof savedFolder);
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s", folder.path.c_str());
        CreateDirectoryA(folder.File("Image").c_str(), nullptr);
        HINSTANCE instance = GetModuleHandleA(nullptr);
        EnsureControlClasses();
        RegisterPictureWindowClass(instance);
        RegisterInfoClasses(instance);
        g_screenWidth = kScreenWidth;
        g_screenHeight = kScreenHeight;
        g_printWithWaitWindow = RecordPrint;
        g_printCalls = 0;
        g_printOwner = nullptr;
        g_printPath.clear();
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        auto add = [&](uint32_t id, uint8_t* dib) {
            packItems.push_back(dib);
            items.emplace_back(id, dib);
        };
        add(kArtBackdropTile, MakeSolidDib(80, 80, RGB(30, 90, 40)));
        add(kArtPictureFrame, MakeSolidDib(800, 600, RGB(200, 180, 140)));
        add(kArtGalleryPanel, MakeSolidDib(800, 600, kGalleryPanelColour));
        add(kArtInfoTextPanel, MakeSolidDib(800, 600, kTextPanelColour));
        for (uint32_t anim : {kArtPrintButton, kArtCloseAnimButton, kArtGalleryInfoButton, kArtGalleryNextButton,
                              kArtGalleryPreviousButton})
            add(anim, MakeDib24(500, 50, [anim](int x, int) { return RGB(x / 50 * 20, anim % 200, 90); }));
        for (uint32_t strip : {kArtInfoNextPageButton, kArtInfoPreviousPageButton})
            add(strip, MakeFrameStrip(60, 36, {RGB(90, 0, 0), RGB(120, 0, 0), RGB(150, 0, 0)}));
        std::string path = folder.File("Tavirel.rf");
        EXPECT_TRUE(WriteTestPack(path, items));
        EXPECT_FALSE(IsPackOpen(&g_pack));
        EXPECT_TRUE(OpenPack(&g_pack, path.c_str()));
    }
    ~InfoFixture() {
        if (HWND picture = CurrentPictureWindow()) DestroyWindow(picture);
        if (screen && IsWindow(screen)) DestroyWindow(screen);  // its owned screens go with it
        FlushMessages();
        ClosePack(&g_pack);
        for (uint8_t* item : packItems) FreePackedDib(item);
        g_printWithWaitWindow = savedPrint;
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
        g_pictureTitle[0] = 0;
        g_pictureTitlePending = false;
        std::memcpy(g_appFolder, savedFolder, sizeof savedFolder);
    }

    // "Pic01.bmp" .. in their own colours, width x height each.
    void AddPictures(int count, int width = 40, int height = 30) {
        for (int n = 1; n <= count; ++n) {
            char name[32];
            std::snprintf(name, sizeof name, "Image\\Pic%02d.bmp", n);
            uint8_t* dib = MakeSolidDib(width, height, PictureColour(n));
            EXPECT_TRUE(WriteDibAsBmp(folder.File(name).c_str(), dib));
            FreePackedDib(dib);
        }
    }

    // The names in the order the folder gives them, as the gallery lists them.
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        FileNameList list;
        InitFileNameList(&list);
        std::string pattern = folder.File("Image\\*.bmp");
        if (FillFileNameList(&list, pattern.c_str()))
            for (int32_t i = 0; i < list.count; ++i) {
                char name[256];
                FileNameAt(&list, i, true, name, sizeof name);
                names.push_back(name);
            }
        FreeFileNameList(&list);
        return names;
    }

    // A screen as its class builds it, kept hidden. A little smaller than the screen: Wine hands a popup
    // that covers the screen to the window manager the moment it is made, and one that was ever handed
    // over costs two seconds when it is destroyed after being shown.
    HWND Build(const char* className) {
        screen = CreateWindowExA(0, className, "", WS_POPUP | WS_CLIPCHILDREN, 0, 0, kScreenWidth - 24,
                                 kScreenHeight - 24, owner.hwnd, nullptr, GetModuleHandleA(nullptr), nullptr);
        return screen;
    }
    HWND OpenGalleryScreen() { return Build(kGalleryClass); }
    // Shown without activation under every other window (so that it covers no other test's window): it
    // then keeps an update region.
    void ShowQuietly() {
        SetWindowPos(screen, HWND_BOTTOM, 0, 0, 0, 0,
                     SWP_SHOWWINDOW | SWP_NOACTIVATE | SWP_NOOWNERZORDER | SWP_NOMOVE | SWP_NOSIZE);
        UpdateWindow(screen);
        FlushMessages();
    }
    HWND OpenInfoScreen() { return Build(kInfoTextClass); }

    HWND Child(int id) const { return GetDlgItem(screen, id); }
    HWND PictureButton(int k) const { return Child(kGalleryFirstPictureId + k); }
    int32_t First() const { return int32_t(SendMessageA(screen, PM_GALLERY_GETFIRST, 0, 0)); }
    const uint8_t* Thumbnail(int k) const {
        return reinterpret_cast<const uint8_t*>(SendMessageA(PictureButton(k), PM_GETIMAGE, 0, 0));
    }
    void Click(int id) { SendMessageA(screen, PM_NOTIFY, NOTIFY_CLICKED, reinterpret_cast<LPARAM>(Child(id))); }
    void Notify(int id, WPARAM event) { SendMessageA(screen, PM_NOTIFY, event, reinterpret_cast<LPARAM>(Child(id))); }

    // The colour in the middle of button k's thumbnail.
    COLORREF ThumbnailColour(int k) const {
        const uint8_t* thumbnail = Thumbnail(k);
        if (!thumbnail) return kUnpainted;
        const DibHeader* h = DibHeaderOf(thumbnail);
        return COLORREF(DibAt(thumbnail, h->biWidth / 2, h->biHeight / 2));
    }

    // Every button shows picture first + k of the folder's list, or nothing past its end.
    void ExpectPage(int32_t first) {
        std::vector<std::string> names = Names();
        for (int k = 0; k < kGalleryPageSize; ++k) {
            size_t picture = size_t(first + k);
            if (picture >= names.size()) {
                EXPECT_EQ(Thumbnail(k), nullptr) << "button " << k;
                continue;
            }
            EXPECT_EQ(ThumbnailColour(k), PictureColour(PictureNumberOfPath(names[picture].c_str())))
                << "button " << k << " should show " << names[picture];
        }
    }

    void PaintInto(HWND window, Canvas& canvas) {
        SendMessageA(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc), PRF_CLIENT);
    }

    bool HasUpdate() const { return GetUpdateRect(screen, nullptr, FALSE) != FALSE; }
    bool Shown(int id) const { return (GetWindowLongPtrA(Child(id), GWL_STYLE) & WS_VISIBLE) != 0; }
};

// What the backdrop shows at (x, y) of a socket width x height sunk into a panel of one colour.
COLORREF SocketPixel(COLORREF panel, int32_t width, int32_t height, int32_t x, int32_t y) {
    std::vector<uint8_t> pixels(size_t(width) * size_t(height) * 4);
    for (size_t i = 0; i < pixels.size(); i += 4) {
        pixels[i] = GetBValue(panel);
        pixels[i + 1] = GetGValue(panel);
        pixels[i + 2] = GetRValue(panel);
    }
    ShadeButtonSocket(pixels.data(), width, height, width * 4);
    const uint8_t* p = &pixels[(size_t(y) * size_t(width) + size_t(x)) * 4];
    return RGB(p[2], p[1], p[0]);
}

// A button of width x height at place on the panel stands in a socket: the margin round it is shaded,
// the panel beyond it is not.
void ExpectSocket(const Canvas& canvas, COLORREF panel, PanelPlace place, int32_t width, int32_t height,
                  const char* what) {
    const int m = kButtonSocketMargin;
    int left = kPanelLeft + place.x, top = kPanelTop + place.y;
    COLORREF side = SocketPixel(panel, width + 2 * m, height + 2 * m, m / 2, m + height / 2);
    EXPECT_NE(side, panel) << what;
    EXPECT_EQ(canvas.At(left - m / 2, top + height / 2), side) << what << ": left margin";
    EXPECT_EQ(canvas.At(left + width + m / 2, top + height / 2), side) << what << ": right margin";
    EXPECT_EQ(canvas.At(left + width / 2, top - m / 2), side) << what << ": top margin";
    EXPECT_EQ(canvas.At(left + width / 2, top + height + m / 2), side) << what << ": bottom margin";
    EXPECT_EQ(canvas.At(left - m - 2, top + height / 2), panel) << what << ": beyond the socket";
    EXPECT_EQ(canvas.At(left + width / 2, top + height + m + 2), panel) << what << ": below the socket";
}

// Ink of the text: black, or the dark grey of a smoothed glyph edge, never the light panel.
bool IsInk(COLORREF c) { return GetRValue(c) < 128 && GetGValue(c) < 128 && GetBValue(c) < 128; }

// The owned screen of a class, if one is open.
HWND OwnedScreen(HWND owner, const char* className) {
    HWND found = FindWindowExA(nullptr, nullptr, className, nullptr);
    while (found && GetWindow(found, GW_OWNER) != owner) found = FindWindowExA(nullptr, found, className, nullptr);
    return found;
}

}  // namespace

// ---- The gallery ----

TEST(GalleryScreen, OpensFullScreenOverItsOwnerWhichItDisables) {
    InfoFixture f;
    f.AddPictures(3);
    f.screen = OpenGallery(f.owner.hwnd);
    ASSERT_NE(f.screen, nullptr);
    EXPECT_EQ(ClassOf(f.screen), "CWNDINFO");
    EXPECT_EQ(GetWindow(f.screen, GW_OWNER), f.owner.hwnd);
    DWORD style = DWORD(GetWindowLongPtrA(f.screen, GWL_STYLE));
    EXPECT_EQ(style & (WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME),
              DWORD(WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME));
    POINT origin = {0, 0};
    ClientToScreen(f.screen, &origin);
    EXPECT_EQ(origin.x, 0);
    EXPECT_EQ(origin.y, 0);
    EXPECT_FALSE(IsWindowEnabled(f.owner.hwnd));
}

TEST(GalleryScreen, PanelIsDrawnCentredOnTheScreen) {
    InfoFixture f;
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(f.screen, canvas);
    EXPECT_EQ(canvas.At(kPanelLeft, kPanelTop), kGalleryPanelColour);
    EXPECT_EQ(canvas.At(kPanelLeft + 799, kPanelTop + 599), kGalleryPanelColour);
    EXPECT_EQ(canvas.At(kPanelLeft - 1, kPanelTop), RGB(30, 90, 40));
    EXPECT_EQ(canvas.At(kPanelLeft + 800, kPanelTop + 599), RGB(30, 90, 40));
}

TEST(GalleryScreen, FifteenPictureButtonsStandOnTheWells) {
    InfoFixture f;
    f.AddPictures(3);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    for (int k = 0; k < kGalleryPageSize; ++k) {
        HWND button = f.PictureButton(k);
        ASSERT_NE(button, nullptr) << k;
        EXPECT_EQ(ClassOf(button), "CWNDBUTTONINFO");
        RECT r = ChildRect(f.screen, button);
        PanelPlace well = GalleryWellPlace(k);
        EXPECT_EQ(r.left, kPanelLeft + well.x) << k;
        EXPECT_EQ(r.top, kPanelTop + well.y) << k;
        EXPECT_EQ(r.right - r.left, kGalleryWellSide) << k;
        EXPECT_EQ(r.bottom - r.top, kGalleryWellSide) << k;
    }
    EXPECT_EQ(f.PictureButton(kGalleryPageSize), nullptr);
}

TEST(GalleryScreen, CloseInfoNextAndPreviousAreAnimatedButtonsBelowTheWells) {
    InfoFixture f;
    f.AddPictures(20);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    const struct {
        int id;
        PanelPlace place;
    } buttons[] = {{kGalleryCloseId, kGalleryClosePlace},
                   {kGalleryInfoId, kGalleryInfoPlace},
                   {kGalleryNextId, kGalleryNextPlace},
                   {kGalleryPreviousId, kGalleryPreviousPlace}};
    for (const auto& b : buttons) {
        HWND button = f.Child(b.id);
        ASSERT_NE(button, nullptr) << b.id;
        EXPECT_EQ(ClassOf(button), "CQMANIM");
        RECT r = ChildRect(f.screen, button);
        EXPECT_EQ(r.left, kPanelLeft + b.place.x) << b.id;
        EXPECT_EQ(r.top, kPanelTop + b.place.y) << b.id;
        EXPECT_EQ(r.right - r.left, 50);
        EXPECT_NE(SendMessageA(button, PM_GETIMAGE, 0, 0), 0) << b.id;
        EXPECT_TRUE(f.Shown(b.id)) << b.id;
    }
}

TEST(GalleryScreen, PageArrowsAreHiddenWhenOnePageHoldsEveryPicture) {
    InfoFixture f;
    f.AddPictures(15);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    ASSERT_NE(f.Child(kGalleryNextId), nullptr);
    ASSERT_NE(f.Child(kGalleryPreviousId), nullptr);
    EXPECT_FALSE(f.Shown(kGalleryNextId));
    EXPECT_FALSE(f.Shown(kGalleryPreviousId));
    EXPECT_TRUE(f.Shown(kGalleryCloseId));
    EXPECT_TRUE(f.Shown(kGalleryInfoId));
}

TEST(GalleryScreen, VisibleButtonsStandInSocketsSunkIntoThePanel) {
    InfoFixture f;
    f.AddPictures(20);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(f.screen, canvas);
    ExpectSocket(canvas, kGalleryPanelColour, kGalleryClosePlace, 50, 50, "close");
    ExpectSocket(canvas, kGalleryPanelColour, kGalleryInfoPlace, 50, 50, "info");
    ExpectSocket(canvas, kGalleryPanelColour, kGalleryNextPlace, 50, 50, "next");
    ExpectSocket(canvas, kGalleryPanelColour, kGalleryPreviousPlace, 50, 50, "previous");
}

TEST(GalleryScreen, HiddenPageArrowsLeaveNoSockets) {
    InfoFixture f;
    f.AddPictures(3);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(f.screen, canvas);
    for (PanelPlace place : {kGalleryNextPlace, kGalleryPreviousPlace})
        for (int y = place.y - kButtonSocketMargin; y < place.y + 50 + kButtonSocketMargin; y += 3)
            for (int x = place.x - kButtonSocketMargin; x < place.x + 50 + kButtonSocketMargin; x += 3)
                ASSERT_EQ(canvas.At(kPanelLeft + x, kPanelTop + y), kGalleryPanelColour) << x << "," << y;
}

TEST(GalleryScreen, ButtonsShowThumbnailsOfTheFirstFifteenPictures) {
    InfoFixture f;
    f.AddPictures(20);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    EXPECT_EQ(SendMessageA(f.screen, PM_GALLERY_GETCOUNT, 0, 0), 20);
    EXPECT_EQ(f.First(), 0);
    f.ExpectPage(0);
}

TEST(GalleryScreen, ButtonsPastTheEndOfTheListAreEmpty) {
    InfoFixture f;
    f.AddPictures(11);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    f.ExpectPage(0);
    for (int k = 11; k < kGalleryPageSize; ++k) EXPECT_EQ(f.Thumbnail(k), nullptr) << k;
}

TEST(GalleryScreen, ThumbnailsAreReadFittedIntoTheWell) {
    InfoFixture f;
    f.AddPictures(1, 200, 100);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    const uint8_t* thumbnail = f.Thumbnail(0);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(DibHeaderOf(thumbnail)->biWidth, kGalleryThumbnailSide);
    EXPECT_EQ(DibHeaderOf(thumbnail)->biHeight, kGalleryThumbnailSide / 2);
    EXPECT_EQ(DibHeaderOf(thumbnail)->biBitCount, 24);
}

TEST(GalleryScreen, MissingImageFolderGivesAnEmptyGallery) {
    InfoFixture f;
    RemoveDirectoryA(f.folder.File("Image").c_str());
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    EXPECT_EQ(SendMessageA(f.screen, PM_GALLERY_GETCOUNT, 0, 0), 0);
    for (int k = 0; k < kGalleryPageSize; ++k) EXPECT_EQ(f.Thumbnail(k), nullptr) << k;
}

TEST(GalleryScreen, NextShowsTheFollowingFifteen) {
    InfoFixture f;
    f.AddPictures(20);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    f.Click(kGalleryNextId);
    EXPECT_EQ(f.First(), 15);
    f.ExpectPage(15);
    for (int k = 5; k < kGalleryPageSize; ++k) EXPECT_EQ(f.Thumbnail(k), nullptr) << k;
}

TEST(GalleryScreen, NextOnTheLastPageDoesNothing) {
    InfoFixture f;
    f.AddPictures(20);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    f.Click(kGalleryNextId);
    const uint8_t* before = f.Thumbnail(0);
    f.Click(kGalleryNextId);
    EXPECT_EQ(f.First(), 15);
    EXPECT_EQ(f.Thumbnail(0), before);  // not even refilled
    f.ExpectPage(15);
}

TEST(GalleryScreen, NextWithExactlyFifteenPicturesDoesNothing) {
    InfoFixture f;
    f.AddPictures(15);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    f.Click(kGalleryNextId);
    EXPECT_EQ(f.First(), 0);
    f.ExpectPage(0);
}

TEST(GalleryScreen, PreviousGoesBackFifteen) {
    InfoFixture f;
    f.AddPictures(20);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    f.Click(kGalleryNextId);
    f.Click(kGalleryPreviousId);
    EXPECT_EQ(f.First(), 0);
    f.ExpectPage(0);
}

TEST(GalleryScreen, PreviousOnTheFirstPageDoesNothing) {
    InfoFixture f;
    f.AddPictures(20);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    const uint8_t* before = f.Thumbnail(0);
    f.Click(kGalleryPreviousId);
    EXPECT_EQ(f.First(), 0);
    EXPECT_EQ(f.Thumbnail(0), before);
}

TEST(GalleryScreen, HoverDrawsATwoPixelFrameAroundTheThumbnail) {
    InfoFixture f;
    f.AddPictures(1);  // 40 x 30: a 104 x 78 thumbnail at (6, 19) in its 116 x 116 well
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    HWND button = f.PictureButton(0);
    const int left = 6, top = 19, right = 6 + 104, bottom = 19 + 78;
    Canvas calm(kGalleryWellSide, kGalleryWellSide, kUnpainted);
    f.PaintInto(button, calm);
    EXPECT_EQ(calm.At(left - 1, 50), kGalleryPanelColour);
    EXPECT_EQ(calm.At(left, 50), PictureColour(1));

    SendMessageA(button, WM_MOUSEMOVE, 0, MAKELPARAM(50, 50));
    EXPECT_EQ(SendMessageA(button, PM_PICTUREBUTTON_GETHOVER, 0, 0), 1);
    Canvas lit(kGalleryWellSide, kGalleryWellSide, kUnpainted);
    f.PaintInto(button, lit);
    for (int y = top; y < bottom; y += 7) {
        EXPECT_EQ(lit.At(left - 3, y), kGalleryPanelColour) << y;
        EXPECT_EQ(lit.At(left - 2, y), kHighlight) << y;
        EXPECT_EQ(lit.At(left - 1, y), kHighlight) << y;
        EXPECT_EQ(lit.At(left, y), PictureColour(1)) << y;
        EXPECT_EQ(lit.At(right - 1, y), PictureColour(1)) << y;
        EXPECT_EQ(lit.At(right, y), kHighlight) << y;
        EXPECT_EQ(lit.At(right + 1, y), kHighlight) << y;
        EXPECT_EQ(lit.At(right + 2, y), kGalleryPanelColour) << y;
    }
    for (int x = left; x < right; x += 9) {
        EXPECT_EQ(lit.At(x, top - 3), kGalleryPanelColour) << x;
        EXPECT_EQ(lit.At(x, top - 2), kHighlight) << x;
        EXPECT_EQ(lit.At(x, top - 1), kHighlight) << x;
        EXPECT_EQ(lit.At(x, bottom), kHighlight) << x;
        EXPECT_EQ(lit.At(x, bottom + 1), kHighlight) << x;
        EXPECT_EQ(lit.At(x, bottom + 2), kGalleryPanelColour) << x;
    }

    SendMessageA(button, WM_MOUSELEAVE, 0, 0);
    EXPECT_EQ(SendMessageA(button, PM_PICTUREBUTTON_GETHOVER, 0, 0), 0);
    Canvas left_(kGalleryWellSide, kGalleryWellSide, kUnpainted);
    f.PaintInto(button, left_);
    EXPECT_EQ(left_.Snapshot(), calm.Snapshot());
}

TEST(GalleryScreen, ClickOnAPictureOpensThePictureWindowOnItsFile) {
    InfoFixture f;
    f.AddPictures(5);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    std::vector<std::string> names = f.Names();
    ASSERT_EQ(names.size(), 5u);
    std::snprintf(g_pictureTitle, sizeof g_pictureTitle, "%s", "A stale title.");
    g_pictureTitlePending = false;
    HWND button = f.PictureButton(3);
    SendMessageA(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 50));
    SendMessageA(button, WM_LBUTTONUP, 0, MAKELPARAM(50, 50));
    HWND picture = CurrentPictureWindow();
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(GetWindow(picture, GW_OWNER), f.screen);
    EXPECT_FALSE(IsWindowEnabled(f.screen));
    // The title: string 5000 + the number the name ends in, drawn on the picture window's first paint.
    char expected[kPictureTitleCapacity] = "";
    LoadStringA(GetModuleHandleA(nullptr), UINT(kStrPictureTitle + PictureNumberOfPath(names[3].c_str())), expected,
                sizeof expected);
    EXPECT_STREQ(g_pictureTitle, expected);
    EXPECT_TRUE(g_pictureTitlePending);
    // The file "Image\" + name + ".bmp", which is also what its print button prints.
    HWND print = GetDlgItem(picture, kPicturePrintButtonId);
    SendMessageA(picture, PM_NOTIFY, NOTIFY_CLICKED, reinterpret_cast<LPARAM>(print));
    EXPECT_EQ(g_printPath, f.folder.path + "Image\\" + names[3] + ".bmp");
    DestroyWindow(picture);
    EXPECT_TRUE(IsWindowEnabled(f.screen));
}

TEST(GalleryScreen, ReleaseOffThePictureOpensNothing) {
    InfoFixture f;
    f.AddPictures(5);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    HWND button = f.PictureButton(0);
    SendMessageA(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 50));
    SendMessageA(button, WM_LBUTTONUP, 0, MAKELPARAM(200, 50));
    EXPECT_EQ(CurrentPictureWindow(), nullptr);
}

TEST(GalleryScreen, ClickOnAnEmptyButtonOpensNothing) {
    InfoFixture f;
    f.AddPictures(2);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    HWND button = f.PictureButton(7);
    SendMessageA(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 50));
    SendMessageA(button, WM_LBUTTONUP, 0, MAKELPARAM(50, 50));
    EXPECT_EQ(CurrentPictureWindow(), nullptr);
    EXPECT_TRUE(IsWindowEnabled(f.screen));
}

TEST(GalleryScreen, InfoButtonOpensTheInformationTextOverTheGallery) {
    InfoFixture f;
    f.AddPictures(2);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    f.Click(kGalleryInfoId);
    HWND info = OwnedScreen(f.screen, kInfoTextClass);
    ASSERT_NE(info, nullptr);
    EXPECT_FALSE(IsWindowEnabled(f.screen));
    DestroyWindow(info);
    EXPECT_TRUE(IsWindowEnabled(f.screen));
}

TEST(GalleryScreen, CloseButtonClosesTheGalleryAndEnablesItsOwner) {
    InfoFixture f;
    f.AddPictures(2);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    f.Click(kGalleryCloseId);
    EXPECT_FALSE(IsWindow(f.screen));
    EXPECT_TRUE(IsWindowEnabled(f.owner.hwnd));
}

TEST(GalleryScreen, EscapeClosesTheGallery) {
    InfoFixture f;
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    SendMessageA(f.screen, WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_FALSE(IsWindow(f.screen));
    EXPECT_TRUE(IsWindowEnabled(f.owner.hwnd));
}

TEST(GalleryScreen, ButtonEventsGoToTheSharedAnimatedFeedback) {
    InfoFixture f;
    f.AddPictures(20);
    ASSERT_NE(f.OpenGalleryScreen(), nullptr);
    for (int id : {kGalleryCloseId, kGalleryInfoId, kGalleryNextId, kGalleryPreviousId}) {
        f.Notify(id, NOTIFY_PRESSED);
        EXPECT_EQ(SendMessageA(f.Child(id), PM_ANIM_GETFRAME, 0, 0), kButtonGlowFrame) << id;
    }
    EXPECT_TRUE(IsWindow(f.screen));
    EXPECT_EQ(f.First(), 0);
}

// ---- The information text ----

TEST(InfoTextScreen, OpensFullScreenOverItsOwnerWhichItDisables) {
    InfoFixture f;
    f.screen = OpenInfoText(f.owner.hwnd);
    ASSERT_NE(f.screen, nullptr);
    EXPECT_EQ(ClassOf(f.screen), "CWNDPREVIEWINFO");
    EXPECT_EQ(GetWindow(f.screen, GW_OWNER), f.owner.hwnd);
    DWORD style = DWORD(GetWindowLongPtrA(f.screen, GWL_STYLE));
    EXPECT_EQ(style & (WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME),
              DWORD(WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME));
    POINT origin = {0, 0};
    ClientToScreen(f.screen, &origin);
    EXPECT_EQ(origin.x, 0);
    EXPECT_EQ(origin.y, 0);
    EXPECT_FALSE(IsWindowEnabled(f.owner.hwnd));
}

TEST(InfoTextScreen, BuildingResetsThePageToZero) {
    InfoFixture f;
    g_infoPage = 1;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    EXPECT_EQ(g_infoPage, 0);
    EXPECT_EQ(ClassOf(f.screen), "CWNDPREVIEWINFO");
    EXPECT_EQ(GetWindow(f.screen, GW_OWNER), f.owner.hwnd);
    EXPECT_FALSE(IsWindowEnabled(f.owner.hwnd));
}

TEST(InfoTextScreen, ButtonsStandAtTheirPlacesOnThePanel) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    const struct {
        int id;
        const char* className;
        PanelPlace place;
        int width, height;
    } buttons[] = {{kInfoCloseId, "CQMANIM", kInfoClosePlace, 50, 50},
                   {kInfoPrintId, "CQMANIM", kInfoPrintPlace, 50, 50},
                   {kInfoNextPageId, "CQMCOMMAND", kInfoNextPlace, 60, 36},
                   {kInfoPreviousPageId, "CQMCOMMAND", kInfoPreviousPlace, 60, 36}};
    EXPECT_EQ(kInfoClosePlace.x, 669);
    EXPECT_EQ(kInfoPrintPlace.x, 590);
    EXPECT_EQ(kInfoNextPlace.x, 430);
    EXPECT_EQ(kInfoPreviousPlace.x, 350);
    for (const auto& b : buttons) {
        HWND button = f.Child(b.id);
        ASSERT_NE(button, nullptr) << b.id;
        EXPECT_EQ(ClassOf(button), b.className) << b.id;
        RECT r = ChildRect(f.screen, button);
        EXPECT_EQ(r.left, kPanelLeft + b.place.x) << b.id;
        EXPECT_EQ(r.top, kPanelTop + b.place.y) << b.id;
        EXPECT_EQ(r.right - r.left, b.width) << b.id;
        EXPECT_EQ(r.bottom - r.top, b.height) << b.id;
    }
}

TEST(InfoTextScreen, ButtonsStandInSocketsSunkIntoThePanel) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(f.screen, canvas);
    ExpectSocket(canvas, kTextPanelColour, kInfoClosePlace, 50, 50, "close");
    ExpectSocket(canvas, kTextPanelColour, kInfoPrintPlace, 50, 50, "print");
    ExpectSocket(canvas, kTextPanelColour, kInfoNextPlace, 60, 36, "next page");
    ExpectSocket(canvas, kTextPanelColour, kInfoPreviousPlace, 60, 36, "previous page");
}

TEST(InfoTextScreen, NextPageTurnsToPageOneAndRepaints) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    f.ShowQuietly();
    ASSERT_FALSE(f.HasUpdate());
    f.Click(kInfoNextPageId);
    EXPECT_EQ(g_infoPage, 1);
    EXPECT_TRUE(f.HasUpdate());
}

TEST(InfoTextScreen, NextPageOnPageOneDoesNothing) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    f.ShowQuietly();
    f.Click(kInfoNextPageId);
    ASSERT_TRUE(f.HasUpdate());
    UpdateWindow(f.screen);
    ASSERT_FALSE(f.HasUpdate());
    f.Click(kInfoNextPageId);
    EXPECT_EQ(g_infoPage, 1);
    EXPECT_FALSE(f.HasUpdate());
}

TEST(InfoTextScreen, PreviousPageOnPageZeroDoesNothing) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    f.ShowQuietly();
    ASSERT_FALSE(f.HasUpdate());
    f.Click(kInfoPreviousPageId);
    EXPECT_EQ(g_infoPage, 0);
    EXPECT_FALSE(f.HasUpdate());
}

TEST(InfoTextScreen, PreviousPageReturnsFromPageOneToPageZero) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    f.ShowQuietly();
    f.Click(kInfoNextPageId);
    UpdateWindow(f.screen);
    ASSERT_FALSE(f.HasUpdate());
    f.Click(kInfoPreviousPageId);
    EXPECT_EQ(g_infoPage, 0);
    EXPECT_TRUE(f.HasUpdate());
}

// Each of the page's 26 lines is written from the text's left edge, at its own line place: every line's
// band holds ink starting at the left edge, and nothing is written above the first line or left of the
// edge.
TEST(InfoTextScreen, PageLinesAreWrittenInBlackOneBelowTheOther) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    const int left = InfoTextLeft(kScreenWidth), top = InfoTextTop(kScreenHeight);
    for (int page = 0; page < kInfoPageCount; ++page) {
        g_infoPage = page;
        Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
        f.PaintInto(f.screen, canvas);
        for (int line = 0; line < kInfoLinesPerPage; ++line) {
            int lineTop = InfoLineTop(top, page, line);
            // Rows of the line's lower-case letters, clear of the line above's descenders.
            int inkAt = -1;
            for (int x = left - 20; x < left + 200 && inkAt < 0; ++x)
                for (int y = lineTop + 5; y < lineTop + 11; ++y)
                    if (IsInk(canvas.At(x, y))) {
                        inkAt = x;
                        break;
                    }
            EXPECT_GE(inkAt, left) << "page " << page << " line " << line;
            EXPECT_LT(inkAt, left + 8) << "page " << page << " line " << line;  // the glyph's own bearing
        }
        // Written in black: the glyphs' stems are pure black.
        int black = 0;
        for (int y = top; y < top + 470; ++y)
            for (int x = left; x < left + 600; ++x) black += canvas.At(x, y) == kBlack;
        EXPECT_GT(black, 2000) << "page " << page;
        for (int y = kPanelTop; y < top; ++y)
            for (int x = kPanelLeft; x < kPanelLeft + 800; x += 3)
                ASSERT_FALSE(IsInk(canvas.At(x, y))) << "page " << page << " at " << x << "," << y;
        for (int y = top; y < top + 470; y += 2)
            for (int x = kPanelLeft; x < left; ++x)
                ASSERT_FALSE(IsInk(canvas.At(x, y))) << "page " << page << " at " << x << "," << y;
    }
}

// Every line, the longest included, ends before the page's right edge 600 pixels from its left edge.
TEST(InfoTextScreen, EveryLineKeepsToTheSixHundredPixelPage) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    const int left = InfoTextLeft(kScreenWidth), top = InfoTextTop(kScreenHeight);
    for (int page = 0; page < kInfoPageCount; ++page) {
        g_infoPage = page;
        Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
        f.PaintInto(f.screen, canvas);
        int rightmost = -1;
        for (int y = top; y < InfoLineTop(top, page, kInfoLinesPerPage - 1) + 20; ++y)
            for (int x = left; x < kPanelLeft + 800; ++x)
                if (IsInk(canvas.At(x, y)) && x > rightmost) rightmost = x;
        EXPECT_GT(rightmost, left + 400) << "page " << page;
        EXPECT_LT(rightmost, left + 600) << "page " << page;
    }
}

TEST(InfoTextScreen, TheTwoPagesShowDifferentText) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    Canvas first(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(f.screen, first);
    f.Click(kInfoNextPageId);
    Canvas second(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(f.screen, second);
    EXPECT_NE(first.Snapshot(), second.Snapshot());
    f.Click(kInfoPreviousPageId);
    Canvas again(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(f.screen, again);
    EXPECT_EQ(first.Snapshot(), again.Snapshot());
}

TEST(InfoTextScreen, PrintButtonPrintsTheInformationText) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    f.Click(kInfoPrintId);
    EXPECT_EQ(g_printCalls, 1);
    EXPECT_EQ(g_printOwner, f.screen);
    EXPECT_EQ(g_printPath, "<null>");
    EXPECT_TRUE(IsWindow(f.screen));
}

TEST(InfoTextScreen, CloseButtonClosesTheScreenAndEnablesItsOwner) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    f.Click(kInfoCloseId);
    EXPECT_FALSE(IsWindow(f.screen));
    EXPECT_TRUE(IsWindowEnabled(f.owner.hwnd));
    EXPECT_EQ(g_printCalls, 0);
}

TEST(InfoTextScreen, CloseAndPrintTakeTheSharedAnimatedFeedback) {
    InfoFixture f;
    ASSERT_NE(f.OpenInfoScreen(), nullptr);
    for (int id : {kInfoCloseId, kInfoPrintId}) {
        f.Notify(id, NOTIFY_PRESSED);
        EXPECT_EQ(SendMessageA(f.Child(id), PM_ANIM_GETFRAME, 0, 0), kButtonGlowFrame) << id;
    }
    EXPECT_TRUE(IsWindow(f.screen));
    EXPECT_EQ(g_printCalls, 0);
}
