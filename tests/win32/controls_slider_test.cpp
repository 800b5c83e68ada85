// `CQMSLIDE`: defaults and value rules through its messages, the line and its packing, painting of the
// background and the thumb, readiness, the unused message numbers, the music window's set-up sequence,
// and presses, drags, releases and hovering, with messages and with the real pointer (events 0 pressed,
// 4 value changed, 1 released, 2 entered and 3 left).
#include <gtest/gtest.h>
#include <windows.h>

#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "message_log_win32.h"
#include "win32_support.h"

namespace {

// A horizontal slider 160 x 40 whose line runs 100 pixels from (20, 10) to (120, 10), with a 10 x 20
// thumb: over the range 0..100 the thumb's left edge stands at 20 + value.
const int kWidth = 160, kHeight = 40;
const int kThumbWidth = 10, kThumbHeight = 20;
const int kStartX = 20, kStartY = 10, kLength = 100;
const int kThumbMidY = kStartY + kThumbHeight / 2;
const COLORREF kBackground = RGB(40, 110, 60);
const COLORREF kThumb = RGB(230, 200, 40);
const COLORREF kThumbOther = RGB(200, 60, 160);

LPARAM Pack(int x, int y) { return MAKELPARAM(x, y); }

// A slider at (40, 40) of a 300 x 250 parent, range 0..100, value 0, step 5.
struct SliderFixture {
    LoggingParent parent{300, 250};
    uint8_t* background;
    uint8_t* thumb;
    HWND slider;
    explicit SliderFixture(bool withThumb = true) {
        background = MakeSolidDib(kWidth, kHeight, kBackground);
        thumb = MakeSolidDib(kThumbWidth, kThumbHeight, kThumb);
        slider = CreateControl("CQMSLIDE", parent.hwnd, 40, 40, kWidth, kHeight);
        Set(PM_SLD_SETLINESTART, Pack(kStartX, kStartY));
        Set(PM_SLD_SETLINEEND, Pack(kStartX + kLength, kStartY));
        Set(PM_SLD_SETSTEP, 5);
        SetPicture(PM_SLD_SETBACKGROUND, background);
        if (withThumb) SetPicture(PM_SLD_SETTHUMB, thumb);
        PumpMessages(30);
        parent.Clear();
    }
    ~SliderFixture() {
        DestroyWindow(slider);
        FreePackedDib(background);
        FreePackedDib(thumb);
    }
    int32_t Get(UINT message) const { return int32_t(SendMessageA(slider, message, 0, 0)); }
    LRESULT Set(UINT message, LPARAM value) const { return SendMessageA(slider, message, 0, value); }
    LRESULT SetPicture(UINT message, const uint8_t* dib) const {
        return SendMessageA(slider, message, 0, reinterpret_cast<LPARAM>(dib));
    }
    int32_t Value() const { return Get(PM_SLD_GETVALUE); }
    void Mouse(UINT message, int x, int y) const { SendMessageA(slider, message, 0, Pack(x, y)); }
    // Press on the middle of the thumb standing at value v (the grab offset is then (5, 10)).
    void PressThumbAt(int v) const { Mouse(WM_LBUTTONDOWN, kStartX + v + kThumbWidth / 2, kThumbMidY); }
    // Client x of the pointer that puts the thumb's left edge x pixels along the line, with that grab.
    static int PointerXFor(int along) { return kStartX + along + kThumbWidth / 2; }
    // The thumb's whole width shows at `left`, the background just beside it.
    void ExpectThumbAt(int left, const char* context) const {
        EXPECT_EQ(ClientPixel(slider, left, kThumbMidY), kThumb) << context << ": thumb's first column " << left;
        EXPECT_EQ(ClientPixel(slider, left + kThumbWidth - 1, kThumbMidY), kThumb) << context << ": last column";
        EXPECT_EQ(ClientPixel(slider, left + 4, kStartY), kThumb) << context << ": top row";
        EXPECT_EQ(ClientPixel(slider, left + 4, kStartY + kThumbHeight - 1), kThumb) << context << ": bottom row";
        if (left > 0) {
            EXPECT_EQ(ClientPixel(slider, left - 1, kThumbMidY), kBackground) << context << ": left of it";
        }
        EXPECT_EQ(ClientPixel(slider, left + kThumbWidth, kThumbMidY), kBackground) << context << ": right of it";
        EXPECT_EQ(ClientPixel(slider, left + 4, kStartY + kThumbHeight), kBackground) << context << ": below it";
    }
};

const ExpectedMessage kNothing[] = {{0}};
const ExpectedMessage kPressed[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {0}};
const ExpectedMessage kEntered[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {0}};

}  // namespace

