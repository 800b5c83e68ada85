// A finished puzzle for the tests of what follows the last piece: only the fields the statistics read.
#pragma once

#include <cstdint>

#include "puzzle/model.h"

// A finished 1 x 2 puzzle whose two pieces form one group: its score is 4000 / (elapsed / 7 + 1).
// The game's puzzle comes back whole when it goes.
struct FinishedPuzzle {
    PuzzleState saved = g_puzzle;
    uint32_t sheet[4] = {};
    PieceRecord pieces[2] = {};
    explicit FinishedPuzzle(uint32_t elapsed) {
        g_puzzle = PuzzleState{};
        g_puzzle.rows = 1;
        g_puzzle.cols = 2;
        g_puzzle.sheet = sheet;
        pieces[0].group = 1;
        pieces[1].group = 1;
        g_puzzle.pieces = pieces;
        g_puzzle.elapsed = elapsed;
    }
    ~FinishedPuzzle() { g_puzzle = saved; }
    FinishedPuzzle(const FinishedPuzzle&) = delete;
    FinishedPuzzle& operator=(const FinishedPuzzle&) = delete;
};
