// Undo and redo of gestures: what comes back, what is refused, what the trays hear and what repaints.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "puzzle/board_logic.h"
#include "puzzle/history.h"
#include "puzzle/join.h"
#include "puzzle_test_support.h"

namespace {

struct History : ::testing::Test {
    void SetUp() override {
        InstallRecordingHooks();
        FixRandom(23);
        p = PuzzleState{};
        d = DragState{};
        ClearHistory(&g_history);
    }
    void TearDown() override {
        ReleaseTestPuzzle(&p);
        ClearHistory(&g_history);
        g_puzzleHooks = PuzzleHooks{};
    }
    // rows x cols pieces of 100 x 100 cells with view pictures.
    void Make(int32_t rows, int32_t cols) {
        ASSERT_TRUE(CutTestPuzzle(&p, rows, cols, 100 * cols, 100 * rows, 2, 2, 1.0, true, 24, 947, 640));
        GiveViewPictures(&p);
        g_hookLog.events.clear();
    }
    // A drag of piece i from its view to the pointer window, as the board does it.
    DropResult Drag(uint32_t i, Point landing, PointerWindow under) {
        int view;
        uint32_t position;
        EXPECT_TRUE(FindPieceInViews(&p, i, &view, &position));
        BeginGesture(&g_history, &p);
        GrabPiece(&p, &d, view, position, Point{p.pieces[i].x + 40, p.pieces[i].y + 40});
        d.dragPos = landing;
        DropResult r = ReleasePiece(&p, &d, under);
        EXPECT_EQ(p.dragMode, 0u);
        EndGesture(&g_history, &p);
        return r;
    }
    DropResult DragOnTable(uint32_t i, int32_t x, int32_t y) {
        return Drag(i, Point{x, y}, PointerWindow{POINTER_VIEW, kViewControlBase + kTableView});
    }
    void Select(int view, Point from, Point to) {
        BeginGesture(&g_history, &p);
        p.dragMode = 2;
        d.sourceView = view;
        d.anchor = from;
        UpdateSelectionOutline(&d, to);
        ReleaseSelection(&p, &d);
        EndGesture(&g_history, &p);
    }
    void Spread() {  // every piece loose, far from its neighbours
        const uint32_t n = PieceCount(&p);
        for (uint32_t i = 0; i < n; ++i) {
            p.pieces[i].x = int32_t(i % 4) * 200 + 20;
            p.pieces[i].y = int32_t(i / 4) * 150 + 20;
            p.pieces[i].group = 0;
            p.pieces[i].lit = 1;
        }
    }
    PuzzleState p;
    DragState d;
};

}  // namespace

TEST_F(History, UndoAfterAJoinSplitsTheGroupBackWithTheOldIds) {
    Make(2, 3);
    Spread();
    // 0 and 1 joined first (group 2), then 4 joins 1 from below: the group takes id 5.
    ASSERT_TRUE(DragOnTable(1, p.pieces[0].x + 100, p.pieces[0].y).joined);
    ASSERT_EQ(p.pieces[0].group, 2u);
    const ModelSnapshot beforeSecond = TakeModel(p);
    ASSERT_TRUE(DragOnTable(4, p.pieces[1].x, p.pieces[1].y + 100).joined);
    ASSERT_EQ(p.pieces[0].group, 5u);
    ASSERT_EQ(p.pieces[4].group, 5u);
    const ModelSnapshot afterSecond = TakeModel(p);

    ASSERT_TRUE(UndoGesture(&g_history, &p));
    EXPECT_TRUE(SameModel(beforeSecond, p));
    EXPECT_EQ(p.pieces[0].group, 2u);
    EXPECT_EQ(p.pieces[1].group, 2u);
    EXPECT_EQ(p.pieces[4].group, 0u);
    EXPECT_TRUE(PuzzleInvariantsHold(&p));

    ASSERT_TRUE(UndoGesture(&g_history, &p));  // the first join too: all loose
    for (uint32_t i = 0; i < PieceCount(&p); ++i) EXPECT_EQ(p.pieces[i].group, 0u) << i;
    EXPECT_FALSE(CanUndo(&g_history, &p));

    ASSERT_TRUE(RedoGesture(&g_history, &p));
    EXPECT_TRUE(SameModel(beforeSecond, p));
    ASSERT_TRUE(RedoGesture(&g_history, &p));
    EXPECT_TRUE(SameModel(afterSecond, p));
    EXPECT_FALSE(CanRedo(&g_history, &p));
}

