// `CQMANIM`: frames of a grid, the tick timer and its rate, masked frames over the background, refused
// images and backgrounds, the unused message numbers, and clicks and drags with the real pointer.
#include <gtest/gtest.h>
#include <windows.h>

#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "message_log_win32.h"
#include "win32_support.h"

namespace {

COLORREF FrameColor(int k) { return RGB(10 + 20 * k, 200 - 15 * k, 60 + 7 * k); }

// A grid of rows x columns frames, each `size` square and filled with FrameColor(its index).
uint8_t* MakeGrid(int rows, int columns, int size) {
    return MakeDib24(columns * size, rows * size,
                     [=](int x, int y) { return FrameColor((y / size) * columns + x / size); });
}

LPARAM Dib(const uint8_t* dib) { return reinterpret_cast<LPARAM>(dib); }

// An animation at (40, 40) of a 300 x 200 parent, 50 x 50 as the screens create them, with a one-row
// grid of ten 50 x 50 frames.
struct AnimFixture {
    LoggingParent parent{300, 200};
    uint8_t* grid;
    HWND anim;
    explicit AnimFixture(bool withImage = true) {
        grid = MakeGrid(1, 10, 50);
        anim = CreateControl("CQMANIM", parent.hwnd, 40, 40, 50, 50);
        SendMessageA(anim, PM_ANIM_SETCOLUMNS, 0, 10);
        if (withImage) SendMessageA(anim, PM_SETIMAGE, 0, Dib(grid));
        PumpMessages(30);
        parent.Clear();
    }
    ~AnimFixture() {
        DestroyWindow(anim);
        FreePackedDib(grid);
    }
    COLORREF Shown() const { return ClientPixel(anim, 25, 25); }
};

const ExpectedMessage kNothing[] = {{0}};
const ExpectedMessage kEntered[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {0}};

}  // namespace

TEST(Animation, StartingBeforeAFrameImageIsSetDoesNothing) {
    AnimFixture f(false);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 1), 1);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETRUNNING, 0, 0), 0);
    PumpMessages(300);
    EXPECT_EQ(f.parent.Count(NOTIFY_SPECIAL), 0);
    EXPECT_FALSE(KillTimer(f.anim, kAnimTickTimer)) << "a tick timer was started";
    // Setting the image afterwards does not start it either.
    SendMessageA(f.anim, PM_SETIMAGE, 0, Dib(f.grid));
    PumpMessages(200);
    EXPECT_EQ(f.parent.Count(NOTIFY_SPECIAL), 0);
}

TEST(Animation, TicksAbout13TimesASecondAt75Ms) {
    AnimFixture f;
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETPERIOD, 0, 0), 75);
    DWORD start = GetTickCount();
    SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 1);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETRUNNING, 0, 0), 1);
    PumpMessages(1000);
    DWORD elapsed = GetTickCount() - start;
    SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 0);
    int ticks = f.parent.Count(NOTIFY_SPECIAL);
    // 1,000 ms / 75 ms is 13.3; a busy machine may drop a few ticks, never add any.
    EXPECT_GE(ticks, 9) << "over " << elapsed << " ms";
    EXPECT_LE(ticks, int(elapsed / 75) + 1) << "over " << elapsed << " ms";
    for (const LoggedMessage& m : f.parent.log) EXPECT_EQ(m.lParam, reinterpret_cast<LPARAM>(f.anim));
    f.parent.Clear();
    PumpMessages(250);
    EXPECT_EQ(f.parent.Count(NOTIFY_SPECIAL), 0) << "ticks after stopping";
}

TEST(Animation, PeriodTakesEffectAtTheNextStart) {
    AnimFixture f;
    SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 1);
    SendMessageA(f.anim, PM_ANIM_SETPERIOD, 0, 400);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETPERIOD, 0, 0), 400);
    PumpMessages(500);
    EXPECT_GE(f.parent.Count(NOTIFY_SPECIAL), 4) << "still ticking at 75 ms";
    SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 0);
    f.parent.Clear();
    SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 1);
    PumpMessages(500);
    SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 0);
    EXPECT_LE(f.parent.Count(NOTIFY_SPECIAL), 2) << "400 ms period after the restart";
}

TEST(Animation, ParentStepsTheFrameOnEachTick) {
    AnimFixture f;
    f.parent.onNotify = [&](WPARAM event, HWND control) {
        if (event != NOTIFY_SPECIAL) return;
        LRESULT frame = SendMessageA(control, PM_ANIM_GETFRAME, 0, 0);
        SendMessageA(control, PM_ANIM_SETFRAME, 0, (frame + 1) % 10);
    };
    EXPECT_EQ(f.Shown(), FrameColor(0));
    SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 1);
    PumpMessages(400);
    SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 0);
    PumpMessages(50);
    int ticks = f.parent.Count(NOTIFY_SPECIAL);
    ASSERT_GE(ticks, 2);
    LRESULT frame = SendMessageA(f.anim, PM_ANIM_GETFRAME, 0, 0);
    EXPECT_EQ(frame, ticks % 10);
    EXPECT_EQ(f.Shown(), FrameColor(int(frame)));
}

