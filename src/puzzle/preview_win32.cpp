// The picture preview window: title strip, close button, the fitted picture, and moving by dragging.
#include "puzzle/preview_win32.h"

#include <vfw.h>

#include <cstring>

#include "app/app_state.h"
#include "app/art_ids.h"
#include "app/language_chooser_win32.h"
#include "app/strings_win32.h"
#include "app/theme.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "puzzle/picture.h"

namespace {

constexpr int32_t kPictureBoxWidth = 240;   // the picture is fitted into this box
constexpr int32_t kPictureBoxHeight = 180;
constexpr int32_t kPictureLeft = 4;         // where the picture sits in the window
constexpr int32_t kPictureTop = 35;
constexpr int32_t kFrameExtraWidth = 8;     // window = picture + these
constexpr int32_t kFrameExtraHeight = 39;
constexpr int32_t kCreatedWidth = 240;
constexpr int32_t kCreatedHeight = 211;
constexpr int32_t kTileWidth = 30;          // the title strip's tile
constexpr int32_t kTileHeight = 31;
constexpr int32_t kTitleX = 10;
constexpr int32_t kTitleY = 5;
constexpr int32_t kTitleFontHeight = 20;
constexpr int32_t kTitleLimit = 40;         // characters kept of a title
constexpr int32_t kCloseButtonSize = 50;    // before its strip sizes it
constexpr int32_t kCloseFromRight = 30;     // at creation: window width - 30
constexpr int32_t kCloseFromPicture = 22;   // after a refit: picture width - 22

constexpr UINT kQuietFlags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;

struct PreviewState {
    HWND hwnd;
    HWND closeButton;
    uint8_t* tile;                        // pack picture 227, the title strip's tile
    uint8_t* closeImage;                  // pack picture 225, the close button's strip
    uint8_t* picture;                     // the fitted picture, or null with no image
    int32_t pictureWidth, pictureHeight;  // 240 x 180 with no image
    HDRAWDIB drawDib;
    HFONT font;
    char title[kTitleLimit + 1];
    int32_t titleLength;
    bool moving;
    POINT last;                           // the pointer's screen position at the last move
};

// The state block of a preview window; null for no window or one of another class (the shared handle
// may stand for something else while the preview does not exist, as in tests of the bars).
PreviewState* PreviewStateOf(HWND hwnd) {
    char name[sizeof kPreviewClass + 1];
    if (!hwnd || !GetClassNameA(hwnd, name, sizeof name) || lstrcmpA(name, kPreviewClass) != 0) return nullptr;
    return reinterpret_cast<PreviewState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
}

void DrawWhole(const PreviewState* s, HDC dc, int32_t x, int32_t y, const uint8_t* dib, int32_t width, int32_t height) {
    if (!s->drawDib || !dib || width <= 0 || height <= 0) return;
    DrawDibDraw(s->drawDib, dc, x, y, width, height, reinterpret_cast<LPBITMAPINFOHEADER>(const_cast<uint8_t*>(dib)),
                const_cast<uint8_t*>(dib + kDibPixelOffset), 0, 0, width, height, 0);
}

void Preview_Paint(const PreviewState* s, HDC dc, const RECT* area) {
    int32_t tileWidth = 0, tileHeight = 0;
    if (PackedDibSize(s->tile, &tileWidth, &tileHeight)) {
        if (tileWidth > kTileWidth) tileWidth = kTileWidth;
        if (tileHeight > kTileHeight) tileHeight = kTileHeight;
        for (int32_t x = area->left - area->left % kTileWidth; x < area->right; x += kTileWidth)
            DrawWhole(s, dc, x, 0, s->tile, tileWidth, tileHeight);
    }
    if (s->titleLength > 0) {
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, kCommonTextColor);
        HGDIOBJ oldFont = SelectObject(dc, s->font);
        TextOutA(dc, kTitleX, kTitleY, s->title, s->titleLength);
        SelectObject(dc, oldFont);
    }
    if (s->picture) DrawWhole(s, dc, kPictureLeft, kPictureTop, s->picture, s->pictureWidth, s->pictureHeight);
}

void Preview_OnPaint(PreviewState* s) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(s->hwnd, &ps);
    if (dc) Preview_Paint(s, dc, &ps.rcPaint);
    EndPaint(s->hwnd, &ps);
}

