// `CWNDPREVLUPA`: creation, fitting the picture (square, 4:3, none), the title strip and title text,
// showing and hiding with the tools button and the close button, and moving by dragging.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

#include "app/app_state.h"
#include "app/art_ids.h"
#include "app/language_chooser_win32.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/pack_writer.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "puzzle/picture.h"
#include "puzzle/preview_win32.h"
#include "setup/chooser_classes_win32.h"
#include "win32_support.h"

namespace {

const COLORREF kTileColor = RGB(20, 90, 40);
const COLORREF kTopColor = RGB(200, 30, 60);
const COLORREF kBottomColor = RGB(30, 60, 200);
const COLORREF kBlack = RGB(0, 0, 0);


RECT WindowRectOf(HWND hwnd) {
    RECT r = {};
    GetWindowRect(hwnd, &r);
    return r;
}

// A preview owned by a logging parent, with a pack holding its tile and close button strip. The parent
// holds a screen place of its own; MoveOverOwner puts the preview there so that its pixels can be read.
struct PreviewFixture {
    TempFolder folder;
    LoggingParent owner{330, 260};
    uint8_t* tile;
    uint8_t* closeStrip;
    HWND preview = nullptr;
    HWND closeButton = nullptr;
    int32_t savedWidth, savedHeight;

    PreviewFixture() : savedWidth(g_screenWidth), savedHeight(g_screenHeight) {
        tile = MakeDib24(30, 31, [](int, int) { return kTileColor; });
        closeStrip = MakeFrameStrip(20, 20, {RGB(250, 250, 0), RGB(0, 250, 250), RGB(250, 0, 250)});
        std::string path = folder.File("Tavirel.rf");
        EXPECT_TRUE(WriteTestPack(path, {{kArtTrayTile, tile}, {kArtTrayCloseButton, closeStrip}}));
        EXPECT_TRUE(OpenPack(&g_pack, path.c_str()));
        EXPECT_TRUE(RegisterChooserAndPreviewClasses(GetModuleHandleA(nullptr)));
        g_screenWidth = 1024;
        g_screenHeight = 768;
        ClearCurrentPicture();
        preview = CreatePreviewWindow(owner.hwnd);
        closeButton = GetDlgItem(preview, kPreviewCloseButtonId);
    }
    ~PreviewFixture() {
        if (preview) DestroyWindow(preview);
        FlushMessages();
        ClosePack(&g_pack);
        ClearCurrentPicture();
        FreePackedDib(tile);
        FreePackedDib(closeStrip);
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
    }
    void MoveOverOwner() {
        RECT r = WindowRectOf(owner.hwnd);
        SetWindowPos(preview, nullptr, r.left, r.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    void Show() {
        if (!IsWindowVisible(preview)) TogglePreview();
        UpdateWindow(preview);
        PumpMessages(30);
    }
    // A current picture whose top half and bottom half have colours of their own.
    void LoadPicture(int32_t width, int32_t height) {
        auto halves = [height](int, int y) { return y < height / 2 ? kTopColor : kBottomColor; };
        uint8_t* dib = MakeDib24(width, height, halves);
        std::string path = folder.File("photo.bmp");
        ASSERT_TRUE(WriteDibAsBmp(path.c_str(), dib));
        FreePackedDib(dib);
        ASSERT_TRUE(LoadCurrentPicture(path.c_str()));
    }
    std::string Title(WPARAM size = 100) {
        char buffer[100];
        std::memset(buffer, '#', sizeof buffer);
        buffer[99] = 0;
        EXPECT_EQ(SendMessageA(preview, WM_GETTEXT, size, reinterpret_cast<LPARAM>(buffer)), 0);
        return buffer;
    }
    // Pixels of the title strip's left part that are not the tile's colour.
    int TitlePixels() {
        int count = 0;
        for (int y = 3; y < 29; ++y)
            for (int x = 8; x < 140; ++x) count += ClientPixel(preview, x, y) != kTileColor;
        return count;
    }
    // Sends a mouse message for a pointer at a screen position.
    void MouseAt(UINT message, int screenX, int screenY) {
        POINT p = {screenX, screenY};
        ScreenToClient(preview, &p);
        SendMessageA(preview, message, message == WM_MOUSEMOVE ? MK_LBUTTON : 0, MAKELPARAM(p.x, p.y));
    }
};

// Under Wine with no window manager, a click activates the popup, and moving or hiding an active popup
// then drops its focus (and with it the mouse capture) and waits for a withdrawal that never comes.
// The pointer tests keep the preview inactive, as the test parents keep themselves.
WNDPROC g_previewProcedure = nullptr;

LRESULT CALLBACK InactivePreviewProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_MOUSEACTIVATE) return MA_NOACTIVATE;
    return CallWindowProcA(g_previewProcedure, hwnd, message, wParam, lParam);
}

void KeepInactive(HWND preview) {
    g_previewProcedure = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(preview, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(InactivePreviewProc)));
}

}  // namespace

