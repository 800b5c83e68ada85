// The text label: fonts and size from its text, transparent-looking painting, mouse events (no sounds).
#include "controls/text_label_win32.h"

#include <cstring>

#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/image_object_win32.h"

namespace {

struct LabelState {
    HWND hwnd;
    uint8_t enabled;          // reacts to the mouse; chooses the text colour
    uint8_t lit;              // the pointer is over the label
    uint8_t pressed;          // the left button went down on it and is held
    const uint8_t* background;  // the parent's background picture; not owned
    char* text;               // heap copy
    int32_t textSize;         // its length including the terminating 0
    uint8_t shadow;
    char* face;               // heap copy; face of both fonts
    int32_t faceSize;
    int32_t height;           // font height, logical units
    COLORREF shadowColor;
    COLORREF textColor;       // while enabled
    COLORREF disabledColor;
    int32_t shadowOffset;     // pixels, both directions
    uint8_t ready;            // fonts made, text measured, background set
    int32_t normalWeight;
    int32_t litWeight;
    HFONT normalFont;         // owned
    HFONT litFont;            // owned
};

// Stores a copy of value in *block, reallocating only when the length changes.
bool StoreString(char** block, int32_t* size, const char* value, int32_t length) {
    int32_t needed = length + 1;
    if (!*block || *size != needed) {
        char* fresh = static_cast<char*>(*block ? HeapReAlloc(GetProcessHeap(), 0, *block, needed)
                                                : HeapAlloc(GetProcessHeap(), 0, needed));
        if (!fresh) return false;
        *block = fresh;
        *size = needed;
    }
    std::memcpy(*block, value, size_t(length));
    (*block)[length] = 0;
    return true;
}

void FreeString(char** block) {
    if (*block) HeapFree(GetProcessHeap(), 0, *block);
    *block = nullptr;
}

void DeleteFonts(LabelState* s) {
    if (s->normalFont) DeleteObject(s->normalFont);
    if (s->litFont) DeleteObject(s->litFont);
    s->normalFont = s->litFont = nullptr;
}

HFONT MakeFont(const LabelState* s, int32_t weight) {
    return CreateFontA(s->height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, s->face);
}

SIZE MeasureText(HDC dc, HFONT font, const char* text, int32_t length) {
    SIZE size = {0, 0};
    HGDIOBJ old = SelectObject(dc, font);
    GetTextExtentPoint32A(dc, text, length, &size);
    SelectObject(dc, old);
    return size;
}

// Remakes both fonts and sizes the label to the wider and taller of its two renderings plus the shadow
// offset. Ready only with a text, a face, fonts, a measurable text and a background.
void Label_Relayout(LabelState* s) {
    s->ready = 0;
    if (!s->text || !s->face) return;
    DeleteFonts(s);
    s->normalFont = MakeFont(s, s->normalWeight);
    if (!s->normalFont) return;
    s->litFont = MakeFont(s, s->litWeight);
    if (!s->litFont) return;
    int32_t length = s->textSize - 1;
    if (length >= 1) {
        HDC dc = GetDC(s->hwnd);
        SIZE lit = MeasureText(dc, s->litFont, s->text, length);
        SIZE normal = MeasureText(dc, s->normalFont, s->text, length);
        ReleaseDC(s->hwnd, dc);
        int32_t width = lit.cx > normal.cx ? lit.cx : normal.cx;
        int32_t height = lit.cy > normal.cy ? lit.cy : normal.cy;
        if (width >= 2 && height >= 2 && s->background) {
            s->ready = 1;
            ResizeControl(s->hwnd, width + s->shadowOffset, height + s->shadowOffset);
        }
    }
    RepaintNow(s->hwnd);
}

// Draws the background picture's area under the update rectangle; parts outside the picture stay as
// they are.
void Label_PaintBackground(const LabelState* s, HDC dc, const RECT* area) {
    RECT inParent;
    GetWindowRect(s->hwnd, &inParent);
    MapWindowPoints(HWND_DESKTOP, GetParent(s->hwnd), reinterpret_cast<POINT*>(&inParent), 2);
    int32_t pictureWidth, pictureHeight;
    if (!PackedDibSize(s->background, &pictureWidth, &pictureHeight)) return;
    int32_t left = area->left, top = area->top, right = area->right, bottom = area->bottom;
    if (inParent.left + left < 0) left = -inParent.left;
    if (inParent.top + top < 0) top = -inParent.top;
    if (inParent.left + right > pictureWidth) right = pictureWidth - inParent.left;
    if (inParent.top + bottom > pictureHeight) bottom = pictureHeight - inParent.top;
    if (right <= left || bottom <= top) return;
    DrawPackedDib(dc, left, top, right - left, bottom - top, s->background, inParent.left + left,
                  inParent.top + top);
}

void Label_DrawText(const LabelState* s, HDC dc, int32_t x, int32_t y, COLORREF color) {
    HGDIOBJ old = SelectObject(dc, s->lit ? s->litFont : s->normalFont);
    SetTextColor(dc, color);
    TextOutA(dc, x, y, s->text, s->textSize - 1);
    SelectObject(dc, old);
}

void Label_Paint(const LabelState* s, HDC dc, const RECT* area) {
    if (!s->ready) {
        PaintRect(dc, area, nullptr);
        return;
    }
    Label_PaintBackground(s, dc, area);
    SetBkMode(dc, TRANSPARENT);
    bool sunk = s->pressed && s->lit;  // a pressed label drops onto its shadow's place
    if (s->shadow && !sunk) Label_DrawText(s, dc, s->shadowOffset, s->shadowOffset, s->shadowColor);
    int32_t at = sunk ? s->shadowOffset : 0;
    Label_DrawText(s, dc, at, at, s->enabled ? s->textColor : s->disabledColor);
}

void Label_OnPaint(LabelState* s) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(s->hwnd, &ps);
    if (dc) Label_Paint(s, dc, &ps.rcPaint);
    EndPaint(s->hwnd, &ps);
}

