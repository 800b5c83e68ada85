// The piece boxes: floating windows, each holding one tray view, shown and hidden by the side buttons.
// Still to come: moving and resizing, renaming through the message window, the bevelled frame.
#include "setup/piece_box_win32.h"

#include <cstdio>
#include <cstring>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/main_window_win32.h"
#include "app/theme.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"
#include "puzzle/board_window_win32.h"

HWND g_pieceBoxes[kPieceBoxCount];

constexpr int32_t kBoxSize = 300;
constexpr int32_t kTitleStrip = 30;  // the tray view starts below the title
constexpr int32_t kTrayWidth = 288;

// Side-button pictures: empty trays show 200 + k, trays holding pieces 600 + k.
static ImageObject g_emptyTrayArt[kPieceBoxCount], g_fullTrayArt[kPieceBoxCount];
static ImageObject g_boxBackdrop;
static HFONT g_titleFont;

static int BoxIndex(HWND box) {
    for (int i = 0; i < kPieceBoxCount; ++i)
        if (g_pieceBoxes[i] == box) return i;
    return -1;
}

static void Box_OnPaint(HWND window) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    RECT all;
    GetClientRect(window, &all);
    const uint8_t* tile = ImageObject_Dib(&g_boxBackdrop);
    if (tile) {
        int32_t tw = DibHeaderOf(tile)->biWidth, th = DibHeaderOf(tile)->biHeight;
        for (int32_t y = 0; y < all.bottom && th > 0; y += th)
            for (int32_t x = 0; x < all.right && tw > 0; x += tw) DrawPackedDib(dc, x, y, tw, th, tile, 0, 0);
    } else {
        FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    }
    char title[48];
    GetWindowTextA(window, title, sizeof title);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, kCommonTextColor);
    HGDIOBJ oldFont = SelectObject(dc, g_titleFont);
    TextOutA(dc, 10, 5, title, int(std::strlen(title)));
    SelectObject(dc, oldFont);
    EndPaint(window, &paint);
}

// The tray view reports whether it holds pieces: the side button shows it at a glance.
static void Box_OnNotify(HWND window, WPARAM event, HWND from) {
    int k = BoxIndex(window);
    if (k < 0 || from != ViewWindow(k) || !g_sideButtons[k]) return;
    ImageObject* art = event == NOTIFY_VIEW_FILLED ? &g_fullTrayArt[k] : event == NOTIFY_VIEW_EMPTY ? &g_emptyTrayArt[k]
                                                                                                 : nullptr;
    if (!art) return;
    SendMessageA(g_sideButtons[k], PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(art)));
}

static LRESULT CALLBACK Box_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_PAINT: Box_OnPaint(window); return 0;
    case WM_ERASEBKGND: return 1;
    case PM_NOTIFY: Box_OnNotify(window, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_CLOSE:
        SetWindowPos(window, nullptr, 0, 0, 0, 0,
                     SWP_HIDEWINDOW | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

void RegisterPieceBoxClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = Box_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kPieceBoxClass;
    RegisterClassA(&windowClass);
}

void CreatePieceBoxes(HWND mainWindow) {
    ImageObject_Init(&g_boxBackdrop, false);
    ImageObject_LoadFromPack(&g_boxBackdrop, kArtTrayTile);
    if (!g_titleFont)
        g_titleFont = CreateFontA(20, 0, 0, 0, 700, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                  CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, kCommonFontFace);
    for (int i = 0; i < kPieceBoxCount; ++i) {
        ImageObject_Init(&g_emptyTrayArt[i], false);
        ImageObject_LoadFromPack(&g_emptyTrayArt[i], kArtTrayEmptyButton + uint32_t(i));
        ImageObject_Init(&g_fullTrayArt[i], false);
        ImageObject_LoadFromPack(&g_fullTrayArt[i], kArtTrayFullButton + uint32_t(i));
        char title[8] = "Box  ";
        title[4] = char('1' + i);
        g_pieceBoxes[i] = CreateWindowExA(0, kPieceBoxClass, title, WS_POPUP | WS_CLIPSIBLINGS | WS_CLIPCHILDREN,
                                          60 + 10 * i, 78 + 10 * i, kBoxSize, kBoxSize, mainWindow, nullptr,
                                          GetModuleHandleA(nullptr), nullptr);
        if (g_pieceBoxes[i])
            CreateTrayView(g_pieceBoxes[i], i, 6, kTitleStrip + 6, kTrayWidth, kBoxSize - kTitleStrip - 12,
                           g_sideButtons[i]);
    }
}

void TogglePieceBox(int box) {
    if (box < 0 || box >= kPieceBoxCount || !g_pieceBoxes[box]) return;
    UINT show = IsWindowVisible(g_pieceBoxes[box]) ? SWP_HIDEWINDOW : SWP_SHOWWINDOW;
    SetWindowPos(g_pieceBoxes[box], nullptr, 0, 0, 0, 0,
                 show | SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOZORDER);
}
