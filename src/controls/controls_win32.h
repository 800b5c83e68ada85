// Registration of the skinned control classes and the small helpers every control shares.
#pragma once

#include <windows.h>

#include <cstdint>

// Registers `CQMCOMMAND`, `CQMBOXSCOMMAND`, `CQMCHECK`, `CQMSLIDE`, `CQMSROLL`, `CQMANIM` and `CQMTXT`, in
// that order.
// True when every class is registered (a class already registered by this module counts).
bool RegisterControlClasses(HINSTANCE instance);

// Tells the parent what happened: PM_NOTIFY with the event in wParam and the control in lParam. Sent,
// not posted, so the parent may destroy the control before this returns.
void NotifyParent(HWND hwnd, int event);
// Is the window under the real pointer this control?
bool PointerIsOver(HWND hwnd);
// Is the window under a point of the control's client area (e.g. a captured WM_MOUSEMOVE) this control?
bool ClientPointIsOver(HWND hwnd, int x, int y);
// Releases the mouse capture only while this control holds it: a press ended because another window
// took the capture must not take it away from that window again.
void ReleaseOwnCapture(HWND hwnd);
// Invalidates the whole control and paints it before returning.
void RepaintNow(HWND hwnd);
// Resizes without moving, reordering or activating.
void ResizeControl(HWND hwnd, int32_t width, int32_t height);
// Width and height of a packed DIB from its header; false for none or a size below 1.
bool PackedDibSize(const uint8_t* dib, int32_t* width, int32_t* height);

// Signed client coordinates of a mouse message.
inline int MouseX(LPARAM lParam) { return static_cast<short>(LOWORD(lParam)); }
inline int MouseY(LPARAM lParam) { return static_cast<short>(HIWORD(lParam)); }

// Timer ids the controls use.
constexpr UINT_PTR kHoverTimer = 1;    // notices the pointer leaving without capturing the mouse
constexpr UINT kHoverPollMs = 120;
constexpr UINT_PTR kAnimTickTimer = 2;   // `CQMANIM`: ticks the parent while running
constexpr UINT_PTR kRepeatDelayTimer = 2;  // `CQMSROLL`: before auto-repeat starts
constexpr UINT_PTR kRepeatTimer = 3;       // `CQMSROLL`: auto-repeat
