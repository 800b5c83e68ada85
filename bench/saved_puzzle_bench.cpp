// Speed of saving and loading the largest 1080p game (42 x 56 pieces), the load beside the cut it contains.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench_support.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "gfx/pack_writer.h"
#include "puzzle/cut.h"
#include "puzzle/join.h"
#include "puzzle/picture.h"
#include "setup/saved_puzzle.h"

namespace {

constexpr int32_t kTableWidth = 1843, kTableHeight = 952;
constexpr int32_t kPhotoWidth = 1600, kPhotoHeight = 1200;

// The photograph as a file, a pack with the pattern, the game cut and played a little, and its save file.
struct LargestGame {
    std::string folder, photoPath, savePath;
    std::vector<uint8_t> photo, pattern;
    PuzzleState p{};
    SavedBoxNames names{};
};

LargestGame* Largest() {
    static LargestGame* game = nullptr;
    if (game) return game;
    game = new LargestGame;
    char folder[] = "/tmp/tavirel-save-bench-XXXXXX";
    if (!mkdtemp(folder)) std::abort();
    game->folder = folder;
    game->photoPath = game->folder + "/photo.bmp";
    game->savePath = game->folder + "/largest.epf";
    game->photo = MakePhoto(kPhotoWidth, kPhotoHeight);
    game->pattern = MakePattern();
    if (!WriteDibAsBmp(game->photoPath.c_str(), game->photo.data())) std::abort();
    PackWriter writer;
    const std::string pack = game->folder + "/Tavirel.rf";
    if (!BeginPack(&writer, pack.c_str()) || !AddPackDib(&writer, 5000, game->pattern.data()) ||
        !FinishPack(&writer) || !OpenPack(&g_pack, pack.c_str()))
        std::abort();
    if (!LoadCurrentPicture(game->photoPath.c_str())) std::abort();
    g_puzzleHooks = PuzzleHooks{};
    PuzzleState& p = game->p;
    p.tableWidth = kTableWidth;
    p.tableHeight = kTableHeight;
    p.scale = 2.0 * kTableHeight / kPhotoHeight;  // twice the fit: the size chooser's far end
    p.cols = int32_t(kPhotoWidth * p.scale / 45);
    p.rows = int32_t(kPhotoHeight * p.scale / 45);
    if (p.rows * p.cols != 2352) std::abort();
    for (int v = 0; v < kViewCount; ++v) {
        p.surfaces[v].width = v == kTableView ? kTableWidth : 288;
        p.surfaces[v].height = v == kTableView ? kTableHeight : 400;
    }
    if (!CutPuzzle(&p, CurrentPicture(), game->pattern.data(), 2, 2, 5000, true)) std::abort();
    for (int k = 0; k < 60; ++k) GiveHint(&p);
    for (int k = 0; k < 30; ++k) DropPiece(&p, k % kTrayCount, kTableView, p.views[kTableView].entries[0], 20, 30);
    p.elapsed = 5025;
    for (int k = 0; k < kTrayCount; ++k) SetSavedBoxName(&game->names, k, "Sky and clouds");
    return game;
}

void BM_SaveLargest1080pGame(benchmark::State& state) {
    LargestGame* g = Largest();
    for (auto _ : state)
        if (!SavePuzzleToFile(g->savePath.c_str(), &g->p, g->photoPath.c_str(), g->names, CurrentPicture(), true))
            state.SkipWithError("save failed");
    state.counters["pieces"] = double(PieceCount(&g->p));
}
BENCHMARK(BM_SaveLargest1080pGame)->Unit(benchmark::kMillisecond);

void BM_LoadLargest1080pGame(benchmark::State& state) {
    LargestGame* g = Largest();
    if (!SavePuzzleToFile(g->savePath.c_str(), &g->p, g->photoPath.c_str(), g->names, CurrentPicture(), true))
        std::abort();
    PuzzleState target{};
    target.tableWidth = kTableWidth;
    target.tableHeight = kTableHeight;
    SavedPuzzle saved;
    for (auto _ : state)
        if (!LoadSavedPuzzle(g->savePath.c_str(), &target, &saved)) state.SkipWithError("load failed");
    ClearPuzzle(&target, false);
}
BENCHMARK(BM_LoadLargest1080pGame)->Unit(benchmark::kMillisecond);

// The cut a load contains, alone: the photograph and pattern already in memory.
void BM_CutOfLargest1080pGame(benchmark::State& state) {
    LargestGame* g = Largest();
    PuzzleState p{};
    p.tableWidth = kTableWidth;
    p.tableHeight = kTableHeight;
    p.scale = g->p.scale;
    p.rows = g->p.rows;
    p.cols = g->p.cols;
    for (auto _ : state)
        if (!CutPuzzle(&p, CurrentPicture(), g->pattern.data(), 2, 2, 5000, false)) state.SkipWithError("cut failed");
    ClearPuzzle(&p, false);
}
BENCHMARK(BM_CutOfLargest1080pGame)->Unit(benchmark::kMillisecond);

}  // namespace
