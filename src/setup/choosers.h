// The size and piece-count choosers' arithmetic and program-wide state: the fit and smallest zooms of
// the chosen image, the piece-count range of a zoom, the zoom and count sliders, and what a drag on
// either chooser makes of the pointer's movement. The result (rows, cols, scale) lives in g_puzzle.
#pragma once

#include <cstdint>

#include "puzzle/model.h"
#include "puzzle/picture.h"

constexpr int32_t kSmallestPieceEdge = 45;   // table pixels: the most pieces a zoom allows
constexpr int32_t kLargestPieceEdge = 150;   // the fewest pieces
constexpr int32_t kFewestRowsOrColumns = 2;  // a puzzle is never thinner than 2 x 2
constexpr int32_t kSmallestShownSide = 135;  // zoom_min makes the image's smaller side this long
// Both choosers fill this area of the new-puzzle screen (its client coordinates).
constexpr int32_t kChooserAreaLeft = 115;
constexpr int32_t kChooserAreaTop = 61;
constexpr int32_t kChooserAreaWidth = 250;
constexpr int32_t kChooserAreaHeight = 160;
// The table is the screen less these margins, as the board lays it out.
constexpr int32_t kTableWidthMargin = 77;
constexpr int32_t kTableHeightMargin = 128;

// The piece counts a zoom allows.
struct PieceRange {
    int32_t rows_min, rows_max, cols_min, cols_max;
    int32_t count_steps;                  // (rows_max - rows_min) + (cols_max - cols_min)
    double rows_per_step, cols_per_step;  // 0 when count_steps is 0 (a single slider position)
};

struct PieceGrid {
    int32_t rows, cols;
};

struct ChooserState {
    bool image_chosen;                // while false every operation does nothing
    int32_t imageWidth, imageHeight;  // W, H of the chosen image
    int32_t tableWidth, tableHeight;  // A, B
    double zoom_fit;                  // the image just fits the table; the largest zoom is twice this
    double zoom_min;                  // the image's smaller side becomes 135 table pixels
    PieceRange range;                 // for the current zoom
    int32_t piece_edge;               // nominal piece edge in table pixels, 45 .. 150
    PictureFit frame;                 // the table in 250 x 160: scale is frame_scale, width FW, height FH
    PictureFit countFit;              // the image in 250 x 160: width TW, height TH
    int32_t countLeft, countTop;      // OX, OY: the count chooser's picture centred in its window
    uint8_t* sizeCopy;                // the image at frame_scale (packed DIB), or null
    uint8_t* countCopy;               // the image at TW x TH (packed DIB), or null
};

// ---- Pure arithmetic ----

// A / W when the image's height at that zoom fits the table (H * A / W <= B), else B / H.
double FitZoom(int32_t imageWidth, int32_t imageHeight, int32_t tableWidth, int32_t tableHeight);
// 135 / min(W, H).
double SmallestZoom(int32_t imageWidth, int32_t imageHeight);
// The table area scaled down to fit 250 x 160 (frame_scale, FW, FH).
PictureFit FitTableFrame(int32_t tableWidth, int32_t tableHeight);
// Everything of a newly chosen image but its copies: sizes, zooms, the two fits and the picture's
// centring offsets. image_chosen, the range and piece_edge are left alone.
void SetUpSizing(ChooserState* s, int32_t imageWidth, int32_t imageHeight, int32_t tableWidth,
                 int32_t tableHeight);

struct ChooserRect {
    int32_t x, y, width, height;
};
// The size chooser's window on the new-puzzle screen: FW x FH centred in the chooser area.
ChooserRect SizeChooserRect(const PictureFit& frame);
// Where the size chooser draws its copy (copyWidth x copyHeight) at a zoom: stretched to
// trunc(copy side * zoom), centred in the frame (halves truncated toward zero, so it may start left of
// or above the window when the zoom exceeds the fit).
ChooserRect ZoomedCopyRect(const PictureFit& frame, int32_t copyWidth, int32_t copyHeight, double zoom);

