// The pixel work of a drag step at the screen's own format: the dragged piece is drawn into the
// composition surface over what the background store kept, and one area goes back to the screen.
#pragma once

#include <cstdint>

#include "gfx/geometry.h"
#include "puzzle/model.h"

// The screen formats a drag can draw in, from the screen-compatible bitmap's header and colour masks.
struct ScreenFormat {
    int32_t bits;                               // 16, 24 or 32
    int32_t redShift, greenShift, blueShift;    // 16 bits: zero bits below each mask
    int32_t redDivisor, greenDivisor, blueDivisor;  // 16 bits: 256 / (channel maximum + 1)
};
constexpr uint32_t kBitFields = 3;  // the header's compression value for colour masks

// 16 bits with masks, 24 bits, or 32 bits with masks; false for anything else (palettes, and 16 or 32
// bits without masks), which cannot be dragged on.
bool DescribeScreenFormat(int32_t bits, uint32_t compression, uint32_t redMask, uint32_t greenMask,
                          uint32_t blueMask, ScreenFormat* out);
// Zero bits below a mask, 32 for an empty one.
int32_t MaskShift(uint32_t mask);
// A 24-bit colour in the screen's format (the low bytes of the result are the pixel's bytes).
uint32_t ScreenPixel(const ScreenFormat& f, uint8_t blue, uint8_t green, uint8_t red);

// Pixels at a screen format, rows bottom-up, addressed from the top.
struct PixelSurface {
    uint8_t* bits;
    int32_t width, height;
    int32_t stride;         // ((bitsPerPixel * width + 31) / 32) * 4
    int32_t bytesPerPixel;  // 2, 3 or 4
};
int32_t SurfaceStride(int32_t bitsPerPixel, int32_t width);

// Copies a width x height area between surfaces of one format, clipped to both.
void CopySurfaceArea(PixelSurface* to, int32_t x, int32_t y, const PixelSurface* from, int32_t fromX,
                     int32_t fromY, int32_t width, int32_t height);
// Copies an area of a view's 24-bit picture into a surface at (0, 0), converting to its format: the
// press fills the background store so.
void CopyViewToSurface(const ViewSurface& view, int32_t x, int32_t y, int32_t width, int32_t height,
                       const ScreenFormat& f, PixelSurface* to);
// Draws piece's inside pixels with its box at (x, y), clipped to the surface; a selected piece gets the
// marking stipple.
void DrawPieceOnSurface(const PuzzleState* p, uint32_t piece, const ScreenFormat& f, PixelSurface* to, int32_t x,
                        int32_t y);

// Puts the background store back on a screen at the box's old position (the piece leaves that window).
void RestoreDragBackground(const PuzzleState* p, PixelSurface* screen, const PixelSurface* background, Point oldPos);
// The piece appears at newPos on a screen with nothing of it there yet: what lies under the box goes to the
// background store, the piece is drawn over it in the composition surface and the box is copied to the
// screen. Returns the area written.
Rect DragEnterPixels(const PuzzleState* p, uint32_t piece, const ScreenFormat& f, PixelSurface* screen,
                     PixelSurface* background, PixelSurface* composition, Point newPos);
// One drag step inside one window whose pixels are `screen`: the background store (one box) goes back
// under the old position, what lies under the new one is kept, the piece is drawn there and the area is
// copied to the screen in one go. The composition surface must hold two boxes each way. Returns the area
// of the screen written.
Rect DragStepPixels(const PuzzleState* p, uint32_t piece, const ScreenFormat& f, PixelSurface* screen,
                    PixelSurface* background, PixelSurface* composition, Point oldPos, Point newPos);