TEST_F(History, UndoOfAMoveIntoATrayTellsTheTrayItIsEmptyAgain) {
    Make(2, 2);
    Spread();
    const ModelSnapshot before = TakeModel(p);
    Drag(3, Point{0, 0}, PointerWindow{POINTER_DROP_TARGET, kViewControlBase + 2});
    ASSERT_EQ(p.views[2].count, 1u);
    ASSERT_TRUE(g_hookLog.has("filled 2"));
    g_hookLog.events.clear();

    ASSERT_TRUE(UndoGesture(&g_history, &p));
    EXPECT_TRUE(SameModel(before, p));
    EXPECT_EQ(p.views[2].count, 0u);
    EXPECT_TRUE(g_hookLog.has("emptied 2"));
    EXPECT_EQ(g_hookLog.count("filled"), 0);
    EXPECT_TRUE(g_hookLog.has("enable save"));
    EXPECT_EQ(p.puzzle_dirty, 1u);

    g_hookLog.events.clear();
    ASSERT_TRUE(RedoGesture(&g_history, &p));
    EXPECT_TRUE(g_hookLog.has("filled 2"));
    EXPECT_EQ(p.views[2].count, 1u);
}

TEST_F(History, UndoIsRefusedOnceThePuzzleIsComplete) {
    Make(1, 2);
    Spread();
    ASSERT_TRUE(DragOnTable(1, p.pieces[0].x + 100, p.pieces[0].y).completed);
    ASSERT_TRUE(p.finished);
    const ModelSnapshot complete = TakeModel(p);
    EXPECT_FALSE(CanUndo(&g_history, &p));
    EXPECT_FALSE(UndoGesture(&g_history, &p));
    EXPECT_FALSE(RedoGesture(&g_history, &p));
    EXPECT_TRUE(SameModel(complete, p));
}

TEST_F(History, UndoIsRefusedAfterAssembleAndWhileADragRuns) {
    Make(2, 2);
    Spread();
    DragOnTable(0, 500, 400);
    ASSERT_TRUE(CanUndo(&g_history, &p));
    p.dragMode = 1;
    EXPECT_FALSE(UndoGesture(&g_history, &p));
    p.dragMode = 0;
    ShowComplete(&p);
    EXPECT_FALSE(CanUndo(&g_history, &p));
    EXPECT_EQ(g_history.records.size(), 0u);
}

TEST_F(History, UndoNeverGivesAHintBack) {
    Make(2, 3);
    Spread();
    const ModelSnapshot before = TakeModel(p);
    BeginGesture(&g_history, &p);
    GiveHint(&p);
    EndGesture(&g_history, &p);
    ASSERT_EQ(p.hintsUsed, 1u);
    ASSERT_FALSE(SameModel(before, p));  // a pair was joined
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    EXPECT_TRUE(SameModel(before, p));  // the placement is undone...
    EXPECT_EQ(p.hintsUsed, 1u);         // ...the hint stays used
    ASSERT_TRUE(RedoGesture(&g_history, &p));
    EXPECT_EQ(p.hintsUsed, 1u);
}

TEST_F(History, SelectionIsUndoneTogetherWithTheMoveBeforeIt) {
    Make(2, 3);
    Spread();
    const ModelSnapshot before = TakeModel(p);
    DragOnTable(5, 700, 500);
    const ModelSnapshot afterMove = TakeModel(p);
    Select(kTableView, Point{0, 0}, Point{250, 100});  // selects 0 and 1
    ASSERT_EQ(p.pieces[0].lit, 0u);
    ASSERT_EQ(g_history.records.size(), 2u);
    EXPECT_TRUE(g_history.records[1].quiet);

    ASSERT_TRUE(UndoGesture(&g_history, &p));  // one key press: the selection and the move
    EXPECT_TRUE(SameModel(before, p));
    EXPECT_FALSE(CanUndo(&g_history, &p));
    ASSERT_TRUE(RedoGesture(&g_history, &p));  // and back, selection included
    EXPECT_EQ(p.pieces[0].lit, 0u);
    EXPECT_EQ(p.pieces[5].x, afterMove.pieces[5].x);
}

TEST_F(History, ASelectionAloneCannotBeUndoneButAMoveOfItCan) {
    Make(2, 3);
    Spread();
    Select(kTableView, Point{0, 0}, Point{250, 100});
    EXPECT_FALSE(CanUndo(&g_history, &p));
    const ModelSnapshot selected = TakeModel(p);
    // The selected pieces move together.
    DragOnTable(1, 600, 400);
    ASSERT_NE(p.pieces[0].x, selected.pieces[0].x);
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    EXPECT_TRUE(SameModel(selected, p));
}

