// The puzzle model: allocation, clearing, geometry and the run moves between views.
#include "puzzle/model.h"

#include "app/platform.h"
#include "puzzle/history.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

PuzzleState g_puzzle;
PuzzleHooks g_puzzleHooks;

bool ComputePuzzleGeometry(int32_t imageWidth, int32_t imageHeight, double scale, int32_t rows, int32_t cols,
                           PuzzleGeometry* out) {
    if (imageWidth < 1 || imageHeight < 1 || rows < 1 || cols < 1 || !(scale > 0.0)) return false;
    double sw = imageWidth * scale, sh = imageHeight * scale;
    if (sw < kSmallestCutSide || sh < kSmallestCutSide || sw > 1e6 || sh > 1e6) return false;
    PuzzleGeometry g;
    g.scaledWidth = int32_t(sw);
    g.scaledHeight = int32_t(sh);
    g.cellWidth = g.scaledWidth / cols;
    g.cellHeight = g.scaledHeight / rows;
    if (g.cellWidth < 1 || g.cellHeight < 1) return false;
    g.marginX = int32_t(0.33 * g.cellWidth);
    g.marginY = int32_t(0.33 * g.cellHeight);
    g.boxWidth = g.cellWidth + 2 * g.marginX;
    g.boxHeight = g.cellHeight + 2 * g.marginY;
    *out = g;
    return true;
}

static void ReleasePuzzleMemory(PuzzleState* p) {
    std::free(p->sheet);
    std::free(p->pieces);
    std::free(p->order);
    std::free(p->scratch);
    std::free(p->renderPiece);
    std::free(p->renderRow);
    std::free(p->renderColumn);
    std::free(p->outlineShapes);
    std::free(p->outlineShape);
    std::free(p->outlineColours);
    std::free(p->outlineColour);
    p->outlineShapes = nullptr;
    p->outlineShape = nullptr;
    p->outlineColours = nullptr;
    p->outlineColour = nullptr;
    p->sheet = nullptr;
    p->pieces = nullptr;
    p->order = p->scratch = p->renderPiece = p->renderRow = p->renderColumn = nullptr;
}

bool AllocatePuzzle(PuzzleState* p, const PuzzleGeometry& g, int32_t rows, int32_t cols, double scale) {
    ClearPuzzle(p, false);
    if (rows < 1 || cols < 1) return false;
    uint64_t pieces = uint64_t(rows) * uint64_t(cols);
    uint64_t sheetPixels = uint64_t(g.boxWidth) * uint64_t(cols) * uint64_t(g.boxHeight) * uint64_t(rows);
    // Sizes that cannot be addressed on this machine fail like any other allocation.
    if (pieces > 0x1000000 || sheetPixels == 0 || sheetPixels > SIZE_MAX / 4 || sheetPixels > 0x7FFFFFFFull) {
        ClearPuzzle(p, true);
        return false;
    }
    p->sheet = static_cast<uint32_t*>(SysAllocLarge(size_t(sheetPixels) * 4));
    p->pieces = static_cast<PieceRecord*>(std::calloc(pieces, sizeof(PieceRecord)));
    p->order = static_cast<uint32_t*>(std::calloc(pieces, 4));
    p->scratch = static_cast<uint32_t*>(std::calloc(pieces, 4));
    p->renderPiece = static_cast<uint32_t*>(std::calloc(pieces, 4));
    p->renderRow = static_cast<uint32_t*>(std::calloc(pieces, 4));
    p->renderColumn = static_cast<uint32_t*>(std::calloc(pieces, 4));
    if (!p->sheet || !p->pieces || !p->order || !p->scratch || !p->renderPiece || !p->renderRow ||
        !p->renderColumn) {
        ClearPuzzle(p, true);
        return false;
    }
    p->rows = rows;
    p->cols = cols;
    p->scale = scale;
    p->cellWidth = g.cellWidth;
    p->cellHeight = g.cellHeight;
    p->boxWidth = g.boxWidth;
    p->boxHeight = g.boxHeight;
    p->sheetWidth = g.boxWidth * cols;
    p->sheetLastRow = g.boxHeight * rows - 1;
    PutAllPiecesOnTable(p);
    return true;
}

bool HasPuzzle(const PuzzleState* p) { return p->sheet != nullptr; }

void ClearPuzzle(PuzzleState* p, bool repaint) {
    ForgetHistoryOf(&g_history, p);  // its gestures belong to the puzzle that goes
    ReleasePuzzleMemory(p);
    for (int v = 0; v < kViewCount; ++v) {
        if (v < kTrayCount && p->views[v].count && g_puzzleHooks.viewEmptied) g_puzzleHooks.viewEmptied(v);
        p->views[v].count = 0;
        p->views[v].entries = nullptr;
    }
    if (repaint && g_puzzleHooks.repaintView)
        for (int v = 0; v < kViewCount; ++v) g_puzzleHooks.repaintView(v);
    p->clockPending = 0;
    if (g_puzzleHooks.stopClock) g_puzzleHooks.stopClock();
    p->timerId = 0;
    if (g_puzzleHooks.restoreCursor) g_puzzleHooks.restoreCursor();
}

bool IsPuzzleChangedSinceSave(const PuzzleState* p) { return p->sheet && p->puzzle_dirty && !p->finished; }