// Titles longer than 40 characters are cut there.
LRESULT Preview_OnSetText(PreviewState* s, const char* text) {
    int32_t length = 0;
    if (text)
        while (length < kTitleLimit && text[length]) ++length;
    std::memcpy(s->title, text ? text : "", size_t(length));
    s->title[length] = 0;
    s->titleLength = length;
    InvalidateRect(s->hwnd, nullptr, TRUE);
    return 1;
}

// Copies up to the title's end, its 40th character or one short of the caller's size, and always ends
// the copy with a zero. Answers 0, as this window always has.
LRESULT Preview_OnGetText(const PreviewState* s, WPARAM size, char* buffer) {
    if (!buffer || size == 0) return 0;
    WPARAM n = 0;
    while (n + 1 < size && n < WPARAM(kTitleLimit) && s->title[n]) {
        buffer[n] = s->title[n];
        ++n;
    }
    buffer[n] = 0;
    return 0;
}

POINT ScreenPoint(HWND hwnd, int x, int y) {
    POINT p = {x, y};
    ClientToScreen(hwnd, &p);
    return p;
}

void Preview_OnLButtonDown(PreviewState* s, int x, int y) {
    if (s->moving) return;
    s->moving = true;
    s->last = ScreenPoint(s->hwnd, x, y);
    SetCapture(s->hwnd);
}

void Preview_OnMouseMove(PreviewState* s, int x, int y) {
    if (!s->moving) return;
    POINT now = ScreenPoint(s->hwnd, x, y);
    if (now.x == s->last.x && now.y == s->last.y) return;
    RECT window;
    GetWindowRect(s->hwnd, &window);
    SetWindowPos(s->hwnd, nullptr, window.left + now.x - s->last.x, window.top + now.y - s->last.y, 0, 0,
                 SWP_NOSIZE | kQuietFlags);
    s->last = now;
}

void Preview_OnLButtonUp(PreviewState* s) {
    if (!s->moving) return;
    s->moving = false;  // first, so the capture change that follows finds no move to end
    ReleaseOwnCapture(s->hwnd);
}

void Preview_OnCaptureChanged(PreviewState* s, HWND newOwner) {
    if (s->moving && newOwner != s->hwnd) s->moving = false;
}

void Preview_OnPaletteChanged(PreviewState* s) {
    HDC dc = GetDC(s->hwnd);
    if (dc) {
        DrawDibRealize(s->drawDib, dc, FALSE);
        ReleaseDC(s->hwnd, dc);
    }
    InvalidateRect(s->hwnd, nullptr, TRUE);
}

void Preview_OnNotify(PreviewState* s, WPARAM event, HWND control) {
    if (control == s->closeButton && event == NOTIFY_CLICKED) SendMessageA(s->hwnd, WM_CLOSE, 0, 0);
}

// Closing only hides: the tools button brings the same window back where it was left.
void Preview_OnClose(PreviewState* s) {
    SetWindowPos(s->hwnd, nullptr, 0, 0, 0, 0, SWP_HIDEWINDOW | SWP_NOMOVE | SWP_NOSIZE | kQuietFlags);
}

LRESULT Preview_OnCreate(HWND hwnd, const CREATESTRUCTA* create) {
    auto* s = static_cast<PreviewState*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(PreviewState)));
    if (!s) return -1;
    s->hwnd = hwnd;
    s->pictureWidth = kPictureBoxWidth;
    s->pictureHeight = kPictureBoxHeight;
    s->tile = LoadPackItem(&g_pack, kArtTrayTile);
    s->closeImage = LoadPackItem(&g_pack, kArtTrayCloseButton);
    s->drawDib = DrawDibOpen();
    s->font = CreateFontA(kTitleFontHeight, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                          CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, kCommonFontFace);
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    s->closeButton = CreateWindowExA(0, "CQMCOMMAND", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                                     create->cx - kCloseFromRight, 0, kCloseButtonSize, kCloseButtonSize, hwnd,
                                     reinterpret_cast<HMENU>(INT_PTR(kPreviewCloseButtonId)),
                                     GetModuleHandleA(nullptr), nullptr);
    if (s->closeButton && s->closeImage)
        SendMessageA(s->closeButton, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(s->closeImage));
    return 0;
}

