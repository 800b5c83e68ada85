// The check box: the command button's painting, sounds and events, plus a checked flag toggled by clicks.
#include "controls/check_box_win32.h"

#include "app/app_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/image_object_win32.h"

namespace {

struct CheckState {
    HWND hwnd;
    uint8_t disabledFrame;  // the strip starts with a frame shown while disabled
    uint8_t enabled;
    const uint8_t* image;   // the frame strip; not owned
    int32_t width;
    int32_t frameHeight;
    int32_t frame;          // 0 unchecked, 1 unchecked lit, 2 checked, 3 checked lit
    uint8_t captured;       // the left button went down here and is still held
    uint8_t checked;
    uint8_t radio;          // a click never unchecks
};

// The frame for value v: with v = 0 the current value, with v = 1 the value a release would give.
int32_t PlainFrame(const CheckState* s, bool v) { return s->checked != v ? 2 : 0; }
int32_t LitFrame(const CheckState* s, bool v) { return s->checked != v ? 3 : 1; }

void Check_Relayout(CheckState* s) {
    int32_t width, height;
    if (!PackedDibSize(s->image, &width, &height)) return;
    s->width = width;
    s->frameHeight = height / (4 + s->disabledFrame);
    ResizeControl(s->hwnd, s->width, s->frameHeight);
}

void Check_Paint(const CheckState* s, HDC dc, const RECT* area) {
    if (!s->image) {
        PaintRect(dc, area, nullptr);
        return;
    }
    int32_t row = s->enabled ? (s->frame + s->disabledFrame) * s->frameHeight : 0;
    DrawPackedDib(dc, area->left, area->top, area->right - area->left, area->bottom - area->top, s->image,
                  area->left, area->top + row);
}

void Check_OnPaint(CheckState* s) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(s->hwnd, &ps);
    if (dc) Check_Paint(s, dc, &ps.rcPaint);
    EndPaint(s->hwnd, &ps);
}

bool Check_Reacts(const CheckState* s) { return s->enabled && s->image; }

// Shows a frame; repaints only when it changed unless forced. True when it changed.
bool Check_ShowFrame(CheckState* s, int32_t frame, bool force) {
    bool changed = frame != s->frame;
    s->frame = frame;
    if (changed || force) RepaintNow(s->hwnd);
    return changed;
}

void Check_OnMouseMove(CheckState* s, int x, int y) {
    if (!Check_Reacts(s)) return;
    if (!s->captured) {
        SetTimer(s->hwnd, kHoverTimer, kHoverPollMs, nullptr);
        if (!Check_ShowFrame(s, LitFrame(s, false), false)) return;
        PlayInterfaceSound(g_hoverSound);
        NotifyParent(s->hwnd, NOTIFY_ENTERED);
        return;
    }
    // While pressed, the box over the pointer previews the toggle; off it, the current value.
    bool over = ClientPointIsOver(s->hwnd, x, y);
    if (!Check_ShowFrame(s, PlainFrame(s, over), false)) return;
    if (!over) {
        NotifyParent(s->hwnd, NOTIFY_LEFT);
        return;
    }
    PlayInterfaceSound(g_hoverSound);
    NotifyParent(s->hwnd, NOTIFY_ENTERED);
}

void Check_OnLButtonDown(CheckState* s) {
    if (!Check_Reacts(s)) return;
    s->captured = 1;
    SetCapture(s->hwnd);
    Check_ShowFrame(s, PlainFrame(s, true), true);
    KillTimer(s->hwnd, kHoverTimer);
    NotifyParent(s->hwnd, NOTIFY_PRESSED);
}

// Also ends a press whose capture was taken away; the real pointer position decides.
void Check_OnLButtonUp(CheckState* s) {
    if (!Check_Reacts(s) || !s->captured) return;
    HWND hwnd = s->hwnd;
    s->captured = 0;  // before releasing the capture, whose WM_CAPTURECHANGED must not end the press twice
    bool changed = false;
    if (PointerIsOver(hwnd)) {
        SetTimer(hwnd, kHoverTimer, kHoverPollMs, nullptr);
        if (!s->checked) {
            s->checked = 1;
            changed = true;
        } else if (!s->radio) {
            s->checked = 0;
            changed = true;
        }
        Check_ShowFrame(s, LitFrame(s, false), true);
    } else {
        Check_ShowFrame(s, PlainFrame(s, false), true);
    }
    ReleaseOwnCapture(hwnd);
    NotifyParent(hwnd, NOTIFY_RELEASED);
    // The parent may destroy or disable the box from here on: only the locals are used.
    if (!changed) return;
    PlayInterfaceSound(g_clickSound);
    NotifyParent(hwnd, NOTIFY_CLICKED);
}

