// Cutting: pattern sampling, the region tests and straight outer edges, coverage of the photograph,
// 8- and 24-bit photographs, the scatter and the failure rules.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "gfx/dib.h"
#include "gfx/random.h"
#include "puzzle/cut.h"
#include "puzzle_test_support.h"

namespace {

struct Cutting : ::testing::Test {
    void SetUp() override {
        InstallRecordingHooks();
        FixRandom(7);
        p = PuzzleState{};
    }
    void TearDown() override {
        ReleaseTestPuzzle(&p);
        g_puzzleHooks = PuzzleHooks{};
    }
    PuzzleState p;
};

bool Inside(const PuzzleState& p, uint32_t piece, int32_t x, int32_t y) {
    return (*SheetPixel(&p, piece, x, y) >> 24) != 0;
}

}  // namespace

TEST(PatternSampling, CellProperMapsOntoColumns66To266) {
    // w = 100, mx = 33: box column 33 is the cell's first, 133 the next cell's first.
    EXPECT_EQ(PatternSample(33, 100, 33), 66);
    EXPECT_EQ(PatternSample(133, 100, 33), 266);
    EXPECT_EQ(PatternSample(0, 100, 33), 0);    // 66 - 66 = 0
    EXPECT_EQ(PatternSample(165, 100, 33), 330);  // the last box column
    EXPECT_EQ(PatternSample(83, 100, 33), 166);
    // Values beyond the neighbourhood are clamped.
    EXPECT_EQ(PatternSample(1000, 100, 33), kPatternLastSample);
    EXPECT_EQ(PatternSample(-50, 100, 33), 0);
}

TEST(PatternSampling, NeighboursSampleTheSamePatternColumnAtEveryCellSize) {
    // A piece and its right-hand neighbour see an image column at box columns x and x - w; both must read
    // the same pattern column, 200 apart in their cells, or a pixel would be in two pieces or in none.
    for (int32_t w = 2; w <= 600; ++w) {
        int32_t mx = int32_t(0.33 * w), W = w + 2 * mx;
        for (int32_t x = w; x < W; ++x)
            ASSERT_EQ(PatternSample(x, w, mx), PatternSample(x - w, w, mx) + kPatternCell) << "w " << w << " x " << x;
    }
    // The case where the floating-point quotient would slip: 33 * 200 / 44 is exactly 150.
    EXPECT_EQ(PatternSample(47, 44, 14), 216);
    EXPECT_EQ(PatternSample(3, 44, 14), 16);
}

TEST(PatternSampling, RegionsFollowTheNumberingInsideAndAcrossTheBorder) {
    // A 3 x 4 pattern: P = 13.
    PatternRegions inner = PieceRegions(3, 4, 1, 1);
    EXPECT_EQ(inner.own, 6u);
    EXPECT_EQ(inner.up, 2u);
    EXPECT_EQ(inner.right, 7u);
    EXPECT_EQ(inner.down, 10u);
    EXPECT_EQ(inner.left, 5u);
    PatternRegions corner = PieceRegions(3, 4, 0, 0);
    EXPECT_EQ(corner.up, 13u + 0);             // P + pc
    EXPECT_EQ(corner.left, 13u + 8 + 3 + 0);   // P + 2 * columns + rows + pr
    PatternRegions far = PieceRegions(3, 4, 2, 3);
    EXPECT_EQ(far.own, 12u);
    EXPECT_EQ(far.right, 13u + 4 + 2);         // P + columns + pr
    EXPECT_EQ(far.down, 13u + 3 + 4 + 3);      // P + rows + columns + pc
    // The grid repeats the pattern: piece (5, 6) uses cell (2, 2).
    EXPECT_EQ(PieceRegions(3, 4, 5, 6).own, PieceRegions(3, 4, 2, 2).own);
}

