// Composing a view's 24-bit picture from the piece sheet: the plain reference composer that states the
// rule, the fast composer the game uses, and RepaintRect with its 5 x 5 tiling of large repaints.
#pragma once

#include <cstdint>

#include "gfx/dib.h"
#include "gfx/geometry.h"
#include "puzzle/model.h"

constexpr int32_t kTextureSize = 100;  // the table cloth is a 100 x 100 8-bit bitmap, tiled

// The cloth under the pieces of every view: the bitmap as given, and its texel rows expanded to blue,
// green, red from the top, two periods wide so that any 100 texels of a row are one copy.
struct TableTexture {
    bool present;  // without a texture the cloth is black
    uint8_t dib[kDibPixelOffset + kTextureSize * kTextureSize];
    uint8_t rows[kTextureSize][2 * kTextureSize * 3];
};
extern TableTexture g_tableTexture;

// Takes a 100 x 100 8-bit packed DIB as the cloth (a copy is kept) and repaints every view that has a
// surface, with or without a puzzle on it. Anything else (or null) leaves a black cloth and returns false.
bool SetTableTexture(PuzzleState* p, const uint8_t* texture);

// Clips (x, y, width, height) to the view; false when nothing is left.
bool ClipToView(const ViewSurface& view, Rect* area);
// A clipped repaint wider than a box and taller than one is composed as 5 x 5 tiles measured from the
// view's origin, so it recomposes everything from (0, 0) to its far corner.
bool IsTiledRepaint(const PuzzleState* p, const Rect& clipped);
// Tile (i, j), i and j in 0 .. 4, of a tiled repaint of the clipped rectangle.
Rect RepaintTile(const Rect& clipped, int i, int j);
// The pixels a repaint of the clipped rectangle recomposes.
Rect RepaintArea(const PuzzleState* p, const Rect& clipped);

// The rule, pixel by pixel: candidates are the run's pieces whose boxes overlap the tile (leaving out the
// top entry with skipTop); a pixel takes the colour of the first candidate, topmost first, whose box holds
// it and whose sheet pixel is inside; selected pieces are inverted on every second row at every third
// column; an uncovered pixel takes the cloth. Slow; kept as the definition the fast composer must match.
void ComposeTileReference(PuzzleState* p, int view, const Rect& tile, bool skipTop);
// RepaintRect's pixel work with the reference composer, tile by tile.
void ComposeRectReference(PuzzleState* p, int view, int32_t x, int32_t y, int32_t width, int32_t height,
                          bool skipTop);

// The same pictures, byte for byte, drawn from the outline index: pieces are taken topmost first and only
// the runs of their outlines not yet covered are copied, then the cloth fills what is left.
void ComposeRect(PuzzleState* p, int view, int32_t x, int32_t y, int32_t width, int32_t height, bool skipTop);

// Large areas (a quarter megapixel and up, a full recompose) are composed by the calling thread and one
// helper thread together, each taking bands of rows; smaller ones always by the calling thread alone.
// False keeps every area on the calling thread (the benchmarks and tests compare the two).
extern bool g_composeShared;

// Composes a rectangle of a view's picture and, when asked, invalidates it for the next paint.
void RepaintRect(PuzzleState* p, int view, int32_t x, int32_t y, int32_t width, int32_t height, bool invalidate,
                 bool skipTop);
inline void RepaintRect(PuzzleState* p, int view, const Rect& r, bool invalidate, bool skipTop) {
    RepaintRect(p, view, r.x, r.y, r.width, r.height, invalidate, skipTop);
}
void RepaintView(PuzzleState* p, int view, bool invalidate);

// What the fast composer did since the counters were last zeroed; the benchmarks turn it into bytes.
struct ComposeCounters {
    uint64_t piecePixels;    // pixels taken from the sheet (each read once)
    uint64_t clothPixels;    // pixels taken from the cloth
    uint64_t piecesVisited;  // candidates whose boxes met the area
};
extern ComposeCounters g_composeCounters;
