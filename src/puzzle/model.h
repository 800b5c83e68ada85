// The one puzzle in memory: grid and piece sizes, the sheet of cut-out piece pixels, the piece table
// and the seven views (six trays and the table) whose runs share one order array.
#pragma once

#include <cstdint>

#include "gfx/geometry.h"

struct PieceRecord {
    uint32_t group;  // 0 alone; else the largest (index + 1) among the pieces that formed the group
    uint8_t lit;     // 1 plain; 0 selected by the selection rectangle (drawn stippled)
    uint8_t unused[3];
    int32_t x;       // top-left of the piece's box in the coordinates of the view that holds it
    int32_t y;
};
static_assert(sizeof(PieceRecord) == 16, "piece records are stored as 16-byte blocks in saved games");

// One view's run of piece indices inside the shared order array, topmost piece first.
struct ViewList {
    uint32_t count;
    uint32_t* entries;
};

// What a view shows on screen: a 24-bit bottom-up picture, rows padded to 4 bytes.
struct ViewSurface {
    int32_t width, height;
    int32_t stride;   // (3 * width + 3) rounded down to a multiple of 4
    int32_t lastRow;  // height - 1
    uint8_t* pixels;
    void* window;     // the view's window, for the window layer
};

constexpr int kViewCount = 7;
constexpr int kTrayCount = 6;
constexpr int kTableView = 6;
constexpr int32_t kSmallestCutSide = 45;  // a scaled image below this in either direction cannot be cut

// One run of inside pixels on a row of a piece's box, columns begin .. end - 1 counted from the box's left.
struct OutlineSpan {
    int32_t begin, end;
};

struct PuzzleState {
    int32_t rows, cols;
    double scale;                      // applied to the photograph before cutting
    int32_t cellWidth, cellHeight;     // w, h: one grid cell in table pixels
    int32_t boxWidth, boxHeight;       // W, H: a cell plus the tab margins on both sides
    int32_t sheetWidth;                // W * cols
    int32_t sheetLastRow;              // H * rows - 1
    uint32_t* sheet;                   // PieceSheet: BGR plus an inside flag in byte 3, bottom-up
    PieceRecord* pieces;               // rows * cols records
    uint32_t* order;                   // all seven view runs, back to back
    uint32_t* scratch;                 // work array for moving a run of entries
    uint32_t* renderPiece;             // renderer work arrays, rows * cols each
    uint32_t* renderRow;
    uint32_t* renderColumn;
    ViewList views[kViewCount];        // 0..5 trays, 6 the table
    ViewSurface surfaces[kViewCount];
    int32_t tableWidth, tableHeight;   // screen width - 77, screen height - 128
    uint32_t patternRows, patternColumns, patternId;
    uint8_t clockPending;              // from a cut until the first grab starts the clock
    uint8_t puzzle_dirty;              // changed since cut, save or load
    uint8_t finished;                  // shown complete; no drop joins anything
    uint32_t timerId;                  // play timer, 0 when none runs
    uint32_t elapsed;                  // seconds of play
    uint32_t hintsUsed;
    uint8_t paused;
    uint32_t dragMode;                 // 0 none, 1 piece, 2 selection rectangle
    // The outline index, made with the sheet, so that drawing copies runs instead of testing box pixels.
    // Pieces of one shape share a shape block (a cut has a few dozen: a piece's pattern cell and its place
    // on the border decide its outline); every piece has its own colour area, 3 bytes per inside pixel, so
    // that composing reads a piece's colours from one place rather than from H rows of the wide sheet.
    // Read it through PieceOutlineRow (puzzle/cut.h). Released with the sheet.
    uint8_t* outlineShapes;            // the shape blocks
    uint32_t* outlineShape;            // per piece: the byte offset of its shape block
    uint8_t* outlineColours;           // the colour areas, piece after piece
    uint64_t* outlineColour;           // per piece: the byte offset of its colour area
};

// The program's one puzzle, owned by the board.
extern PuzzleState g_puzzle;

