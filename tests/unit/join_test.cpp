// Joining, group ids, moves between views, completion, hints and statistics.
#include <gtest/gtest.h>

#include <vector>

#include "puzzle/board_logic.h"
#include "puzzle/compose.h"
#include "puzzle/join.h"
#include "puzzle/score.h"
#include "puzzle_test_support.h"

namespace {

struct Joining : ::testing::Test {
    void SetUp() override {
        InstallRecordingHooks();
        FixRandom(11);
        p = PuzzleState{};
        d = DragState{};
    }
    void TearDown() override {
        ReleaseTestPuzzle(&p);
        g_puzzleHooks = PuzzleHooks{};
    }
    // rows x cols pieces of 100 x 100 cells (tab margins 33), all on the table, loose and lit.
    void Make(int32_t rows, int32_t cols) {
        ASSERT_TRUE(CutTestPuzzle(&p, rows, cols, 100 * cols, 100 * rows, 2, 2, 1.0, true, 24, 947, 640));
        GiveViewPictures(&p);
        ASSERT_EQ(p.cellWidth, 100);
        ASSERT_EQ(p.cellHeight, 100);
        g_hookLog.events.clear();
    }
    void Place(uint32_t i, int32_t x, int32_t y) {
        p.pieces[i].x = x;
        p.pieces[i].y = y;
    }
    // Brings piece i to the top of its view's run.
    int Raise(uint32_t i) {
        int view;
        uint32_t position;
        EXPECT_TRUE(FindPieceInViews(&p, i, &view, &position));
        MoveRun(&p, view, position, 1, view);
        return view;
    }
    DropResult Drop(uint32_t i, int32_t x, int32_t y) {
        int view = Raise(i);
        return DropPiece(&p, view, view, i, x, y);
    }
    PuzzleState p;
    DragState d;
};

}  // namespace

TEST_F(Joining, TwoPiecesSixPixelsOffInBothAxesJoinSevenPixelsOffDoNot) {
    Make(2, 2);
    for (int32_t dx : {-7, -6, 0, 6, 7})
        for (int32_t dy : {-7, -6, 0, 6, 7}) {
            Place(0, 300, 200);
            Place(1, 600, 500);
            p.pieces[0].group = p.pieces[1].group = 0;
            DropResult r = Drop(1, 300 + 100 + dx, 200 + dy);  // piece 1 is piece 0's right neighbour
            bool within = dx >= -6 && dx <= 6 && dy >= -6 && dy <= 6;
            EXPECT_EQ(r.joined, within) << dx << ", " << dy;
            if (within) {
                EXPECT_EQ(p.pieces[1].x, 400);  // pulled exactly into place
                EXPECT_EQ(p.pieces[1].y, 200);
                EXPECT_EQ(p.pieces[0].group, 2u);
                EXPECT_EQ(p.pieces[1].group, 2u);
            } else {
                EXPECT_EQ(p.pieces[1].x, 400 + dx);  // left where it was let go
                EXPECT_EQ(p.pieces[1].y, 200 + dy);
                EXPECT_EQ(p.pieces[1].group, 0u);
            }
        }
}

TEST_F(Joining, PieceDroppedNearItsUpperAndLeftNeighboursJoinsTheOneHigherInTheRunOnly) {
    Make(3, 3);
    for (bool leftHigher : {true, false}) {
        for (uint32_t i = 0; i < 9; ++i) p.pieces[i].group = 0;
        Place(1, 200, 100);             // upper neighbour of 4
        Place(3, 203 - 100 - 4, 205);   // left neighbour of 4, 4 and 3 pixels off
        Raise(leftHigher ? 1 : 3);
        Raise(leftHigher ? 3 : 1);
        DropResult r = Drop(4, 203, 202);
        ASSERT_TRUE(r.joined);
        if (leftHigher) {
            EXPECT_EQ(r.partner, 3u);
            EXPECT_EQ(p.pieces[4].x, 199);  // exactly right of 3
            EXPECT_EQ(p.pieces[4].y, 205);
            EXPECT_EQ(p.pieces[1].group, 0u);
            EXPECT_EQ(p.pieces[3].group, 5u);
        } else {
            EXPECT_EQ(r.partner, 1u);
            EXPECT_EQ(p.pieces[4].x, 200);  // exactly below 1
            EXPECT_EQ(p.pieces[4].y, 200);
            EXPECT_EQ(p.pieces[3].group, 0u);
            EXPECT_EQ(p.pieces[1].group, 5u);
        }
        EXPECT_EQ(p.pieces[4].group, 5u);
        EXPECT_EQ(g_hookLog.count("join sound"), leftHigher ? 1 : 2);
    }
}

