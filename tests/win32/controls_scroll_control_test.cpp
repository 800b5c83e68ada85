// `CQMSROLL`: defaults and value rules through its messages, zone painting from the zone-major strip,
// readiness, disabling, the unused message numbers, auto-repeat, and clicks, drags and hovering with
// the real pointer (event sequences 0, 10 + zone, 4, 13 + zone, 1 and the leave events 7 + zone, 3).
#include <gtest/gtest.h>
#include <windows.h>

#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "message_log_win32.h"
#include "win32_support.h"

namespace {

enum Role { ROLE_DISABLED, ROLE_NORMAL, ROLE_LIT, ROLE_PRESSED };
const int kUpper = 15, kMiddle = 30, kLower = 15, kFrame = kUpper + kMiddle + kLower, kWidth = 30;
const int kTops[3] = {0, kUpper, kUpper + kMiddle};
const int kHeights[3] = {kUpper, kMiddle, kLower};

COLORREF ZoneColor(int zone, int role) { return RGB(60 * zone, 40 + 60 * role, 220 - 50 * zone); }

// Zone-major strip: each zone's pictures (disabled first when present, then normal, lit, pressed)
// stacked under one another, zone after zone.
uint8_t* MakeScrollStrip(bool disabledFrame) {
    int pictures = disabledFrame ? 4 : 3;
    return MakeDib24(kWidth, kFrame * pictures, [=](int, int y) {
        for (int k = 0; k < 3; ++k) {
            int top = pictures * kTops[k];
            if (y < top || y >= top + pictures * kHeights[k]) continue;
            int picture = (y - top) / kHeights[k];
            return ZoneColor(k + 1, disabledFrame ? picture : picture + 1);
        }
        return RGB(0, 0, 0);
    });
}

// Client y of a point well inside each zone.
const int kZoneY[4] = {0, 7, 30, 52};

LPARAM AtZone(int zone) { return MAKELPARAM(15, kZoneY[zone]); }

// A scroll control at (40, 40) of a 300 x 250 parent with zones 15, 30 and 15 high.
struct ScrollFixture {
    LoggingParent parent{300, 250};
    uint8_t* strip;
    HWND scroll;
    explicit ScrollFixture(bool disabledFrame = false, int lowerHeight = kLower) {
        strip = MakeScrollStrip(disabledFrame);
        scroll = CreateControl("CQMSROLL", parent.hwnd, 40, 40);
        if (disabledFrame) SendMessageA(scroll, PM_SCR_SETDISFRAME, 0, 1);
        SendMessageA(scroll, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip));
        SendMessageA(scroll, PM_SCR_SETUPPERHEIGHT, 0, kUpper);
        SendMessageA(scroll, PM_SCR_SETMIDDLEHEIGHT, 0, kMiddle);
        SendMessageA(scroll, PM_SCR_SETLOWERHEIGHT, 0, lowerHeight);
        PumpMessages(30);
        parent.Clear();
    }
    ~ScrollFixture() {
        DestroyWindow(scroll);
        FreePackedDib(strip);
    }
    COLORREF Zone(int zone) const { return ClientPixel(scroll, 15, kZoneY[zone]); }
    int32_t Get(UINT message) const { return int32_t(SendMessageA(scroll, message, 0, 0)); }
    void Set(UINT message, int32_t value) const { SendMessageA(scroll, message, 0, LPARAM(value)); }
    void ExpectLook(int upper, int middle, int lower, const char* context) const {
        EXPECT_EQ(Zone(1), ZoneColor(1, upper)) << context << ": upper zone";
        EXPECT_EQ(Zone(2), ZoneColor(2, middle)) << context << ": middle zone";
        EXPECT_EQ(Zone(3), ZoneColor(3, lower)) << context << ": lower zone";
    }
};

const ExpectedMessage kNothing[] = {{0}};
const ExpectedMessage kEntered[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {0}};

}  // namespace

