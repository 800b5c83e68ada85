// `CQMCOMMAND` / `CQMBOXSCOMMAND`: sizing from the strip, painting of each frame, the unused message
// numbers, disabling, and the PM_NOTIFY sequences of hovering, clicking and dragging with the real pointer.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <vector>

#include "app/app_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "message_log_win32.h"

namespace {

const COLORREF kDisabled = RGB(90, 90, 90);
const COLORREF kNormal = RGB(0, 160, 0);
const COLORREF kLit = RGB(230, 200, 0);
const COLORREF kPressed = RGB(200, 0, 200);
const COLORREF kBlack = RGB(0, 0, 0);

// A button at (40, 40) of a 300 x 200 parent, given a 60-wide strip of 40-high frames.
struct ButtonFixture {
    LoggingParent parent{300, 200};
    uint8_t* strip;
    HWND button;
    explicit ButtonFixture(bool disabledFrame, const char* className = "CQMCOMMAND") {
        strip = disabledFrame ? MakeFrameStrip(60, 40, {kDisabled, kNormal, kLit, kPressed})
                              : MakeFrameStrip(60, 40, {kNormal, kLit, kPressed});
        button = CreateControl(className, parent.hwnd, 40, 40);
        if (disabledFrame) SendMessageA(button, PM_SETDISFRAME, 0, 1);
        SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip));
        PumpMessages(30);
        parent.Clear();
    }
    ~ButtonFixture() {
        DestroyWindow(button);
        FreePackedDib(strip);
    }
    COLORREF Shown() const { return ClientPixel(button, 30, 20); }
};

const ExpectedMessage kEntered[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {0}};
const ExpectedMessage kEnteredLeft[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_LEFT}, {0}};
const ExpectedMessage kPressedOnly[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {0}};
const ExpectedMessage kClick[] = {
    {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {PM_NOTIFY, NOTIFY_CLICKED}, {0}};
const ExpectedMessage kPressReleased[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
const ExpectedMessage kNothing[] = {{0}};

}  // namespace

TEST(CommandButton, StripOf60By120GivesA60By40ButtonAnd60By30WithTheDisabledFrame) {
    LoggingParent parent(300, 200);
    uint8_t* strip = MakeFrameStrip(60, 40, {kNormal, kLit, kPressed});
    HWND button = CreateControl("CQMCOMMAND", parent.hwnd, 10, 10, 50, 50);
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip)), 1);
    SIZE size = WindowSize(button);
    EXPECT_EQ(size.cx, 60);
    EXPECT_EQ(size.cy, 40);
    EXPECT_EQ(SendMessageA(button, PM_SETDISFRAME, 0, 1), 1);
    size = WindowSize(button);
    EXPECT_EQ(size.cx, 60);
    EXPECT_EQ(size.cy, 30);
    EXPECT_EQ(SendMessageA(button, PM_GETDISFRAME, 0, 0), 1);
    // Not moved by either resize.
    RECT r;
    GetWindowRect(button, &r);
    MapWindowPoints(HWND_DESKTOP, parent.hwnd, reinterpret_cast<POINT*>(&r), 2);
    EXPECT_EQ(r.left, 10);
    EXPECT_EQ(r.top, 10);
    DestroyWindow(button);
    FreePackedDib(strip);
}

TEST(CommandButton, DisabledFrameSetBeforeTheStripCountsAtTheStrip) {
    LoggingParent parent(300, 200);
    uint8_t* strip = MakeFrameStrip(60, 30, {kDisabled, kNormal, kLit, kPressed});
    HWND button = CreateControl("CQMCOMMAND", parent.hwnd, 10, 10);
    SendMessageA(button, PM_SETDISFRAME, 0, 1);
    EXPECT_EQ(WindowSize(button).cy, 50);  // no strip yet: nothing to resize
    SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip));
    EXPECT_EQ(WindowSize(button).cy, 30);
    EXPECT_EQ(ClientPixel(button, 30, 15), kNormal);
    DestroyWindow(button);
    FreePackedDib(strip);
}

