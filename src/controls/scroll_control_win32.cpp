// The scroll control's window: zones painted from the strip, press, auto-repeat, release and hover.
// The value rules themselves live in scroll_rules.cpp.
#include "controls/scroll_control_win32.h"

#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "controls/scroll_rules.h"
#include "gfx/image_object_win32.h"

namespace {

enum TimerState { TIMER_NONE = 0, TIMER_HOVER_POLL = 1, TIMER_REPEAT_DELAY = 2, TIMER_REPEATING = 3 };

struct ScrollState {
    HWND hwnd;
    ScrollValues values;
    uint8_t enabled;
    int32_t pressedZone;       // zone the press went down on; 0 when no press
    int32_t hoverZone;         // zone shown lit (or pressed during a press); 0 none
    const uint8_t* strip;      // not owned
    int32_t zoneHeights[3];    // upper, middle, lower, top to bottom
    int32_t extra;             // kept for the parent only
    int32_t timerState;        // TimerState
    uint8_t phase;             // toggled on every repeat tick; a step is taken when it clears
    int32_t repeatDelay;       // ms before auto-repeat starts
    int32_t repeatPeriod;      // ms between repeat ticks
    uint8_t disabledFrame;     // the strip carries a disabled picture first in each zone
    int32_t width;
    int32_t frameHeight;       // strip height / (3 + disabledFrame)
    uint8_t ready;             // the zones fill the frame height exactly
};

void Scroll_UpdateReady(ScrollState* s) {
    s->ready = ScrollLayoutReady(s->strip != nullptr, s->frameHeight, s->zoneHeights);
}

void Scroll_Relayout(ScrollState* s) {
    int32_t width, height;
    if (PackedDibSize(s->strip, &width, &height)) {
        s->width = width;
        s->frameHeight = height / (3 + s->disabledFrame);
        ResizeControl(s->hwnd, s->width, s->frameHeight);
    } else {
        s->width = s->frameHeight = 0;
    }
    Scroll_UpdateReady(s);
}

int32_t Scroll_ZoneAt(const ScrollState* s, int32_t y) {
    return ScrollZoneAt(y, s->zoneHeights[0], s->zoneHeights[1]);
}

void Scroll_Paint(const ScrollState* s, HDC dc, const RECT* area) {
    if (!s->ready) return;  // an unready control paints nothing
    int32_t top = 0;
    for (int32_t k = 0; k < 3; ++k) {
        int32_t height = s->zoneHeights[k];
        int32_t zone = k + 1;
        int32_t picture = ScrollZonePicture(s->enabled, s->disabledFrame, zone == s->hoverZone, s->pressedZone != 0,
                                            s->timerState == TIMER_REPEATING, s->phase);
        int32_t row = ScrollStripRow(s->disabledFrame, top, height, picture);
        // Only the part of the zone inside the update rectangle.
        int32_t y0 = area->top > top ? area->top : top;
        int32_t y1 = area->bottom < top + height ? area->bottom : top + height;
        if (y1 > y0 && area->right > area->left)
            DrawPackedDib(dc, area->left, y0, area->right - area->left, y1 - y0, s->strip, area->left,
                          row + (y0 - top));
        top += height;
    }
}

void Scroll_OnPaint(ScrollState* s) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(s->hwnd, &ps);
    if (dc) Scroll_Paint(s, dc, &ps.rcPaint);
    EndPaint(s->hwnd, &ps);
}

void Scroll_RepaintZone(ScrollState* s, int32_t zone) {
    int32_t top = 0;
    for (int32_t k = 0; k < zone - 1; ++k) top += s->zoneHeights[k];
    RECT area = {0, top, s->width, top + s->zoneHeights[zone - 1]};
    InvalidateRect(s->hwnd, &area, FALSE);
    UpdateWindow(s->hwnd);
}

bool Scroll_Reacts(const ScrollState* s) { return s->enabled && s->ready; }

void Scroll_KillTimers(ScrollState* s) {
    KillTimer(s->hwnd, kHoverTimer);
    KillTimer(s->hwnd, kRepeatDelayTimer);
    KillTimer(s->hwnd, kRepeatTimer);
}

// Entering lights the zone under the pointer and sends event 2, as a command button does; crossing into
// another zone only moves the light. During a press the pressed zone keeps its picture.
void Scroll_OnMouseMove(ScrollState* s, int y) {
    if (!Scroll_Reacts(s) || s->pressedZone) return;
    int32_t zone = Scroll_ZoneAt(s, y);
    if (s->hoverZone == zone) return;
    bool entering = s->hoverZone == SCROLL_ZONE_NONE;
    s->hoverZone = zone;
    RepaintNow(s->hwnd);
    if (!entering) return;
    SetTimer(s->hwnd, kHoverTimer, kHoverPollMs, nullptr);
    s->timerState = TIMER_HOVER_POLL;
    NotifyParent(s->hwnd, NOTIFY_ENTERED);
}

