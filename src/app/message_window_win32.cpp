// `CWNDMENSAJE`, the game's own message window, and the word-wrapped justified text drawing it uses.
#include "app/message_window_win32.h"

#include <climits>
#include <cstring>

#include "app/app_state.h"
#include "app/art_ids.h"
#include "app/strings_win32.h"
#include "app/text_layout.h"
#include "app/theme.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"

namespace {

constexpr DWORD kMessageStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_DLGFRAME;
constexpr int kMessageTextCapacity = 200;
// Room for what a name field can be made to hold; the field itself is limited to kMessageInputLimit.
constexpr int kInputTextCapacity = 256;
// The answer waits this long so that the message window has vanished before the owner acts on it.
constexpr UINT kAnswerDelayMs = 45;
// Used when the frame picture is missing, so that the question can still be answered.
constexpr int32_t kFallbackWidth = 500, kFallbackHeight = 300;

constexpr POINT kInputAt = {20, 160};
constexpr SIZE kInputSize = {225, 24};
constexpr POINT kHeadingAt = {13, 7};
constexpr POINT kOkAt = {18, 255};
constexpr POINT kCancelAt = {413, 257};
constexpr int32_t kTextX = 20, kTextY = 60, kTextWidth = 460;
constexpr int32_t kTextHeight = 24, kTextWeight = 400;

constexpr WPARAM kEnterChar = 13, kEscapeChar = 27;

// The one message window's state; a new message may be prepared only when no window shows.
struct MessageWindow {
    bool prepared;  // ShowMessage has filled the state and is creating the window
    HWND window, owner;
    MessageCallback callback;
    bool input;
    char text[kMessageTextCapacity];
    uint8_t answer;
    bool closing;   // the answer is decided; later keys and clicks change nothing
    ImageObject background, okImage, cancelImage;
    HWND okButton, cancelButton, inputField;
    bool dragging;
    POINT anchor;   // pointer's screen position while dragging
    HPALETTE palette;       // made from the frame's colour table, or null for a frame without one
    HPALETTE savedPalette;  // the window DC's own palette, put back on destroy
};

MessageWindow g_message;
char g_inputText[kInputTextCapacity];

// An answer on its way to a closed window's caller. Each waits on a timer of its own, so a caller that
// opens the next message from its callback, or any time before an earlier answer arrives, loses none.
struct PendingAnswer {
    UINT_PTR timer;
    HWND owner;
    MessageCallback callback;
    uint8_t answer;
    bool input;
    char inputText[kInputTextCapacity];
};
constexpr int kPendingCapacity = 8;
PendingAnswer g_pending[kPendingCapacity];

// ---- Word-wrapped text ----

TextExtent MeasureOnDc(void* context, const char* text, size_t length) {
    SIZE size = {0, 0};
    int count = length > size_t(INT_MAX) ? INT_MAX : int(length);
    GetTextExtentPoint32A(static_cast<HDC>(context), text, count, &size);
    return TextExtent{size.cx, size.cy};
}

// ---- Answers ----

void DeliverAnswer(PendingAnswer answer) {
    // The owner stays disabled while another message for it shows.
    if (answer.owner && !(g_message.window && g_message.owner == answer.owner)) EnableWindow(answer.owner, TRUE);
    if (answer.input) std::memcpy(g_inputText, answer.inputText, sizeof g_inputText);
    if (answer.callback) answer.callback(answer.answer);
}

void CALLBACK AnswerTimerProc(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    for (PendingAnswer& pending : g_pending) {
        if (pending.timer != timer) continue;
        PendingAnswer answer = pending;
        std::memset(&pending, 0, sizeof pending);
        DeliverAnswer(answer);
        return;
    }
}

void ScheduleAnswer(const MessageWindow* s) {
    PendingAnswer answer = {};
    answer.owner = s->owner;
    answer.callback = s->callback;
    answer.answer = s->answer;
    answer.input = s->input;
    std::memcpy(answer.inputText, g_inputText, sizeof answer.inputText);
    for (PendingAnswer& pending : g_pending) {
        if (pending.timer) continue;
        answer.timer = SetTimer(nullptr, 0, kAnswerDelayMs, AnswerTimerProc);
        if (!answer.timer) break;
        pending = answer;
        return;
    }
    // No timer to be had: the answer goes at once rather than never.
    DeliverAnswer(answer);
}

// ---- Palette ----

HPALETTE PaletteOfDib(const uint8_t* dib) {
    if (!dib) return nullptr;
    const DibHeader* header = DibHeaderOf(dib);
    if (header->biBitCount < 1 || header->biBitCount > 8) return nullptr;
    uint32_t count = header->biClrUsed ? header->biClrUsed : 1u << header->biBitCount;
    if (count > kDibMaxColors) count = kDibMaxColors;
    struct {
        WORD version, count;
        PALETTEENTRY entries[kDibMaxColors];
    } logical;
    logical.version = 0x300;
    logical.count = WORD(count);
    const DibColor* colors = DibPalette(dib);
    for (uint32_t i = 0; i < count; ++i)
        logical.entries[i] = PALETTEENTRY{colors[i].red, colors[i].green, colors[i].blue, 0};
    return CreatePalette(reinterpret_cast<LOGPALETTE*>(&logical));
}

// ---- The window ----

HWND MakeButton(HWND window, ImageObject* image, uint32_t art, POINT at) {
    ImageObject_LoadFromPack(image, art);
    HWND button = CreateWindowExA(0, "CQMCOMMAND", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, at.x, at.y, 50, 50,
                                  window, nullptr, GetModuleHandleA(nullptr), nullptr);
    SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(image)));
    return button;
}

