// The music window: choosing a track, the two volume sliders that follow the mixer, stop and close.
#include "extras/music_window_win32.h"

#include <mmsystem.h>

#include <new>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/language_chooser_win32.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "controls/window_drag_win32.h"
#include "extras/mixer_rules.h"
#include "extras/mixer_win32.h"
#include "extras/music_win32.h"
#include "gfx/dib.h"
#include "gfx/frame_sprite_win32.h"
#include "gfx/image_object_win32.h"
#include "setup/piece_box_win32.h"

namespace {

constexpr DWORD kMusicStyle = WS_POPUP | WS_VISIBLE | WS_DLGFRAME | WS_CLIPCHILDREN;
constexpr UINT kQuietHide = SWP_HIDEWINDOW | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
constexpr POINT kIndicatorAt[3] = {{35, 51}, {155, 53}, {320, 60}};
constexpr int32_t kSliderX[2] = {kMasterSliderX, kWaveSliderX};
constexpr DWORD kVolumeLines[3] = {kSpeakersLine, kWaveOutLine, kCompactDiscLine};

HWND g_musicWindow;
// Some mixers (Wine's among them) tell no one of changes made through another handle: the window also
// looks for itself now and then, exactly as a notice would make it.
constexpr UINT_PTR kFollowMixerTimer = 1;
constexpr UINT kFollowMixerPeriodMs = 250;

struct MusicState {
    MusicWindowParts parts;
    ImageObject background;       // the panel with its title: what the window paints
    ImageObject thumb, closeImage, stopImage;
    ImageObject trackImages[kMusicTrackCount];
    uint8_t* sliderBackgrounds[2];  // the panel under each slider, cut out for it
    FrameSprite indicators[3];
    int32_t indicatorFrames[3];
    WindowDrag drag;  // the window moves with the pointer held on its background
};

MusicState* StateOf(HWND window) { return reinterpret_cast<MusicState*>(GetWindowLongPtrA(window, GWLP_USERDATA)); }

LPARAM DibParam(const ImageObject* image) { return reinterpret_cast<LPARAM>(ImageObject_Dib(image)); }
LPARAM PackPoint(int32_t x, int32_t y) { return LPARAM(uint32_t(uint16_t(int16_t(x))) | (uint32_t(uint16_t(int16_t(y))) << 16)); }

void LoadArt(ImageObject* image, uint32_t id) {
    ImageObject_Init(image, false);
    ImageObject_LoadFromPack(image, id);
}

HWND MakeChild(HWND parent, const char* className, int32_t x, int32_t y, int32_t width, int32_t height) {
    return CreateWindowExA(0, className, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, x, y, width, height, parent,
                           nullptr, GetModuleHandleA(nullptr), nullptr);
}

// The panel with the title in the player's language laid on it.
void ComposeBackground(MusicState* s) {
    LoadArt(&s->background, kArtMusicPanel);
    ImageObject title;
    LoadArt(&title, kArtMusicTitle + uint32_t(g_language));
    int32_t w = 0, h = 0;
    ImageObject_GetSize(&title, &w, &h);
    uint8_t* panel = const_cast<uint8_t*>(ImageObject_Dib(&s->background));
    if (panel && ImageObject_Dib(&title))
        SoftBlit(panel, kMusicTitleAt.x, kMusicTitleAt.y, w, h, ImageObject_Dib(&title), 0, 0, SRCCOPY);
    ImageObject_Destroy(&title);
}

void ShowIndicator(MusicState* s, int k, int32_t frame) {
    s->indicatorFrames[k] = frame;
    FrameSprite_DrawWithRop(&s->indicators[k], frame, kIndicatorAt[k].x, kIndicatorAt[k].y, true, false, false,
                            SRCCOPY);
}

// The sliders' messages, in the order the window has always sent them: grid, line, pictures, range,
// value, look; then the mixer's reading.
HWND MakeVolumeSlider(HWND window, MusicState* s, int k) {
    int32_t thumbW = 0, thumbH = 0;
    ImageObject_GetSize(&s->thumb, &thumbW, &thumbH);
    const int32_t lineLength = kSliderBottomY - kSliderTopY;
    const int32_t width = thumbW, height = lineLength + thumbH;
    const uint8_t* panel = ImageObject_Dib(&s->background);
    if (panel && width > 0) {
        s->sliderBackgrounds[k] = AllocPackedDib(width, height, DibHeaderOf(panel)->biBitCount, 0);
        if (s->sliderBackgrounds[k]) {
            CopyPalette(panel, s->sliderBackgrounds[k]);
            SoftBlit(s->sliderBackgrounds[k], 0, 0, width, height, panel, kSliderX[k], kSliderTopY, SRCCOPY);
        }
    }
    HWND slider = MakeChild(window, "CQMSLIDE", kSliderX[k], kSliderTopY, width > 0 ? width : 1, height);
    if (!slider) return nullptr;
    SendMessageA(slider, PM_SLD_SETTHUMBROWS, 0, 1);
    SendMessageA(slider, PM_SLD_SETTHUMBCOLUMNS, 0, 1);
    SendMessageA(slider, PM_SLD_SETLINESTART, 0, PackPoint(0, lineLength));  // the bottom: no volume
    SendMessageA(slider, PM_SLD_SETLINEEND, 0, PackPoint(0, 0));
    SendMessageA(slider, PM_SLD_SETTHUMB, 0, DibParam(&s->thumb));
    SendMessageA(slider, PM_SLD_SETBACKGROUND, 0, reinterpret_cast<LPARAM>(s->sliderBackgrounds[k]));
    SendMessageA(slider, PM_SLD_SETMAXIMUM, 0, kVolumeSliderTop);
    SendMessageA(slider, PM_SLD_SETVALUE, 0, 50);
    SendMessageA(slider, PM_SLD_SETTHUMBFRAME, 0, 0);
    uint32_t percent = 0;
    if (ReadMixerPercent(s->parts.volumeControls[k], &percent))
        SendMessageA(slider, PM_SLD_SETVALUE, 0, SliderValueOfPercent(percent));
    return slider;
}

void SelectTrackLook(MusicState* s, int32_t track, bool selected) {
    if (track < 1 || track > kMusicTrackCount) return;
    HWND button = s->parts.trackButtons[track - 1];
    if (!button) return;
    SendMessageA(button, PM_ANIM_SETRUNNING, 0, 0);
    SendMessageA(button, PM_ANIM_SETUSERVALUE, 0, 0);
    SendMessageA(button, PM_ANIM_SETFRAME, 0, selected ? kTrackSelectedFrame : kButtonRestFrame);
}

// The track that sounds now, if any: only it counts as chosen, so a stopped track can be chosen again.
int32_t PlayingTrack() { return g_musicDevice ? g_musicTrack : 0; }

LRESULT Music_OnCreate(HWND window) {
    MusicState* s = new (std::nothrow) MusicState();
    if (!s) return -1;
    SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    g_musicWindow = window;
    OpenMixer(window);
    for (int k = 0; k < 3; ++k) s->parts.volumeControls[k] = VolumeControlOf(kVolumeLines[k]);

    ComposeBackground(s);
    LoadArt(&s->thumb, kArtVolumeThumb);
    for (int k = 0; k < 2; ++k) s->parts.sliders[k] = MakeVolumeSlider(window, s, k);

    LoadArt(&s->closeImage, kArtDoneButton);
    LoadArt(&s->stopImage, kArtStopButton);
    s->parts.closeButton = MakeChild(window, "CQMCOMMAND", 0, 256, 50, 50);
    s->parts.stopButton = MakeChild(window, "CQMCOMMAND", 180, 256, 50, 50);
    if (s->parts.closeButton) SendMessageA(s->parts.closeButton, PM_SETIMAGE, 0, DibParam(&s->closeImage));
    if (s->parts.stopButton) SendMessageA(s->parts.stopButton, PM_SETIMAGE, 0, DibParam(&s->stopImage));

    for (int t = 0; t < kMusicTrackCount; ++t) {
        LoadArt(&s->trackImages[t], kArtTrackButton + uint32_t(t));
        HWND button = MakeChild(window, "CQMANIM", kTrackButtonAt[t].x, kTrackButtonAt[t].y, 50, 50);
        s->parts.trackButtons[t] = button;
        if (!button) continue;
        SendMessageA(button, PM_ANIM_SETROWS, 0, 1);
        SendMessageA(button, PM_ANIM_SETCOLUMNS, 0, kTrackSelectedFrame + 1);
        SendMessageA(button, PM_ANIM_SETFRAME, 0, kButtonRestFrame);
        SendMessageA(button, PM_SETIMAGE, 0, DibParam(&s->trackImages[t]));
    }
    SelectTrackLook(s, PlayingTrack(), true);

    const uint32_t indicatorArt[3] = {kArtMasterIndicator, kArtWaveIndicator, kArtDiscIndicator};
    for (int k = 0; k < 3; ++k) {
        FrameSprite_Init(&s->indicators[k], window);
        FrameSprite_LoadSource(&s->indicators[k], indicatorArt[k], false);
        FrameSprite_SetGrid(&s->indicators[k], 2, 1);
        FrameSprite_SetTargetDib(&s->indicators[k], const_cast<uint8_t*>(ImageObject_Dib(&s->background)));
        ShowIndicator(s, k, 0);
    }
    s->parts.held = 0;
    SetTimer(window, kFollowMixerTimer, kFollowMixerPeriodMs, nullptr);
    return 0;
}

void Music_OnDestroy(HWND window, MusicState* s) {
    KillTimer(window, kFollowMixerTimer);
    for (FrameSprite& sprite : s->indicators) FrameSprite_Destroy(&sprite);
    for (ImageObject& image : s->trackImages) ImageObject_Destroy(&image);
    ImageObject_Destroy(&s->closeImage);
    ImageObject_Destroy(&s->stopImage);
    ImageObject_Destroy(&s->thumb);
    ImageObject_Destroy(&s->background);
    CloseMixer();
    // The children still hold the strips' pointers; they are destroyed after us, but never paint again.
    for (uint8_t* dib : s->sliderBackgrounds) FreePackedDib(dib);
    delete s;
    SetWindowLongPtrA(window, GWLP_USERDATA, 0);
    g_musicWindow = nullptr;
    if (g_mainWindow) EnableWindow(g_mainWindow, TRUE);
}

void Music_ChooseTrack(MusicState* s, int32_t track) {
    if (track == PlayingTrack()) return;
    SelectTrackLook(s, PlayingTrack(), false);
    // A track that could not start keeps the plain look and can be chosen again.
    if (StartMusicTrack(track)) SelectTrackLook(s, track, true);
}

int SliderIndex(const MusicState* s, HWND from) {
    for (int k = 0; k < 2; ++k)
        if (from && s->parts.sliders[k] == from) return k;
    return -1;
}

int TrackIndex(const MusicState* s, HWND from) {
    for (int t = 0; t < kMusicTrackCount; ++t)
        if (from && s->parts.trackButtons[t] == from) return t + 1;
    return 0;
}

void Music_OnSliderNotify(MusicState* s, int k, WPARAM event) {
    HWND slider = s->parts.sliders[k];
    switch (event) {
    case NOTIFY_PRESSED:
        s->parts.held = 1;
        ShowIndicator(s, k, 1);
        break;
    case NOTIFY_RELEASED:
        s->parts.held = 0;
        ShowIndicator(s, k, 0);
        break;
    case NOTIFY_CLICKED: {
        const int32_t value = int32_t(SendMessageA(slider, PM_SLD_GETVALUE, 0, 0));
        SendMessageA(slider, PM_SLD_SETTHUMBFRAME, 0, 0);
        WriteMixerPercent(s->parts.volumeControls[k], value);
        break;
    }
    default: break;
    }
}

void Music_OnNotify(HWND window, MusicState* s, WPARAM event, HWND from) {
    const int k = SliderIndex(s, from);
    if (k >= 0) return Music_OnSliderNotify(s, k, event);
    const int32_t track = TrackIndex(s, from);
    if (track) {
        // The playing track keeps its own look; the others glow under the pointer.
        if (track != PlayingTrack()) AnimatedButtonFeedback(from, event);
        if (event == NOTIFY_CLICKED) Music_ChooseTrack(s, track);
        return;
    }
    if (event != NOTIFY_CLICKED) return;
    if (from && from == s->parts.stopButton) {
        StopMusic();
        PostMessageA(window, WM_CLOSE, 0, 0);
    } else if (from && from == s->parts.closeButton) {
        PostMessageA(window, WM_CLOSE, 0, 0);
    }
}

// A volume changed elsewhere moves its slider, unless the player is holding one. Control ids may be 0
// (Wine numbers the speakers' fader 0), so the first line with the id takes the notice.
void Music_OnMixerChange(MusicState* s, DWORD controlId) {
    if (s->parts.held) return;
    for (int k = 0; k < 3; ++k) {
        if (s->parts.volumeControls[k] != controlId) continue;
        uint32_t percent = 0;
        if (!ReadMixerPercent(controlId, &percent)) return;
        const int32_t value = SliderValueOfPercent(percent);
        HWND slider = s->parts.sliders[k];
        if (!slider) return;  // the compact disc's slider is never made
        if (SendMessageA(slider, PM_SLD_GETVALUE, 0, 0) != value) {
            SendMessageA(slider, PM_SLD_SETVALUE, 0, value);
            SendMessageA(slider, PM_SLD_SETTHUMBFRAME, 0, 0);
        }
        return;
    }
}

void Music_OnPaint(HWND window, MusicState* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    if (dc) PaintRect(dc, &paint.rcPaint, ImageObject_Dib(&s->background));
    EndPaint(window, &paint);
}


LRESULT CALLBACK Music_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return Music_OnCreate(window);
    MusicState* s = StateOf(window);
    if (!s) return DefWindowProcA(window, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: Music_OnPaint(window, s); return 0;
    case WM_LBUTTONDOWN: WindowDrag_Begin(&s->drag, window, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_MOUSEMOVE: WindowDrag_Move(&s->drag, window, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONUP: WindowDrag_End(&s->drag, window); return 0;
    case WM_CAPTURECHANGED: WindowDrag_OnCaptureChanged(&s->drag, window, reinterpret_cast<HWND>(lParam)); return 0;
    case PM_NOTIFY: Music_OnNotify(window, s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    case MM_MIXM_CONTROL_CHANGE: Music_OnMixerChange(s, DWORD(lParam)); return 0;
    case WM_TIMER:
        if (wParam == kFollowMixerTimer)
            for (int k = 0; k < 2; ++k) Music_OnMixerChange(s, s->parts.volumeControls[k]);
        return 0;
    case WM_QUERYNEWPALETTE: InvalidateRect(window, nullptr, FALSE); return 0;
    case WM_PALETTECHANGED:
        if (reinterpret_cast<HWND>(wParam) != window) InvalidateRect(window, nullptr, FALSE);
        return 0;
    case WM_CLOSE:
        if (g_mainWindow) SetForegroundWindow(g_mainWindow);
        DestroyWindow(window);
        return 0;
    case WM_DESTROY: Music_OnDestroy(window, s); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

// The other screens of the table step aside while the music window is up.
void HideTableScreens() {
    for (HWND box : g_pieceBoxes)
        if (box) SetWindowPos(box, nullptr, 0, 0, 0, 0, kQuietHide);
    if (g_magnifierWindow) SetWindowPos(g_magnifierWindow, nullptr, 0, 0, 0, 0, kQuietHide);
}

}  // namespace

void RegisterMusicWindowClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = Music_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kMusicWindowClass;
    RegisterClassA(&windowClass);
}

HWND OpenMusicWindow() {
    if (g_musicWindow) return g_musicWindow;
    ImageObject panel;
    LoadArt(&panel, kArtMusicPanel);
    int32_t width = 420, height = 300;
    ImageObject_GetSize(&panel, &width, &height);
    ImageObject_Destroy(&panel);
    RECT frame = {0, 0, width, height};
    AdjustWindowRect(&frame, kMusicStyle, FALSE);
    const int32_t outerW = frame.right - frame.left, outerH = frame.bottom - frame.top;
    HideTableScreens();
    if (g_mainWindow) EnableWindow(g_mainWindow, FALSE);
    HWND window = CreateWindowExA(0, kMusicWindowClass, "", kMusicStyle, (g_screenWidth - outerW) / 2,
                                  (g_screenHeight - outerH) / 2, outerW, outerH, g_mainWindow, nullptr,
                                  GetModuleHandleA(nullptr), nullptr);
    if (!window && g_mainWindow) EnableWindow(g_mainWindow, TRUE);
    return window;
}

HWND CurrentMusicWindow() { return g_musicWindow; }

const MusicWindowParts* MusicWindowPartsOf(HWND window) {
    MusicState* s = window ? StateOf(window) : nullptr;
    return s ? &s->parts : nullptr;
}

int32_t MusicIndicatorFrame(HWND window, int indicator) {
    MusicState* s = window ? StateOf(window) : nullptr;
    if (!s || indicator < 0 || indicator > 2) return -1;
    return s->indicatorFrames[indicator];
}
