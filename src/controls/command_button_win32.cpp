// The command button: strip painting, lighting under the pointer, press and click with PM_NOTIFY events.
#include "controls/command_button_win32.h"

#include "app/app_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/image_object_win32.h"

namespace {

enum ButtonLook { LOOK_NORMAL = 0, LOOK_LIT = 1, LOOK_PRESSED = 2 };

struct ButtonState {
    HWND hwnd;
    uint8_t disabledFrame;  // the strip starts with a frame shown while disabled
    uint8_t enabled;
    const uint8_t* image;   // the frame strip; not owned
    int32_t width;
    int32_t frameHeight;
    int32_t look;           // ButtonLook
    uint8_t captured;       // the left button went down here and is still held
};

// Frame count = 3 + disabled-frame flag; the window takes the size of one frame.
void Button_Relayout(ButtonState* s) {
    int32_t width, height;
    if (!PackedDibSize(s->image, &width, &height)) return;
    s->width = width;
    s->frameHeight = height / (3 + s->disabledFrame);
    ResizeControl(s->hwnd, s->width, s->frameHeight);
}

void Button_Paint(const ButtonState* s, HDC dc, const RECT* area) {
    if (!s->image) {
        PaintRect(dc, area, nullptr);
        return;
    }
    // Disabled shows row 0: the disabled frame, or the normal frame when the strip has none.
    int32_t row = s->enabled ? (s->look + s->disabledFrame) * s->frameHeight : 0;
    DrawPackedDib(dc, area->left, area->top, area->right - area->left, area->bottom - area->top, s->image,
                  area->left, area->top + row);
}

void Button_OnPaint(ButtonState* s) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(s->hwnd, &ps);
    if (dc) Button_Paint(s, dc, &ps.rcPaint);
    EndPaint(s->hwnd, &ps);
}

bool Button_Reacts(const ButtonState* s) { return s->enabled && s->image; }

void Button_SetLook(ButtonState* s, int32_t look) {
    s->look = look;
    RepaintNow(s->hwnd);
}

void Button_OnMouseMove(ButtonState* s, int x, int y) {
    if (!Button_Reacts(s)) return;
    if (!s->captured) {
        if (s->look != LOOK_NORMAL) return;
        Button_SetLook(s, LOOK_LIT);
        SetTimer(s->hwnd, kHoverTimer, kHoverPollMs, nullptr);
        PlayInterfaceSound(g_hoverSound);
        NotifyParent(s->hwnd, NOTIFY_ENTERED);
        return;
    }
    if (!ClientPointIsOver(s->hwnd, x, y)) {
        // Dragged off while pressed: lit, not normal, so the button still shows it holds the press.
        if (s->look != LOOK_PRESSED) return;
        Button_SetLook(s, LOOK_LIT);
        NotifyParent(s->hwnd, NOTIFY_LEFT);
    } else if (s->look == LOOK_LIT) {
        Button_SetLook(s, LOOK_PRESSED);
        PlayInterfaceSound(g_hoverSound);
        NotifyParent(s->hwnd, NOTIFY_ENTERED);
    }
}

void Button_OnLButtonDown(ButtonState* s) {
    if (!Button_Reacts(s)) return;
    s->captured = 1;
    s->look = LOOK_PRESSED;
    SetCapture(s->hwnd);
    RepaintNow(s->hwnd);
    KillTimer(s->hwnd, kHoverTimer);
    NotifyParent(s->hwnd, NOTIFY_PRESSED);
}

