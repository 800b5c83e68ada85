// Speed of the puzzle engine on full-screen tables: cutting, composing, dragging, hit testing, dropping
// and hints, each beside memcpy of comparable bytes measured in the same run.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "bench_support.h"
#include "gfx/dib.h"
#include "gfx/random.h"
#include "puzzle/board_logic.h"
#include "puzzle/compose.h"
#include "puzzle/cut.h"
#include "puzzle/drag_pixels.h"
#include "puzzle/gather.h"
#include "puzzle/history.h"
#include "puzzle/join.h"
#include "puzzle/views.h"

namespace {

std::vector<uint8_t> MakeCloth() {
    std::vector<uint8_t> dib = MakeDib(100, 100, 8);
    std::mt19937 random(2);
    for (int i = 0; i < 256 * 4; ++i) dib[kDibPaletteOffset + i] = uint8_t(random());
    for (int i = 0; i < 100 * 100; ++i) dib[kDibPixelOffset + i] = uint8_t(random());
    return dib;
}

const std::vector<uint8_t>& Pattern() {
    static const std::vector<uint8_t> pattern = MakePattern();
    return pattern;
}

// The zoom of the size chooser's far end: twice the zoom at which the photograph fits the table.
double LargestZoom(int32_t photoWidth, int32_t photoHeight, int32_t tableWidth, int32_t tableHeight) {
    double fit = double(photoHeight) * tableWidth / photoWidth <= tableHeight ? double(tableWidth) / photoWidth
                                                                            : double(tableHeight) / photoHeight;
    return 2 * fit;
}

// A puzzle as a game has it: cut and scattered, the table's picture composed.
struct Game {
    PuzzleState p{};
    std::vector<uint8_t> photo;
};

// Full-screen games on a 1920 x 1080 and a 3840 x 2160 screen: a 1600 x 1200 photograph at the largest
// zoom, cut into the most pieces the count chooser allows (45-pixel pieces).
Game* FullScreenGame(int screen) {
    static std::unique_ptr<Game> games[2];
    if (games[screen]) return games[screen].get();
    games[screen].reset(new Game);
    Game* g = games[screen].get();
    const int32_t tableWidth = screen ? 3840 - 77 : 1920 - 77, tableHeight = screen ? 2160 - 128 : 1080 - 128;
    g->photo = MakePhoto(1600, 1200);
    g->p.tableWidth = tableWidth;
    g->p.tableHeight = tableHeight;
    g->p.scale = LargestZoom(1600, 1200, tableWidth, tableHeight);
    g->p.cols = int32_t(1600 * g->p.scale / 45);
    g->p.rows = int32_t(1200 * g->p.scale / 45);
    g_puzzleHooks = PuzzleHooks{};
    if (!CutPuzzle(&g->p, g->photo.data(), Pattern().data(), 2, 2, 5000, true)) std::abort();
    ResizeViewPicture(&g->p, kTableView, tableWidth, tableHeight);
    for (int v = 0; v < kTrayCount; ++v) ResizeViewPicture(&g->p, v, 288, 400);
    static std::vector<uint8_t> cloth = MakeCloth();
    SetTableTexture(nullptr, cloth.data());
    RepaintView(&g->p, kTableView, false);
    return g;
}

const char* kScreenName[2] = {"1080p", "4K"};

// How long memcpy takes for `bytes` on this machine now: the best of a few runs, in seconds.
double MemcpySeconds(size_t bytes) {
    static std::vector<uint8_t> from, to;
    if (from.size() < bytes) {
        from.assign(bytes, 1);
        to.assign(bytes, 0);
    }
    double best = 1e9;
    for (int k = 0; k < 15; ++k) {
        auto start = std::chrono::steady_clock::now();
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::ClobberMemory();
        double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (s < best) best = s;
    }
    return best;
}

// ---- Cutting -------------------------------------------------------------------------------------------

void CutBenchmark(benchmark::State& state, int32_t photoWidth, int32_t photoHeight, double scale, int32_t rows,
                  int32_t cols, int32_t tableWidth, int32_t tableHeight) {
    std::vector<uint8_t> photo = MakePhoto(photoWidth, photoHeight);
    PuzzleState p{};
    p.tableWidth = tableWidth;
    p.tableHeight = tableHeight;
    p.scale = scale;
    p.rows = rows;
    p.cols = cols;
    g_puzzleHooks = PuzzleHooks{};
    for (auto _ : state)
        if (!CutPuzzle(&p, photo.data(), Pattern().data(), 2, 2, 5000, true)) state.SkipWithError("cut failed");
    const double sheetBytes = double(p.sheetWidth) * (p.sheetLastRow + 1) * 4;
    state.counters["pieces"] = double(rows) * cols;
    state.counters["sheet_MB"] = sheetBytes / 1e6;
    state.counters["memcpy_sheet_ms"] = MemcpySeconds(size_t(sheetBytes)) * 1e3;
    state.SetBytesProcessed(int64_t(state.iterations() * sheetBytes));
    ClearPuzzle(&p, false);
}

void BM_Cut_1600x1200_Zoom1_35x26(benchmark::State& state) {
    CutBenchmark(state, 1600, 1200, 1.0, 26, 35, 1843, 952);
}
void BM_Cut_3840x2160_Zoom1_85x48(benchmark::State& state) {
    CutBenchmark(state, 3840, 2160, 1.0, 48, 85, 3763, 2032);
}
void BM_Cut_1600x1200_Largest_1080p(benchmark::State& state) {
    double scale = LargestZoom(1600, 1200, 1843, 952);
    CutBenchmark(state, 1600, 1200, scale, int32_t(1200 * scale / 45), int32_t(1600 * scale / 45), 1843, 952);
}
void BM_Cut_1600x1200_Largest_4K(benchmark::State& state) {
    double scale = LargestZoom(1600, 1200, 3763, 2032);
    CutBenchmark(state, 1600, 1200, scale, int32_t(1200 * scale / 45), int32_t(1600 * scale / 45), 3763, 2032);
}
// The same photographs and piece counts as the reference slicer's figures (2,400 and 10,000 pieces).
void BM_Cut_1600x1200_Zoom1_56x42(benchmark::State& state) {
    CutBenchmark(state, 1600, 1200, 1.0, 42, 56, 1843, 952);
}
void BM_Cut_3840x2160_Zoom1_133x75(benchmark::State& state) {
    CutBenchmark(state, 3840, 2160, 1.0, 75, 133, 3763, 2032);
}
BENCHMARK(BM_Cut_1600x1200_Zoom1_35x26)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Cut_1600x1200_Zoom1_56x42)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Cut_3840x2160_Zoom1_133x75)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Cut_3840x2160_Zoom1_85x48)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Cut_1600x1200_Largest_1080p)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Cut_1600x1200_Largest_4K)->Unit(benchmark::kMillisecond)->Iterations(5);

