// The statistics of the puzzle in play: piece count, percentage joined and score.
#pragma once

#include <cstdint>

#include "puzzle/model.h"

struct PuzzleStatistics {
    int32_t pieces;
    int32_t percentage;  // 0 with every piece loose, 100 with all in one group
    int32_t score;
};

// All three 0 without a puzzle. The score falls as time passes, in steps of 7 seconds, and with every hint.
PuzzleStatistics GetStatistics(const PuzzleState* p);
// The score's arithmetic: trunc((pieces - hints) * percentage * pieces * 10 / (trunc(seconds / 7) + 1)).
// A value beyond the 32-bit range comes out as -2147483648, as the game's 32-bit conversion gives.
int32_t ComputeScore(uint32_t pieces, uint32_t hintsUsed, int32_t percentage, uint32_t elapsed);