bool Label_Reacts(const LabelState* s) { return s->enabled && s->ready; }

void Label_OnMouseMove(LabelState* s) {
    if (!Label_Reacts(s)) return;
    if (!s->pressed) {
        if (s->lit) return;
        s->lit = 1;
        SetTimer(s->hwnd, kHoverTimer, kHoverPollMs, nullptr);
        RepaintNow(s->hwnd);
        NotifyParent(s->hwnd, NOTIFY_ENTERED);
        return;
    }
    bool over = PointerIsOver(s->hwnd);
    if (over && !s->lit) {
        s->lit = 1;
        RepaintNow(s->hwnd);
        NotifyParent(s->hwnd, NOTIFY_ENTERED);
    } else if (!over && s->lit) {
        s->lit = 0;
        RepaintNow(s->hwnd);
        NotifyParent(s->hwnd, NOTIFY_LEFT);
    }
}

void Label_OnLButtonDown(LabelState* s) {
    if (!Label_Reacts(s)) return;
    if (s->lit) KillTimer(s->hwnd, kHoverTimer);
    s->pressed = 1;
    SetCapture(s->hwnd);
    RepaintNow(s->hwnd);
    NotifyParent(s->hwnd, NOTIFY_PRESSED);
}

// Taken whether or not the press began on this label: a press elsewhere released over it is a click.
// Deliberate.
void Label_OnLButtonUp(LabelState* s) {
    if (!Label_Reacts(s)) return;
    HWND hwnd = s->hwnd;
    s->pressed = 0;  // before releasing the capture, whose WM_CAPTURECHANGED must not end the press twice
    ReleaseOwnCapture(hwnd);
    bool over = PointerIsOver(hwnd);
    if (over) {
        s->lit = 1;
        SetTimer(hwnd, kHoverTimer, kHoverPollMs, nullptr);
    } else {
        s->lit = 0;
    }
    RepaintNow(hwnd);
    NotifyParent(hwnd, NOTIFY_RELEASED);
    // The parent may destroy or disable the label from here on: only the locals are used.
    if (over) NotifyParent(hwnd, NOTIFY_CLICKED);
}

void Label_OnCaptureChanged(LabelState* s, HWND newOwner) {
    if (s->pressed && newOwner != s->hwnd) Label_OnLButtonUp(s);
}

void Label_OnTimer(LabelState* s, UINT_PTR id) {
    if (id != kHoverTimer || !Label_Reacts(s) || s->pressed) return;
    if (PointerIsOver(s->hwnd)) return;
    s->lit = 0;
    KillTimer(s->hwnd, kHoverTimer);
    RepaintNow(s->hwnd);
    NotifyParent(s->hwnd, NOTIFY_LEFT);
}

// Disabling does not repaint: the label shows its disabled colour at its next paint. Kept so.
LRESULT Label_OnSetEnable(LabelState* s, bool enable) {
    if (!enable && s->enabled) {
        if (s->pressed) {
            s->pressed = 0;  // ends the press silently: no release event
            ReleaseOwnCapture(s->hwnd);
        }
        if (s->lit) KillTimer(s->hwnd, kHoverTimer);
        s->lit = 0;
    }
    s->enabled = enable;
    return 1;
}

LRESULT Label_OnSetText(LabelState* s, const char* text) {
    if (!text) return 0;
    int32_t length = int32_t(strnlen(text, kLabelTextLimit));
    if (length == 0 || length >= kLabelTextLimit) return 0;
    if (!StoreString(&s->text, &s->textSize, text, length)) return 0;
    Label_Relayout(s);
    return 1;
}

LRESULT Label_OnSetFace(LabelState* s, const char* face) {
    if (!face) return 0;
    int32_t length = int32_t(strnlen(face, kLabelFaceLimit));
    if (length >= kLabelFaceLimit) return 0;
    if (!StoreString(&s->face, &s->faceSize, face, length)) return 0;
    Label_Relayout(s);
    return 1;
}

