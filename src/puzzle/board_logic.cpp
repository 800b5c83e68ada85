// Hit test, press, drag arithmetic, selection and release, without any window.
#include "puzzle/board_logic.h"

#include <algorithm>

#include "puzzle/compose.h"
#include "puzzle/join.h"

DragState g_drag;

int32_t HitTestView(const PuzzleState* p, int view, int32_t x, int32_t y, uint32_t* position) {
    if (!p->sheet || view < 0 || view >= kViewCount) return -1;
    const ViewList& list = p->views[view];
    const int64_t W = p->boxWidth, H = p->boxHeight;
    for (uint32_t k = 0; k < list.count; ++k) {
        uint32_t i = list.entries[k];
        const PieceRecord& piece = p->pieces[i];
        if (!(piece.x < x && x < piece.x + W && piece.y < y && y < piece.y + H)) continue;
        if (!(*SheetPixel(p, i, x - piece.x, y - piece.y) >> 24)) continue;
        if (position) *position = k;
        return int32_t(i);
    }
    return -1;
}

void GrabPiece(PuzzleState* p, DragState* d, int view, uint32_t position, Point pointer) {
    if (p->clockPending) {
        p->clockPending = 0;
        p->paused = 0;
        if (g_puzzleHooks.startClock) g_puzzleHooks.startClock();
    }
    MoveRun(p, view, position, 1, view);
    uint32_t top = p->views[view].entries[0];
    d->dragPos = Point{p->pieces[top].x, p->pieces[top].y};
    RepaintRect(p, view, d->dragPos.x, d->dragPos.y, p->boxWidth, p->boxHeight, false, true);
    d->grabOffset = SubtractPoints(pointer, d->dragPos);
    d->anchor = pointer;
    d->sourceView = d->dragView = view;
    p->dragMode = 1;
}

PressResult PressOnView(PuzzleState* p, DragState* d, int view, Point pointer) {
    uint32_t position;
    if (HitTestView(p, view, pointer.x, pointer.y, &position) < 0) {
        p->dragMode = 2;
        d->anchor = pointer;
        for (Point& corner : d->outline) corner = pointer;
        d->sourceView = d->dragView = view;
        return PRESS_SELECTION;
    }
    GrabPiece(p, d, view, position, pointer);
    return PRESS_PIECE;
}

int DragTargetView(const DragState* d, PointerWindow under) {
    int view = under.controlId - kViewControlBase;
    if (under.kind == POINTER_DROP_TARGET && view >= 0 && view < kViewCount) return view;
    return d->dragView;
}

Point DragStepPosition(const DragState* d, Point pointerInTarget, bool overDropTarget) {
    if (overDropTarget) return Point{0, 0};
    return SubtractPoints(pointerInTarget, d->grabOffset);
}

bool DragStepArea(const Rect& oldBox, const Rect& newBox, Rect* area) {
    Rect both;
    if (RectRelation(oldBox, newBox, RECT_UNION, &both)) {
        *area = both;
        return true;
    }
    *area = newBox;
    return false;
}

void UpdateSelectionOutline(DragState* d, Point pointer) {
    int32_t left = std::min(pointer.x, d->anchor.x), right = std::max(pointer.x, d->anchor.x);
    int32_t top = std::min(pointer.y, d->anchor.y), bottom = std::max(pointer.y, d->anchor.y);
    d->outline[0] = Point{left, top};
    d->outline[1] = Point{right, top};
    d->outline[2] = Point{right, bottom};
    d->outline[3] = Point{left, bottom};
    d->outline[4] = Point{left, top};
}

Rect SelectionRectangle(const DragState* d) {
    const Point& lt = d->outline[0];
    const Point& rb = d->outline[2];
    return Rect{lt.x, lt.y, rb.x - lt.x, rb.y - lt.y};
}