TEST(ScrollControl, DefaultsAreReported) {
    ScrollFixture f;
    EXPECT_EQ(f.Get(PM_SCR_GETMINIMUM), 0);
    EXPECT_EQ(f.Get(PM_SCR_GETMAXIMUM), 100);
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50);
    EXPECT_EQ(f.Get(PM_SCR_GETSTEP), 5);
    EXPECT_EQ(f.Get(PM_SCR_GETEXTRA), 5);
    EXPECT_EQ(f.Get(PM_SCR_GETREPEATDELAY), 400);
    EXPECT_EQ(f.Get(PM_SCR_GETREPEATPERIOD), 150);
    EXPECT_EQ(f.Get(PM_SCR_GETDISFRAME), 0);
    EXPECT_EQ(f.Get(PM_GETENABLE), 1);
    EXPECT_EQ(f.Get(PM_SCR_GETUPPERHEIGHT), kUpper);
    EXPECT_EQ(f.Get(PM_SCR_GETMIDDLEHEIGHT), kMiddle);
    EXPECT_EQ(f.Get(PM_SCR_GETLOWERHEIGHT), kLower);
    EXPECT_EQ(SendMessageA(f.scroll, PM_GETIMAGE, 0, 0), reinterpret_cast<LRESULT>(f.strip));
}

TEST(ScrollControl, PositionIsTruncatedToTheStepAndClampedToTheRange) {
    ScrollFixture f;
    f.Set(PM_SCR_SETPOSITION, 52);
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50);
    f.Set(PM_SCR_SETPOSITION, 103);
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 100);
    ExpectSequence(f.parent, kNothing, f.scroll, "setting the position notifies nothing");
}

TEST(ScrollControl, NegativePositionTruncatesTowardZero) {
    ScrollFixture f;
    f.Set(PM_SCR_SETMINIMUM, -3);
    f.Set(PM_SCR_SETSTEP, 2);
    f.Set(PM_SCR_SETPOSITION, -1);
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 0);
}

TEST(ScrollControl, RangeAndStepSettersUseTheirOwnClamps) {
    ScrollFixture f;
    f.Set(PM_SCR_SETMAXIMUM, 1);
    EXPECT_EQ(f.Get(PM_SCR_GETSTEP), 0);  // a range under 2: step 0
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 1);
    f.Set(PM_SCR_SETSTEP, 5);
    EXPECT_EQ(f.Get(PM_SCR_GETSTEP), 1);  // the step setter never goes below 1
    f.Set(PM_SCR_SETMAXIMUM, 40);
    f.Set(PM_SCR_SETSTEP, 100);
    EXPECT_EQ(f.Get(PM_SCR_GETSTEP), 20);
}

TEST(ScrollControl, ExtraValueIsKeptOnlyAboveZero) {
    ScrollFixture f;
    f.Set(PM_SCR_SETEXTRA, 40);
    EXPECT_EQ(f.Get(PM_SCR_GETEXTRA), 40);
    f.Set(PM_SCR_SETEXTRA, 0);
    f.Set(PM_SCR_SETEXTRA, -3);
    EXPECT_EQ(f.Get(PM_SCR_GETEXTRA), 40);
}

TEST(ScrollControl, SizesItselfToOneFrameAndPaintsEachZoneFromItsPartOfTheStrip) {
    ScrollFixture f;
    SIZE size = WindowSize(f.scroll);
    EXPECT_EQ(size.cx, kWidth);
    EXPECT_EQ(size.cy, kFrame);
    f.ExpectLook(ROLE_NORMAL, ROLE_NORMAL, ROLE_NORMAL, "idle");
    // Zone edges: the last row of one zone and the first of the next.
    EXPECT_EQ(ClientPixel(f.scroll, 0, kUpper - 1), ZoneColor(1, ROLE_NORMAL));
    EXPECT_EQ(ClientPixel(f.scroll, 0, kUpper), ZoneColor(2, ROLE_NORMAL));
    EXPECT_EQ(ClientPixel(f.scroll, kWidth - 1, kUpper + kMiddle), ZoneColor(3, ROLE_NORMAL));
    EXPECT_EQ(ClientPixel(f.scroll, kWidth - 1, kFrame - 1), ZoneColor(3, ROLE_NORMAL));
}

