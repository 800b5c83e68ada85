// The panels' own dragging, shared by every movable screen that follows the pointer the same way.
#include "controls/window_drag_win32.h"

void WindowDrag_Begin(WindowDrag* drag, HWND window, int x, int y) {
    if (drag->active) return;
    drag->active = true;
    drag->anchor = POINT{x, y};
    ClientToScreen(window, &drag->anchor);
    SetCapture(window);
}

void WindowDrag_Move(WindowDrag* drag, HWND window, int x, int y) {
    if (!drag->active) return;
    POINT now = {x, y};
    ClientToScreen(window, &now);
    if (now.x == drag->anchor.x && now.y == drag->anchor.y) return;
    RECT at = {};
    GetWindowRect(window, &at);
    SetWindowPos(window, nullptr, at.left + now.x - drag->anchor.x, at.top + now.y - drag->anchor.y, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOOWNERZORDER | SWP_NOACTIVATE);
    drag->anchor = now;
}

void WindowDrag_End(WindowDrag* drag, HWND window) {
    if (!drag->active) return;
    drag->active = false;  // before the release, whose WM_CAPTURECHANGED must find the drag over
    if (GetCapture() == window) ReleaseCapture();
}

void WindowDrag_OnCaptureChanged(WindowDrag* drag, HWND window, HWND newOwner) {
    if (newOwner != window) drag->active = false;
}
