// The message window: its size and place, heading, buttons, keys, name field, the delayed answer with
// the owner disabled meanwhile, dragging, and the word-wrapped justified text drawing.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/app_state.h"
#include "app/art_ids.h"
#include "app/message_loop_win32.h"
#include "app/message_window_win32.h"
#include "app/strings_win32.h"
#include "app/theme.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "win32_support.h"

namespace {

// --- artwork: a plain frame, a heading per language, and two three-frame button strips ---

constexpr int kFrameWidth = 500, kFrameHeight = 300;
constexpr uint8_t kFrameIndex = 10;
constexpr int kHeadingWidth = 60, kHeadingHeight = 20;
constexpr uint8_t kHeadingIndex[2] = {100, 200};  // Spanish, English
constexpr int kOkWidth = 60, kOkFrame = 30, kCancelWidth = 70, kCancelFrame = 32;

struct MessagePack {
    TempFolder folder;
    MessagePack() {
        std::vector<uint8_t*> dibs = {
            MakeDib8(kFrameWidth, kFrameHeight, 256, [](int, int) { return kFrameIndex; }),
            MakeDib8(kHeadingWidth, kHeadingHeight, 256, [](int, int) { return kHeadingIndex[0]; }),
            MakeDib8(kHeadingWidth, kHeadingHeight, 256, [](int, int) { return kHeadingIndex[1]; }),
            MakeFrameStrip(kOkWidth, kOkFrame, {RGB(200, 0, 0), RGB(0, 200, 0), RGB(0, 0, 200)}),
            MakeFrameStrip(kCancelWidth, kCancelFrame, {RGB(90, 90, 0), RGB(0, 90, 90), RGB(90, 0, 90)}),
        };
        std::string path = folder.File("Tavirel.rf");
        EXPECT_TRUE(WriteTestPack(path, {{kArtMessageFrame, dibs[0]},
                                         {kArtMessageHeading + 0, dibs[1]},
                                         {kArtMessageHeading + 1, dibs[2]},
                                         {kArtMessageOkButton, dibs[3]},
                                         {kArtMessageCancelButton, dibs[4]}}));
        for (uint8_t* dib : dibs) FreePackedDib(dib);
        EXPECT_TRUE(OpenPack(&g_pack, path.c_str()));
    }
    ~MessagePack() { ClosePack(&g_pack); }
};

// --- what the callback saw ---

struct Answers {
    int calls = 0;
    std::vector<uint8_t> values;
    HWND window = nullptr;  // the message window whose answer is awaited
    HWND owner = nullptr;
    bool windowGoneAtCall = false;
    bool ownerEnabledAtCall = false;
    std::string inputAtCall;
    void (*then)() = nullptr;  // run inside the callback (to open the next message)
};
Answers g_answers;

void RecordAnswer(uint8_t answer) {
    ++g_answers.calls;
    g_answers.values.push_back(answer);
    g_answers.windowGoneAtCall = !IsWindow(g_answers.window);
    g_answers.ownerEnabledAtCall = g_answers.owner && IsWindowEnabled(g_answers.owner);
    g_answers.inputAtCall = MessageInputText();
    if (g_answers.then) {
        void (*then)() = g_answers.then;
        g_answers.then = nullptr;
        then();
    }
}

std::vector<uint8_t> g_secondAnswers;
void RecordSecondAnswer(uint8_t answer) { g_secondAnswers.push_back(answer); }

// The game's loop for a while: characters for a child are first offered to its parent.
void PumpGameLoop(DWORD ms) {
    DWORD start = GetTickCount();
    for (;;) {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            if (OfferChildChar(&msg)) continue;
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
        DWORD elapsed = GetTickCount() - start;
        if (elapsed >= ms) break;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, ms - elapsed, QS_ALLINPUT);
    }
}

// Long enough for the 45 ms answer timer to fire several times over.
constexpr DWORD kAnswerWait = 300;

// Runs the game's loop until the window is gone (a destroy may stall the loop), then long enough for
// the answer to arrive.
void PumpUntilClosedAndAnswered(HWND window) {
    for (int i = 0; i < 200 && IsWindow(window); ++i) PumpGameLoop(10);
    PumpGameLoop(kAnswerWait);
}

void EnsureMessageClass() {
    static bool registered = false;
    if (registered) return;
    EnsureControlClasses();
    RegisterMessageWindowClass(GetModuleHandleA(nullptr));
    registered = true;
}