// The heading carries words, so it is pasted into the frame per language.
void PasteHeading(MessageWindow* s) {
    ImageObject heading;
    ImageObject_Init(&heading, false);
    uint8_t* frame = ImageObject_Dib(&s->background);
    if (frame && ImageObject_LoadFromPack(&heading, kArtMessageHeading + uint32_t(g_language))) {
        int32_t width, height;
        ImageObject_GetSize(&heading, &width, &height);
        SoftBlit(frame, kHeadingAt.x, kHeadingAt.y, width, height, ImageObject_Dib(&heading), 0, 0, kRopSrcCopy);
    }
    ImageObject_Destroy(&heading);
}

LRESULT Message_OnCreate(HWND window) {
    MessageWindow* s = &g_message;
    if (!s->prepared || s->window) return -1;
    s->window = window;
    s->savedPalette = nullptr;
    s->dragging = false;
    if (s->input) {
        s->inputField = CreateWindowExA(WS_EX_CLIENTEDGE, "EDIT", "", WS_CHILD | WS_VISIBLE, kInputAt.x, kInputAt.y,
                                        kInputSize.cx, kInputSize.cy, window, nullptr, GetModuleHandleA(nullptr),
                                        nullptr);
        SendMessageA(s->inputField, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(SYSTEM_FONT)), FALSE);
        SendMessageA(s->inputField, EM_LIMITTEXT, kMessageInputLimit, 0);
        SetFocus(s->inputField);
    }
    PasteHeading(s);
    s->okButton = MakeButton(window, &s->okImage, kArtMessageOkButton, kOkAt);
    if (s->callback) s->cancelButton = MakeButton(window, &s->cancelImage, kArtMessageCancelButton, kCancelAt);
    s->answer = 0;
    return 0;
}

void Message_Paint(MessageWindow* s, HDC dc, const RECT* area) {
    PaintRect(dc, area, ImageObject_Dib(&s->background));
    DrawWrappedText(dc, s->text, kCommonFontFace, kTextWeight, kTextHeight, kCommonTextColor, false, 0, 0, kTextX,
                    kTextY, kTextWidth);
}

void Message_OnPaint(MessageWindow* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s->window, &paint);
    Message_Paint(s, dc, &paint.rcPaint);
    EndPaint(s->window, &paint);
}

// The whole picture into another DC, for whoever asks for a copy of the window (PrintWindow).
void Message_OnPrintClient(MessageWindow* s, HDC dc) {
    RECT all;
    GetClientRect(s->window, &all);
    Message_Paint(s, dc, &all);
}

void Message_Close(MessageWindow* s, uint8_t answer) {
    if (s->closing) return;
    s->closing = true;
    s->answer = answer;
    SendMessageA(s->window, WM_CLOSE, 0, 0);
}

