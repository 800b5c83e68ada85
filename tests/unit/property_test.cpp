// Random play: 100,000 gestures (drops in place and near neighbours, moves into trays and back, selections
// and their moves, cancelled drags, hints) keep every invariant of the model, and hints with drops always
// finish the puzzle. Random play mixed with undo and redo brings back exactly the model of each step.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "puzzle/board_logic.h"
#include "puzzle/history.h"
#include "puzzle/join.h"
#include "puzzle/score.h"
#include "puzzle/views.h"
#include "puzzle_test_support.h"

namespace {

// Invariants beyond PuzzleInvariantsHold: a group's id is its largest member's index + 1, and grouped
// pieces are never selected.
::testing::AssertionResult GroupsAreWellFormed(const PuzzleState& p) {
    const uint32_t n = PieceCount(&p);
    std::vector<uint32_t> largest(n + 1, 0);
    std::vector<bool> used(n + 1, false);
    for (uint32_t i = 0; i < n; ++i) {
        uint32_t g = p.pieces[i].group;
        if (!g) continue;
        if (g > n) return ::testing::AssertionFailure() << "piece " << i << " has group " << g;
        if (!p.pieces[i].lit) return ::testing::AssertionFailure() << "grouped piece " << i << " is selected";
        used[g] = true;
        if (i + 1 > largest[g]) largest[g] = i + 1;
    }
    for (uint32_t g = 1; g <= n; ++g)
        if (used[g] && largest[g] != g)
            return ::testing::AssertionFailure() << "group " << g << " has largest member " << largest[g] - 1;
    return ::testing::AssertionSuccess();
}

struct RandomPlay {
    PuzzleState* p = nullptr;
    DragState d{};
    std::mt19937 random;
    int joins = 0, moves = 0, selections = 0, selectionMoves = 0, hints = 0, cancels = 0, completions = 0;

    int32_t Uniform(int32_t lo, int32_t hi) {
        return std::uniform_int_distribution<int32_t>(lo, hi < lo ? lo : hi)(random);
    }
    int NonEmptyView() {
        for (int tries = 0; tries < 20; ++tries) {
            int v = Uniform(0, 9) < 4 ? Uniform(0, kTrayCount - 1) : kTableView;
            if (p->views[v].count) return v;
        }
        for (int v = 0; v < kViewCount; ++v)
            if (p->views[v].count) return v;
        return -1;
    }
    // Somewhere for piece to land in view v: near the fitting place beside one of its true neighbours in
    // that view (to make joins happen), or anywhere, hanging off the edges too.
    Point LandingFor(uint32_t piece, int v) {
        const ViewSurface& s = p->surfaces[v];
        const int32_t cols = p->cols, n = int32_t(PieceCount(p));
        if (Uniform(0, 2)) {
            const int32_t i = int32_t(piece);
            const int32_t candidates[4] = {i - cols, i % cols + 1 < cols ? i + 1 : -1, i + cols, i % cols ? i - 1 : -1};
            const int32_t dx[4] = {0, -p->cellWidth, 0, p->cellWidth}, dy[4] = {p->cellHeight, 0, -p->cellHeight, 0};
            int k = Uniform(0, 3);
            int32_t q = candidates[k];
            if (q >= 0 && q < n) {
                int qv;
                if (FindPieceInViews(p, uint32_t(q), &qv, nullptr) && qv == v)
                    return Point{p->pieces[q].x + dx[k] + Uniform(-8, 8), p->pieces[q].y + dy[k] + Uniform(-8, 8)};
            }
        }
        return Point{Uniform(-p->boxWidth, s.width), Uniform(-p->boxHeight, s.height)};
    }
    void Grab(int v, uint32_t position) {
        GrabPiece(p, &d, v, position, Point{Uniform(0, 50), Uniform(0, 50)});
    }
    void Gesture() {
        const int kind = Uniform(0, 99);
        if (kind < 4) {
            bool more = GiveHint(p);
            (void)more;
            ++hints;
            return;
        }
        const int v = NonEmptyView();
        if (v < 0) return;
        if (kind < 16) {
            // A selection rectangle somewhere in the view.
            const ViewSurface& s = p->surfaces[v];
            p->dragMode = 2;
            d.sourceView = v;
            d.anchor = Point{Uniform(-10, s.width), Uniform(-10, s.height)};
            UpdateSelectionOutline(&d, Point{d.anchor.x + Uniform(-80, 80), d.anchor.y + Uniform(-80, 80)});
            ReleaseSelection(p, &d);
            ++selections;
            return;
        }
        // Grab a piece: a selected one when there is one, often, else any.
        uint32_t position = uint32_t(Uniform(0, int32_t(p->views[v].count) - 1));
        if (Uniform(0, 1))
            for (uint32_t k = 0; k < p->views[v].count; ++k)
                if (!p->pieces[p->views[v].entries[k]].lit) position = k;
        Grab(v, position);
        const uint32_t piece = p->views[v].entries[0];
        const bool selected = !p->pieces[piece].lit;
        DropResult r;
        if (kind < 22) {
            r = ReleasePiece(p, &d, PointerWindow{Uniform(0, 1) ? POINTER_OUTSIDE : POINTER_OTHER_CHILD, 200});
            ++cancels;
        } else if (kind < 62) {
            d.dragPos = LandingFor(piece, v);
            r = ReleasePiece(p, &d, PointerWindow{POINTER_VIEW, kViewControlBase + v});
        } else {
            int t = Uniform(0, 9) < 6 ? Uniform(0, kTrayCount - 1) : kTableView;
            d.dragPos = LandingFor(piece, t);
            PointerWindowKind where = Uniform(0, 2) ? POINTER_VIEW : POINTER_DROP_TARGET;
            r = ReleasePiece(p, &d, PointerWindow{where, kViewControlBase + t});
            ++moves;
        }
        joins += r.joined;
        selectionMoves += selected && r.selectionMoved;
        completions += r.completed;
    }
    // Everything back on the table, then hints until the puzzle is finished.
    void Solve() {
        for (int v = 0; v < kTrayCount; ++v)
            for (int guard = 0; p->views[v].count && guard < 1000; ++guard) {
                Grab(v, 0);
                d.dragPos = Point{Uniform(0, 400), Uniform(0, 300)};
                ReleasePiece(p, &d, PointerWindow{POINTER_VIEW, kViewControlBase + kTableView});
            }
        for (uint32_t guard = 0; !p->finished && guard <= PieceCount(p); ++guard) GiveHint(p);
    }
};

void GiveViewSizes(PuzzleState* p, bool withPictures) {
    for (int v = 0; v < kViewCount; ++v) {
        FreeViewPicture(p, v);
        int32_t width = v == kTableView ? p->tableWidth : 288, height = v == kTableView ? p->tableHeight : 90;
        if (withPictures) {
            ResizeViewPicture(p, v, width, height);
        } else {
            p->surfaces[v].width = width;
            p->surfaces[v].height = height;
        }
    }
}

}  // namespace