// The pack, the screen size and the language a test uses, an owner if wanted, and a clean slate of
// answers. Tests that do not look at the owner go without: under Wine with no window manager, the
// owner brought to the foreground on close costs two seconds when it is destroyed.
struct MessageFixture {
    int32_t savedWidth = g_screenWidth, savedHeight = g_screenHeight, savedLanguage = g_language;
    MessagePack pack;
    std::unique_ptr<TestWindow> ownerWindow;
    HWND owner = nullptr;
    explicit MessageFixture(bool withOwner = false) {
        if (withOwner) {
            ownerWindow.reset(new TestWindow(0, 0, 120, 80));
            owner = ownerWindow->hwnd;
        }
        EnsureMessageClass();
        g_screenWidth = 1024;
        g_screenHeight = 768;
        g_language = kEnglish;
        g_answers = Answers();
        g_answers.owner = owner;
        g_secondAnswers.clear();
    }
    ~MessageFixture() {
        if (CurrentMessageWindow()) DestroyWindow(CurrentMessageWindow());
        PumpMessages(kAnswerWait);  // no answer of this test reaches the next one
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
        g_language = savedLanguage;
    }
    HWND Show(int base, MessageCallback callback, bool input) {
        HWND window = ShowMessage(base, owner, callback, input);
        g_answers.window = window;
        if (window) UpdateWindow(window);
        return window;
    }
};

std::vector<HWND> Children(HWND window, const char* className) {
    std::vector<HWND> found;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        char name[64] = "";
        GetClassNameA(child, name, sizeof name);
        if (lstrcmpiA(name, className) == 0) found.push_back(child);
    }
    return found;
}

HWND InputField(HWND window) {
    std::vector<HWND> edits = Children(window, "EDIT");
    return edits.size() == 1 ? edits[0] : nullptr;
}

RECT PlaceInParent(HWND child) {
    RECT r = {};
    GetWindowRect(child, &r);
    MapWindowPoints(HWND_DESKTOP, GetParent(child), reinterpret_cast<POINT*>(&r), 2);
    return r;
}

std::string FieldText(HWND field) {
    char text[64] = "";
    GetWindowTextA(field, text, sizeof text);
    return text;
}

// The window's own picture (frame, heading and text), whatever covers it on the screen.
void PrintClient(HWND window, Canvas* canvas) {
    SendMessageA(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas->dc), PRF_CLIENT);
    GdiFlush();
}

// The message font as the window uses it: the common face, 24 pixels, weight 400.
HFONT MessageFont() {
    return CreateFontA(24, 0, 0, 0, 400, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, kCommonFontFace);
}

int32_t MessageLineHeight() {
    Canvas canvas(4, 4, RGB(0, 0, 0));
    HFONT font = MessageFont();
    HGDIOBJ old = SelectObject(canvas.dc, font);
    SIZE size = {};
    GetTextExtentPoint32A(canvas.dc, " ", 1, &size);
    SelectObject(canvas.dc, old);
    DeleteObject(font);
    return size.cy;
}

// Rows [top, bottom) of two canvases are the same.
bool SameRows(const Canvas& a, const Canvas& b, int top, int bottom) {
    for (int y = top; y < bottom; ++y)
        for (int x = 0; x < a.width; ++x)
            if (a.At(x, y) != b.At(x, y)) return false;
    return true;
}

// Rows [top, bottom) hold only the colour.
bool RowsPlain(const Canvas& canvas, int top, int bottom, COLORREF color) {
    for (int y = top; y < bottom; ++y)
        for (int x = 0; x < canvas.width; ++x)
            if (canvas.At(x, y) != color) return false;
    return true;
}

// Rightmost column of rows [top, bottom) that differs from the colour, or -1.
int RightmostInk(const Canvas& canvas, int top, int bottom, COLORREF background) {
    for (int x = canvas.width - 1; x >= 0; --x)
        for (int y = top; y < bottom; ++y)
            if (canvas.At(x, y) != background) return x;
    return -1;
}

}  // namespace

// ---- Show, size and place ----