void Preview_OnDestroy(PreviewState* s) {
    FreePackedDib(s->picture);
    FreePackedDib(s->tile);
    FreePackedDib(s->closeImage);
    if (s->drawDib) DrawDibClose(s->drawDib);
    if (s->font) DeleteObject(s->font);
    if (g_magnifierWindow == s->hwnd) g_magnifierWindow = nullptr;
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    HeapFree(GetProcessHeap(), 0, s);
}

}  // namespace

LRESULT CALLBACK PreviewProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* s = reinterpret_cast<PreviewState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!s) {
        if (message == WM_CREATE) return Preview_OnCreate(hwnd, reinterpret_cast<const CREATESTRUCTA*>(lParam));
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    switch (message) {
    case WM_PAINT: Preview_OnPaint(s); return 0;
    case WM_SETTEXT: return Preview_OnSetText(s, reinterpret_cast<const char*>(lParam));
    case WM_GETTEXT: return Preview_OnGetText(s, wParam, reinterpret_cast<char*>(lParam));
    case WM_LBUTTONDOWN: Preview_OnLButtonDown(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_MOUSEMOVE: Preview_OnMouseMove(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONUP: Preview_OnLButtonUp(s); return 0;
    case WM_CAPTURECHANGED: Preview_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_QUERYNEWPALETTE: Preview_OnPaletteChanged(s); return TRUE;
    case WM_PALETTECHANGED:
        if (reinterpret_cast<HWND>(wParam) != hwnd) Preview_OnPaletteChanged(s);
        return 0;
    case PM_NOTIFY: Preview_OnNotify(s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_CLOSE: Preview_OnClose(s); return 0;
    case WM_DESTROY: Preview_OnDestroy(s); return 0;
    default: return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}

HWND CreatePreviewWindow(HWND owner) {
    HWND hwnd = CreateWindowExA(0, kPreviewClass, "", WS_POPUP, g_screenWidth / 4, g_screenHeight / 2, kCreatedWidth,
                                kCreatedHeight, owner, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (!hwnd) return nullptr;
    g_magnifierWindow = hwnd;
    RetitlePreview();
    return hwnd;
}

void RefitPreview() {
    PreviewState* s = PreviewStateOf(g_magnifierWindow);
    if (!s) return;
    SetWindowPos(s->hwnd, nullptr, 0, 0, 0, 0, SWP_HIDEWINDOW | SWP_NOMOVE | SWP_NOSIZE | kQuietFlags);
    FreePackedDib(s->picture);
    s->picture = nullptr;
    s->pictureWidth = kPictureBoxWidth;
    s->pictureHeight = kPictureBoxHeight;
    if (const uint8_t* image = CurrentPicture()) {
        const DibHeader* header = DibHeaderOf(image);
        int32_t height = header->biHeight < 0 ? -header->biHeight : header->biHeight;
        PictureFit fit = FitPicture(header->biWidth, height, kPictureBoxWidth, kPictureBoxHeight);
        s->pictureWidth = fit.width;
        s->pictureHeight = fit.height;
        s->picture = ScalePackedDib(image, fit.width, fit.height);
    }
    SetWindowPos(s->hwnd, nullptr, 0, 0, s->pictureWidth + kFrameExtraWidth, s->pictureHeight + kFrameExtraHeight,
                 SWP_NOMOVE | kQuietFlags);
    if (s->closeButton)
        SetWindowPos(s->closeButton, nullptr, s->pictureWidth - kCloseFromPicture, 0, 0, 0, SWP_NOSIZE | kQuietFlags);
    InvalidateRect(s->hwnd, nullptr, TRUE);
}

void TogglePreview() {
    if (!g_magnifierWindow) return;
    UINT show = IsWindowVisible(g_magnifierWindow) ? SWP_HIDEWINDOW : SWP_SHOWWINDOW;
    SetWindowPos(g_magnifierWindow, nullptr, 0, 0, 0, 0, show | SWP_NOMOVE | SWP_NOSIZE | kQuietFlags);
}

void RetitlePreview() {
    if (!g_magnifierWindow) return;
    char title[90];
    LoadLocalString(STR_PREVIEW, title, sizeof title);
    SetWindowTextA(g_magnifierWindow, title);
}