// Also ends a press whose capture was taken away: the real pointer position decides either way.
void Button_OnLButtonUp(ButtonState* s) {
    if (!Button_Reacts(s) || !s->captured) return;
    HWND hwnd = s->hwnd;
    s->captured = 0;  // before releasing the capture, whose WM_CAPTURECHANGED must not end the press twice
    bool over = PointerIsOver(hwnd);
    if (over) {
        s->look = LOOK_LIT;
        SetTimer(hwnd, kHoverTimer, kHoverPollMs, nullptr);
    } else {
        s->look = LOOK_NORMAL;
    }
    ReleaseOwnCapture(hwnd);
    RepaintNow(hwnd);
    NotifyParent(hwnd, NOTIFY_RELEASED);
    // The parent may destroy or disable the button from here on: only the locals are used.
    if (!over) return;
    PlayInterfaceSound(g_clickSound);
    NotifyParent(hwnd, NOTIFY_CLICKED);
}

void Button_OnCaptureChanged(ButtonState* s, HWND newOwner) {
    if (s->captured && newOwner != s->hwnd) Button_OnLButtonUp(s);
}

void Button_OnTimer(ButtonState* s, UINT_PTR id) {
    if (id != kHoverTimer || !Button_Reacts(s) || s->captured) return;
    if (PointerIsOver(s->hwnd)) return;
    KillTimer(s->hwnd, kHoverTimer);
    Button_SetLook(s, LOOK_NORMAL);
    NotifyParent(s->hwnd, NOTIFY_LEFT);
}

LRESULT Button_OnSetEnable(ButtonState* s, bool enable) {
    if (enable == (s->enabled != 0)) return 1;
    s->enabled = enable;
    if (!enable) {
        if (s->captured) {
            s->captured = 0;  // ends the press silently: no release event
            ReleaseOwnCapture(s->hwnd);
        } else if (s->look == LOOK_LIT) {
            KillTimer(s->hwnd, kHoverTimer);
        }
    }
    Button_SetLook(s, LOOK_NORMAL);
    return 1;
}

LRESULT Button_OnSetImage(ButtonState* s, const uint8_t* image) {
    s->image = image;
    Button_Relayout(s);
    RepaintNow(s->hwnd);
    return 1;
}

LRESULT Button_OnSetDisabledFrame(ButtonState* s, bool hasDisabledFrame) {
    s->disabledFrame = hasDisabledFrame;
    if (s->image) {
        Button_Relayout(s);
        RepaintNow(s->hwnd);
    }
    return 1;
}

LRESULT Button_OnCreate(HWND hwnd) {
    auto* s = static_cast<ButtonState*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(ButtonState)));
    if (!s) return -1;
    s->hwnd = hwnd;
    s->enabled = 1;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    return 0;
}

void Button_OnDestroy(ButtonState* s) {
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    HeapFree(GetProcessHeap(), 0, s);
}

}  // namespace

LRESULT CALLBACK CommandButtonProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* s = reinterpret_cast<ButtonState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!s) {
        if (message == WM_CREATE) return Button_OnCreate(hwnd);
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    switch (message) {
    case WM_PAINT: Button_OnPaint(s); return 0;
    case WM_ERASEBKGND: return 1;  // every pixel comes from the strip
    case WM_MOUSEMOVE: Button_OnMouseMove(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONDOWN: Button_OnLButtonDown(s); return 0;
    case WM_LBUTTONUP: Button_OnLButtonUp(s); return 0;
    case WM_CAPTURECHANGED: Button_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_TIMER: Button_OnTimer(s, wParam); return 0;
    case WM_CLOSE: DestroyWindow(hwnd); return 0;
    case WM_DESTROY: Button_OnDestroy(s); return 0;
    case PM_GETENABLE: return s->enabled;
    case PM_SETENABLE: return Button_OnSetEnable(s, lParam != 0);
    case PM_GETIMAGE: return reinterpret_cast<LRESULT>(s->image);
    case PM_SETIMAGE: return Button_OnSetImage(s, reinterpret_cast<const uint8_t*>(lParam));
    case PM_GETDISFRAME: return s->disabledFrame;
    case PM_SETDISFRAME: return Button_OnSetDisabledFrame(s, lParam != 0);
    default:
        if (message >= PM_FIRST && message <= PM_LAST) return 1;
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}
