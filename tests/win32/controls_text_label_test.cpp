// `CQMTXT`: text and face limits, sizing from the measured text, not-ready painting, background under
// the label, colours, the unused message numbers, and hover, click and release-over with the real pointer.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "message_log_win32.h"
#include "win32_support.h"

namespace {

const COLORREF kBackdrop = RGB(0, 0, 96);
const char kFace[] = "Tahoma";

LPARAM Text(const char* text) { return reinterpret_cast<LPARAM>(text); }

// A label at (40, 40) of a 300 x 200 parent whose background picture is one plain colour.
struct LabelFixture {
    LoggingParent parent{300, 200, kBackdrop};
    uint8_t* background;
    HWND label;
    explicit LabelFixture(const char* text = "Tavirel", int height = 30, bool shadow = false) {
        background = MakeSolidDib(300, 200, kBackdrop);
        label = CreateControl("CQMTXT", parent.hwnd, 40, 40);
        SendMessageA(label, PM_TXT_SETSHADOW, 0, shadow);
        SendMessageA(label, PM_TXT_SETHEIGHT, 0, height);
        SendMessageA(label, PM_TXT_SETFACE, 0, Text(kFace));
        SendMessageA(label, PM_TXT_SETTEXT, 0, Text(text));
        SendMessageA(label, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(background));
        PumpMessages(30);
        parent.Clear();
    }
    ~LabelFixture() {
        DestroyWindow(label);
        FreePackedDib(background);
    }
    // How many pixels of the label show exactly this colour.
    int Count(COLORREF color) const {
        SIZE size = ClientSize(label);
        HDC dc = GetDC(label);
        int n = 0;
        for (int y = 0; y < size.cy; ++y)
            for (int x = 0; x < size.cx; ++x) n += GetPixel(dc, x, y) == color;
        ReleaseDC(label, dc);
        return n;
    }
};

SIZE Measure(HWND hwnd, const char* text, int height, int weight) {
    HFONT font = CreateFontA(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                             CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, kFace);
    HDC dc = GetDC(hwnd);
    HGDIOBJ old = SelectObject(dc, font);
    SIZE size = {0, 0};
    GetTextExtentPoint32A(dc, text, int(strlen(text)), &size);
    SelectObject(dc, old);
    ReleaseDC(hwnd, dc);
    DeleteObject(font);
    return size;
}

std::string GetLabelText(HWND label) {
    char buffer[256] = {};
    SendMessageA(label, PM_TXT_GETTEXT, sizeof buffer, reinterpret_cast<LPARAM>(buffer));
    return buffer;
}

const ExpectedMessage kNothing[] = {{0}};
const ExpectedMessage kEntered[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {0}};

}  // namespace

TEST(TextLabel, TextOf200CharactersIsRefusedAnd199Accepted) {
    LabelFixture f("first");
    std::string long200(200, 'x'), long199(199, 'y');
    EXPECT_EQ(SendMessageA(f.label, PM_TXT_SETTEXT, 0, Text(long200.c_str())), 0);
    EXPECT_EQ(GetLabelText(f.label), "first");
    EXPECT_EQ(SendMessageA(f.label, PM_TXT_SETTEXT, 0, Text(long199.c_str())), 1);
    EXPECT_EQ(GetLabelText(f.label), long199);
}

TEST(TextLabel, EmptyTextIsRefused) {
    LabelFixture f("kept");
    EXPECT_EQ(SendMessageA(f.label, PM_TXT_SETTEXT, 0, Text("")), 0);
    EXPECT_EQ(SendMessageA(f.label, PM_TXT_SETTEXT, 0, 0), 0);
    EXPECT_EQ(GetLabelText(f.label), "kept");
}

TEST(TextLabel, FaceOf100CharactersIsRefusedAnd99Accepted) {
    LabelFixture f;
    std::string long100(100, 'f'), long99(99, 'g');
    EXPECT_EQ(SendMessageA(f.label, PM_TXT_SETFACE, 0, Text(long100.c_str())), 0);
    EXPECT_EQ(SendMessageA(f.label, PM_TXT_SETFACE, 0, Text(long99.c_str())), 1);
    EXPECT_EQ(SendMessageA(f.label, PM_TXT_SETFACE, 0, Text(kFace)), 1);
}

