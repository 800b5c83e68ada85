// The picture window CWNDIMGPREV: the backdrop, the fitted photograph, the one-shot title, the print
// and close buttons, and closing by key or double click.
#include "setup/picture_window_win32.h"

#include <vfw.h>

#include <cstring>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "extras/printing_win32.h"
#include "gfx/bmp_reader.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "setup/picture_fit.h"

char g_pictureTitle[kPictureTitleCapacity];
bool g_pictureTitlePending;
PrintFunction g_printWithWaitWindow = PrintWithWaitWindow;

namespace {

constexpr DWORD kScreenStyle = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_MAXIMIZE | WS_DLGFRAME;
constexpr int32_t kTileSide = 80;
constexpr int32_t kFrameWidth = 800;
constexpr int32_t kFrameHeight = 600;
// The two buttons on the frame's lower edge, from the frame's top-left corner.
constexpr int32_t kButtonTop = 496;
constexpr int32_t kPrintButtonLeft = 590;
constexpr int32_t kCloseButtonLeft = 669;
constexpr int32_t kButtonSide = 50;
constexpr int32_t kButtonFrames = 10;  // one row of ten frames: rest, then a growing glow
constexpr int32_t kTitleHeight = 34;
constexpr int32_t kTitleWeight = 700;
constexpr int32_t kTitleShadowOffset = 2;
constexpr COLORREF kTitleShadowColour = RGB(0, 0, 0);
constexpr COLORREF kTitleColour = RGB(216, 146, 100);

// One picture window at a time, so its state is the program's.
struct PictureWindowState {
    HWND hwnd;                // null until WM_CREATE
    HWND owner;               // disabled while the window lives
    ImageObject backdrop;     // screen-sized: felt tiles and the frame
    bool hasBackdrop;
    uint8_t* header;          // 1,064-byte block: bitmap header (fitted size) and colour table
    uint8_t* pixels;          // the picture at its fitted size, bottom-up
    int32_t width, height;    // the fitted size
    char* printPath;          // heap copy, or null: no buttons
    PictureDismissFunction dismiss;
    HFONT titleFont;
    HDRAWDIB drawDib;
    ImageObject printStrip;   // pack 260
    ImageObject closeStrip;   // pack 300, the shared close button
    bool hasStrips;
    HWND printButton, closeButton;
};

PictureWindowState s_picture;

int32_t ScreenWidth() { return g_screenWidth > 0 ? g_screenWidth : GetSystemMetrics(SM_CXSCREEN); }
int32_t ScreenHeight() { return g_screenHeight > 0 ? g_screenHeight : GetSystemMetrics(SM_CYSCREEN); }

char* CopyText(const char* text) {
    size_t length = strnlen(text, kPathCapacity);
    char* copy = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, length + 1));
    if (!copy) return nullptr;
    std::memcpy(copy, text, length);
    copy[length] = 0;
    return copy;
}

void FreeText(char* text) {
    if (text) HeapFree(GetProcessHeap(), 0, text);
}

void FreePicture(PictureWindowState* s) {
    if (s->header) SysFreeBlock(s->header);
    if (s->pixels) SysFreeBlock(s->pixels);
    s->header = nullptr;
    s->pixels = nullptr;
}

// Reads the header and colour table into a new 1,064-byte block and the pixels resampled to the fitted
// size, bottom-up. Compressed files, colour tables beyond 256 entries and unreadable files fail.
bool ReadFittedPicture(PictureWindowState* s, const char* path) {
    BmpFileReader reader;
    InitBmpReader(&reader);
    if (!path || !OpenBmp(&reader, path)) return false;
    int32_t width = 0, height = 0;
    bool ok = !reader.compressed && reader.colorCount <= kDibMaxColors && BmpSize(&reader, &width, &height);
    if (ok) {
        s->header = static_cast<uint8_t*>(SysAllocBlock(kDibPixelOffset));
        ok = s->header != nullptr;
    }
    if (ok) {
        std::memset(s->header, 0, kDibPixelOffset);
        ok = BmpInfo(&reader, s->header);
    }
    if (ok) {
        PictureSize fitted = FitPictureToWell(width, height < 0 ? -height : height);
        DibHeader* header = DibHeaderOf(s->header);
        header->biWidth = fitted.width;
        header->biHeight = fitted.height;
        header->biSizeImage = 0;
        s->width = fitted.width;
        s->height = fitted.height;
        int64_t bytes = BmpResampledBytes(&reader, fitted.width, fitted.height);
        ok = bytes > 0 && bytes <= 0x7FFFFFFF;
        if (ok) {
            s->pixels = static_cast<uint8_t*>(SysAllocBlock(size_t(bytes)));
            ok = s->pixels && ReadBmpResampled(&reader, fitted.width, fitted.height, s->pixels);
        }
    }
    CloseBmp(&reader);
    if (!ok) FreePicture(s);
    return ok;
}

