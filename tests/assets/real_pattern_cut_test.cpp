// Cutting with the game's own cut patterns from the built pack: every grid covers every pixel of the
// photograph exactly once, and the pieces on the border keep straight outer edges.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/art_ids.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "puzzle/cut.h"
#include "puzzle_test_support.h"

namespace {

struct RealPatternCut : ::testing::Test {
    void SetUp() override {
        std::string pack = std::string(TAVIREL_DIST_DIR) + "/Tavirel.rf";
        ASSERT_TRUE(OpenPack(&g_pack, pack.c_str())) << pack;
        InstallRecordingHooks();
        FixRandom(11);
        p = PuzzleState{};
        p.tableWidth = 1843;
        p.tableHeight = 952;
    }
    void TearDown() override {
        ReleaseTestPuzzle(&p);
        g_puzzleHooks = PuzzleHooks{};
        ClosePack(&g_pack);
    }
    PuzzleState p;
};

}  // namespace

TEST_F(RealPatternCut, EveryGridFromTwoByTwoToTwelveByTwelveCoversEveryPixelExactlyOnce) {
    for (uint32_t style = 0; style < 3; ++style) {
        uint8_t* pattern = LoadPackItem(&g_pack, kArtCutPattern + style);
        ASSERT_NE(pattern, nullptr) << style;
        for (int32_t rows = 2; rows <= 12; ++rows)
            for (int32_t cols = 2; cols <= 12; ++cols) {
                // Cell edges from 45 (the smallest piece the choosers allow) upward.
                int32_t cell = 45 + (rows * 7 + cols * 3 + int32_t(style) * 5) % 40;
                int32_t width = cols * cell + (rows % 3), height = rows * (cell + 2) + (cols % 4);
                std::vector<uint8_t> photo = MakeTestPhoto(width, height, 24);
                p.rows = rows;
                p.cols = cols;
                p.scale = 1.0;
                ASSERT_TRUE(CutPuzzle(&p, photo.data(), pattern, 2, 2, kArtCutPattern + style, true))
                    << style << ": " << rows << " x " << cols;
                ASSERT_TRUE(CoversGridExactlyOnce(p, photo)) << "style " << style << ", " << rows << " x " << cols;
            }
        FreePackedDib(pattern);
    }
}
