// Speed of opening the saved-puzzle browser on a large folder: listing 1,000 saved games and reading the
// four thumbnails the slots show, with their labels and paths, as the browser does when it opens.
#include <benchmark/benchmark.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "app/platform.h"
#include "gfx/file_list.h"
#include "setup/browser_rules.h"
#include "setup/saved_puzzle.h"

namespace {

// A 20 x 20 puzzle's file with a 104 x 78 thumbnail: the header, counts, order and pieces zero-filled
// (the browser reads none of them), then the thumbnail.
std::vector<uint8_t> SavedGameBytes() {
    const uint32_t rows = 20, cols = 20, n = rows * cols;
    const int32_t pw = 104, ph = 78;
    const size_t stride = size_t((pw * 2 + 3) / 4) * 4;
    std::vector<uint8_t> bytes(488 + 28 + 20 * n + stride * ph, 0);
    auto put = [&](size_t at, uint32_t v) { std::memcpy(&bytes[at], &v, 4); };
    std::memcpy(bytes.data(), "QMPF10", 7);
    put(28, 2);
    put(32, 2);
    put(36, 5000);
    put(444, rows);
    put(448, cols);
    double scale = 1.0;
    std::memcpy(&bytes[456], &scale, 8);
    bytes[473] = 1;
    put(476, 20 * n + 28);
    put(480, uint32_t(pw));
    put(484, uint32_t(ph));
    for (size_t i = 488 + 28 + 20 * n; i < bytes.size(); ++i) bytes[i] = uint8_t(i * 7);
    return bytes;
}

// A program folder with "folder\" holding count saved games, made once and removed at exit.
struct SavedGamesFolder {
    std::string root;  // with a trailing slash
    explicit SavedGamesFolder(int count) {
        char pattern[] = "/tmp/tavirel-browser-bench-XXXXXX";
        if (!mkdtemp(pattern)) std::abort();
        root = std::string(pattern) + "/";
        std::string folder = root + "folder";
        if (mkdir(folder.c_str(), 0755) != 0) std::abort();
        std::vector<uint8_t> bytes = SavedGameBytes();
        for (int k = 0; k < count; ++k) {
            char name[64];
            std::snprintf(name, sizeof name, "/Saved game %04d.epf", k);
            FILE* file = std::fopen((folder + name).c_str(), "wb");
            if (!file || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) std::abort();
            std::fclose(file);
        }
    }
    ~SavedGamesFolder() {
        std::string command = "rm -rf '" + root + "'";
        if (std::system(command.c_str()) != 0) std::fprintf(stderr, "could not remove %s\n", root.c_str());
    }
};

// What the browser does on opening, minus the windows: the list, the scroll range, the first four slots'
// labels and thumbnails.
void OpenBrowserCore(benchmark::State& state) {
    static SavedGamesFolder games(1000);
    for (auto _ : state) {
        FileNameList list;
        InitFileNameList(&list);
        char pattern[300];
        if (!MakeSavedListPattern(games.root.c_str(), pattern, sizeof pattern) ||
            !FillFileNameList(&list, pattern) || list.count != 1000) {
            state.SkipWithError("listing failed");
            break;
        }
        benchmark::DoNotOptimize(BrowserScrollMinimum(list.count));
        int shown = 0;
        for (int32_t i = 0; i < kBrowserSlotCount; ++i) {
            int32_t entry = BrowserSlotEntry(i, 0, list.count);
            char name[256], label[kBrowserLabelLength + 1], path[300];
            FileNameAt(&list, entry, false, name, sizeof name);
            MakeSlotLabel(name, label);
            benchmark::DoNotOptimize(label);
            if (!MakeSavedFilePath(games.root.c_str(), name, path, sizeof path)) continue;
            uint8_t* preview = ReadPuzzlePreview(path);
            if (preview) {
                ++shown;
                SysFreeBlock(preview);
            }
        }
        FreeFileNameList(&list);
        if (shown != kBrowserSlotCount) {
            state.SkipWithError("a thumbnail could not be read");
            break;
        }
    }
}
BENCHMARK(OpenBrowserCore)->Unit(benchmark::kMillisecond);

}  // namespace
