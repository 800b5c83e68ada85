// `CWNDIMAGETAM` and `CWNDIMAGECANT`: their places on the new-puzzle screen, what they paint, the drags
// and the notice each sends its parent, and the registration of the three classes.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

#include "app/app_state.h"
#include "app/art_ids.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/pack_writer.h"
#include "message_log_win32.h"
#include "puzzle/model.h"
#include "puzzle/picture.h"
#include "setup/chooser_classes_win32.h"
#include "setup/choosers.h"
#include "setup/count_chooser_win32.h"
#include "setup/size_chooser_win32.h"
#include "win32_support.h"

namespace {

const COLORREF kTopColor = RGB(200, 30, 60);
const COLORREF kBottomColor = RGB(30, 60, 200);
const COLORREF kSolid = RGB(200, 100, 50);
const COLORREF kSolidInverted = RGB(55, 155, 205);
const COLORREF kBlack = RGB(0, 0, 0);

const ExpectedMessage kOneChange[] = {{PM_NOTIFY, kChooserChanged}, {0}};
const ExpectedMessage kTwoChanges[] = {{PM_NOTIFY, kChooserChanged}, {PM_NOTIFY, kChooserChanged}, {0}};
const ExpectedMessage kNothing[] = {{0}};

COLORREF TextureAt(int x, int y) { return RGB(x * 2 + 1, y * 2 + 1, 77); }
COLORREF BackdropAt(int x, int y) { return RGB(x % 251, y % 241, 150); }


// A stand-in for the new-puzzle screen on a 1024 x 768 screen (table 947 x 640). The parent keeps to
// its own screen place, 330 pixels wide: the choosers' right ends are cut off there, so pixels are
// read left of it.
struct ChooserScreen {
    TempFolder folder;
    LoggingParent parent{330, 240};
    PuzzleState savedPuzzle;
    int32_t savedWidth, savedHeight;
    uint8_t* texture;
    uint8_t* backdrop;
    HWND size = nullptr;
    HWND count = nullptr;

    ChooserScreen() : savedPuzzle(g_puzzle), savedWidth(g_screenWidth), savedHeight(g_screenHeight) {
        EXPECT_TRUE(RegisterChooserAndPreviewClasses(GetModuleHandleA(nullptr)));
        g_screenWidth = 1024;
        g_screenHeight = 768;
        g_puzzle.tableWidth = 0;
        g_puzzle.tableHeight = 0;
        texture = MakeDib24(100, 100, TextureAt);
        backdrop = MakeDib24(640, 320, BackdropAt);
        SetChooserTableTexture(texture);
        ForgetChosenImage();
        ClearCurrentPicture();
    }
    ~ChooserScreen() {
        if (size) DestroyWindow(size);
        if (count) DestroyWindow(count);
        FlushMessages();
        ForgetChosenImage();
        ClearCurrentPicture();
        SetChooserTableTexture(nullptr);
        FreePackedDib(texture);
        FreePackedDib(backdrop);
        g_puzzle = savedPuzzle;
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
    }
    // Selects an image whose top half and bottom half have colours of their own.
    void Choose(int32_t width, int32_t height, COLORREF top = kTopColor, COLORREF bottom = kBottomColor) {
        uint8_t* dib = MakeDib24(width, height, [=](int, int y) { return y < height / 2 ? top : bottom; });
        std::string path = folder.File("photo.bmp");
        ASSERT_TRUE(WriteDibAsBmp(path.c_str(), dib));
        FreePackedDib(dib);
        ASSERT_TRUE(LoadCurrentPicture(path.c_str()));
        PrepareImageForSizing();
        ASSERT_TRUE(g_choosers.image_chosen);
    }
    HWND MakeSize() {
        size = CreateSizeChooser(parent.hwnd);
        UpdateWindow(size);
        PumpMessages(30);
        parent.Clear();
        return size;
    }
    HWND MakeCount() {
        count = CreateCountChooser(parent.hwnd, backdrop);
        UpdateWindow(count);
        PumpMessages(30);
        parent.Clear();
        return count;
    }
};

RECT RectInParent(HWND child) {
    RECT r = {};
    GetWindowRect(child, &r);
    MapWindowPoints(HWND_DESKTOP, GetParent(child), reinterpret_cast<POINT*>(&r), 2);
    return r;
}

void Mouse(HWND hwnd, UINT message, int x, int y) {
    SendMessageA(hwnd, message, message == WM_MOUSEMOVE ? MK_LBUTTON : 0, MAKELPARAM(x, y));
}

HCURSOR ClassCursor(HWND hwnd) { return reinterpret_cast<HCURSOR>(GetClassLongPtrA(hwnd, GCLP_HCURSOR)); }

}  // namespace