TEST_F(Cutting, ScaledImageUnder45PixelsCannotBeCutAndTheModelStaysEmpty) {
    ASSERT_FALSE(CutTestPuzzle(&p, 2, 2, 100, 200, 2, 2, 0.44));  // 44 x 88
    EXPECT_FALSE(HasPuzzle(&p));
    EXPECT_EQ(p.pieces, nullptr);
    EXPECT_TRUE(g_hookLog.events.empty());  // untouched: not even the wait cursor
    // Without a photograph either.
    std::vector<uint8_t> pattern = MakeTestPattern(2, 2);
    p.rows = p.cols = 2;
    p.scale = 1.0;
    EXPECT_FALSE(CutPuzzle(&p, nullptr, pattern.data(), 2, 2, 5000, true));
    // And an existing puzzle survives a failed attempt.
    ASSERT_TRUE(CutTestPuzzle(&p, 2, 2, 200, 200));
    const uint32_t* sheet = p.sheet;
    EXPECT_FALSE(CutTestPuzzle(&p, 2, 2, 100, 100, 2, 2, 0.3));
    EXPECT_EQ(p.sheet, sheet);
    EXPECT_EQ(p.rows, 2);
}

TEST_F(Cutting, TwoByTwoGridWithTwoByTwoPatternGivesFourCornersWithTwoStraightEdges) {
    ASSERT_TRUE(CutTestPuzzle(&p, 2, 2, 300, 240));
    const int32_t w = p.cellWidth, h = p.cellHeight, mx = (p.boxWidth - w) / 2, my = (p.boxHeight - h) / 2;
    for (uint32_t i = 0; i < 4; ++i) {
        const bool top = PieceRow(&p, i) == 0, left = PieceColumn(&p, i) == 0;
        // The outer edges are straight: nothing beyond them, and everything just inside them.
        for (int32_t k = 0; k < w; ++k) {
            int32_t x = mx + k;
            int32_t outerY = top ? my - 1 : h + my + 1, edgeY = top ? my : h + my - 1;
            EXPECT_FALSE(Inside(p, i, x, outerY)) << "piece " << i;
            EXPECT_TRUE(Inside(p, i, x, edgeY)) << "piece " << i << " x " << x;
        }
        for (int32_t k = 0; k < h; ++k) {
            int32_t y = my + k;
            int32_t outerX = left ? mx - 1 : w + mx + 1, edgeX = left ? mx : w + mx - 1;
            EXPECT_FALSE(Inside(p, i, outerX, y)) << "piece " << i;
            EXPECT_TRUE(Inside(p, i, edgeX, y)) << "piece " << i << " y " << y;
        }
        // The two inner edges are shaped: a tab reaches past the cell line or a hollow cuts into it.
        int32_t innerX = left ? w + mx - 1 : mx, beyondX = left ? w + mx : mx - 1;
        int32_t innerY = top ? h + my - 1 : my, beyondY = top ? h + my : my - 1;
        bool verticalShaped = false, horizontalShaped = false;
        for (int32_t y = my; y < my + h; ++y)
            if (Inside(p, i, beyondX, y) || !Inside(p, i, innerX, y)) verticalShaped = true;
        for (int32_t x = mx; x < mx + w; ++x)
            if (Inside(p, i, x, beyondY) || !Inside(p, i, x, innerY)) horizontalShaped = true;
        EXPECT_TRUE(verticalShaped) << "piece " << i;
        EXPECT_TRUE(horizontalShaped) << "piece " << i;
    }
    EXPECT_EQ(p.patternRows, 2u);
    EXPECT_EQ(p.patternColumns, 2u);
    EXPECT_EQ(p.patternId, 5000u);
}

