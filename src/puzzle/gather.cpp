// Gathering the edge pieces into the first empty tray.
#include "puzzle/gather.h"

#include "puzzle/compose.h"

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

Point GatherPlace(int32_t viewWidth, int32_t viewHeight, int32_t boxWidth, int32_t boxHeight, uint32_t count,
                  uint32_t k) {
    if (boxWidth < 1) boxWidth = 1;
    if (boxHeight < 1) boxHeight = 1;
    const int64_t roomX = viewWidth > boxWidth ? viewWidth - boxWidth : 0;
    const int64_t roomY = viewHeight > boxHeight ? viewHeight - boxHeight : 0;
    // The widest step (whole boxes first) at which the grid still holds every box.
    int64_t stepX = boxWidth, stepY = boxHeight, columns = 1, rows = 1;
    for (int64_t sx = boxWidth; sx >= 1; --sx) {
        stepX = sx;
        stepY = (sx * boxHeight + boxWidth - 1) / boxWidth;
        if (stepY < 1) stepY = 1;
        columns = roomX / stepX + 1;
        rows = roomY / stepY + 1;
        if (columns * rows >= int64_t(count)) break;
    }
    const int64_t column = int64_t(k) % columns, row = (int64_t(k) / columns) % rows;
    // Whole boxes that fit are centred in the view.
    const int64_t usedColumns = int64_t(count) < columns ? int64_t(count) : columns;
    const int64_t usedRows = (int64_t(count) + columns - 1) / columns < rows ? (int64_t(count) + columns - 1) / columns : rows;
    const int64_t left = (roomX - (usedColumns - 1) * stepX) / 2, top = (roomY - (usedRows - 1) * stepY) / 2;
    return Point{int32_t(left + column * stepX), int32_t(top + row * stepY)};
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
        const Point at = GatherPlace(s.width, s.height, p->boxWidth, p->boxHeight, box.count, k);
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
