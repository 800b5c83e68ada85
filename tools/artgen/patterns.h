// Cut patterns: 2 x 2 cells of 200 x 200 in a 66-pixel margin, every pixel a region number.
#pragma once

#include <cstdint>
#include <vector>

constexpr int kPatternCells = 2;
constexpr int kPatternCell = 200;
constexpr int kPatternMargin = 66;
constexpr int kPatternSize = kPatternCells * kPatternCell + 2 * kPatternMargin;  // 532

enum PatternStyle { kStyleClassic = 0, kStyleDovetail = 1, kStyleWave = 2, kStyleCount = 3 };

// Region numbers, rows from the top: own regions 1..4, wrap-around regions 5..12, 0 outside.
std::vector<uint8_t> MakeCutPattern(PatternStyle style);
// A packed DIB of the pattern: 8-bit, bottom-up, 256-colour palette that shows the regions.
uint8_t* CutPatternToDib(const std::vector<uint8_t>& labels);
