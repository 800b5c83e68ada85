// The clip player.
#include "extras/video_win32.h"

#include <digitalv.h>
#include <mmsystem.h>

#include <cstdio>
#include <cstring>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "controls/control_messages.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"

VideoHooks g_videoHooks;

enum FramedButton { FRAMED_CLOSE, FRAMED_REPLAY, FRAMED_WEB, kFramedButtonCount };

static int g_videoKind;
static MCIDEVICEID g_device;
static ImageObject g_frame;
static POINT g_frameAt;  // (ox, oy): the frame centred on the screen
static ImageObject g_buttonImages[kFramedButtonCount];
static HWND g_framedButtons[kFramedButtonCount];
static bool g_musicPaused;
static bool g_clipPlaying;  // the window really came up: its destruction leads the flow on

UINT VideoDevice() { return g_device; }

void BuildClipPath(int kind, char* out, int size) {
    std::snprintf(out, size_t(size), "%sVideo\\%d.avi", g_appFolder, kind);
}

static void CreateFramedButtons(HWND window) {
    static const uint32_t art[kFramedButtonCount] = {kArtVideoCloseButton, kArtVideoReplayButton, kArtVideoWebButton};
    const POINT at[kFramedButtonCount] = {{g_frameAt.x, g_frameAt.y + 416},
                                          {g_frameAt.x + 296, g_frameAt.y + 378},
                                          {g_frameAt.x + 196, g_frameAt.y + 423}};
    for (int i = 0; i < kFramedButtonCount; ++i) {
        ImageObject_Init(&g_buttonImages[i], false);
        ImageObject_LoadFromPack(&g_buttonImages[i], art[i]);
        g_framedButtons[i] = CreateWindowExA(0, "CQMCOMMAND", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, at[i].x,
                                             at[i].y, 50, 50, window, nullptr, GetModuleHandleA(nullptr), nullptr);
        SendMessageA(g_framedButtons[i], PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(&g_buttonImages[i])));
    }
}

static void CloseClip() {
    if (!g_device) return;
    MCI_GENERIC_PARMS none = {};
    mciSendCommandA(g_device, MCI_CLOSE, MCI_WAIT, reinterpret_cast<DWORD_PTR>(&none));
    g_device = 0;
}

// Open, measure, centre at natural size, attach to our window and play with notification; any failure
// closes what was opened and refuses the window.
static bool StartClip(HWND window) {
    char path[MAX_PATH + 16];
    BuildClipPath(g_videoKind, path, sizeof path);
    MCI_OPEN_PARMSA open = {};
    open.lpstrElementName = path;
    if (mciSendCommandA(0, MCI_OPEN, MCI_OPEN_ELEMENT | MCI_WAIT, reinterpret_cast<DWORD_PTR>(&open)) != 0) return false;
    g_device = open.wDeviceID;

    MCI_DGV_RECT_PARMS where = {};
    bool ok = mciSendCommandA(g_device, MCI_WHERE, MCI_DGV_WHERE_SOURCE, reinterpret_cast<DWORD_PTR>(&where)) == 0;
    if (ok) {
        LONG w = where.rc.right - where.rc.left, h = where.rc.bottom - where.rc.top;
        MCI_DGV_RECT_PARMS put = {};
        put.rc.left = (g_screenWidth - w) / 2;
        put.rc.top = (g_screenHeight - h) / 2;
        put.rc.right = w;  // MCI rectangles carry the size in their second corner
        put.rc.bottom = h;
        ok = mciSendCommandA(g_device, MCI_PUT, MCI_DGV_PUT_DESTINATION | MCI_DGV_RECT,
                             reinterpret_cast<DWORD_PTR>(&put)) == 0;
    }
    if (ok) {
        MCI_DGV_WINDOW_PARMSA show = {};
        show.hWnd = window;
        ok = mciSendCommandA(g_device, MCI_WINDOW, MCI_DGV_WINDOW_HWND | MCI_ANIM_WINDOW_ENABLE_STRETCH | MCI_WAIT,
                             reinterpret_cast<DWORD_PTR>(&show)) == 0;
    }
    if (ok) {
        if (g_videoHooks.pauseMusic) {
            g_videoHooks.pauseMusic();
            g_musicPaused = true;
        }
        PlaySoundA(nullptr, nullptr, SND_ASYNC | SND_NODEFAULT | SND_MEMORY | SND_NOSTOP);
        MCI_PLAY_PARMS play = {};
        play.dwCallback = reinterpret_cast<DWORD_PTR>(window);
        ok = mciSendCommandA(g_device, MCI_PLAY, MCI_NOTIFY, reinterpret_cast<DWORD_PTR>(&play)) == 0;
    }
    if (!ok) CloseClip();
    return ok;
}

static DWORD ClipMode() {
    MCI_STATUS_PARMS status = {};
    status.dwItem = MCI_STATUS_MODE;
    if (!g_device || mciSendCommandA(g_device, MCI_STATUS, MCI_STATUS_ITEM, reinterpret_cast<DWORD_PTR>(&status)))
        return 0;
    return DWORD(status.dwReturn);
}

static void Video_OnReplay(HWND window) {
    if (ClipMode() != MCI_MODE_STOP) return;  // only a finished clip starts again
    MCI_SEEK_PARMS seek = {};  // drivers refuse a missing parameter block
    mciSendCommandA(g_device, MCI_SEEK, MCI_SEEK_TO_START | MCI_WAIT, reinterpret_cast<DWORD_PTR>(&seek));
    PlaySoundA(nullptr, nullptr, SND_ASYNC | SND_NODEFAULT | SND_MEMORY | SND_NOSTOP);
    MCI_PLAY_PARMS play = {};
    play.dwCallback = reinterpret_cast<DWORD_PTR>(window);
    mciSendCommandA(g_device, MCI_PLAY, MCI_NOTIFY, reinterpret_cast<DWORD_PTR>(&play));
}