TEST(TextLabel, TextQueryCopiesAtMostBufferSizeLessOneAndTerminates) {
    LabelFixture f("Tavirel");
    char buffer[5] = {'?', '?', '?', '?', '?'};
    EXPECT_EQ(SendMessageA(f.label, PM_TXT_GETTEXT, sizeof buffer, reinterpret_cast<LPARAM>(buffer)), 4);
    EXPECT_STREQ(buffer, "Tavi");
    char big[32];
    EXPECT_EQ(SendMessageA(f.label, PM_TXT_GETTEXT, sizeof big, reinterpret_cast<LPARAM>(big)), 7);
    EXPECT_STREQ(big, "Tavirel");
}

TEST(TextLabel, SettingsHaveTheirDefaultsAndAreReportedBack) {
    LoggingParent parent(300, 200);
    HWND label = CreateControl("CQMTXT", parent.hwnd, 40, 40);
    EXPECT_EQ(SendMessageA(label, PM_GETENABLE, 0, 0), 1);
    EXPECT_EQ(SendMessageA(label, PM_TXT_GETSHADOW, 0, 0), 0);
    EXPECT_EQ(COLORREF(SendMessageA(label, PM_TXT_GETSHADOWCOLOR, 0, 0)), 0x000000u);
    EXPECT_EQ(COLORREF(SendMessageA(label, PM_TXT_GETTEXTCOLOR, 0, 0)), 0xFFFFFFu);
    EXPECT_EQ(COLORREF(SendMessageA(label, PM_TXT_GETDISABLEDCOLOR, 0, 0)), 0xA4A0A0u);
    EXPECT_EQ(SendMessageA(label, PM_TXT_GETSHADOWOFFSET, 0, 0), 2);
    EXPECT_EQ(SendMessageA(label, PM_TXT_GETHEIGHT, 0, 0), 10);
    EXPECT_EQ(SendMessageA(label, PM_TXT_GETNORMALWEIGHT, 0, 0), 400);
    EXPECT_EQ(SendMessageA(label, PM_TXT_GETLITWEIGHT, 0, 0), 700);
    EXPECT_EQ(SendMessageA(label, PM_TXT_SETTEXTCOLOR, 0, 0x123456), 1);
    EXPECT_EQ(COLORREF(SendMessageA(label, PM_TXT_GETTEXTCOLOR, 0, 0)), 0x123456u);
    EXPECT_EQ(SendMessageA(label, PM_TXT_SETLITWEIGHT, 0, 900), 1);
    EXPECT_EQ(SendMessageA(label, PM_TXT_GETLITWEIGHT, 0, 0), 900);
    DestroyWindow(label);
}

TEST(TextLabel, SizeIsTheWiderAndTallerRenderingPlusTheShadowOffset) {
    // With Wine's Tahoma at height 20 this text measures 80 x 20 bold and 72 x 20 normal, so the label
    // becomes 82 x 22; the rule is checked against whatever the fonts here report.
    const char* text = "Opening";
    LabelFixture f(text, 20, true);
    SIZE bold = Measure(f.label, text, 20, 700);
    SIZE normal = Measure(f.label, text, 20, 400);
    ASSERT_GT(bold.cx, normal.cx) << "the bold rendering should be the wider one";
    SIZE size = WindowSize(f.label);
    EXPECT_EQ(size.cx, std::max(bold.cx, normal.cx) + 2);
    EXPECT_EQ(size.cy, std::max(bold.cy, normal.cy) + 2);
    // A lighter lit weight: the normal rendering is now the wider one and sets the width.
    SendMessageA(f.label, PM_TXT_SETLITWEIGHT, 0, 100);
    SendMessageA(f.label, PM_TXT_SETNORMALWEIGHT, 0, 700);
    size = WindowSize(f.label);
    SIZE light = Measure(f.label, text, 20, 100);
    EXPECT_EQ(size.cx, std::max(light.cx, bold.cx) + 2);
    // The offset counts in both directions.
    SendMessageA(f.label, PM_TXT_SETSHADOWOFFSET, 0, 6);
    size = WindowSize(f.label);
    EXPECT_EQ(size.cx, std::max(light.cx, bold.cx) + 6);
    EXPECT_EQ(size.cy, std::max(light.cy, bold.cy) + 6);
}