TEST(Slider, DefaultsAreReported) {
    SliderFixture f;
    EXPECT_EQ(f.Get(PM_SLD_GETMINIMUM), 0);
    EXPECT_EQ(f.Get(PM_SLD_GETMAXIMUM), 100);
    EXPECT_EQ(f.Value(), 0);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 5);
    EXPECT_EQ(f.Get(PM_SLD_GETENABLE), 1);
    EXPECT_EQ(f.Get(PM_SLD_GETTHUMBFRAME), 0);
    EXPECT_EQ(f.Get(PM_SLD_GETTHUMBROWS), 1);
    EXPECT_EQ(f.Get(PM_SLD_GETTHUMBCOLUMNS), 1);
    EXPECT_EQ(SendMessageA(f.slider, PM_SLD_GETBACKGROUND, 0, 0), reinterpret_cast<LRESULT>(f.background));
    EXPECT_EQ(SendMessageA(f.slider, PM_SLD_GETTHUMB, 0, 0), reinterpret_cast<LRESULT>(f.thumb));
    HWND fresh = CreateControl("CQMSLIDE", f.parent.hwnd, 0, 0, 20, 20);
    EXPECT_EQ(SendMessageA(fresh, PM_SLD_GETSTEP, 0, 0), 1);
    EXPECT_EQ(SendMessageA(fresh, PM_SLD_GETLINESTART, 0, 0), 0);
    EXPECT_EQ(SendMessageA(fresh, PM_SLD_GETLINEEND, 0, 0), 0);
    EXPECT_EQ(SendMessageA(fresh, PM_SLD_GETBACKGROUND, 0, 0), 0);
    EXPECT_EQ(SendMessageA(fresh, PM_SLD_GETTHUMB, 0, 0), 0);
    DestroyWindow(fresh);
}

TEST(Slider, ValueSetByMessageIsTruncatedToTheStepThenClamped) {
    SliderFixture f;
    f.Set(PM_SLD_SETVALUE, 52);
    EXPECT_EQ(f.Value(), 50);
    f.Set(PM_SLD_SETVALUE, 103);
    EXPECT_EQ(f.Value(), 100);
    f.Set(PM_SLD_SETVALUE, -4);
    EXPECT_EQ(f.Value(), 0);
    ExpectSequence(f.parent, kNothing, f.slider, "setting the value notifies nothing");
}

TEST(Slider, MaximumIsMessage1343AndPullsMinimumValueAndStepDown) {
    SliderFixture f;
    f.Set(PM_SLD_SETVALUE, 80);
    EXPECT_EQ(SendMessageA(f.slider, 1343, 0, 60), 1);
    EXPECT_EQ(SendMessageA(f.slider, 1342, 0, 0), 60);
    EXPECT_EQ(f.Value(), 60);  // the value above it becomes it
    EXPECT_EQ(f.Get(PM_SLD_GETMINIMUM), 0);
    f.Set(PM_SLD_SETMINIMUM, 20);
    f.Set(PM_SLD_SETSTEP, 30);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 30);
    f.Set(PM_SLD_SETMAXIMUM, 40);  // range 20: the step 30 becomes 10
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 10);
    EXPECT_EQ(f.Value(), 40);
    f.Set(PM_SLD_SETMAXIMUM, 5);  // below the minimum: minimum and value follow it down
    EXPECT_EQ(f.Get(PM_SLD_GETMAXIMUM), 5);
    EXPECT_EQ(f.Get(PM_SLD_GETMINIMUM), 5);
    EXPECT_EQ(f.Value(), 5);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 0);
}

TEST(Slider, MinimumIsMessage1345AndPushesMaximumAndValueUp) {
    SliderFixture f;
    f.Set(PM_SLD_SETVALUE, 10);
    EXPECT_EQ(SendMessageA(f.slider, 1345, 0, 30), 1);
    EXPECT_EQ(SendMessageA(f.slider, 1344, 0, 0), 30);
    EXPECT_EQ(f.Value(), 30);
    EXPECT_EQ(f.Get(PM_SLD_GETMAXIMUM), 100);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 5);
    f.Set(PM_SLD_SETSTEP, 60);
    f.Set(PM_SLD_SETMINIMUM, 70);  // range 30: the step 60 becomes 15
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 15);
    f.Set(PM_SLD_SETMINIMUM, 250);  // above the maximum: maximum and value follow it up
    EXPECT_EQ(f.Get(PM_SLD_GETMINIMUM), 250);
    EXPECT_EQ(f.Get(PM_SLD_GETMAXIMUM), 250);
    EXPECT_EQ(f.Value(), 250);
}

TEST(Slider, StepIsKeptFromOneToTheRangeElseHalfTheRange) {
    SliderFixture f;
    f.Set(PM_SLD_SETSTEP, 1);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 1);
    f.Set(PM_SLD_SETSTEP, 100);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 100);
    f.Set(PM_SLD_SETSTEP, 101);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 50);
    f.Set(PM_SLD_SETSTEP, 0);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 50);
    f.Set(PM_SLD_SETSTEP, -9);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 50);
    f.Set(PM_SLD_SETMAXIMUM, 33);
    f.Set(PM_SLD_SETSTEP, 34);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 16);  // 33 / 2 truncated
}

TEST(Slider, LinePointsArePackedAsSigned16BitXLowYHigh) {
    SliderFixture f;
    LRESULT start = SendMessageA(f.slider, PM_SLD_GETLINESTART, 0, 0);
    EXPECT_EQ(short(LOWORD(start)), kStartX);
    EXPECT_EQ(short(HIWORD(start)), kStartY);
    f.Set(PM_SLD_SETLINEEND, Pack(-3, -250));
    LRESULT end = SendMessageA(f.slider, PM_SLD_GETLINEEND, 0, 0);
    EXPECT_EQ(short(LOWORD(end)), -3);
    EXPECT_EQ(short(HIWORD(end)), -250);
    f.Set(PM_SLD_SETLINESTART, Pack(32767, -32768));
    start = SendMessageA(f.slider, PM_SLD_GETLINESTART, 0, 0);
    EXPECT_EQ(short(LOWORD(start)), 32767);
    EXPECT_EQ(short(HIWORD(start)), -32768);
}

