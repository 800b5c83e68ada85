// The main background window.
#include "app/main_window_win32.h"

#include <new>
#include <vector>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/main_frame.h"
#include "app/preferences.h"
#include "app/preferences_win32.h"
#include "app/resume_win32.h"
#include "app/title_window_win32.h"
#include "controls/control_messages.h"
#include "extras/bars_win32.h"
#include "extras/honour_win32.h"
#include "extras/info_win32.h"
#include "extras/music_win32.h"
#include "extras/music_window_win32.h"
#include "puzzle/board_window_win32.h"
#include "puzzle/compose.h"
#include "puzzle/gather.h"
#include "puzzle/history.h"
#include "puzzle/join.h"
#include "setup/size_chooser_win32.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"
#include "puzzle/model.h"
#include "setup/piece_box_win32.h"
#include "setup/saved_puzzle_win32.h"

HWND g_sideButtons[kSideButtonCount];
HWND g_infoButton;
int32_t g_tableBackground;

static ImageObject* g_sideButtonImages;  // six, made on creation
static ImageObject g_infoImage;
static ImageObject g_tableCloth;
static HBRUSH g_frameWood[2];  // by FrameGrain: the frame's two tiles as brushes, tiled from the window's origin

POINT SideButtonPosition(int i) {
    POINT at = {g_screenWidth - 25, g_screenHeight / 2 - 112 + 46 * i};
    return at;
}

// A brush that repeats the pack's tile; plain walnut when the pack lacks it, so the frame is never black.
static HBRUSH MakeWoodBrush(uint32_t id) {
    ImageObject tile;
    ImageObject_Init(&tile, false);
    HBRUSH brush = nullptr;
    const uint8_t* dib = ImageObject_LoadFromPack(&tile, id) ? ImageObject_Dib(&tile) : nullptr;
    if (dib) {
        // A packed DIB's header is followed by its colour table, as BITMAPINFO wants; the pixels sit apart.
        const BITMAPINFO* info = reinterpret_cast<const BITMAPINFO*>(dib);
        HDC screen = GetDC(nullptr);
        HBITMAP bitmap = CreateDIBitmap(screen, &info->bmiHeader, CBM_INIT, DibPixels(dib), info, DIB_RGB_COLORS);
        ReleaseDC(nullptr, screen);
        if (bitmap) {
            brush = CreatePatternBrush(bitmap);  // keeps its own copy of the pixels
            DeleteObject(bitmap);
        }
    }
    ImageObject_Destroy(&tile);
    return brush ? brush : CreateSolidBrush(kFrameFallbackColor);
}

void ChangeTableCloth(int32_t index) {
    if (index < 0 || index >= kClothCount) return;
    ImageObject cloth;
    ImageObject_Init(&cloth, false);
    if (!ImageObject_LoadFromPack(&cloth, kArtCloth + uint32_t(index))) return;
    // Both views copy the cloth they are given, so the old picture can go once they hold the new one.
    SetTableTexture(&g_puzzle, ImageObject_Dib(&cloth));
    SetChooserTableTexture(ImageObject_Dib(&cloth));
    ImageObject_Destroy(&g_tableCloth);
    g_tableCloth = cloth;
    g_tableBackground = index;
    RememberCloth(index);
}