TEST_F(Joining, OwnGroupIsSkippedButTwoLoosePiecesAreNeverOneGroup) {
    Make(2, 2);
    Place(0, 300, 200);
    Place(1, 400, 200);
    p.pieces[0].group = p.pieces[1].group = 2;
    // Piece 1 put back beside its own group member: no join, it stays where dropped.
    DropResult r = Drop(1, 402, 203);
    EXPECT_FALSE(r.joined);
    EXPECT_EQ(g_hookLog.count("join sound"), 0);
    // Two loose pieces at the fitting place do join.
    p.pieces[0].group = p.pieces[1].group = 0;
    p.pieces[0].x = 402 - 100;
    p.pieces[0].y = 203;
    r = Drop(1, 402, 203);
    EXPECT_TRUE(r.joined);
    EXPECT_EQ(p.pieces[0].group, 2u);
}

TEST_F(Joining, PieceZeroAndOneTakeIdTwoThenJoiningPieceColsRelabelsTheGroupToColsPlusOne) {
    Make(3, 4);
    Place(0, 100, 100);
    ASSERT_TRUE(Drop(1, 200, 100).joined);
    EXPECT_EQ(p.pieces[0].group, 2u);
    EXPECT_EQ(p.pieces[1].group, 2u);
    ASSERT_TRUE(Drop(4, 101, 198).joined);  // piece cols = 4, below piece 0
    EXPECT_EQ(p.pieces[4].x, 100);
    EXPECT_EQ(p.pieces[4].y, 200);
    for (uint32_t i : {0u, 1u, 4u}) EXPECT_EQ(p.pieces[i].group, 5u) << i;
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
}

TEST_F(Joining, GroupIdsAreNotRenumberedAndTheTopIdAloneIsNotCompletion) {
    Make(2, 4);  // 8 pieces: 3 and 7 are vertical neighbours, ids 4 and 8
    Place(3, 500, 100);
    ASSERT_TRUE(Drop(7, 500, 200).joined);
    EXPECT_EQ(p.pieces[3].group, 8u);
    EXPECT_EQ(p.pieces[7].group, 8u);
    EXPECT_FALSE(IsPuzzleComplete(&p));
    EXPECT_EQ(p.finished, 0);
    EXPECT_EQ(g_hookLog.count("completed"), 0);
    // A later join keeps the larger id: 2 joins 3's group, which stays 8.
    ASSERT_TRUE(Drop(2, 400, 100).joined);
    EXPECT_EQ(p.pieces[2].group, 8u);
}

TEST_F(Joining, GroupDroppedOnALooseNeighbourKeepsTheLargerIdAndMovesWhole) {
    Make(3, 4);
    // Group {5, 6} (id 7) at an offset; piece 2 (above 6) loose at (500, 50).
    Place(5, 100, 300);
    Place(6, 200, 300);
    p.pieces[5].group = p.pieces[6].group = 7;
    Place(2, 500, 50);
    // Drop 6 just below 2: the group moves by the same amount; ids: q + 1 = 3 < 7, so 2 takes 7.
    DropResult r = Drop(6, 503, 148);
    ASSERT_TRUE(r.joined);
    EXPECT_EQ(r.moved, 2u);
    EXPECT_EQ(p.pieces[6].x, 500);
    EXPECT_EQ(p.pieces[6].y, 150);
    EXPECT_EQ(p.pieces[5].x, 400);
    EXPECT_EQ(p.pieces[5].y, 150);
    EXPECT_EQ(p.pieces[2].group, 7u);
    // And a group meeting a group with a larger id is relabelled: {9} loose joins under 5 -> id 10 wins.
    ASSERT_TRUE(Drop(9, 400, 251).joined);
    for (uint32_t i : {2u, 5u, 6u, 9u}) EXPECT_EQ(p.pieces[i].group, 10u) << i;
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
}

TEST_F(Joining, SelectedNeighbourBecomesLitAndIsRecomposed) {
    Make(2, 2);
    Place(0, 300, 200);
    p.pieces[0].lit = 0;
    ASSERT_TRUE(Drop(1, 400, 200).joined);
    EXPECT_EQ(p.pieces[0].lit, 1);
    EXPECT_TRUE(g_hookLog.has("invalidate 6 300 200 166 166"));
}