TEST(Slider, SettingTheLineStartKeepsTheEndWhereItWas) {
    SliderFixture f;
    f.Set(PM_SLD_SETVALUE, 100);
    f.ExpectThumbAt(kStartX + kLength, "at the maximum, line (20, 10) to (120, 10)");
    f.Set(PM_SLD_SETLINESTART, Pack(60, kStartY));
    LRESULT end = SendMessageA(f.slider, PM_SLD_GETLINEEND, 0, 0);
    EXPECT_EQ(short(LOWORD(end)), kStartX + kLength);
    EXPECT_EQ(short(HIWORD(end)), kStartY);
    f.ExpectThumbAt(kStartX + kLength, "start moved: the maximum still stands at the old end");
    f.Set(PM_SLD_SETVALUE, 0);
    f.ExpectThumbAt(60, "the minimum stands at the new start");
    f.Set(PM_SLD_SETVALUE, 50);
    f.ExpectThumbAt(90, "halfway along the shorter line");
}

TEST(Slider, UnusedMessagesReturnOneAndChangeNothing) {
    SliderFixture f;
    f.Set(PM_SLD_SETVALUE, 35);
    for (UINT m = 1328; m <= 1333; ++m) EXPECT_EQ(SendMessageA(f.slider, m, 0, 7), 1) << m;
    for (UINT m = 1354; m <= 1424; ++m) EXPECT_EQ(SendMessageA(f.slider, m, 0, 7), 1) << m;
    EXPECT_EQ(f.Value(), 35);
    EXPECT_EQ(f.Get(PM_SLD_GETSTEP), 5);
    EXPECT_EQ(f.Get(PM_SLD_GETMAXIMUM), 100);
    EXPECT_EQ(f.Get(PM_SLD_GETMINIMUM), 0);
    f.ExpectThumbAt(kStartX + 35, "after the unused messages");
    ExpectSequence(f.parent, kNothing, f.slider, "unused messages");
}

TEST(Slider, KeepsTheSizeItsCreatorGaveIt) {
    SliderFixture f;
    uint8_t* small = MakeSolidDib(50, 15, kBackground);
    f.SetPicture(PM_SLD_SETBACKGROUND, small);
    SIZE size = WindowSize(f.slider);
    EXPECT_EQ(size.cx, kWidth);
    EXPECT_EQ(size.cy, kHeight);
    // What the smaller background leaves uncovered is black; the thumb is drawn all the same.
    EXPECT_EQ(ClientPixel(f.slider, 10, 5), kBackground);
    EXPECT_EQ(ClientPixel(f.slider, 140, 35), RGB(0, 0, 0));
    EXPECT_EQ(ClientPixel(f.slider, kStartX + 5, kThumbMidY), kThumb);
    f.SetPicture(PM_SLD_SETBACKGROUND, f.background);
    FreePackedDib(small);
}

TEST(Slider, PaintsTheBackgroundThenTheThumbAtItsValue) {
    SliderFixture f;
    EXPECT_EQ(ClientPixel(f.slider, 0, 0), kBackground);
    EXPECT_EQ(ClientPixel(f.slider, kWidth - 1, kHeight - 1), kBackground);
    f.ExpectThumbAt(kStartX, "value 0");
    f.Set(PM_SLD_SETVALUE, 45);
    f.ExpectThumbAt(kStartX + 45, "value 45");
    f.Set(PM_SLD_SETMAXIMUM, 50);  // 45 of 0..50: 90 pixels along
    f.ExpectThumbAt(kStartX + 90, "value 45 of 50");
    InvalidateRect(f.slider, nullptr, FALSE);
    UpdateWindow(f.slider);
    f.ExpectThumbAt(kStartX + 90, "full repaint");
}

TEST(Slider, ThumbFrameComesFromTheGridTheSpriteSettingsDescribe) {
    SliderFixture f;
    // Two frames side by side: rows 1, columns 2.
    uint8_t* grid = MakeDib24(2 * kThumbWidth, kThumbHeight,
                              [](int x, int) { return x < kThumbWidth ? kThumb : kThumbOther; });
    f.Set(PM_SLD_SETTHUMBCOLUMNS, 2);
    EXPECT_EQ(f.Get(PM_SLD_GETTHUMBCOLUMNS), 2);
    f.SetPicture(PM_SLD_SETTHUMB, grid);
    f.ExpectThumbAt(kStartX, "frame 0 of a two-frame grid");
    f.Set(PM_SLD_SETTHUMBFRAME, 1);
    EXPECT_EQ(f.Get(PM_SLD_GETTHUMBFRAME), 1);
    EXPECT_EQ(ClientPixel(f.slider, kStartX, kThumbMidY), kThumbOther);
    EXPECT_EQ(ClientPixel(f.slider, kStartX + kThumbWidth - 1, kThumbMidY), kThumbOther);
    EXPECT_EQ(ClientPixel(f.slider, kStartX + kThumbWidth, kThumbMidY), kBackground);
    // A frame outside the grid shows the first.
    f.Set(PM_SLD_SETTHUMBFRAME, 9);
    EXPECT_EQ(ClientPixel(f.slider, kStartX + 3, kThumbMidY), kThumb);
    // Counts below one are ignored.
    f.Set(PM_SLD_SETTHUMBROWS, 0);
    f.Set(PM_SLD_SETTHUMBCOLUMNS, -1);
    EXPECT_EQ(f.Get(PM_SLD_GETTHUMBROWS), 1);
    EXPECT_EQ(f.Get(PM_SLD_GETTHUMBCOLUMNS), 2);
    // The thumb rectangle is one frame: a press just right of frame 0's far edge misses it.
    f.Mouse(WM_LBUTTONDOWN, kStartX + kThumbWidth + 1, kThumbMidY);
    EXPECT_EQ(GetCapture(), nullptr);
    f.SetPicture(PM_SLD_SETTHUMB, f.thumb);
    f.Set(PM_SLD_SETTHUMBCOLUMNS, 1);
    FreePackedDib(grid);
}

