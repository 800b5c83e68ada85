// Percentage and score.
#include "puzzle/score.h"

#include <cmath>

int32_t ComputeScore(uint32_t pieces, uint32_t hintsUsed, int32_t percentage, uint32_t elapsed) {
    double value = (double(pieces) - double(hintsUsed)) * percentage * double(pieces) * 10.0 / (elapsed / 7 + 1);
    value = std::trunc(value);
    if (!(value >= -2147483648.0 && value <= 2147483647.0)) return INT32_MIN;
    return int32_t(value);
}

PuzzleStatistics GetStatistics(const PuzzleState* p) {
    PuzzleStatistics s{0, 0, 0};
    if (!p->sheet) return s;
    const uint32_t n = PieceCount(p);
    // Every loose piece counts as a cluster, and every group once, through its largest member.
    uint32_t clusters = 0;
    for (uint32_t i = 0; i < n; ++i)
        if (p->pieces[i].group == 0 || p->pieces[i].group == i + 1) ++clusters;
    s.pieces = int32_t(n);
    s.percentage = n > 1 ? int32_t((double(n) - clusters) * 100.0 / (n - 1)) : 100;
    s.score = ComputeScore(n, p->hintsUsed, s.percentage, p->elapsed);
    return s;
}