static void Video_OnWeb(HWND window) {
    MCI_GENERIC_PARMS none = {};
    if (ClipMode() != MCI_MODE_STOP)
        mciSendCommandA(g_device, MCI_STOP, MCI_WAIT, reinterpret_cast<DWORD_PTR>(&none));
    InvalidateRect(window, nullptr, TRUE);
    if (g_videoHooks.askWebQuestion) g_videoHooks.askWebQuestion();
}

static LRESULT Video_OnCreate(HWND window) {
    if (g_videoKind == VIDEO_FRAMED) CreateFramedButtons(window);
    g_clipPlaying = StartClip(window);
    return g_clipPlaying ? 0 : -1;
}

static void Video_OnPaint(HWND window) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    const uint8_t* frame = g_videoKind == VIDEO_FRAMED ? ImageObject_Dib(&g_frame) : nullptr;
    if (frame)
        DrawPackedDib(dc, g_frameAt.x, g_frameAt.y, DibHeaderOf(frame)->biWidth, DibHeaderOf(frame)->biHeight, frame, 0,
                      0);
    EndPaint(window, &paint);
}

static void Video_OnClose(HWND window) {
    if (g_device) {
        CloseClip();
        if (g_musicPaused && g_videoHooks.resumeMusic) g_videoHooks.resumeMusic();
        g_musicPaused = false;
    }
    if (g_mainWindow) SetForegroundWindow(g_mainWindow);
    DestroyWindow(window);
}

static void FinishKind(int kind) {
    if (kind == VIDEO_COMPLETION && g_videoHooks.completionFinished) g_videoHooks.completionFinished();
    if (kind == VIDEO_OPENING && g_videoHooks.openingFinished) g_videoHooks.openingFinished();
}

static void Video_OnDestroy() {
    for (int i = 0; i < kFramedButtonCount; ++i) {
        if (g_videoKind == VIDEO_FRAMED) ImageObject_Destroy(&g_buttonImages[i]);
        g_framedButtons[i] = nullptr;
    }
    if (g_videoKind == VIDEO_FRAMED) ImageObject_Destroy(&g_frame);
    if (!g_clipPlaying) return;  // a refused creation: OpenVideo carries the flow on
    g_clipPlaying = false;
    if (g_mainWindow) EnableWindow(g_mainWindow, TRUE);
    FinishKind(g_videoKind);
}

// Clicks, keys and the clip's end close the bare clips; the framed clip stays until closed.
static void Video_OnEndOrInput(HWND window) {
    if (g_videoKind != VIDEO_FRAMED) PostMessageA(window, WM_CLOSE, 0, 0);
}

static LRESULT CALLBACK Video_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE: return Video_OnCreate(window);
    case WM_PAINT: Video_OnPaint(window); return 0;
    case WM_QUERYNEWPALETTE:
    case WM_PALETTECHANGED:
        if (message == WM_PALETTECHANGED && reinterpret_cast<HWND>(wParam) == window) return 0;
        InvalidateRect(window, nullptr, FALSE);
        if (g_device) {
            MCI_GENERIC_PARMS none = {};
            mciSendCommandA(g_device, MCI_REALIZE, MCI_DGV_REALIZE_NORM | MCI_WAIT, reinterpret_cast<DWORD_PTR>(&none));
        }
        return 0;
    case MM_MCINOTIFY:
    case WM_LBUTTONUP:
    case WM_CHAR: Video_OnEndOrInput(window); return 0;
    case PM_NOTIFY: {
        HWND from = reinterpret_cast<HWND>(lParam);
        if (wParam != NOTIFY_CLICKED) return 0;
        if (from == g_framedButtons[FRAMED_CLOSE])
            PostMessageA(window, WM_CLOSE, 0, 0);
        else if (from == g_framedButtons[FRAMED_REPLAY])
            Video_OnReplay(window);
        else if (from == g_framedButtons[FRAMED_WEB])
            Video_OnWeb(window);
        return 0;
    }
    case WM_CLOSE: Video_OnClose(window); return 0;
    case WM_DESTROY: Video_OnDestroy(); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

void RegisterVideoClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = Video_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = kVideoClass;
    RegisterClassA(&windowClass);
}

HWND OpenVideo(int kind) {
    g_videoKind = kind;
    g_musicPaused = false;
    if (kind == VIDEO_FRAMED) {
        ImageObject_Init(&g_frame, false);
        ImageObject_LoadFromPack(&g_frame, kArtVideoFrame);
        int32_t w = 0, h = 0;
        ImageObject_GetSize(&g_frame, &w, &h);
        g_frameAt.x = (g_screenWidth - w) / 2;
        g_frameAt.y = (g_screenHeight - h) / 2;
    }
    HWND window = CreateWindowExA(0, kVideoClass, "", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN | WS_MAXIMIZE | WS_DLGFRAME,
                                  0, 0, 100, 100, g_mainWindow, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (!window) {
        // Creation refused means the clip could not play; the flows it leads to go on without it.
        if (kind == VIDEO_FRAMED) {
            for (int i = 0; i < kFramedButtonCount; ++i) ImageObject_Destroy(&g_buttonImages[i]);
            ImageObject_Destroy(&g_frame);
        }
        FinishKind(kind);
        return nullptr;
    }
    if (g_mainWindow) EnableWindow(g_mainWindow, FALSE);
    return window;
}