// Frees everything the window's creation gathered and forgets the window.
void ReleaseState(PictureWindowState* s) {
    FreePicture(s);
    FreeText(s->printPath);
    if (s->hasBackdrop) ImageObject_Destroy(&s->backdrop);
    if (s->hasStrips) {
        ImageObject_Destroy(&s->printStrip);
        ImageObject_Destroy(&s->closeStrip);
    }
    if (s->drawDib) DrawDibClose(s->drawDib);
    if (s->titleFont) DeleteObject(s->titleFont);
    std::memset(s, 0, sizeof *s);
}

// ---- Creation ----

HWND MakeAnimatedButton(HWND parent, const ImageObject* strip, int32_t x, int32_t y, int id) {
    HWND button = CreateWindowExA(0, "CQMANIM", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, x, y, kButtonSide,
                                  kButtonSide, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                  GetModuleHandleA(nullptr), nullptr);
    if (!button) return nullptr;
    SendMessageA(button, PM_ANIM_SETROWS, 0, 1);
    SendMessageA(button, PM_ANIM_SETCOLUMNS, 0, kButtonFrames);
    SendMessageA(button, PM_ANIM_SETFRAME, 0, kButtonRestFrame);
    SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(strip)));
    return button;
}

void MakeButtons(PictureWindowState* s) {
    ImageObject_Init(&s->printStrip, false);
    ImageObject_Init(&s->closeStrip, false);
    s->hasStrips = true;
    ImageObject_LoadFromPack(&s->printStrip, kArtPrintButton);
    ImageObject_LoadFromPack(&s->closeStrip, kArtCloseAnimButton);
    int32_t left = (ScreenWidth() - kFrameWidth) / 2, top = (ScreenHeight() - kFrameHeight) / 2 + kButtonTop;
    s->printButton = MakeAnimatedButton(s->hwnd, &s->printStrip, left + kPrintButtonLeft, top, kPicturePrintButtonId);
    s->closeButton = MakeAnimatedButton(s->hwnd, &s->closeStrip, left + kCloseButtonLeft, top, kPictureCloseButtonId);
}

// Builds everything from the request; the window is refused (nothing shown, nothing dismissed) when
// the picture cannot be read. The owner stays disabled while the window lives.
LRESULT Picture_OnCreate(PictureWindowState* s, HWND hwnd, const CREATESTRUCTA* create) {
    const auto* request = static_cast<const PictureWindowRequest*>(create->lpCreateParams);
    if (s->hwnd || !request) return -1;  // one picture window at a time
    std::memset(s, 0, sizeof *s);
    POINT frameAt;
    s->hasBackdrop = true;
    bool ok = ComposeScreenBackdrop(&s->backdrop, kArtPictureFrame, &frameAt) &&
              ReadFittedPicture(s, request->picturePath);
    if (ok && request->printPath) ok = (s->printPath = CopyText(request->printPath)) != nullptr;
    if (!ok) {
        ReleaseState(s);
        return -1;
    }
    s->hwnd = hwnd;
    s->owner = GetWindow(hwnd, GW_OWNER);
    if (s->owner) EnableWindow(s->owner, FALSE);
    s->dismiss = request->dismiss;
    s->drawDib = DrawDibOpen();
    if (s->printPath) MakeButtons(s);
    s->titleFont = CreateFontA(kTitleHeight, 0, 0, 0, kTitleWeight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                               OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE,
                               "Arial Bold");
    return 0;
}

