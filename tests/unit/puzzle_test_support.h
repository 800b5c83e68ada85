// Helpers for the puzzle engine tests: photographs and cut patterns built in memory, a recorder of the
// board hooks, and a cut puzzle with view pictures.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "puzzle/model.h"

// A packed DIB of the given size and depth, header filled, palette and pixels zeroed.
std::vector<uint8_t> MakePackedDib(int32_t width, int32_t height, int bits);

// A cut pattern of patternRows x patternColumns cells of 200 x 200 with the 66-pixel margin, numbered
// like the game's: every edge between two cells carries a round tab pushed from one side into the
// other, the tabs repeating across the pattern's border as they must when the pattern is tiled.
std::vector<uint8_t> MakeTestPattern(uint32_t patternRows, uint32_t patternColumns);
// The region number the test pattern has at pattern pixel (x, y), y counted from the top.
uint32_t TestPatternRegion(uint32_t patternRows, uint32_t patternColumns, int32_t x, int32_t y);

// A photograph whose every pixel has its own colour: blue = x & 255, green = y & 255, red from the high
// bits. 8-bit photographs use a palette of 256 distinct colours and index (x * 7 + y * 13) & 255.
std::vector<uint8_t> MakeTestPhoto(int32_t width, int32_t height, int bits);
// The blue, green, red of photograph pixel (x, y), y counted from the top.
uint32_t TestPhotoColor(const std::vector<uint8_t>& photo, int32_t x, int32_t y);

// Fixes the random generator's clock and seed so scatters replay.
void FixRandom(uint32_t seed);

// Records every hook call as a short text ("emptied 3", "filled 0", "invalidate 6 10 20 30 40", ...).
struct HookLog {
    std::vector<std::string> events;
    int count(const std::string& prefix) const;
    bool has(const std::string& event) const;
};
extern HookLog g_hookLog;
void InstallRecordingHooks();

// Everything undo must bring back, field by field: every piece record, the order array, the view counts.
struct ModelSnapshot {
    std::vector<PieceRecord> pieces;
    std::vector<uint32_t> order;
    std::vector<uint32_t> counts;
};
ModelSnapshot TakeModel(const PuzzleState& p);
// Success when p holds what the snapshot holds; else says where they first differ.
::testing::AssertionResult SameModel(const ModelSnapshot& expected, const PuzzleState& p);

// Cuts p with a test photograph and pattern. Table size as given; the views get no pictures.
bool CutTestPuzzle(PuzzleState* p, int32_t rows, int32_t cols, int32_t photoWidth, int32_t photoHeight,
                   uint32_t patternRows = 2, uint32_t patternColumns = 2, double scale = 1.0, bool scatter = true,
                   int bits = 24, int32_t tableWidth = 947, int32_t tableHeight = 640);
// Gives every view a picture: the table tableWidth x tableHeight, the trays 288 x trayHeight.
void GiveViewPictures(PuzzleState* p, int32_t trayHeight = 200);
// Clears the puzzle and frees the pictures.
void ReleaseTestPuzzle(PuzzleState* p);

// Puts piece i in view v at (x, y) with the given group; the runs are rebuilt from `where` (view per piece)
// in index order, which tests use to lay out exact situations.
void LayOut(PuzzleState* p, const std::vector<int>& viewOfPiece);
// The run of a view as a vector.
std::vector<uint32_t> RunOf(const PuzzleState* p, int view);
// A box pixel of piece i that is inside (its first in row-major order from the box centre outward).
bool FindInsidePixel(const PuzzleState* p, uint32_t piece, int32_t* x, int32_t* y);

// How many pieces claim each pixel of the scaled photograph; on the way it counts inside pixels that lie
// off the photograph or do not carry its colour.
struct Coverage {
    int32_t width = 0, height = 0;
    std::vector<uint8_t> count;
    int wrongColours = 0, offPhoto = 0;
    int at(int32_t x, int32_t y) const { return count[size_t(y) * width + x]; }
};
Coverage MeasureCoverage(const PuzzleState& p, const std::vector<uint8_t>& photo);
// Every pixel of the grid (cols * w by rows * h) in exactly one piece; the column and row just past the
// grid in the last pieces (all but their shared corner); nothing beyond.
::testing::AssertionResult CoversGridExactlyOnce(const PuzzleState& p, const std::vector<uint8_t>& photo);