// The music window sets each of its sliders up in this order: a one-frame thumb grid, the line from
// its lower end up, the pictures, the maximum 99, the value 50, thumb frame 0.
TEST(Slider, MusicWindowSetUpGivesAReadySliderAtFiftyHalfwayUpAVerticalLine) {
    LoggingParent parent(300, 250);
    uint8_t* background = MakeSolidDib(30, 160, kBackground);
    uint8_t* thumb = MakeSolidDib(20, 16, kThumb);
    HWND slider = CreateControl("CQMSLIDE", parent.hwnd, 40, 40, 30, 160);
    SendMessageA(slider, 1339, 0, 1);
    SendMessageA(slider, 1341, 0, 1);
    SendMessageA(slider, 1351, 0, MAKELPARAM(0, 136));
    SendMessageA(slider, 1353, 0, MAKELPARAM(0, 0));
    SendMessageA(slider, 1335, 0, reinterpret_cast<LPARAM>(thumb));
    SendMessageA(slider, 1327, 0, reinterpret_cast<LPARAM>(background));
    SendMessageA(slider, 1343, 0, 99);
    SendMessageA(slider, 1347, 0, 50);
    SendMessageA(slider, 1337, 0, 0);
    PumpMessages(30);
    EXPECT_EQ(SendMessageA(slider, PM_SLD_GETVALUE, 0, 0), 50);
    EXPECT_EQ(SendMessageA(slider, PM_SLD_GETMAXIMUM, 0, 0), 99);
    EXPECT_EQ(SendMessageA(slider, PM_SLD_GETMINIMUM, 0, 0), 0);
    // Halfway up: 136 * 50 / 99 = 68 pixels above the start, so the thumb's top is at y 68.
    EXPECT_EQ(ClientPixel(slider, 10, 68), kThumb);
    EXPECT_EQ(ClientPixel(slider, 10, 68 + 15), kThumb);
    EXPECT_EQ(ClientPixel(slider, 10, 67), kBackground);
    EXPECT_EQ(ClientPixel(slider, 10, 68 + 16), kBackground);
    EXPECT_EQ(ClientPixel(slider, 10, 140), kBackground) << "nothing left at the minimum's place";
    EXPECT_EQ(ClientPixel(slider, 25, 75), kBackground) << "thumb 20 wide";
    // Ready: a press on the thumb takes hold; dragging to the top gives the maximum, below the bottom the
    // minimum (the minimum is at the bottom).
    SendMessageA(slider, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 76));
    EXPECT_EQ(GetCapture(), slider);
    SendMessageA(slider, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(10, 8));
    EXPECT_EQ(SendMessageA(slider, PM_SLD_GETVALUE, 0, 0), 99);
    EXPECT_EQ(ClientPixel(slider, 10, 0), kThumb);
    SendMessageA(slider, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(10, 200));
    EXPECT_EQ(SendMessageA(slider, PM_SLD_GETVALUE, 0, 0), 0);
    EXPECT_EQ(ClientPixel(slider, 10, 136), kThumb);
    EXPECT_EQ(ClientPixel(slider, 10, 151), kThumb);
    SendMessageA(slider, WM_LBUTTONUP, 0, MAKELPARAM(10, 200));
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_CLICKED},
                                               {PM_NOTIFY, NOTIFY_CLICKED},
                                               {PM_NOTIFY, NOTIFY_RELEASED},
                                               {PM_NOTIFY, NOTIFY_LEFT},
                                               {0}};
    ExpectSequence(parent, expected, slider, "drag up then below the bottom");
    DestroyWindow(slider);
    FreePackedDib(thumb);
    FreePackedDib(background);
}

TEST(Slider, PressOnTheThumbCapturesAndSendsPressed) {
    SliderFixture f;
    f.PressThumbAt(0);
    EXPECT_EQ(GetCapture(), f.slider);
    ExpectSequence(f.parent, kPressed, f.slider, "press on the thumb");
    f.Set(PM_SLD_SETENABLE, 0);
}

