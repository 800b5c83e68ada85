// The slider's window: background and thumb painting, press on the thumb, drag along the line,
// release, hover. The value rules themselves live in slider_rules.cpp.
#include "controls/slider_win32.h"

#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "controls/slider_rules.h"
#include "gfx/frame_sprite_win32.h"
#include "gfx/image_object_win32.h"

namespace {

struct SliderState {
    HWND hwnd;
    SliderValues values;
    uint8_t enabled;
    const uint8_t* background;  // not owned; painted at (0, 0)
    const uint8_t* thumb;       // not owned; the sprite's source
    FrameSprite sprite;         // source = the thumb grid, target = the DC being painted
    int32_t thumbFrame;         // frame of the thumb grid drawn
    SliderLine line;
    SliderPoint thumbOffset;    // thumb position relative to the line start
    uint8_t dragging;
    uint8_t hover;              // the pointer is over the thumb (timer 1 watches it leave)
    SliderPoint grab;           // where inside the thumb the press went down
    uint8_t ready;              // background and thumb both present
};

RECT Slider_ThumbRect(const SliderState* s) {
    int32_t left = s->line.start.x + s->thumbOffset.x, top = s->line.start.y + s->thumbOffset.y;
    return RECT{left, top, left + s->sprite.frameWidth, top + s->sprite.frameHeight};
}

// Far edges included: a press on the thumb's last column or row still grabs it.
bool Slider_InThumb(const SliderState* s, int x, int y) {
    RECT r = Slider_ThumbRect(s);
    return x >= r.left && x <= r.right && y >= r.top && y <= r.bottom;
}

// Over the thumb and not hidden by another window.
bool Slider_PointOverThumb(const SliderState* s, int x, int y) {
    return Slider_InThumb(s, x, y) && ClientPointIsOver(s->hwnd, x, y);
}

bool Slider_PointerOverThumb(const SliderState* s) {
    POINT p;
    if (!GetCursorPos(&p)) return false;
    ScreenToClient(s->hwnd, &p);
    return Slider_PointOverThumb(s, p.x, p.y);
}

int32_t Slider_DrawnFrame(const SliderState* s) {
    int64_t frames = int64_t(s->sprite.rows) * s->sprite.columns;
    return s->thumbFrame >= 0 && s->thumbFrame < frames ? s->thumbFrame : 0;
}

void Slider_Paint(SliderState* s, HDC dc, const RECT* area) {
    int32_t width, height;
    bool hasBackground = PackedDibSize(s->background, &width, &height);
    // What the background does not cover is black, so a thumb moved off it leaves no trail.
    if (!hasBackground || area->right > width || area->bottom > height) PaintRect(dc, area, nullptr);
    if (hasBackground) {
        int32_t right = area->right < width ? area->right : width;
        int32_t bottom = area->bottom < height ? area->bottom : height;
        if (right > area->left && bottom > area->top)
            DrawPackedDib(dc, area->left, area->top, right - area->left, bottom - area->top, s->background,
                          area->left, area->top);
    }
    if (!s->ready) return;
    RECT thumb = Slider_ThumbRect(s);
    FrameSprite_SetTargetDc(&s->sprite, dc);
    FrameSprite_DrawWithRop(&s->sprite, Slider_DrawnFrame(s), thumb.left, thumb.top, false, false, false, SRCCOPY);
    FrameSprite_SetTargetDc(&s->sprite, nullptr);
}

void Slider_OnPaint(SliderState* s) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(s->hwnd, &ps);
    if (dc) Slider_Paint(s, dc, &ps.rcPaint);
    EndPaint(s->hwnd, &ps);
}

void Slider_InvalidateThumb(SliderState* s) {
    RECT r = Slider_ThumbRect(s);
    InvalidateRect(s->hwnd, &r, FALSE);
}

bool Slider_Reacts(const SliderState* s) { return s->enabled && s->ready; }

// Ends a drag or a hover without a word to the parent (disabling, or the control losing a picture).
void Slider_EndInteractionSilently(SliderState* s) {
    bool dragging = s->dragging != 0;
    s->dragging = s->hover = 0;
    KillTimer(s->hwnd, kHoverTimer);
    if (dragging) ReleaseOwnCapture(s->hwnd);  // after clearing the flag: WM_CAPTURECHANGED must find no drag
}

// The thumb follows the value; the old and the new thumb areas are repainted.
void Slider_PlaceThumb(SliderState* s) {
    Slider_InvalidateThumb(s);
    s->thumbOffset = SliderThumbOffset(&s->values, s->line.direction);
    Slider_InvalidateThumb(s);
    UpdateWindow(s->hwnd);
}

void Slider_UpdateReady(SliderState* s) {
    s->ready = s->background && s->thumb && s->sprite.frameWidth >= 1 && s->sprite.frameHeight >= 1;
    if (!s->ready) Slider_EndInteractionSilently(s);
}