// Re-derives each run's start from the counts: the runs lie back to back in view order.
static void RelinkRuns(PuzzleState* p) {
    uint32_t start = 0;
    for (int v = 0; v < kViewCount; ++v) {
        p->views[v].entries = p->order ? p->order + start : nullptr;
        start += p->views[v].count;
    }
}

void RelinkViewRuns(PuzzleState* p) { RelinkRuns(p); }

void PutAllPiecesOnTable(PuzzleState* p) {
    uint32_t n = PieceCount(p);
    for (uint32_t i = 0; i < n; ++i) p->order[i] = i;
    for (int v = 0; v < kViewCount; ++v) p->views[v].count = 0;
    p->views[kTableView].count = n;
    RelinkRuns(p);
}

Rect PieceBox(const PuzzleState* p, uint32_t i) {
    const PieceRecord& piece = p->pieces[i];
    return Rect{piece.x, piece.y, p->boxWidth, p->boxHeight};
}

Point PieceHomePosition(const PuzzleState* p, uint32_t i) {
    int32_t gridLeft = (p->tableWidth - p->cols * p->cellWidth) / 2;
    int32_t gridTop = (p->tableHeight - p->rows * p->cellHeight) / 2;
    int32_t mx = (p->boxWidth - p->cellWidth) / 2, my = (p->boxHeight - p->cellHeight) / 2;
    return Point{gridLeft + PieceColumn(p, i) * p->cellWidth - mx, gridTop + PieceRow(p, i) * p->cellHeight - my};
}

uint32_t* SheetPixel(const PuzzleState* p, uint32_t i, int32_t x, int32_t y) {
    int64_t r = PieceRow(p, i), c = PieceColumn(p, i);
    int64_t row = int64_t(p->boxHeight) * p->rows - r * p->boxHeight - y - 1;
    return p->sheet + row * p->sheetWidth + c * p->boxWidth + x;
}

uint32_t ViewStart(const PuzzleState* p, int view) {
    uint32_t start = 0;
    for (int v = 0; v < view; ++v) start += p->views[v].count;
    return start;
}

void MoveRun(PuzzleState* p, int fromView, uint32_t first, uint32_t length, int toView) {
    if (length == 0 || first + length > p->views[fromView].count) return;
    uint32_t from = ViewStart(p, fromView) + first;
    std::memcpy(p->scratch, p->order + from, length * sizeof(uint32_t));
    if (toView > fromView) {
        // The entries up to the destination's top slide down over the gap; the run lands just
        // above the destination's old first entry, which becomes its new top.
        uint32_t top = ViewStart(p, toView);
        std::memmove(p->order + from, p->order + from + length, (top - from - length) * sizeof(uint32_t));
        std::memcpy(p->order + top - length, p->scratch, length * sizeof(uint32_t));
    } else {
        uint32_t top = ViewStart(p, toView);
        std::memmove(p->order + top + length, p->order + top, (from - top) * sizeof(uint32_t));
        std::memcpy(p->order + top, p->scratch, length * sizeof(uint32_t));
    }
    p->views[fromView].count -= length;
    p->views[toView].count += length;
    RelinkRuns(p);
}

bool FindPieceInViews(const PuzzleState* p, uint32_t piece, int* view, uint32_t* position) {
    for (int v = 0; v < kViewCount; ++v)
        for (uint32_t k = 0; k < p->views[v].count; ++k)
            if (p->views[v].entries[k] == piece) {
                if (view) *view = v;
                if (position) *position = k;
                return true;
            }
    return false;
}

bool IsPuzzleComplete(const PuzzleState* p) {
    uint32_t n = PieceCount(p);
    if (!p->sheet || p->views[kTableView].count != n) return false;
    for (uint32_t i = 0; i < n; ++i)
        if (p->pieces[i].group != n) return false;
    return true;
}

bool PuzzleInvariantsHold(const PuzzleState* p) {
    if (!p->sheet) return true;
    uint32_t n = PieceCount(p);
    uint32_t total = 0;
    for (int v = 0; v < kViewCount; ++v) {
        if (p->views[v].entries != p->order + total) return false;
        total += p->views[v].count;
    }
    if (total != n) return false;
    std::vector<uint8_t> seen(n, 0);
    std::vector<int> viewOf(n, -1);
    for (int v = 0; v < kViewCount; ++v)
        for (uint32_t k = 0; k < p->views[v].count; ++k) {
            uint32_t i = p->views[v].entries[k];
            if (i >= n || seen[i]) return false;
            seen[i] = 1;
            viewOf[i] = v;
        }
    // Each group is checked against its first member found.
    std::vector<int64_t> anchor(n + 1, -1);
    for (uint32_t i = 0; i < n; ++i) {
        uint32_t g = p->pieces[i].group;
        if (!g) continue;
        if (g > n) return false;
        if (anchor[g] < 0) {
            anchor[g] = i;
            continue;
        }
        uint32_t a = uint32_t(anchor[g]);
        if (viewOf[a] != viewOf[i]) return false;
        int64_t dx = int64_t(PieceColumn(p, i) - PieceColumn(p, a)) * p->cellWidth;
        int64_t dy = int64_t(PieceRow(p, i) - PieceRow(p, a)) * p->cellHeight;
        if (int64_t(p->pieces[i].x) - p->pieces[a].x != dx || int64_t(p->pieces[i].y) - p->pieces[a].y != dy)
            return false;
    }
    return true;
}
