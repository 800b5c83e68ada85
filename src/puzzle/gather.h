// Gathering the edge pieces: every loose piece of the picture's border that lies on the table goes into
// the first empty tray, laid out side by side.
#pragma once

#include <cstdint>

#include "puzzle/model.h"

// Row 0 or the last row, column 0 or the last column.
bool IsEdgePiece(const PuzzleState* p, uint32_t piece);
// The first tray whose view holds no piece, or -1.
int FirstEmptyTray(const PuzzleState* p);
// Loose edge pieces on the table.
uint32_t CountLooseEdgePieces(const PuzzleState* p);
// A puzzle in play, an empty tray and something to gather.
bool CanGatherEdgePieces(const PuzzleState* p);

// Where the k-th of `count` pieces goes in a view of the given size: a centred grid of whole boxes when
// they all fit inside, else a tighter grid (the same proportions) over the places a piece may take in a
// view: its tab margins (cell `cellWidth` x `cellHeight` in its box) may hang off the left and top, its
// cell stays inside on the right and bottom. Distinct places for as many pieces as the view has pixels.
Point GatherPlace(int32_t viewWidth, int32_t viewHeight, int32_t boxWidth, int32_t boxHeight, int32_t cellWidth,
                  int32_t cellHeight, uint32_t count, uint32_t k);

// Moves them, in their order on the table, into the first empty tray, each piece plain (not selected);
// repaints both views, tells the tray it is filled (and the table when it empties) and marks the puzzle
// changed. Returns the tray, or -1 when nothing happened.
int GatherEdgePieces(PuzzleState* p);
