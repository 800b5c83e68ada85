// The current picture (loading, keeping, forgetting), fitting a picture into a box and scaling packed
// DIBs by nearest neighbour.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "app/app_state.h"
#include "app/platform.h"
#include "gfx/dib.h"
#include "puzzle/picture.h"
#include "test_support.h"

namespace {

// A 24-bit value naming its pixel: x in the low 12 bits, y in the high 12.
uint32_t Coded(int32_t x, int32_t y) { return uint32_t(x) | (uint32_t(y) << 12); }

// Pixel (x, y) of a packed DIB, y counted from the top: an 8-bit index or 0xRRGGBB.
uint32_t At(const uint8_t* dib, int32_t x, int32_t y) {
    const DibHeader* h = DibHeaderOf(dib);
    int32_t rows = h->biHeight < 0 ? -h->biHeight : h->biHeight;
    int64_t row = h->biHeight > 0 ? rows - 1 - y : y;
    return PixelInRow(DibPixels(dib) + row * DibStride(h->biBitCount, h->biWidth), h->biBitCount, x);
}

// Every test starts and ends without a current picture.
struct PictureTest : ::testing::Test {
    ScratchFolder folder;
    void SetUp() override { ClearCurrentPicture(); }
    void TearDown() override { ClearCurrentPicture(); }
    std::string Write(const char* name, const std::vector<uint8_t>& bytes) {
        std::string path = folder.File(name);
        WriteBytes(path, bytes);
        return path;
    }
};

}  // namespace

TEST_F(PictureTest, NothingIsLoadedAtFirst) {
    EXPECT_EQ(CurrentPicture(), nullptr);
    EXPECT_STREQ(CurrentPicturePath(), "");
}

TEST_F(PictureTest, BottomUp24BitFileBecomesOnePackedDibWithPixelsAt1064) {
    // File row y is picture row 9 - y in a bottom-up file.
    std::string path = Write("a.bmp", MakeBmp(13, 10, 24, 0, Coded));
    ASSERT_TRUE(LoadCurrentPicture(path.c_str()));
    const uint8_t* dib = CurrentPicture();
    ASSERT_NE(dib, nullptr);
    const DibHeader* h = DibHeaderOf(dib);
    EXPECT_EQ(h->biSize, 40u);
    EXPECT_EQ(h->biWidth, 13);
    EXPECT_EQ(h->biHeight, 10);
    EXPECT_EQ(h->biBitCount, 24);
    EXPECT_EQ(h->biCompression, 0u);
    EXPECT_EQ(h->biSizeImage, 40u * 10);  // stride (3 * 13 + 3) & ~3 = 40
    // The stored rows are the file's rows, byte for byte, from 1,064 on.
    std::vector<uint8_t> file = ReadBytes(path);
    EXPECT_EQ(std::memcmp(dib + 1064, file.data() + 54, 400), 0);
    EXPECT_EQ(At(dib, 0, 0), Coded(0, 9));
    EXPECT_EQ(At(dib, 12, 9), Coded(12, 0));
    EXPECT_STREQ(CurrentPicturePath(), path.c_str());
}

TEST_F(PictureTest, EightBitFileKeepsItsPalette) {
    auto index = [](int32_t x, int32_t y) { return uint32_t((x + y) % 16); };
    std::string path = Write("p.bmp", MakeBmp(7, 5, 8, 16, index));
    ASSERT_TRUE(LoadCurrentPicture(path.c_str()));
    const uint8_t* dib = CurrentPicture();
    const DibHeader* h = DibHeaderOf(dib);
    EXPECT_EQ(h->biBitCount, 8);
    EXPECT_EQ(h->biClrUsed, 16u);
    for (uint32_t i = 0; i < 16; ++i) {
        DibColor want = TestPaletteColor(i);
        EXPECT_EQ(std::memcmp(&DibPalette(dib)[i], &want, 4), 0) << i;
    }
    EXPECT_EQ(At(dib, 3, 4), 3u);  // file row 0 is the bottom row: (3 + 0) % 16
    EXPECT_EQ(At(dib, 6, 0), (6u + 4) % 16);
}