TEST_F(Joining, AfterThePuzzleIsFinishedDropsOnlyMovePieces) {
    Make(2, 2);
    Place(0, 300, 200);
    p.finished = 1;
    DropResult r = Drop(1, 402, 201);
    EXPECT_FALSE(r.joined);
    EXPECT_EQ(p.pieces[1].x, 402);
    EXPECT_EQ(p.pieces[1].y, 201);
}

TEST_F(Joining, DropRepaintsTheUnionWhenOldAndNewOverlapElseEach) {
    Make(2, 2);
    Place(1, 600, 400);
    Drop(1, 610, 420);
    EXPECT_TRUE(g_hookLog.has("invalidate 6 600 400 176 186"));
    g_hookLog.events.clear();
    Drop(1, 100, 100);
    EXPECT_TRUE(g_hookLog.has("invalidate 6 610 420 166 166"));
    EXPECT_TRUE(g_hookLog.has("invalidate 6 100 100 166 166"));
    EXPECT_EQ(p.puzzle_dirty, 1);
}

TEST_F(Joining, MovingTheLastPieceOutOfATrayLeavesAnEmptyRunWhereTheNextBegins) {
    Make(2, 2);
    LayOut(&p, {6, 2, 6, 6});  // piece 1 alone in tray 2
    d.sourceView = d.dragView = 2;
    d.dragPos = Point{50, 60};
    DropResult r = MoveToView(&p, &d, 2, PointerWindow{POINTER_VIEW, 106});
    EXPECT_FALSE(r.cancelled);
    EXPECT_EQ(p.views[2].count, 0u);
    EXPECT_EQ(p.views[2].entries, p.order + ViewStart(&p, 2));
    EXPECT_EQ(p.views[3].entries, p.views[2].entries);
    EXPECT_EQ(p.views[kTableView].count, 4u);
    EXPECT_EQ(p.views[kTableView].entries[0], 1u);  // on top of the table
    EXPECT_EQ(p.pieces[1].x, 50);
    EXPECT_EQ(p.pieces[1].y, 60);
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
    EXPECT_TRUE(g_hookLog.has("emptied 2"));
    EXPECT_FALSE(g_hookLog.has("filled 6"));
}

TEST_F(Joining, OverATraysButtonThePieceLandsCentredInTheTrayAndTheTrayIsToldItFilled) {
    Make(2, 2);
    d.sourceView = d.dragView = kTableView;
    Raise(2);
    DropResult r = MoveToView(&p, &d, kTableView, PointerWindow{POINTER_DROP_TARGET, 104});
    EXPECT_FALSE(r.cancelled);
    EXPECT_EQ(p.pieces[2].x, (288 - 166) / 2);
    EXPECT_EQ(p.pieces[2].y, (200 - 166) / 2);
    EXPECT_EQ(RunOf(&p, 4), std::vector<uint32_t>{2});
    EXPECT_TRUE(g_hookLog.has("filled 4"));
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
}

TEST_F(Joining, GroupMovesBetweenViewsAsTheTopEntriesOfItsRun) {
    Make(2, 3);
    Place(0, 300, 200);
    Place(1, 400, 200);
    Place(4, 400, 300);
    p.pieces[0].group = p.pieces[1].group = p.pieces[4].group = 5;
    Raise(1);
    d.sourceView = d.dragView = kTableView;
    d.dragPos = Point{20, 30};
    RaiseForDrop(&p, kTableView);
    DropResult r = MoveToView(&p, &d, kTableView, PointerWindow{POINTER_VIEW, 101});
    EXPECT_EQ(r.moved, 3u);
    EXPECT_EQ(p.views[1].count, 3u);
    EXPECT_EQ(p.views[kTableView].count, 3u);
    EXPECT_EQ(p.pieces[1].x, 20);
    EXPECT_EQ(p.pieces[0].x, -80);
    EXPECT_EQ(p.pieces[4].y, 130);
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
}

TEST_F(Joining, MoveToAnUnsuitableWindowIsCancelled) {
    Make(2, 2);
    Raise(3);
    Place(3, 70, 80);
    d.sourceView = d.dragView = kTableView;
    d.dragPos = Point{500, 500};
    for (PointerWindow w : {PointerWindow{POINTER_VIEW, 106}, PointerWindow{POINTER_DROP_TARGET, 99},
                            PointerWindow{POINTER_VIEW, 107}, PointerWindow{POINTER_OTHER_CHILD, 103}}) {
        g_hookLog.events.clear();
        DropResult r = MoveToView(&p, &d, kTableView, w);
        EXPECT_TRUE(r.cancelled);
        EXPECT_TRUE(g_hookLog.has("restore background"));
        EXPECT_TRUE(g_hookLog.has("invalidate 6 70 80 166 166"));
        EXPECT_EQ(p.pieces[3].x, 70);
        EXPECT_EQ(p.views[kTableView].count, 4u);
    }
}