TEST(ScrollControl, DisabledShowsTheFirstPictureOfEachZone) {
    ScrollFixture f(true);
    EXPECT_EQ(WindowSize(f.scroll).cy, kFrame);
    f.ExpectLook(ROLE_NORMAL, ROLE_NORMAL, ROLE_NORMAL, "enabled, strip with disabled pictures");
    f.Set(PM_SETENABLE, 0);
    EXPECT_EQ(f.Get(PM_GETENABLE), 0);
    f.ExpectLook(ROLE_DISABLED, ROLE_DISABLED, ROLE_DISABLED, "disabled");
    f.Set(PM_SETENABLE, 1);
    f.ExpectLook(ROLE_NORMAL, ROLE_NORMAL, ROLE_NORMAL, "enabled again");
    ScrollFixture g(false);
    g.Set(PM_SETENABLE, 0);
    g.ExpectLook(ROLE_NORMAL, ROLE_NORMAL, ROLE_NORMAL, "disabled, strip without disabled pictures");
}

TEST(ScrollControl, PressShowsThePressedPictureOfItsZone) {
    ScrollFixture f;
    SendMessageA(f.scroll, WM_LBUTTONDOWN, MK_LBUTTON, AtZone(3));
    EXPECT_EQ(GetCapture(), f.scroll);
    f.ExpectLook(ROLE_NORMAL, ROLE_NORMAL, ROLE_PRESSED, "lower zone pressed");
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_ZONE_PRESSED + 3}, {0}};
    ExpectSequence(f.parent, expected, f.scroll, "press on the lower zone");
    f.Set(PM_SETENABLE, 0);
}

TEST(ScrollControl, ZonesThatDoNotFillTheFrameLeaveTheControlInert) {
    ScrollFixture f(false, kLower - 1);
    for (int zone = 1; zone <= 3; ++zone) {
        SendMessageA(f.scroll, WM_MOUSEMOVE, 0, AtZone(zone));
        SendMessageA(f.scroll, WM_LBUTTONDOWN, MK_LBUTTON, AtZone(zone));
        EXPECT_EQ(GetCapture(), nullptr);
        SendMessageA(f.scroll, WM_LBUTTONUP, 0, AtZone(zone));
    }
    PumpMessages(500);
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50);
    ExpectSequence(f.parent, kNothing, f.scroll, "control that is not ready");
    // Nothing of the strip was painted.
    for (int zone = 1; zone <= 3; ++zone)
        for (int role = ROLE_NORMAL; role <= ROLE_PRESSED; ++role) EXPECT_NE(f.Zone(zone), ZoneColor(zone, role));
    // Fixing the lower height makes it ready and paints it.
    f.Set(PM_SCR_SETLOWERHEIGHT, kLower);
    f.ExpectLook(ROLE_NORMAL, ROLE_NORMAL, ROLE_NORMAL, "ready");
}

TEST(ScrollControl, ZoneHeightsBelowOneAreIgnored) {
    ScrollFixture f;
    f.Set(PM_SCR_SETUPPERHEIGHT, 0);
    f.Set(PM_SCR_SETMIDDLEHEIGHT, -4);
    EXPECT_EQ(f.Get(PM_SCR_GETUPPERHEIGHT), kUpper);
    EXPECT_EQ(f.Get(PM_SCR_GETMIDDLEHEIGHT), kMiddle);
    SendMessageA(f.scroll, WM_LBUTTONDOWN, MK_LBUTTON, AtZone(2));
    EXPECT_EQ(GetCapture(), f.scroll);  // still ready
    f.Set(PM_SETENABLE, 0);
}