// Enter accepts and Escape declines, whether typed on the window or in its name field; any other
// character is left to the field. Non-zero: the character was used.
LRESULT Message_OnChar(MessageWindow* s, WPARAM ch) {
    if (ch == kEnterChar) {
        Message_Close(s, 1);
        return 1;
    }
    if (ch == kEscapeChar) {
        Message_Close(s, 0);
        return 1;
    }
    return 0;
}

void Message_OnNotify(MessageWindow* s, WPARAM event, HWND from) {
    if (event != NOTIFY_CLICKED) return;
    Message_Close(s, from == s->okButton ? 1 : 0);
}

void Message_OnPaletteChanged(MessageWindow* s) {
    if (!s->palette) s->palette = PaletteOfDib(ImageObject_Dib(&s->background));
    if (s->palette) {
        HDC dc = GetDC(s->window);
        HPALETTE replaced = SelectPalette(dc, s->palette, FALSE);
        if (!s->savedPalette)
            s->savedPalette = replaced;
        else if (replaced && replaced != s->palette)
            DeleteObject(replaced);
        RealizePalette(dc);
        ReleaseDC(s->window, dc);
    }
    if (s->okButton) SendMessageA(s->okButton, WM_QUERYNEWPALETTE, 0, 0);
    if (s->cancelButton) SendMessageA(s->cancelButton, WM_QUERYNEWPALETTE, 0, 0);
    InvalidateRect(s->window, nullptr, FALSE);
}

void Message_OnLButtonDown(MessageWindow* s) {
    if (s->dragging) return;
    s->dragging = true;
    GetCursorPos(&s->anchor);
    SetCapture(s->window);
}

void Message_OnMouseMove(MessageWindow* s) {
    if (!s->dragging) return;
    POINT now;
    GetCursorPos(&now);
    if (now.x == s->anchor.x && now.y == s->anchor.y) return;
    RECT at;
    GetWindowRect(s->window, &at);
    SetWindowPos(s->window, nullptr, at.left + now.x - s->anchor.x, at.top + now.y - s->anchor.y, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOOWNERZORDER | SWP_NOSENDCHANGING);
    s->anchor = now;
}

void Message_OnLButtonUp(MessageWindow* s) {
    if (!s->dragging) return;
    s->dragging = false;
    ReleaseCapture();
}

void Message_OnCaptureChanged(MessageWindow* s, HWND newOwner) {
    if (s->dragging && newOwner != s->window) s->dragging = false;
}

void Message_OnClose(MessageWindow* s) {
    if (s->owner) SetForegroundWindow(s->owner);
    DestroyWindow(s->window);
}

// The field's text is read with a bound of its own: the field is limited to 23 characters, but a
// longer text put there by other means must not overrun the shared string.
void ReadInputText(const MessageWindow* s) {
    LRESULT length = SendMessageA(s->inputField, EM_LINELENGTH, 0, 0);
    if (length < 0) length = 0;
    if (length > kInputTextCapacity - 1) length = kInputTextCapacity - 1;
    std::memset(g_inputText, 0, sizeof g_inputText);
    SendMessageA(s->inputField, WM_GETTEXT, WPARAM(length + 1), reinterpret_cast<LPARAM>(g_inputText));
}

void Message_OnDestroy(MessageWindow* s) {
    ImageObject_Destroy(&s->okImage);
    ImageObject_Destroy(&s->cancelImage);
    ImageObject_Destroy(&s->background);
    if (s->savedPalette) {
        HDC dc = GetDC(s->window);
        SelectPalette(dc, s->savedPalette, FALSE);
        ReleaseDC(s->window, dc);
    }
    if (s->palette) DeleteObject(s->palette);
    if (s->input && s->inputField) ReadInputText(s);
    if (GetCapture() == s->window) ReleaseCapture();
    MessageWindow closed = *s;
    std::memset(s, 0, sizeof *s);
    ScheduleAnswer(&closed);
}

