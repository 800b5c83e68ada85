// Undo and redo. A record's `changes` holds, packed as 32-bit words:
//   the piece changes: a count, then per kind of change
//       dx, dy, group before, group after, lit before | lit after << 8, a range count, then [first, end) ranges
//     (a moved group is one kind: its members share the shift and the ids, and their indices come in runs);
//   the run changes: a count, then per changed view
//       view, top count, lost count, the top entries, then (position, entry) pairs of what the run lost,
//     where the run after the gesture is the top entries followed by the run before it less the lost places.
// Positions are shifts rather than places, so that applying a record backwards or forwards is the same walk.
#include "puzzle/history.h"

#include <algorithm>
#include <cstring>

#include "puzzle/compose.h"

PuzzleHistory g_history;

namespace {

struct PieceChange {
    int32_t dx, dy;
    uint32_t groupBefore, groupAfter;
    uint32_t lits;
    uint32_t piece;
};

bool SameKind(const PieceChange& a, const PieceChange& b) {
    return a.dx == b.dx && a.dy == b.dy && a.groupBefore == b.groupBefore && a.groupAfter == b.groupAfter &&
           a.lits == b.lits;
}

bool KindBefore(const PieceChange& a, const PieceChange& b) {
    if (a.dx != b.dx) return a.dx < b.dx;
    if (a.dy != b.dy) return a.dy < b.dy;
    if (a.groupBefore != b.groupBefore) return a.groupBefore < b.groupBefore;
    if (a.groupAfter != b.groupAfter) return a.groupAfter < b.groupAfter;
    if (a.lits != b.lits) return a.lits < b.lits;
    return a.piece < b.piece;
}

// Appends the piece changes; false when nothing but the lit flags changed (or nothing at all).
bool PackPieceChanges(const PuzzleHistory* h, const PuzzleState* p, std::vector<uint32_t>* out) {
    const uint32_t n = PieceCount(p);
    std::vector<PieceChange> changed;
    for (uint32_t i = 0; i < n; ++i) {
        const PieceRecord& a = h->beforePieces[i];
        const PieceRecord& b = p->pieces[i];
        if (a.x == b.x && a.y == b.y && a.group == b.group && a.lit == b.lit) continue;
        changed.push_back(PieceChange{int32_t(uint32_t(b.x) - uint32_t(a.x)), int32_t(uint32_t(b.y) - uint32_t(a.y)),
                                      a.group, b.group, uint32_t(a.lit) | uint32_t(b.lit) << 8, i});
    }
    std::sort(changed.begin(), changed.end(), KindBefore);
    const size_t countAt = out->size();
    out->push_back(0);
    bool moved = false;
    for (size_t k = 0; k < changed.size();) {
        const PieceChange& kind = changed[k];
        moved = moved || kind.dx || kind.dy || kind.groupBefore != kind.groupAfter;
        out->insert(out->end(), {uint32_t(kind.dx), uint32_t(kind.dy), kind.groupBefore, kind.groupAfter, kind.lits, 0});
        const size_t rangeCountAt = out->size() - 1;
        size_t end = k;
        while (end < changed.size() && SameKind(changed[end], kind)) ++end;
        for (size_t r = k; r < end;) {
            size_t last = r;
            while (last + 1 < end && changed[last + 1].piece == changed[last].piece + 1) ++last;
            out->push_back(changed[r].piece);
            out->push_back(changed[last].piece + 1);
            ++(*out)[rangeCountAt];
            r = last + 1;
        }
        ++(*out)[countAt];
        k = end;
    }
    return moved;
}

// Appends the run changes; false when every view kept its pieces (only their stacking changed).
bool PackRunChanges(const PuzzleHistory* h, const PuzzleState* p, std::vector<uint32_t>* out) {
    const size_t countAt = out->size();
    out->push_back(0);
    bool membership = false;
    uint32_t start = 0;
    std::vector<uint32_t> lost, top, a, b;
    for (int v = 0; v < kViewCount; ++v) {
        const uint32_t* before = h->beforeOrder.data() + start;
        const uint32_t cb = h->beforeCounts[v], ca = p->views[v].count;
        const uint32_t* after = p->views[v].entries;
        start += cb;
        // The longest common tail, matched from the end; whatever of the old run it skips was lost, and
        // what is left of the new run is its new top.
        lost.clear();
        uint32_t i = cb, j = ca;
        while (i > 0) {
            if (j > 0 && before[i - 1] == after[j - 1]) {
                --j;
            } else {
                lost.push_back(i - 1);
                lost.push_back(before[i - 1]);
            }
            --i;
        }
        if (j == 0 && lost.empty()) continue;
        top.assign(after, after + j);
        out->insert(out->end(), {uint32_t(v), j, uint32_t(lost.size() / 2)});
        out->insert(out->end(), top.begin(), top.end());
        for (size_t k = lost.size(); k >= 2; k -= 2) {  // ascending positions
            out->push_back(lost[k - 2]);
            out->push_back(lost[k - 1]);
        }
        ++(*out)[countAt];
        // The same pieces in another order is a change of stacking only.
        a = top;
        b.clear();
        for (size_t k = 1; k < lost.size(); k += 2) b.push_back(lost[k]);
        std::sort(a.begin(), a.end());
        std::sort(b.begin(), b.end());
        if (cb != ca || a != b) membership = true;
    }
    return membership;
}

// Rebuilds every run into h->work as the record says for the direction; false when the record does not
// fit the runs as they stand (it then changes nothing).
bool RebuildRuns(PuzzleHistory* h, const PuzzleState* p, const GestureRecord& r, const uint32_t* diffs,
                 bool forward, uint32_t* counts) {
    const uint32_t n = PieceCount(p);
    const uint32_t* from = forward ? r.countsBefore : r.countsAfter;
    const uint32_t* to = forward ? r.countsAfter : r.countsBefore;
    const uint32_t* end = r.changes.data() + r.changes.size();
    uint32_t total = 0;
    for (int v = 0; v < kViewCount; ++v) {
        if (p->views[v].count != from[v]) return false;
        counts[v] = to[v];
        total += to[v];
    }
    if (total != n) return false;
    uint32_t* order = h->work.data();
    const uint32_t viewDiffs = *diffs++;
    const uint32_t* diff = diffs;
    uint32_t written = 0;
    uint32_t nextDiffView = viewDiffs ? diff[0] : kViewCount;
    uint32_t diffsLeft = viewDiffs;
    for (int v = 0; v < kViewCount; ++v) {
        const uint32_t* run = p->views[v].entries;
        const uint32_t count = p->views[v].count;
        if (uint32_t(v) != nextDiffView) {
            std::memcpy(order + written, run, count * sizeof(uint32_t));
            written += count;
            continue;
        }
        if (diff + 3 > end) return false;
        const uint32_t topCount = diff[1], lostCount = diff[2];
        const uint32_t* top = diff + 3;
        const uint32_t* lost = top + topCount;
        if (lost + 2 * uint64_t(lostCount) > end) return false;
        if (forward) {
            // Before -> after: the new top, then the old run without the lost places.
            if (uint64_t(topCount) + count - lostCount != to[v] || lostCount > count) return false;
            std::memcpy(order + written, top, topCount * sizeof(uint32_t));
            uint32_t w = written + topCount, k = 0;
            for (uint32_t pos = 0; pos < count; ++pos) {
                if (k < lostCount && lost[2 * k] == pos) {
                    ++k;
                    continue;
                }
                order[w++] = run[pos];
            }
            if (k != lostCount) return false;
        } else {
            // After -> before: the lost entries back at their places, the rest below the top in order.
            if (uint64_t(to[v]) + topCount - lostCount != count || topCount > count) return false;
            uint32_t rest = topCount, k = 0;
            for (uint32_t pos = 0; pos < to[v]; ++pos) {
                if (k < lostCount && lost[2 * k] == pos)
                    order[written + pos] = lost[2 * k++ + 1];
                else if (rest < count)
                    order[written + pos] = run[rest++];
                else
                    return false;
            }
            if (k != lostCount || rest != count) return false;
        }
        written += to[v];
        diff = lost + 2 * lostCount;
        nextDiffView = --diffsLeft ? diff[0] : kViewCount;
    }
    return written == n;
}

// The areas to repaint, a few per view: a box joins an area it meets, else starts its own.
struct RepaintAreas {
    std::vector<Rect> areas[kViewCount];
    void Add(int view, const Rect& box) {
        if (view < 0 || view >= kViewCount) return;
        std::vector<Rect>& list = areas[view];
        Rect both;
        for (Rect& area : list)
            if (RectRelation(area, box, RECT_UNION, &both)) {
                area = both;
                return;
            }
        list.push_back(box);
        if (list.size() > 16) {  // scattered boxes: one repaint of their bounds costs less than many
            Rect all = list[0];
            for (const Rect& r : list) RectRelation(all, r, RECT_UNION, &all);
            list.assign(1, all);
        }
    }
};

void MapViews(const PuzzleState* p, uint32_t* viewOf) {
    for (int v = 0; v < kViewCount; ++v)
        for (uint32_t k = 0; k < p->views[v].count; ++k) viewOf[p->views[v].entries[k]] = uint32_t(v);
}

// The pieces a record touches: the changed ones and every entry of a changed run.
void CollectTouched(const GestureRecord& r, uint32_t n, std::vector<uint32_t>* touched, std::vector<uint8_t>* mark) {
    touched->clear();
    auto add = [&](uint32_t i) {
        if (i < n && !(*mark)[i]) {
            (*mark)[i] = 1;
            touched->push_back(i);
        }
    };
    const uint32_t* w = r.changes.data();
    const uint32_t kinds = *w++;
    for (uint32_t c = 0; c < kinds; ++c) {
        const uint32_t ranges = w[5];
        w += 6;
        for (uint32_t k = 0; k < ranges; ++k, w += 2)
            for (uint32_t i = w[0]; i < w[1] && i < n; ++i) add(i);
    }
    const uint32_t views = *w++;
    for (uint32_t d = 0; d < views; ++d) {
        const uint32_t topCount = w[1], lostCount = w[2];
        w += 3;
        for (uint32_t k = 0; k < topCount; ++k) add(w[k]);
        w += topCount;
        for (uint32_t k = 0; k < lostCount; ++k) add(w[2 * k + 1]);
        w += 2 * lostCount;
    }
    for (uint32_t i : *touched) (*mark)[i] = 0;
}

// Where the run changes start in a record.
const uint32_t* RunChanges(const GestureRecord& r) {
    const uint32_t* w = r.changes.data();
    const uint32_t kinds = *w++;
    for (uint32_t c = 0; c < kinds; ++c) w += 6 + 2 * w[5];
    return w;
}

bool ApplyRecord(PuzzleHistory* h, PuzzleState* p, const GestureRecord& r, bool forward) {
    const uint32_t n = PieceCount(p);
    if (r.changes.empty()) return false;
    h->work.resize(size_t(n) * 2);
    uint32_t counts[kViewCount];
    if (!RebuildRuns(h, p, r, RunChanges(r), forward, counts)) return false;

    std::vector<uint32_t> touched;
    std::vector<uint8_t> mark(n, 0);
    CollectTouched(r, n, &touched, &mark);
    uint32_t* viewOf = h->work.data() + n;
    MapViews(p, viewOf);
    RepaintAreas repaint;
    const Rect box{0, 0, p->boxWidth, p->boxHeight};
    for (uint32_t i : touched)
        repaint.Add(int(viewOf[i]), Rect{p->pieces[i].x, p->pieces[i].y, box.width, box.height});

    // The pieces: shifted back or forth, their ids and lit flags set.
    const uint32_t* w = r.changes.data();
    const uint32_t kinds = *w++;
    for (uint32_t c = 0; c < kinds; ++c) {
        const int32_t dx = int32_t(w[0]), dy = int32_t(w[1]);
        const uint32_t group = forward ? w[3] : w[2];
        const uint8_t lit = uint8_t(forward ? w[4] >> 8 : w[4] & 0xFF);
        const uint32_t ranges = w[5];
        w += 6;
        for (uint32_t k = 0; k < ranges; ++k, w += 2)
            for (uint32_t i = w[0]; i < w[1] && i < n; ++i) {
                PieceRecord& piece = p->pieces[i];
                piece.x = int32_t(forward ? uint32_t(piece.x) + uint32_t(dx) : uint32_t(piece.x) - uint32_t(dx));
                piece.y = int32_t(forward ? uint32_t(piece.y) + uint32_t(dy) : uint32_t(piece.y) - uint32_t(dy));
                piece.group = group;
                piece.lit = lit;
            }
    }
    bool wasEmpty[kViewCount];
    for (int v = 0; v < kViewCount; ++v) {
        wasEmpty[v] = p->views[v].count == 0;
        p->views[v].count = counts[v];
    }
    std::memcpy(p->order, h->work.data(), size_t(n) * sizeof(uint32_t));
    RelinkViewRuns(p);

    MapViews(p, viewOf);
    for (uint32_t i : touched)
        repaint.Add(int(viewOf[i]), Rect{p->pieces[i].x, p->pieces[i].y, box.width, box.height});
    for (int v = 0; v < kViewCount; ++v)
        for (const Rect& area : repaint.areas[v]) RepaintRect(p, v, area, true, false);
    for (int v = 0; v < kViewCount; ++v) {
        const bool empty = p->views[v].count == 0;
        if (wasEmpty[v] && !empty && g_puzzleHooks.viewFilled) g_puzzleHooks.viewFilled(v);
    }
    for (int v = 0; v < kViewCount; ++v) {
        const bool empty = p->views[v].count == 0;
        if (!wasEmpty[v] && empty && g_puzzleHooks.viewEmptied) g_puzzleHooks.viewEmptied(v);
    }
    return true;
}

bool Usable(const PuzzleHistory* h, const PuzzleState* p) {
    return h->owner == p && HasPuzzle(p) && !p->finished && p->dragMode == 0 && !h->open;
}

void MarkChanged(PuzzleState* p) {
    p->puzzle_dirty = 1;
    if (g_puzzleHooks.enableSave) g_puzzleHooks.enableSave();
}

}  // namespace