TEST(Animation, ShowsTheCurrentFrameOfAGridCountedRowByRow) {
    LoggingParent parent(300, 200);
    uint8_t* grid = MakeGrid(2, 3, 50);
    HWND anim = CreateControl("CQMANIM", parent.hwnd, 40, 40, 50, 50);
    SendMessageA(anim, PM_ANIM_SETROWS, 0, 2);
    SendMessageA(anim, PM_ANIM_SETCOLUMNS, 0, 3);
    EXPECT_EQ(SendMessageA(anim, PM_SETIMAGE, 0, Dib(grid)), 1);
    EXPECT_EQ(ClientPixel(anim, 25, 25), FrameColor(0));
    for (int k : {4, 2, 3, 5}) {
        SendMessageA(anim, PM_ANIM_SETFRAME, 0, k);
        EXPECT_EQ(ClientPixel(anim, 0, 0), FrameColor(k)) << "frame " << k;
        EXPECT_EQ(ClientPixel(anim, 49, 49), FrameColor(k)) << "frame " << k;
    }
    DestroyWindow(anim);
    FreePackedDib(grid);
}

TEST(Animation, FrameSetBeforeTheImageIsShownOnceTheImageArrives) {
    AnimFixture f(false);
    SendMessageA(f.anim, PM_ANIM_SETFRAME, 0, 6);
    SendMessageA(f.anim, PM_SETIMAGE, 0, Dib(f.grid));
    EXPECT_EQ(f.Shown(), FrameColor(6));
}

TEST(Animation, NotReadyPaintsBlackAndIgnoresTheMouse) {
    AnimFixture f(false);
    EXPECT_EQ(f.Shown(), RGB(0, 0, 0));
    SendMessageA(f.anim, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    SendMessageA(f.anim, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageA(f.anim, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(GetCapture(), nullptr);
    ExpectSequence(f.parent, kNothing, f.anim, "animation without a frame image");
}

TEST(Animation, RefusedImageClearsReady) {
    AnimFixture f;
    SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 1);
    EXPECT_EQ(SendMessageA(f.anim, PM_SETIMAGE, 0, 0), 0);
    PumpMessages(250);
    EXPECT_EQ(f.parent.Count(NOTIFY_SPECIAL), 0) << "a control that is not ready does not tick";
    InvalidateRect(f.anim, nullptr, FALSE);
    UpdateWindow(f.anim);
    EXPECT_EQ(f.Shown(), RGB(0, 0, 0));
    // A grid too small for its layout is refused as well.
    uint8_t* tiny = MakeSolidDib(5, 5, RGB(1, 2, 3));
    EXPECT_EQ(SendMessageA(f.anim, PM_SETIMAGE, 0, Dib(tiny)), 0);
    SendMessageA(f.anim, PM_SETIMAGE, 0, 0);
    FreePackedDib(tiny);
}

TEST(Animation, MaskedFrameIsComposedOverTheBackgroundAtOnce) {
    LoggingParent parent(300, 200);
    // Two 40 x 40 frames side by side, their masks in the row below; the control is 60 x 60, so the
    // background shows around the frame.
    uint8_t* grid = MakeDib24(80, 80, [](int x, int y) {
        if (y >= 40) return RGB(0, 0, 0);
        return FrameColor(x / 40);
    });
    uint8_t* background = MakeDib24(60, 60, [](int x, int y) { return PatternColor(x, y, 5); });
    HWND anim = CreateControl("CQMANIM", parent.hwnd, 40, 40, 60, 60);
    SendMessageA(anim, PM_ANIM_SETCOLUMNS, 0, 2);
    EXPECT_EQ(SendMessageA(anim, PM_ANIM_SETMASKED, 0, 1), 1);
    EXPECT_EQ(SendMessageA(anim, PM_ANIM_SETBACKGROUND, 0, Dib(background)), 1);
    EXPECT_EQ(SendMessageA(anim, PM_SETIMAGE, 0, Dib(grid)), 1);
    EXPECT_EQ(ClientPixel(anim, 10, 10), FrameColor(0));
    EXPECT_EQ(ClientPixel(anim, 50, 50), PatternColor(50, 50, 5));
    EXPECT_EQ(ClientPixel(anim, 45, 5), PatternColor(45, 5, 5));
    SendMessageA(anim, PM_ANIM_SETFRAME, 0, 1);  // drawn at once, without a paint message
    EXPECT_EQ(ClientPixel(anim, 10, 10), FrameColor(1));
    EXPECT_EQ(ClientPixel(anim, 55, 20), PatternColor(55, 20, 5));
    DestroyWindow(anim);
    FreePackedDib(grid);
    FreePackedDib(background);
}

TEST(Animation, RefusedBackgroundClearsReady) {
    AnimFixture f;
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_SETBACKGROUND, 0, 0), 0);
    SendMessageA(f.anim, PM_ANIM_SETRUNNING, 0, 1);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETRUNNING, 0, 0), 0);
    SendMessageA(f.anim, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_EQ(GetCapture(), nullptr);
    ExpectSequence(f.parent, kNothing, f.anim, "after a refused background");
}

