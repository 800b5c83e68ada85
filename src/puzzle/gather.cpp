// Gathering the edge pieces into the first empty tray.
#include "puzzle/gather.h"

#include "puzzle/compose.h"

#include <algorithm>

bool IsEdgePiece(const PuzzleState* p, uint32_t piece) {
    const int32_t row = PieceRow(p, piece), column = PieceColumn(p, piece);
    return row == 0 || row == p->rows - 1 || column == 0 || column == p->cols - 1;
}

int FirstEmptyTray(const PuzzleState* p) {
    for (int v = 0; v < kTrayCount; ++v)
        if (p->views[v].count == 0) return v;
    return -1;
}

uint32_t CountLooseEdgePieces(const PuzzleState* p) {
    if (!HasPuzzle(p)) return 0;
    const ViewList& table = p->views[kTableView];
    uint32_t count = 0;
    for (uint32_t k = 0; k < table.count; ++k) {
        const uint32_t i = table.entries[k];
        if (p->pieces[i].group == 0 && IsEdgePiece(p, i)) ++count;
    }
    return count;
}

bool CanGatherEdgePieces(const PuzzleState* p) {
    return HasPuzzle(p) && !p->finished && p->dragMode == 0 && FirstEmptyTray(p) >= 0 && CountLooseEdgePieces(p) > 0;
}

namespace {

// A grid with the widest step (boxWidth down, the height in proportion) that puts `count` places in the
// span; the k-th place counted from the span's start.
Point GridPlace(int64_t spanX, int64_t spanY, int64_t boxWidth, int64_t boxHeight, uint32_t count, uint32_t k,
                bool centred) {
    int64_t stepX = boxWidth, stepY = boxHeight, columns = 1, rows = 1;
    for (int64_t sx = boxWidth; sx >= 1; --sx) {
        stepX = sx;
        stepY = (sx * boxHeight + boxWidth - 1) / boxWidth;
        columns = spanX / stepX + 1;
        rows = spanY / stepY + 1;
        if (columns * rows >= int64_t(count)) break;
    }
    const int64_t column = int64_t(k) % columns, row = (int64_t(k) / columns) % rows;
    int64_t left = 0, top = 0;
    if (centred) {
        const int64_t usedColumns = std::min<int64_t>(count, columns);
        const int64_t usedRows = std::min<int64_t>((int64_t(count) + columns - 1) / columns, rows);
        left = (spanX - (usedColumns - 1) * stepX) / 2;
        top = (spanY - (usedRows - 1) * stepY) / 2;
    }
    return Point{int32_t(left + column * stepX), int32_t(top + row * stepY)};
}

}  // namespace

Point GatherPlace(int32_t viewWidth, int32_t viewHeight, int32_t boxWidth, int32_t boxHeight, int32_t cellWidth,
                  int32_t cellHeight, uint32_t count, uint32_t k) {
    const int64_t w = std::max(boxWidth, 1), h = std::max(boxHeight, 1);
    const int64_t roomX = int64_t(viewWidth) - w, roomY = int64_t(viewHeight) - h;
    if (roomX >= 0 && roomY >= 0 && (roomX / w + 1) * (roomY / h + 1) >= int64_t(count))
        return GridPlace(roomX, roomY, w, h, count, k, true);
    // Crowded: the held places run from minus the tab margin to the view less the cell.
    const int64_t marginX = (w - cellWidth) / 2, marginY = (h - cellHeight) / 2;
    const int64_t spanX = std::max<int64_t>(0, int64_t(viewWidth) - cellWidth + marginX);
    const int64_t spanY = std::max<int64_t>(0, int64_t(viewHeight) - cellHeight + marginY);
    const Point at = GridPlace(spanX, spanY, w, h, count, k, false);
    return Point{int32_t(at.x - marginX), int32_t(at.y - marginY)};
}

int GatherEdgePieces(PuzzleState* p) {
    if (!CanGatherEdgePieces(p)) return -1;
    const int tray = FirstEmptyTray(p);
    ViewList& table = p->views[kTableView];
    // The edge pieces to the top of the table's run in their order, the others below in theirs.
    uint32_t gathered = 0, write = table.count;
    for (uint32_t k = 0; k < table.count; ++k) {
        const uint32_t i = table.entries[k];
        if (p->pieces[i].group == 0 && IsEdgePiece(p, i)) p->scratch[gathered++] = i;
    }
    for (uint32_t k = table.count; k-- > 0;) {
        const uint32_t i = table.entries[k];
        if (!(p->pieces[i].group == 0 && IsEdgePiece(p, i))) table.entries[--write] = i;
    }
    for (uint32_t k = 0; k < gathered; ++k) table.entries[k] = p->scratch[k];
    MoveRun(p, kTableView, 0, gathered, tray);

    const ViewSurface& s = p->surfaces[tray];
    const ViewList& box = p->views[tray];
    for (uint32_t k = 0; k < box.count; ++k) {
        PieceRecord& piece = p->pieces[box.entries[k]];
        const Point at = GatherPlace(s.width, s.height, p->boxWidth, p->boxHeight, p->cellWidth, p->cellHeight,
                                     box.count, k);
        piece.x = at.x;
        piece.y = at.y;
        piece.lit = 1;
    }
    RepaintView(p, kTableView, true);
    RepaintView(p, tray, true);
    if (g_puzzleHooks.viewFilled) g_puzzleHooks.viewFilled(tray);
    if (table.count == 0 && g_puzzleHooks.viewEmptied) g_puzzleHooks.viewEmptied(kTableView);
    p->puzzle_dirty = 1;
    if (g_puzzleHooks.enableSave) g_puzzleHooks.enableSave();
    return tray;
}