void ApplySelection(PuzzleState* p, int view, const Rect& selection) {
    if (!p->sheet) return;
    const ViewList& list = p->views[view];
    for (uint32_t k = 0; k < list.count; ++k) {
        PieceRecord& piece = p->pieces[list.entries[k]];
        if (piece.group) {
            piece.lit = 1;
            continue;
        }
        Rect box{piece.x, piece.y, p->boxWidth, p->boxHeight};
        piece.lit = RectRelation(box, selection, RECT_INTERSECTION, nullptr) ? 0 : 1;
    }
}

Point HoldInsideView(const PuzzleState* p, int view, Point position) {
    const int32_t mx = (p->boxWidth - p->cellWidth) / 2, my = (p->boxHeight - p->cellHeight) / 2;
    const ViewSurface& s = p->surfaces[view];
    if (position.x < -mx) position.x = -mx;
    if (position.x + p->cellWidth > s.width) position.x = s.width - p->cellWidth;
    if (position.y < -my) position.y = -my;
    if (position.y + p->cellHeight > s.height) position.y = s.height - p->cellHeight;
    return position;
}

void RaiseForDrop(PuzzleState* p, int view) {
    ViewList& list = p->views[view];
    if (!p->sheet || list.count == 0) return;
    const PieceRecord* pieces = p->pieces;
    const uint32_t top = list.entries[0];
    const bool selected = !pieces[top].lit;
    const uint32_t group = pieces[top].group;
    if (!selected && group == 0) return;
    auto gathers = [&](uint32_t i) { return selected ? !pieces[i].lit : pieces[i].group == group; };
    // Gathered entries go to scratch in order; the others slide to the end of the run, keeping theirs.
    uint32_t gathered = 0;
    for (uint32_t k = 1; k < list.count; ++k)
        if (gathers(list.entries[k])) p->scratch[gathered++] = list.entries[k];
    uint32_t write = list.count;
    for (uint32_t k = list.count; k-- > 1;)
        if (!gathers(list.entries[k])) list.entries[--write] = list.entries[k];
    for (uint32_t k = 0; k < gathered; ++k) list.entries[1 + k] = p->scratch[k];
    Rect area{pieces[top].x, pieces[top].y, p->boxWidth, p->boxHeight};
    for (uint32_t k = 0; k < gathered; ++k) {
        const PieceRecord& piece = pieces[list.entries[1 + k]];
        RectRelation(area, Rect{piece.x, piece.y, p->boxWidth, p->boxHeight}, RECT_UNION, &area);
    }
    RepaintRect(p, view, area, false, false);
}

DropResult ReleasePiece(PuzzleState* p, DragState* d, PointerWindow under) {
    DropResult result{};
    const int view = d->sourceView;
    p->dragMode = 0;
    if (!p->sheet || p->views[view].count == 0) {
        result.cancelled = true;
        return result;
    }
    RaiseForDrop(p, view);
    const uint32_t top = p->views[view].entries[0];
    if (under.kind == POINTER_OUTSIDE) {
        // Let go outside the program's screens: the drag is cancelled.
        if (g_puzzleHooks.restoreDragBackground) g_puzzleHooks.restoreDragBackground();
        RepaintRect(p, view, p->pieces[top].x, p->pieces[top].y, p->boxWidth, p->boxHeight, true, false);
        result.cancelled = true;
        return result;
    }
    if (under.kind == POINTER_VIEW && under.controlId - kViewControlBase == view) {
        if (p->pieces[top].lit)
            result = DropPiece(p, view, view, top, d->dragPos.x, d->dragPos.y);
        else
            result = MoveSelection(p, view, view, d->dragPos);
    } else {
        result = MoveToView(p, d, view, under);
    }
    p->puzzle_dirty = 1;
    if (g_puzzleHooks.enableSave) g_puzzleHooks.enableSave();
    return result;
}

void ReleaseSelection(PuzzleState* p, DragState* d) {
    p->dragMode = 0;
    ApplySelection(p, d->sourceView, SelectionRectangle(d));
    RepaintView(p, d->sourceView, true);
}