TEST(MessageWindow, IsCentredAndSizedFromTheFrame) {
    MessageFixture f(true);
    g_screenWidth = 1023;  // odd sizes: the halving truncates
    g_screenHeight = 767;
    HWND window = f.Show(STR_ERASE_FILE, RecordAnswer, false);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(CurrentMessageWindow(), window);
    RECT expected = {0, 0, kFrameWidth, kFrameHeight};
    AdjustWindowRect(&expected, WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME, FALSE);
    int width = expected.right - expected.left, height = expected.bottom - expected.top;
    RECT at = {};
    GetWindowRect(window, &at);
    EXPECT_EQ(at.right - at.left, width);
    EXPECT_EQ(at.bottom - at.top, height);
    EXPECT_EQ(at.left, (1023 - width) / 2);
    EXPECT_EQ(at.top, (767 - height) / 2);
    SIZE client = ClientSize(window);
    EXPECT_EQ(client.cx, kFrameWidth);
    EXPECT_EQ(client.cy, kFrameHeight);
    LONG_PTR style = GetWindowLongPtrA(window, GWL_STYLE);
    EXPECT_TRUE(style & WS_POPUP);
    EXPECT_TRUE(style & WS_DLGFRAME);
    EXPECT_TRUE(style & WS_CLIPCHILDREN);
    EXPECT_EQ(GetWindow(window, GW_OWNER), f.owner);
}

TEST(MessageWindow, HeadingOfTheLanguageIsPastedAtThirteenSeven) {
    MessageFixture f;
    HWND window = f.Show(STR_PRINT, RecordAnswer, false);
    ASSERT_NE(window, nullptr);
    Canvas canvas(kFrameWidth, kFrameHeight, RGB(0, 0, 0));
    PrintClient(window, &canvas);
    COLORREF heading = TestPaletteEntry(kHeadingIndex[kEnglish]), frame = TestPaletteEntry(kFrameIndex);
    EXPECT_EQ(canvas.At(13, 7), heading);
    EXPECT_EQ(canvas.At(13 + kHeadingWidth - 1, 7 + kHeadingHeight - 1), heading);
    EXPECT_EQ(canvas.At(12, 7), frame);
    EXPECT_EQ(canvas.At(13, 6), frame);
    EXPECT_EQ(canvas.At(13 + kHeadingWidth, 7), frame);
    EXPECT_EQ(canvas.At(13, 7 + kHeadingHeight), frame);
    DestroyWindow(window);
    PumpMessages(kAnswerWait);

    g_language = kSpanish;
    window = f.Show(STR_PRINT, RecordAnswer, false);
    ASSERT_NE(window, nullptr);
    PrintClient(window, &canvas);
    EXPECT_EQ(canvas.At(20, 10), TestPaletteEntry(kHeadingIndex[kSpanish]));
}

TEST(MessageWindow, NoticeHasOnlyTheOkButton) {
    MessageFixture f;
    HWND window = f.Show(STR_PRINT, nullptr, false);
    ASSERT_NE(window, nullptr);
    std::vector<HWND> buttons = Children(window, "CQMCOMMAND");
    ASSERT_EQ(buttons.size(), 1u);
    RECT ok = PlaceInParent(buttons[0]);
    EXPECT_EQ(ok.left, 18);
    EXPECT_EQ(ok.top, 255);
    EXPECT_EQ(ok.right - ok.left, kOkWidth);
    EXPECT_EQ(ok.bottom - ok.top, kOkFrame);
    EXPECT_EQ(InputField(window), nullptr);
}

TEST(MessageWindow, QuestionHasOkAndCancelAtTheirPlaces) {
    MessageFixture f;
    HWND window = f.Show(STR_ERASE_FILE, RecordAnswer, false);
    ASSERT_NE(window, nullptr);
    std::vector<HWND> buttons = Children(window, "CQMCOMMAND");
    ASSERT_EQ(buttons.size(), 2u);
    RECT a = PlaceInParent(buttons[0]), b = PlaceInParent(buttons[1]);
    if (a.left > b.left) std::swap(a, b);
    EXPECT_EQ(a.left, 18);
    EXPECT_EQ(a.top, 255);
    EXPECT_EQ(b.left, 413);
    EXPECT_EQ(b.top, 257);
    EXPECT_EQ(b.right - b.left, kCancelWidth);
    EXPECT_EQ(b.bottom - b.top, kCancelFrame);
}

// ---- Answers ----

