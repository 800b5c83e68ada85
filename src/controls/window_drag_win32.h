// Moving a panel by holding the button on its own background: press, move, release, capture loss.
#pragma once

#include <windows.h>

struct WindowDrag {
    bool active;   // the window follows the pointer
    POINT anchor;  // the pointer's last screen place while it does
};

// A press at client (x, y) of the window: the drag starts and the window takes the mouse.
void WindowDrag_Begin(WindowDrag* drag, HWND window, int x, int y);
// The window moves by the pointer's movement since the last place, without sizing, reordering or
// activating anything.
void WindowDrag_Move(WindowDrag* drag, HWND window, int x, int y);
void WindowDrag_End(WindowDrag* drag, HWND window);
// Another window took the mouse: the drag is over.
void WindowDrag_OnCaptureChanged(WindowDrag* drag, HWND window, HWND newOwner);
