// The wallpaper's size on the screen and the BMP file written for it.
#include <gtest/gtest.h>

#include <cstring>

#include "app/platform.h"
#include "extras/wallpaper.h"
#include "gfx/dib.h"
#include "test_support.h"

namespace {

uint32_t U32At(const std::vector<uint8_t>& bytes, size_t at) {
    uint32_t value = 0;
    std::memcpy(&value, bytes.data() + at, 4);
    return value;
}
int32_t I32At(const std::vector<uint8_t>& bytes, size_t at) { return int32_t(U32At(bytes, at)); }

// A 24-bit picture whose pixel (x, y from the top) has the colour 0xRRGGBB = (x, y, 7).
uint8_t* MakePicture24(int32_t width, int32_t height) {
    uint8_t* dib = AllocPackedDib(width, height, 24, 0);
    const int64_t stride = DibStride(24, width);
    for (int32_t y = 0; y < height; ++y) {
        uint8_t* row = DibPixels(dib) + stride * (height - 1 - y);
        for (int32_t x = 0; x < width; ++x) {
            row[3 * x] = 7;
            row[3 * x + 1] = uint8_t(y);
            row[3 * x + 2] = uint8_t(x);
        }
    }
    return dib;
}

}  // namespace

TEST(WallpaperSize, APictureWiderThanTheScreenFillsItsWidth) {
    WallpaperSize size = WallpaperSizeFor(1600, 600, 1024, 768);
    EXPECT_EQ(size.width, 1024);
    EXPECT_EQ(size.height, 384);
}

TEST(WallpaperSize, APictureTallerThanTheScreenFillsItsHeight) {
    WallpaperSize size = WallpaperSizeFor(600, 1200, 1024, 768);
    EXPECT_EQ(size.width, 384);
    EXPECT_EQ(size.height, 768);
}

TEST(WallpaperSize, ASmallPictureGrowsToTheScreen) {
    WallpaperSize size = WallpaperSizeFor(200, 100, 1920, 1080);
    EXPECT_EQ(size.width, 1920);
    EXPECT_EQ(size.height, 960);
}

TEST(WallpaperSize, NoAreaGivesNoSize) {
    EXPECT_EQ(WallpaperSizeFor(0, 100, 800, 600).width, 0);
    EXPECT_EQ(WallpaperSizeFor(100, 100, 0, 600).height, 0);
}

TEST(WallpaperFile, HeaderFieldsDescribeThePictureScaledToTheScreen) {
    ScratchFolder folder;
    uint8_t* picture = MakePicture24(200, 100);
    const std::string path = folder.File("Tavirel.bmp");
    ASSERT_TRUE(WriteWallpaperFile(path.c_str(), picture, 1024, 768));
    const std::vector<uint8_t> bytes = ReadBytes(path);
    const uint32_t stride = uint32_t(DibStride(24, 1024));
    ASSERT_EQ(bytes.size(), 54 + stride * 512);
    EXPECT_EQ(bytes[0], 'B');
    EXPECT_EQ(bytes[1], 'M');
    EXPECT_EQ(U32At(bytes, 2), 54 + stride * 512);  // file size
    EXPECT_EQ(U32At(bytes, 6), 0u);                 // both reserved words
    EXPECT_EQ(U32At(bytes, 10), 54u);               // pixel offset: no colour table
    EXPECT_EQ(U32At(bytes, 14), 40u);
    EXPECT_EQ(I32At(bytes, 18), 1024);
    EXPECT_EQ(I32At(bytes, 22), 512);
    EXPECT_EQ(bytes[28], 24);
    EXPECT_EQ(U32At(bytes, 34), stride * 512);
    // Nearest neighbour: the top-left pixel is the picture's, the last row's last pixel its corner too.
    const size_t topRow = 54 + size_t(stride) * 511;
    EXPECT_EQ(bytes[topRow], 7);
    EXPECT_EQ(bytes[topRow + 1], 0);
    EXPECT_EQ(bytes[topRow + 2], 0);
    const size_t bottomRight = 54 + 3 * 1023;
    EXPECT_EQ(bytes[bottomRight + 1], 99);
    EXPECT_EQ(bytes[bottomRight + 2], 199);
    FreePackedDib(picture);
}