TEST_F(Cutting, GridLargerThanPatternRepeatsCellShapesAndWrapsTabsAcrossThePatternBorder) {
    ASSERT_TRUE(CutTestPuzzle(&p, 7, 9, 630, 490, 3, 4));
    auto sameShape = [&](uint32_t a, uint32_t b) {
        for (int32_t y = 0; y < p.boxHeight; ++y)
            for (int32_t x = 0; x < p.boxWidth; ++x)
                if (Inside(p, a, x, y) != Inside(p, b, x, y)) return false;
        return true;
    };
    auto index = [&](int32_t r, int32_t c) { return uint32_t(r * p.cols + c); };
    // Interior pieces three rows or four columns apart have the same outline.
    EXPECT_TRUE(sameShape(index(1, 1), index(4, 1)));
    EXPECT_TRUE(sameShape(index(1, 1), index(1, 5)));
    EXPECT_TRUE(sameShape(index(2, 3), index(5, 7)));
    EXPECT_FALSE(sameShape(index(1, 1), index(1, 2)));
    // Across the pattern's border (rows 2 | 3, columns 3 | 4) the outlines still interlock: every pixel of
    // the grid belongs to exactly one piece.
    std::vector<uint8_t> photo = MakeTestPhoto(630, 490, 24);
    EXPECT_TRUE(CoversGridExactlyOnce(p, photo));
    // And the edge across the wrap is shaped, not straight: piece (3, 1)'s top takes tabs from region P + pc.
    bool shaped = false;
    const int32_t mx = (p.boxWidth - p.cellWidth) / 2, my = (p.boxHeight - p.cellHeight) / 2;
    for (int32_t x = mx; x < mx + p.cellWidth; ++x)
        if (Inside(p, index(3, 1), x, my - 1) || !Inside(p, index(3, 1), x, my)) shaped = true;
    EXPECT_TRUE(shaped);
}

TEST_F(Cutting, LastColumnIsStraightAtExactlyWPlusMxEvenWherePatternSaysOwn) {
    // 3 x 4 grid, 2 x 2 pattern: piece (0, 3) is in the last column and uses pattern cell (0, 1), like
    // piece (0, 1), whose own tab pushes out to the right.
    ASSERT_TRUE(CutTestPuzzle(&p, 3, 4, 410, 300));
    const int32_t w = p.cellWidth, mx = (p.boxWidth - w) / 2, my = (p.boxHeight - p.cellHeight) / 2;
    const uint32_t interior = 1, last = 3;
    bool interiorTabOut = false;
    for (int32_t y = 0; y < p.boxHeight; ++y)
        for (int32_t x = w + mx + 1; x < p.boxWidth; ++x) interiorTabOut |= Inside(p, interior, x, y);
    ASSERT_TRUE(interiorTabOut) << "the test pattern should push a tab right from cell (1, 1)";
    for (int32_t y = 0; y < p.boxHeight; ++y)
        for (int32_t x = w + mx + 1; x < p.boxWidth; ++x) EXPECT_FALSE(Inside(p, last, x, y)) << x << ", " << y;
    // The edge column itself is in, the whole height of the cell.
    for (int32_t y = my; y < my + p.cellHeight; ++y) EXPECT_TRUE(Inside(p, last, w + mx, y)) << y;
}

TEST_F(Cutting, ScaledWidthNotAMultipleOfColumnsLeavesTheRightmostColumnsOut) {
    // 203 / 4 = 50: the grid is 200 wide; column 200 is the last pieces' straight edge, 201 and 202 are out.
    ASSERT_TRUE(CutTestPuzzle(&p, 2, 4, 203, 107));
    ASSERT_EQ(p.cellWidth, 50);
    ASSERT_EQ(p.cellHeight, 53);  // 107 / 2: row 106 is the edge, nothing left out below
    std::vector<uint8_t> photo = MakeTestPhoto(203, 107, 24);
    Coverage cov = MeasureCoverage(p, photo);
    for (int32_t y = 0; y < 106; ++y) {
        EXPECT_EQ(cov.at(199, y), 1);
        EXPECT_EQ(cov.at(200, y), 1);
        EXPECT_EQ(cov.at(201, y), 0);
        EXPECT_EQ(cov.at(202, y), 0);
    }
    EXPECT_TRUE(CoversGridExactlyOnce(p, photo));
}