TEST(ChooserClasses, RegisteredWithTheProgramsCursorsAndNoBackgroundForTheChoosers) {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    EXPECT_TRUE(RegisterChooserAndPreviewClasses(instance));
    EXPECT_TRUE(RegisterChooserAndPreviewClasses(instance));  // already registered counts
    for (const char* name : {"CWNDIMAGECANT", "CWNDIMAGETAM"}) {
        WNDCLASSA wc = {};
        ASSERT_TRUE(GetClassInfoA(instance, name, &wc)) << name;
        EXPECT_EQ(wc.style, 0u) << name;
        EXPECT_EQ(wc.cbClsExtra, 0) << name;
        EXPECT_EQ(wc.cbWndExtra, 0) << name;
        EXPECT_EQ(wc.hbrBackground, nullptr) << name;
        EXPECT_EQ(wc.hCursor, LoadCursorA(instance, MAKEINTRESOURCEA(kResNormalCursor))) << name;
    }
    WNDCLASSA wc = {};
    ASSERT_TRUE(GetClassInfoA(instance, "CWNDPREVLUPA", &wc));
    EXPECT_EQ(wc.style, 0u);
    EXPECT_EQ(wc.cbWndExtra, 0);
    EXPECT_EQ(wc.hbrBackground, GetStockObject(BLACK_BRUSH));
    EXPECT_EQ(wc.hCursor, LoadCursorA(nullptr, IDC_ARROW));
}

// ---- Size chooser ----

TEST(SizeChooser, WindowIsTheTableFrame236By160At122And61) {
    ChooserScreen f;
    f.MakeSize();
    ASSERT_NE(f.size, nullptr);
    EXPECT_EQ(g_sizeChooser, f.size);
    RECT r = RectInParent(f.size);
    EXPECT_EQ(r.left, 122);
    EXPECT_EQ(r.top, 61);
    EXPECT_EQ(r.right - r.left, 236);
    EXPECT_EQ(r.bottom - r.top, 160);
    EXPECT_EQ(g_choosers.frame.scale, 0.25);
    DWORD style = DWORD(GetWindowLongPtrA(f.size, GWL_STYLE));
    EXPECT_EQ(style & (WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS), DWORD(WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS));
    DestroyWindow(f.size);
    f.size = nullptr;
    EXPECT_EQ(g_sizeChooser, nullptr);
}

TEST(SizeChooser, PaintsTheImageAtTheZoomCentredOnTableTiles) {
    ChooserScreen f;
    f.Choose(640, 480);
    f.MakeSize();
    // At the fit the 160 x 120 copy covers 213 x 160 from (11, 0).
    EXPECT_EQ(ClientPixel(f.size, 11, 0), kTopColor);
    EXPECT_EQ(ClientPixel(f.size, 11, 159), kBottomColor);
    EXPECT_EQ(ClientPixel(f.size, 10, 50), TextureAt(10, 50));
    EXPECT_EQ(ClientPixel(f.size, 0, 0), TextureAt(0, 0));
    // At actual size it covers 160 x 120 from (38, 20); tiles start again every 100 pixels.
    ZoomToActualSize();
    EXPECT_EQ(ClientPixel(f.size, 38, 20), kTopColor);
    EXPECT_EQ(ClientPixel(f.size, 197, 139), kBottomColor);
    EXPECT_EQ(ClientPixel(f.size, 37, 50), TextureAt(37, 50));
    EXPECT_EQ(ClientPixel(f.size, 50, 19), TextureAt(50, 19));
    EXPECT_EQ(ClientPixel(f.size, 50, 140), TextureAt(50, 40));
    EXPECT_EQ(ClientPixel(f.size, 120, 150), TextureAt(20, 50));
    EXPECT_EQ(ClientPixel(f.size, 198, 100), TextureAt(98, 0));
}

