// Fuzz target: any file read as a saved puzzle's thumbnail; a block comes back whole or not at all.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "app/platform.h"
#include "fuzz_support.h"
#include "gfx/dib.h"
#include "setup/saved_puzzle.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Behind a right magic, so the search reaches the size checks; the first byte chooses.
    std::vector<uint8_t> framed;
    if (size && (data[0] & 1)) {
        framed.assign(7 + size, 0);
        std::memcpy(framed.data(), "QMPF10", 7);
        std::memcpy(framed.data() + 7, data, size);
        data = framed.data();
        size = framed.size();
    }
    std::string path = WriteFuzzInput(data, size, ".epf");
    const size_t blocks = SysLiveBlocks();
    uint8_t* preview = ReadPuzzlePreview(path.c_str());
    if (preview) {
        const DibHeader* h = DibHeaderOf(preview);
        if (h->biWidth < 1 || h->biWidth > 104 || h->biHeight < 1 || h->biHeight > 123) __builtin_trap();
        // Every byte of the block is defined: sum them so the sanitizers see each one read.
        volatile uint32_t sum = 0;
        for (uint32_t k = 0; k < kDibPixelOffset + h->biSizeImage; ++k) sum = sum + preview[k];
        SysFreeBlock(preview);
    }
    if (SysLiveBlocks() != blocks) __builtin_trap();
    std::remove(path.c_str());
    return 0;
}