// ---- Composing -----------------------------------------------------------------------------------------

// The whole table, recomposed: every visible inside pixel is read once from the sheet, every view pixel
// written once. memcpy of the same number of bytes (read plus written) is timed in the same run. With
// `shared` the area is split between the calling thread and the composer's helper thread, as in the game,
// so the time is wall time and the CPU time that of the whole process.
void ComposeWholeTable(benchmark::State& state, bool shared) {
    const int screen = int(state.range(0));
    Game* g = FullScreenGame(screen);
    PuzzleState* p = &g->p;
    const ViewSurface& s = p->surfaces[kTableView];
    g_composeShared = shared;
    ComposeRect(p, kTableView, 0, 0, s.width, s.height, false);  // the helper thread is made on first use
    g_composeCounters = ComposeCounters{};
    for (auto _ : state) {
        ComposeRect(p, kTableView, 0, 0, s.width, s.height, false);
        benchmark::ClobberMemory();
    }
    g_composeShared = true;
    const double reads = double(g_composeCounters.piecePixels) / state.iterations() * 3;  // packed 24-bit
    const double writes = double(s.stride) * s.height;
    const double memcpySeconds = MemcpySeconds(size_t(reads + writes));
    state.SetLabel(kScreenName[screen]);
    state.counters["pieces"] = PieceCount(p);
    state.counters["touched_MB"] = (reads + writes) / 1e6;
    state.counters["memcpy_ms"] = memcpySeconds * 1e3;
    state.counters["x_memcpy"] = benchmark::Counter(memcpySeconds * state.iterations(),
                                                    benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.SetBytesProcessed(int64_t(state.iterations() * (reads + writes)));
}
void BM_ComposeWholeTable(benchmark::State& state) { ComposeWholeTable(state, true); }
void BM_ComposeWholeTableOneThread(benchmark::State& state) { ComposeWholeTable(state, false); }
BENCHMARK(BM_ComposeWholeTable)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
BENCHMARK(BM_ComposeWholeTableOneThread)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The definition, pixel by pixel over 5 x 5 tiles, for contrast.
void BM_ComposeWholeTableReference(benchmark::State& state) {
    Game* g = FullScreenGame(0);
    const ViewSurface& s = g->p.surfaces[kTableView];
    for (auto _ : state) ComposeRectReference(&g->p, kTableView, 0, 0, s.width, s.height, false);
    state.SetLabel(kScreenName[0]);
}
BENCHMARK(BM_ComposeWholeTableReference)->Unit(benchmark::kMillisecond)->Iterations(2);

// A large repaint in the lower half where the pieces lie: 600 x 300 at (700, 500) is tiled, so everything
// from the table's origin to (1300, 800) is recomposed (by two threads: wall time).
void BM_RepaintTiledRectangle(benchmark::State& state) {
    Game* g = FullScreenGame(0);
    g_composeCounters = ComposeCounters{};
    for (auto _ : state) RepaintRect(&g->p, kTableView, 700, 500, 600, 300, false, false);
    state.SetLabel("1080p, 600 x 300 at (700, 500)");
    state.counters["recomposed_Mpx"] =
        double(g_composeCounters.piecePixels + g_composeCounters.clothPixels) / state.iterations() / 1e6;
}
BENCHMARK(BM_RepaintTiledRectangle)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();

// A box-sized repaint, as a drop or a press makes.
void BM_RepaintBox(benchmark::State& state) {
    Game* g = FullScreenGame(0);
    PuzzleState* p = &g->p;
    std::mt19937 random(3);
    for (auto _ : state) {
        int32_t x = int32_t(random() % 1800), y = 476 + int32_t(random() % 470);
        RepaintRect(p, kTableView, x, y, p->boxWidth, p->boxHeight, false, false);
    }
    state.SetLabel("1080p, one box in the lower half");
}
BENCHMARK(BM_RepaintBox)->Unit(benchmark::kMicrosecond);

// ---- Dragging ------------------------------------------------------------------------------------------

// One drag step's pixel work on a 32-bit screen: two or three block copies of at most 2W x 2H and one
// pass over the piece, then one copy to the screen.
void BM_DragStep(benchmark::State& state) {
    Game* g = FullScreenGame(0);
    PuzzleState* p = &g->p;
    const int bits = int(state.range(0));
    ScreenFormat f;
    if (bits == 16)
        DescribeScreenFormat(16, kBitFields, 0xF800, 0x07E0, 0x001F, &f);
    else
        DescribeScreenFormat(32, kBitFields, 0xFF0000, 0xFF00, 0xFF, &f);
    const int32_t bytes = bits / 8, W = p->boxWidth, H = p->boxHeight;
    const int32_t width = p->tableWidth, height = p->tableHeight;
    std::vector<uint8_t> screenBits(size_t(SurfaceStride(bits, width)) * height, 90);
    std::vector<uint8_t> storeBits(size_t(SurfaceStride(bits, W)) * H), composeBits(size_t(SurfaceStride(bits, 2 * W)) * 2 * H);
    PixelSurface screen{screenBits.data(), width, height, SurfaceStride(bits, width), bytes};
    PixelSurface store{storeBits.data(), W, H, SurfaceStride(bits, W), bytes};
    PixelSurface compose{composeBits.data(), 2 * W, 2 * H, SurfaceStride(bits, 2 * W), bytes};
    const uint32_t piece = p->views[kTableView].entries[0];
    Point at{800, 500};
    CopySurfaceArea(&store, 0, 0, &screen, at.x, at.y, W, H);
    int step = 0;
    for (auto _ : state) {
        // A mouse move of a few pixels, back and forth.
        Point next{800 + (step % 40 < 20 ? step % 20 : 20 - step % 20) * 3, 500 + (step % 7)};
        DragStepPixels(p, piece, f, &screen, &store, &compose, at, next);
        at = next;
        ++step;
    }
    state.SetLabel(bits == 16 ? "16-bit screen" : "32-bit screen");
}
BENCHMARK(BM_DragStep)->Arg(32)->Arg(16)->Unit(benchmark::kMicrosecond);

// ---- Hit test, drops, hints ----------------------------------------------------------------------------

void BM_HitTest(benchmark::State& state) {
    Game* g = FullScreenGame(0);
    std::mt19937 random(4);
    int hits = 0;
    for (auto _ : state) {
        int32_t x = int32_t(random() % 1843), y = 476 + int32_t(random() % 476);
        uint32_t position;
        hits += HitTestView(&g->p, kTableView, x, y, &position) >= 0;
    }
    state.counters["hit_fraction"] = double(hits) / state.iterations();
    state.SetLabel("1080p, points in the lower half");
}
BENCHMARK(BM_HitTest)->Unit(benchmark::kMicrosecond);

// Picks a loose piece and a loose neighbour on the table that are far apart.
void PickPair(PuzzleState* p, uint32_t* piece, uint32_t* neighbour) {
    for (uint32_t i = 1; i < PieceCount(p); ++i)
        if (p->pieces[i].group == 0 && p->pieces[i - 1].group == 0 && uint32_t(PieceColumn(p, i)) > 0) {
            *piece = i;
            *neighbour = i - 1;
            return;
        }
}

void RaiseToTop(PuzzleState* p, uint32_t piece) {
    int view;
    uint32_t position;
    FindPieceInViews(p, piece, &view, &position);
    MoveRun(p, view, position, 1, view);
}

// A drop in place with no neighbour near: the neighbour walk over the whole run, the move and the
// repaint of old and new boxes.
void BM_DropWithoutJoin(benchmark::State& state) {
    Game* g = FullScreenGame(0);
    PuzzleState* p = &g->p;
    uint32_t piece = 0, neighbour = 0;
    PickPair(p, &piece, &neighbour);
    const Point home{p->pieces[piece].x, p->pieces[piece].y};
    int step = 0;
    for (auto _ : state) {
        RaiseToTop(p, piece);
        int32_t dx = (step++ & 1) ? 150 : -150;
        DropPiece(p, kTableView, kTableView, piece, home.x + dx, home.y);
    }
    p->pieces[piece].x = home.x;
    state.SetLabel("1080p, 2352 pieces");
}
BENCHMARK(BM_DropWithoutJoin)->Unit(benchmark::kMicrosecond);

// A drop 3 pixels off the fitting place beside a loose neighbour: the join, ids, the snap and the
// repaint. The pair is pulled apart again between drops (two field writes).
void BM_DropWithJoin(benchmark::State& state) {
    Game* g = FullScreenGame(0);
    PuzzleState* p = &g->p;
    uint32_t piece = 0, neighbour = 0;
    PickPair(p, &piece, &neighbour);
    const Point home{p->pieces[piece].x, p->pieces[piece].y};
    const Point target{p->pieces[neighbour].x + p->cellWidth + 3, p->pieces[neighbour].y - 2};
    int joins = 0;
    for (auto _ : state) {
        RaiseToTop(p, piece);
        joins += DropPiece(p, kTableView, kTableView, piece, target.x, target.y).joined;
        p->pieces[piece].group = p->pieces[neighbour].group = 0;
    }
    p->pieces[piece].x = home.x;
    p->pieces[piece].y = home.y;
    if (joins != int(state.iterations())) state.SkipWithError("the drop did not join");
    state.SetLabel("1080p, 2352 pieces");
}
BENCHMARK(BM_DropWithJoin)->Unit(benchmark::kMicrosecond);

// Hints on a fresh game of 2352 pieces: each finds the first pair in run order, raises, drops and
// repaints. 500 hints, on a copy of the game's run and pieces so other benchmarks keep theirs.
void BM_Hint(benchmark::State& state) {
    Game* g = FullScreenGame(0);
    PuzzleState* p = &g->p;
    const uint32_t n = PieceCount(p);
    std::vector<PieceRecord> pieces(p->pieces, p->pieces + n);
    std::vector<uint32_t> order(p->order, p->order + n);
    for (auto _ : state) GiveHint(p);
    std::copy(pieces.begin(), pieces.end(), p->pieces);
    std::copy(order.begin(), order.end(), p->order);
    p->hintsUsed = 0;
    RepaintView(p, kTableView, false);
    state.SetLabel("1080p, 2352 pieces, 500 hints from a fresh scatter");
}
BENCHMARK(BM_Hint)->Unit(benchmark::kMicrosecond)->Iterations(500);

// ---- Undo, redo and gathering ---------------------------------------------------------------------------

// The game's run and pieces, put back after a benchmark that changes them.
struct KeptGame {
    PuzzleState* p;
    std::vector<PieceRecord> pieces;
    std::vector<uint32_t> order;
    uint32_t counts[kViewCount];
    explicit KeptGame(PuzzleState* game) : p(game) {
        const uint32_t n = PieceCount(p);
        pieces.assign(p->pieces, p->pieces + n);
        order.assign(p->order, p->order + n);
        for (int v = 0; v < kViewCount; ++v) counts[v] = p->views[v].count;
    }
    ~KeptGame() {
        std::copy(pieces.begin(), pieces.end(), p->pieces);
        std::copy(order.begin(), order.end(), p->order);
        for (int v = 0; v < kViewCount; ++v) p->views[v].count = counts[v];
        RelinkViewRuns(p);
        p->hintsUsed = 0;
        p->finished = 0;
        ClearHistory(&g_history);
        RepaintView(p, kTableView, false);
        for (int v = 0; v < kTrayCount; ++v) RepaintView(p, v, false);
    }
};

// Drops `piece` (raised first) beside `partner`, `off` pixels from the fitting place on its right.
void DropBeside(PuzzleState* p, uint32_t piece, uint32_t partner, int32_t off) {
    RaiseToTop(p, piece);
    DropPiece(p, kTableView, kTableView, piece, p->pieces[partner].x + p->cellWidth + off, p->pieces[partner].y + 1);
}

// Four loose neighbours in a row on the table: a, a + 1 joined, a + 2, a + 3 joined elsewhere; then the
// gesture that joins the two groups. The loop times one undo (or redo) of that gesture with its repaint.
void UndoRedoOfAJoin(benchmark::State& state, bool redo) {
    Game* g = FullScreenGame(0);
    PuzzleState* p = &g->p;
    KeptGame kept(p);
    uint32_t a = 0;
    for (uint32_t i = 0; i + 3 < PieceCount(p) && !a; ++i)
        if (PieceColumn(p, i) + 3 < p->cols && !p->pieces[i].group && !p->pieces[i + 1].group &&
            !p->pieces[i + 2].group && !p->pieces[i + 3].group)
            a = i;
    DropBeside(p, a + 1, a, 2);
    DropBeside(p, a + 3, a + 2, -3);
    ClearHistory(&g_history);
    BeginGesture(&g_history, p);
    DropBeside(p, a + 2, a + 1, 4);
    EndGesture(&g_history, p);
    if (p->pieces[a].group != p->pieces[a + 3].group || !p->pieces[a].group) state.SkipWithError("no join of two groups");
    for (auto _ : state) {
        if (redo) UndoGesture(&g_history, p);  // set-up, not timed
        const auto start = std::chrono::steady_clock::now();
        const bool done = redo ? RedoGesture(&g_history, p) : UndoGesture(&g_history, p);
        const auto end = std::chrono::steady_clock::now();
        if (!redo) RedoGesture(&g_history, p);
        if (!done) state.SkipWithError("undo or redo refused");
        state.SetIterationTime(std::chrono::duration<double>(end - start).count());
    }
    state.SetLabel("1080p, 2352 pieces, a drop that joined two groups, repaint included");
}
void BM_UndoJoinOfTwoGroups(benchmark::State& state) { UndoRedoOfAJoin(state, false); }
void BM_RedoJoinOfTwoGroups(benchmark::State& state) { UndoRedoOfAJoin(state, true); }
BENCHMARK(BM_UndoJoinOfTwoGroups)->Unit(benchmark::kMicrosecond)->UseManualTime();
BENCHMARK(BM_RedoJoinOfTwoGroups)->Unit(benchmark::kMicrosecond)->UseManualTime();

// A hundred gestures of play (joins beside true neighbours, drops anywhere, moves into the trays and
// back, hints) and the bytes the history then holds.
void BM_HistoryOfHundredGestures(benchmark::State& state) {
    Game* g = FullScreenGame(0);
    PuzzleState* p = &g->p;
    KeptGame kept(p);
    std::mt19937 random(7);
    size_t bytes = 0, records = 0;
    for (auto _ : state) {
        ClearHistory(&g_history);
        for (int k = 0; k < 100; ++k) {
            BeginGesture(&g_history, p);
            const ViewList& table = p->views[kTableView];
            const uint32_t piece = table.entries[random() % table.count];
            switch (k % 5) {
            case 0:
            case 1:
                if (PieceColumn(p, piece) > 0) {
                    DropBeside(p, piece, piece - 1, int32_t(random() % 9) - 4);
                    break;
                }
                // fall through
            case 2:
                RaiseToTop(p, piece);
                DropPiece(p, kTableView, kTableView, piece, int32_t(random() % 1700), int32_t(random() % 900));
                break;
            case 3: {
                const int tray = int(random() % kTrayCount);
                RaiseToTop(p, piece);
                DropPiece(p, tray, kTableView, piece, int32_t(random() % 200), int32_t(random() % 300));
                break;
            }
            case 4: GiveHint(p); break;
            }
            EndGesture(&g_history, p);
        }
        bytes = HistoryBytes(&g_history);
        records = g_history.records.size();
        state.PauseTiming();
        while (UndoGesture(&g_history, p)) {
        }
        state.ResumeTiming();
    }
    state.counters["history_KB"] = double(bytes) / 1024;
    state.counters["gestures"] = double(records);
    state.counters["snapshot_KB"] = double(PieceCount(p) * (sizeof(PieceRecord) + 3 * sizeof(uint32_t))) / 1024;
    state.SetLabel("1080p, 2352 pieces, 100 gestures played");
}
BENCHMARK(BM_HistoryOfHundredGestures)->Unit(benchmark::kMillisecond)->Iterations(5);

// The loose edge pieces of a fresh 2352-piece game (192) into the first tray, both views repainted.
void BM_GatherEdgePieces(benchmark::State& state) {
    Game* g = FullScreenGame(0);
    PuzzleState* p = &g->p;
    KeptGame kept(p);
    uint32_t gathered = 0;
    for (auto _ : state) {
        BeginGesture(&g_history, p);
        auto start = std::chrono::steady_clock::now();
        const int tray = GatherEdgePieces(p);
        auto end = std::chrono::steady_clock::now();
        EndGesture(&g_history, p);
        gathered = tray >= 0 ? p->views[tray].count : 0;
        UndoGesture(&g_history, p);
        state.SetIterationTime(std::chrono::duration<double>(end - start).count());
    }
    state.counters["pieces"] = gathered;
    state.SetLabel("1080p, 2352 pieces, gathered into a 288 x 400 tray");
}
BENCHMARK(BM_GatherEdgePieces)->Unit(benchmark::kMillisecond)->UseManualTime();

// ---- The machine's bandwidth ---------------------------------------------------------------------------

void BM_Memcpy(benchmark::State& state) {
    const size_t bytes = size_t(state.range(0)) << 20;
    std::vector<uint8_t> from(bytes, 1), to(bytes, 0);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(int64_t(state.iterations() * bytes));
}
BENCHMARK(BM_Memcpy)->Arg(1)->Arg(8)->Arg(50)->Unit(benchmark::kMillisecond);

}  // namespace
