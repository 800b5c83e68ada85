// The title bar window with the play clock and its four buttons.
#include "app/title_window_win32.h"

#include <cstring>
#include <initializer_list>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/clock_text.h"
#include "app/launchers_win32.h"
#include "app/theme.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"

void (*g_openNewPuzzleScreen)() = nullptr;

enum TitleButton { BUTTON_MINIMISE, BUTTON_EXIT, BUTTON_ABOUT, BUTTON_NEW_PUZZLE, kTitleButtonCount };

// The title bar lives for the whole run, so its state is plain globals.
static HWND g_titleWindow;
static ImageObject g_tile;
static ImageObject g_buttonImages[kTitleButtonCount];
static HWND g_buttons[kTitleButtonCount];
// Pictures of the open and save buttons: no such buttons stand in the bar, but their words follow the
// language like the others.
static ImageObject g_openImage, g_saveImage;
static HFONT g_clockFont;
static int32_t g_clockX;
static char g_clockText[24] = "00:00:00";

int32_t TitleClockX(int32_t screenWidth) { return 2 * ((screenWidth - 703) / 3) + 506; }
int32_t TitleAboutX(int32_t screenWidth) { return (screenWidth - 703) / 3 + 316; }

const char* TitleClockText() { return g_clockText; }

void PlayTitleClick() { PlayInterfaceSound(g_clickSound); }

static HWND CreateButton(HWND parent, ImageObject* image, uint32_t artId, int32_t x, int32_t y) {
    ImageObject_Init(image, false);
    ImageObject_LoadFromPack(image, artId);
    HWND button = CreateWindowExA(0, "CQMCOMMAND", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, x, y, 50, 50, parent,
                                  nullptr, GetModuleHandleA(nullptr), nullptr);
    if (button) SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(image)));
    return button;
}

static LRESULT Title_OnCreate(HWND window) {
    g_titleWindow = window;
    ImageObject_Init(&g_tile, false);
    ImageObject_LoadFromPack(&g_tile, kArtTitleBarTile);
    g_buttons[BUTTON_MINIMISE] =
        CreateButton(window, &g_buttonImages[BUTTON_MINIMISE], kArtMinimiseButton, g_screenWidth - 75, 0);
    g_buttons[BUTTON_EXIT] = CreateButton(window, &g_buttonImages[BUTTON_EXIT], kArtExitButton, g_screenWidth - 36, 0);
    g_buttons[BUTTON_ABOUT] =
        CreateButton(window, &g_buttonImages[BUTTON_ABOUT], kArtAboutButton, TitleAboutX(g_screenWidth), -1);
    g_buttons[BUTTON_NEW_PUZZLE] = CreateButton(window, &g_buttonImages[BUTTON_NEW_PUZZLE],
                                                kArtNewPuzzleButton + uint32_t(g_language), -2, 10);
    g_clockFont = CreateFontA(35, 0, 0, 0, 600, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                              CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, kCommonFontFace);
    g_clockX = TitleClockX(g_screenWidth);
    return 0;
}

static void Title_OnDestroy() {
    for (int i = 0; i < kTitleButtonCount; ++i) ImageObject_Destroy(&g_buttonImages[i]);
    ImageObject_Destroy(&g_openImage);
    ImageObject_Destroy(&g_saveImage);
    ImageObject_Destroy(&g_tile);
    if (g_clockFont) DeleteObject(g_clockFont);
    g_clockFont = nullptr;
    g_titleWindow = nullptr;
}