// ---- Painting ----

void DrawPicture(const PictureWindowState* s, HDC dc) {
    if (!s->header || !s->pixels) return;
    int32_t x = (ScreenWidth() - s->width) / 2, y = (ScreenHeight() - s->height) / 2;
    if (s->drawDib &&
        DrawDibDraw(s->drawDib, dc, x, y, s->width, s->height, reinterpret_cast<LPBITMAPINFOHEADER>(s->header),
                    s->pixels, 0, 0, s->width, s->height, 0))
        return;
    SetDIBitsToDevice(dc, x, y, DWORD(s->width), DWORD(s->height), 0, 0, 0, UINT(s->height), s->pixels,
                      reinterpret_cast<const BITMAPINFO*>(s->header), DIB_RGB_COLORS);
}

// The title in black, then again two pixels up and to the left in the title colour: a shadowed title.
// Centred as if its characters before the first "." were 15 pixels each.
void DrawTitle(const PictureWindowState* s, HDC dc) {
    int length = int(strnlen(g_pictureTitle, kPictureTitleCapacity));
    int32_t left = PictureTitleLeft(ScreenWidth(), g_pictureTitle, kPictureTitleCapacity);
    RECT place = {left, PictureTitleTop(ScreenHeight()), ScreenWidth(), ScreenHeight()};
    HGDIOBJ oldFont = s->titleFont ? SelectObject(dc, s->titleFont) : nullptr;
    int oldMode = SetBkMode(dc, TRANSPARENT);
    COLORREF oldColour = SetTextColor(dc, kTitleShadowColour);
    DrawTextA(dc, g_pictureTitle, length, &place, DT_NOCLIP);
    OffsetRect(&place, -kTitleShadowOffset, -kTitleShadowOffset);
    SetTextColor(dc, kTitleColour);
    DrawTextA(dc, g_pictureTitle, length, &place, DT_NOCLIP);
    SetTextColor(dc, oldColour);
    SetBkMode(dc, oldMode);
    if (oldFont) SelectObject(dc, oldFont);
}

// The title belongs to the first paint only: later repaints show the picture without it.
void Picture_Paint(PictureWindowState* s, HDC dc, const RECT& area) {
    if (s->hasBackdrop)
        BitBlt(dc, area.left, area.top, area.right - area.left, area.bottom - area.top, ImageObject_Dc(&s->backdrop),
               area.left, area.top, SRCCOPY);
    DrawPicture(s, dc);
    if (g_pictureTitlePending) {
        DrawTitle(s, dc);
        g_pictureTitlePending = false;
    }
}

void Picture_OnPaint(PictureWindowState* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s->hwnd, &paint);
    if (dc) Picture_Paint(s, dc, paint.rcPaint);
    EndPaint(s->hwnd, &paint);
}

void Picture_OnPrintClient(PictureWindowState* s, HDC dc) {
    RECT all = {0, 0, ScreenWidth(), ScreenHeight()};
    Picture_Paint(s, dc, all);
}

// ---- Buttons, keys and closing ----

void Picture_OnNotify(PictureWindowState* s, WPARAM event, HWND control) {
    if (!control || (control != s->printButton && control != s->closeButton)) return;
    AnimatedButtonSound(event);
    AnimatedButtonFeedback(control, event);
    if (event != NOTIFY_CLICKED) return;
    if (control == s->closeButton) {
        SendMessageA(s->hwnd, WM_CLOSE, 0, 0);
        return;
    }
    g_printWithWaitWindow(s->hwnd, s->printPath);
}

void Picture_OnClose(PictureWindowState* s) {
    HWND hwnd = s->hwnd;
    // Enabled first, so that the system can hand activation back to the owner.
    if (s->owner) {
        EnableWindow(s->owner, TRUE);
        SetForegroundWindow(s->owner);
    }
    DestroyWindow(hwnd);
}

