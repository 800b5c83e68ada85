// Fuzz target: any file opened as the resource pack, every id in its directory loaded.
#include <cstdint>
#include <cstdio>

#include "fuzz_support.h"
#include "gfx/dib.h"
#include "gfx/pack.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string path = WriteFuzzInput(data, size, ".rf");
    ResourcePack pack;
    if (OpenPack(&pack, path.c_str())) {
        uint32_t tries = pack.count < 64 ? pack.count : 64;
        for (uint32_t i = 0; i < tries; ++i) {
            uint8_t* dib = LoadPackItem(&pack, pack.directory[i].id);
            if (dib) {
                // Touch the whole block: a size that lies would show here under the address checker.
                volatile uint8_t sum = 0;
                for (size_t k = 0; k < PackedDibBytes(dib); k += 64) sum = sum + dib[k];
                FreePackedDib(dib);
            }
        }
        FreePackedDib(LoadPackItem(&pack, 0xFFFFFFFFu));
        ClosePack(&pack);
    }
    std::remove(path.c_str());
    return 0;
}