TEST_F(Joining, SelectionMovesWholeIntoAnotherViewHeldInsideWithoutJoining) {
    Make(2, 2);
    // Pieces 0 and 1 selected on the table, 1 on top; piece 2 in tray 0, selected there.
    LayOut(&p, {6, 6, 0, 6});
    Place(1, 300, 300);
    Place(0, 200, 300);  // where it would fit: no join happens for a moved selection
    p.pieces[0].lit = p.pieces[1].lit = 0;
    p.pieces[2].lit = 0;
    Raise(1);
    RaiseForDrop(&p, kTableView);
    EXPECT_EQ(RunOf(&p, kTableView)[1], 0u);
    d.sourceView = d.dragView = kTableView;
    d.dragPos = Point{250, 100};  // 1 moves by (-50, -200), 0 likewise, then held inside 288 x 200
    DropResult r = MoveToView(&p, &d, kTableView, PointerWindow{POINTER_VIEW, 100});
    EXPECT_TRUE(r.selectionMoved);
    EXPECT_FALSE(r.joined);
    EXPECT_EQ(p.pieces[2].lit, 1);  // the tray's own selection was let go first
    EXPECT_EQ(p.pieces[1].x, 188);  // 250 + 100 > 288: x = 288 - 100
    EXPECT_EQ(p.pieces[1].y, 100);
    EXPECT_EQ(p.pieces[0].x, 150);
    EXPECT_EQ(p.pieces[0].group, 0u);
    EXPECT_EQ(p.views[0].count, 3u);
    EXPECT_EQ(RunOf(&p, 0)[0], 1u);
    EXPECT_EQ(RunOf(&p, 0)[1], 0u);
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
}

TEST_F(Joining, CompletionInsideATrayShowsThePuzzleCompleteOnTheTable) {
    Make(2, 2);
    LayOut(&p, {3, 3, 3, 3});
    Place(0, 10, 10);
    Place(1, 110, 10);
    Place(2, 10, 110);
    p.pieces[0].group = p.pieces[1].group = p.pieces[2].group = 3;
    p.clockPending = 1;
    g_hookLog.events.clear();
    DropResult r = Drop(3, 112, 108);
    EXPECT_TRUE(r.joined);
    EXPECT_TRUE(r.completed);
    EXPECT_EQ(p.finished, 1);
    EXPECT_EQ(p.views[3].count, 0u);
    EXPECT_EQ(p.views[kTableView].count, 4u);
    EXPECT_TRUE(IsPuzzleComplete(&p));
    for (uint32_t i = 0; i < 4; ++i) {
        Point home = PieceHomePosition(&p, i);
        EXPECT_EQ(p.pieces[i].x, home.x);
        EXPECT_EQ(p.pieces[i].y, home.y);
        EXPECT_EQ(p.pieces[i].group, 4u);
    }
    for (int v = 0; v < kTrayCount; ++v) {
        EXPECT_TRUE(g_hookLog.has("hide " + std::to_string(v)));
        EXPECT_TRUE(g_hookLog.has("emptied " + std::to_string(v)));
    }
    EXPECT_TRUE(g_hookLog.has("completed"));
    EXPECT_TRUE(g_hookLog.has("update 6"));
    EXPECT_TRUE(g_hookLog.has("stop clock"));
    EXPECT_FALSE(g_hookLog.has("join sound"));  // completion stops before the sound
    EXPECT_EQ(p.clockPending, 0);
    EXPECT_EQ(GetStatistics(&p).percentage, 100);
}

TEST_F(Joining, ShowCompleteCentresTheGridKeepsTheOrderAndRunsOnce) {
    Make(3, 4);
    LayOut(&p, {0, 1, 6, 6, 2, 6, 6, 6, 6, 6, 6, 5});
    std::vector<uint32_t> order(p.order, p.order + 12);
    ShowComplete(&p);
    EXPECT_EQ(std::vector<uint32_t>(p.order, p.order + 12), order);
    EXPECT_EQ(RunOf(&p, kTableView), order);
    // gridLeft = (947 - 400) / 2 = 273, gridTop = (640 - 300) / 2 = 170; margins 33.
    EXPECT_EQ(p.pieces[0].x, 240);
    EXPECT_EQ(p.pieces[0].y, 137);
    EXPECT_EQ(p.pieces[11].x, 273 + 300 - 33);
    EXPECT_EQ(p.pieces[11].y, 170 + 200 - 33);
    p.pieces[0].x = 1;
    ShowComplete(&p);  // finished: nothing happens
    EXPECT_EQ(p.pieces[0].x, 1);
}