// Copies at most size - 1 characters and terminates; the result is the count copied.
LRESULT Label_OnGetText(const LabelState* s, char* buffer, WPARAM size) {
    if (!buffer || size == 0) return 0;
    size_t length = s->text ? size_t(s->textSize - 1) : 0;
    if (length > size - 1) length = size - 1;
    if (length) std::memcpy(buffer, s->text, length);
    buffer[length] = 0;
    return LRESULT(length);
}

LRESULT Label_SetNumber(LabelState* s, int32_t* field, int32_t value) {
    *field = value;
    Label_Relayout(s);
    return 1;
}

LRESULT Label_SetColor(LabelState* s, COLORREF* field, COLORREF value) {
    *field = value;
    RepaintNow(s->hwnd);
    return 1;
}

LRESULT Label_OnCreate(HWND hwnd) {
    auto* s = static_cast<LabelState*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(LabelState)));
    if (!s) return -1;
    s->hwnd = hwnd;
    s->enabled = 1;
    s->height = 10;
    s->shadowColor = 0x000000;
    s->textColor = 0xFFFFFF;
    s->disabledColor = 0xA4A0A0;
    s->shadowOffset = 2;
    s->normalWeight = 400;
    s->litWeight = 700;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    return 0;
}

void Label_OnDestroy(LabelState* s) {
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    FreeString(&s->text);
    FreeString(&s->face);
    DeleteFonts(s);
    HeapFree(GetProcessHeap(), 0, s);
}

}  // namespace

LRESULT CALLBACK TextLabelProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* s = reinterpret_cast<LabelState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!s) {
        if (message == WM_CREATE) return Label_OnCreate(hwnd);
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    switch (message) {
    case WM_PAINT: Label_OnPaint(s); return 0;
    case WM_ERASEBKGND: return 1;  // the background picture covers the label
    case WM_MOUSEMOVE: Label_OnMouseMove(s); return 0;
    case WM_LBUTTONDOWN: Label_OnLButtonDown(s); return 0;
    case WM_LBUTTONUP: Label_OnLButtonUp(s); return 0;
    case WM_CAPTURECHANGED: Label_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_TIMER: Label_OnTimer(s, wParam); return 0;
    case WM_CLOSE: DestroyWindow(hwnd); return 0;
    case WM_DESTROY: Label_OnDestroy(s); return 0;
    case PM_GETENABLE: return s->enabled;
    case PM_SETENABLE: return Label_OnSetEnable(s, lParam != 0);
    case PM_GETIMAGE: return reinterpret_cast<LRESULT>(s->background);
    case PM_SETIMAGE:
        s->background = reinterpret_cast<const uint8_t*>(lParam);
        Label_Relayout(s);
        return 1;
    case PM_TXT_GETSHADOW: return s->shadow;
    case PM_TXT_SETSHADOW:
        s->shadow = lParam != 0;
        Label_Relayout(s);
        return 1;
    case PM_TXT_GETSHADOWCOLOR: return LRESULT(s->shadowColor);
    case PM_TXT_SETSHADOWCOLOR: return Label_SetColor(s, &s->shadowColor, COLORREF(lParam));
    case PM_TXT_GETTEXTCOLOR: return LRESULT(s->textColor);
    case PM_TXT_SETTEXTCOLOR: return Label_SetColor(s, &s->textColor, COLORREF(lParam));
    case PM_TXT_GETDISABLEDCOLOR: return LRESULT(s->disabledColor);
    case PM_TXT_SETDISABLEDCOLOR: return Label_SetColor(s, &s->disabledColor, COLORREF(lParam));
    case PM_TXT_GETSHADOWOFFSET: return s->shadowOffset;
    case PM_TXT_SETSHADOWOFFSET: return Label_SetNumber(s, &s->shadowOffset, int32_t(lParam));
    case PM_TXT_GETHEIGHT: return s->height;
    case PM_TXT_SETHEIGHT: return Label_SetNumber(s, &s->height, int32_t(lParam));
    case PM_TXT_GETNORMALWEIGHT: return s->normalWeight;
    case PM_TXT_SETNORMALWEIGHT: return Label_SetNumber(s, &s->normalWeight, int32_t(lParam));
    case PM_TXT_GETLITWEIGHT: return s->litWeight;
    case PM_TXT_SETLITWEIGHT: return Label_SetNumber(s, &s->litWeight, int32_t(lParam));
    case PM_TXT_GETTEXT: return Label_OnGetText(s, reinterpret_cast<char*>(lParam), wParam);
    // The standard text queries answer too, so programs that read windows (screen readers, our
    // end-to-end probe in another process) see what the label shows.
    case WM_GETTEXT: return Label_OnGetText(s, reinterpret_cast<char*>(lParam), wParam);
    case WM_GETTEXTLENGTH: return s->text ? LRESULT(s->textSize - 1) : 0;
    case PM_TXT_SETTEXT: return Label_OnSetText(s, reinterpret_cast<const char*>(lParam));
    case PM_TXT_SETFACE: return Label_OnSetFace(s, reinterpret_cast<const char*>(lParam));
    default:
        if (message >= PM_FIRST && message <= PM_LAST) return 1;
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}
