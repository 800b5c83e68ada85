// Gathering the loose edge pieces of the table into the first empty tray.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "puzzle/board_logic.h"
#include "puzzle/gather.h"
#include "puzzle/history.h"
#include "puzzle/join.h"
#include "puzzle_test_support.h"

namespace {

struct Gather : ::testing::Test {
    void SetUp() override {
        InstallRecordingHooks();
        FixRandom(31);
        p = PuzzleState{};
        ClearHistory(&g_history);
    }
    void TearDown() override {
        ReleaseTestPuzzle(&p);
        ClearHistory(&g_history);
        g_puzzleHooks = PuzzleHooks{};
    }
    // rows x cols pieces of 40 x 40 cells (boxes 66 x 66), trays 288 x trayHeight.
    void Make(int32_t rows, int32_t cols, int32_t trayHeight = 200) {
        ASSERT_TRUE(CutTestPuzzle(&p, rows, cols, 40 * cols, 40 * rows, 2, 2, 1.0, true, 24, 947, 640));
        GiveViewPictures(&p, trayHeight);
        g_hookLog.events.clear();
    }
    // Moves piece i from the table to the top of tray v.
    void PutInTray(uint32_t i, int v) {
        int view;
        uint32_t position;
        ASSERT_TRUE(FindPieceInViews(&p, i, &view, &position));
        MoveRun(&p, view, position, 1, v);
    }
    std::vector<uint32_t> LooseEdgesInTableOrder() {
        std::vector<uint32_t> edges;
        for (uint32_t i : RunOf(&p, kTableView))
            if (p.pieces[i].group == 0 && IsEdgePiece(&p, i)) edges.push_back(i);
        return edges;
    }
    PuzzleState p;
};

bool Overlap(const PuzzleState& p, uint32_t a, uint32_t b) {
    const PieceRecord &x = p.pieces[a], &y = p.pieces[b];
    return x.x < y.x + p.boxWidth && y.x < x.x + p.boxWidth && x.y < y.y + p.boxHeight && y.y < x.y + p.boxHeight;
}

}  // namespace

TEST_F(Gather, EdgePiecesAreTheFirstAndLastRowsAndColumns) {
    Make(4, 5);
    std::vector<uint32_t> edges;
    for (uint32_t i = 0; i < PieceCount(&p); ++i)
        if (IsEdgePiece(&p, i)) edges.push_back(i);
    EXPECT_EQ(edges, (std::vector<uint32_t>{0, 1, 2, 3, 4, 5, 9, 10, 14, 15, 16, 17, 18, 19}));
}

TEST_F(Gather, MovesExactlyTheLooseEdgePiecesOfTheTableIntoTheFirstEmptyTray) {
    Make(4, 5);
    PutInTray(0, 0);  // tray 0 holds a corner: it is not empty, and that corner stays there
    // Pieces 1 and 2 joined on the table: a group is not loose.
    p.pieces[2].x = p.pieces[1].x + p.cellWidth;
    p.pieces[2].y = p.pieces[1].y;
    p.pieces[1].group = p.pieces[2].group = 3;
    p.pieces[17].lit = 0;  // selected pieces go too, plain
    ASSERT_TRUE(PuzzleInvariantsHold(&p));
    const std::vector<uint32_t> expected = LooseEdgesInTableOrder();
    ASSERT_EQ(expected.size(), 11u);  // 14 edges less the corner in tray 0 and the pair

    EXPECT_EQ(GatherEdgePieces(&p), 1);
    EXPECT_EQ(RunOf(&p, 1), expected);  // in their order on the table
    EXPECT_EQ(RunOf(&p, 0), std::vector<uint32_t>{0});
    for (uint32_t i : RunOf(&p, kTableView)) EXPECT_TRUE(!IsEdgePiece(&p, i) || p.pieces[i].group) << i;
    EXPECT_EQ(p.pieces[17].lit, 1u);
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
    EXPECT_TRUE(g_hookLog.has("filled 1"));
    EXPECT_TRUE(g_hookLog.has("enable save"));
    EXPECT_EQ(p.puzzle_dirty, 1u);
    EXPECT_EQ(CountLooseEdgePieces(&p), 0u);
    EXPECT_FALSE(CanGatherEdgePieces(&p));  // nothing left to gather
}

TEST_F(Gather, GatheringWithAllBoxesFullChangesNothing) {
    Make(4, 5);
    for (int v = 0; v < kTrayCount; ++v) PutInTray(uint32_t(6 + v % 3 + (v / 3) * 5), v);  // inner pieces
    const std::vector<PieceRecord> pieces(p.pieces, p.pieces + PieceCount(&p));
    const std::vector<uint32_t> order(p.order, p.order + PieceCount(&p));
    p.puzzle_dirty = 0;
    g_hookLog.events.clear();
    EXPECT_FALSE(CanGatherEdgePieces(&p));
    EXPECT_EQ(GatherEdgePieces(&p), -1);
    EXPECT_EQ(std::vector<uint32_t>(p.order, p.order + PieceCount(&p)), order);
    for (uint32_t i = 0; i < PieceCount(&p); ++i) {
        EXPECT_EQ(p.pieces[i].x, pieces[i].x);
        EXPECT_EQ(p.pieces[i].y, pieces[i].y);
    }
    EXPECT_TRUE(g_hookLog.events.empty());
    EXPECT_EQ(p.puzzle_dirty, 0u);
}

