// Fuzz target: any bytes decoded and checked as a saved puzzle, straight and through the file reader.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "fuzz_support.h"
#include "setup/saved_puzzle.h"

// What passed the checks must be safe to build a puzzle from.
static void CheckDecoded(const uint8_t* data, size_t size) {
    SavedPuzzle saved;
    if (DecodeSavedPuzzle(data, size, &saved)) {
        const uint32_t n = uint32_t(saved.rows) * uint32_t(saved.cols);
        if (saved.order.size() != n || saved.pieces.size() != n) __builtin_trap();
        uint64_t total = 0;
        for (uint32_t count : saved.counts) total += count;
        if (total != n) __builtin_trap();
        for (const PieceRecord& piece : saved.pieces)
            if (piece.group > n || piece.lit > 1) __builtin_trap();
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CheckDecoded(data, size);
    // The same bytes behind a right magic, so the search reaches the checks past it.
    std::vector<uint8_t> framed(7 + size);
    std::memcpy(framed.data(), "QMPF10", 7);
    if (size) std::memcpy(framed.data() + 7, data, size);
    CheckDecoded(framed.data(), framed.size());
    std::string path = WriteFuzzInput(data, size, ".epf");
    SavedPuzzle fromFile;
    ReadSavedPuzzleFile(path.c_str(), &fromFile);
    std::remove(path.c_str());
    return 0;
}
