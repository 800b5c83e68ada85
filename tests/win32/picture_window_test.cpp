// `CWNDIMGPREV`: the backdrop, the picture fitted into the 550 x 388 well, the title on the first paint
// only and its centring, the print and close buttons, closing by key and double click, the owner
// disabled while the window lives, and the dismiss function.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/art_ids.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "gfx/pack_writer.h"
#include "message_log_win32.h"
#include "setup/picture_window_win32.h"
#include "win32_support.h"

namespace {

constexpr int kScreenWidth = 1024;
constexpr int kScreenHeight = 768;
constexpr int kFrameLeft = (kScreenWidth - 800) / 2;
constexpr int kFrameTop = (kScreenHeight - 600) / 2;
const COLORREF kFrameColour = RGB(200, 180, 140);
const COLORREF kPictureColour = RGB(20, 60, 220);
const COLORREF kTitleColour = RGB(216, 146, 100);
const COLORREF kBlack = RGB(0, 0, 0);
const COLORREF kUnpainted = RGB(1, 2, 3);

// Every pixel of the felt tile has a colour of its own, so that the tiling's origin shows.
COLORREF TilePixel(int x, int y) { return RGB(40 + x, 90 + y, 30); }

int g_dismissCalls = 0;
int g_dismissValue = -1;
void RecordDismiss(uint8_t value) {
    ++g_dismissCalls;
    g_dismissValue = value;
}

int g_printCalls = 0;
HWND g_printOwner = nullptr;
std::string g_printPath;
void RecordPrint(HWND owner, const char* path) {
    ++g_printCalls;
    g_printOwner = owner;
    g_printPath = path ? path : "<null>";
}

struct Box {
    int left = -1, top = -1, right = -1, bottom = -1;  // right and bottom exclusive
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
};

// The smallest rectangle holding every pixel of the colour.
Box BoundsOf(const Canvas& canvas, COLORREF colour) {
    Box box;
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x) {
            if (canvas.At(x, y) != colour) continue;
            if (box.left < 0 || x < box.left) box.left = x;
            if (box.top < 0) box.top = y;
            if (x + 1 > box.right) box.right = x + 1;
            box.bottom = y + 1;
        }
    return box;
}

int CountIn(const Canvas& canvas, const RECT& area, COLORREF colour) {
    int count = 0;
    for (int y = area.top; y < area.bottom; ++y)
        for (int x = area.left; x < area.right; ++x) count += canvas.At(x, y) == colour;
    return count;
}

// The band across the frame where the title is written, above the picture's well.
const RECT kTitleBand = {kFrameLeft, kScreenHeight / 2 - 280, kFrameLeft + 800, kScreenHeight / 2 - 200};

// The leftmost pixel of the band that is not the frame's colour; -1 when the band is bare.
int LeftmostInk(const Canvas& canvas) {
    for (int x = kTitleBand.left; x < kTitleBand.right; ++x)
        for (int y = kTitleBand.top; y < kTitleBand.bottom; ++y)
            if (canvas.At(x, y) != kFrameColour) return x;
    return -1;
}

// A pack with the window's pictures, the program folder's globals, a stand-in owner and recorders for
// the dismiss function and printing. Restores what it changed.
struct PictureFixture {
    NoActivation quiet;
    TempFolder folder;
    int32_t savedWidth, savedHeight;
    PrintFunction savedPrint;
    std::vector<uint8_t*> packItems;
    TestWindow owner{20, 20, 60, 40};
    HWND window = nullptr;