static LRESULT Main_OnCreate(HWND window) {
    HINSTANCE instance = GetModuleHandleA(nullptr);
    g_mainWindow = window;
    g_tableBackground = g_rememberedCloth;
    g_frameWood[kGrainAcross] = MakeWoodBrush(kArtMainFrameAcross);
    g_frameWood[kGrainUpright] = MakeWoodBrush(kArtMainFrameUpright);
    ImageObject_Init(&g_tableCloth, false);
    ImageObject_LoadFromPack(&g_tableCloth, kArtCloth + uint32_t(g_tableBackground));

    CreateTitleWindow(window);
    CreateBars(window);
    // The cloth first: the table composes its picture as soon as it gets its size.
    SetTableTexture(&g_puzzle, ImageObject_Dib(&g_tableCloth));
    SetChooserTableTexture(ImageObject_Dib(&g_tableCloth));
    CreateTable(window);
    // Shown complete by the tools: a finished game is no game to resume.
    g_barActions.assemble = [] {
        ShowComplete(&g_puzzle);
        WriteResumeNow();
    };
    g_barActions.hint = [] {
        BeginGesture(&g_history, &g_puzzle);  // the placement can be undone; the hint stays used
        const bool more = GiveHint(&g_puzzle);
        EndGesture(&g_history, &g_puzzle);
        return uint8_t(more ? 1 : 0);
    };
    g_barActions.gatherEdges = GatherEdgesIntoABox;
    g_barActions.openHonourRoll = [] { OpenHonourWindow(); };
    g_barActions.openMusic = [] { OpenMusicWindow(); };

    g_sideButtonImages = new (std::nothrow) ImageObject[kSideButtonCount];
    if (!g_sideButtonImages) return -1;
    for (int i = 0; i < kSideButtonCount; ++i) {
        ImageObject_Init(&g_sideButtonImages[i], false);
        ImageObject_LoadFromPack(&g_sideButtonImages[i], kArtTrayEmptyButton + uint32_t(i));
        POINT at = SideButtonPosition(i);
        g_sideButtons[i] = CreateWindowExA(0, "CQMBOXSCOMMAND", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, at.x,
                                           at.y, 50, 50, window,
                                           reinterpret_cast<HMENU>(INT_PTR(kFirstSideButtonId + i)), instance, nullptr);
        SendMessageA(g_sideButtons[i], PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(&g_sideButtonImages[i])));
    }
    CreatePieceBoxes(window);

    ImageObject_Init(&g_infoImage, false);
    ImageObject_LoadFromPack(&g_infoImage, kArtInfoButton);
    int32_t infoWidth = 0, infoHeight = 0;
    ImageObject_GetSize(&g_infoImage, &infoWidth, &infoHeight);
    g_infoButton = CreateWindowExA(0, "CQMCOMMAND", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                                   g_screenWidth - infoWidth, 80, 50, 50, window, nullptr, instance, nullptr);
    SendMessageA(g_infoButton, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(&g_infoImage)));
    g_puzzleChanged = NoteGameChanged;
    g_puzzleLoaded = WriteResumeNow;  // an opened game is the one to come back to
    StartResumeKeeping(window);
    return 0;
}

// One gesture for undo; the box that takes the pieces comes into view.
void GatherEdgesIntoABox() {
    BeginGesture(&g_history, &g_puzzle);
    const int tray = GatherEdgePieces(&g_puzzle);
    EndGesture(&g_history, &g_puzzle);
    if (tray >= 0 && tray < kPieceBoxCount && g_pieceBoxes[tray] && !IsWindowVisible(g_pieceBoxes[tray]))
        TogglePieceBox(tray);
}

// The game in play is kept before the window goes: nothing of it is lost by quitting.
static void Main_OnClose(HWND window) {
    WriteResumeNow();
    DestroyWindow(window);
}

static void Main_OnDestroy(HWND window) {
    KillTimer(window, kResumeTimerId);
    StopMusic();
    g_puzzleChanged = nullptr;
    g_puzzleLoaded = nullptr;
    ImageObject_Destroy(&g_infoImage);
    if (g_sideButtonImages) {
        for (int i = 0; i < kSideButtonCount; ++i) ImageObject_Destroy(&g_sideButtonImages[i]);
        delete[] g_sideButtonImages;
        g_sideButtonImages = nullptr;
    }
    ImageObject_Destroy(&g_tableCloth);
    for (HBRUSH& brush : g_frameWood) {
        if (brush) DeleteObject(brush);
        brush = nullptr;
    }
    g_mainWindow = nullptr;
    PostQuitMessage(0);
}

// A minimised game costs no time: the play clock does not count while the window is minimised.
static void Main_OnSize(WPARAM kind) {
    if (kind == SIZE_MINIMIZED) {
        g_puzzle.paused = 1;
        WriteResumeNow();  // a minimised game may never come back: Windows may end the session
    }
    else if (kind == SIZE_MAXIMIZED) {
        g_puzzle.paused = 0;
    }
}

static void Main_OnNotify(WPARAM event, HWND from) {
    if (event != NOTIFY_CLICKED || !from) return;
    if (from == g_infoButton) {
        PauseMusic();  // the gallery resumes it when it closes
        OpenGallery(g_mainWindow);
        return;
    }
    int id = GetDlgCtrlID(from);
    if (id >= kFirstSideButtonId && id < kFirstSideButtonId + kSideButtonCount) TogglePieceBox(id - kFirstSideButtonId);
}

