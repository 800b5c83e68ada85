// The program's message loop.
#pragma once

#include <windows.h>

// A WM_CHAR for a child window is first offered to its parent as PM_CHILDCHAR; true when the parent
// answered non-zero and the character is therefore swallowed.
bool OfferChildChar(const MSG* msg);
// Runs until WM_QUIT and returns its wParam. After every dispatched message, pending paints are
// dispatched at once, so redrawing keeps up with dragging.
int RunMessageLoop();