TEST(ScrollControl, UnusedMessagesReturnOneAndChangeNothing) {
    ScrollFixture f;
    for (UINT m = 1328; m <= 1333; ++m) EXPECT_EQ(SendMessageA(f.scroll, m, 0, 7), 1) << m;
    for (UINT m = 1356; m <= 1424; ++m) EXPECT_EQ(SendMessageA(f.scroll, m, 0, 7), 1) << m;
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50);
    EXPECT_EQ(f.Get(PM_SCR_GETSTEP), 5);
    EXPECT_EQ(WindowSize(f.scroll).cy, kFrame);
    ExpectSequence(f.parent, kNothing, f.scroll, "unused messages");
}

TEST(ScrollControl, DisablingDuringAPressEndsItSilentlyAndStopsTheRepeat) {
    ScrollFixture f;
    SendMessageA(f.scroll, WM_LBUTTONDOWN, MK_LBUTTON, AtZone(1));
    f.Set(PM_SETENABLE, 0);
    EXPECT_EQ(GetCapture(), nullptr);
    PumpMessages(700);
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_ZONE_PRESSED + 1}, {0}};
    ExpectSequence(f.parent, expected, f.scroll, "disabled during a press");
}

TEST(ScrollControl, HeldButtonStepsByRepetitionAfterTheDelay) {
    ScrollFixture f;
    SendMessageA(f.scroll, WM_LBUTTONDOWN, MK_LBUTTON, AtZone(3));
    PumpMessages(300);
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50) << "no step within the 400 ms delay";
    PumpMessages(1000);
    // After 400 ms the repeat ticks every 150 ms and every other tick steps: about 3 steps by 1,300 ms.
    int steps = f.parent.Count(NOTIFY_CLICKED);
    EXPECT_GE(steps, 1);
    EXPECT_LE(steps, 4);
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50 - 5 * steps);
    // The pointer is not over this test's window: the release adds no step and reports the pressed zone.
    f.parent.Clear();
    SendMessageA(f.scroll, WM_LBUTTONUP, 0, AtZone(3));
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_ZONE_RELEASED + 3}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.scroll, "release outside after repeating");
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50 - 5 * steps);
}

TEST(ScrollControl, RepeatTimingFollowsItsSettings) {
    ScrollFixture f;
    f.Set(PM_SCR_SETREPEATDELAY, 50);
    f.Set(PM_SCR_SETREPEATPERIOD, 40);
    EXPECT_EQ(f.Get(PM_SCR_GETREPEATDELAY), 50);
    EXPECT_EQ(f.Get(PM_SCR_GETREPEATPERIOD), 40);
    f.Set(PM_SCR_SETSTEP, 1);
    SendMessageA(f.scroll, WM_LBUTTONDOWN, MK_LBUTTON, AtZone(1));
    PumpMessages(600);
    f.Set(PM_SETENABLE, 0);
    EXPECT_GE(f.Get(PM_SCR_GETPOSITION), 53) << "a step every 80 ms after 50 ms";
}

TEST(ScrollControl, LosingTheCaptureEndsThePressLikeAReleaseOutside) {
    ScrollFixture f;
    SendMessageA(f.scroll, WM_LBUTTONDOWN, MK_LBUTTON, AtZone(1));
    SetCapture(f.parent.hwnd);
    EXPECT_EQ(GetCapture(), f.parent.hwnd);
    ReleaseCapture();
    PumpMessages(600);
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_ZONE_PRESSED + 1},
                                               {PM_NOTIFY, NOTIFY_ZONE_RELEASED + 1},
                                               {PM_NOTIFY, NOTIFY_RELEASED},
                                               {0}};
    ExpectSequence(f.parent, expected, f.scroll, "capture taken by the parent");
}

// ---- real pointer -------------------------------------------------------------------------------------

