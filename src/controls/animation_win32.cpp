// The animation control: frames through a FrameSprite on the control's own DC, the tick timer and the
// mouse events. Masked frames are composed over the background in a backing image first.
#include "controls/animation_win32.h"

#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/frame_sprite_win32.h"
#include "gfx/image_object_win32.h"

namespace {

struct AnimState {
    HWND hwnd;
    HDC dc;                     // the class's own DC, kept for the window's life
    int32_t userValue;          // stored for the parent, never used here
    uint8_t enabled;
    uint8_t lit;                // the pointer is over the control
    uint8_t pressed;            // the left button went down on it
    int32_t period;             // tick period in ms; taken at the next start
    uint8_t running;            // the tick timer is active
    int32_t frame;              // index into the grid, row by row
    const uint8_t* image;       // the frame grid; not owned
    const uint8_t* background;  // packed DIB of what lies under the control; not owned
    int32_t backgroundWidth, backgroundHeight;
    uint8_t masked;             // each row of frames is followed by a row of masks
    uint8_t ready;              // a frame image has been accepted
    uint8_t hasBacking;         // the backing image is made and sized to the background
    FrameSprite sprite;         // source = the grid, target = dc
    ImageObject backing;        // memory DC where masked frames are composed over the background
};

// Background copied into the backing image, then the frame drawn masked over it at (0, 0).
void Anim_Compose(AnimState* s) {
    HDC backing = ImageObject_Dc(&s->backing);
    DrawPackedDib(backing, 0, 0, s->backgroundWidth, s->backgroundHeight, s->background, 0, 0);
    FrameSprite_SetTargetDc(&s->sprite, backing);
    FrameSprite_DrawMasked(&s->sprite, s->frame, 0, 0, false, false, false);
    FrameSprite_SetTargetDc(&s->sprite, s->dc);
}

void Anim_Paint(AnimState* s, HDC dc, const RECT* area) {
    if (!s->ready) {
        PaintRect(dc, area, nullptr);
        return;
    }
    if (!s->masked) {
        FrameSprite_DrawWithRop(&s->sprite, s->frame, 0, 0, false, false, false, SRCCOPY);
        return;
    }
    if (!s->hasBacking) {  // no background given: the frame goes straight onto the control
        FrameSprite_DrawMasked(&s->sprite, s->frame, 0, 0, false, false, false);
        return;
    }
    Anim_Compose(s);
    BitBlt(dc, area->left, area->top, area->right - area->left, area->bottom - area->top,
           ImageObject_Dc(&s->backing), area->left, area->top, SRCCOPY);
}

void Anim_OnPaint(AnimState* s) {
    PAINTSTRUCT ps;
    // The class DC: BeginPaint hands back the same DC the sprite draws on, clipped to the update area.
    HDC dc = BeginPaint(s->hwnd, &ps);
    if (dc) Anim_Paint(s, dc, &ps.rcPaint);
    EndPaint(s->hwnd, &ps);
}

bool Anim_Reacts(const AnimState* s) { return s->enabled && s->ready; }

void Anim_OnMouseMove(AnimState* s, int x, int y) {
    if (!Anim_Reacts(s)) return;
    if (!s->pressed) {
        if (s->lit) return;
        s->lit = 1;
        SetTimer(s->hwnd, kHoverTimer, kHoverPollMs, nullptr);
        NotifyParent(s->hwnd, NOTIFY_ENTERED);
        return;
    }
    // Judged against the frame, both far edges included.
    bool inside = x >= 0 && x <= s->sprite.frameWidth && y >= 0 && y <= s->sprite.frameHeight;
    if (inside && !s->lit) {
        s->lit = 1;
        NotifyParent(s->hwnd, NOTIFY_ENTERED);
    } else if (!inside && s->lit) {
        s->lit = 0;
        NotifyParent(s->hwnd, NOTIFY_LEFT);
    }
}

void Anim_OnLButtonDown(AnimState* s) {
    if (!Anim_Reacts(s)) return;
    KillTimer(s->hwnd, kHoverTimer);
    s->pressed = 1;
    SetCapture(s->hwnd);
    NotifyParent(s->hwnd, NOTIFY_PRESSED);
}

// Taken with or without a press here: a release after a press elsewhere still reports event 1.
void Anim_OnLButtonUp(AnimState* s) {
    if (!Anim_Reacts(s)) return;
    HWND hwnd = s->hwnd;
    bool clicked = s->pressed && PointerIsOver(hwnd);
    if (clicked) SetTimer(hwnd, kHoverTimer, kHoverPollMs, nullptr);
    s->pressed = 0;  // before releasing the capture, whose WM_CAPTURECHANGED must not end the press twice
    ReleaseOwnCapture(hwnd);
    NotifyParent(hwnd, NOTIFY_RELEASED);
    // The parent may destroy or disable the control from here on: only the locals are used.
    if (clicked) NotifyParent(hwnd, NOTIFY_CLICKED);
}

void Anim_OnCaptureChanged(AnimState* s, HWND newOwner) {
    if (s->pressed && newOwner != s->hwnd) Anim_OnLButtonUp(s);
}

void Anim_OnTimer(AnimState* s, UINT_PTR id) {
    if (id == kAnimTickTimer) {
        if (s->ready && s->running) NotifyParent(s->hwnd, NOTIFY_SPECIAL);
        return;
    }
    if (id != kHoverTimer || !s->enabled || s->pressed) return;
    if (PointerIsOver(s->hwnd)) return;
    s->lit = 0;
    KillTimer(s->hwnd, kHoverTimer);
    NotifyParent(s->hwnd, NOTIFY_LEFT);
}

LRESULT Anim_OnSetEnable(AnimState* s, bool enable) {
    if (!enable && s->enabled) {
        if (s->pressed) {
            s->pressed = 0;  // ends the press silently: no release event
            ReleaseOwnCapture(s->hwnd);
        } else {
            KillTimer(s->hwnd, kHoverTimer);
        }
        s->lit = 0;  // nothing would notice the pointer leaving any more
    }
    s->enabled = enable;
    return 1;
}

// Refused (result 0, not ready) when there is no image or the grid leaves no pixel per frame.
LRESULT Anim_OnSetImage(AnimState* s, const uint8_t* image) {
    int32_t width, height;
    s->image = image;
    FrameSprite_SetSourceDib(&s->sprite, PackedDibSize(image, &width, &height) ? image : nullptr, s->masked);
    if (!image || s->sprite.frameWidth < 1 || s->sprite.frameHeight < 1) {
        s->ready = 0;
        return 0;
    }
    s->ready = 1;
    RepaintNow(s->hwnd);
    return 1;
}

// The backing image takes the background's size. Failure clears ready.
LRESULT Anim_OnSetBackground(AnimState* s, const uint8_t* background) {
    int32_t width, height;
    s->background = background;
    if (!PackedDibSize(background, &width, &height) || !ImageObject_SetSize(&s->backing, width, height, true)) {
        s->hasBacking = 0;
        s->ready = 0;
        return 0;
    }
    s->backgroundWidth = width;
    s->backgroundHeight = height;
    s->hasBacking = 1;
    return 1;
}

LRESULT Anim_OnSetMasked(AnimState* s, bool masked) {
    s->masked = masked;
    FrameSprite_SetSourceDib(&s->sprite, s->image, masked);
    return 1;
}

LRESULT Anim_OnSetFrame(AnimState* s, int32_t frame) {
    s->frame = frame;
    if (!s->ready) return 1;
    if (!s->masked || !s->hasBacking) {
        RepaintNow(s->hwnd);
        return 1;
    }
    // Masked frames go on screen at once, composed over the background.
    Anim_Compose(s);
    BitBlt(s->dc, 0, 0, s->backgroundWidth, s->backgroundHeight, ImageObject_Dc(&s->backing), 0, 0, SRCCOPY);
    return 1;
}

LRESULT Anim_OnSetGrid(AnimState* s, int32_t rows, int32_t columns) {
    FrameSprite_SetGrid(&s->sprite, rows, columns);
    return 1;
}

LRESULT Anim_OnSetRunning(AnimState* s, bool run) {
    if (!s->ready) return 1;  // nothing to animate yet
    s->running = run;
    if (run)
        SetTimer(s->hwnd, kAnimTickTimer, UINT(s->period > 0 ? s->period : 1), nullptr);
    else
        KillTimer(s->hwnd, kAnimTickTimer);
    return 1;
}

LRESULT Anim_OnCreate(HWND hwnd) {
    auto* s = static_cast<AnimState*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(AnimState)));
    if (!s) return -1;
    s->hwnd = hwnd;
    s->dc = GetDC(hwnd);
    s->enabled = 1;
    s->period = 75;
    FrameSprite_Init(&s->sprite, hwnd);
    FrameSprite_SetTargetDc(&s->sprite, s->dc);
    ImageObject_Init(&s->backing, true);
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    return 0;
}

