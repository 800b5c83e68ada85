// `CQMCHECK`: sizing from the strip, frames for each value, programmatic checking with its radio
// notification, the unused message numbers, and clicks and drags with the real pointer.
#include <gtest/gtest.h>
#include <windows.h>

#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "message_log_win32.h"

namespace {

const COLORREF kDisabled = RGB(90, 90, 90);
const COLORREF kUnchecked = RGB(0, 120, 0);
const COLORREF kUncheckedLit = RGB(0, 220, 60);
const COLORREF kChecked = RGB(150, 0, 0);
const COLORREF kCheckedLit = RGB(250, 90, 40);

// A box at (40, 40) of a 300 x 200 parent, given a 40-wide strip of 40-high frames.
struct CheckFixture {
    LoggingParent parent{300, 200};
    uint8_t* strip;
    HWND box;
    explicit CheckFixture(bool radio = false, bool disabledFrame = false) {
        strip = disabledFrame ? MakeFrameStrip(40, 40, {kDisabled, kUnchecked, kUncheckedLit, kChecked, kCheckedLit})
                              : MakeFrameStrip(40, 40, {kUnchecked, kUncheckedLit, kChecked, kCheckedLit});
        box = CreateControl("CQMCHECK", parent.hwnd, 40, 40);
        if (disabledFrame) SendMessageA(box, PM_SETDISFRAME, 0, 1);
        if (radio) SendMessageA(box, PM_SETRADIO, 0, 1);
        SendMessageA(box, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip));
        PumpMessages(30);
        parent.Clear();
    }
    ~CheckFixture() {
        DestroyWindow(box);
        FreePackedDib(strip);
    }
    COLORREF Shown() const { return ClientPixel(box, 20, 20); }
    bool Checked() const { return SendMessageA(box, PM_GETCHECKED, 0, 0) != 0; }
};

const ExpectedMessage kNothing[] = {{0}};
const ExpectedMessage kEntered[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {0}};
const ExpectedMessage kRadioUnchecked[] = {{PM_NOTIFY, NOTIFY_SPECIAL}, {0}};
const ExpectedMessage kClick[] = {
    {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {PM_NOTIFY, NOTIFY_CLICKED}, {0}};

}  // namespace

TEST(CheckBox, StripOf40By160GivesA40By40BoxAnd40By32WithTheDisabledFrame) {
    LoggingParent parent(300, 200);
    uint8_t* strip = MakeFrameStrip(40, 40, {kUnchecked, kUncheckedLit, kChecked, kCheckedLit});
    HWND box = CreateControl("CQMCHECK", parent.hwnd, 10, 10, 50, 50);
    EXPECT_EQ(SendMessageA(box, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip)), 1);
    SIZE size = WindowSize(box);
    EXPECT_EQ(size.cx, 40);
    EXPECT_EQ(size.cy, 40);
    EXPECT_EQ(SendMessageA(box, PM_SETDISFRAME, 0, 1), 1);
    size = WindowSize(box);
    EXPECT_EQ(size.cx, 40);
    EXPECT_EQ(size.cy, 32);
    EXPECT_EQ(SendMessageA(box, PM_GETDISFRAME, 0, 0), 1);
    DestroyWindow(box);
    FreePackedDib(strip);
}

TEST(CheckBox, CheckingByMessageShowsTheCheckedFrame) {
    CheckFixture f;
    EXPECT_EQ(f.Shown(), kUnchecked);
    EXPECT_FALSE(f.Checked());
    EXPECT_EQ(SendMessageA(f.box, PM_SETCHECKED, 0, 1), 1);
    EXPECT_TRUE(f.Checked());
    EXPECT_EQ(f.Shown(), kChecked);
    SendMessageA(f.box, PM_SETCHECKED, 0, 0);
    EXPECT_FALSE(f.Checked());
    EXPECT_EQ(f.Shown(), kUnchecked);
    ExpectSequence(f.parent, kNothing, f.box, "plain box checked and unchecked by its program");
}