    PictureFixture() : savedWidth(g_screenWidth), savedHeight(g_screenHeight), savedPrint(g_printWithWaitWindow) {
        EnsureControlClasses();
        RegisterPictureWindowClass(GetModuleHandleA(nullptr));
        g_screenWidth = kScreenWidth;
        g_screenHeight = kScreenHeight;
        g_printWithWaitWindow = RecordPrint;
        g_dismissCalls = 0;
        g_dismissValue = -1;
        g_printCalls = 0;
        g_printOwner = nullptr;
        g_printPath.clear();
        g_pictureTitle[0] = 0;
        g_pictureTitlePending = false;
        std::vector<std::pair<uint32_t, const uint8_t*>> items;
        auto add = [&](uint32_t id, uint8_t* dib) {
            packItems.push_back(dib);
            items.emplace_back(id, dib);
        };
        add(kArtBackdropTile, MakeDib24(80, 80, TilePixel));
        add(kArtPictureFrame, MakeSolidDib(800, 600, kFrameColour));
        add(kArtPrintButton, MakeDib24(500, 50, [](int x, int) { return RGB(x / 50 * 20, 40, 90); }));
        add(kArtCloseAnimButton, MakeDib24(500, 50, [](int x, int) { return RGB(90, x / 50 * 20, 40); }));
        std::string path = folder.File("Tavirel.rf");
        EXPECT_TRUE(WriteTestPack(path, items));
        EXPECT_FALSE(IsPackOpen(&g_pack));
        EXPECT_TRUE(OpenPack(&g_pack, path.c_str()));
    }
    ~PictureFixture() {
        if (window && IsWindow(window)) DestroyWindow(window);
        FlushMessages();
        ClosePack(&g_pack);
        for (uint8_t* item : packItems) FreePackedDib(item);
        g_printWithWaitWindow = savedPrint;
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
        g_pictureTitle[0] = 0;
        g_pictureTitlePending = false;
    }

    // A 24-bit picture file of one colour.
    std::string Picture(int width, int height, COLORREF colour = kPictureColour) {
        uint8_t* dib = MakeSolidDib(width, height, colour);
        std::string name = "photo" + std::to_string(width) + "x" + std::to_string(height) + ".bmp";
        std::string path = folder.File(name.c_str());
        EXPECT_TRUE(WriteDibAsBmp(path.c_str(), dib));
        FreePackedDib(dib);
        return path;
    }

    // The window as its class builds it from OpenPictureWindow's request, kept hidden (and smaller than
    // the screen, which Wine would hand to the window manager).
    HWND Open(const std::string& picture, bool withPrintPath) {
        PictureWindowRequest request = {picture.c_str(), RecordDismiss, withPrintPath ? picture.c_str() : nullptr};
        window = CreateWindowExA(0, kPictureWindowClass, "", WS_POPUP | WS_CLIPCHILDREN, 0, 0, kScreenWidth - 24,
                                 kScreenHeight - 24, owner.hwnd, nullptr, GetModuleHandleA(nullptr), &request);
        return window;
    }

    // The window as the game opens it: shown full screen.
    HWND OpenAsTheGameDoes(const std::string& picture, bool withPrintPath) {
        window =
            OpenPictureWindow(owner.hwnd, picture.c_str(), RecordDismiss, withPrintPath ? picture.c_str() : nullptr);
        return window;
    }

    void SetTitle(const char* title) {
        std::snprintf(g_pictureTitle, sizeof g_pictureTitle, "%s", title);
        g_pictureTitlePending = true;
    }

    // What the window paints, read through WM_PRINTCLIENT into a canvas of the screen's size.
    void PaintInto(Canvas& canvas) {
        SendMessageA(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc), PRF_CLIENT);
    }

    Box PictureShown() {
        Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
        PaintInto(canvas);
        return BoundsOf(canvas, kPictureColour);
    }

    HWND Button(int id) const { return GetDlgItem(window, id); }

    bool Closed() const { return !IsWindow(window) && CurrentPictureWindow() == nullptr; }
};

RECT ChildRect(HWND parent, HWND child) {
    RECT r = {};
    GetWindowRect(child, &r);
    MapWindowPoints(HWND_DESKTOP, parent, reinterpret_cast<POINT*>(&r), 2);
    return r;
}

std::string ClassOf(HWND hwnd) {
    char name[64] = {};
    GetClassNameA(hwnd, name, sizeof name);
    return name;
}

}  // namespace

