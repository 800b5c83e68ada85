// The rules a cut pattern must keep for the cutter: size, depth, region numbers, tab reach, the
// repeat across its border and whole, connected pieces.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct PatternImage {
    int width, height;           // pixels
    int bitCount;
    uint32_t colorsUsed;
    uint32_t compression;
    std::vector<uint8_t> pixels;  // one byte a pixel, rows from the top (only filled for 8-bit images)
};

// Reads a .bmp file (uncompressed, 8-bit, either row order). False with a reason when unreadable.
bool ReadPatternBmp(const std::string& path, PatternImage* image, std::string* reason);
// Every rule broken, one line each; empty when the pattern is good.
std::vector<std::string> CheckPattern(const PatternImage& image);
