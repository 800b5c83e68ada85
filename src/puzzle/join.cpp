// Dropping and joining pieces, moves between views, showing the puzzle complete, and hints.
#include "puzzle/join.h"

#include "puzzle/compose.h"
#include "puzzle/history.h"

namespace {

inline bool Within(int64_t value, int64_t target) {
    return value >= target - kSnapTolerance && value <= target + kSnapTolerance;
}

Rect BoxOf(const PuzzleState* p, uint32_t i) {
    return Rect{p->pieces[i].x, p->pieces[i].y, p->boxWidth, p->boxHeight};
}

void Include(Rect* area, bool* any, const Rect& box) {
    if (*any)
        RectRelation(*area, box, RECT_UNION, area);
    else
        *area = box;
    *any = true;
}

// Brings the entries that hold `group` right below the top one, in their order: a group moves between
// views as the top entries of its run.
void GatherGroupBelowTop(PuzzleState* p, int view, uint32_t group) {
    ViewList& list = p->views[view];
    uint32_t gathered = 0;
    for (uint32_t k = 1; k < list.count; ++k)
        if (p->pieces[list.entries[k]].group == group) p->scratch[gathered++] = list.entries[k];
    uint32_t write = list.count;
    for (uint32_t k = list.count; k-- > 1;)
        if (p->pieces[list.entries[k]].group != group) list.entries[--write] = list.entries[k];
    for (uint32_t k = 0; k < gathered; ++k) list.entries[1 + k] = p->scratch[k];
}

// Repaints the old and new areas of a move: one union in one view when they overlap, else each.
void RepaintMove(PuzzleState* p, int oldView, const Rect& oldArea, int newView, const Rect& newArea) {
    Rect both;
    if (oldView == newView && RectRelation(oldArea, newArea, RECT_UNION, &both)) {
        RepaintRect(p, newView, both, true, false);
        return;
    }
    RepaintRect(p, oldView, oldArea, true, false);
    RepaintRect(p, newView, newArea, true, false);
}

void NotifyCounts(const PuzzleState* p, int sourceView, int destView, bool destWasEmpty) {
    if (sourceView == destView) return;
    if (destWasEmpty && p->views[destView].count && g_puzzleHooks.viewFilled) g_puzzleHooks.viewFilled(destView);
    if (p->views[sourceView].count == 0 && g_puzzleHooks.viewEmptied) g_puzzleHooks.viewEmptied(sourceView);
}

}  // namespace