TEST(CheckBox, UncheckingAnEnabledRadioBoxSendsEventFive) {
    CheckFixture f(true);
    SendMessageA(f.box, PM_SETCHECKED, 0, 1);
    ExpectSequence(f.parent, kNothing, f.box, "radio box checked by its program");
    SendMessageA(f.box, PM_SETCHECKED, 0, 0);
    ExpectSequence(f.parent, kRadioUnchecked, f.box, "radio box unchecked by its program");
    // Unchecking an unchecked box changes nothing and says nothing.
    f.parent.Clear();
    SendMessageA(f.box, PM_SETCHECKED, 0, 0);
    ExpectSequence(f.parent, kNothing, f.box, "unchecked again");
}

TEST(CheckBox, UncheckingAPlainBoxSendsNothing) {
    CheckFixture f(false);
    SendMessageA(f.box, PM_SETCHECKED, 0, 1);
    SendMessageA(f.box, PM_SETCHECKED, 0, 0);
    ExpectSequence(f.parent, kNothing, f.box, "plain box unchecked by its program");
}

TEST(CheckBox, UncheckingADisabledRadioBoxSendsNothing) {
    CheckFixture f(true);
    SendMessageA(f.box, PM_SETCHECKED, 0, 1);
    SendMessageA(f.box, PM_SETENABLE, 0, 0);
    SendMessageA(f.box, PM_SETCHECKED, 0, 0);
    ExpectSequence(f.parent, kNothing, f.box, "disabled radio box unchecked by its program");
}

TEST(CheckBox, RadioFlagAndEnableAreReportedBack) {
    CheckFixture f;
    EXPECT_EQ(SendMessageA(f.box, PM_GETRADIO, 0, 0), 0);
    EXPECT_EQ(SendMessageA(f.box, PM_SETRADIO, 0, 1), 1);
    EXPECT_EQ(SendMessageA(f.box, PM_GETRADIO, 0, 0), 1);
    EXPECT_EQ(SendMessageA(f.box, PM_GETENABLE, 0, 0), 1);
    EXPECT_EQ(SendMessageA(f.box, PM_GETIMAGE, 0, 0), reinterpret_cast<LRESULT>(f.strip));
}

