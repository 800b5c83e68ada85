// The title bar window with the play clock and its six buttons.
#include "app/title_window_win32.h"

#include <cstring>
#include <initializer_list>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/clock_text.h"
#include "app/launchers_win32.h"
#include "app/message_window_win32.h"
#include "app/theme.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"
#include "puzzle/board_window_win32.h"
#include "puzzle/model.h"

void (*g_openNewPuzzleScreen)() = nullptr;
void (*g_openSavedPuzzles)(uint8_t mode) = nullptr;

constexpr int kStrLeaveChangedGame = 80;  // "This game has been changed. Do you want to leave?"

enum TitleButton {
    BUTTON_MINIMISE,
    BUTTON_EXIT,
    BUTTON_ABOUT,
    BUTTON_NEW_PUZZLE,
    BUTTON_OPEN,
    BUTTON_SAVE,
    kTitleButtonCount
};

// The title bar lives for the whole run, so its state is plain globals.
static HWND g_titleWindow;
static ImageObject g_tile;
static ImageObject g_buttonImages[kTitleButtonCount];
static HWND g_buttons[kTitleButtonCount];
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
    g_buttons[BUTTON_OPEN] = CreateButton(window, &g_buttonImages[BUTTON_OPEN],
                                          kArtOpenPuzzleButton + uint32_t(g_language), kTitleOpenX, kTitleFileButtonY);
    g_buttons[BUTTON_SAVE] = CreateButton(window, &g_buttonImages[BUTTON_SAVE],
                                          kArtSavePuzzleButton + uint32_t(g_language), kTitleSaveX, kTitleFileButtonY);
    // Nothing to save until the puzzle changes: every drop enables the button again.
    g_saveButton = g_buttons[BUTTON_SAVE];
    if (g_saveButton) SendMessageA(g_saveButton, PM_SETDISFRAME, 0, 1);  // its strip starts with a dimmed frame
    if (g_saveButton) SendMessageA(g_saveButton, PM_SETENABLE, 0, IsPuzzleChangedSinceSave(&g_puzzle) ? 1 : 0);
    g_clockFont = CreateFontA(35, 0, 0, 0, 600, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                              CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, kCommonFontFace);
    g_clockX = TitleClockX(g_screenWidth);
    return 0;
}

static void Title_OnDestroy() {
    for (int i = 0; i < kTitleButtonCount; ++i) ImageObject_Destroy(&g_buttonImages[i]);
    if (g_saveButton == g_buttons[BUTTON_SAVE]) g_saveButton = nullptr;
    for (HWND& button : g_buttons) button = nullptr;
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

// A changed game is only left when the player says so; the answer arrives after the question has gone.
static void AnswerLeaveForNewPuzzle(uint8_t answer) {
    if (answer && g_openNewPuzzleScreen) g_openNewPuzzleScreen();
}

static void AnswerLeaveForOpen(uint8_t answer) {
    if (answer && g_openSavedPuzzles) g_openSavedPuzzles(1);
}

static void LeaveGameThen(void (*next)(uint8_t)) {
    if (IsPuzzleChangedSinceSave(&g_puzzle))
        ShowMessage(kStrLeaveChangedGame, g_mainWindow, next, false);
    else
        next(1);
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
        LeaveGameThen(AnswerLeaveForNewPuzzle);
    } else if (from == g_buttons[BUTTON_OPEN]) {
        // The game in play stays on the table until a saved one has really been loaded in its place.
        LeaveGameThen(AnswerLeaveForOpen);
    } else if (from == g_buttons[BUTTON_SAVE]) {
        if (g_openSavedPuzzles) g_openSavedPuzzles(0);
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

HWND TitleNewPuzzleButton() { return g_buttons[BUTTON_NEW_PUZZLE]; }
HWND TitleOpenButton() { return g_buttons[BUTTON_OPEN]; }
HWND TitleSaveButton() { return g_buttons[BUTTON_SAVE]; }

void PressTitleButton(HWND button) {
    if (!button || !SendMessageA(button, PM_GETENABLE, 0, 0)) return;
    Title_OnNotify(NOTIFY_CLICKED, button);
}

void ReloadTitleButtons() {
    if (!g_titleWindow) return;
    const struct {
        TitleButton button;
        uint32_t base;
    } words[] = {{BUTTON_NEW_PUZZLE, kArtNewPuzzleButton},
                 {BUTTON_OPEN, kArtOpenPuzzleButton},
                 {BUTTON_SAVE, kArtSavePuzzleButton}};
    for (const auto& w : words) {
        ImageObject_LoadFromPack(&g_buttonImages[w.button], w.base + uint32_t(g_language));
        SendMessageA(g_buttons[w.button], PM_SETIMAGE, 0,
                     reinterpret_cast<LPARAM>(ImageObject_Dib(&g_buttonImages[w.button])));
    }
}