void ClearHistory(PuzzleHistory* h) {
    h->records.clear();
    h->records.shrink_to_fit();
    h->done = 0;
    h->open = false;
}

void ForgetHistoryOf(PuzzleHistory* h, const PuzzleState* p) {
    if (h->owner != p) return;
    ClearHistory(h);
    h->owner = nullptr;
}

void BeginGesture(PuzzleHistory* h, const PuzzleState* p) {
    h->open = false;
    if (!HasPuzzle(p) || p->finished) return;
    if (h->owner != p) {
        ClearHistory(h);
        h->owner = p;
    }
    const uint32_t n = PieceCount(p);
    h->beforePieces.assign(p->pieces, p->pieces + n);
    h->beforeOrder.assign(p->order, p->order + n);
    for (int v = 0; v < kViewCount; ++v) h->beforeCounts[v] = p->views[v].count;
    h->open = true;
}

void EndGesture(PuzzleHistory* h, const PuzzleState* p) {
    if (!h->open) return;
    h->open = false;
    if (h->owner != p || !HasPuzzle(p) || h->beforePieces.size() != PieceCount(p)) return;
    if (p->finished) {
        ClearHistory(h);
        return;
    }
    GestureRecord r;
    const bool moved = PackPieceChanges(h, p, &r.changes);
    const bool membership = PackRunChanges(h, p, &r.changes);
    if (r.changes[0] == 0 && r.changes[RunChanges(r) - r.changes.data()] == 0) return;  // nothing changed
    r.quiet = !moved && !membership;
    std::memcpy(r.countsBefore, h->beforeCounts, sizeof r.countsBefore);
    for (int v = 0; v < kViewCount; ++v) r.countsAfter[v] = p->views[v].count;
    r.changes.shrink_to_fit();
    h->records.resize(h->done);
    h->records.push_back(std::move(r));
    if (h->records.size() > kHistoryGestures)
        h->records.erase(h->records.begin(), h->records.begin() + (h->records.size() - kHistoryGestures));
    h->done = h->records.size();
}