TEST(PictureWindow, OpensAsAFullScreenPopupOwnedByItsOpener) {
    PictureFixture f;
    ASSERT_NE(f.OpenAsTheGameDoes(f.Picture(400, 300), true), nullptr);
    EXPECT_EQ(CurrentPictureWindow(), f.window);
    EXPECT_EQ(ClassOf(f.window), "CWNDIMGPREV");
    EXPECT_EQ(GetWindow(f.window, GW_OWNER), f.owner.hwnd);
    DWORD style = DWORD(GetWindowLongPtrA(f.window, GWL_STYLE));
    EXPECT_EQ(style & (WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME),
              DWORD(WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME));
    POINT origin = {0, 0};
    ClientToScreen(f.window, &origin);
    EXPECT_EQ(origin.x, 0);
    EXPECT_EQ(origin.y, 0);
    SIZE client = ClientSize(f.window);
    EXPECT_GE(client.cx, kScreenWidth);
    EXPECT_GE(client.cy, kScreenHeight);
    EXPECT_FALSE(IsWindowEnabled(f.owner.hwnd));
}

TEST(PictureWindow, BackdropIsFeltTiledFromTheCornerWithTheFrameCentred) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(400, 300), false), nullptr);
    Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(canvas);
    // Felt all round the frame, repeating every 80 pixels from (0, 0).
    const POINT felt[] = {{0, 0}, {79, 79}, {80, 0}, {111, 83}, {5, 700}, {1000, 767}, {912, 684}, {1023, 0}};
    for (const POINT& p : felt) EXPECT_EQ(canvas.At(p.x, p.y), TilePixel(p.x % 80, p.y % 80)) << p.x << "," << p.y;
    // The frame from ((1024 - 800) / 2, (768 - 600) / 2).
    const POINT frame[] = {{112, 84}, {911, 84}, {112, 683}, {911, 683}, {500, 100}};
    for (const POINT& p : frame) EXPECT_EQ(canvas.At(p.x, p.y), kFrameColour) << p.x << "," << p.y;
}

TEST(PictureWindow, PictureOfTheWellsSizeIsShownAtItsOwnSizeCentred) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(550, 388), false), nullptr);
    Box shown = f.PictureShown();
    EXPECT_EQ(shown.Width(), 550);
    EXPECT_EQ(shown.Height(), 388);
    EXPECT_EQ(shown.left, (kScreenWidth - 550) / 2);
    EXPECT_EQ(shown.top, (kScreenHeight - 388) / 2);
}

TEST(PictureWindow, TallPictureIsShown194By388) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(300, 600), false), nullptr);
    Box shown = f.PictureShown();
    EXPECT_EQ(shown.Width(), 194);
    EXPECT_EQ(shown.Height(), 388);
    EXPECT_EQ(shown.left, (kScreenWidth - 194) / 2);
    EXPECT_EQ(shown.top, (kScreenHeight - 388) / 2);
}

TEST(PictureWindow, WidePictureIsShown550By200) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(1100, 400), false), nullptr);
    Box shown = f.PictureShown();
    EXPECT_EQ(shown.Width(), 550);
    EXPECT_EQ(shown.Height(), 200);
    EXPECT_EQ(shown.left, (kScreenWidth - 550) / 2);
    EXPECT_EQ(shown.top, (kScreenHeight - 200) / 2);
}

// The picture keeps its rows the right way up whether its file is stored bottom-up or top-down.
TEST(PictureWindow, PictureIsResampledTheRightWayUp) {
    PictureFixture f;
    const COLORREF top = RGB(250, 20, 20), bottom = RGB(20, 250, 20);
    uint8_t* dib = MakeDib24(200, 100, [&](int, int y) { return y < 50 ? top : bottom; });
    std::string path = f.folder.File("halves.bmp");
    ASSERT_TRUE(WriteDibAsBmp(path.c_str(), dib));
    FreePackedDib(dib);
    ASSERT_NE(f.Open(path, false), nullptr);
    Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(canvas);
    // 200 x 100 fills the well's width: 550 x 275, the top half in the first colour.
    Box upper = BoundsOf(canvas, top), lower = BoundsOf(canvas, bottom);
    EXPECT_EQ(upper.top, (kScreenHeight - 275) / 2);
    EXPECT_EQ(upper.Width(), 550);
    EXPECT_EQ(lower.bottom, (kScreenHeight - 275) / 2 + 275);
    EXPECT_EQ(upper.bottom, lower.top);
}