TEST(MessageWindow, OkButtonAnswersOneAndCancelAnswersZero) {
    MessageFixture f;
    for (uint8_t expected : {uint8_t(1), uint8_t(0)}) {
        HWND window = f.Show(STR_ERASE_FILE, RecordAnswer, false);
        ASSERT_NE(window, nullptr);
        std::vector<HWND> buttons = Children(window, "CQMCOMMAND");
        ASSERT_EQ(buttons.size(), 2u);
        HWND ok = PlaceInParent(buttons[0]).left == 18 ? buttons[0] : buttons[1];
        HWND cancel = ok == buttons[0] ? buttons[1] : buttons[0];
        // What a button sends when clicked; the other events change nothing.
        HWND pressed = expected ? ok : cancel;
        for (WPARAM event : {NOTIFY_PRESSED, NOTIFY_RELEASED, NOTIFY_ENTERED, NOTIFY_LEFT})
            SendMessageA(window, PM_NOTIFY, event, reinterpret_cast<LPARAM>(pressed));
        EXPECT_TRUE(IsWindow(window));
        SendMessageA(window, PM_NOTIFY, NOTIFY_CLICKED, reinterpret_cast<LPARAM>(pressed));
        EXPECT_FALSE(IsWindow(window));
        PumpMessages(kAnswerWait);
    }
    ASSERT_EQ(g_answers.calls, 2);
    EXPECT_EQ(g_answers.values[0], 1);
    EXPECT_EQ(g_answers.values[1], 0);
}

TEST(MessageWindow, EscapeInAQuestionClosesWithAnswerZero) {
    MessageFixture f;
    HWND window = f.Show(STR_ERASE_FILE, RecordAnswer, false);
    ASSERT_NE(window, nullptr);
    PostMessageA(window, WM_CHAR, 27, 1);
    PumpUntilClosedAndAnswered(window);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(CurrentMessageWindow(), nullptr);
    ASSERT_EQ(g_answers.calls, 1);
    EXPECT_EQ(g_answers.values[0], 0);
}

TEST(MessageWindow, EnterOnTheWindowClosesWithAnswerOne) {
    MessageFixture f;
    HWND window = f.Show(STR_LEAVE_CHANGED, RecordAnswer, false);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(SendMessageA(window, WM_CHAR, 13, 1), 1);
    EXPECT_FALSE(IsWindow(window));
    PumpMessages(kAnswerWait);
    ASSERT_EQ(g_answers.calls, 1);
    EXPECT_EQ(g_answers.values[0], 1);
}

TEST(MessageWindow, OwnerIsDisabledWhileShownAndEnabledWhenTheCallbackRuns) {
    MessageFixture f(true);
    ASSERT_TRUE(IsWindowEnabled(f.owner));
    HWND window = f.Show(STR_ERASE_FILE, RecordAnswer, false);
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(IsWindowEnabled(f.owner));
    SendMessageA(window, WM_CHAR, 27, 1);
    EXPECT_FALSE(IsWindow(window));
    // The answer waits for the timer: the owner is still disabled and nothing was called yet.
    EXPECT_FALSE(IsWindowEnabled(f.owner));
    EXPECT_EQ(g_answers.calls, 0);
    PumpMessages(kAnswerWait);
    ASSERT_EQ(g_answers.calls, 1);
    EXPECT_TRUE(g_answers.ownerEnabledAtCall);
    EXPECT_TRUE(g_answers.windowGoneAtCall);
    EXPECT_TRUE(IsWindowEnabled(f.owner));
}

TEST(MessageWindow, NoticeClosedByOkCallsNothingAndEnablesTheOwner) {
    MessageFixture f(true);
    HWND window = f.Show(STR_PRINT, nullptr, false);
    ASSERT_NE(window, nullptr);
    std::vector<HWND> buttons = Children(window, "CQMCOMMAND");
    ASSERT_EQ(buttons.size(), 1u);
    SendMessageA(window, PM_NOTIFY, NOTIFY_CLICKED, reinterpret_cast<LPARAM>(buttons[0]));
    EXPECT_FALSE(IsWindow(window));
    PumpMessages(kAnswerWait);
    EXPECT_EQ(g_answers.calls, 0);
    EXPECT_TRUE(IsWindowEnabled(f.owner));
}

// ---- Keys from the name field ----