void Slider_OnLButtonDown(SliderState* s, int x, int y) {
    if (!Slider_Reacts(s) || s->dragging || !Slider_InThumb(s, x, y)) return;
    RECT thumb = Slider_ThumbRect(s);
    s->dragging = 1;
    s->grab = SliderPoint{x - thumb.left, y - thumb.top};
    SetCapture(s->hwnd);
    KillTimer(s->hwnd, kHoverTimer);
    NotifyParent(s->hwnd, NOTIFY_PRESSED);
}

void Slider_OnDrag(SliderState* s, int x, int y) {
    SliderPoint p = {x - s->grab.x - s->line.start.x, y - s->grab.y - s->line.start.y};
    int32_t value = SliderValueAtPoint(&s->values, &s->line, p);
    if (value == s->values.value) return;
    s->values.value = value;
    Slider_PlaceThumb(s);
    NotifyParent(s->hwnd, NOTIFY_CLICKED);
}

void Slider_OnMouseMove(SliderState* s, int x, int y) {
    if (!Slider_Reacts(s)) return;
    if (s->dragging) {
        Slider_OnDrag(s, x, y);
        return;
    }
    if (s->hover || !Slider_InThumb(s, x, y)) return;
    s->hover = 1;
    SetTimer(s->hwnd, kHoverTimer, kHoverPollMs, nullptr);
    NotifyParent(s->hwnd, NOTIFY_ENTERED);
}

// Ends a drag at client point (x, y): over the thumb the hover goes on (watched by timer 1), else the
// parent hears that the pointer left it.
void Slider_EndDrag(SliderState* s, int x, int y) {
    if (!s->dragging) return;
    HWND hwnd = s->hwnd;
    bool over = Slider_PointOverThumb(s, x, y);
    s->dragging = 0;  // before releasing the capture, whose WM_CAPTURECHANGED must not come back here
    s->hover = over;
    if (over) SetTimer(hwnd, kHoverTimer, kHoverPollMs, nullptr);
    ReleaseOwnCapture(hwnd);
    NotifyParent(hwnd, NOTIFY_RELEASED);
    // The parent may destroy the control from here on: only the locals are used.
    if (!over) NotifyParent(hwnd, NOTIFY_LEFT);
}

// Another window took the capture: a release where the pointer really is.
void Slider_OnCaptureChanged(SliderState* s, HWND newOwner) {
    if (!s->dragging || newOwner == s->hwnd) return;
    POINT p = {-32768, -32768};
    if (GetCursorPos(&p)) ScreenToClient(s->hwnd, &p);
    Slider_EndDrag(s, p.x, p.y);
}

void Slider_OnTimer(SliderState* s, UINT_PTR id) {
    if (id != kHoverTimer || s->dragging) return;
    if (s->hover && Slider_PointerOverThumb(s)) return;
    KillTimer(s->hwnd, kHoverTimer);
    bool wasHovering = s->hover != 0;
    s->hover = 0;
    if (wasHovering) NotifyParent(s->hwnd, NOTIFY_LEFT);
}

LRESULT Slider_OnSetEnable(SliderState* s, bool enable) {
    s->enabled = enable;
    if (!enable) Slider_EndInteractionSilently(s);
    RepaintNow(s->hwnd);
    return 1;
}

LRESULT Slider_OnSetBackground(SliderState* s, const uint8_t* background) {
    int32_t width, height;
    bool accepted = PackedDibSize(background, &width, &height);
    s->background = accepted ? background : nullptr;
    Slider_UpdateReady(s);
    RepaintNow(s->hwnd);
    return accepted;
}

LRESULT Slider_OnSetThumb(SliderState* s, const uint8_t* thumb) {
    int32_t width, height;
    bool accepted = PackedDibSize(thumb, &width, &height);
    Slider_InvalidateThumb(s);
    s->thumb = accepted ? thumb : nullptr;
    FrameSprite_SetSourceDib(&s->sprite, s->thumb, false);
    Slider_UpdateReady(s);
    Slider_InvalidateThumb(s);
    UpdateWindow(s->hwnd);
    return accepted;
}

LRESULT Slider_OnSetThumbFrame(SliderState* s, int32_t frame) {
    s->thumbFrame = frame;
    Slider_InvalidateThumb(s);
    UpdateWindow(s->hwnd);
    return 1;
}

// A grid needs at least one row and one column; other counts are ignored.
LRESULT Slider_OnSetGrid(SliderState* s, int32_t rows, int32_t columns) {
    if (rows < 1 || columns < 1) return 1;
    Slider_InvalidateThumb(s);
    FrameSprite_SetGrid(&s->sprite, rows, columns);
    Slider_UpdateReady(s);
    Slider_InvalidateThumb(s);
    UpdateWindow(s->hwnd);
    return 1;
}