TEST(PictureWindow, TitleIsDrawnOnTheFirstPaintOnly) {
    PictureFixture f;
    f.SetTitle("Dew on a leaf at dawn.");
    ASSERT_NE(f.Open(f.Picture(400, 300), false), nullptr);
    Canvas first(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(first);
    // The shadow in black, the title over it in its own colour.
    EXPECT_GT(CountIn(first, kTitleBand, kTitleColour), 50);
    EXPECT_GT(CountIn(first, kTitleBand, kBlack), 10);
    EXPECT_FALSE(g_pictureTitlePending);
    // A forced repaint shows the frame without the title.
    RedrawWindow(f.window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    Canvas again(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(again);
    EXPECT_EQ(CountIn(again, kTitleBand, kFrameColour),
              (kTitleBand.right - kTitleBand.left) * (kTitleBand.bottom - kTitleBand.top));
}

TEST(PictureWindow, FirstRealPaintUsesTheTitleUp) {
    PictureFixture f;
    f.SetTitle("Dew on a leaf at dawn.");
    // Without an owner: one window less to hand back activation to.
    std::string picture = f.Picture(400, 300);
    f.window = OpenPictureWindow(nullptr, picture.c_str(), RecordDismiss, nullptr);
    ASSERT_NE(f.window, nullptr);
    EXPECT_TRUE(g_pictureTitlePending);  // nothing painted yet
    UpdateWindow(f.window);
    EXPECT_FALSE(g_pictureTitlePending);
    Canvas later(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(later);
    EXPECT_EQ(CountIn(later, kTitleBand, kTitleColour), 0);
    EXPECT_EQ(CountIn(later, kTitleBand, kBlack), 0);
}

TEST(PictureWindow, NoTitleIsDrawnWhenNoneIsPending) {
    PictureFixture f;
    std::snprintf(g_pictureTitle, sizeof g_pictureTitle, "%s", "A stale title.");
    g_pictureTitlePending = false;
    ASSERT_NE(f.Open(f.Picture(400, 300), false), nullptr);
    Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(canvas);
    EXPECT_EQ(CountIn(canvas, kTitleBand, kTitleColour), 0);
}

// The title's left edge is (screen width - 15 n) / 2 with n the characters before the first ".":
// "Dew." and "Dew. A long tail after the period." start at the same place, "Dewdrops." 37 pixels
// further left ((1024 - 45) / 2 - (1024 - 120) / 2).
TEST(PictureWindow, TitleIsCentredOnItsCharactersBeforeTheFirstPeriod) {
    auto leftmost = [](const char* title) {
        PictureFixture f;
        f.SetTitle(title);
        EXPECT_NE(f.Open(f.Picture(400, 300), false), nullptr);
        Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
        f.PaintInto(canvas);
        return LeftmostInk(canvas);
    };
    int shortTitle = leftmost("Dew.");
    int longTail = leftmost("Dew. A long tail after the period, twice as long.");
    int longer = leftmost("Dewdrops.");
    ASSERT_GE(shortTitle, 0);
    EXPECT_EQ(longTail, shortTitle);
    EXPECT_EQ(shortTitle - longer, (kScreenWidth - 45) / 2 - (kScreenWidth - 120) / 2);
    // The shadowed copy stands two pixels left of the left edge; the glyph's own bearing is small.
    EXPECT_NEAR(shortTitle, (kScreenWidth - 45) / 2 - 2, 6);
}

// A title without a period is centred on all its characters.
TEST(PictureWindow, TitleWithoutAPeriodIsCentredOnItsWholeLength) {
    auto leftmost = [](const char* title) {
        PictureFixture f;
        f.SetTitle(title);
        EXPECT_NE(f.Open(f.Picture(400, 300), false), nullptr);
        Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
        f.PaintInto(canvas);
        return LeftmostInk(canvas);
    };
    EXPECT_EQ(leftmost("Dew") - leftmost("Dew on leaves"), (kScreenWidth - 45) / 2 - (kScreenWidth - 195) / 2);
}

TEST(PictureWindow, WithoutAPrintPathThereAreNoButtons) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(400, 300), false), nullptr);
    EXPECT_EQ(GetWindow(f.window, GW_CHILD), nullptr);
}

TEST(PictureWindow, PrintAndCloseButtonsStandOnTheFramesLowerEdge) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(400, 300), true), nullptr);
    HWND print = f.Button(kPicturePrintButtonId), close = f.Button(kPictureCloseButtonId);
    ASSERT_NE(print, nullptr);
    ASSERT_NE(close, nullptr);
    EXPECT_EQ(ClassOf(print), "CQMANIM");
    EXPECT_EQ(ClassOf(close), "CQMANIM");
    RECT p = ChildRect(f.window, print), c = ChildRect(f.window, close);
    EXPECT_EQ(p.left, kFrameLeft + 590);
    EXPECT_EQ(c.left, kFrameLeft + 669);
    EXPECT_EQ(p.top, kFrameTop + 496);
    EXPECT_EQ(c.top, kFrameTop + 496);
    EXPECT_EQ(p.right - p.left, 50);
    EXPECT_EQ(p.bottom - p.top, 50);
    EXPECT_EQ(c.right - c.left, 50);
    EXPECT_EQ(c.bottom - c.top, 50);
    // Ten frames in one row, at rest.
    EXPECT_EQ(SendMessageA(print, PM_ANIM_GETCOLUMNS, 0, 0), 10);
    EXPECT_EQ(SendMessageA(print, PM_ANIM_GETFRAME, 0, 0), 0);
    EXPECT_NE(SendMessageA(print, PM_GETIMAGE, 0, 0), 0);
    EXPECT_NE(SendMessageA(close, PM_GETIMAGE, 0, 0), 0);
}

