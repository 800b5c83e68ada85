// The puzzle model: geometry, allocation, clearing, runs of the seven views and completion.
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "puzzle/model.h"

namespace {

std::vector<int> g_emptied, g_repainted;
int g_clockStops = 0, g_cursorRestores = 0;

struct PuzzleModel : ::testing::Test {
    void SetUp() override {
        g_emptied.clear();
        g_repainted.clear();
        g_clockStops = g_cursorRestores = 0;
        g_puzzleHooks = PuzzleHooks{};
        g_puzzleHooks.viewEmptied = [](int view) { g_emptied.push_back(view); };
        g_puzzleHooks.repaintView = [](int view) { g_repainted.push_back(view); };
        g_puzzleHooks.stopClock = [] { ++g_clockStops; };
        g_puzzleHooks.restoreCursor = [] { ++g_cursorRestores; };
        p = PuzzleState{};
        p.tableWidth = 1024 - 77;
        p.tableHeight = 768 - 128;
    }
    void TearDown() override {
        ClearPuzzle(&p, false);
        g_puzzleHooks = PuzzleHooks{};
    }
    // A puzzle of rows x cols over a 400 x 300 photograph at zoom 1.
    void Make(int32_t rows, int32_t cols) {
        PuzzleGeometry g;
        ASSERT_TRUE(ComputePuzzleGeometry(400, 300, 1.0, rows, cols, &g));
        ASSERT_TRUE(AllocatePuzzle(&p, g, rows, cols, 1.0));
    }
    std::vector<uint32_t> Run(int view) const {
        return std::vector<uint32_t>(p.views[view].entries, p.views[view].entries + p.views[view].count);
    }
    PuzzleState p;
};

}  // namespace

TEST_F(PuzzleModel, PieceRecordIsSixteenBytesWithPositionAtEight) {
    EXPECT_EQ(sizeof(PieceRecord), 16u);
    EXPECT_EQ(offsetof(PieceRecord, group), 0u);
    EXPECT_EQ(offsetof(PieceRecord, lit), 4u);
    EXPECT_EQ(offsetof(PieceRecord, x), 8u);
    EXPECT_EQ(offsetof(PieceRecord, y), 12u);
}

TEST_F(PuzzleModel, ScaledImageUnder45PixelsCannotBeCut) {
    PuzzleGeometry g;
    EXPECT_FALSE(ComputePuzzleGeometry(100, 200, 0.44, 2, 2, &g));  // 44 x 88
    EXPECT_FALSE(ComputePuzzleGeometry(300, 100, 0.449, 2, 2, &g));  // 134 x 44
    EXPECT_FALSE(HasPuzzle(&p));
    EXPECT_EQ(p.sheet, nullptr);
    for (int v = 0; v < kViewCount; ++v) EXPECT_EQ(p.views[v].count, 0u);
    EXPECT_TRUE(ComputePuzzleGeometry(100, 200, 0.45, 2, 2, &g));  // 45 x 90 is enough
    EXPECT_EQ(g.scaledWidth, 45);
}

TEST_F(PuzzleModel, GeometryTruncatesCellsAndMargins) {
    PuzzleGeometry g;
    ASSERT_TRUE(ComputePuzzleGeometry(1000, 750, 0.8, 7, 9, &g));
    EXPECT_EQ(g.scaledWidth, 800);
    EXPECT_EQ(g.scaledHeight, 600);
    EXPECT_EQ(g.cellWidth, 88);   // 800 / 9
    EXPECT_EQ(g.cellHeight, 85);  // 600 / 7
    EXPECT_EQ(g.marginX, 29);     // trunc(0.33 * 88)
    EXPECT_EQ(g.marginY, 28);
    EXPECT_EQ(g.boxWidth, 146);
    EXPECT_EQ(g.boxHeight, 141);
}