void Scroll_OnLButtonDown(ScrollState* s, int y) {
    if (!Scroll_Reacts(s)) return;
    int32_t zone = Scroll_ZoneAt(s, y);
    KillTimer(s->hwnd, kHoverTimer);
    s->pressedZone = s->hoverZone = zone;
    SetCapture(s->hwnd);
    if (zone == SCROLL_ZONE_MIDDLE) {
        s->timerState = TIMER_NONE;
    } else {
        SetTimer(s->hwnd, kRepeatDelayTimer, UINT(s->repeatDelay > 0 ? s->repeatDelay : 1), nullptr);
        s->timerState = TIMER_REPEAT_DELAY;
    }
    RepaintNow(s->hwnd);
    NotifyParent(s->hwnd, NOTIFY_PRESSED);
    NotifyParent(s->hwnd, NOTIFY_ZONE_PRESSED + zone);
}

// Ends a press, judged at the real pointer position (also when the capture was taken away). A release
// within the initial delay over the pressed zone steps once; a held button has stepped by repetition.
void Scroll_OnLButtonUp(ScrollState* s) {
    if (!s->pressedZone) return;
    HWND hwnd = s->hwnd;
    int32_t pressed = s->pressedZone;
    int32_t before = s->timerState;
    POINT p;
    GetCursorPos(&p);
    bool over = WindowFromPoint(p) == hwnd;
    ScreenToClient(hwnd, &p);
    int32_t zone = over ? Scroll_ZoneAt(s, p.y) : SCROLL_ZONE_NONE;
    Scroll_KillTimers(s);
    bool changed = false;
    if (before == TIMER_REPEAT_DELAY && zone == pressed) changed = ApplyScrollStep(&s->values, pressed);
    s->pressedZone = SCROLL_ZONE_NONE;  // before releasing the capture, whose WM_CAPTURECHANGED must not come back here
    ReleaseOwnCapture(hwnd);
    s->hoverZone = zone;
    if (over) {
        SetTimer(hwnd, kHoverTimer, kHoverPollMs, nullptr);
        s->timerState = TIMER_HOVER_POLL;
    } else {
        s->timerState = TIMER_NONE;
    }
    RepaintNow(hwnd);
    if (changed) NotifyParent(hwnd, NOTIFY_CLICKED);
    NotifyParent(hwnd, NOTIFY_ZONE_RELEASED + (over ? zone : pressed));
    NotifyParent(hwnd, NOTIFY_RELEASED);
    // Only a press on the middle part reports leaving when released outside. Kept so.
    if (over || pressed != SCROLL_ZONE_MIDDLE) return;
    NotifyParent(hwnd, NOTIFY_ZONE_LEFT + SCROLL_ZONE_MIDDLE);
    NotifyParent(hwnd, NOTIFY_LEFT);
}

void Scroll_OnCaptureChanged(ScrollState* s, HWND newOwner) {
    if (s->pressedZone && newOwner != s->hwnd) Scroll_OnLButtonUp(s);
}

void Scroll_OnRepeatDelay(ScrollState* s) {
    if (!s->pressedZone) return;
    KillTimer(s->hwnd, kRepeatDelayTimer);
    SetTimer(s->hwnd, kRepeatTimer, UINT(s->repeatPeriod > 0 ? s->repeatPeriod : 1), nullptr);
    s->timerState = TIMER_REPEATING;
    s->phase = 1;
}

// Every other tick steps; the pressed picture blinks with the phase.
void Scroll_OnRepeatTick(ScrollState* s) {
    if (!s->pressedZone) return;
    bool changed = false;
    if (s->phase) {
        s->phase = 0;
        changed = ApplyScrollStep(&s->values, s->pressedZone);
    } else {
        s->phase = 1;
    }
    Scroll_RepaintZone(s, s->pressedZone);
    if (changed) NotifyParent(s->hwnd, NOTIFY_CLICKED);
}

void Scroll_OnHoverPoll(ScrollState* s) {
    if (s->pressedZone || PointerIsOver(s->hwnd)) return;
    int32_t lit = s->hoverZone;
    s->hoverZone = SCROLL_ZONE_NONE;
    KillTimer(s->hwnd, kHoverTimer);
    s->timerState = TIMER_NONE;
    RepaintNow(s->hwnd);
    NotifyParent(s->hwnd, NOTIFY_ZONE_LEFT + lit);
    NotifyParent(s->hwnd, NOTIFY_LEFT);
}

void Scroll_OnTimer(ScrollState* s, UINT_PTR id) {
    if (id == kHoverTimer)
        Scroll_OnHoverPoll(s);
    else if (id == kRepeatDelayTimer)
        Scroll_OnRepeatDelay(s);
    else if (id == kRepeatTimer)
        Scroll_OnRepeatTick(s);
}