// The counts at a zoom (the image covers W * zoom by H * zoom table pixels): at most one piece per 45
// pixels, at least one per 150, never fewer than 2 either way.
PieceRange PieceRangeAt(int32_t imageWidth, int32_t imageHeight, double zoom);
// The count slider at position k: rows and columns grow together from the fewest to the most pieces.
// k is held to 0 .. count_steps.
PieceGrid GridAtCountPosition(const PieceRange& range, int32_t position);
// (R - rows_min) + (C - cols_min).
int32_t CountPositionOf(const PieceRange& range, PieceGrid grid);
// trunc((Hs / R + Ws / C) * 0.5): the mean edge of a piece of that grid at the zoom.
int32_t PieceEdgeOf(int32_t imageWidth, int32_t imageHeight, double zoom, PieceGrid grid);
// The grid whose pieces have about that edge: max(2, trunc(Ws / e)) columns, likewise rows.
PieceGrid GridForPieceEdge(int32_t imageWidth, int32_t imageHeight, double zoom, int32_t edge);

// Zoom slider: 0 at zoom_min, 100 at twice zoom_fit. A zoom set from a percentage reads back as that
// percentage (the truncation forgives the last bits of rounding).
int32_t ZoomPercentOf(const ChooserState& s, double zoom);
double ZoomAtPercent(const ChooserState& s, int32_t percent);
// 1.0, raised to zoom_min, then lowered to twice zoom_fit.
double ActualSizeZoom(const ChooserState& s);

// Size chooser drag: the movement (dx, dy) since the press projected on the frame's diagonal, 200
// pixels of diagonal movement per unit of zoom scaled by the diagonal's length; held to twice zoom_fit,
// then raised to zoom_min (the lower limit wins).
double DragZoom(const ChooserState& s, double startZoom, int32_t dx, int32_t dy);
// Count chooser drag: the movement with the horizontal part weighted by the picture's height and the
// vertical by its width, as designed; the edge is held to 45 .. 150.
int32_t DragPieceEdge(const ChooserState& s, int32_t startEdge, int32_t dx, int32_t dy);
// Line i of n across a picture side of that extent: origin + trunc(i * extent / n).
int32_t GridLine(int32_t origin, int32_t extent, int32_t i, int32_t n);
// Does a press at (x, y) of the count chooser land on its picture (edges included)?
bool PointOnCountPicture(const ChooserState& s, int32_t x, int32_t y);

// ---- Program-wide state and the operations the new-puzzle screen calls ----

extern ChooserState g_choosers;
// Asks both chooser windows, where they exist, to repaint; set by the window side. May be null.
extern void (*g_repaintChoosers)();

// On a newly loaded current picture: the zooms, scale = zoom_fit, the range, both copies. Without a
// current picture the image is no longer chosen.
void PrepareImageForSizing();
// No image chosen any more; the copies are released.
void ForgetChosenImage();
// The range for the current zoom, and R, C at its maximum with piece_edge 45: every change of zoom
// starts again from the most pieces, deliberately.
void RecomputePieceRange();
void ZoomToFit();
void ZoomToActualSize();
// 1 while no image is chosen.
int32_t GetZoomPercent();
void SetZoomPercent(int32_t percent);
// 1 while no image is chosen; 0 when the range has a single count.
int32_t GetCountSteps();
// 0 while no image is chosen.
int32_t GetCountPosition();
void SetCountPosition(int32_t position);
// Takes A, B from the puzzle's table (or from the screen while the table has no size yet) and the
// size chooser's frame from them.
void TakeTableSize();
// A size chooser drag step from the zoom at the press; true when the zoom changed (the range is then
// recomputed and the choosers repainted).
bool DragSizeChooser(double startZoom, int32_t dx, int32_t dy);
// A count chooser drag step from piece_edge at the press; true when R or C changed (piece_edge then
// takes the new edge and the choosers are repainted).
bool DragCountChooser(int32_t startEdge, int32_t dx, int32_t dy);