// Everything goes before the dismiss function runs, so that it may open the next screen (the wallpaper
// question) or even another picture window.
void Picture_OnDestroy(PictureWindowState* s) {
    // The buttons draw from the strips: they go first.
    if (s->printButton) DestroyWindow(s->printButton);
    if (s->closeButton) DestroyWindow(s->closeButton);
    if (s->owner) EnableWindow(s->owner, TRUE);
    PictureDismissFunction dismiss = s->dismiss;
    ReleaseState(s);
    if (dismiss) dismiss(1);
}

LRESULT CALLBACK PictureWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    PictureWindowState* s = &s_picture;
    if (message == WM_CREATE) return Picture_OnCreate(s, hwnd, reinterpret_cast<const CREATESTRUCTA*>(lParam));
    if (s->hwnd != hwnd) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Picture_OnPaint(s); return 0;
    case WM_PRINTCLIENT: Picture_OnPrintClient(s, reinterpret_cast<HDC>(wParam)); return 0;
    case WM_ERASEBKGND: return 1;  // the backdrop covers everything
    case PM_NOTIFY: Picture_OnNotify(s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_CHAR:
    case WM_LBUTTONDBLCLK: SendMessageA(hwnd, WM_CLOSE, 0, 0); return 0;
    case WM_CLOSE: Picture_OnClose(s); return 0;
    case WM_DESTROY: Picture_OnDestroy(s); return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

}  // namespace

void AnimatedButtonSound(WPARAM event) {
    if (event == NOTIFY_ENTERED) PlayInterfaceSound(g_hoverSound);
    else if (event == NOTIFY_PRESSED) PlayInterfaceSound(g_clickSound);
}

bool ComposeScreenBackdrop(ImageObject* backdrop, uint32_t panelId, POINT* panelAt) {
    int32_t width = ScreenWidth(), height = ScreenHeight();
    *panelAt = POINT{(width - kFrameWidth) / 2, (height - kFrameHeight) / 2};
    ImageObject_Init(backdrop, true);
    if (!ImageObject_SetSize(backdrop, width, height, true)) return false;
    HDC dc = ImageObject_Dc(backdrop);
    PatBlt(dc, 0, 0, width, height, BLACKNESS);
    uint8_t* tile = LoadPackItem(&g_pack, kArtBackdropTile);
    int32_t tileWidth = 0, tileHeight = 0;
    if (PackedDibSize(tile, &tileWidth, &tileHeight)) {
        if (tileWidth > kTileSide) tileWidth = kTileSide;
        if (tileHeight > kTileSide) tileHeight = kTileSide;
        for (int32_t y = 0; y < height; y += kTileSide)
            for (int32_t x = 0; x < width; x += kTileSide) DrawPackedDib(dc, x, y, tileWidth, tileHeight, tile, 0, 0);
    }
    FreePackedDib(tile);
    uint8_t* panel = LoadPackItem(&g_pack, panelId);
    int32_t panelWidth = 0, panelHeight = 0;
    if (PackedDibSize(panel, &panelWidth, &panelHeight))
        DrawPackedDib(dc, panelAt->x, panelAt->y, panelWidth, panelHeight, panel, 0, 0);
    FreePackedDib(panel);
    return true;
}

void RegisterPictureWindowClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_DBLCLKS;  // a double click closes the window
    windowClass.lpfnWndProc = PictureWindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kPictureWindowClass;
    RegisterClassA(&windowClass);
}

HWND OpenPictureWindow(HWND owner, const char* picturePath, PictureDismissFunction dismiss, const char* printPath) {
    if (s_picture.hwnd) return nullptr;  // one picture window at a time
    PictureWindowRequest request = {picturePath, dismiss, printPath};
    // Placed so that the client area is the screen, with or without a window manager to maximise it.
    RECT frame = {0, 0, ScreenWidth(), ScreenHeight()};
    AdjustWindowRectEx(&frame, kScreenStyle, FALSE, 0);
    return CreateWindowExA(0, kPictureWindowClass, "", kScreenStyle, frame.left, frame.top, frame.right - frame.left,
                           frame.bottom - frame.top, owner, nullptr, GetModuleHandleA(nullptr), &request);
}

HWND CurrentPictureWindow() { return s_picture.hwnd; }