LRESULT Scroll_OnSetEnable(ScrollState* s, bool enable) {
    if (enable == (s->enabled != 0)) return 1;
    s->enabled = enable;
    if (!enable) {
        bool pressed = s->pressedZone != 0;
        s->pressedZone = s->hoverZone = SCROLL_ZONE_NONE;  // the press ends silently
        Scroll_KillTimers(s);
        s->timerState = TIMER_NONE;
        if (pressed) ReleaseOwnCapture(s->hwnd);
    }
    RepaintNow(s->hwnd);
    return 1;
}

LRESULT Scroll_OnSetZoneHeight(ScrollState* s, int32_t zone, int32_t height) {
    if (height < 1) return 1;
    s->zoneHeights[zone] = height;
    Scroll_UpdateReady(s);
    if (s->ready) RepaintNow(s->hwnd);
    return 1;
}

LRESULT Scroll_OnSetStrip(ScrollState* s, const uint8_t* strip) {
    s->strip = strip;
    Scroll_Relayout(s);
    RepaintNow(s->hwnd);
    return 1;
}

LRESULT Scroll_OnSetDisabledFrame(ScrollState* s, bool hasDisabledFrame) {
    s->disabledFrame = hasDisabledFrame;
    Scroll_Relayout(s);
    RepaintNow(s->hwnd);
    return 1;
}

LRESULT Scroll_OnCreate(HWND hwnd) {
    auto* s = static_cast<ScrollState*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(ScrollState)));
    if (!s) return -1;
    s->hwnd = hwnd;
    s->values = DefaultScrollValues();
    s->enabled = 1;
    s->extra = 5;
    s->repeatDelay = 400;
    s->repeatPeriod = 150;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    return 0;
}

void Scroll_OnDestroy(ScrollState* s) {
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    HeapFree(GetProcessHeap(), 0, s);
}

}  // namespace

LRESULT CALLBACK ScrollControlProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* s = reinterpret_cast<ScrollState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!s) {
        if (message == WM_CREATE) return Scroll_OnCreate(hwnd);
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    int32_t value = int32_t(lParam);
    switch (message) {
    case WM_PAINT: Scroll_OnPaint(s); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_MOUSEMOVE: Scroll_OnMouseMove(s, MouseY(lParam)); return 0;
    case WM_LBUTTONDOWN: Scroll_OnLButtonDown(s, MouseY(lParam)); return 0;
    case WM_LBUTTONUP: Scroll_OnLButtonUp(s); return 0;
    case WM_CAPTURECHANGED: Scroll_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_TIMER: Scroll_OnTimer(s, wParam); return 0;
    case WM_CLOSE: DestroyWindow(hwnd); return 0;
    case WM_DESTROY: Scroll_OnDestroy(s); return 0;
    case PM_GETENABLE: return s->enabled;
    case PM_SETENABLE: return Scroll_OnSetEnable(s, lParam != 0);
    case PM_GETIMAGE: return reinterpret_cast<LRESULT>(s->strip);
    case PM_SETIMAGE: return Scroll_OnSetStrip(s, reinterpret_cast<const uint8_t*>(lParam));
    case PM_SCR_GETUPPERHEIGHT: return s->zoneHeights[0];
    case PM_SCR_SETUPPERHEIGHT: return Scroll_OnSetZoneHeight(s, 0, value);
    case PM_SCR_GETMIDDLEHEIGHT: return s->zoneHeights[1];
    case PM_SCR_SETMIDDLEHEIGHT: return Scroll_OnSetZoneHeight(s, 1, value);
    case PM_SCR_GETLOWERHEIGHT: return s->zoneHeights[2];
    case PM_SCR_SETLOWERHEIGHT: return Scroll_OnSetZoneHeight(s, 2, value);
    case PM_SCR_GETMAXIMUM: return s->values.maximum;
    case PM_SCR_SETMAXIMUM: SetScrollMaximum(&s->values, value); return 1;
    case PM_SCR_GETMINIMUM: return s->values.minimum;
    case PM_SCR_SETMINIMUM: SetScrollMinimum(&s->values, value); return 1;
    case PM_SCR_GETPOSITION: return s->values.position;
    case PM_SCR_SETPOSITION: SetScrollPosition(&s->values, value); return 1;  // no event, no repaint
    case PM_SCR_GETSTEP: return s->values.step;
    case PM_SCR_SETSTEP: SetScrollStep(&s->values, value); return 1;
    case PM_SCR_GETEXTRA: return s->extra;
    case PM_SCR_SETEXTRA:
        if (value > 0) s->extra = value;
        return 1;
    case PM_SCR_GETDISFRAME: return s->disabledFrame;
    case PM_SCR_SETDISFRAME: return Scroll_OnSetDisabledFrame(s, lParam != 0);
    case PM_SCR_GETREPEATDELAY: return s->repeatDelay;
    case PM_SCR_SETREPEATDELAY: s->repeatDelay = value; return 1;
    case PM_SCR_GETREPEATPERIOD: return s->repeatPeriod;
    case PM_SCR_SETREPEATPERIOD: s->repeatPeriod = value; return 1;
    default:
        if (message >= PM_FIRST && message <= PM_LAST) return 1;
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}
