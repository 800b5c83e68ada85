// ImageObject (one bitmap, held either in its own memory DC or as a packed DIB block) and the
// helpers that put packed DIBs on device contexts through DrawDib.
#pragma once

#include <windows.h>

#include <cstdint>

#include "gfx/geometry.h"

struct ImageObject {
    HDC dc;                       // memory DC, made in both modes
    HBITMAP savedBitmap;          // the DC's initial bitmap, put back on destroy
    HPALETTE savedPalette;        // the DC's initial palette, put back on destroy
    bool ownsBitmap;              // the selected bitmap is ours to delete when replaced
    int32_t allocWidth, allocHeight;  // size of the GDI bitmap or the block actually allocated
    int32_t width, height;        // logical size in use (memory-DC mode)
    uint8_t paletteShared;        // the selected palette belongs to someone else: never delete it
    uint8_t memoryDcMode;         // 1 memory-DC mode, 0 packed-DIB mode; fixed at construction
    uint8_t* block;               // packed-DIB mode: the owned packed DIB
};

void ImageObject_Init(ImageObject* image, bool memoryDcMode);
void ImageObject_Destroy(ImageObject* image);
// Packed-DIB mode: the pack item (the previous block is freed only when the new one is in).
// Memory-DC mode: the module's BITMAP resource id & 0xFFFF, attached with its palette.
bool ImageObject_LoadFromPack(ImageObject* image, uint32_t id);
// Memory-DC mode: selects the bitmap and builds its palette (16 entries for 4 bits, 256 for 8, none
// for 1, 16, 24 and 32; other depths take paletteEntries).
bool ImageObject_Attach(ImageObject* image, HBITMAP bitmap, bool takeOwnership, int paletteEntries);
// Memory-DC mode: a request inside the allocated bitmap only changes the logical size unless exact.
// Packed-DIB mode: a fresh 8-bit block of that size.
bool ImageObject_SetSize(ImageObject* image, int32_t width, int32_t height, bool exact);
void ImageObject_GetSize(const ImageObject* image, int32_t* width, int32_t* height);
HDC ImageObject_Dc(const ImageObject* image);
HBITMAP ImageObject_Bitmap(const ImageObject* image);
HPALETTE ImageObject_Palette(const ImageObject* image);
void ImageObject_RealizePalette(const ImageObject* image);
uint8_t* ImageObject_Dib(const ImageObject* image);
// Packed-DIB mode: takes ownership of a block made elsewhere, freeing the previous one.
void ImageObject_SetDib(ImageObject* image, uint8_t* dib);

// Draws the width x height area of dib at (sx, sy) (rows from the top) to (x, y) on dc. A DrawDib
// context is opened and closed on every call.
void DrawPackedDib(HDC dc, int32_t x, int32_t y, int32_t width, int32_t height, const uint8_t* dib, int32_t sx,
                   int32_t sy);
// Repaints one rectangle: from the same rectangle of dib, or black when there is none.
void PaintRect(HDC dc, const RECT* rect, const uint8_t* dib);
void InvalidateArea(HWND window, Point position, Point size, bool erase);