TEST(Slider, PressCountsTheThumbsEdgesAsInside) {
    const int corners[4][2] = {{kStartX, kStartY},
                               {kStartX + kThumbWidth, kStartY},
                               {kStartX, kStartY + kThumbHeight},
                               {kStartX + kThumbWidth, kStartY + kThumbHeight}};
    for (const auto& corner : corners) {
        SliderFixture f;
        f.Mouse(WM_LBUTTONDOWN, corner[0], corner[1]);
        EXPECT_EQ(GetCapture(), f.slider) << corner[0] << ", " << corner[1];
        ExpectSequence(f.parent, kPressed, f.slider, "press on an edge of the thumb");
        f.Set(PM_SLD_SETENABLE, 0);
    }
}

TEST(Slider, PressBesideTheThumbIsIgnored) {
    SliderFixture f;
    f.Mouse(WM_LBUTTONDOWN, kStartX - 1, kThumbMidY);
    f.Mouse(WM_LBUTTONDOWN, kStartX + kThumbWidth + 1, kThumbMidY);
    f.Mouse(WM_LBUTTONDOWN, kStartX + 4, kStartY - 1);
    f.Mouse(WM_LBUTTONDOWN, kStartX + 4, kStartY + kThumbHeight + 1);
    f.Mouse(WM_LBUTTONDOWN, 140, kThumbMidY);
    EXPECT_EQ(GetCapture(), nullptr);
    f.Mouse(WM_MOUSEMOVE, 140, kThumbMidY);
    f.Mouse(WM_LBUTTONUP, 140, kThumbMidY);
    EXPECT_EQ(f.Value(), 0);
    ExpectSequence(f.parent, kNothing, f.slider, "presses beside the thumb");
}

TEST(Slider, DragToTheMiddleOfZeroToHundredByFiveGivesFiftyTwo) {
    SliderFixture f;
    f.PressThumbAt(0);
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(50), kThumbMidY);  // t = 0.5
    EXPECT_EQ(f.Value(), 52);
    f.ExpectThumbAt(kStartX + 52, "value 52");
    f.Mouse(WM_LBUTTONUP, SliderFixture::PointerXFor(50), kThumbMidY);
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_CLICKED}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.slider, "drag to the middle, released over the thumb");
    f.Set(PM_SLD_SETVALUE, 52);
    EXPECT_EQ(f.Value(), 50);
    f.ExpectThumbAt(kStartX + 50, "value 52 set by message");
    f.Set(PM_SLD_SETENABLE, 0);  // ends the hover that the release started
}

TEST(Slider, DragSendsAChangeOnlyWhenTheValueChanges) {
    SliderFixture f;
    f.PressThumbAt(0);
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(10), kThumbMidY);  // trunc(12.5)
    EXPECT_EQ(f.Value(), 12);
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(10), kThumbMidY + 15);  // across the line only
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(10), kThumbMidY);
    EXPECT_EQ(f.Value(), 12);
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(11), kThumbMidY);  // trunc(13.5)
    EXPECT_EQ(f.Value(), 13);
    f.ExpectThumbAt(kStartX + 13, "value 13");
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_CLICKED}, {PM_NOTIFY, NOTIFY_CLICKED}, {0}};
    ExpectSequence(f.parent, expected, f.slider, "two changes in four moves");
    f.Set(PM_SLD_SETENABLE, 0);
}

TEST(Slider, DragBeyondEitherEndPinsTheValueAndTheThumbToTheLinesEnds) {
    SliderFixture f;
    f.Set(PM_SLD_SETVALUE, 50);
    f.PressThumbAt(50);
    f.Mouse(WM_MOUSEMOVE, 900, kThumbMidY);
    EXPECT_EQ(f.Value(), 100);
    f.ExpectThumbAt(kStartX + kLength, "beyond the end");
    f.Mouse(WM_MOUSEMOVE, 400, -60);
    EXPECT_EQ(f.Value(), 100);
    f.Mouse(WM_MOUSEMOVE, -500, kThumbMidY);
    EXPECT_EQ(f.Value(), 0);
    f.ExpectThumbAt(kStartX, "before the start");
    f.Mouse(WM_MOUSEMOVE, -20, 90);
    EXPECT_EQ(f.Value(), 0);
    f.Mouse(WM_LBUTTONUP, -20, 90);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_CLICKED},
                                               {PM_NOTIFY, NOTIFY_CLICKED}, {PM_NOTIFY, NOTIFY_RELEASED},
                                               {PM_NOTIFY, NOTIFY_LEFT},    {0}};
    ExpectSequence(f.parent, expected, f.slider, "drag beyond both ends, released off the thumb");
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST(Slider, ReleaseOverTheThumbSendsReleasedAndTheHoverPollLaterReportsLeaving) {
    SliderFixture f;
    f.PressThumbAt(0);
    f.Mouse(WM_LBUTTONUP, kStartX + 5, kThumbMidY);
    EXPECT_EQ(GetCapture(), nullptr);
    static const ExpectedMessage released[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, released, f.slider, "released over the thumb");
    // The real pointer is parked far away: the hover poll notices it is not over the thumb.
    PumpMessages(300);
    static const ExpectedMessage left[] = {
        {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {PM_NOTIFY, NOTIFY_LEFT}, {0}};
    ExpectSequence(f.parent, left, f.slider, "after the hover poll");
}

TEST(Slider, HoverOnTheThumbSendsEnteredOnceAndTheTimerSendsLeft) {
    SliderFixture f;
    f.Mouse(WM_MOUSEMOVE, 140, kThumbMidY);  // over the control, not the thumb
    ExpectSequence(f.parent, kNothing, f.slider, "pointer over the background");
    f.Mouse(WM_MOUSEMOVE, kStartX + 3, kThumbMidY);
    f.Mouse(WM_MOUSEMOVE, kStartX + 6, kThumbMidY);
    ExpectSequence(f.parent, kEntered, f.slider, "pointer over the thumb, twice");
    PumpMessages(40);
    ExpectSequence(f.parent, kEntered, f.slider, "before the first poll");
    PumpMessages(300);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_LEFT}, {0}};
    ExpectSequence(f.parent, expected, f.slider, "the poll finds the pointer gone");
    PumpMessages(300);
    ExpectSequence(f.parent, expected, f.slider, "the poll stopped");
    f.Mouse(WM_MOUSEMOVE, kStartX + 3, kThumbMidY);
    EXPECT_EQ(f.parent.Count(NOTIFY_ENTERED), 2) << "entering again after leaving";
    f.Set(PM_SLD_SETENABLE, 0);
}