DropResult DropPiece(PuzzleState* p, int destView, int sourceView, uint32_t piece, int32_t x, int32_t y) {
    DropResult result{};
    if (!p->sheet) return result;
    PieceRecord* pieces = p->pieces;
    const uint32_t n = PieceCount(p), cols = uint32_t(p->cols);
    const int32_t w = p->cellWidth, h = p->cellHeight;
    const uint32_t g = pieces[piece].group;
    const uint32_t column = piece % cols;
    int32_t nx = x, ny = y;
    bool joined = false;
    uint32_t q = 0;

    // The first candidate of the destination's run, topmost first, that fits one of the four sides.
    if (!p->finished) {
        const ViewList& dest = p->views[destView];
        for (uint32_t k = 0; k < dest.count && !joined; ++k) {
            const uint32_t c = dest.entries[k];
            if (pieces[c].group != 0 && pieces[c].group == g) continue;
            const int32_t qx = pieces[c].x, qy = pieces[c].y;
            if (piece >= cols && c == piece - cols && Within(qx, x) && Within(qy, int64_t(y) - h)) {
                nx = qx;
                ny = qy + h;
            } else if (column + 1 < cols && c == piece + 1 && Within(qx, int64_t(x) + w) && Within(qy, y)) {
                nx = qx - w;
                ny = qy;
            } else if (c == piece + cols && Within(qx, x) && Within(qy, int64_t(y) + h)) {
                nx = qx;
                ny = qy - h;
            } else if (column > 0 && c == piece - 1 && Within(qx, int64_t(x) - w) && Within(qy, y)) {
                nx = qx + w;
                ny = qy;
            } else {
                continue;
            }
            joined = true;
            q = c;
        }
    }
    if (joined && !pieces[q].lit) {
        pieces[q].lit = 1;
        RepaintRect(p, destView, BoxOf(p, q), true, false);
    }

    // The joined group's id: the larger of the two sides' ids, a loose piece counting as index + 1.
    const uint32_t gq = joined ? pieces[q].group : 0;
    uint32_t newId = 0;
    bool relabelQ = false, relabelP = false;
    if (joined) {
        newId = gq ? gq : q + 1;
        relabelQ = gq == 0;
        if (g == 0) {
            if (newId < piece + 1) {
                newId = piece + 1;
                relabelQ = true;
            }
        } else if (newId < g) {
            newId = g;
            relabelQ = true;
        } else {
            relabelP = true;
        }
    }

    // Move p, or its whole group, to the result position.
    Rect oldArea{}, newArea{};
    bool anyOld = false, anyNew = false;
    uint32_t moved = 0;
    if (g != 0) {
        const int32_t dx = nx - pieces[piece].x, dy = ny - pieces[piece].y;
        const ViewList& source = p->views[sourceView];
        for (uint32_t k = 0; k < source.count; ++k) {
            PieceRecord& member = pieces[source.entries[k]];
            if (member.group != g) continue;
            Include(&oldArea, &anyOld, BoxOf(p, source.entries[k]));
            member.x += dx;
            member.y += dy;
            if (relabelP) member.group = newId;
            Include(&newArea, &anyNew, BoxOf(p, source.entries[k]));
            ++moved;
        }
    } else {
        Include(&oldArea, &anyOld, BoxOf(p, piece));
        pieces[piece].x = nx;
        pieces[piece].y = ny;
        if (joined) pieces[piece].group = newId;
        Include(&newArea, &anyNew, BoxOf(p, piece));
        moved = 1;
    }
    if (joined) pieces[piece].lit = 1;
    if (relabelQ) {
        if (gq != 0) {
            const ViewList& dest = p->views[destView];
            for (uint32_t k = 0; k < dest.count; ++k)
                if (pieces[dest.entries[k]].group == gq) pieces[dest.entries[k]].group = newId;
        } else {
            pieces[q].group = newId;
        }
    }

    // Between views the moved entries leave the top of the source run for the top of the destination's.
    const bool destWasEmpty = p->views[destView].count == 0;
    if (destView != sourceView) {
        uint32_t position = 0;
        for (uint32_t k = 0; k < p->views[sourceView].count; ++k)
            if (p->views[sourceView].entries[k] == piece) position = k;
        MoveRun(p, sourceView, position, 1, sourceView);
        if (g != 0) GatherGroupBelowTop(p, sourceView, pieces[piece].group);
        MoveRun(p, sourceView, 0, moved, destView);
    }
    p->puzzle_dirty = 1;
    result.joined = joined;
    result.partner = q;
    result.moved = moved;

    // Completion: the view holds every piece and all carry the full group id.
    if (!p->finished && p->views[destView].count == n) {
        bool complete = true;
        const ViewList& dest = p->views[destView];
        for (uint32_t k = 0; k < dest.count && complete; ++k) complete = pieces[dest.entries[k]].group == n;
        if (complete) {
            ShowComplete(p);
            if (g_puzzleHooks.puzzleCompleted) g_puzzleHooks.puzzleCompleted();
            result.completed = true;
            return result;
        }
    }
    RepaintMove(p, sourceView, oldArea, destView, newArea);
    NotifyCounts(p, sourceView, destView, destWasEmpty);
    if (joined && g_puzzleHooks.joinSound) g_puzzleHooks.joinSound();
    return result;
}

DropResult MoveSelection(PuzzleState* p, int sourceView, int targetView, Point landing) {
    DropResult result{};
    result.selectionMoved = true;
    ViewList& source = p->views[sourceView];
    if (!p->sheet || source.count == 0) return result;
    PieceRecord* pieces = p->pieces;
    const uint32_t top = source.entries[0];
    const int32_t dx = landing.x - pieces[top].x, dy = landing.y - pieces[top].y;
    uint32_t count = 0;
    while (count < source.count && !pieces[source.entries[count]].lit) ++count;
    Rect oldArea{}, newArea{};
    bool anyOld = false, anyNew = false;
    for (uint32_t k = 0; k < count; ++k) {
        const uint32_t i = source.entries[k];
        Include(&oldArea, &anyOld, BoxOf(p, i));
        Point moved = HoldInsideView(p, targetView, Point{pieces[i].x + dx, pieces[i].y + dy});
        pieces[i].x = moved.x;
        pieces[i].y = moved.y;
        Include(&newArea, &anyNew, BoxOf(p, i));
    }
    result.moved = count;
    p->puzzle_dirty = 1;
    if (targetView == sourceView) {
        if (count) RepaintMove(p, sourceView, oldArea, targetView, newArea);
        return result;
    }
    const bool targetWasEmpty = p->views[targetView].count == 0;
    MoveRun(p, sourceView, 0, count, targetView);
    RepaintView(p, sourceView, true);
    RepaintView(p, targetView, true);
    NotifyCounts(p, sourceView, targetView, targetWasEmpty);
    return result;
}