TEST(Preview, CreatedHiddenAtAQuarterOfTheScreenWidthAndHalfItsHeight) {
    PreviewFixture f;
    ASSERT_NE(f.preview, nullptr);
    EXPECT_EQ(g_magnifierWindow, f.preview);
    EXPECT_FALSE(IsWindowVisible(f.preview));
    EXPECT_EQ(GetWindow(f.preview, GW_OWNER), f.owner.hwnd);
    EXPECT_EQ(DWORD(GetWindowLongPtrA(f.preview, GWL_STYLE)) & (WS_POPUP | WS_CHILD | WS_CAPTION), DWORD(WS_POPUP));
    RECT r = WindowRectOf(f.preview);
    EXPECT_EQ(r.left, 256);
    EXPECT_EQ(r.top, 384);
    EXPECT_EQ(r.right - r.left, 240);
    EXPECT_EQ(r.bottom - r.top, 211);
    // The close button: 30 pixels from the right, sized by its strip.
    ASSERT_NE(f.closeButton, nullptr);
    RECT b = WindowRectOf(f.closeButton);
    EXPECT_EQ(b.left - r.left, 210);
    EXPECT_EQ(b.top - r.top, 0);
    EXPECT_EQ(b.right - b.left, 20);
    EXPECT_EQ(b.bottom - b.top, 20);
    EXPECT_NE(SendMessageA(f.closeButton, PM_GETIMAGE, 0, 0), 0);
}

TEST(Preview, CreationGivesTheLocalisedTitle) {
    PreviewFixture f;
    EXPECT_EQ(f.Title(), "Preview");
}

TEST(Preview, SquareImageIsShown180By180) {
    PreviewFixture f;
    f.LoadPicture(300, 300);
    RefitPreview();
    EXPECT_FALSE(IsWindowVisible(f.preview));
    SIZE size = WindowSize(f.preview);
    EXPECT_EQ(size.cx, 188);
    EXPECT_EQ(size.cy, 219);
    RECT r = WindowRectOf(f.preview), b = WindowRectOf(f.closeButton);
    EXPECT_EQ(b.left - r.left, 158);  // picture width - 22
    f.MoveOverOwner();
    f.Show();
    EXPECT_EQ(ClientPixel(f.preview, 4, 35), kTopColor);
    EXPECT_EQ(ClientPixel(f.preview, 183, 124), kTopColor);
    EXPECT_EQ(ClientPixel(f.preview, 4, 125), kBottomColor);
    EXPECT_EQ(ClientPixel(f.preview, 183, 214), kBottomColor);
    EXPECT_EQ(ClientPixel(f.preview, 185, 100), kBlack);
    EXPECT_EQ(ClientPixel(f.preview, 100, 216), kBlack);
}

TEST(Preview, FourByThreeImageIsShownExactly240By180) {
    // 416 x 312: 416 * (240.0 / 416) is just under 240 in floating point; the preview still fills 240 x 180.
    PreviewFixture f;
    f.LoadPicture(416, 312);
    RefitPreview();
    SIZE size = WindowSize(f.preview);
    EXPECT_EQ(size.cx, 248);
    EXPECT_EQ(size.cy, 219);
    RECT r = WindowRectOf(f.preview), b = WindowRectOf(f.closeButton);
    EXPECT_EQ(b.left - r.left, 218);
    f.MoveOverOwner();
    f.Show();
    EXPECT_EQ(ClientPixel(f.preview, 4, 35), kTopColor);
    EXPECT_EQ(ClientPixel(f.preview, 243, 214), kBottomColor);  // the picture's last pixel
    EXPECT_EQ(ClientPixel(f.preview, 244, 214), kBlack);
    EXPECT_EQ(ClientPixel(f.preview, 243, 215), kBlack);
}

TEST(Preview, WithoutAnImageTheFrameIs248By219AndShowsOnlyItsTitleStrip) {
    PreviewFixture f;
    f.LoadPicture(300, 300);
    RefitPreview();
    ClearCurrentPicture();
    RefitPreview();
    SIZE size = WindowSize(f.preview);
    EXPECT_EQ(size.cx, 248);
    EXPECT_EQ(size.cy, 219);
    f.MoveOverOwner();
    f.Show();
    // The strip: 30 x 31 tiles along the top (the close button covers 218 .. 237 x 0 .. 19).
    for (int x : {0, 29, 30, 100, 150, 200, 247}) EXPECT_EQ(ClientPixel(f.preview, x, 30), kTileColor) << x;
    EXPECT_EQ(ClientPixel(f.preview, 2, 2), kTileColor);
    // Below it, only the class's black background: the old picture is gone.
    for (int y : {31, 35, 100, 218})
        for (int x : {0, 4, 120, 247}) EXPECT_EQ(ClientPixel(f.preview, x, y), kBlack) << x << "," << y;
}