// The size a child stands at on this window; nothing when it was never made.
static void ChildSize(HWND child, int32_t* width, int32_t* height) {
    RECT r = {0, 0, 0, 0};
    if (child) GetWindowRect(child, &r);
    *width = r.right - r.left;
    *height = r.bottom - r.top;
}

// The walnut frame with its brass rail round the table, over the parts of the window that no child
// covers, within the update rectangle. One tile grid from the window's origin: a partial repaint
// meets the wood around it without a seam.
static void Main_Paint(HDC dc, const RECT& update) {
    FrameChildren children = {};
    ChildSize(g_sideButtons[0], &children.sideButtonWidth, &children.sideButtonHeight);
    ChildSize(g_infoButton, &children.infoWidth, &children.infoHeight);
    std::vector<FrameArea> areas = MainFrameAreas(g_screenWidth, g_screenHeight, children);
    int saved = SaveDC(dc);
    SetBrushOrgEx(dc, 0, 0, nullptr);
    HRGN frame = CreateRectRgn(0, 0, 0, 0);
    FrameBox bounds = {update.left, update.top, update.right, update.bottom};
    for (const FrameArea& area : areas) {
        FrameBox part = IntersectRects(area.rect, bounds);
        if (part.right <= part.left) continue;
        RECT r = {part.left, part.top, part.right, part.bottom};
        FillRect(dc, &r, g_frameWood[area.grain]);
        HRGN piece = CreateRectRgnIndirect(&r);
        CombineRgn(frame, frame, piece, RGN_OR);
        DeleteObject(piece);
    }
    // The rail is drawn as whole rings; the frame's own outline keeps it off the children.
    ExtSelectClipRgn(dc, frame, RGN_AND);
    for (int d = 1; d <= kRailRings; ++d) {
        FrameBox ring = RailRing(g_screenWidth, g_screenHeight, d);
        HBRUSH brass = CreateSolidBrush(kRailColors[d - 1]);
        RECT sides[4] = {{ring.left, ring.top, ring.right, ring.top + 1},
                         {ring.left, ring.bottom - 1, ring.right, ring.bottom},
                         {ring.left, ring.top, ring.left + 1, ring.bottom},
                         {ring.right - 1, ring.top, ring.right, ring.bottom}};
        for (const RECT& side : sides) FillRect(dc, &side, brass);
        DeleteObject(brass);
    }
    RestoreDC(dc, saved);
    DeleteObject(frame);
}

static void Main_OnPaint(HWND window) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    if (dc) Main_Paint(dc, paint.rcPaint);
    EndPaint(window, &paint);
}

static LRESULT CALLBACK Main_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE: return Main_OnCreate(window);
    case WM_CLOSE: Main_OnClose(window); return 0;
    case WM_DESTROY: Main_OnDestroy(window); return 0;
    case WM_ENDSESSION:
        if (wParam) WriteResumeNow();
        return 0;
    case WM_TIMER:
        if (wParam == kResumeTimerId) OnResumeTimer();
        return 0;
    case WM_SIZE: Main_OnSize(wParam); return 0;
    case WM_PAINT: Main_OnPaint(window); return 0;
    // Every pixel that shows is the frame's or a child's: erasing to black first would only flash.
    case WM_ERASEBKGND: return 1;
    case WM_PRINTCLIENT: {
        RECT client;
        GetClientRect(window, &client);
        Main_Paint(reinterpret_cast<HDC>(wParam), client);
        return 0;
    }
    case WM_QUERYNEWPALETTE: InvalidateRect(window, nullptr, FALSE); return 0;
    case WM_PALETTECHANGED:
        if (reinterpret_cast<HWND>(wParam) != window) InvalidateRect(window, nullptr, FALSE);
        return 0;
    case PM_NOTIFY: Main_OnNotify(wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case MM_MCINOTIFY: OnMusicNotify(wParam, lParam); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

void RegisterMainWindowClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = Main_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = kMainWindowClass;
    RegisterClassA(&windowClass);
}

HWND CreateMainWindow() {
    return CreateWindowExA(0, kMainWindowClass, "Tavirel",
                           WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_MAXIMIZE | WS_DLGFRAME, 0, 0, 100, 100,
                           nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
}