TEST_F(PuzzleModel, AllocationPutsEveryPieceOnTheTableInIndexOrder) {
    Make(3, 4);
    EXPECT_TRUE(HasPuzzle(&p));
    EXPECT_EQ(p.sheetWidth, p.boxWidth * 4);
    EXPECT_EQ(p.sheetLastRow, p.boxHeight * 3 - 1);
    for (int v = 0; v < kTrayCount; ++v) EXPECT_EQ(p.views[v].count, 0u);
    EXPECT_EQ(Run(kTableView), (std::vector<uint32_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
}

TEST_F(PuzzleModel, GroupIdsAreNotRenumberedAndReachingTheLastIdIsNotCompletion) {
    Make(2, 4);
    // Pieces 3 and 7 are vertical neighbours in the last column: the group takes the larger index + 1.
    p.pieces[3].group = p.pieces[7].group = 7 + 1;
    p.pieces[7].x = p.pieces[3].x;
    p.pieces[7].y = p.pieces[3].y + p.cellHeight;
    EXPECT_EQ(p.pieces[3].group, 8u);
    EXPECT_EQ(p.pieces[3].group, PieceCount(&p));
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
    EXPECT_FALSE(IsPuzzleComplete(&p));
    for (uint32_t i = 0; i < 8; ++i) {
        p.pieces[i].group = 8;
        Point home = PieceHomePosition(&p, i);
        p.pieces[i].x = home.x;
        p.pieces[i].y = home.y;
    }
    EXPECT_TRUE(IsPuzzleComplete(&p));
    // Complete needs every piece in the table.
    MoveRun(&p, kTableView, 0, 1, 2);
    EXPECT_FALSE(IsPuzzleComplete(&p));
}

TEST_F(PuzzleModel, MovingTheLastPieceOutOfATrayLeavesAnEmptyRun) {
    Make(2, 3);
    MoveRun(&p, kTableView, 4, 1, 2);  // piece 4 into tray 2
    EXPECT_EQ(Run(2), (std::vector<uint32_t>{4}));
    EXPECT_EQ(p.views[3].entries, p.order + 1);
    MoveRun(&p, 2, 0, 1, kTableView);  // and back: to the top of the table
    EXPECT_EQ(p.views[2].count, 0u);
    EXPECT_TRUE(Run(2).empty());
    // The runs after tray 2 start where it starts.
    EXPECT_EQ(p.views[3].entries, p.views[2].entries);
    EXPECT_EQ(p.views[kTableView].entries, p.views[2].entries);
    EXPECT_EQ(Run(kTableView), (std::vector<uint32_t>{4, 0, 1, 2, 3, 5}));
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
}

TEST_F(PuzzleModel, RunMovesLandOnTopAndShiftTheRunsBetween) {
    Make(3, 3);
    MoveRun(&p, kTableView, 2, 3, 1);  // pieces 2, 3, 4 into tray 1
    MoveRun(&p, kTableView, 0, 1, 4);  // piece 0 into tray 4
    EXPECT_EQ(Run(1), (std::vector<uint32_t>{2, 3, 4}));
    EXPECT_EQ(Run(4), (std::vector<uint32_t>{0}));
    // From a lower view to a higher one: tray 1's middle entry to the top of tray 4.
    MoveRun(&p, 1, 1, 1, 4);
    EXPECT_EQ(Run(1), (std::vector<uint32_t>{2, 4}));
    EXPECT_EQ(Run(4), (std::vector<uint32_t>{3, 0}));
    // Within one view: the bottom entry to the top.
    MoveRun(&p, kTableView, 4, 1, kTableView);
    EXPECT_EQ(Run(kTableView), (std::vector<uint32_t>{8, 1, 5, 6, 7}));
    // From the table down to tray 0, past every run between.
    MoveRun(&p, kTableView, 1, 2, 0);
    EXPECT_EQ(Run(0), (std::vector<uint32_t>{1, 5}));
    EXPECT_EQ(Run(1), (std::vector<uint32_t>{2, 4}));
    EXPECT_EQ(Run(kTableView), (std::vector<uint32_t>{8, 6, 7}));
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
    int view;
    uint32_t position;
    ASSERT_TRUE(FindPieceInViews(&p, 3, &view, &position));
    EXPECT_EQ(view, 4);
    EXPECT_EQ(position, 0u);
    // A run reaching past its view is refused.
    MoveRun(&p, 4, 1, 2, 0);
    EXPECT_EQ(Run(4), (std::vector<uint32_t>{3, 0}));
}

TEST_F(PuzzleModel, ClearingTellsNonEmptyTraysRepaintsAndResets) {
    Make(2, 2);
    MoveRun(&p, kTableView, 0, 1, 1);
    MoveRun(&p, kTableView, 0, 1, 5);
    p.clockPending = 1;
    ClearPuzzle(&p, true);
    EXPECT_EQ(g_emptied, (std::vector<int>{1, 5}));
    EXPECT_EQ(g_repainted.size(), 7u);
    EXPECT_GE(g_clockStops, 1);
    EXPECT_GE(g_cursorRestores, 1);
    EXPECT_FALSE(HasPuzzle(&p));
    EXPECT_EQ(p.pieces, nullptr);
    EXPECT_EQ(p.order, nullptr);
    EXPECT_EQ(p.scratch, nullptr);
    EXPECT_EQ(p.renderPiece, nullptr);
    EXPECT_EQ(p.clockPending, 0);
    for (int v = 0; v < kViewCount; ++v) EXPECT_EQ(p.views[v].count, 0u);
    g_repainted.clear();
    ClearPuzzle(&p, false);
    EXPECT_TRUE(g_repainted.empty());
}

TEST_F(PuzzleModel, ChangedSinceSaveNeedsASheetADropAndNoFinish) {
    EXPECT_FALSE(IsPuzzleChangedSinceSave(&p));
    p.puzzle_dirty = 1;
    EXPECT_FALSE(IsPuzzleChangedSinceSave(&p));  // no sheet
    Make(2, 2);
    p.puzzle_dirty = 0;
    EXPECT_FALSE(IsPuzzleChangedSinceSave(&p));
    p.puzzle_dirty = 1;
    EXPECT_TRUE(IsPuzzleChangedSinceSave(&p));
    p.finished = 1;
    EXPECT_FALSE(IsPuzzleChangedSinceSave(&p));
}

TEST_F(PuzzleModel, HomePositionsCentreTheGridInTheTable) {
    Make(3, 4);  // 400 x 300: cells 100 x 100, margins 33, boxes 166
    EXPECT_EQ(p.cellWidth, 100);
    EXPECT_EQ(p.boxWidth, 166);
    Point first = PieceHomePosition(&p, 0);
    EXPECT_EQ(first.x, (947 - 400) / 2 - 33);
    EXPECT_EQ(first.y, (640 - 300) / 2 - 33);
    Point last = PieceHomePosition(&p, 11);
    EXPECT_EQ(last.x, first.x + 300);
    EXPECT_EQ(last.y, first.y + 200);
    EXPECT_EQ(PieceRow(&p, 11), 2);
    EXPECT_EQ(PieceColumn(&p, 11), 3);
    Rect box = PieceBox(&p, 11);
    EXPECT_EQ(box.width, 166);
    EXPECT_EQ(box.height, 166);
}

TEST_F(PuzzleModel, SheetPixelsAreAddressedBottomUpPerPieceBox) {
    Make(2, 3);
    int32_t W = p.boxWidth, H = p.boxHeight;
    // Piece 0's top-left pixel lies in the sheet's last stored row; piece 5's bottom-right in row 0.
    EXPECT_EQ(SheetPixel(&p, 0, 0, 0), p.sheet + size_t(2 * H - 1) * p.sheetWidth);
    EXPECT_EQ(SheetPixel(&p, 5, W - 1, H - 1), p.sheet + 2 * W + W - 1);
    EXPECT_EQ(SheetPixel(&p, 4, 3, 2), p.sheet + size_t(2 * H - H - 2 - 1) * p.sheetWidth + W + 3);
}

TEST_F(PuzzleModel, InvariantCheckCatchesBrokenStates) {
    Make(2, 2);
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
    p.order[1] = 0;  // index 0 twice, 1 missing
    EXPECT_FALSE(PuzzleInvariantsHold(&p));
    p.order[1] = 1;
    p.pieces[0].group = p.pieces[1].group = 2;
    p.pieces[1].x = p.pieces[0].x + p.cellWidth + 1;  // one pixel off the cell offset
    p.pieces[1].y = p.pieces[0].y;
    EXPECT_FALSE(PuzzleInvariantsHold(&p));
    p.pieces[1].x -= 1;
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
    MoveRun(&p, kTableView, 0, 1, 3);  // group split across two views
    EXPECT_FALSE(PuzzleInvariantsHold(&p));
}