TEST_F(PictureTest, TopDownFileIsKeptBottomUp) {
    // In a top-down file, file row y is picture row y.
    std::string path = Write("t.bmp", MakeBmp(6, -4, 24, 0, Coded));
    ASSERT_TRUE(LoadCurrentPicture(path.c_str()));
    const uint8_t* dib = CurrentPicture();
    EXPECT_EQ(DibHeaderOf(dib)->biHeight, 4);
    for (int32_t y = 0; y < 4; ++y)
        for (int32_t x = 0; x < 6; ++x) EXPECT_EQ(At(dib, x, y), Coded(x, y)) << x << "," << y;
}

TEST_F(PictureTest, RelativePathIsTakenFromTheProgramFolderAndKeptAsGiven) {
    char saved[kPathCapacity];
    std::memcpy(saved, g_appFolder, sizeof saved);
    std::string folderPath = folder.path.string() + "/";
    std::snprintf(g_appFolder, sizeof g_appFolder, "%s", folderPath.c_str());
    Write("r.bmp", MakeBmp(3, 3, 24, 0, Coded));
    bool loaded = LoadCurrentPicture("r.bmp");
    std::memcpy(g_appFolder, saved, sizeof saved);
    ASSERT_TRUE(loaded);
    EXPECT_STREQ(CurrentPicturePath(), "r.bmp");
    EXPECT_EQ(DibHeaderOf(CurrentPicture())->biWidth, 3);
}

TEST_F(PictureTest, FilesThatCannotBePlayedLeaveThePreviousPictureCurrent) {
    std::string good = Write("good.bmp", MakeBmp(4, 4, 24, 0, Coded));
    ASSERT_TRUE(LoadCurrentPicture(good.c_str()));
    const uint8_t* before = CurrentPicture();
    std::vector<uint8_t> truncated = MakeBmp(100, 100, 24, 0, Coded);
    truncated.resize(54 + 300 * 50);
    std::vector<uint8_t> notBmp = MakeBmp(4, 4, 24, 0, Coded);
    notBmp[0] = 'X';
    const std::pair<const char*, std::vector<uint8_t>> bad[] = {
        {"four.bmp", MakeBmp(4, 4, 4, 16, [](int32_t, int32_t) { return 1u; })},
        {"thirtytwo.bmp", MakeBmp(4, 4, 32, 0, Coded)},
        {"rle.bmp", MakeBmp(4, 4, 8, 256, [](int32_t, int32_t) { return 1u; }, 1)},
        {"short.bmp", truncated},
        {"magic.bmp", notBmp},
    };
    for (const auto& file : bad) {
        std::string path = Write(file.first, file.second);
        EXPECT_FALSE(LoadCurrentPicture(path.c_str())) << file.first;
        EXPECT_EQ(CurrentPicture(), before) << file.first;
        EXPECT_STREQ(CurrentPicturePath(), good.c_str()) << file.first;
    }
    EXPECT_FALSE(LoadCurrentPicture(folder.File("missing.bmp").c_str()));
    EXPECT_FALSE(LoadCurrentPicture(nullptr));
    EXPECT_FALSE(LoadCurrentPicture(""));
    EXPECT_EQ(CurrentPicture(), before);
}