TEST(PointerScrollControl, ShortClickOnTheUpperZoneStepsOnceWith0_11_4_14_1) {
    PointerLock lock;
    ScrollFixture f;
    PointerToClient(f.scroll, 15, kZoneY[1]);
    ExpectSequence(f.parent, kEntered, f.scroll, "pointer onto the upper zone");
    f.ExpectLook(ROLE_LIT, ROLE_NORMAL, ROLE_NORMAL, "upper zone lit");
    f.parent.Clear();
    LeftDown();
    f.ExpectLook(ROLE_PRESSED, ROLE_NORMAL, ROLE_NORMAL, "upper zone pressed");
    LeftUp();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_ZONE_PRESSED + 1},
                                               {PM_NOTIFY, NOTIFY_CLICKED},
                                               {PM_NOTIFY, NOTIFY_ZONE_RELEASED + 1},
                                               {PM_NOTIFY, NOTIFY_RELEASED},
                                               {0}};
    ExpectSequence(f.parent, expected, f.scroll, "short click on the upper zone");
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 55);
    f.ExpectLook(ROLE_LIT, ROLE_NORMAL, ROLE_NORMAL, "after the click");
}

TEST(PointerScrollControl, ShortClickOnTheLowerZoneStepsDownOnce) {
    PointerLock lock;
    ScrollFixture f;
    PointerToClient(f.scroll, 15, kZoneY[3]);
    f.parent.Clear();
    LeftDown();
    LeftUp();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_ZONE_PRESSED + 3},
                                               {PM_NOTIFY, NOTIFY_CLICKED},
                                               {PM_NOTIFY, NOTIFY_ZONE_RELEASED + 3},
                                               {PM_NOTIFY, NOTIFY_RELEASED},
                                               {0}};
    ExpectSequence(f.parent, expected, f.scroll, "short click on the lower zone");
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 45);
}

TEST(PointerScrollControl, ClickAtTheMaximumSendsNoChange) {
    PointerLock lock;
    ScrollFixture f;
    f.Set(PM_SCR_SETPOSITION, 100);
    PointerToClient(f.scroll, 15, kZoneY[1]);
    f.parent.Clear();
    LeftDown();
    LeftUp();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_ZONE_PRESSED + 1},
                                               {PM_NOTIFY, NOTIFY_ZONE_RELEASED + 1},
                                               {PM_NOTIFY, NOTIFY_RELEASED},
                                               {0}};
    ExpectSequence(f.parent, expected, f.scroll, "click at the maximum");
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 100);
}

TEST(PointerScrollControl, UpperPressReleasedOverTheLowerZoneDoesNotStep) {
    PointerLock lock;
    ScrollFixture f;
    PointerToClient(f.scroll, 15, kZoneY[1]);
    f.parent.Clear();
    LeftDown();
    PointerToClient(f.scroll, 15, kZoneY[3]);
    LeftUp();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_ZONE_PRESSED + 1},
                                               {PM_NOTIFY, NOTIFY_ZONE_RELEASED + 3},
                                               {PM_NOTIFY, NOTIFY_RELEASED},
                                               {0}};
    ExpectSequence(f.parent, expected, f.scroll, "upper press released over the lower zone");
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50);
    f.ExpectLook(ROLE_NORMAL, ROLE_NORMAL, ROLE_LIT, "lower zone lit after the release");
}

TEST(PointerScrollControl, UpperPressReleasedOutsideSendsItsZoneAndReleasedOnly) {
    PointerLock lock;
    ScrollFixture f;
    PointerToClient(f.scroll, 15, kZoneY[1]);
    f.parent.Clear();
    LeftDown();
    PointerToClient(f.parent.hwnd, 250, 200);
    LeftUp();
    PumpMessages(200);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_ZONE_PRESSED + 1},
                                               {PM_NOTIFY, NOTIFY_ZONE_RELEASED + 1},
                                               {PM_NOTIFY, NOTIFY_RELEASED},
                                               {0}};
    ExpectSequence(f.parent, expected, f.scroll, "upper press released outside");
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50);
    f.ExpectLook(ROLE_NORMAL, ROLE_NORMAL, ROLE_NORMAL, "after a release outside");
}

