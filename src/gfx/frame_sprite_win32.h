// FrameSprite: draws one frame of a grid of frames (optionally followed row by row by masks) onto a
// DC or a packed DIB, and can save and restore what lay under it.
#pragma once

#include <windows.h>

#include <cstdint>

#include "gfx/image_object_win32.h"

struct FrameSprite {
    HWND window;              // invalidated after drawing, when asked
    HDC targetDc;             // target when targetIsDc
    uint8_t* targetDib;       // target otherwise
    HDC sourceDc;             // source when sourceIsDc
    const uint8_t* sourceDib; // source otherwise
    ImageObject* ownImage;    // the grid, when the sprite loaded it from the pack itself
    ImageObject* backing;     // what lay under the last frame drawn
    int32_t lastX, lastY;     // where the backing store was taken
    int32_t rows, columns;
    uint8_t backgroundSaved;
    uint8_t masked;           // each row of frames is followed by a row of masks
    int32_t frameWidth, frameHeight;
    uint8_t sourceIsDc;
    uint8_t targetIsDc;
};

void FrameSprite_Init(FrameSprite* sprite, HWND window);
void FrameSprite_Destroy(FrameSprite* sprite);
void FrameSprite_SetGrid(FrameSprite* sprite, int32_t rows, int32_t columns);
void FrameSprite_SetSourceDib(FrameSprite* sprite, const uint8_t* dib, bool masked);
// The DC's selected bitmap gives the grid's size.
void FrameSprite_SetSourceDc(FrameSprite* sprite, HDC dc, bool masked);
bool FrameSprite_LoadSource(FrameSprite* sprite, uint32_t id, bool masked);
void FrameSprite_SetTargetDib(FrameSprite* sprite, uint8_t* dib);
void FrameSprite_SetTargetDc(FrameSprite* sprite, HDC dc);
// AND the frame's mask onto the target, then XOR the frame.
void FrameSprite_DrawMasked(FrameSprite* sprite, int32_t index, int32_t x, int32_t y, bool invalidate, bool erase,
                            bool saveBackground);
// One copy of the frame with a raster operation (DrawDib draws always copy).
void FrameSprite_DrawWithRop(FrameSprite* sprite, int32_t index, int32_t x, int32_t y, bool invalidate, bool erase,
                             bool saveBackground, DWORD rop);
void FrameSprite_RestoreBackground(FrameSprite* sprite, bool invalidate, bool erase);