TEST(SizeChooser, WithoutAnImageShowsOnlyTheTableAndIgnoresPresses) {
    ChooserScreen f;
    f.MakeSize();
    EXPECT_EQ(ClientPixel(f.size, 30, 40), TextureAt(30, 40));
    EXPECT_EQ(ClientPixel(f.size, 150, 120), TextureAt(50, 20));
    Mouse(f.size, WM_LBUTTONDOWN, 50, 50);
    EXPECT_NE(GetCapture(), f.size);
    Mouse(f.size, WM_MOUSEMOVE, 150, 150);
    Mouse(f.size, WM_LBUTTONUP, 150, 150);
    ExpectSequence(f.parent, kNothing, f.size, "press without an image");
    // Without the table's picture the table is black.
    SetChooserTableTexture(nullptr);
    UpdateWindow(f.size);
    EXPECT_EQ(ClientPixel(f.size, 30, 40), kBlack);
}

TEST(SizeChooser, DragChangesTheZoomAndNotifiesTheParent) {
    ChooserScreen f;
    f.Choose(640, 480);
    f.MakeSize();
    double start = g_puzzle.scale;
    SetCountPosition(0);
    Mouse(f.size, WM_LBUTTONDOWN, 50, 50);
    EXPECT_EQ(GetCapture(), f.size);
    Mouse(f.size, WM_MOUSEMOVE, 80, 70);
    EXPECT_EQ(g_puzzle.scale, DragZoom(g_choosers, start, 30, 20));
    EXPECT_GT(g_puzzle.scale, start);
    EXPECT_EQ(GetCountPosition(), GetCountSteps());  // a new zoom starts from the most pieces
    ExpectSequence(f.parent, kOneChange, f.size, "one drag step");
    EXPECT_EQ(f.parent.log[0].lParam, reinterpret_cast<LPARAM>(f.size));
    Mouse(f.size, WM_LBUTTONUP, 80, 70);
    EXPECT_EQ(GetCapture(), nullptr);
    // The picture grew with the zoom past the frame's left edge, where the table showed before.
    ChooserRect shown = ZoomedCopyRect(g_choosers.frame, 160, 120, g_puzzle.scale);
    EXPECT_LT(shown.x, 0);
    EXPECT_EQ(ClientPixel(f.size, 0, 50), kTopColor);
}

TEST(SizeChooser, DragThatLeavesTheZoomAloneSendsNothing) {
    ChooserScreen f;
    f.Choose(640, 480);
    f.MakeSize();
    Mouse(f.size, WM_LBUTTONDOWN, 50, 50);
    Mouse(f.size, WM_MOUSEMOVE, 50, 50);
    Mouse(f.size, WM_MOUSEMOVE, 50 + 160, 50 - 236);  // across the frame's diagonal
    ExpectSequence(f.parent, kNothing, f.size, "no zoom change");
    Mouse(f.size, WM_MOUSEMOVE, 600, 600);  // up to twice the fit
    Mouse(f.size, WM_MOUSEMOVE, 700, 700);  // held there
    EXPECT_EQ(g_puzzle.scale, 2.0 * g_choosers.zoom_fit);
    ExpectSequence(f.parent, kOneChange, f.size, "to the limit and beyond");
    Mouse(f.size, WM_LBUTTONUP, 700, 700);
}

TEST(SizeChooser, DragShowsTheDragCursorUntilRelease) {
    ChooserScreen f;
    f.Choose(640, 480);
    f.MakeSize();
    HINSTANCE module = GetModuleHandleA(nullptr);
    HCURSOR drag = LoadCursorA(module, MAKEINTRESOURCEA(kResDragCursor));
    HCURSOR normal = LoadCursorA(module, MAKEINTRESOURCEA(kResNormalCursor));
    ASSERT_NE(drag, normal);
    EXPECT_EQ(ClassCursor(f.size), normal);
    Mouse(f.size, WM_LBUTTONDOWN, 50, 50);
    EXPECT_EQ(ClassCursor(f.size), drag);
    EXPECT_EQ(GetCursor(), drag);
    Mouse(f.size, WM_LBUTTONUP, 50, 50);
    EXPECT_EQ(ClassCursor(f.size), normal);
}

TEST(SizeChooser, CaptureTakenElsewhereEndsTheDrag) {
    ChooserScreen f;
    f.Choose(640, 480);
    f.MakeSize();
    double start = g_puzzle.scale;
    Mouse(f.size, WM_LBUTTONDOWN, 50, 50);
    SetCapture(f.parent.hwnd);
    Mouse(f.size, WM_MOUSEMOVE, 120, 120);
    EXPECT_EQ(g_puzzle.scale, start);
    ExpectSequence(f.parent, kNothing, f.size, "after the capture went elsewhere");
    EXPECT_EQ(ClassCursor(f.size), LoadCursorA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(kResNormalCursor)));
    ReleaseCapture();
}

