// The board's gestures without the windows: hit test, press, drag arithmetic, the selection rectangle,
// holding moved pieces inside a view, and the release that hands a piece to the drop.
#pragma once

#include <cstdint>

#include "gfx/geometry.h"
#include "puzzle/model.h"

// One gesture at a time: there is one mouse. The mode lives in PuzzleState::dragMode.
struct DragState {
    Point anchor;      // the pointer at the press
    Point dragPos;     // top-left of the dragged piece's box, in dragView's coordinates
    Point grabOffset;  // pointer minus the box position at the press
    Point outline[5];  // the selection outline, closed: left-top, right-top, right-bottom, left-bottom, left-top
    int sourceView;    // the view the gesture started in
    int dragView;      // the view whose window shows the dragged piece now
};
extern DragState g_drag;

// The window under the pointer, as the board window found it.
enum PointerWindowKind {
    POINTER_OUTSIDE,      // not a child window: outside the program's screens
    POINTER_VIEW,         // a view's own window, control id 100 + view
    POINTER_DROP_TARGET,  // a tray's button on the screen's right edge, control id 100 + view
    POINTER_OTHER_CHILD,  // any other child window, with its control id
};
struct PointerWindow {
    PointerWindowKind kind;
    int32_t controlId;
};
constexpr int32_t kViewControlBase = 100;  // view k's window (and tray k's button) has control id 100 + k

// The piece under (x, y) in the view, topmost first, and its place in the run; -1 when none. A box holds
// the point only strictly inside its left and top edges, and transparent pixels never catch it.
int32_t HitTestView(const PuzzleState* p, int view, int32_t x, int32_t y, uint32_t* position);

enum PressResult {
    PRESS_SELECTION,  // nothing hit: a selection rectangle starts at the pointer
    PRESS_PIECE,      // a piece was lifted
};
// A press at the pointer. Lifting a piece starts the clock on the first grab after a cut, raises the piece
// to the top of its run and composes its box without it; the board then copies that box of the view's
// picture into the background store and runs a drag step at the pointer.
PressResult PressOnView(PuzzleState* p, DragState* d, int view, Point pointer);
// The lifting part of a press, for the entry at position in the view's run.
void GrabPiece(PuzzleState* p, DragState* d, int view, uint32_t position, Point pointer);

// The view a drag step draws in: a tray's view while the pointer is over that tray's button, otherwise
// the one the piece is drawn in already.
int DragTargetView(const DragState* d, PointerWindow under);
// Where the dragged box goes: over a tray's button at the top-left corner of that tray's view, else under
// the pointer (in the target view's coordinates) less the grab offset.
Point DragStepPosition(const DragState* d, Point pointerInTarget, bool overDropTarget);
// The area a drag step copies to the screen: the union of the old and new boxes when they overlap
// (touching counts), else the new box alone. Returns whether they overlap.
bool DragStepArea(const Rect& oldBox, const Rect& newBox, Rect* area);

// Selection rectangle: the outline from the anchor to the pointer, and the rectangle it encloses.
void UpdateSelectionOutline(DragState* d, Point pointer);
Rect SelectionRectangle(const DragState* d);
// A selection in the view: grouped pieces become lit; a loose piece is selected when its box meets the
// rectangle (shared edges count, as everywhere on the board) and lit otherwise.
void ApplySelection(PuzzleState* p, int view, const Rect& selection);

// A piece moved with a selection stays in its view: on the left and top the tab margin may leave the
// view, on the right and bottom the cell's edge stays inside. The right and bottom limits are applied last.
Point HoldInsideView(const PuzzleState* p, int view, Point position);

// Before a drop: a lit top piece gathers the rest of its group directly below it, a selected one gathers
// every selected piece of the view; both keep their order. Composes the raised pieces' area.
void RaiseForDrop(PuzzleState* p, int view);

// What a release or a drop did.
struct DropResult {
    bool cancelled;       // the piece went back where it was
    bool selectionMoved;  // a selection moved (no joining)
    bool joined;
    uint32_t partner;     // the piece it joined
    uint32_t moved;       // pieces that moved
    bool completed;       // the drop completed the puzzle
};

// Mode 1 release over the window the board found under the pointer: raise, then drop in place, move to
// another view, or cancel. A change marks the puzzle as changed and enables the save button.
DropResult ReleasePiece(PuzzleState* p, DragState* d, PointerWindow under);
// Mode 2 release: applies the rectangle and recomposes the whole view.
void ReleaseSelection(PuzzleState* p, DragState* d);