TEST(TextLabel, WithoutBackgroundStaysNotReadyPaintsBlackAndIgnoresTheMouse) {
    LoggingParent parent(300, 200, RGB(0, 0, 200));
    HWND label = CreateControl("CQMTXT", parent.hwnd, 40, 40, 50, 50);
    EXPECT_EQ(SendMessageA(label, PM_TXT_SETFACE, 0, Text(kFace)), 1);
    EXPECT_EQ(SendMessageA(label, PM_TXT_SETTEXT, 0, Text("Tavirel")), 1);
    PumpMessages(30);
    SIZE size = WindowSize(label);  // never sized to its text
    EXPECT_EQ(size.cx, 50);
    EXPECT_EQ(size.cy, 50);
    for (int y = 0; y < 50; y += 7)
        for (int x = 0; x < 50; x += 7) EXPECT_EQ(ClientPixel(label, x, y), RGB(0, 0, 0)) << x << "," << y;
    SendMessageA(label, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    SendMessageA(label, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageA(label, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(GetCapture(), nullptr);
    ExpectSequence(parent, kNothing, label, "label without background");
    DestroyWindow(label);
}

TEST(TextLabel, PaintsTheBackgroundPictureFromItsPlaceInTheParent) {
    LoggingParent parent(300, 200);
    uint8_t* background = MakeDib24(300, 200, [](int x, int y) { return PatternColor(x, y, 77); });
    HWND label = CreateControl("CQMTXT", parent.hwnd, 37, 23);
    SendMessageA(label, PM_TXT_SETFACE, 0, Text(kFace));
    SendMessageA(label, PM_TXT_SETHEIGHT, 0, 24);
    SendMessageA(label, PM_TXT_SETSHADOW, 0, 1);
    SendMessageA(label, PM_TXT_SETTEXT, 0, Text("il"));
    SendMessageA(label, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(background));
    SIZE size = ClientSize(label);
    // Right of the text and above the shadow, only the picture shows.
    EXPECT_EQ(ClientPixel(label, size.cx - 1, 0), PatternColor(37 + size.cx - 1, 23, 77));
    EXPECT_EQ(ClientPixel(label, size.cx - 2, 1), PatternColor(37 + size.cx - 2, 24, 77));
    int same = 0;
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x) same += ClientPixel(label, x, y) == PatternColor(37 + x, 23 + y, 77);
    EXPECT_GT(same, size.cx * size.cy / 2) << "most of a thin text's label is the picture under it";
    DestroyWindow(label);
    FreePackedDib(background);
}

TEST(TextLabel, DisabledLabelDrawsInA4A0A0AtItsNextPaint) {
    LabelFixture f("WMW", 30);
    const COLORREF kDisabledDefault = 0xA4A0A0;
    EXPECT_GT(f.Count(RGB(255, 255, 255)), 20);
    EXPECT_EQ(f.Count(kDisabledDefault), 0);
    SendMessageA(f.label, PM_SETENABLE, 0, 0);
    // Disabling does not repaint by itself.
    EXPECT_GT(f.Count(RGB(255, 255, 255)), 20);
    InvalidateRect(f.label, nullptr, FALSE);
    UpdateWindow(f.label);
    EXPECT_GT(f.Count(kDisabledDefault), 20);
    EXPECT_EQ(f.Count(RGB(255, 255, 255)), 0);
    // Another disabled colour repaints at once.
    SendMessageA(f.label, PM_TXT_SETDISABLEDCOLOR, 0, RGB(0, 255, 0));
    EXPECT_GT(f.Count(RGB(0, 255, 0)), 20);
    EXPECT_EQ(f.Count(kDisabledDefault), 0);
}

TEST(TextLabel, ShadowIsDrawnInItsColourAtTheOffset) {
    LabelFixture f("WMW", 30, true);
    SendMessageA(f.label, PM_TXT_SETSHADOWCOLOR, 0, RGB(255, 0, 0));
    EXPECT_GT(f.Count(RGB(255, 0, 0)), 20);
    EXPECT_GT(f.Count(RGB(255, 255, 255)), 20);
    SendMessageA(f.label, PM_TXT_SETSHADOW, 0, 0);
    EXPECT_EQ(f.Count(RGB(255, 0, 0)), 0);
}

TEST(TextLabel, UnusedMessagesReturnOne) {
    LabelFixture f;
    SIZE before = WindowSize(f.label);
    for (UINT m = 1353; m <= 1424; ++m) EXPECT_EQ(SendMessageA(f.label, m, 0, 1), 1) << m;
    for (UINT m = 1328; m <= 1333; ++m) EXPECT_EQ(SendMessageA(f.label, m, 0, 1), 1) << m;
    SIZE after = WindowSize(f.label);
    EXPECT_EQ(after.cx, before.cx);
    EXPECT_EQ(after.cy, before.cy);
    EXPECT_EQ(GetLabelText(f.label), "Tavirel");
    ExpectSequence(f.parent, kNothing, f.label, "unused messages");
}

TEST(TextLabel, DisablingDuringAPressEndsItSilently) {
    LabelFixture f;
    SendMessageA(f.label, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_EQ(GetCapture(), f.label);
    SendMessageA(f.label, PM_SETENABLE, 0, 0);
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(SendMessageA(f.label, PM_GETENABLE, 0, 0), 0);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {0}};
    ExpectSequence(f.parent, expected, f.label, "disabled during a press");
}

TEST(TextLabel, LosingTheCaptureEndsThePressLikeARelease) {
    LabelFixture f;
    SendMessageA(f.label, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SetCapture(f.parent.hwnd);
    EXPECT_EQ(GetCapture(), f.parent.hwnd);
    ReleaseCapture();
    // The pointer is never over this test's windows: released elsewhere, no click.
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.label, "capture taken by the parent");
}

// ---- real pointer -------------------------------------------------------------------------------------

TEST(PointerTextLabel, PressElsewhereAndReleaseOverTheLabelCountsAsAClick) {
    PointerLock lock;
    LabelFixture f;
    PointerToClient(f.parent.hwnd, 250, 150);
    LeftDown();
    SIZE size = ClientSize(f.label);
    PointerToClient(f.label, size.cx / 2, size.cy / 2);
    LeftUp();
    // Crossing onto the label with the button held lights it (event 2); the release there is a click.
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_RELEASED}, {PM_NOTIFY, NOTIFY_CLICKED}, {0}};
    ExpectSequence(f.parent, expected, f.label, "press elsewhere, release over the label");
}