TEST_F(PictureTest, PathOf260CharactersIsRefused) {
    std::string longPath = folder.path.string() + "/" + std::string(300, 'x') + ".bmp";
    std::string path259 = folder.path.string() + "/";
    path259 += std::string(259 - path259.size() - 4, 'y') + ".bmp";
    ASSERT_EQ(path259.size(), 259u);
    WriteBytes(path259, MakeBmp(2, 2, 24, 0, Coded));
    EXPECT_TRUE(LoadCurrentPicture(path259.c_str()));
    EXPECT_STREQ(CurrentPicturePath(), path259.c_str());
    std::string path260 = path259.substr(0, path259.size() - 4) + "z.bmp";
    WriteBytes(path260, MakeBmp(2, 2, 24, 0, Coded));
    EXPECT_FALSE(LoadCurrentPicture(path260.c_str()));
    EXPECT_FALSE(LoadCurrentPicture(longPath.c_str()));
    EXPECT_STREQ(CurrentPicturePath(), path259.c_str());
}

TEST_F(PictureTest, ReloadingAndClearingReleaseTheBlock) {
    std::string a = Write("a.bmp", MakeBmp(5, 5, 24, 0, Coded));
    std::string b = Write("b.bmp", MakeBmp(6, 2, 8, 2, [](int32_t x, int32_t) { return uint32_t(x & 1); }));
    size_t live = SysLiveBlocks();
    ASSERT_TRUE(LoadCurrentPicture(a.c_str()));
    EXPECT_EQ(SysLiveBlocks(), live + 1);
    ASSERT_TRUE(LoadCurrentPicture(b.c_str()));
    EXPECT_EQ(SysLiveBlocks(), live + 1);
    EXPECT_EQ(DibHeaderOf(CurrentPicture())->biWidth, 6);
    ClearCurrentPicture();
    EXPECT_EQ(SysLiveBlocks(), live);
    EXPECT_EQ(CurrentPicture(), nullptr);
    EXPECT_STREQ(CurrentPicturePath(), "");
}

TEST(PictureFit, FourByThreePictureFillsA240By180BoxAtEverySize) {
    for (int32_t w = 4; w <= 4000; w += 4) {
        PictureFit fit = FitPicture(w, w / 4 * 3, 240, 180);
        ASSERT_TRUE(fit.widthBound) << w;  // 180 is not more than 180
        ASSERT_EQ(fit.width, 240) << w;
        ASSERT_EQ(fit.height, 180) << w;
    }
}

TEST(PictureFit, SquarePictureIsHeightBoundAtEverySize) {
    for (int32_t side = 1; side <= 5000; ++side) {
        PictureFit fit = FitPicture(side, side, 240, 180);
        ASSERT_FALSE(fit.widthBound) << side;
        ASSERT_EQ(fit.width, 180) << side;
        ASSERT_EQ(fit.height, 180) << side;
        ASSERT_EQ(fit.scale, 180.0 / side) << side;
    }
}

TEST(PictureFit, WidePictureIsWidthBoundAndTallOneHeightBound) {
    PictureFit wide = FitPicture(1000, 300, 240, 180);
    EXPECT_TRUE(wide.widthBound);
    EXPECT_EQ(wide.width, 240);
    EXPECT_EQ(wide.height, 72);
    EXPECT_EQ(wide.scale, 0.24);
    PictureFit tall = FitPicture(101, 400, 240, 180);
    EXPECT_FALSE(tall.widthBound);
    EXPECT_EQ(tall.width, 45);  // 101 * 180 / 400 = 45.45
    EXPECT_EQ(tall.height, 180);
    EXPECT_EQ(ScaleByFit(401, tall), 180);  // 401 * 180 / 400 = 180.45
}

TEST(PictureFit, PictureOrBoxWithoutAreaFitsToNothing) {
    for (PictureFit fit : {FitPicture(0, 10, 240, 180), FitPicture(10, 0, 240, 180), FitPicture(10, 10, 0, 180),
                           FitPicture(-5, 10, 240, 180)}) {
        EXPECT_EQ(fit.width, 0);
        EXPECT_EQ(fit.height, 0);
        EXPECT_EQ(ScaleByFit(100, fit), 0);
    }
}

