// Fuzz target: any file opened as a photograph, read whole and resampled to a few sizes.
#include <cstdint>
#include <cstdio>
#include <vector>

#include "fuzz_support.h"
#include "gfx/bmp_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string path = WriteFuzzInput(data, size, ".bmp");
    BmpFileReader reader;
    InitBmpReader(&reader);
    if (OpenBmp(&reader, path.c_str())) {
        int64_t whole = BmpPixelBytes(&reader);
        if (whole > 0 && whole < (64 << 20)) {
            std::vector<uint8_t> pixels(static_cast<size_t>(whole));
            ReadBmpPixels(&reader, pixels.data());
        }
        const int32_t sizes[][2] = {{1, 1}, {37, -23}, {200, 150}, {3, 400}};
        for (const auto& s : sizes) {
            int64_t bytes = BmpResampledBytes(&reader, s[0], s[1]);
            if (bytes <= 0 || bytes > (64 << 20)) continue;
            std::vector<uint8_t> out(static_cast<size_t>(bytes));
            ReadBmpResampled(&reader, s[0], s[1], out.data());
        }
        std::vector<uint8_t> info(40 + 4 * 256);
        if (reader.colorCount <= 256) BmpInfo(&reader, info.data());
    }
    CloseBmp(&reader);
    std::remove(path.c_str());
    return 0;
}