TEST_F(Cutting, EveryGridFromTwoByTwoToTwelveByTwelveCoversEveryPixelExactlyOnce) {
    for (int32_t rows = 2; rows <= 12; ++rows)
        for (int32_t cols = 2; cols <= 12; ++cols) {
            // Photograph sizes vary with the grid so that many cell sizes are met.
            int32_t width = 150 + 7 * cols + rows, height = 120 + 5 * rows + cols;
            uint32_t pr = (rows + cols) % 3 == 0 ? 3 : 2, pc = (rows + cols) % 3 == 0 ? 4 : 2;
            ASSERT_TRUE(CutTestPuzzle(&p, rows, cols, width, height, pr, pc));
            std::vector<uint8_t> photo = MakeTestPhoto(width, height, 24);
            ASSERT_TRUE(CoversGridExactlyOnce(p, photo)) << rows << " x " << cols;
        }
}

TEST_F(Cutting, EightBitPhotographAndZoomTakeTheNearestSourcePixelAndItsPaletteColour) {
    for (double scale : {0.73, 1.0, 1.37, 2.5}) {
        ASSERT_TRUE(CutTestPuzzle(&p, 4, 5, 170, 130, 2, 2, scale, true, 8));
        std::vector<uint8_t> photo = MakeTestPhoto(170, 130, 8);
        EXPECT_TRUE(CoversGridExactlyOnce(p, photo)) << scale;
    }
}

// The outline index as a list of (piece, row, begin, end, colour...) for comparisons.
std::vector<uint32_t> OutlineContents(const PuzzleState& p) {
    std::vector<uint32_t> all;
    for (uint32_t i = 0; i < PieceCount(&p); ++i)
        for (int32_t y = 0; y < p.boxHeight; ++y) {
            OutlineRow row = PieceOutlineRow(&p, i, y);
            const uint8_t* colour = row.pixels;
            for (uint32_t k = 0; k < row.count; ++k) {
                all.insert(all.end(), {i, uint32_t(y), uint32_t(row.spans[k].begin), uint32_t(row.spans[k].end)});
                for (int32_t x = row.spans[k].begin; x < row.spans[k].end; ++x, colour += 3)
                    all.push_back(uint32_t(colour[0] | colour[1] << 8 | colour[2] << 16));
            }
        }
    return all;
}

TEST_F(Cutting, OutlineIndexHoldsExactlyTheInsideRunsOfEveryBoxRowAndTheirColours) {
    for (int bits : {24, 8}) {
        ASSERT_TRUE(CutTestPuzzle(&p, 5, 4, 300, 260, 2, 2, 1.0, true, bits));
        for (uint32_t i = 0; i < PieceCount(&p); ++i)
            for (int32_t y = 0; y < p.boxHeight; ++y) {
                OutlineRow row = PieceOutlineRow(&p, i, y);
                std::vector<bool> fromSpans(p.boxWidth, false);
                const uint8_t* colour = row.pixels;
                for (uint32_t k = 0; k < row.count; ++k) {
                    const OutlineSpan& span = row.spans[k];
                    ASSERT_LT(span.begin, span.end);
                    if (k) {
                        ASSERT_LT(row.spans[k - 1].end, span.begin);  // separate, in order
                    }
                    for (int32_t x = span.begin; x < span.end; ++x, colour += 3) {
                        fromSpans[x] = true;
                        uint32_t pixel = *SheetPixel(&p, i, x, y);
                        ASSERT_EQ(colour[0] | colour[1] << 8 | colour[2] << 16, int(pixel & 0xFFFFFF));
                    }
                }
                for (int32_t x = 0; x < p.boxWidth; ++x) ASSERT_EQ(fromSpans[x], Inside(p, i, x, y));
            }
        // Pieces of one kind share their shape: 5 x 4 with a 2 x 2 pattern has 2 x 2 cells in 3 x 3 places
        // on the border, of which this grid meets 20 kinds at most.
        std::vector<uint32_t> shapes(p.outlineShape, p.outlineShape + PieceCount(&p));
        std::sort(shapes.begin(), shapes.end());
        EXPECT_LT(std::unique(shapes.begin(), shapes.end()) - shapes.begin(), 20);
        EXPECT_EQ(p.outlineShape[1 * 4 + 1], p.outlineShape[3 * 4 + 1]);  // same cell, both inner
        // Rebuilding from the sheet gives the same runs and colours.
        std::vector<uint32_t> made = OutlineContents(p);
        ASSERT_TRUE(IndexPieceOutlines(&p));
        EXPECT_EQ(OutlineContents(p), made);
    }
}