DropResult MoveToView(PuzzleState* p, DragState* d, int sourceView, PointerWindow target) {
    DropResult result{};
    const int targetView = target.controlId - kViewControlBase;
    const bool onView = target.kind == POINTER_VIEW, onButton = target.kind == POINTER_DROP_TARGET;
    if (!p->sheet || p->views[sourceView].count == 0 || targetView == sourceView || targetView < 0 ||
        targetView >= kViewCount || !(onView || onButton)) {
        if (g_puzzleHooks.restoreDragBackground) g_puzzleHooks.restoreDragBackground();
        if (p->sheet && p->views[sourceView].count) {
            uint32_t top = p->views[sourceView].entries[0];
            RepaintRect(p, sourceView, BoxOf(p, top), true, false);
        }
        result.cancelled = true;
        return result;
    }
    // Over a tray's button the piece lands centred in the tray; over the view itself, where it was let go.
    Point landing = d->dragPos;
    if (onButton) {
        const ViewSurface& s = p->surfaces[targetView];
        landing = Point{(s.width - p->boxWidth) / 2, (s.height - p->boxHeight) / 2};
    }
    const uint32_t top = p->views[sourceView].entries[0];
    if (p->pieces[top].lit) return DropPiece(p, targetView, sourceView, top, landing.x, landing.y);

    // A selection: what the target view had selected is let go first.
    const ViewList& dest = p->views[targetView];
    for (uint32_t k = 0; k < dest.count; ++k) {
        PieceRecord& piece = p->pieces[dest.entries[k]];
        if (piece.lit) continue;
        piece.lit = 1;
        RepaintRect(p, targetView, BoxOf(p, dest.entries[k]), true, false);
    }
    return MoveSelection(p, sourceView, targetView, landing);
}

void ShowComplete(PuzzleState* p) {
    if (p->finished || !p->sheet) return;
    ForgetHistoryOf(&g_history, p);  // nothing is undone once the puzzle is complete
    const uint32_t n = PieceCount(p);
    for (int v = 0; v < kViewCount; ++v) p->views[v].count = 0;
    p->views[kTableView].count = n;
    RelinkViewRuns(p);
    p->finished = 1;
    for (uint32_t i = 0; i < n; ++i) {
        Point home = PieceHomePosition(p, i);
        p->pieces[i].x = home.x;
        p->pieces[i].y = home.y;
        p->pieces[i].group = n;
        p->pieces[i].lit = 1;
    }
    for (int v = 0; v < kTrayCount; ++v) {
        if (g_puzzleHooks.hideTray) g_puzzleHooks.hideTray(v);
        if (g_puzzleHooks.viewEmptied) g_puzzleHooks.viewEmptied(v);
        RepaintView(p, v, false);
    }
    RepaintView(p, kTableView, true);
    if (g_puzzleHooks.updateView) g_puzzleHooks.updateView(kTableView);
    p->clockPending = 0;
    if (g_puzzleHooks.stopClock) g_puzzleHooks.stopClock();
    p->timerId = 0;
}

bool GiveHint(PuzzleState* p) {
    ViewList& table = p->views[kTableView];
    if (p->finished || !p->sheet || table.count == 0) return true;
    const uint32_t n = PieceCount(p), cols = uint32_t(p->cols);
    const PieceRecord* pieces = p->pieces;
    // Where each piece stands in the table's run (n for elsewhere), so each piece's four neighbours are
    // looked up instead of scanning the run for every pair. The renderer's work array serves; nothing
    // composes until the search is over.
    uint32_t* place = p->renderPiece;
    for (uint32_t i = 0; i < n; ++i) place[i] = n;
    for (uint32_t k = 0; k < table.count; ++k) place[table.entries[k]] = k;
    uint32_t a = 0, b = 0;
    int side = -1;  // 0 above a, 1 right of a, 2 below, 3 left
    for (uint32_t i = 0; i < table.count && side < 0; ++i) {
        a = table.entries[i];
        const uint32_t column = a % cols;
        const uint32_t neighbour[4] = {a >= cols ? a - cols : n, column + 1 < cols ? a + 1 : n,
                                       a + cols < n ? a + cols : n, column > 0 ? a - 1 : n};
        uint32_t best = n;
        for (int s = 0; s < 4; ++s) {
            const uint32_t c = neighbour[s];
            if (c >= n || place[c] == n || place[c] <= i) continue;
            if (pieces[a].group != 0 && pieces[a].group == pieces[c].group) continue;
            if (place[c] < best) {  // the earliest later entry is the first pair met
                best = place[c];
                b = c;
                side = s;
            }
        }
    }
    if (side < 0) return true;
    const uint32_t position = place[b];
    if (!p->pieces[b].lit) {
        p->pieces[b].lit = 1;
        RepaintRect(p, kTableView, BoxOf(p, b), true, false);
    }
    MoveRun(p, kTableView, position, 1, kTableView);
    const PieceRecord& at = pieces[a];
    const int32_t w = p->cellWidth, h = p->cellHeight;
    const int32_t x[4] = {at.x, at.x + w, at.x, at.x - w};
    const int32_t y[4] = {at.y - h, at.y, at.y + h, at.y};
    DropPiece(p, kTableView, kTableView, b, x[side], y[side]);
    p->hintsUsed += 1;
    return p->hintsUsed < uint32_t(n * 0.2);
}
