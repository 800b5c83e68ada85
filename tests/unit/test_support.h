// Helpers shared by the unit tests: a scratch folder per test and builders of BMP files in memory.
#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "gfx/dib.h"

// A fresh folder that is removed with everything in it when the test ends.
struct ScratchFolder {
    std::filesystem::path path;
    ScratchFolder();
    ~ScratchFolder();
    // The path of a file in the folder, in the program's own form (backslashes work on both sides).
    std::string File(const std::string& name) const;
};

// BMP file bytes: 14-byte file header, 40-byte header, colors palette entries, rows bottom-up unless
// height is negative. pixel(x, y) gives the value of the pixel in file row y (row 0 is stored first):
// a palette index, or 0xRRGGBB for 24 and 32 bits.
std::vector<uint8_t> MakeBmp(int32_t width, int32_t height, int bits, uint32_t colors,
                             const std::function<uint32_t(int32_t x, int32_t y)>& pixel,
                             uint32_t compression = 0);
// The palette MakeBmp writes: entry i is (i, 255 - i, i / 2).
DibColor TestPaletteColor(uint32_t i);

bool WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes);
std::vector<uint8_t> ReadBytes(const std::string& path);

// Reads the value of pixel x in a row of the given depth, as MakeBmp wrote it.
uint32_t PixelInRow(const uint8_t* row, int bits, int32_t x);

template <typename T>
void PutLE(std::vector<uint8_t>& bytes, size_t at, T value) {
    std::memcpy(bytes.data() + at, &value, sizeof value);
}