void Anim_OnDestroy(AnimState* s) {
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    FrameSprite_Destroy(&s->sprite);
    ImageObject_Destroy(&s->backing);
    ReleaseDC(s->hwnd, s->dc);
    HeapFree(GetProcessHeap(), 0, s);
}

}  // namespace

LRESULT CALLBACK AnimationProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* s = reinterpret_cast<AnimState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!s) {
        if (message == WM_CREATE) return Anim_OnCreate(hwnd);
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    switch (message) {
    case WM_PAINT: Anim_OnPaint(s); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_MOUSEMOVE: Anim_OnMouseMove(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONDOWN: Anim_OnLButtonDown(s); return 0;
    case WM_LBUTTONUP: Anim_OnLButtonUp(s); return 0;
    case WM_CAPTURECHANGED: Anim_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_TIMER: Anim_OnTimer(s, wParam); return 0;
    case WM_CLOSE: DestroyWindow(hwnd); return 0;
    case WM_DESTROY: Anim_OnDestroy(s); return 0;
    case PM_GETENABLE: return s->enabled;
    case PM_SETENABLE: return Anim_OnSetEnable(s, lParam != 0);
    case PM_GETIMAGE: return reinterpret_cast<LRESULT>(s->image);
    case PM_SETIMAGE: return Anim_OnSetImage(s, reinterpret_cast<const uint8_t*>(lParam));
    case PM_ANIM_GETBACKGROUND: return reinterpret_cast<LRESULT>(s->background);
    case PM_ANIM_SETBACKGROUND: return Anim_OnSetBackground(s, reinterpret_cast<const uint8_t*>(lParam));
    case PM_ANIM_GETMASKED: return s->masked;
    case PM_ANIM_SETMASKED: return Anim_OnSetMasked(s, lParam != 0);
    case PM_ANIM_GETFRAME: return s->frame;
    case PM_ANIM_SETFRAME: return Anim_OnSetFrame(s, int32_t(lParam));
    case PM_ANIM_GETROWS: return s->sprite.rows;
    case PM_ANIM_SETROWS: return Anim_OnSetGrid(s, int32_t(lParam), s->sprite.columns);
    case PM_ANIM_GETCOLUMNS: return s->sprite.columns;
    case PM_ANIM_SETCOLUMNS: return Anim_OnSetGrid(s, s->sprite.rows, int32_t(lParam));
    case PM_ANIM_GETPERIOD: return s->period;
    case PM_ANIM_SETPERIOD: s->period = int32_t(lParam); return 1;
    case PM_ANIM_GETRUNNING: return s->running;
    case PM_ANIM_SETRUNNING: return Anim_OnSetRunning(s, lParam != 0);
    case PM_ANIM_GETUSERVALUE: return s->userValue;
    case PM_ANIM_SETUSERVALUE: s->userValue = int32_t(lParam); return 1;
    case PM_ANIM_GETLIT: return s->lit;
    default:
        if (message >= PM_FIRST && message <= PM_LAST) return 1;
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}
