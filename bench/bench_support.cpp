// Pictures the benchmarks cut and compose: packed DIBs built in memory, a noisy photograph and a 2 x 2
// cut pattern numbered as the game's.
#include "bench_support.h"

#include <cstring>
#include <random>

#include "gfx/dib.h"

std::vector<uint8_t> MakeDib(int32_t width, int32_t height, int bits) {
    int64_t stride = DibStride(bits, width);
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

// A photograph with smooth gradients and some noise, so that nothing compresses into a pattern.
std::vector<uint8_t> MakePhoto(int32_t width, int32_t height) {
    std::vector<uint8_t> dib = MakeDib(width, height, 24);
    std::mt19937 random(1);
    const int64_t stride = DibStride(24, width);
    for (int32_t y = 0; y < height; ++y) {
        uint8_t* row = dib.data() + kDibPixelOffset + y * stride;
        for (int32_t x = 0; x < width; ++x) {
            row[3 * x] = uint8_t(x * 255 / width + (random() & 15));
            row[3 * x + 1] = uint8_t(y * 255 / height + (random() & 15));
            row[3 * x + 2] = uint8_t((x + y) & 255);
        }
    }
    return dib;
}

// A 2 x 2 cut pattern numbered as the game's, with round tabs on every edge (as the artwork has).
std::vector<uint8_t> MakePattern() {
    const int32_t size = 2 * 200 + 132;
    std::vector<uint8_t> dib = MakeDib(size, size, 8);
    auto tab = [](int32_t depth, int32_t along) {
        if (depth < 0) return false;
        if (depth < 10 && along > 88 && along < 112) return true;
        int32_t dx = depth - 28, dy = along - 100;
        return dx * dx + dy * dy < 400;
    };
    auto wrap = [](int32_t v) { return uint32_t(((v % 2) + 2) % 2); };
    auto pushRight = [](uint32_t r, uint32_t c) { return (r * 7 + c * 3 + 1) % 2 == 0; };
    auto pushDown = [](uint32_t r, uint32_t c) { return (r * 5 + c * 11) % 2 == 0; };
    for (int32_t y = 0; y < size; ++y)
        for (int32_t x = 0; x < size; ++x) {
            int32_t u = x - 66, v = y - 66;
            int32_t cx = u >= 0 ? u / 200 : -1, cy = v >= 0 ? v / 200 : -1;
            int32_t lx = u - cx * 200, ly = v - cy * 200, ox = cx, oy = cy;
            if (pushRight(wrap(cy), wrap(cx - 1)) && tab(lx, ly)) ox = cx - 1;
            else if (!pushRight(wrap(cy), wrap(cx)) && tab(199 - lx, ly)) ox = cx + 1;
            else if (pushDown(wrap(cy - 1), wrap(cx)) && tab(ly, lx)) oy = cy - 1;
            else if (!pushDown(wrap(cy), wrap(cx)) && tab(199 - ly, lx)) oy = cy + 1;
            uint32_t region = 0;
            bool rowIn = oy >= 0 && oy < 2, columnIn = ox >= 0 && ox < 2;
            if (rowIn && columnIn) region = uint32_t(oy * 2 + ox + 1);
            else if (oy == -1 && columnIn) region = 5 + uint32_t(ox);
            else if (ox == 2 && rowIn) region = 7 + uint32_t(oy);
            else if (oy == 2 && columnIn) region = 9 + uint32_t(ox);
            else if (ox == -1 && rowIn) region = 11 + uint32_t(oy);
            dib[kDibPixelOffset + size_t(size - 1 - y) * size + x] = uint8_t(region);
        }
    return dib;
}