TEST(Preview, RefittingHidesAShownPreview) {
    PreviewFixture f;
    f.Show();
    ASSERT_TRUE(IsWindowVisible(f.preview));
    f.LoadPicture(64, 48);
    RefitPreview();
    EXPECT_FALSE(IsWindowVisible(f.preview));
}

TEST(Preview, ToolsButtonTogglesVisibilityWithoutMovingOrActivating) {
    PreviewFixture f;
    RECT before = WindowRectOf(f.preview);
    TogglePreview();
    EXPECT_TRUE(IsWindowVisible(f.preview));
    EXPECT_NE(GetActiveWindow(), f.preview);
    RECT shown = WindowRectOf(f.preview);
    EXPECT_TRUE(EqualRect(&before, &shown));
    TogglePreview();
    EXPECT_FALSE(IsWindowVisible(f.preview));
    RECT hidden = WindowRectOf(f.preview);
    EXPECT_TRUE(EqualRect(&before, &hidden));
}

TEST(Preview, CloseButtonOnlyHidesAndTheToolsButtonShowsItWhereItWasLeft) {
    PreviewFixture f;
    f.MoveOverOwner();
    f.Show();
    RECT left = WindowRectOf(f.preview);
    // Pressed, released, entered, left: nothing.
    for (WPARAM event : {NOTIFY_PRESSED, NOTIFY_RELEASED, NOTIFY_ENTERED, NOTIFY_LEFT})
        SendMessageA(f.preview, PM_NOTIFY, event, reinterpret_cast<LPARAM>(f.closeButton));
    EXPECT_TRUE(IsWindowVisible(f.preview));
    SendMessageA(f.preview, PM_NOTIFY, NOTIFY_CLICKED, reinterpret_cast<LPARAM>(f.closeButton));
    EXPECT_FALSE(IsWindowVisible(f.preview));
    EXPECT_TRUE(IsWindow(f.preview));
    EXPECT_EQ(g_magnifierWindow, f.preview);
    TogglePreview();
    EXPECT_TRUE(IsWindowVisible(f.preview));
    RECT again = WindowRectOf(f.preview);
    EXPECT_TRUE(EqualRect(&left, &again));
}

TEST(Preview, CloseMessageHidesAndNeverDestroys) {
    PreviewFixture f;
    f.Show();
    SendMessageA(f.preview, WM_CLOSE, 0, 0);
    EXPECT_TRUE(IsWindow(f.preview));
    EXPECT_FALSE(IsWindowVisible(f.preview));
    SendMessageA(f.preview, WM_CLOSE, 0, 0);  // closing a hidden preview keeps it hidden
    EXPECT_FALSE(IsWindowVisible(f.preview));
}

TEST(Preview, SetTextStoresTheTitleAndDrawsItOnTheStrip) {
    PreviewFixture f;
    EXPECT_EQ(SendMessageA(f.preview, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("")), 1);
    f.MoveOverOwner();
    f.Show();
    EXPECT_EQ(f.TitlePixels(), 0);  // an empty title leaves the bare strip
    EXPECT_EQ(SendMessageA(f.preview, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("Vista previa")), 1);
    PumpMessages(30);
    EXPECT_EQ(f.Title(), "Vista previa");
    EXPECT_GT(f.TitlePixels(), 20);
}

TEST(Preview, TitlesAreKeptUpTo40Characters) {
    PreviewFixture f;
    std::string sixty(60, 'a');
    for (int i = 0; i < 60; ++i) sixty[i] = char('A' + i % 26);
    SetWindowTextA(f.preview, sixty.c_str());
    EXPECT_EQ(f.Title(), sixty.substr(0, 40));
    std::string forty = sixty.substr(20, 40);
    SetWindowTextA(f.preview, forty.c_str());
    EXPECT_EQ(f.Title(), forty);
}

TEST(Preview, GetTextStopsAtTheCallersSizeAndAnswersZero) {
    PreviewFixture f;
    SetWindowTextA(f.preview, "Preview");
    EXPECT_EQ(f.Title(4), "Pre");
    EXPECT_EQ(f.Title(8), "Preview");
    EXPECT_EQ(f.Title(1), "");
    char untouched[4] = "xyz";
    EXPECT_EQ(SendMessageA(f.preview, WM_GETTEXT, 0, reinterpret_cast<LPARAM>(untouched)), 0);
    EXPECT_STREQ(untouched, "xyz");
}

