// Speed of saving and loading the largest 1080p game (42 x 56 pieces), the load beside the cut it contains.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

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

std::vector<uint8_t> NewDib(int32_t width, int32_t height, int bits) {
    const int64_t stride = DibStride(bits, width);
    std::vector<uint8_t> dib(kDibPixelOffset + size_t(stride) * height, 0);
    DibHeader h{};
    h.biSize = 40;
    h.biWidth = width;
    h.biHeight = height;
    h.biPlanes = 1;
    h.biBitCount = uint16_t(bits);
    h.biSizeImage = uint32_t(stride * height);
    h.biClrUsed = bits == 8 ? 256 : 0;
    std::memcpy(dib.data(), &h, sizeof h);
    return dib;
}

// Gradients with noise, so that nothing is uniform.
std::vector<uint8_t> NoisyPhoto() {
    std::vector<uint8_t> dib = NewDib(kPhotoWidth, kPhotoHeight, 24);
    std::mt19937 random(7);
    const int64_t stride = DibStride(24, kPhotoWidth);
    for (int32_t y = 0; y < kPhotoHeight; ++y) {
        uint8_t* row = dib.data() + kDibPixelOffset + y * stride;
        for (int32_t x = 0; x < kPhotoWidth; ++x) {
            row[3 * x] = uint8_t(x * 255 / kPhotoWidth + (random() & 15));
            row[3 * x + 1] = uint8_t(y * 255 / kPhotoHeight + (random() & 15));
            row[3 * x + 2] = uint8_t((x + y) & 255);
        }
    }
    return dib;
}

// A 2 x 2 cut pattern numbered as the game's, a round tab on every edge.
std::vector<uint8_t> TabbedPattern() {
    const int32_t size = 2 * 200 + 132;
    std::vector<uint8_t> dib = NewDib(size, size, 8);
    auto tab = [](int32_t depth, int32_t along) {
        if (depth < 0) return false;
        if (depth < 10 && along > 88 && along < 112) return true;
        const int32_t dx = depth - 28, dy = along - 100;
        return dx * dx + dy * dy < 400;
    };
    auto wrap = [](int32_t v) { return uint32_t(((v % 2) + 2) % 2); };
    auto pushRight = [](uint32_t r, uint32_t c) { return (r * 7 + c * 3 + 1) % 2 == 0; };
    auto pushDown = [](uint32_t r, uint32_t c) { return (r * 5 + c * 11) % 2 == 0; };
    for (int32_t y = 0; y < size; ++y)
        for (int32_t x = 0; x < size; ++x) {
            const int32_t u = x - 66, v = y - 66;
            const int32_t cx = u >= 0 ? u / 200 : -1, cy = v >= 0 ? v / 200 : -1;
            const int32_t lx = u - cx * 200, ly = v - cy * 200;
            int32_t ox = cx, oy = cy;
            if (pushRight(wrap(cy), wrap(cx - 1)) && tab(lx, ly)) ox = cx - 1;
            else if (!pushRight(wrap(cy), wrap(cx)) && tab(199 - lx, ly)) ox = cx + 1;
            else if (pushDown(wrap(cy - 1), wrap(cx)) && tab(ly, lx)) oy = cy - 1;
            else if (!pushDown(wrap(cy), wrap(cx)) && tab(199 - ly, lx)) oy = cy + 1;
            uint32_t region = 0;
            const bool rowIn = oy >= 0 && oy < 2, columnIn = ox >= 0 && ox < 2;
            if (rowIn && columnIn) region = uint32_t(oy * 2 + ox + 1);
            else if (oy == -1 && columnIn) region = 5 + uint32_t(ox);
            else if (ox == 2 && rowIn) region = 7 + uint32_t(oy);
            else if (oy == 2 && columnIn) region = 9 + uint32_t(ox);
            else if (ox == -1 && rowIn) region = 11 + uint32_t(oy);
            dib[kDibPixelOffset + size_t(size - 1 - y) * size + x] = uint8_t(region);
        }
    return dib;
}

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
    game->photo = NoisyPhoto();
    game->pattern = TabbedPattern();
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