TEST(Slider, PressStopsTheHoverPollUntilTheRelease) {
    SliderFixture f;
    f.Mouse(WM_MOUSEMOVE, kStartX + 3, kThumbMidY);
    f.PressThumbAt(0);
    PumpMessages(300);
    static const ExpectedMessage held[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_PRESSED}, {0}};
    ExpectSequence(f.parent, held, f.slider, "no leave while the thumb is held");
    f.Mouse(WM_LBUTTONUP, 140, 35);
    PumpMessages(300);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_RELEASED}, {PM_NOTIFY, NOTIFY_LEFT}, {0}};
    ExpectSequence(f.parent, expected, f.slider, "released away: one leave, no poll after it");
}

TEST(Slider, DisablingDuringADragEndsItSilently) {
    SliderFixture f;
    f.PressThumbAt(0);
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(30), kThumbMidY);
    EXPECT_EQ(f.Value(), 32);
    f.Set(PM_SLD_SETENABLE, 0);
    EXPECT_EQ(f.Get(PM_SLD_GETENABLE), 0);
    EXPECT_EQ(GetCapture(), nullptr);
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(80), kThumbMidY);
    f.Mouse(WM_LBUTTONUP, SliderFixture::PointerXFor(80), kThumbMidY);
    PumpMessages(300);
    EXPECT_EQ(f.Value(), 32);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_CLICKED}, {0}};
    ExpectSequence(f.parent, expected, f.slider, "disabled during a drag");
    f.ExpectThumbAt(kStartX + 32, "disabled slider still shows its thumb");
    // Enabled again, it takes presses once more, with no drag left over.
    f.Set(PM_SLD_SETENABLE, 1);
    f.parent.Clear();
    f.Mouse(WM_MOUSEMOVE, 150, kThumbMidY);
    EXPECT_EQ(f.Value(), 32);
    f.PressThumbAt(32);
    EXPECT_EQ(GetCapture(), f.slider);
    f.Set(PM_SLD_SETENABLE, 0);
}

TEST(Slider, DisablingEndsAHoverSilently) {
    SliderFixture f;
    f.Mouse(WM_MOUSEMOVE, kStartX + 3, kThumbMidY);
    f.Set(PM_SLD_SETENABLE, 0);
    PumpMessages(300);
    ExpectSequence(f.parent, kEntered, f.slider, "disabled while hovering");
}

TEST(Slider, DisabledSliderIgnoresTheMouse) {
    SliderFixture f;
    f.Set(PM_SLD_SETENABLE, 0);
    f.Mouse(WM_MOUSEMOVE, kStartX + 3, kThumbMidY);
    f.PressThumbAt(0);
    EXPECT_EQ(GetCapture(), nullptr);
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(60), kThumbMidY);
    f.Mouse(WM_LBUTTONUP, SliderFixture::PointerXFor(60), kThumbMidY);
    EXPECT_EQ(f.Value(), 0);
    ExpectSequence(f.parent, kNothing, f.slider, "disabled slider");
}

TEST(Slider, LosingTheCaptureActsAsARelease) {
    SliderFixture f;
    f.PressThumbAt(0);
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(20), kThumbMidY);
    SetCapture(f.parent.hwnd);
    EXPECT_EQ(GetCapture(), f.parent.hwnd);
    ReleaseCapture();
    // Judged where the real pointer is: parked far from the thumb.
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_CLICKED},
                                               {PM_NOTIFY, NOTIFY_RELEASED}, {PM_NOTIFY, NOTIFY_LEFT}, {0}};
    ExpectSequence(f.parent, expected, f.slider, "capture taken by the parent");
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(70), kThumbMidY);
    f.Mouse(WM_LBUTTONUP, SliderFixture::PointerXFor(70), kThumbMidY);
    EXPECT_EQ(f.Value(), 22);
    PumpMessages(300);
    ExpectSequence(f.parent, expected, f.slider, "no drag left after the capture loss");
}