bool CanUndo(const PuzzleHistory* h, const PuzzleState* p) {
    if (!Usable(h, p)) return false;
    for (size_t k = h->done; k-- > 0;)
        if (!h->records[k].quiet) return true;
    return false;
}

bool CanRedo(const PuzzleHistory* h, const PuzzleState* p) {
    return Usable(h, p) && h->done < h->records.size();
}

bool UndoGesture(PuzzleHistory* h, PuzzleState* p) {
    if (!CanUndo(h, p)) return false;
    while (h->done > 0) {
        const GestureRecord& r = h->records[h->done - 1];
        if (!ApplyRecord(h, p, r, false)) {
            ClearHistory(h);  // the records no longer fit the game: keep the game, lose the history
            return false;
        }
        --h->done;
        if (!r.quiet) break;
    }
    MarkChanged(p);
    return true;
}

bool RedoGesture(PuzzleHistory* h, PuzzleState* p) {
    if (!CanRedo(h, p)) return false;
    do {
        if (!ApplyRecord(h, p, h->records[h->done], true)) {
            ClearHistory(h);
            return false;
        }
        ++h->done;
    } while (h->done < h->records.size() && h->records[h->done].quiet);
    MarkChanged(p);
    return true;
}

size_t HistoryBytes(const PuzzleHistory* h) {
    size_t bytes = h->records.capacity() * sizeof(GestureRecord);
    for (const GestureRecord& r : h->records) bytes += r.changes.capacity() * sizeof(uint32_t);
    return bytes;
}