TEST(PointerScrollControl, MiddlePressReleasedOutsideAlsoSendsItsLeaveEvents) {
    PointerLock lock;
    ScrollFixture f;
    PointerToClient(f.scroll, 15, kZoneY[2]);
    f.parent.Clear();
    LeftDown();
    f.ExpectLook(ROLE_NORMAL, ROLE_PRESSED, ROLE_NORMAL, "middle pressed");
    PointerToClient(f.parent.hwnd, 250, 200);
    LeftUp();
    PumpMessages(200);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_ZONE_PRESSED + 2},
                                               {PM_NOTIFY, NOTIFY_ZONE_RELEASED + 2},
                                               {PM_NOTIFY, NOTIFY_RELEASED},
                                               {PM_NOTIFY, NOTIFY_ZONE_LEFT + 2},
                                               {PM_NOTIFY, NOTIFY_LEFT},
                                               {0}};
    ExpectSequence(f.parent, expected, f.scroll, "middle press released outside");
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50);
}

TEST(PointerScrollControl, HeldUpperButtonRepeatsAndItsReleaseAddsNoStep) {
    PointerLock lock;
    ScrollFixture f;
    // Delay 100 ms, then a tick every 400 ms stepping on every other one: a step at about 500 ms, the
    // next tick at 900 ms. Released at about 700 ms, well clear of both.
    f.Set(PM_SCR_SETREPEATDELAY, 100);
    f.Set(PM_SCR_SETREPEATPERIOD, 400);
    PointerToClient(f.scroll, 15, kZoneY[1]);
    f.parent.Clear();
    DWORD start = GetTickCount();
    LeftDown();
    PumpMessages(580);
    static const ExpectedMessage held[] = {
        {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_ZONE_PRESSED + 1}, {PM_NOTIFY, NOTIFY_CLICKED}, {0}};
    ExpectSequence(f.parent, held, f.scroll, "upper button held past the first repeat step");
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 55);
    f.parent.Clear();
    LeftUp();
    DWORD released = GetTickCount() - start;
    // Released over the zone while repeating: no step of its own.
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_ZONE_RELEASED + 1}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.scroll, "release over the zone after repeating");
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 55) << "released " << released << " ms after the press";
}

TEST(PointerScrollControl, HoverLightsTheZoneUnderThePointerAndThePollReportsLeaving) {
    PointerLock lock;
    ScrollFixture f;
    PointerToClient(f.scroll, 15, kZoneY[1]);
    f.ExpectLook(ROLE_LIT, ROLE_NORMAL, ROLE_NORMAL, "over the upper zone");
    PointerToClient(f.scroll, 15, kZoneY[2]);
    f.ExpectLook(ROLE_NORMAL, ROLE_LIT, ROLE_NORMAL, "over the middle zone");
    ExpectSequence(f.parent, kEntered, f.scroll, "crossing zones sends nothing more");
    PointerToClient(f.parent.hwnd, 250, 200);
    PumpMessages(300);
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_ZONE_LEFT + 2}, {PM_NOTIFY, NOTIFY_LEFT}, {0}};
    ExpectSequence(f.parent, expected, f.scroll, "hover then leave from the middle zone");
    f.ExpectLook(ROLE_NORMAL, ROLE_NORMAL, ROLE_NORMAL, "after leaving");
}

TEST(PointerScrollControl, UnreadyControlIgnoresTheRealPointer) {
    PointerLock lock;
    ScrollFixture f(false, kLower + 3);
    PointerToClient(f.scroll, 15, kZoneY[1]);
    LeftDown();
    LeftUp();
    EXPECT_EQ(f.Get(PM_SCR_GETPOSITION), 50);
    ExpectSequence(f.parent, kNothing, f.scroll, "pointer over a control that is not ready");
}