TEST_F(Joining, HintsOnTenByTenAreAllowedWhileFewerThanTwentyWereUsed) {
    Make(10, 10);
    for (int k = 1; k <= 19; ++k) ASSERT_TRUE(GiveHint(&p)) << k;
    EXPECT_FALSE(GiveHint(&p));
    EXPECT_EQ(p.hintsUsed, 20u);
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
    EXPECT_EQ(GetStatistics(&p).percentage, 20);  // 20 joins of 100 pieces: trunc(20 * 100 / 99)
}

TEST_F(Joining, HintJoinsTheFirstNeighbourPairInRunOrderExactly) {
    Make(3, 4);
    // Run: 5 on top; its neighbours 1 (above) at entry 4 and 6 (right) at entry 2.
    std::vector<uint32_t> run = {5, 0, 6, 3, 1, 2, 4, 7, 8, 9, 10, 11};
    std::copy(run.begin(), run.end(), p.order);
    Place(5, 300, 300);
    Place(6, 800, 100);
    p.pieces[6].lit = 0;
    EXPECT_TRUE(GiveHint(&p));
    EXPECT_EQ(p.pieces[6].x, 400);
    EXPECT_EQ(p.pieces[6].y, 300);
    EXPECT_EQ(p.pieces[6].lit, 1);
    EXPECT_EQ(p.pieces[5].group, 7u);
    EXPECT_EQ(p.pieces[6].group, 7u);
    EXPECT_EQ(p.views[kTableView].entries[0], 6u);
    EXPECT_EQ(p.hintsUsed, 1u);
    // Next: 6 and 5 are one group now, so 6 (top) pairs with 2 (above, at entry 6 of the run) before 5's
    // other neighbours.
    EXPECT_FALSE(GiveHint(&p));  // trunc(12 * 0.2) = 2 hints
    EXPECT_EQ(p.pieces[2].x, 400);
    EXPECT_EQ(p.pieces[2].y, 200);
    EXPECT_EQ(p.pieces[2].group, 7u);
}

TEST_F(Joining, HintDoesNothingWhenFinishedOrTheTableIsEmpty) {
    Make(2, 2);
    LayOut(&p, {0, 0, 1, 1});
    EXPECT_TRUE(GiveHint(&p));
    EXPECT_EQ(p.hintsUsed, 0u);
    LayOut(&p, {6, 6, 6, 6});
    p.finished = 1;
    EXPECT_TRUE(GiveHint(&p));
    EXPECT_EQ(p.hintsUsed, 0u);
}

TEST_F(Joining, PercentageWithTwoByTwoAfterOneJoinIs33) {
    Make(2, 2);
    EXPECT_EQ(GetStatistics(&p).percentage, 0);
    Place(0, 300, 200);
    ASSERT_TRUE(Drop(1, 400, 200).joined);
    PuzzleStatistics s = GetStatistics(&p);
    EXPECT_EQ(s.pieces, 4);
    EXPECT_EQ(s.percentage, 33);
}

TEST(Statistics, ScoreFallsInStepsOfSevenSecondsAndWithEveryHint) {
    EXPECT_EQ(ComputeScore(4, 0, 100, 0), 16000);
    EXPECT_EQ(ComputeScore(4, 0, 100, 6), 16000);
    EXPECT_EQ(ComputeScore(4, 0, 100, 7), 8000);
    EXPECT_EQ(ComputeScore(4, 0, 100, 14), 5333);
    EXPECT_EQ(ComputeScore(4, 1, 100, 0), 12000);
    EXPECT_EQ(ComputeScore(100, 20, 33, 700), 26138);  // 80 * 33 * 100 * 10 / 101
    // Beyond 32 bits the game's conversion gives the smallest integer.
    EXPECT_EQ(ComputeScore(10000, 0, 100, 0), INT32_MIN);
}

TEST(Statistics, AllZeroWithoutAPuzzle) {
    PuzzleState p{};
    PuzzleStatistics s = GetStatistics(&p);
    EXPECT_EQ(s.pieces, 0);
    EXPECT_EQ(s.percentage, 0);
    EXPECT_EQ(s.score, 0);
}