TEST(CheckBox, DisablingShowsTheDisabledFrameAndEnablingTheValue) {
    CheckFixture f(false, true);
    SendMessageA(f.box, PM_SETCHECKED, 0, 1);
    EXPECT_EQ(f.Shown(), kChecked);
    SendMessageA(f.box, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(f.Shown(), kCheckedLit);
    SendMessageA(f.box, PM_SETENABLE, 0, 0);
    EXPECT_EQ(f.Shown(), kDisabled);
    EXPECT_FALSE(KillTimer(f.box, kHoverTimer)) << "the hover timer is still running";
    SendMessageA(f.box, PM_SETENABLE, 0, 1);
    EXPECT_EQ(f.Shown(), kChecked);
}

TEST(CheckBox, UnusedMessagesReturnOneAndChangeNothing) {
    CheckFixture f;
    for (UINT m = 1328; m <= 1424; ++m) {
        if (m >= 1334 && m <= 1339) continue;
        EXPECT_EQ(SendMessageA(f.box, m, 0, 1), 1) << m;
    }
    EXPECT_FALSE(f.Checked());
    EXPECT_EQ(SendMessageA(f.box, PM_GETRADIO, 0, 0), 0);
    EXPECT_EQ(SendMessageA(f.box, PM_GETDISFRAME, 0, 0), 0);
    EXPECT_EQ(WindowSize(f.box).cy, 40);
    EXPECT_EQ(f.Shown(), kUnchecked);
    ExpectSequence(f.parent, kNothing, f.box, "unused messages");
}

TEST(CheckBox, PressPreviewsTheToggleAndALostCaptureKeepsTheValue) {
    CheckFixture f;
    SendMessageA(f.box, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_EQ(f.Shown(), kChecked);  // what a release here would give
    EXPECT_EQ(GetCapture(), f.box);
    // The pointer is never over this test's windows: the press ends elsewhere and changes nothing.
    SetCapture(f.parent.hwnd);
    EXPECT_EQ(GetCapture(), f.parent.hwnd);
    ReleaseCapture();
    EXPECT_FALSE(f.Checked());
    EXPECT_EQ(f.Shown(), kUnchecked);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.box, "press ended by a lost capture");
}

TEST(CheckBox, CheckingDuringAPressEndsItSilently) {
    CheckFixture f;
    SendMessageA(f.box, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageA(f.box, PM_SETCHECKED, 0, 1);
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_TRUE(f.Checked());
    EXPECT_EQ(f.Shown(), kChecked);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {0}};
    ExpectSequence(f.parent, expected, f.box, "checked during a press");
}

// ---- real pointer -------------------------------------------------------------------------------------

TEST(PointerCheckBox, ClickTogglesTheValueWithPressedReleasedClicked) {
    PointerLock lock;
    CheckFixture f;
    PointerToClient(f.box, 20, 20);
    ExpectSequence(f.parent, kEntered, f.box, "pointer over the box");
    EXPECT_EQ(f.Shown(), kUncheckedLit);
    f.parent.Clear();
    LeftDown();
    EXPECT_EQ(f.Shown(), kChecked);
    LeftUp();
    ExpectSequence(f.parent, kClick, f.box, "first click");
    EXPECT_TRUE(f.Checked());
    EXPECT_EQ(f.Shown(), kCheckedLit);
    f.parent.Clear();
    LeftDown();
    EXPECT_EQ(f.Shown(), kUnchecked);
    LeftUp();
    ExpectSequence(f.parent, kClick, f.box, "second click");
    EXPECT_FALSE(f.Checked());
    EXPECT_EQ(f.Shown(), kUncheckedLit);
}

TEST(PointerCheckBox, CheckedRadioBoxClickedStaysCheckedWithoutClickEvent) {
    PointerLock lock;
    CheckFixture f(true);
    SendMessageA(f.box, PM_SETCHECKED, 0, 1);
    PointerToClient(f.box, 20, 20);
    f.parent.Clear();
    LeftDown();
    LeftUp();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.box, "click on a checked radio box");
    EXPECT_EQ(f.parent.Count(NOTIFY_CLICKED), 0);
    EXPECT_TRUE(f.Checked());
    EXPECT_EQ(f.Shown(), kCheckedLit);
}

TEST(PointerCheckBox, UncheckedRadioBoxIsCheckedByAClick) {
    PointerLock lock;
    CheckFixture f(true);
    PointerToClient(f.box, 20, 20);
    f.parent.Clear();
    LeftDown();
    LeftUp();
    ExpectSequence(f.parent, kClick, f.box, "click on an unchecked radio box");
    EXPECT_TRUE(f.Checked());
}

TEST(PointerCheckBox, PressDragOffReleaseLeavesTheValueWithPressedLeftReleased) {
    PointerLock lock;
    CheckFixture f;
    PointerToClient(f.box, 20, 20);
    f.parent.Clear();
    LeftDown();
    EXPECT_EQ(f.Shown(), kChecked);
    PointerToClient(f.parent.hwnd, 250, 150);
    EXPECT_EQ(f.Shown(), kUnchecked);  // off the box the preview goes back to the value
    LeftUp();
    PumpMessages(200);
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_LEFT}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.box, "press, drag off, release");
    EXPECT_FALSE(f.Checked());
    EXPECT_EQ(f.Shown(), kUnchecked);
}

TEST(PointerCheckBox, HoverTimerNoticesThePointerLeaving) {
    PointerLock lock;
    CheckFixture f;
    SendMessageA(f.box, PM_SETCHECKED, 0, 1);
    PointerToClient(f.box, 20, 20);
    EXPECT_EQ(f.Shown(), kCheckedLit);
    PointerToClient(f.parent.hwnd, 250, 150);
    PumpMessages(300);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_LEFT}, {0}};
    ExpectSequence(f.parent, expected, f.box, "hover and leave");
    EXPECT_EQ(f.Shown(), kChecked);
}