// The tiles keep to one grid from the bar's left edge, so a wood grain that is not uniform across the
// tile shows no seam where only part of the bar is redrawn.
static void Title_Paint(HDC dc, const RECT& update) {
    const uint8_t* tile = ImageObject_Dib(&g_tile);
    if (tile && update.top < 79 && update.right > update.left) {
        int32_t tileWidth = DibHeaderOf(tile)->biWidth, tileHeight = DibHeaderOf(tile)->biHeight;
        int32_t first = tileWidth > 0 ? update.left - update.left % tileWidth : update.right;
        for (int32_t x = first; x < update.right && tileWidth > 0; x += tileWidth)
            DrawPackedDib(dc, x, update.top, tileWidth, tileHeight - update.top, tile, 0, update.top);
    }
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, kCommonTextColor);
    HGDIOBJ oldFont = SelectObject(dc, g_clockFont);
    TextOutA(dc, g_clockX, 12, g_clockText, int(std::strlen(g_clockText)));
    SelectObject(dc, oldFont);
}

static void Title_OnPaint(HWND window) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    Title_Paint(dc, paint.rcPaint);
    EndPaint(window, &paint);
}

static void Title_OnNotify(WPARAM event, HWND from) {
    if (event != NOTIFY_CLICKED) return;
    if (from == g_buttons[BUTTON_EXIT]) {
        if (g_mainWindow) SendMessageA(g_mainWindow, WM_CLOSE, 0, 0);
    } else if (from == g_buttons[BUTTON_MINIMISE]) {
        if (g_mainWindow) CloseWindow(g_mainWindow);
    } else if (from == g_buttons[BUTTON_ABOUT]) {
        LaunchAbout();
    } else if (from == g_buttons[BUTTON_NEW_PUZZLE]) {
        if (g_openNewPuzzleScreen) g_openNewPuzzleScreen();
    }
}

static LRESULT CALLBACK Title_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE: return Title_OnCreate(window);
    case WM_DESTROY: Title_OnDestroy(); return 0;
    case WM_PAINT: Title_OnPaint(window); return 0;
    case WM_QUERYNEWPALETTE: InvalidateRect(window, nullptr, FALSE); return 0;
    case PM_NOTIFY: Title_OnNotify(wParam, reinterpret_cast<HWND>(lParam)); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

void RegisterTitleWindowClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = Title_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kTitleWindowClass;
    RegisterClassA(&windowClass);
}

HWND CreateTitleWindow(HWND parent) {
    return CreateWindowExA(0, kTitleWindowClass, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN, 0, 0,
                           g_screenWidth, kTitleHeight, parent, nullptr, GetModuleHandleA(nullptr), nullptr);
}

void ShowClock(uint32_t, uint32_t hours, uint32_t minutes, uint32_t seconds) {
    FormatClock(hours, minutes, seconds, g_clockText, sizeof g_clockText);
    if (!g_titleWindow) return;
    // 140 pixels hold the clock in most faces; a wider rendering (or 100 hours) widens the redraw with it.
    int32_t width = 140;
    HDC dc = GetDC(g_titleWindow);
    HGDIOBJ oldFont = SelectObject(dc, g_clockFont);
    SIZE extent;
    if (GetTextExtentPoint32A(dc, g_clockText, int(std::strlen(g_clockText)), &extent) && extent.cx + 4 > width)
        width = extent.cx + 4;
    SelectObject(dc, oldFont);
    ReleaseDC(g_titleWindow, dc);
    RECT clock = {g_clockX, 10, g_clockX + width, 60};
    InvalidateRect(g_titleWindow, &clock, FALSE);
}

void ReloadTitleButtons() {
    if (!g_titleWindow) return;
    ImageObject_LoadFromPack(&g_buttonImages[BUTTON_NEW_PUZZLE], kArtNewPuzzleButton + uint32_t(g_language));
    SendMessageA(g_buttons[BUTTON_NEW_PUZZLE], PM_SETIMAGE, 0,
                 reinterpret_cast<LPARAM>(ImageObject_Dib(&g_buttonImages[BUTTON_NEW_PUZZLE])));
    for (ImageObject* image : {&g_openImage, &g_saveImage})
        if (!image->dc) ImageObject_Init(image, false);
    ImageObject_LoadFromPack(&g_openImage, kArtOpenPuzzleButton + uint32_t(g_language));
    ImageObject_LoadFromPack(&g_saveImage, kArtSavePuzzleButton + uint32_t(g_language));
}