TEST_F(Cutting, ScatterDrawsYFirstIntoTheLowerHalfThenShufflesTheOrder) {
    FixRandom(1234);
    RandomState replay = g_random;
    ASSERT_TRUE(CutTestPuzzle(&p, 4, 6, 400, 300, 2, 2, 1.0, true, 24, 947, 640));
    const uint32_t n = PieceCount(&p);
    std::vector<uint32_t> order(n);
    for (uint32_t i = 0; i < n; ++i) {
        order[i] = i;
        double a = RandomFraction(&replay);
        int32_t y = int32_t((a + 1.0) * (640 - p.boxHeight) * 0.5);
        double b = RandomFraction(&replay);
        int32_t x = int32_t(b * (947 - p.boxWidth));
        EXPECT_EQ(p.pieces[i].x, x) << i;
        EXPECT_EQ(p.pieces[i].y, y) << i;
        EXPECT_GE(p.pieces[i].y, (640 - p.boxHeight) / 2);
        EXPECT_LE(p.pieces[i].y, 640 - p.boxHeight);
        EXPECT_EQ(p.pieces[i].group, 0u);
        EXPECT_EQ(p.pieces[i].lit, 1);
    }
    for (uint32_t k = 0; k < n; ++k) {
        uint32_t i = uint32_t(RandomFraction(&replay) * n), j = uint32_t(RandomFraction(&replay) * n);
        if (i != j) std::swap(order[i], order[j]);
    }
    EXPECT_EQ(RunOf(&p, kTableView), order);
    EXPECT_TRUE(PuzzleInvariantsHold(&p));
}

TEST_F(Cutting, NewGameResetsCountersEmptiesTraysAndShowsTheClockAtZero) {
    ASSERT_TRUE(CutTestPuzzle(&p, 3, 3, 300, 300));
    p.views[kTableView].count -= 2;  // two pieces in tray 4
    p.views[4].count = 2;
    RelinkViewRuns(&p);
    p.puzzle_dirty = p.finished = 1;
    p.clockPending = 0;
    p.elapsed = 99;
    p.hintsUsed = 3;
    g_hookLog.events.clear();
    ASSERT_TRUE(CutTestPuzzle(&p, 3, 3, 300, 300));
    EXPECT_TRUE(g_hookLog.has("emptied 4"));
    EXPECT_TRUE(g_hookLog.has("clock 00:00:00"));
    EXPECT_TRUE(g_hookLog.has("refit preview"));
    EXPECT_EQ(g_hookLog.events.front(), "wait");
    EXPECT_EQ(g_hookLog.events.back(), "arrow");
    EXPECT_EQ(p.views[kTableView].count, 9u);
    for (int v = 0; v < kTrayCount; ++v) EXPECT_EQ(p.views[v].count, 0u);
    EXPECT_EQ(p.puzzle_dirty, 0);
    EXPECT_EQ(p.finished, 0);
    EXPECT_EQ(p.clockPending, 1);
    EXPECT_EQ(p.elapsed, 0u);
    EXPECT_EQ(p.hintsUsed, 0u);
}