// ---- Count chooser ----

TEST(CountChooser, WindowIs250By160At115And61) {
    ChooserScreen f;
    f.MakeCount();
    ASSERT_NE(f.count, nullptr);
    EXPECT_EQ(g_countChooser, f.count);
    RECT r = RectInParent(f.count);
    EXPECT_EQ(r.left, 115);
    EXPECT_EQ(r.top, 61);
    EXPECT_EQ(r.right - r.left, 250);
    EXPECT_EQ(r.bottom - r.top, 160);
    DWORD style = DWORD(GetWindowLongPtrA(f.count, GWL_STYLE));
    EXPECT_EQ(style & (WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS), DWORD(WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS));
    DestroyWindow(f.count);
    f.count = nullptr;
    EXPECT_EQ(g_countChooser, nullptr);
}

TEST(CountChooser, DrawsItsGridByInvertingThePicture) {
    ChooserScreen f;
    f.Choose(640, 480, kSolid, kSolid);  // shown 213 x 160 from (18, 0)
    SetCountPosition(0);                 // 4 rows, 5 columns
    ASSERT_EQ(g_puzzle.rows, 4);
    ASSERT_EQ(g_puzzle.cols, 5);
    f.MakeCount();
    // Columns at 18 + 213 * i / 5: 60, 103, 145, 188; rows at 160 * i / 4: 40, 80, 120.
    for (int x : {60, 103, 145, 188}) {
        EXPECT_EQ(ClientPixel(f.count, x, 20), kSolidInverted) << x;
        EXPECT_EQ(ClientPixel(f.count, x, 0), kSolidInverted) << x;
        EXPECT_EQ(ClientPixel(f.count, x, 159), kSolidInverted) << x;
        EXPECT_EQ(ClientPixel(f.count, x - 1, 20), kSolid) << x;
        EXPECT_EQ(ClientPixel(f.count, x + 1, 20), kSolid) << x;
    }
    for (int y : {40, 80, 120}) {
        EXPECT_EQ(ClientPixel(f.count, 30, y), kSolidInverted) << y;
        EXPECT_EQ(ClientPixel(f.count, 18, y), kSolidInverted) << y;
        EXPECT_EQ(ClientPixel(f.count, 30, y - 1), kSolid) << y;
        EXPECT_EQ(ClientPixel(f.count, 30, y + 1), kSolid) << y;
    }
    // Where a row crosses a column the pixel is inverted twice.
    EXPECT_EQ(ClientPixel(f.count, 60, 40), kSolid);
}

TEST(CountChooser, RepaintsAtOnceWhenTheCountChangesElsewhere) {
    ChooserScreen f;
    f.Choose(640, 480, kSolid, kSolid);
    f.MakeCount();
    SetCountPosition(0);  // no message pumped: the new grid is on screen when this returns
    EXPECT_EQ(ClientPixel(f.count, 60, 20), kSolidInverted);
    SetCountPosition(GetCountSteps());  // 14 x 18: columns at 29, 41, 53, 65, ...
    EXPECT_EQ(ClientPixel(f.count, 60, 20), kSolid);
    EXPECT_EQ(ClientPixel(f.count, 53, 20), kSolidInverted);
}

TEST(CountChooser, BlendsIntoTheBackdropAroundThePicture) {
    ChooserScreen f;
    f.Choose(1000, 400, kSolid, kSolid);  // shown 250 x 100 from (0, 30)
    f.MakeCount();
    EXPECT_EQ(ClientPixel(f.count, 100, 10), BackdropAt(215, 71));
    EXPECT_EQ(ClientPixel(f.count, 0, 29), BackdropAt(115, 90));
    EXPECT_EQ(ClientPixel(f.count, 100, 150), BackdropAt(215, 211));
    EXPECT_EQ(ClientPixel(f.count, 100, 131), BackdropAt(215, 192));
    EXPECT_EQ(ClientPixel(f.count, 100, 129), kSolid);  // the picture's last row
    // With no image chosen the window is all backdrop.
    ForgetChosenImage();
    EXPECT_EQ(ClientPixel(f.count, 100, 80), BackdropAt(215, 141));
    EXPECT_EQ(ClientPixel(f.count, 5, 50), BackdropAt(120, 111));
}