void Check_OnCaptureChanged(CheckState* s, HWND newOwner) {
    if (s->captured && newOwner != s->hwnd) Check_OnLButtonUp(s);
}

void Check_OnTimer(CheckState* s, UINT_PTR id) {
    if (id != kHoverTimer || !Check_Reacts(s) || s->captured) return;
    if (PointerIsOver(s->hwnd)) return;
    KillTimer(s->hwnd, kHoverTimer);
    Check_ShowFrame(s, PlainFrame(s, false), false);
    NotifyParent(s->hwnd, NOTIFY_LEFT);
}

LRESULT Check_OnSetEnable(CheckState* s, bool enable) {
    if (enable) {
        s->enabled = 1;
        Check_ShowFrame(s, PlainFrame(s, false), true);
        return 1;
    }
    if (s->enabled) {
        if (s->captured) {
            s->captured = 0;  // ends the press silently: no release event
            ReleaseOwnCapture(s->hwnd);
        } else {
            KillTimer(s->hwnd, kHoverTimer);
        }
    }
    s->enabled = 0;
    Check_ShowFrame(s, 0, true);
    return 1;
}

LRESULT Check_OnSetChecked(CheckState* s, bool checked) {
    if (checked == (s->checked != 0)) return 1;
    s->checked = checked;
    s->frame = checked ? 2 : 0;
    if (s->captured) {
        s->captured = 0;  // the press in progress ends without events
        ReleaseOwnCapture(s->hwnd);
    }
    RepaintNow(s->hwnd);
    // Lets the parent of a radio group learn that its program moved the choice away from this box.
    if (!checked && s->radio && s->enabled) NotifyParent(s->hwnd, NOTIFY_SPECIAL);
    return 1;
}

LRESULT Check_OnSetImage(CheckState* s, const uint8_t* image) {
    s->image = image;
    Check_Relayout(s);
    RepaintNow(s->hwnd);
    return 1;
}

LRESULT Check_OnSetDisabledFrame(CheckState* s, bool hasDisabledFrame) {
    s->disabledFrame = hasDisabledFrame;
    if (s->image) {
        Check_Relayout(s);
        RepaintNow(s->hwnd);
    }
    return 1;
}

LRESULT Check_OnCreate(HWND hwnd) {
    auto* s = static_cast<CheckState*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(CheckState)));
    if (!s) return -1;
    s->hwnd = hwnd;
    s->enabled = 1;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    return 0;
}

void Check_OnDestroy(CheckState* s) {
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    HeapFree(GetProcessHeap(), 0, s);
}

}  // namespace

LRESULT CALLBACK CheckBoxProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* s = reinterpret_cast<CheckState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!s) {
        if (message == WM_CREATE) return Check_OnCreate(hwnd);
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    switch (message) {
    case WM_PAINT: Check_OnPaint(s); return 0;
    case WM_ERASEBKGND: return 1;  // every pixel comes from the strip
    case WM_MOUSEMOVE: Check_OnMouseMove(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONDOWN: Check_OnLButtonDown(s); return 0;
    case WM_LBUTTONUP: Check_OnLButtonUp(s); return 0;
    case WM_CAPTURECHANGED: Check_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_TIMER: Check_OnTimer(s, wParam); return 0;
    case WM_CLOSE: DestroyWindow(hwnd); return 0;
    case WM_DESTROY: Check_OnDestroy(s); return 0;
    case PM_GETENABLE: return s->enabled;
    case PM_SETENABLE: return Check_OnSetEnable(s, lParam != 0);
    case PM_GETIMAGE: return reinterpret_cast<LRESULT>(s->image);
    case PM_SETIMAGE: return Check_OnSetImage(s, reinterpret_cast<const uint8_t*>(lParam));
    case PM_GETDISFRAME: return s->disabledFrame;
    case PM_SETDISFRAME: return Check_OnSetDisabledFrame(s, lParam != 0);
    case PM_GETCHECKED: return s->checked;
    case PM_SETCHECKED: return Check_OnSetChecked(s, lParam != 0);
    case PM_GETRADIO: return s->radio;
    case PM_SETRADIO: s->radio = lParam != 0; return 1;
    default:
        if (message >= PM_FIRST && message <= PM_LAST) return 1;
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}