TEST(Preview, RetitleFollowsTheLanguage) {
    PreviewFixture f;
    int32_t saved = g_language;
    g_language = kEnglish;
    RetitlePreview();
    EXPECT_EQ(f.Title(), "Preview");
    g_language = kSpanish;
    RetitlePreview();
    std::string spanish = f.Title();
    g_language = saved;
    EXPECT_FALSE(spanish.empty());
    EXPECT_NE(spanish, "Preview");
}

TEST(Preview, DraggingMovesTheWindowByThePointersMovement) {
    PreviewFixture f;
    f.MoveOverOwner();
    f.Show();
    RECT start = WindowRectOf(f.preview);
    int px = start.left + 50, py = start.top + 10;
    f.MouseAt(WM_LBUTTONDOWN, px, py);
    EXPECT_EQ(GetCapture(), f.preview);
    f.MouseAt(WM_MOUSEMOVE, px + 30, py + 15);
    RECT moved = WindowRectOf(f.preview);
    EXPECT_EQ(moved.left, start.left + 30);
    EXPECT_EQ(moved.top, start.top + 15);
    EXPECT_EQ(moved.right - moved.left, start.right - start.left);
    f.MouseAt(WM_MOUSEMOVE, px + 30, py + 15);  // no movement: no move
    RECT still = WindowRectOf(f.preview);
    EXPECT_TRUE(EqualRect(&moved, &still));
    f.MouseAt(WM_MOUSEMOVE, px - 20, py + 40);
    moved = WindowRectOf(f.preview);
    EXPECT_EQ(moved.left, start.left - 20);
    EXPECT_EQ(moved.top, start.top + 40);
    f.MouseAt(WM_LBUTTONUP, px - 20, py + 40);
    EXPECT_EQ(GetCapture(), nullptr);
    f.MouseAt(WM_MOUSEMOVE, px + 90, py + 90);  // released: moving the pointer moves nothing
    still = WindowRectOf(f.preview);
    EXPECT_TRUE(EqualRect(&moved, &still));
    EXPECT_TRUE(IsWindowVisible(f.preview));
}

TEST(Preview, CaptureTakenElsewhereEndsTheMove) {
    PreviewFixture f;
    f.MoveOverOwner();
    f.Show();
    RECT start = WindowRectOf(f.preview);
    f.MouseAt(WM_LBUTTONDOWN, start.left + 60, start.top + 12);
    SetCapture(f.owner.hwnd);
    f.MouseAt(WM_MOUSEMOVE, start.left + 100, start.top + 50);
    RECT after = WindowRectOf(f.preview);
    EXPECT_TRUE(EqualRect(&start, &after));
    ReleaseCapture();
    // A new press starts a new move.
    f.MouseAt(WM_LBUTTONDOWN, start.left + 60, start.top + 12);
    f.MouseAt(WM_MOUSEMOVE, start.left + 65, start.top + 10);
    after = WindowRectOf(f.preview);
    EXPECT_EQ(after.left, start.left + 5);
    EXPECT_EQ(after.top, start.top - 2);
    f.MouseAt(WM_LBUTTONUP, start.left + 65, start.top + 10);
}

TEST(Preview, DestroyingForgetsTheWindow) {
    PreviewFixture f;
    DestroyWindow(f.preview);
    f.preview = nullptr;
    EXPECT_EQ(g_magnifierWindow, nullptr);
    RefitPreview();  // nothing to refit or toggle: no harm
    TogglePreview();
    RetitlePreview();
}

TEST(PointerPreview, CloseButtonClickedWithThePointerHidesAndToolsButtonBringsItBack) {
    PointerLock lock;
    PreviewFixture f;
    KeepInactive(f.preview);
    f.MoveOverOwner();
    f.Show();
    RECT left = WindowRectOf(f.preview);
    PointerToClient(f.closeButton, 10, 10);
    LeftDown();
    LeftUp();
    PumpMessages(50);
    EXPECT_FALSE(IsWindowVisible(f.preview));
    EXPECT_TRUE(IsWindow(f.preview));
    TogglePreview();
    EXPECT_TRUE(IsWindowVisible(f.preview));
    RECT again = WindowRectOf(f.preview);
    EXPECT_TRUE(EqualRect(&left, &again));
}

TEST(PointerPreview, DraggingTheTitleStripWithThePointerMovesTheWindow) {
    PointerLock lock;
    PreviewFixture f;
    KeepInactive(f.preview);
    f.MoveOverOwner();
    f.Show();
    RECT start = WindowRectOf(f.preview);
    PointerTo(start.left + 60, start.top + 12);
    LeftDown();
    PointerTo(start.left + 80, start.top + 22);
    PointerTo(start.left + 100, start.top + 32);

    LeftUp();
    PumpMessages(50);
    RECT moved = WindowRectOf(f.preview);
    EXPECT_EQ(moved.left, start.left + 40);
    EXPECT_EQ(moved.top, start.top + 20);
    EXPECT_EQ(GetCapture(), nullptr);
}