TEST(PointerTextLabel, ClickSendsPressedReleasedClicked) {
    PointerLock lock;
    LabelFixture f;
    SIZE size = ClientSize(f.label);
    PointerToClient(f.label, size.cx / 2, size.cy / 2);
    ExpectSequence(f.parent, kEntered, f.label, "pointer over the label");
    f.parent.Clear();
    LeftDown();
    EXPECT_EQ(GetCapture(), f.label);
    LeftUp();
    static const ExpectedMessage expected[] = {
        {PM_NOTIFY, NOTIFY_PRESSED}, {PM_NOTIFY, NOTIFY_RELEASED}, {PM_NOTIFY, NOTIFY_CLICKED}, {0}};
    ExpectSequence(f.parent, expected, f.label, "click");
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST(PointerTextLabel, TextTurnsBoldUnderThePointerAndTheTimerNoticesLeaving) {
    PointerLock lock;
    LabelFixture f("WMW", 30);
    int normal = f.Count(RGB(255, 255, 255));
    SIZE size = ClientSize(f.label);
    PointerToClient(f.label, size.cx - 1, size.cy - 1);
    int bold = f.Count(RGB(255, 255, 255));
    EXPECT_GT(bold, normal) << "the lit font is heavier";
    PointerToClient(f.parent.hwnd, 250, 150);
    PumpMessages(300);
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_LEFT}, {0}};
    ExpectSequence(f.parent, expected, f.label, "hover and leave");
    EXPECT_EQ(f.Count(RGB(255, 255, 255)), normal);
}

TEST(PointerTextLabel, PressedTextDropsOntoItsShadow) {
    PointerLock lock;
    LabelFixture f("WMW", 30, true);
    SendMessageA(f.label, PM_TXT_SETSHADOWCOLOR, 0, RGB(255, 0, 0));
    SIZE size = ClientSize(f.label);
    PointerToClient(f.label, size.cx - 1, size.cy - 1);
    EXPECT_GT(f.Count(RGB(255, 0, 0)), 20);
    LeftDown();
    EXPECT_EQ(f.Count(RGB(255, 0, 0)), 0) << "no shadow while pressed and lit";
    EXPECT_GT(f.Count(RGB(255, 255, 255)), 20);
    PointerToClient(f.parent.hwnd, 250, 150);  // dragged off: unlit, the shadow is back
    EXPECT_GT(f.Count(RGB(255, 0, 0)), 20);
    LeftUp();
    static const ExpectedMessage expected[] = {{PM_NOTIFY, NOTIFY_ENTERED}, {PM_NOTIFY, NOTIFY_PRESSED},
                                               {PM_NOTIFY, NOTIFY_LEFT},    {PM_NOTIFY, NOTIFY_RELEASED}, {0}};
    ExpectSequence(f.parent, expected, f.label, "press, drag off, release");
}
