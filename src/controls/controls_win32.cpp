// Registration of the skinned control classes and the helpers they share.
#include "controls/controls_win32.h"

#include "controls/animation_win32.h"
#include "controls/check_box_win32.h"
#include "controls/command_button_win32.h"
#include "controls/control_messages.h"
#include "controls/scroll_control_win32.h"
#include "controls/slider_win32.h"
#include "controls/text_label_win32.h"
#include "gfx/dib.h"

static bool RegisterControlClass(HINSTANCE instance, const char* name, WNDPROC procedure, UINT style) {
    WNDCLASSA wc = {};
    wc.style = style;
    wc.lpfnWndProc = procedure;
    wc.hInstance = instance;
    wc.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));  // IDC_ARROW
    wc.lpszClassName = name;
    return RegisterClassA(&wc) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

bool RegisterControlClasses(HINSTANCE instance) {
    bool ok = RegisterControlClass(instance, "CQMCOMMAND", CommandButtonProc, 0);
    ok = RegisterControlClass(instance, "CQMBOXSCOMMAND", CommandButtonProc, 0) && ok;
    ok = RegisterControlClass(instance, "CQMCHECK", CheckBoxProc, 0) && ok;
    ok = RegisterControlClass(instance, "CQMSLIDE", SliderProc, 0) && ok;
    ok = RegisterControlClass(instance, "CQMSROLL", ScrollControlProc, 0) && ok;
    // The animation keeps one DC for its life: its FrameSprite draws straight onto it.
    ok = RegisterControlClass(instance, "CQMANIM", AnimationProc, CS_OWNDC) && ok;
    ok = RegisterControlClass(instance, "CQMTXT", TextLabelProc, 0) && ok;
    return ok;
}

void NotifyParent(HWND hwnd, int event) {
    SendMessageA(GetParent(hwnd), PM_NOTIFY, WPARAM(event), reinterpret_cast<LPARAM>(hwnd));
}

bool PointerIsOver(HWND hwnd) {
    POINT p;
    if (!GetCursorPos(&p)) return false;
    return WindowFromPoint(p) == hwnd;
}

bool ClientPointIsOver(HWND hwnd, int x, int y) {
    POINT p = {x, y};
    ClientToScreen(hwnd, &p);
    return WindowFromPoint(p) == hwnd;
}

void ReleaseOwnCapture(HWND hwnd) {
    if (GetCapture() == hwnd) ReleaseCapture();
}

void RepaintNow(HWND hwnd) {
    InvalidateRect(hwnd, nullptr, FALSE);
    UpdateWindow(hwnd);
}

void ResizeControl(HWND hwnd, int32_t width, int32_t height) {
    SetWindowPos(hwnd, nullptr, 0, 0, width, height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

bool PackedDibSize(const uint8_t* dib, int32_t* width, int32_t* height) {
    *width = *height = 0;
    if (!dib) return false;
    *width = DibHeaderOf(dib)->biWidth;
    *height = DibHeaderOf(dib)->biHeight;
    return *width >= 1 && *height >= 1;
}