TEST(PictureScale, HalvingTakesEveryOtherPixelCountedFromTheTop) {
    uint8_t* source = AllocPackedDib(8, 6, 24, 0);
    for (int32_t y = 0; y < 6; ++y)
        for (int32_t x = 0; x < 8; ++x) {
            uint8_t* p = DibPixels(source) + (5 - y) * 24 + 3 * x;
            uint32_t v = Coded(x, y);
            p[0] = uint8_t(v);
            p[1] = uint8_t(v >> 8);
            p[2] = uint8_t(v >> 16);
        }
    uint8_t* half = ScalePackedDib(source, 4, 3);
    ASSERT_NE(half, nullptr);
    EXPECT_EQ(DibHeaderOf(half)->biWidth, 4);
    EXPECT_EQ(DibHeaderOf(half)->biHeight, 3);
    EXPECT_EQ(DibHeaderOf(half)->biBitCount, 24);
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t x = 0; x < 4; ++x) EXPECT_EQ(At(half, x, y), Coded(2 * x, 2 * y)) << x << "," << y;
    FreePackedDib(half);
    FreePackedDib(source);
}

TEST(PictureScale, EnlargingRepeatsPixelsAndKeepsThePalette) {
    uint8_t* source = AllocPackedDib(2, 2, 8, 4);
    for (uint32_t i = 0; i < 4; ++i) DibPalette(source)[i] = TestPaletteColor(i);
    // Picture (x, y) holds index 2 * y + x; row 0 of the block is the bottom row.
    DibPixels(source)[0] = 2;
    DibPixels(source)[1] = 3;
    DibPixels(source)[4] = 0;
    DibPixels(source)[5] = 1;
    uint8_t* big = ScalePackedDib(source, 6, 4);
    ASSERT_NE(big, nullptr);
    EXPECT_EQ(DibHeaderOf(big)->biClrUsed, 4u);
    EXPECT_EQ(std::memcmp(DibPalette(big), DibPalette(source), 16), 0);
    for (int32_t y = 0; y < 4; ++y)
        for (int32_t x = 0; x < 6; ++x) EXPECT_EQ(At(big, x, y), uint32_t(2 * (y / 2) + x / 3)) << x << "," << y;
    FreePackedDib(big);
    FreePackedDib(source);
}

TEST(PictureScale, TopDownSourceComesOutBottomUp) {
    uint8_t* source = AllocPackedDib(3, 3, 8, 0);
    DibHeaderOf(source)->biHeight = -3;  // row 0 of the block is now the top row
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t x = 0; x < 3; ++x) DibPixels(source)[y * 4 + x] = uint8_t(10 * y + x);
    uint8_t* copy = ScalePackedDib(source, 3, 3);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(DibHeaderOf(copy)->biHeight, 3);
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t x = 0; x < 3; ++x) EXPECT_EQ(At(copy, x, y), uint32_t(10 * y + x));
    FreePackedDib(copy);
    FreePackedDib(source);
}

TEST(PictureScale, RefusesOtherDepthsCompressionAndEmptySizes) {
    uint8_t* four = AllocPackedDib(4, 4, 4, 16);
    uint8_t* rle = AllocPackedDib(4, 4, 8, 0);
    DibHeaderOf(rle)->biCompression = 1;
    uint8_t* good = AllocPackedDib(4, 4, 24, 0);
    EXPECT_EQ(ScalePackedDib(four, 2, 2), nullptr);
    EXPECT_EQ(ScalePackedDib(rle, 2, 2), nullptr);
    EXPECT_EQ(ScalePackedDib(good, 0, 2), nullptr);
    EXPECT_EQ(ScalePackedDib(good, 2, -1), nullptr);
    EXPECT_EQ(ScalePackedDib(nullptr, 2, 2), nullptr);
    DibHeaderOf(good)->biSizeImage = 10;  // claims fewer bytes than its rows need
    EXPECT_EQ(ScalePackedDib(good, 2, 2), nullptr);
    FreePackedDib(four);
    FreePackedDib(rle);
    FreePackedDib(good);
}