TEST_F(History, ACancelledDragDoesNotCountAsAMove) {
    Make(2, 2);
    Spread();
    DragOnTable(0, 500, 400);
    const ModelSnapshot afterMove = TakeModel(p);
    Drag(3, Point{10, 10}, PointerWindow{POINTER_OUTSIDE, 0});  // cancelled: only the stacking changed
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    EXPECT_EQ(p.pieces[0].x, 20);
    EXPECT_FALSE(CanUndo(&g_history, &p));
    ASSERT_TRUE(RedoGesture(&g_history, &p));
    EXPECT_EQ(p.pieces[0].x, afterMove.pieces[0].x);
    EXPECT_EQ(p.views[kTableView].entries[0], 3u);  // the cancelled drag's raise comes back too
}

TEST_F(History, ANewGestureForgetsWhatCouldBeRedone) {
    Make(2, 2);
    Spread();
    DragOnTable(0, 500, 400);
    DragOnTable(1, 600, 300);
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    ASSERT_TRUE(CanRedo(&g_history, &p));
    DragOnTable(2, 100, 500);
    EXPECT_FALSE(CanRedo(&g_history, &p));
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    EXPECT_EQ(p.pieces[2].x, 420);
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    EXPECT_EQ(p.pieces[0].x, 20);
}

TEST_F(History, AClickThatChangesNothingKeepsWhatCouldBeRedone) {
    Make(2, 2);
    Spread();
    DragOnTable(0, 500, 400);
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    Select(kTableView, Point{900, 600}, Point{900, 600});  // a click on the empty table
    EXPECT_TRUE(CanRedo(&g_history, &p));
}

TEST_F(History, ANewCutClearsTheHistoryAndAnotherPuzzlesClearingDoesNot) {
    Make(2, 2);
    Spread();
    DragOnTable(0, 500, 400);
    PuzzleState other{};
    ClearPuzzle(&other, false);  // a load that failed clears its own state only
    EXPECT_TRUE(CanUndo(&g_history, &p));
    Make(2, 2);
    EXPECT_FALSE(CanUndo(&g_history, &p));
    EXPECT_EQ(g_history.records.size(), 0u);
}

TEST_F(History, KeepsTheLastTwoHundredGestures) {
    Make(2, 2);
    Spread();
    for (int k = 0; k < 250; ++k) DragOnTable(uint32_t(k % 4), 300 + (k % 7) * 40, 200 + (k % 5) * 30);
    EXPECT_EQ(g_history.records.size(), kHistoryGestures);
    int undone = 0;
    while (UndoGesture(&g_history, &p)) ++undone;
    EXPECT_EQ(undone, 200);
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
}

TEST_F(History, UndoRepaintsOnlyTheBoxesThatChanged) {
    Make(3, 4);
    Spread();
    DragOnTable(5, 600, 420);  // a loose piece from (220, 170)
    g_hookLog.events.clear();
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    // Two separate boxes: where it lay and where it goes back; nothing else in the table.
    std::vector<std::string> invalidated;
    for (const std::string& e : g_hookLog.events)
        if (e.rfind("invalidate", 0) == 0) invalidated.push_back(e);
    ASSERT_EQ(invalidated.size(), 2u);
    EXPECT_TRUE(g_hookLog.has("invalidate 6 600 420 " + std::to_string(p.boxWidth) + " " +
                              std::to_string(p.boxHeight)));
    EXPECT_TRUE(g_hookLog.has("invalidate 6 220 170 " + std::to_string(p.boxWidth) + " " +
                              std::to_string(p.boxHeight)));
}

TEST_F(History, AMovedGroupIsKeptAsOneShiftNotPieceByPiece) {
    Make(9, 8);
    Spread();
    // The first eight rows joined in place (group 64), the last row loose; the group moves once.
    for (uint32_t i = 0; i < 64; ++i) {
        p.pieces[i].x = int32_t(i % 8) * 100 + 10;
        p.pieces[i].y = int32_t(i / 8) * 100 + 10;
        p.pieces[i].group = 64;
    }
    ASSERT_TRUE(PuzzleInvariantsHold(&p));
    // The first move gathers the group at the top of the run; the second finds it there already.
    DragOnTable(0, 30, 20);
    DragOnTable(9, 150, 140);
    ASSERT_EQ(g_history.records.size(), 2u);
    // One kind of change with one range of indices, and a run change of one entry: a handful of words.
    const GestureRecord& r = g_history.records[1];
    EXPECT_EQ(r.changes[0], 1u);
    EXPECT_EQ(r.changes[6], 1u);
    EXPECT_LT(r.changes.size(), 20u);
    EXPECT_EQ(p.pieces[63].x, 750);
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    EXPECT_EQ(p.pieces[63].x, 730);
    ASSERT_TRUE(UndoGesture(&g_history, &p));
    EXPECT_EQ(p.pieces[63].x, 710);
}