TEST(Property, HundredThousandRandomGesturesKeepEveryInvariantAndHintsAlwaysFinishThePuzzle) {
    InstallRecordingHooks();
    g_puzzleHooks.invalidateRect = nullptr;  // the log would only grow
    PuzzleState p{};
    const int sequences = 10, gesturesPerSequence = 10000;
    int totalJoins = 0, totalSelectionMoves = 0, totalHints = 0, totalCompletions = 0, cuts = 0;
    for (int sequence = 0; sequence < sequences; ++sequence) {
        FixRandom(uint32_t(100 + sequence));
        // A 4 x 5 puzzle of 20 x 20 cells on a small table; one sequence also composes every change.
        ASSERT_TRUE(CutTestPuzzle(&p, 4, 5, 100, 80, 2, 2, 1.0, true, 24, 400, 300));
        GiveViewSizes(&p, sequence == 0);
        RandomPlay play;
        play.p = &p;
        play.random.seed(uint32_t(sequence * 7919 + 1));
        for (int g = 0; g < gesturesPerSequence; ++g) {
            g_hookLog.events.clear();
            play.Gesture();
            ASSERT_TRUE(PuzzleInvariantsHold(&p)) << "sequence " << sequence << " gesture " << g;
            ASSERT_TRUE(GroupsAreWellFormed(p)) << "sequence " << sequence << " gesture " << g;
            ASSERT_EQ(p.dragMode, 0u);
            if (p.finished && play.Uniform(0, 19) == 0) {  // a new game now and then
                ASSERT_TRUE(CutTestPuzzle(&p, 4, 5, 100, 80, 2, 2, 1.0, true, 24, 400, 300));
                ++cuts;
            }
        }
        play.Solve();
        EXPECT_TRUE(IsPuzzleComplete(&p)) << "sequence " << sequence;
        EXPECT_EQ(GetStatistics(&p).percentage, 100) << "sequence " << sequence;
        EXPECT_TRUE(PuzzleInvariantsHold(&p));
        totalJoins += play.joins;
        totalSelectionMoves += play.selectionMoves;
        totalHints += play.hints;
        totalCompletions += play.completions;
    }
    // The gestures really did what they are meant to exercise.
    EXPECT_GT(totalJoins, 1000);
    EXPECT_GT(totalSelectionMoves, 100);
    EXPECT_GT(totalHints, 1000);
    EXPECT_GT(totalCompletions, 10);
    EXPECT_GT(cuts, 5);
    ReleaseTestPuzzle(&p);
    g_puzzleHooks = PuzzleHooks{};
}