TEST(PictureWindow, KeyClosesTheWindowAndDismissesWithOne) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(400, 300), false), nullptr);
    SendMessageA(f.window, WM_CHAR, 'x', 0);
    EXPECT_TRUE(f.Closed());
    EXPECT_EQ(g_dismissCalls, 1);
    EXPECT_EQ(g_dismissValue, 1);
}

TEST(PictureWindow, DoubleClickClosesTheWindowAndDismissesWithOne) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(400, 300), false), nullptr);
    // Double clicks reach the window only because its class asks for them.
    EXPECT_NE(GetClassLongPtrA(f.window, GCL_STYLE) & CS_DBLCLKS, 0u);
    SendMessageA(f.window, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(400, 300));
    EXPECT_TRUE(f.Closed());
    EXPECT_EQ(g_dismissCalls, 1);
    EXPECT_EQ(g_dismissValue, 1);
}

TEST(PictureWindow, CloseButtonClosesTheWindowAndDismissesWithOne) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(400, 300), true), nullptr);
    SendMessageA(f.window, PM_NOTIFY, NOTIFY_CLICKED, reinterpret_cast<LPARAM>(f.Button(kPictureCloseButtonId)));
    EXPECT_TRUE(f.Closed());
    EXPECT_EQ(g_dismissCalls, 1);
    EXPECT_EQ(g_dismissValue, 1);
    EXPECT_EQ(g_printCalls, 0);
}

TEST(PictureWindow, PrintButtonPrintsThePictureFromItsPrintPath) {
    PictureFixture f;
    std::string picture = f.Picture(400, 300);
    ASSERT_NE(f.Open(picture, true), nullptr);
    SendMessageA(f.window, PM_NOTIFY, NOTIFY_CLICKED, reinterpret_cast<LPARAM>(f.Button(kPicturePrintButtonId)));
    EXPECT_EQ(g_printCalls, 1);
    EXPECT_EQ(g_printOwner, f.window);
    EXPECT_EQ(g_printPath, picture);
    EXPECT_TRUE(IsWindow(f.window));
    EXPECT_EQ(g_dismissCalls, 0);
}

