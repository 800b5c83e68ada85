// Cutting the photograph into pieces: pattern sampling, the sheet of cut-out pixels, the outline index
// and the scatter of a new game.
#pragma once

#include <cstdint>

#include "puzzle/model.h"

constexpr int32_t kPatternCell = 200;         // pattern pixels per cell, each way
constexpr int32_t kPatternMargin = 66;        // pattern pixels around the cells, each side
constexpr int32_t kPatternLastSample = 331;   // the last pixel of a cell's 332-pixel neighbourhood

// The region numbers a piece meets in its pattern cell: its own, and the tabs of its four neighbours
// (numbers from patternRows * patternColumns + 1 on for tabs that come from beyond the pattern's border).
struct PatternRegions {
    uint32_t own, up, right, down, left;
};
PatternRegions PieceRegions(uint32_t patternRows, uint32_t patternColumns, int32_t row, int32_t column);

// Where box column (or row) pos of a piece samples its cell's neighbourhood, 0 .. 331: the cell proper
// (margin .. margin + cell) maps onto 66 .. 266. Computed exactly in integers: the floating-point form of
// the same quotient rounds differently for a piece and its neighbour at a few cell sizes (cell 44, box
// column 47), which would leave a pixel in two pieces or in none.
int32_t PatternSample(int32_t pos, int32_t cell, int32_t margin);

// The two drag surfaces a cut asks the board for: the background store holds one box, the composition
// surface two boxes each way.
struct DragSurfaceSizes {
    int32_t backgroundWidth, backgroundHeight;
    int32_t compositionWidth, compositionHeight;
};
DragSurfaceSizes DragSurfaceSizesFor(int32_t boxWidth, int32_t boxHeight);

// Cuts the photograph (a packed DIB of 8 or 24 bits) into p->rows x p->cols pieces at p->scale with
// the cut pattern (an 8-bit packed DIB of patternColumns * 200 + 132 by patternRows * 200 + 132 pixels,
// loaded by the caller from the pack as patternId). With scatter the pieces are strewn over the lower
// half of the table and shuffled for a new game; without it the caller restores the piece table and the
// runs. False without a usable photograph or pattern or when the scaled photograph is under 45 pixels
// either way (the puzzle is then untouched), and when memory or the drag surfaces cannot be had (the
// puzzle is then cleared).
bool CutPuzzle(PuzzleState* p, const uint8_t* image, const uint8_t* pattern, uint32_t patternRows,
               uint32_t patternColumns, uint32_t patternId, bool scatter);

// Rebuilds the outline index from the sheet's inside flags. The cut builds it as it fills the sheet; call
// this after filling a sheet any other way. False when memory is short (the index is then absent).
bool IndexPieceOutlines(PuzzleState* p);

// A shape block of the outline index: a table of H + 1 byte offsets (from the block's start), one per box
// row to its record (a span count, the byte offset of the row's colours within a piece's colour area,
// the spans), the last one the size of a piece's colour area, where the rows' colours lie back to back,
// 3 bytes a pixel.
struct OutlineRow {
    const OutlineSpan* spans;
    uint32_t count;
    const uint8_t* pixels;  // blue, green, red of the spans' pixels, one span after the other
};
inline const uint8_t* PieceShape(const PuzzleState* p, uint32_t piece) {
    return p->outlineShapes + p->outlineShape[piece];
}
inline const uint8_t* PieceColours(const PuzzleState* p, uint32_t piece) {
    return p->outlineColours + p->outlineColour[piece];
}
inline OutlineRow PieceOutlineRow(const PuzzleState* p, uint32_t piece, int32_t y) {
    const uint8_t* shape = PieceShape(p, piece);
    const uint32_t* record = reinterpret_cast<const uint32_t*>(shape + reinterpret_cast<const uint32_t*>(shape)[y]);
    OutlineRow r;
    r.count = record[0];
    r.spans = reinterpret_cast<const OutlineSpan*>(record + 2);
    r.pixels = PieceColours(p, piece) + record[1];
    return r;
}
