// Joining, groups, moves between views, completion and hints.
#pragma once

#include <cstdint>

#include "puzzle/board_logic.h"
#include "puzzle/model.h"

constexpr int32_t kSnapTolerance = 6;  // a neighbour within 6 pixels each way (ends included) snaps

// Puts piece (the top of sourceView's run, with the rest of its group directly below) down with its box
// at (x, y) in destView. Joins the first fitting true neighbour of destView's run, topmost first, merges
// and relabels the groups, moves the group along and between views, repaints and reports completion.
DropResult DropPiece(PuzzleState* p, int destView, int sourceView, uint32_t piece, int32_t x, int32_t y);

// The drop of the dragged piece onto another view's window or onto a tray's button; anything else
// cancels the drag. A selection moves whole, held inside the target view, without joining.
DropResult MoveToView(PuzzleState* p, DragState* d, int sourceView, PointerWindow target);

// Moves every selected piece at the top of sourceView's run by landing minus the top piece's position,
// holds each inside targetView and puts them at the top of its run.
DropResult MoveSelection(PuzzleState* p, int sourceView, int targetView, Point landing);

// Every piece at its home on the table, joined into one group; the trays hidden and empty.
void ShowComplete(PuzzleState* p);

// Joins the first pair of true neighbours on the table that are not one group yet. True while more
// hints are allowed: they run out after a fifth of the piece count.
bool GiveHint(PuzzleState* p);