TEST(WallpaperFile, AnEightBitPictureCarriesItsColourTable) {
    ScratchFolder folder;
    uint8_t* picture = AllocPackedDib(64, 48, 8, 16);
    for (uint32_t i = 0; i < 16; ++i) DibPalette(picture)[i] = {uint8_t(i), uint8_t(2 * i), uint8_t(3 * i), 0};
    std::memset(DibPixels(picture), 5, size_t(DibStride(8, 64)) * 48);
    const std::string path = folder.File("Tavirel.bmp");
    ASSERT_TRUE(WriteWallpaperFile(path.c_str(), picture, 800, 600));
    const std::vector<uint8_t> bytes = ReadBytes(path);
    const uint32_t stride = uint32_t(DibStride(8, 800));
    EXPECT_EQ(U32At(bytes, 10), 54u + 4 * 16);
    EXPECT_EQ(U32At(bytes, 2), 54u + 4 * 16 + stride * 600);
    EXPECT_EQ(I32At(bytes, 18), 800);
    EXPECT_EQ(I32At(bytes, 22), 600);
    EXPECT_EQ(U32At(bytes, 46), 16u);  // biClrUsed kept
    EXPECT_EQ(bytes[54 + 4 * 15 + 2], 45);  // red of entry 15
    EXPECT_EQ(bytes[54 + 4 * 16], 5);
    FreePackedDib(picture);
}

TEST(WallpaperFile, EveryFailedWriteLeavesThePreviousWallpaperAndNoTemporaryFile) {
    ScratchFolder folder;
    uint8_t* first = MakePicture24(40, 30);
    uint8_t* second = MakePicture24(30, 40);
    const std::string path = folder.File("Tavirel.bmp");
    ASSERT_TRUE(WriteWallpaperFile(path.c_str(), first, 800, 600));
    const std::vector<uint8_t> previous = ReadBytes(path);
    for (bool shortWrite : {false, true})
        for (int32_t k = 1; k <= 3; ++k) {
            SysFaultPlan plan{k, shortWrite, false, false};
            SysSetFaultPlan(&plan);
            EXPECT_FALSE(WriteWallpaperFile(path.c_str(), second, 800, 600)) << "write " << k;
            SysSetFaultPlan(nullptr);
            EXPECT_EQ(ReadBytes(path), previous) << "write " << k;
            EXPECT_FALSE(SysPathExists((path + ".tmp").c_str()));
        }
    SysFaultPlan create{0, false, false, true};
    SysSetFaultPlan(&create);
    EXPECT_FALSE(WriteWallpaperFile(path.c_str(), second, 800, 600));
    SysFaultPlan replace{0, false, true, false};
    SysSetFaultPlan(&replace);
    EXPECT_FALSE(WriteWallpaperFile(path.c_str(), second, 800, 600));
    SysSetFaultPlan(nullptr);
    EXPECT_EQ(ReadBytes(path), previous);
    EXPECT_FALSE(SysPathExists((path + ".tmp").c_str()));
    EXPECT_TRUE(WriteWallpaperFile(path.c_str(), second, 800, 600));
    EXPECT_NE(ReadBytes(path), previous);
    FreePackedDib(first);
    FreePackedDib(second);
}

TEST(WallpaperFile, WithoutAPictureNothingIsWritten) {
    ScratchFolder folder;
    const std::string path = folder.File("Tavirel.bmp");
    EXPECT_FALSE(WriteWallpaperFile(path.c_str(), nullptr, 800, 600));
    EXPECT_FALSE(SysPathExists(path.c_str()));
}
