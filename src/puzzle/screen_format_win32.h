// The screen's pixel format as dragging needs it, and the two drag surfaces every cut makes: the
// background store (one piece box, compatible with the screen) and the composition section (two boxes
// each way, at the screen's own format) in which a drag step is put together before one copy to the screen.
#pragma once

#include <windows.h>

#include <cstdint>

#include "puzzle/drag_pixels.h"

// A bitmap's header and colour masks as GetDIBits reports them.
struct BitmapFormat {
    BITMAPINFOHEADER header;
    DWORD masks[3];  // red, green, blue; meaningful when header.biCompression is BI_BITFIELDS
};

// Asks GetDIBits twice about the bitmap: first for its header, then, with that header, for the colour
// masks that follow it. False when GDI answers neither.
bool ReadBitmapFormat(HDC dc, HBITMAP bitmap, BitmapFormat* out);
// How the drag surfaces learn the screen's format: ReadBitmapFormat, unless a test plays another screen.
extern bool (*g_readScreenFormat)(HDC dc, HBITMAP bitmap, BitmapFormat* out);

struct DragSurfaces {
    bool ready;
    int32_t width, height;            // the piece box; the composition section is twice that each way
    ScreenFormat format;              // how the dragged piece's pixels are written
    HDC backgroundDc;                 // the background store: what lies under the dragged piece
    HBITMAP background;
    HGDIOBJ backgroundSaved;          // the DC's own bitmap, put back on release
    HDC compositionDc;                // the composition section
    HBITMAP composition;
    HGDIOBJ compositionSaved;
    PixelSurface compositionPixels;   // the section's bits, written directly when the piece is drawn
};
extern DragSurfaces g_dragSurfaces;

// Makes both surfaces for a box of width x height (releasing the old ones first). False, with nothing
// made, when the screen's format is not one a drag can draw in (palettes, 16 or 32 bits without masks)
// or GDI is short of memory.
bool PrepareDragSurfaces(int32_t width, int32_t height);
void ReleaseDragSurfaces();