TEST_F(Cutting, RestoringCutKeepsTheCountersTheLoaderInstalled) {
    p.hintsUsed = 4;
    p.elapsed = 321;
    p.finished = 1;
    ASSERT_TRUE(CutTestPuzzle(&p, 3, 3, 300, 300, 2, 2, 1.0, false));
    EXPECT_EQ(p.hintsUsed, 4u);
    EXPECT_EQ(p.elapsed, 321u);
    EXPECT_EQ(p.finished, 1);
    EXPECT_FALSE(g_hookLog.has("clock 00:00:00"));
    EXPECT_EQ(p.views[kTableView].count, 9u);  // the reader overwrites runs and records next
}

TEST_F(Cutting, AllocationFailureClearsThePuzzleAndRepaintsEveryView) {
    ASSERT_TRUE(CutTestPuzzle(&p, 3, 3, 300, 300));
    g_hookLog.events.clear();
    // 200 x 200 at zoom 230: a 46,000-pixel square sheet that cannot be had.
    EXPECT_FALSE(CutTestPuzzle(&p, 3, 3, 200, 200, 2, 2, 230.0));
    EXPECT_FALSE(HasPuzzle(&p));
    EXPECT_EQ(p.pieces, nullptr);
    EXPECT_EQ(p.outlineShapes, nullptr);
    for (int v = 0; v < kViewCount; ++v) {
        EXPECT_EQ(p.views[v].count, 0u);
        EXPECT_TRUE(g_hookLog.has("repaint " + std::to_string(v)));
    }
}

TEST_F(Cutting, DragSurfacesAreOneBoxAndTwoBoxesAndAnUnusableScreenFailsTheCut) {
    static int32_t askedWidth, askedHeight;
    static bool usable;
    g_puzzleHooks.prepareDragSurfaces = [](int32_t width, int32_t height) {
        askedWidth = width;
        askedHeight = height;
        return usable;
    };
    usable = true;
    ASSERT_TRUE(CutTestPuzzle(&p, 3, 4, 400, 300));
    EXPECT_EQ(askedWidth, p.boxWidth);
    EXPECT_EQ(askedHeight, p.boxHeight);
    DragSurfaceSizes sizes = DragSurfaceSizesFor(p.boxWidth, p.boxHeight);
    EXPECT_EQ(sizes.compositionWidth, 2 * p.boxWidth);
    EXPECT_EQ(sizes.compositionHeight, 2 * p.boxHeight);
    usable = false;
    EXPECT_FALSE(CutTestPuzzle(&p, 3, 4, 400, 300));
    EXPECT_FALSE(HasPuzzle(&p));  // never left holding an unfilled sheet
}

TEST_F(Cutting, PatternOfTheWrongSizeOrDepthIsRefused) {
    std::vector<uint8_t> photo = MakeTestPhoto(300, 300, 24);
    std::vector<uint8_t> pattern = MakeTestPattern(2, 2);
    p.rows = p.cols = 3;
    p.scale = 1.0;
    EXPECT_FALSE(CutPuzzle(&p, photo.data(), pattern.data(), 2, 3, 5000, true));  // says 2 x 3, is 2 x 2
    std::vector<uint8_t> deep = MakePackedDib(532, 532, 24);
    EXPECT_FALSE(CutPuzzle(&p, photo.data(), deep.data(), 2, 2, 5000, true));
    EXPECT_FALSE(CutPuzzle(&p, photo.data(), nullptr, 2, 2, 5000, true));
    std::vector<uint8_t> fourBit = MakePackedDib(300, 300, 4);
    EXPECT_FALSE(CutPuzzle(&p, fourBit.data(), pattern.data(), 2, 2, 5000, true));
    EXPECT_FALSE(HasPuzzle(&p));
    EXPECT_TRUE(CutPuzzle(&p, photo.data(), pattern.data(), 2, 2, 5000, true));
}