TEST(Animation, SettingsAreReportedBack) {
    AnimFixture f;
    uint8_t* background = MakeSolidDib(50, 50, RGB(9, 9, 9));
    EXPECT_EQ(SendMessageA(f.anim, PM_GETENABLE, 0, 0), 1);
    EXPECT_EQ(SendMessageA(f.anim, PM_GETIMAGE, 0, 0), Dib(f.grid));
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETROWS, 0, 0), 1);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETCOLUMNS, 0, 0), 10);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETMASKED, 0, 0), 0);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETUSERVALUE, 0, 0), 0);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_SETUSERVALUE, 0, -77), 1);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETUSERVALUE, 0, 0), -77);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_SETBACKGROUND, 0, Dib(background)), 1);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETBACKGROUND, 0, 0), Dib(background));
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_SETFRAME, 0, 3), 1);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETFRAME, 0, 0), 3);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETLIT, 0, 0), 0);
    FreePackedDib(background);
}

TEST(Animation, UnusedMessagesReturnOne) {
    AnimFixture f;
    for (UINT m = 1351; m <= 1424; ++m) EXPECT_EQ(SendMessageA(f.anim, m, 0, 1), 1) << m;
    for (UINT m = 1328; m <= 1333; ++m) EXPECT_EQ(SendMessageA(f.anim, m, 0, 1), 1) << m;
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETFRAME, 0, 0), 0);
    EXPECT_EQ(f.Shown(), FrameColor(0));
    ExpectSequence(f.parent, kNothing, f.anim, "unused messages");
}

TEST(Animation, DisablingEndsAPressSilently) {
    AnimFixture f;
    SendMessageA(f.anim, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_EQ(GetCapture(), f.anim);
    SendMessageA(f.anim, PM_SETENABLE, 0, 0);
    EXPECT_EQ(GetCapture(), nullptr);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {0}};
    ExpectSequence(f.parent, expected, f.anim, "disabled during a press");
}

TEST(Animation, ReleaseWithoutAPressStillReportsReleased) {
    AnimFixture f;
    SendMessageA(f.anim, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.anim, "release without a press");
}

TEST(Animation, LosingTheCaptureEndsThePressLikeARelease) {
    AnimFixture f;
    SendMessageA(f.anim, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SetCapture(f.parent.hwnd);
    EXPECT_EQ(GetCapture(), f.parent.hwnd);
    ReleaseCapture();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.anim, "capture taken by the parent");
}

// ---- real pointer -------------------------------------------------------------------------------------

TEST(PointerAnimation, ClickSendsPressedReleasedClicked) {
    PointerLock lock;
    AnimFixture f;
    PointerToClient(f.anim, 25, 25);
    ExpectSequence(f.parent, kEntered, f.anim, "pointer over the animation");
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETLIT, 0, 0), 1);
    f.parent.Clear();
    LeftDown();
    EXPECT_EQ(GetCapture(), f.anim);
    LeftUp();
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {PM_NOTIFY, NOTIFY_CLICKED}, {0}};
    ExpectSequence(f.parent, expected, f.anim, "click");
}

TEST(PointerAnimation, PressDragOffDragBackReleaseGivesPressedLeftEnteredReleasedClicked) {
    PointerLock lock;
    AnimFixture f;
    PointerToClient(f.anim, 25, 25);
    f.parent.Clear();
    LeftDown();
    PointerToClient(f.parent.hwnd, 250, 150);
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETLIT, 0, 0), 0);
    PointerToClient(f.anim, 10, 10);
    LeftUp();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED},  {PM_NOTIFY, NOTIFY_LEFT},
                                               {PM_NOTIFY, NOTIFY_ENTERED},  {PM_NOTIFY, NOTIFY_RELEASED},
                                               {PM_NOTIFY, NOTIFY_CLICKED}, {0}};
    ExpectSequence(f.parent, expected, f.anim, "press, drag off, drag back, release");
}

TEST(PointerAnimation, PressDragOffReleaseElsewhereIsNoClick) {
    PointerLock lock;
    AnimFixture f;
    PointerToClient(f.anim, 25, 25);
    f.parent.Clear();
    LeftDown();
    PointerToClient(f.parent.hwnd, 250, 150);
    LeftUp();
    PumpMessages(200);
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_LEFT}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.anim, "press, drag off, release elsewhere");
}

TEST(PointerAnimation, HoverTimerNoticesThePointerLeaving) {
    PointerLock lock;
    AnimFixture f;
    PointerToClient(f.anim, 25, 25);
    PointerToClient(f.parent.hwnd, 250, 150);
    PumpMessages(300);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_LEFT}, {0}};
    ExpectSequence(f.parent, expected, f.anim, "hover and leave");
    EXPECT_EQ(SendMessageA(f.anim, PM_ANIM_GETLIT, 0, 0), 0);
}