TEST(MessageWindow, ChildCharEnterIsConsumedAndALetterIsNot) {
    MessageFixture f;
    HWND window = f.Show(STR_BOX_NAME, RecordAnswer, true);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(SendMessageA(window, PM_CHILDCHAR, 'a', 1), 0);
    EXPECT_TRUE(IsWindow(window));
    EXPECT_EQ(SendMessageA(window, PM_CHILDCHAR, 13, 1), 1);
    EXPECT_FALSE(IsWindow(window));
    PumpMessages(kAnswerWait);
    ASSERT_EQ(g_answers.calls, 1);
    EXPECT_EQ(g_answers.values[0], 1);
}

TEST(MessageWindow, InputFieldTakesTheFocusAndTwentyThreeCharacters) {
    MessageFixture f;
    HWND window = f.Show(STR_HONOUR_NAME, RecordAnswer, true);
    ASSERT_NE(window, nullptr);
    HWND field = InputField(window);
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(GetFocus(), field);
    RECT at = PlaceInParent(field);
    EXPECT_EQ(at.left, 20);
    EXPECT_EQ(at.top, 160);
    EXPECT_EQ(at.right - at.left, 225);
    EXPECT_EQ(at.bottom - at.top, 24);
    EXPECT_TRUE(GetWindowLongPtrA(field, GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
    EXPECT_EQ(SendMessageA(field, EM_GETLIMITTEXT, 0, 0), kMessageInputLimit);
    EXPECT_EQ(reinterpret_cast<HGDIOBJ>(SendMessageA(field, WM_GETFONT, 0, 0)), GetStockObject(SYSTEM_FONT));
}

TEST(MessageWindow, TypedLetterReachesTheField) {
    MessageFixture f;
    HWND window = f.Show(STR_BOX_NAME, RecordAnswer, true);
    ASSERT_NE(window, nullptr);
    HWND field = InputField(window);
    ASSERT_NE(field, nullptr);
    PostMessageA(field, WM_CHAR, 'a', 1);
    PumpGameLoop(50);
    EXPECT_EQ(FieldText(field), "a");
    EXPECT_TRUE(IsWindow(window));
    EXPECT_EQ(g_answers.calls, 0);
}

TEST(MessageWindow, EnterClosesWithAnswerOneAndTheTypedTextArrivesWithTheCallback) {
    MessageFixture f;
    HWND window = f.Show(STR_BOX_NAME, RecordAnswer, true);
    ASSERT_NE(window, nullptr);
    HWND field = InputField(window);
    ASSERT_NE(field, nullptr);
    for (char c : std::string("Tray 7")) PostMessageA(field, WM_CHAR, WPARAM(uint8_t(c)), 1);
    PumpGameLoop(50);
    EXPECT_EQ(FieldText(field), "Tray 7");
    PostMessageA(field, WM_CHAR, 13, 1);
    // Only the Enter: the loop gives up once the window is gone, before the answer's timer fires.
    for (int i = 0; i < 100 && IsWindow(window); ++i) PumpGameLoop(1);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(g_answers.calls, 0);
    PumpGameLoop(kAnswerWait);
    ASSERT_EQ(g_answers.calls, 1);
    EXPECT_EQ(g_answers.values[0], 1);
    EXPECT_TRUE(g_answers.windowGoneAtCall);
    EXPECT_EQ(g_answers.inputAtCall, "Tray 7");
    EXPECT_STREQ(MessageInputText(), "Tray 7");
}

TEST(MessageWindow, EscapeInTheFieldAnswersZeroAndStillKeepsTheText) {
    MessageFixture f;
    HWND window = f.Show(STR_BOX_NAME, RecordAnswer, true);
    ASSERT_NE(window, nullptr);
    HWND field = InputField(window);
    ASSERT_NE(field, nullptr);
    PostMessageA(field, WM_CHAR, 'x', 1);
    PostMessageA(field, WM_CHAR, 27, 1);
    PumpUntilClosedAndAnswered(window);
    EXPECT_FALSE(IsWindow(window));
    ASSERT_EQ(g_answers.calls, 1);
    EXPECT_EQ(g_answers.values[0], 0);
    EXPECT_EQ(g_answers.inputAtCall, "x");
}

TEST(MessageWindow, OverlongFieldTextIsReadWithoutOverrun) {
    MessageFixture f;
    HWND window = f.Show(STR_BOX_NAME, RecordAnswer, true);
    ASSERT_NE(window, nullptr);
    HWND field = InputField(window);
    ASSERT_NE(field, nullptr);
    std::string longText(600, 'q');  // past the field's limit, set by other means than typing
    SendMessageA(field, EM_LIMITTEXT, 0, 0);
    SendMessageA(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(longText.c_str()));
    SendMessageA(window, WM_CHAR, 13, 1);
    PumpMessages(kAnswerWait);
    ASSERT_EQ(g_answers.calls, 1);
    EXPECT_GT(g_answers.inputAtCall.size(), size_t(kMessageInputLimit));
    EXPECT_LT(g_answers.inputAtCall.size(), longText.size());
    EXPECT_EQ(g_answers.inputAtCall, std::string(g_answers.inputAtCall.size(), 'q'));
}

// ---- One message after another ----

void OpenSecondMessage() {
    g_answers.window = ShowMessage(STR_ERASE_FILE, g_answers.owner, RecordSecondAnswer, false);
}

TEST(MessageWindow, CallbackMayOpenTheNextMessage) {
    MessageFixture f(true);
    HWND first = f.Show(STR_BOX_NAME, RecordAnswer, true);
    ASSERT_NE(first, nullptr);
    g_answers.then = OpenSecondMessage;
    SendMessageA(first, WM_CHAR, 13, 1);
    PumpMessages(kAnswerWait);
    ASSERT_EQ(g_answers.calls, 1);
    HWND second = CurrentMessageWindow();
    ASSERT_NE(second, nullptr);
    EXPECT_NE(second, first);
    EXPECT_FALSE(IsWindowEnabled(f.owner));
    SendMessageA(second, WM_CHAR, 13, 1);
    PumpMessages(kAnswerWait);
    ASSERT_EQ(g_secondAnswers.size(), 1u);
    EXPECT_EQ(g_secondAnswers[0], 1);
    EXPECT_EQ(g_answers.calls, 1);
    EXPECT_TRUE(IsWindowEnabled(f.owner));
}

TEST(MessageWindow, NewMessageWhileAnAnswerIsPendingLosesNoAnswer) {
    MessageFixture f(true);
    HWND first = f.Show(STR_ERASE_FILE, RecordAnswer, false);
    ASSERT_NE(first, nullptr);
    SendMessageA(first, WM_CHAR, 13, 1);
    ASSERT_EQ(g_answers.calls, 0);  // still on its way
    HWND second = ShowMessage(STR_LEAVE_CHANGED, f.owner, RecordSecondAnswer, false);
    ASSERT_NE(second, nullptr);
    PumpMessages(kAnswerWait);
    ASSERT_EQ(g_answers.calls, 1);
    EXPECT_EQ(g_answers.values[0], 1);
    // The second message still shows: its owner stays disabled.
    EXPECT_TRUE(IsWindow(second));
    EXPECT_FALSE(IsWindowEnabled(f.owner));
    SendMessageA(second, WM_CHAR, 27, 1);
    PumpMessages(kAnswerWait);
    ASSERT_EQ(g_secondAnswers.size(), 1u);
    EXPECT_EQ(g_secondAnswers[0], 0);
    EXPECT_TRUE(IsWindowEnabled(f.owner));
}

TEST(MessageWindow, NewMessageWhileOneShowsDeclinesTheFirst) {
    MessageFixture f(true);
    HWND first = f.Show(STR_ERASE_FILE, RecordAnswer, false);
    ASSERT_NE(first, nullptr);
    HWND second = ShowMessage(STR_LEAVE_CHANGED, f.owner, RecordSecondAnswer, false);
    ASSERT_NE(second, nullptr);
    EXPECT_FALSE(IsWindow(first));
    EXPECT_EQ(CurrentMessageWindow(), second);
    PumpMessages(kAnswerWait);
    ASSERT_EQ(g_answers.calls, 1);
    EXPECT_EQ(g_answers.values[0], 0);
    EXPECT_FALSE(IsWindowEnabled(f.owner));
    SendMessageA(second, WM_CHAR, 13, 1);
    PumpMessages(kAnswerWait);
    ASSERT_EQ(g_secondAnswers.size(), 1u);
    EXPECT_TRUE(IsWindowEnabled(f.owner));
}

// ---- The text ----

TEST(MessageWindow, EraseQuestionStartsTwoLineHeightsBelowSixty) {
    MessageFixture f;
    char text[200];
    ASSERT_GT(LoadLocalString(STR_ERASE_FILE, text, sizeof text), 0);
    ASSERT_EQ(std::strncmp(text, "\n\nAre you sure", 14), 0);
    HWND window = f.Show(STR_ERASE_FILE, RecordAnswer, false);
    ASSERT_NE(window, nullptr);
    Canvas shown(kFrameWidth, kFrameHeight, RGB(0, 0, 0));
    PrintClient(window, &shown);

    int32_t lineHeight = MessageLineHeight();
    ASSERT_GT(lineHeight, 10);
    COLORREF frame = TestPaletteEntry(kFrameIndex);
    // What one line of plain text two line heights below 60 looks like on the frame's colour.
    Canvas expected(kFrameWidth, kFrameHeight, frame);
    HFONT font = MessageFont();
    HGDIOBJ old = SelectObject(expected.dc, font);
    SetBkMode(expected.dc, TRANSPARENT);
    SetTextColor(expected.dc, kCommonTextColor);
    const char* line = text + 2;
    TextOutA(expected.dc, 20, 60 + 2 * lineHeight, line, int(std::strlen(line)));
    SelectObject(expected.dc, old);
    DeleteObject(font);
    GdiFlush();

    EXPECT_TRUE(RowsPlain(shown, 7 + kHeadingHeight, 60 + 2 * lineHeight, frame));
    EXPECT_FALSE(RowsPlain(shown, 60 + 2 * lineHeight, 60 + 3 * lineHeight, frame));
    EXPECT_TRUE(SameRows(shown, expected, 60 + 2 * lineHeight, 60 + 3 * lineHeight));
    EXPECT_TRUE(RowsPlain(shown, 60 + 3 * lineHeight, 255, frame));
}

TEST(MessageText, CutLinesAreSpreadTowardsTheRightEdge) {
    const char* text = "one two three four five six seven eight nine ten eleven twelve";
    const COLORREF paper = RGB(10, 20, 30), ink = RGB(250, 250, 250);
    Canvas wrapped(400, 200, paper);
    DrawWrappedText(wrapped.dc, text, kCommonFontFace, 400, 24, ink, false, 0, 0, 10, 5, 300);
    GdiFlush();
    int32_t lineHeight = MessageLineHeight();
    // The same first line drawn plainly ends well short of where the justified one does.
    int firstRight = RightmostInk(wrapped, 5, 5 + lineHeight, paper);
    ASSERT_GT(firstRight, 10);
    EXPECT_LE(firstRight, 10 + 300);
    HFONT font = MessageFont();
    Canvas plain(400, 200, paper);
    HGDIOBJ old = SelectObject(plain.dc, font);
    SetBkMode(plain.dc, TRANSPARENT);
    SetTextColor(plain.dc, ink);
    // Find the first line's bytes the way the player sees them: the longest run of words under 300.
    std::string all(text), first;
    for (size_t cut = all.find(' '); cut != std::string::npos; cut = all.find(' ', cut + 1)) {
        SIZE size;
        GetTextExtentPoint32A(plain.dc, text, int(cut), &size);
        if (size.cx >= 300) break;
        first = all.substr(0, cut);
    }
    ASSERT_FALSE(first.empty());
    TextOutA(plain.dc, 10, 5, first.c_str(), int(first.size()));
    SelectObject(plain.dc, old);
    DeleteObject(font);
    GdiFlush();
    int plainRight = RightmostInk(plain, 5, 5 + lineHeight, paper);
    EXPECT_GT(firstRight, plainRight + 5);
    // The rest of the text runs on below.
    int rows = 0;
    for (int y = 5; y + lineHeight <= 200; y += lineHeight)
        if (RightmostInk(wrapped, y, y + lineHeight, paper) >= 0) ++rows;
    EXPECT_GE(rows, 2);
}

TEST(MessageText, ShadowIsDrawnOffsetUnderTheText) {
    const COLORREF paper = RGB(0, 0, 0), ink = RGB(255, 255, 255), shade = RGB(255, 0, 0);
    Canvas canvas(200, 60, paper);
    DrawWrappedText(canvas.dc, "I", kCommonFontFace, 700, 40, ink, true, shade, 3, 10, 5, 180);
    GdiFlush();
    int inkLeft = -1, shadeLeft = -1;
    for (int x = 0; x < canvas.width && (inkLeft < 0 || shadeLeft < 0); ++x)
        for (int y = 0; y < canvas.height; ++y) {
            COLORREF c = canvas.At(x, y);
            if (inkLeft < 0 && c == ink) inkLeft = x;
            if (shadeLeft < 0 && c == shade) shadeLeft = x;
        }
    ASSERT_GE(inkLeft, 0);
    ASSERT_GE(shadeLeft, 0);
    // The shadow shows only where the text does not cover it: right of and below the text's stroke.
    EXPECT_GT(shadeLeft, inkLeft);
}

TEST(MessageText, FontIsSelectedBackAndDeleted) {
    Canvas canvas(100, 40, RGB(0, 0, 0));
    HGDIOBJ before = GetCurrentObject(canvas.dc, OBJ_FONT);
    DrawWrappedText(canvas.dc, "abc def", kCommonFontFace, 400, 24, RGB(255, 255, 255), false, 0, 0, 0, 0, 90);
    EXPECT_EQ(GetCurrentObject(canvas.dc, OBJ_FONT), before);
    DrawWrappedText(canvas.dc, nullptr, kCommonFontFace, 400, 24, RGB(255, 255, 255), false, 0, 0, 0, 0, 90);
    EXPECT_EQ(GetCurrentObject(canvas.dc, OBJ_FONT), before);
}

// ---- Real input ----

TEST(PointerMessageWindow, ClickingOkOfANoticeClosesItAndCallsNothing) {
    PointerLock lock;
    MessageFixture f(true);
    HWND window = f.Show(STR_PRINT, nullptr, false);
    ASSERT_NE(window, nullptr);
    std::vector<HWND> buttons = Children(window, "CQMCOMMAND");
    ASSERT_EQ(buttons.size(), 1u);
    PointerToClient(buttons[0], 10, 10);
    LeftDown();
    LeftUp();
    PumpUntilClosedAndAnswered(window);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(g_answers.calls, 0);
    EXPECT_TRUE(IsWindowEnabled(f.owner));
}

TEST(PointerMessageWindow, TypingAReachesTheFocusedField) {
    PointerLock lock;
    MessageFixture f;
    HWND window = f.Show(STR_BOX_NAME, RecordAnswer, true);
    ASSERT_NE(window, nullptr);
    HWND field = InputField(window);
    ASSERT_NE(field, nullptr);
    SetForegroundWindow(window);
    PumpGameLoop(50);
    ASSERT_EQ(GetFocus(), field);
    INPUT keys[2] = {};
    keys[0].type = keys[1].type = INPUT_KEYBOARD;
    keys[0].ki.wVk = keys[1].ki.wVk = 'A';
    keys[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, keys, sizeof keys[0]);
    PumpGameLoop(150);
    EXPECT_EQ(FieldText(field), "a");
    keys[0].ki.wVk = keys[1].ki.wVk = VK_RETURN;
    SendInput(2, keys, sizeof keys[0]);
    PumpUntilClosedAndAnswered(window);
    EXPECT_FALSE(IsWindow(window));
    ASSERT_EQ(g_answers.calls, 1);
    EXPECT_EQ(g_answers.values[0], 1);
    EXPECT_EQ(g_answers.inputAtCall, "a");
}

TEST(PointerMessageWindow, DraggingTheBackgroundMovesTheWindow) {
    PointerLock lock;
    MessageFixture f;
    HWND window = f.Show(STR_PRINT, RecordAnswer, false);
    ASSERT_NE(window, nullptr);
    RECT before = {};
    GetWindowRect(window, &before);
    PointerToClient(window, 250, 150);
    LeftDown();
    EXPECT_EQ(GetCapture(), window);
    POINT at;
    GetCursorPos(&at);
    PointerTo(at.x + 20, at.y + 10);
    PointerTo(at.x + 37, at.y - 15);
    LeftUp();
    EXPECT_EQ(GetCapture(), nullptr);
    RECT after = {};
    GetWindowRect(window, &after);
    EXPECT_EQ(after.left - before.left, 37);
    EXPECT_EQ(after.top - before.top, -15);
    // Moving after the release leaves the window where it is.
    PointerTo(at.x + 60, at.y + 40);
    RECT still = {};
    GetWindowRect(window, &still);
    EXPECT_EQ(still.left, after.left);
    EXPECT_EQ(still.top, after.top);
}