// What the window layer does when the model changes views; any hook may be left null.
struct PuzzleHooks {
    void (*viewEmptied)(int view);  // a tray's view lost its last piece (drops report the table's too)
    void (*viewFilled)(int view);   // a tray's view got its first piece (drops report the table's too)
    void (*repaintView)(int view);
    void (*stopClock)();            // kill the play timer
    void (*restoreCursor)();        // back to the arrow
    // The board's part of the engine's work; the pixels are already composed when these run.
    void (*invalidateRect)(int view, Rect area);  // the view's picture changed there: paint it later
    void (*updateView)(int view);                 // paint the invalid parts now
    void (*hideTray)(int view);                   // hide the tray window that holds the view
    void (*startClock)();                         // the first grab after a cut starts the play timer
    void (*showClock)(const char* text);          // "HH:MM:SS" for the title bar
    void (*joinSound)();                          // a drop joined two pieces
    void (*puzzleCompleted)();                    // the playing screen's end-of-game step
    void (*enableSave)();                         // the puzzle changed: enable the save button
    void (*waitCursor)();                         // a long operation starts
    void (*refitPreview)();                       // a new cut: fit the picture preview to the image
    // Makes the background store (width x height, the box size) and the composition surface (twice
    // each way) at the screen's format; false when the screen format is not usable for dragging.
    bool (*prepareDragSurfaces)(int32_t width, int32_t height);
    void (*restoreDragBackground)();              // put the background store back under the dragged piece
};
extern PuzzleHooks g_puzzleHooks;

// Sizes derived from the photograph, the zoom and the grid; all divisions truncate.
struct PuzzleGeometry {
    int32_t scaledWidth, scaledHeight;  // sw, sh
    int32_t cellWidth, cellHeight;      // w, h
    int32_t marginX, marginY;           // mx = trunc(0.33 * w), my = trunc(0.33 * h)
    int32_t boxWidth, boxHeight;        // W, H
};

// False when the scaled photograph is under 45 pixels in either direction or the grid is empty.
bool ComputePuzzleGeometry(int32_t imageWidth, int32_t imageHeight, double scale, int32_t rows, int32_t cols,
                           PuzzleGeometry* out);
// Allocates the sheet, the piece table and the five index arrays for a cut and records the sizes.
// On failure everything is released and false returned; the puzzle is then Empty.
bool AllocatePuzzle(PuzzleState* p, const PuzzleGeometry& g, int32_t rows, int32_t cols, double scale);
// Releases the sheet and arrays, tells every non-empty tray it is empty, zeroes the counts, optionally
// repaints every view, clears clockPending, stops the clock and restores the arrow.
void ClearPuzzle(PuzzleState* p, bool repaint);
bool HasPuzzle(const PuzzleState* p);
bool IsPuzzleChangedSinceSave(const PuzzleState* p);
// Every piece in the table, in index order.
void PutAllPiecesOnTable(PuzzleState* p);

inline uint32_t PieceCount(const PuzzleState* p) { return uint32_t(p->rows) * uint32_t(p->cols); }
inline int32_t PieceRow(const PuzzleState* p, uint32_t i) { return int32_t(i / uint32_t(p->cols)); }
inline int32_t PieceColumn(const PuzzleState* p, uint32_t i) { return int32_t(i % uint32_t(p->cols)); }
Rect PieceBox(const PuzzleState* p, uint32_t i);
// Where piece i's box lies when the puzzle is shown complete, centred in the table.
Point PieceHomePosition(const PuzzleState* p, uint32_t i);
// Piece i's sheet pixel at box position (x, y), y counted from the box's top.
uint32_t* SheetPixel(const PuzzleState* p, uint32_t i, int32_t x, int32_t y);

// Index in order where view's run starts.
uint32_t ViewStart(const PuzzleState* p, int view);
// Points every view's entries at its place in order, the runs back to back in view order.
void RelinkViewRuns(PuzzleState* p);
// Moves entries first .. first + length - 1 of one view's run to the top of another's (or of the
// same run), through scratch; the runs in between shift and the counts follow.
void MoveRun(PuzzleState* p, int fromView, uint32_t first, uint32_t length, int toView);
// Position of piece i in its view's run, and the view; false when the index is not in order.
bool FindPieceInViews(const PuzzleState* p, uint32_t piece, int* view, uint32_t* position);

// Complete: the table holds every piece and every group equals rows * cols.
bool IsPuzzleComplete(const PuzzleState* p);
// The model's invariants: every index once in order, runs back to back, counts adding up, group
// members in one view at exact cell offsets. Tests and debug checks call it.
bool PuzzleInvariantsHold(const PuzzleState* p);