TEST(CountChooser, DragFarOutwardGivesTheFewestPiecesAndFarInwardTheMost) {
    ChooserScreen f;
    f.Choose(640, 480);
    f.MakeCount();
    ASSERT_EQ(g_puzzle.rows, 14);
    ASSERT_EQ(g_puzzle.cols, 18);
    Mouse(f.count, WM_LBUTTONDOWN, 100, 80);
    EXPECT_EQ(GetCapture(), f.count);
    Mouse(f.count, WM_MOUSEMOVE, 400, 400);
    EXPECT_EQ(g_choosers.piece_edge, 150);
    EXPECT_EQ(g_puzzle.rows, 4);
    EXPECT_EQ(g_puzzle.cols, 5);
    Mouse(f.count, WM_MOUSEMOVE, 450, 460);  // still clamped at 150: no new grid, no notice
    Mouse(f.count, WM_MOUSEMOVE, -300, -300);
    EXPECT_EQ(g_choosers.piece_edge, 45);
    EXPECT_EQ(g_puzzle.rows, 14);
    EXPECT_EQ(g_puzzle.cols, 18);
    Mouse(f.count, WM_LBUTTONUP, -300, -300);
    EXPECT_EQ(GetCapture(), nullptr);
    ExpectSequence(f.parent, kTwoChanges, f.count, "out and back in");
}

TEST(CountChooser, SmallMovementThatKeepsTheGridSendsNothing) {
    ChooserScreen f;
    f.Choose(640, 480);
    f.MakeCount();
    Mouse(f.count, WM_LBUTTONDOWN, 100, 80);
    Mouse(f.count, WM_MOUSEMOVE, 101, 81);  // edge 45.7: still 14 x 18
    Mouse(f.count, WM_LBUTTONUP, 101, 81);
    ExpectSequence(f.parent, kNothing, f.count, "a one-pixel move");
    EXPECT_EQ(g_choosers.piece_edge, 45);
}

TEST(CountChooser, PressBesideThePictureStartsNoDrag) {
    ChooserScreen f;
    f.Choose(1000, 400);  // picture rows 30 .. 130
    f.MakeCount();
    Mouse(f.count, WM_LBUTTONDOWN, 100, 10);
    EXPECT_NE(GetCapture(), f.count);
    Mouse(f.count, WM_MOUSEMOVE, 400, 400);
    Mouse(f.count, WM_LBUTTONUP, 400, 400);
    ExpectSequence(f.parent, kNothing, f.count, "press above the picture");
    // On its edge it starts one.
    Mouse(f.count, WM_LBUTTONDOWN, 100, 30);
    EXPECT_EQ(GetCapture(), f.count);
    Mouse(f.count, WM_LBUTTONUP, 100, 30);
}

TEST(CountChooser, CaptureTakenElsewhereEndsTheDrag) {
    ChooserScreen f;
    f.Choose(640, 480);
    f.MakeCount();
    Mouse(f.count, WM_LBUTTONDOWN, 100, 80);
    EXPECT_EQ(ClassCursor(f.count), LoadCursorA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(kResDragCursor)));
    SetCapture(f.parent.hwnd);
    Mouse(f.count, WM_MOUSEMOVE, 400, 400);
    ExpectSequence(f.parent, kNothing, f.count, "after the capture went elsewhere");
    EXPECT_EQ(g_puzzle.rows, 14);
    EXPECT_EQ(ClassCursor(f.count), LoadCursorA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(kResNormalCursor)));
    ReleaseCapture();
}

TEST(CountChooser, BothChoosersFollowASizeDrag) {
    ChooserScreen f;
    f.Choose(640, 480, kSolid, kSolid);
    f.MakeSize();
    f.MakeCount();
    // The two overlap; the count chooser is the one read here, so it goes on top.
    SetWindowPos(f.count, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    UpdateWindow(f.count);
    SetCountPosition(0);
    EXPECT_EQ(ClientPixel(f.count, 60, 20), kSolidInverted);
    Mouse(f.size, WM_LBUTTONDOWN, 50, 50);
    Mouse(f.size, WM_MOUSEMOVE, 51, 50);  // any zoom change puts the count back at its most
    Mouse(f.size, WM_LBUTTONUP, 51, 50);
    EXPECT_EQ(GetCountPosition(), GetCountSteps());
    EXPECT_EQ(ClientPixel(f.count, 60, 20), kSolid);
    ExpectSequence(f.parent, kOneChange, f.size, "size drag");
}