TEST(Property, RandomGesturesUndoneAndRedoneBringBackEveryStepFieldByField) {
    InstallRecordingHooks();
    g_puzzleHooks.invalidateRect = nullptr;
    PuzzleState p{};
    int undos = 0, redos = 0, joinsUndone = 0, trayMovesUndone = 0, quietGestures = 0;
    for (int sequence = 0; sequence < 8; ++sequence) {
        FixRandom(uint32_t(500 + sequence));
        const int32_t rows = sequence % 2 ? 6 : 4, cols = sequence % 2 ? 7 : 5;
        ASSERT_TRUE(CutTestPuzzle(&p, rows, cols, 20 * cols, 20 * rows, 2, 2, 1.0, true, 24, 400, 300));
        GiveViewSizes(&p, sequence == 0);
        ClearHistory(&g_history);
        RandomPlay play;
        play.p = &p;
        play.random.seed(uint32_t(sequence * 104729 + 3));
        // The model at each step the history can reach; `at` is the current one.
        std::vector<ModelSnapshot> steps{TakeModel(p)};
        size_t at = 0;
        uint32_t hints = p.hintsUsed;
        for (int op = 0; op < 5000; ++op) {
            const int kind = play.Uniform(0, 9);
            if (kind < 2) {
                const bool can = CanUndo(&g_history, &p);
                ASSERT_EQ(can, at > 0) << "sequence " << sequence << " op " << op;
                if (!can) continue;
                const ModelSnapshot from = TakeModel(p);
                ASSERT_TRUE(UndoGesture(&g_history, &p));
                --at;
                ASSERT_TRUE(SameModel(steps[at], p)) << "undo, sequence " << sequence << " op " << op;
                for (int v = 0; v < kTrayCount; ++v) trayMovesUndone += from.counts[v] != steps[at].counts[v];
                for (size_t i = 0; i < from.pieces.size(); ++i)
                    if (from.pieces[i].group != steps[at].pieces[i].group) {
                        ++joinsUndone;
                        break;
                    }
                ++undos;
            } else if (kind < 4) {
                const bool can = CanRedo(&g_history, &p);
                ASSERT_EQ(can, at + 1 < steps.size()) << "sequence " << sequence << " op " << op;
                if (!can) continue;
                ASSERT_TRUE(RedoGesture(&g_history, &p));
                ++at;
                ASSERT_TRUE(SameModel(steps[at], p)) << "redo, sequence " << sequence << " op " << op;
                ++redos;
            } else {
                const ModelSnapshot before = TakeModel(p);
                const size_t recordsBefore = g_history.records.size();
                BeginGesture(&g_history, &p);
                play.Gesture();
                EndGesture(&g_history, &p);
                if (p.finished) {  // nothing is undone after the end; a new game starts afresh
                    ASSERT_FALSE(CanUndo(&g_history, &p));
                    ASSERT_TRUE(CutTestPuzzle(&p, rows, cols, 20 * cols, 20 * rows, 2, 2, 1.0, true, 24, 400, 300));
                    GiveViewSizes(&p, sequence == 0);
                    ASSERT_EQ(g_history.records.size(), 0u);
                    steps.assign(1, TakeModel(p));
                    at = 0;
                    hints = p.hintsUsed;
                } else if (SameModel(before, p)) {
                    ASSERT_EQ(g_history.records.size(), recordsBefore) << "nothing changed, nothing kept";
                } else {
                    ASSERT_EQ(g_history.done, g_history.records.size());
                    steps.resize(at + 1);
                    if (g_history.records.back().quiet) {
                        steps[at] = TakeModel(p);  // part of the step before it (or of the start)
                        ++quietGestures;
                    } else {
                        steps.push_back(TakeModel(p));
                        ++at;
                    }
                }
                // Keep under the history's length, so that every step stays reachable.
                if (g_history.records.size() > kHistoryGestures - 10) {
                    ClearHistory(&g_history);
                    steps.assign(1, TakeModel(p));
                    at = 0;
                }
            }
            ASSERT_TRUE(PuzzleInvariantsHold(&p)) << "sequence " << sequence << " op " << op;
            ASSERT_TRUE(GroupsAreWellFormed(p)) << "sequence " << sequence << " op " << op;
            ASSERT_GE(p.hintsUsed, hints) << "a hint was given back";
            hints = p.hintsUsed;
        }
    }
    // The operations really exercised what they must.
    EXPECT_GT(undos, 3000);
    EXPECT_GT(redos, 1000);
    EXPECT_GT(joinsUndone, 100);
    EXPECT_GT(trayMovesUndone, 1000);
    EXPECT_GT(quietGestures, 500);
    ReleaseTestPuzzle(&p);
    ClearHistory(&g_history);
    g_puzzleHooks = PuzzleHooks{};
}