TEST(CommandButton, GettersReportEnableImageAndDisabledFrame) {
    ButtonFixture f(false);
    EXPECT_EQ(SendMessageA(f.button, PM_GETENABLE, 0, 0), 1);
    EXPECT_EQ(SendMessageA(f.button, PM_GETIMAGE, 0, 0), reinterpret_cast<LRESULT>(f.strip));
    EXPECT_EQ(SendMessageA(f.button, PM_GETDISFRAME, 0, 0), 0);
    EXPECT_EQ(SendMessageA(f.button, PM_SETENABLE, 0, 0), 1);
    EXPECT_EQ(SendMessageA(f.button, PM_GETENABLE, 0, 0), 0);
    EXPECT_EQ(SendMessageA(f.button, PM_SETENABLE, 0, 1), 1);
    EXPECT_EQ(SendMessageA(f.button, PM_GETENABLE, 0, 0), 1);
}

TEST(CommandButton, PaintsTheNormalFrameOfItsStrip) {
    ButtonFixture f(false);
    for (int y = 0; y < 40; y += 13)
        for (int x = 0; x < 60; x += 11) EXPECT_EQ(ClientPixel(f.button, x, y), kNormal) << x << "," << y;
    ButtonFixture g(true);
    EXPECT_EQ(g.Shown(), kNormal);
}

TEST(CommandButton, UnusedMessagesReturnOneAndChangeNothing) {
    ButtonFixture f(true);
    std::vector<UINT> unused;
    for (UINT m = 1328; m <= 1333; ++m) unused.push_back(m);
    for (UINT m = 1336; m <= 1424; ++m) unused.push_back(m);
    for (UINT m : unused) {
        EXPECT_EQ(SendMessageA(f.button, m, 0, 0), 1) << m;
        EXPECT_EQ(SendMessageA(f.button, m, 1, 1), 1) << m;
        EXPECT_EQ(SendMessageA(f.button, m, 7, reinterpret_cast<LPARAM>(f.strip)), 1) << m;
    }
    PumpMessages(30);
    EXPECT_EQ(SendMessageA(f.button, PM_GETENABLE, 0, 0), 1);
    EXPECT_EQ(SendMessageA(f.button, PM_GETIMAGE, 0, 0), reinterpret_cast<LRESULT>(f.strip));
    EXPECT_EQ(SendMessageA(f.button, PM_GETDISFRAME, 0, 0), 1);
    SIZE size = WindowSize(f.button);
    EXPECT_EQ(size.cx, 60);
    EXPECT_EQ(size.cy, 40);
    EXPECT_EQ(f.Shown(), kNormal);
    EXPECT_EQ(GetCapture(), nullptr);
    ExpectSequence(f.parent, kNothing, f.button, "unused messages");
}