LRESULT Slider_OnSetValue(SliderState* s, int32_t value) {
    if (s->dragging) return 1;  // the player's hand wins
    SetSliderValue(&s->values, value);
    Slider_PlaceThumb(s);
    return 1;
}

LRESULT Slider_OnSetRange(SliderState* s, bool maximum, int32_t value) {
    if (maximum)
        SetSliderMaximum(&s->values, value);
    else
        SetSliderMinimum(&s->values, value);
    Slider_PlaceThumb(s);
    return 1;
}

LRESULT Slider_OnSetLine(SliderState* s, bool start, int32_t packed) {
    SliderPoint p = UnpackSliderPoint(packed);
    Slider_InvalidateThumb(s);
    if (start)
        SetSliderLineStart(&s->line, p);
    else
        SetSliderLineEnd(&s->line, p);
    Slider_PlaceThumb(s);
    return 1;
}

LRESULT Slider_OnCreate(HWND hwnd) {
    auto* s = static_cast<SliderState*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(SliderState)));
    if (!s) return -1;
    s->hwnd = hwnd;
    s->values = DefaultSliderValues();
    s->enabled = 1;
    s->line = DefaultSliderLine();
    FrameSprite_Init(&s->sprite, hwnd);
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    return 0;
}

void Slider_OnDestroy(SliderState* s) {
    KillTimer(s->hwnd, kHoverTimer);
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    FrameSprite_Destroy(&s->sprite);
    HeapFree(GetProcessHeap(), 0, s);
}

}  // namespace

LRESULT CALLBACK SliderProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* s = reinterpret_cast<SliderState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!s) {
        if (message == WM_CREATE) return Slider_OnCreate(hwnd);
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    int32_t value = int32_t(lParam);
    switch (message) {
    case WM_PAINT: Slider_OnPaint(s); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_MOUSEMOVE: Slider_OnMouseMove(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONDOWN: Slider_OnLButtonDown(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONUP: Slider_EndDrag(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_CAPTURECHANGED: Slider_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_TIMER: Slider_OnTimer(s, wParam); return 0;
    case WM_QUERYNEWPALETTE: RepaintNow(hwnd); return TRUE;
    case WM_PALETTECHANGED:
        if (reinterpret_cast<HWND>(wParam) != hwnd) RepaintNow(hwnd);
        return 0;
    case WM_CLOSE: DestroyWindow(hwnd); return 0;
    case WM_DESTROY: Slider_OnDestroy(s); return 0;
    case PM_SLD_GETENABLE: return s->enabled;
    case PM_SLD_SETENABLE: return Slider_OnSetEnable(s, lParam != 0);
    case PM_SLD_GETBACKGROUND: return reinterpret_cast<LRESULT>(s->background);
    case PM_SLD_SETBACKGROUND: return Slider_OnSetBackground(s, reinterpret_cast<const uint8_t*>(lParam));
    case PM_SLD_GETTHUMB: return reinterpret_cast<LRESULT>(s->thumb);
    case PM_SLD_SETTHUMB: return Slider_OnSetThumb(s, reinterpret_cast<const uint8_t*>(lParam));
    case PM_SLD_GETTHUMBFRAME: return s->thumbFrame;
    case PM_SLD_SETTHUMBFRAME: return Slider_OnSetThumbFrame(s, value);
    case PM_SLD_GETTHUMBROWS: return s->sprite.rows;
    case PM_SLD_SETTHUMBROWS: return Slider_OnSetGrid(s, value, s->sprite.columns);
    case PM_SLD_GETTHUMBCOLUMNS: return s->sprite.columns;
    case PM_SLD_SETTHUMBCOLUMNS: return Slider_OnSetGrid(s, s->sprite.rows, value);
    case PM_SLD_GETMAXIMUM: return s->values.maximum;
    case PM_SLD_SETMAXIMUM: return Slider_OnSetRange(s, true, value);
    case PM_SLD_GETMINIMUM: return s->values.minimum;
    case PM_SLD_SETMINIMUM: return Slider_OnSetRange(s, false, value);
    case PM_SLD_GETVALUE: return s->values.value;
    case PM_SLD_SETVALUE: return Slider_OnSetValue(s, value);
    case PM_SLD_GETSTEP: return s->values.step;
    case PM_SLD_SETSTEP: SetSliderStep(&s->values, value); return 1;
    case PM_SLD_GETLINESTART: return PackSliderPoint(s->line.start);
    case PM_SLD_SETLINESTART: return Slider_OnSetLine(s, true, value);
    case PM_SLD_GETLINEEND: return PackSliderPoint(SliderLineEnd(&s->line));
    case PM_SLD_SETLINEEND: return Slider_OnSetLine(s, false, value);
    default:
        if (message >= PM_FIRST && message <= PM_LAST) return 1;
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}