TEST(Slider, ValueSetByMessageDuringADragIsIgnored) {
    SliderFixture f;
    f.PressThumbAt(0);
    f.Set(PM_SLD_SETVALUE, 80);
    EXPECT_EQ(f.Value(), 0);
    f.ExpectThumbAt(kStartX, "value refused during the drag");
    f.Mouse(WM_LBUTTONUP, 150, 35);
    f.Set(PM_SLD_SETVALUE, 80);
    EXPECT_EQ(f.Value(), 80);
    f.ExpectThumbAt(kStartX + 80, "value taken after the release");
}

TEST(Slider, ControlWithoutAThumbPictureIgnoresTheMouse) {
    SliderFixture f(false);
    for (int x : {kStartX, kStartX + 5, kStartX + 50}) {
        f.Mouse(WM_MOUSEMOVE, x, kThumbMidY);
        f.Mouse(WM_LBUTTONDOWN, x, kThumbMidY);
        EXPECT_EQ(GetCapture(), nullptr);
        f.Mouse(WM_MOUSEMOVE, x + 40, kThumbMidY);
        f.Mouse(WM_LBUTTONUP, x + 40, kThumbMidY);
    }
    PumpMessages(300);
    EXPECT_EQ(f.Value(), 0);
    ExpectSequence(f.parent, kNothing, f.slider, "no thumb picture");
    EXPECT_EQ(ClientPixel(f.slider, kStartX + 5, kThumbMidY), kBackground) << "no thumb painted";
    // Giving it a thumb makes it ready; clearing the thumb again makes it inert again.
    EXPECT_EQ(f.SetPicture(PM_SLD_SETTHUMB, f.thumb), 1);
    f.ExpectThumbAt(kStartX, "thumb given");
    f.PressThumbAt(0);
    EXPECT_EQ(GetCapture(), f.slider);
    f.Mouse(WM_LBUTTONUP, kStartX + 5, kThumbMidY);
    f.SetPicture(PM_SLD_SETTHUMB, nullptr);
    EXPECT_EQ(SendMessageA(f.slider, PM_SLD_GETTHUMB, 0, 0), 0);
    EXPECT_EQ(ClientPixel(f.slider, kStartX + 5, kThumbMidY), kBackground) << "thumb cleared";
    f.parent.Clear();
    f.PressThumbAt(0);
    EXPECT_EQ(GetCapture(), nullptr);
    PumpMessages(300);
    ExpectSequence(f.parent, kNothing, f.slider, "thumb cleared");
}

TEST(Slider, ControlWithoutABackgroundIgnoresTheMouse) {
    SliderFixture f;
    EXPECT_EQ(f.SetPicture(PM_SLD_SETBACKGROUND, nullptr), 0);  // refused: cleared
    EXPECT_EQ(SendMessageA(f.slider, PM_SLD_GETBACKGROUND, 0, 0), 0);
    f.Mouse(WM_MOUSEMOVE, kStartX + 5, kThumbMidY);
    f.PressThumbAt(0);
    EXPECT_EQ(GetCapture(), nullptr);
    PumpMessages(200);
    ExpectSequence(f.parent, kNothing, f.slider, "no background");
    EXPECT_EQ(f.SetPicture(PM_SLD_SETBACKGROUND, f.background), 1);
    f.ExpectThumbAt(kStartX, "background given back");
    f.PressThumbAt(0);
    EXPECT_EQ(GetCapture(), f.slider);
    f.Set(PM_SLD_SETENABLE, 0);
}

TEST(Slider, ClearingTheThumbDuringADragEndsItSilently) {
    SliderFixture f;
    f.PressThumbAt(0);
    f.SetPicture(PM_SLD_SETTHUMB, nullptr);
    EXPECT_EQ(GetCapture(), nullptr);
    f.Mouse(WM_MOUSEMOVE, SliderFixture::PointerXFor(60), kThumbMidY);
    f.Mouse(WM_LBUTTONUP, SliderFixture::PointerXFor(60), kThumbMidY);
    EXPECT_EQ(f.Value(), 0);
    ExpectSequence(f.parent, kPressed, f.slider, "thumb cleared during a drag");
}

// ---- real pointer -------------------------------------------------------------------------------------

TEST(PointerSlider, DragToTheMiddleOfZeroToHundredByFiveGivesFiftyTwo) {
    PointerLock lock;
    SliderFixture f;
    PointerToClient(f.slider, kStartX + 5, kThumbMidY);
    ExpectSequence(f.parent, kEntered, f.slider, "pointer onto the thumb");
    f.parent.Clear();
    LeftDown();
    EXPECT_EQ(GetCapture(), f.slider);
    PointerToClient(f.slider, SliderFixture::PointerXFor(50), kThumbMidY);
    EXPECT_EQ(f.Value(), 52);
    f.ExpectThumbAt(kStartX + 52, "dragged to t = 0.5");
    LeftUp();
    EXPECT_EQ(GetCapture(), nullptr);
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_CLICKED}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.slider, "drag to the middle, released over the thumb");
    f.Set(PM_SLD_SETVALUE, 52);
    EXPECT_EQ(f.Value(), 50);
    f.ExpectThumbAt(kStartX + 50, "52 set by message");
}