TEST(CommandButton, DisablingALitButtonStopsItsTimerAndShowsTheDisabledFrameAtOnce) {
    ButtonFixture f(true);
    SendMessageA(f.button, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(f.Shown(), kLit);
    ExpectSequence(f.parent, kEntered, f.button, "lit by a mouse move");
    SendMessageA(f.button, PM_SETENABLE, 0, 0);
    // No message pumped: the disabled frame is on screen when PM_SETENABLE returns.
    EXPECT_EQ(f.Shown(), kDisabled);
    EXPECT_FALSE(KillTimer(f.button, kHoverTimer)) << "the hover timer is still running";
    PumpMessages(300);
    ExpectSequence(f.parent, kEntered, f.button, "after disabling");
    EXPECT_EQ(f.Shown(), kDisabled);
}

TEST(CommandButton, DisablingALitButtonWithoutDisabledFrameShowsTheNormalFrameAtOnce) {
    ButtonFixture f(false);
    SendMessageA(f.button, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(f.Shown(), kLit);
    SendMessageA(f.button, PM_SETENABLE, 0, 0);
    EXPECT_EQ(f.Shown(), kNormal);
    EXPECT_FALSE(KillTimer(f.button, kHoverTimer)) << "the hover timer is still running";
    // Enabling again shows the normal frame of an enabled button.
    SendMessageA(f.button, PM_SETENABLE, 0, 1);
    EXPECT_EQ(f.Shown(), kNormal);
}

TEST(CommandButton, DisablingDuringAPressReleasesTheCaptureSilently) {
    ButtonFixture f(false);
    SendMessageA(f.button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_EQ(GetCapture(), f.button);
    EXPECT_EQ(f.Shown(), kPressed);
    SendMessageA(f.button, PM_SETENABLE, 0, 0);
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(f.Shown(), kNormal);
    PumpMessages(50);
    ExpectSequence(f.parent, kPressedOnly, f.button, "disabled during a press");
}

TEST(CommandButton, DisabledButtonIgnoresTheMouse) {
    ButtonFixture f(false);
    SendMessageA(f.button, PM_SETENABLE, 0, 0);
    SendMessageA(f.button, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    SendMessageA(f.button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageA(f.button, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(GetCapture(), nullptr);
    ExpectSequence(f.parent, kNothing, f.button, "disabled button");
}

TEST(CommandButton, WithoutAStripPaintsBlackAndIgnoresTheMouse) {
    LoggingParent parent(300, 200, RGB(0, 0, 200));
    HWND button = CreateControl("CQMCOMMAND", parent.hwnd, 40, 40, 50, 50);
    PumpMessages(30);
    EXPECT_EQ(ClientPixel(button, 0, 0), kBlack);
    EXPECT_EQ(ClientPixel(button, 49, 49), kBlack);
    SendMessageA(button, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    SendMessageA(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_EQ(GetCapture(), nullptr);
    ExpectSequence(parent, kNothing, button, "no strip");
    DestroyWindow(button);
}

TEST(CommandButton, SideColumnClassSharesTheBehaviour) {
    ButtonFixture f(false, "CQMBOXSCOMMAND");
    EXPECT_EQ(WindowSize(f.button).cy, 40);
    EXPECT_EQ(f.Shown(), kNormal);
    // The pointer is never over this test's windows, so a release judged by it is not a click.
    SendMessageA(f.button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_EQ(GetCapture(), f.button);
    SendMessageA(f.button, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(f.Shown(), kNormal);
    ExpectSequence(f.parent, kPressReleased, f.button, "side-column button");
}

TEST(CommandButton, LosingTheCaptureEndsThePressLikeARelease) {
    ButtonFixture f(false);
    SendMessageA(f.button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SetCapture(f.parent.hwnd);
    EXPECT_EQ(GetCapture(), f.parent.hwnd) << "the button must not take the new capture away";
    EXPECT_EQ(f.Shown(), kNormal);
    ReleaseCapture();
    ExpectSequence(f.parent, kPressReleased, f.button, "capture taken by the parent");
}

TEST(CommandButton, CloseDestroysTheButton) {
    ButtonFixture f(false);
    SendMessageA(f.button, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(f.button));
}

// A complete RIFF/WAVE image: 8-bit mono, 8 kHz, 200 samples of a square wave.
static std::vector<uint8_t> TinyWave() {
    const uint32_t samples = 200;
    std::vector<uint8_t> w(44 + samples);
    auto put32 = [&](size_t at, uint32_t v) { std::memcpy(&w[at], &v, 4); };
    auto put16 = [&](size_t at, uint16_t v) { std::memcpy(&w[at], &v, 2); };
    std::memcpy(&w[0], "RIFF", 4);
    put32(4, uint32_t(w.size() - 8));
    std::memcpy(&w[8], "WAVEfmt ", 8);
    put32(16, 16);
    put16(20, 1);      // PCM
    put16(22, 1);      // mono
    put32(24, 8000);   // samples a second
    put32(28, 8000);   // bytes a second
    put16(32, 1);      // block align
    put16(34, 8);      // bits
    std::memcpy(&w[36], "data", 4);
    put32(40, samples);
    for (uint32_t i = 0; i < samples; ++i) w[44 + i] = (i / 10) % 2 ? 200 : 56;
    return w;
}

TEST(CommandButton, InterfaceSoundsPlayFromMemoryWithoutDisturbingTheEvents) {
    std::vector<uint8_t> wave = TinyWave();
    g_hoverSound = wave.data();
    g_clickSound = wave.data();
    {
        ButtonFixture f(false);
        SendMessageA(f.button, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
        SendMessageA(f.button, PM_SETENABLE, 0, 0);
        SendMessageA(f.button, PM_SETENABLE, 0, 1);
        ExpectSequence(f.parent, kEntered, f.button, "hover with a sound");
    }
    g_hoverSound = nullptr;
    g_clickSound = nullptr;
}

// ---- real pointer -------------------------------------------------------------------------------------

TEST(PointerControlsHarness, AbsoluteInputLandsOnTheRequestedPixel) {
    PointerLock lock;
    LoggingParent parent(200, 100);
    POINT target = {37, 21};
    ClientToScreen(parent.hwnd, &target);
    PointerTo(target.x, target.y);
    POINT at;
    GetCursorPos(&at);
    EXPECT_EQ(at.x, target.x);
    EXPECT_EQ(at.y, target.y);
    EXPECT_EQ(WindowFromPoint(at), parent.hwnd);
}

TEST(PointerCommandButton, HoverLightsTheButtonAndTheTimerNoticesLeaving) {
    PointerLock lock;
    ButtonFixture f(false);
    PointerToClient(f.button, 30, 20);
    ExpectSequence(f.parent, kEntered, f.button, "pointer over the button");
    EXPECT_EQ(f.Shown(), kLit);
    PointerToClient(f.parent.hwnd, 250, 150);
    PumpMessages(300);
    ExpectSequence(f.parent, kEnteredLeft, f.button, "pointer moved off");
    EXPECT_EQ(f.Shown(), kNormal);
}

TEST(PointerCommandButton, ClickSendsPressedReleasedClicked) {
    PointerLock lock;
    ButtonFixture f(false);
    PointerToClient(f.button, 30, 20);
    f.parent.Clear();
    LeftDown();
    EXPECT_EQ(f.Shown(), kPressed);
    EXPECT_EQ(GetCapture(), f.button);
    ExpectSequence(f.parent, kPressedOnly, f.button, "left button down");
    LeftUp();
    ExpectSequence(f.parent, kClick, f.button, "click");
    EXPECT_EQ(f.Shown(), kLit);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST(PointerCommandButton, PressDragOffReleaseElsewhereGivesPressedLeftReleasedAndNoClick) {
    PointerLock lock;
    ButtonFixture f(false);
    PointerToClient(f.button, 30, 20);
    f.parent.Clear();
    LeftDown();
    PointerToClient(f.parent.hwnd, 250, 150);
    // Dragged off while pressed: the lit frame, not the normal one.
    EXPECT_EQ(f.Shown(), kLit);
    LeftUp();
    PumpMessages(200);
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_LEFT}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.button, "press, drag off, release elsewhere");
    EXPECT_EQ(f.parent.Count(NOTIFY_CLICKED), 0);
    EXPECT_EQ(f.Shown(), kNormal);
}

TEST(PointerCommandButton, PressDragOffDragBackReleaseGivesPressedLeftEnteredReleasedClicked) {
    PointerLock lock;
    ButtonFixture f(false);
    PointerToClient(f.button, 30, 20);
    f.parent.Clear();
    LeftDown();
    PointerToClient(f.parent.hwnd, 250, 150);
    EXPECT_EQ(f.Shown(), kLit);
    PointerToClient(f.button, 20, 10);
    EXPECT_EQ(f.Shown(), kPressed);
    LeftUp();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED},  {PM_NOTIFY, NOTIFY_LEFT},
                                               {PM_NOTIFY, NOTIFY_ENTERED},  {PM_NOTIFY, NOTIFY_RELEASED},
                                               {PM_NOTIFY, NOTIFY_CLICKED}, {0}};
    ExpectSequence(f.parent, expected, f.button, "press, drag off, drag back, release");
    EXPECT_EQ(f.Shown(), kLit);
}

TEST(PointerCommandButton, CaptureTakenWhileThePointerIsOverCountsAsAClick) {
    PointerLock lock;
    ButtonFixture f(false);
    PointerToClient(f.button, 30, 20);
    f.parent.Clear();
    LeftDown();
    // The press is judged by where the real pointer is, which is still over the button.
    SetCapture(f.parent.hwnd);
    EXPECT_EQ(GetCapture(), f.parent.hwnd);
    ReleaseCapture();
    LeftUp();
    ExpectSequence(f.parent, kClick, f.button, "capture taken away over the button");
}
