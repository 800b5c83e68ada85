// Undo and redo of the player's gestures. A gesture is bracketed by BeginGesture and EndGesture; the
// history keeps only what the gesture changed (pieces that changed alike share one entry, a run keeps
// only its new top and the places it lost), so a hundred gestures of a large puzzle stay small.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "puzzle/model.h"

constexpr size_t kHistoryGestures = 200;  // the oldest gestures are forgotten beyond this many

// One gesture: the view counts on both sides and the packed changes (see history.cpp).
struct GestureRecord {
    uint8_t quiet;  // changed only stacking order or selection: undone together with the gesture before it
    uint32_t countsBefore[kViewCount];
    uint32_t countsAfter[kViewCount];
    std::vector<uint32_t> changes;
};

struct PuzzleHistory {
    const PuzzleState* owner;             // the puzzle the records belong to
    std::vector<GestureRecord> records;   // oldest first
    size_t done;                          // records[0 .. done) can be undone, the rest redone
    // The state at BeginGesture, compared with the state at EndGesture.
    bool open;
    std::vector<PieceRecord> beforePieces;
    std::vector<uint32_t> beforeOrder;
    uint32_t beforeCounts[kViewCount];
    std::vector<uint32_t> work;           // a rebuilt order array and the piece-to-view maps
};

// The game's history, for g_puzzle.
extern PuzzleHistory g_history;

// Notes the state before a gesture. A gesture still open is forgotten first.
void BeginGesture(PuzzleHistory* h, const PuzzleState* p);
// Closes the gesture: keeps what changed, and forgets the redo side when anything did. A gesture that
// finished the puzzle forgets the whole history: nothing is undone once the puzzle is complete.
void EndGesture(PuzzleHistory* h, const PuzzleState* p);
// Forgets every gesture (a new puzzle, an opened game, the puzzle shown complete).
void ClearHistory(PuzzleHistory* h);
// ClearHistory when the history belongs to p; another puzzle's clearing leaves it alone.
void ForgetHistoryOf(PuzzleHistory* h, const PuzzleState* p);

bool CanUndo(const PuzzleHistory* h, const PuzzleState* p);
bool CanRedo(const PuzzleHistory* h, const PuzzleState* p);
// Puts every piece's position, view, run place, group and lit flag back as they were before the last
// gesture (with the quiet ones after it), repaints only the changed areas, tells the trays that became
// empty or filled and marks the puzzle changed. Refused while a drag runs or once the puzzle is complete.
bool UndoGesture(PuzzleHistory* h, PuzzleState* p);
// Does the last undone gesture again, with the quiet ones that followed it.
bool RedoGesture(PuzzleHistory* h, PuzzleState* p);

// Bytes the records hold, for the memory budget.
size_t HistoryBytes(const PuzzleHistory* h);