TEST(PointerSlider, DragBeyondBothEndsPinsTheValueAndTheThumbToTheLinesEnds) {
    PointerLock lock;
    SliderFixture f;
    f.Set(PM_SLD_SETVALUE, 50);
    PointerToClient(f.slider, kStartX + 50 + 5, kThumbMidY);
    f.parent.Clear();
    LeftDown();
    PointerToClient(f.slider, kWidth + 80, kThumbMidY);  // past the end, outside the control
    EXPECT_EQ(f.Value(), 100);
    f.ExpectThumbAt(kStartX + kLength, "beyond the end");
    PointerToClient(f.slider, -30, kThumbMidY + 40);  // before the start, outside the control
    EXPECT_EQ(f.Value(), 0);
    f.ExpectThumbAt(kStartX, "before the start");
    PointerToClient(f.slider, SliderFixture::PointerXFor(70), kThumbMidY);
    EXPECT_EQ(f.Value(), 72);
    f.ExpectThumbAt(kStartX + 72, "back on the line");
    LeftUp();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_CLICKED},
                                               {PM_NOTIFY, NOTIFY_CLICKED}, {PM_NOTIFY, NOTIFY_CLICKED},
                                               {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.slider, "drag beyond both ends and back");
}

TEST(PointerSlider, ReleaseAwayFromTheThumbSendsReleasedThenLeft) {
    PointerLock lock;
    SliderFixture f;
    PointerToClient(f.slider, kStartX + 5, kThumbMidY);
    LeftDown();
    PointerToClient(f.parent.hwnd, 250, 200);  // past the end, off the slider
    EXPECT_EQ(f.Value(), 100);
    LeftUp();
    PumpMessages(300);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_ENTERED},  {PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_CLICKED},  {PM_NOTIFY, NOTIFY_RELEASED},
                                               {PM_NOTIFY, NOTIFY_LEFT},     {0}};
    ExpectSequence(f.parent, expected, f.slider, "released off the thumb");
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST(PointerSlider, HoverEntersOnTheThumbAndLeavesAfterThePoll) {
    PointerLock lock;
    SliderFixture f;
    PointerToClient(f.slider, 140, kThumbMidY);
    ExpectSequence(f.parent, kNothing, f.slider, "pointer over the background only");
    PointerToClient(f.slider, kStartX + 2, kThumbMidY);
    PointerToClient(f.slider, kStartX + 7, kThumbMidY + 3);
    PumpMessages(300);
    ExpectSequence(f.parent, kEntered, f.slider, "pointer resting on the thumb");
    PointerToClient(f.slider, 140, kThumbMidY);  // still over the control, off the thumb
    PumpMessages(300);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_LEFT}, {0}};
    ExpectSequence(f.parent, expected, f.slider, "pointer moved off the thumb");
}

TEST(PointerSlider, ControlWithoutAThumbPictureIgnoresTheRealPointer) {
    PointerLock lock;
    SliderFixture f(false);
    PointerToClient(f.slider, kStartX + 5, kThumbMidY);
    LeftDown();
    EXPECT_EQ(GetCapture(), nullptr);
    PointerToClient(f.slider, SliderFixture::PointerXFor(60), kThumbMidY);
    LeftUp();
    PumpMessages(200);
    EXPECT_EQ(f.Value(), 0);
    ExpectSequence(f.parent, kNothing, f.slider, "real pointer over a slider without a thumb");
}

TEST(PointerSlider, VerticalMusicSliderDragsUpFromTheBottom) {
    PointerLock lock;
    LoggingParent parent(300, 250);
    uint8_t* background = MakeSolidDib(30, 160, kBackground);
    uint8_t* thumb = MakeSolidDib(20, 16, kThumb);
    HWND slider = CreateControl("CQMSLIDE", parent.hwnd, 40, 40, 30, 160);
    SendMessageA(slider, 1339, 0, 1);
    SendMessageA(slider, 1341, 0, 1);
    SendMessageA(slider, 1351, 0, MAKELPARAM(0, 136));
    SendMessageA(slider, 1353, 0, MAKELPARAM(0, 0));
    SendMessageA(slider, 1335, 0, reinterpret_cast<LPARAM>(thumb));
    SendMessageA(slider, 1327, 0, reinterpret_cast<LPARAM>(background));
    SendMessageA(slider, 1343, 0, 99);
    SendMessageA(slider, 1347, 0, 50);
    SendMessageA(slider, 1337, 0, 0);
    PumpMessages(30);
    // Grab the thumb (top at y 68) 8 pixels down and lift it 34 pixels: a quarter of the line higher.
    PointerToClient(slider, 10, 76);
    LeftDown();
    PointerToClient(slider, 10, 76 - 34);
    // From the start (y 136): 102 of 136 pixels up, t = 0.75, 74.25 + 0.5 truncates to 74.
    EXPECT_EQ(SendMessageA(slider, PM_SLD_GETVALUE, 0, 0), 74);
    int top = 136 - 136 * 74 / 99;
    EXPECT_EQ(ClientPixel(slider, 10, top), kThumb);
    EXPECT_EQ(ClientPixel(slider, 10, top - 1), kBackground);
    LeftUp();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_CLICKED}, {PM_NOTIFY, NOTIFY_RELEASED},
                                               {0}};
    ExpectSequence(parent, expected, slider, "vertical drag up");
    DestroyWindow(slider);
    FreePackedDib(thumb);
    FreePackedDib(background);
}