TEST_F(Gather, TheGatheredPiecesLieSideBySideWhenTheBoxHasRoom) {
    Make(3, 4);  // 10 edge pieces of 66 x 66 in a 288 x 200 tray: four columns, three rows
    ASSERT_EQ(GatherEdgePieces(&p), 0);
    const std::vector<uint32_t> run = RunOf(&p, 0);
    ASSERT_EQ(run.size(), 10u);
    for (size_t a = 0; a < run.size(); ++a) {
        const PieceRecord& piece = p.pieces[run[a]];
        EXPECT_GE(piece.x, 0);
        EXPECT_GE(piece.y, 0);
        EXPECT_LE(piece.x + p.boxWidth, 288);
        EXPECT_LE(piece.y + p.boxHeight, 200);
        for (size_t b = a + 1; b < run.size(); ++b) EXPECT_FALSE(Overlap(p, run[a], run[b])) << run[a] << " " << run[b];
    }
}

TEST_F(Gather, TooManyForTheBoxLieCloserTogetherWhereAMovedPieceMayLie) {
    Make(8, 10, 90);  // 32 edge pieces, a tray 288 x 90: one row of four whole boxes only
    ASSERT_EQ(GatherEdgePieces(&p), 0);
    const std::vector<uint32_t> run = RunOf(&p, 0);
    ASSERT_EQ(run.size(), 32u);
    std::vector<std::pair<int32_t, int32_t>> places;
    for (uint32_t i : run) {
        const Point held = HoldInsideView(&p, 0, Point{p.pieces[i].x, p.pieces[i].y});
        EXPECT_EQ(held.x, p.pieces[i].x) << i;  // where a piece moved inside the box could lie too
        EXPECT_EQ(held.y, p.pieces[i].y) << i;
        places.emplace_back(p.pieces[i].x, p.pieces[i].y);
    }
    std::sort(places.begin(), places.end());
    EXPECT_EQ(std::unique(places.begin(), places.end()), places.end()) << "each piece has a place of its own";
}

TEST_F(Gather, GatherPlaceCentresWholeBoxesAndKeepsCrowdedOnesWhereTheyMayLie) {
    // Two boxes of 50 x 40 (cells 30 x 24, margins 10 and 8) in 300 x 100: side by side, the pair centred.
    EXPECT_EQ(GatherPlace(300, 100, 50, 40, 30, 24, 2, 0).x, 100);
    EXPECT_EQ(GatherPlace(300, 100, 50, 40, 30, 24, 2, 1).x, 150);
    EXPECT_EQ(GatherPlace(300, 100, 50, 40, 30, 24, 2, 0).y, 30);
    for (uint32_t count : {1u, 7u, 60u, 5000u})
        for (uint32_t k = 0; k < count; ++k) {
            Point at = GatherPlace(300, 100, 50, 40, 30, 24, count, k);
            ASSERT_GE(at.x, -10);
            ASSERT_GE(at.y, -8);
            ASSERT_LE(at.x + 30, 300);
            ASSERT_LE(at.y + 24, 100);
        }
    // Pieces larger than the view still get places of their own, not one heap in the corner.
    const Point first = GatherPlace(200, 150, 300, 300, 180, 180, 4, 0), last = GatherPlace(200, 150, 300, 300, 180, 180, 4, 3);
    EXPECT_NE(first.x * 10000 + first.y, last.x * 10000 + last.y);
    EXPECT_GE(first.x, -60);
    EXPECT_LE(last.x + 180, 200);
}

TEST_F(Gather, IsOneGestureForUndo) {
    Make(4, 5);
    const std::vector<uint32_t> order(p.order, p.order + PieceCount(&p));
    const std::vector<PieceRecord> pieces(p.pieces, p.pieces + PieceCount(&p));
    BeginGesture(&g_history, &p);
    ASSERT_EQ(GatherEdgePieces(&p), 0);
    EndGesture(&g_history, &p);
    g_hookLog.events.clear();
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    EXPECT_EQ(std::vector<uint32_t>(p.order, p.order + PieceCount(&p)), order);
    for (uint32_t i = 0; i < PieceCount(&p); ++i) EXPECT_EQ(p.pieces[i].x, pieces[i].x) << i;
    EXPECT_EQ(p.views[0].count, 0u);
    EXPECT_TRUE(g_hookLog.has("emptied 0"));
    EXPECT_FALSE(CanUndo(&g_history, &p));
}

TEST_F(Gather, NothingHappensOnceThePuzzleIsComplete) {
    Make(2, 2);
    ShowComplete(&p);
    EXPECT_EQ(GatherEdgePieces(&p), -1);
}