// Events other than the click only animate: the press shows the full glow at once.
TEST(PictureWindow, ButtonEventsGoToTheSharedAnimatedFeedback) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(400, 300), true), nullptr);
    HWND print = f.Button(kPicturePrintButtonId);
    SendMessageA(f.window, PM_NOTIFY, NOTIFY_PRESSED, reinterpret_cast<LPARAM>(print));
    EXPECT_EQ(SendMessageA(print, PM_ANIM_GETFRAME, 0, 0), kButtonGlowFrame);
    SendMessageA(f.window, PM_NOTIFY, NOTIFY_LEFT, reinterpret_cast<LPARAM>(print));
    EXPECT_EQ(SendMessageA(print, PM_ANIM_GETRUNNING, 0, 0), 1);  // on its way back to rest
    EXPECT_EQ(g_printCalls, 0);
    EXPECT_TRUE(IsWindow(f.window));
}

TEST(PictureWindow, OwnerIsDisabledWhileOpenAndEnabledAfterClosing) {
    PictureFixture f;
    ASSERT_TRUE(IsWindowEnabled(f.owner.hwnd));
    ASSERT_NE(f.Open(f.Picture(400, 300), false), nullptr);
    EXPECT_FALSE(IsWindowEnabled(f.owner.hwnd));
    SendMessageA(f.window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(f.Closed());
    EXPECT_TRUE(IsWindowEnabled(f.owner.hwnd));
    EXPECT_EQ(g_dismissCalls, 1);
}

TEST(PictureWindow, DestroyingTheWindowDismissesWithOne) {
    PictureFixture f;
    ASSERT_NE(f.Open(f.Picture(400, 300), true), nullptr);
    DestroyWindow(f.window);
    EXPECT_TRUE(f.Closed());
    EXPECT_TRUE(IsWindowEnabled(f.owner.hwnd));
    EXPECT_EQ(g_dismissCalls, 1);
    EXPECT_EQ(g_dismissValue, 1);
}

TEST(PictureWindow, UnreadablePictureShowsNothingAndDismissesNothing) {
    PictureFixture f;
    EXPECT_EQ(f.OpenAsTheGameDoes(f.folder.File("missing.bmp"), true), nullptr);
    ASSERT_TRUE(WriteFileBytes(f.folder.File("broken.bmp"), "BM not a picture"));
    EXPECT_EQ(f.OpenAsTheGameDoes(f.folder.File("broken.bmp"), true), nullptr);
    EXPECT_EQ(f.Open(f.folder.File("broken.bmp"), false), nullptr);
    EXPECT_EQ(CurrentPictureWindow(), nullptr);
    EXPECT_TRUE(IsWindowEnabled(f.owner.hwnd));
    EXPECT_EQ(g_dismissCalls, 0);
}

TEST(PictureWindow, OnlyOnePictureWindowAtATime) {
    PictureFixture f;
    std::string picture = f.Picture(400, 300);
    ASSERT_NE(f.Open(picture, false), nullptr);
    HWND first = f.window;
    EXPECT_EQ(OpenPictureWindow(f.owner.hwnd, picture.c_str(), RecordDismiss, nullptr), nullptr);
    EXPECT_EQ(CurrentPictureWindow(), first);
    f.window = first;
}

// An 8-bit picture keeps its colours: the colour table goes with the header.
TEST(PictureWindow, EightBitPictureIsShownInItsPaletteColours) {
    PictureFixture f;
    uint8_t* dib = MakeDib8(100, 100, 256, [](int x, int) { return uint8_t(x < 50 ? 10 : 200); });
    std::string path = f.folder.File("eight.bmp");
    ASSERT_TRUE(WriteDibAsBmp(path.c_str(), dib));
    FreePackedDib(dib);
    ASSERT_NE(f.Open(path, false), nullptr);
    Canvas canvas(kScreenWidth, kScreenHeight, kUnpainted);
    f.PaintInto(canvas);
    // 100 x 100 is height bound: 388 x 388, its left half in entry 10, its right half in entry 200.
    Box left = BoundsOf(canvas, TestPaletteEntry(10)), right = BoundsOf(canvas, TestPaletteEntry(200));
    EXPECT_EQ(left.left, (kScreenWidth - 388) / 2);
    EXPECT_EQ(left.Height(), 388);
    EXPECT_EQ(right.right, (kScreenWidth - 388) / 2 + 388);
    EXPECT_EQ(left.right, right.left);
}
