// Registration of the size chooser, piece-count chooser and picture preview classes, and what the two
// choosers share: the program's cursors, their repaint and their notice to the new-puzzle screen.
#pragma once

#include <windows.h>
#include <vfw.h>

#include <cstdint>

// Registers `CWNDIMAGECANT`, `CWNDIMAGETAM` and `CWNDPREVLUPA`, in that order; false as soon as one
// fails (a class this module registered before counts as registered). The board's `CWNDPUZZLE` is
// registered with them by the full puzzle registration.
bool RegisterChooserAndPreviewClasses(HINSTANCE instance);

// PM_NOTIFY's wParam from a chooser to its parent after a drag changed the zoom or the count.
constexpr int kChooserChanged = 0;

// The program's cursors from the module's resources (the arrow stands in where they are missing).
HCURSOR ProgramNormalCursor();
HCURSOR ProgramDragCursor();
// Makes a cursor the window class's and the current one, so it stays while the pointer is over any
// chooser.
void ShowClassCursor(HWND hwnd, HCURSOR cursor);

// Repaints both chooser windows that exist, at once. Installed as the choosers' repaint hook.
void RepaintChooserWindows();

// Draws the sourceWidth x sourceHeight area of dib at (sx, sy) (rows from the top) stretched to
// width x height at (x, y). Nothing for a missing picture or an empty area.
void DrawDibPart(HDRAWDIB drawDib, HDC dc, int32_t x, int32_t y, int32_t width, int32_t height, const uint8_t* dib,
                 int32_t sx, int32_t sy, int32_t sourceWidth, int32_t sourceHeight);