LRESULT CALLBACK MessageWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return Message_OnCreate(window);
    MessageWindow* s = &g_message;
    if (s->window != window) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Message_OnPaint(s); return 0;
    case WM_PRINTCLIENT: Message_OnPrintClient(s, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_CHAR: return Message_OnChar(s, wParam);
    case PM_CHILDCHAR: return Message_OnChar(s, wParam);
    case PM_NOTIFY: Message_OnNotify(s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_LBUTTONDOWN: Message_OnLButtonDown(s); return 0;
    case WM_MOUSEMOVE: Message_OnMouseMove(s); return 0;
    case WM_LBUTTONUP: Message_OnLButtonUp(s); return 0;
    case WM_CAPTURECHANGED: Message_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_QUERYNEWPALETTE: Message_OnPaletteChanged(s); return TRUE;
    case WM_PALETTECHANGED:
        if (reinterpret_cast<HWND>(wParam) != window) Message_OnPaletteChanged(s);
        return 0;
    case WM_CLOSE: Message_OnClose(s); return 0;
    case WM_DESTROY: Message_OnDestroy(s); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace

void DrawWrappedText(HDC dc, const char* text, const char* face, int32_t weight, int32_t height, COLORREF color,
                     bool shadow, COLORREF shadowColor, int32_t shadowOffset, int32_t x, int32_t y, int32_t width) {
    if (!dc || !text) return;
    HFONT font = CreateFontA(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                             CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, face);
    HGDIOBJ previous = font ? SelectObject(dc, font) : nullptr;
    if (!shadow) SetTextColor(dc, color);
    SetBkMode(dc, TRANSPARENT);
    SetTextJustification(dc, 0, 0);

    TextLayout layout;
    BeginTextLayout(&layout, text, std::strlen(text), width, MeasureOnDc, dc);
    TextLine line;
    while (NextTextLine(&layout, &line)) {
        if (line.onlyMovesDown || line.length == 0) continue;
        int count = line.length > size_t(INT_MAX) ? INT_MAX : int(line.length);
        if (line.justified) SetTextJustification(dc, line.justifyExtra, line.justifyBreaks);
        if (shadow) {
            SetTextColor(dc, shadowColor);
            TextOutA(dc, x + shadowOffset, y + line.y + shadowOffset, text + line.begin, count);
            SetTextColor(dc, color);
        }
        TextOutA(dc, x, y + line.y, text + line.begin, count);
        SetTextJustification(dc, 0, 0);
    }

    if (previous) SelectObject(dc, previous);
    if (font) DeleteObject(font);
}

void RegisterMessageWindowClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    // The window's own DC keeps the frame's palette selected between paints.
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = MessageWindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kMessageWindowClass;
    RegisterClassA(&windowClass);
}

HWND ShowMessage(int stringBase, HWND owner, MessageCallback callback, bool input) {
    // One message at a time: one still showing is declined (answer 0) so that its caller hears back.
    if (g_message.window) {
        HWND previous = g_message.window;
        g_message.closing = true;
        DestroyWindow(previous);
    }
    MessageWindow* s = &g_message;
    std::memset(s, 0, sizeof *s);
    ImageObject_Init(&s->background, false);
    ImageObject_Init(&s->okImage, false);
    ImageObject_Init(&s->cancelImage, false);
    int32_t width = kFallbackWidth, height = kFallbackHeight;
    if (ImageObject_LoadFromPack(&s->background, kArtMessageFrame)) ImageObject_GetSize(&s->background, &width, &height);
    RECT frame = {0, 0, width, height};
    AdjustWindowRect(&frame, kMessageStyle, FALSE);
    int32_t windowWidth = frame.right - frame.left, windowHeight = frame.bottom - frame.top;
    int32_t x = (g_screenWidth - windowWidth) / 2, y = (g_screenHeight - windowHeight) / 2;

    LoadLocalString(stringBase, s->text, kMessageTextCapacity);
    s->owner = owner;
    s->input = input;
    s->callback = callback;
    if (owner) EnableWindow(owner, FALSE);
    s->prepared = true;
    HWND window = CreateWindowExA(0, kMessageWindowClass, "", kMessageStyle, x, y, windowWidth, windowHeight, owner,
                                  nullptr, GetModuleHandleA(nullptr), nullptr);
    s->prepared = false;
    if (window) return window;
    // Not shown: nothing will answer, so the owner must not stay disabled.
    ImageObject_Destroy(&s->background);
    ImageObject_Destroy(&s->okImage);
    ImageObject_Destroy(&s->cancelImage);
    std::memset(s, 0, sizeof *s);
    if (owner) EnableWindow(owner, TRUE);
    return nullptr;
}

const char* MessageInputText() { return g_inputText; }

HWND CurrentMessageWindow() { return g_message.window; }
