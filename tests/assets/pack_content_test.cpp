// The built game folder: every pack item with the size, depth, colour table and frame layout the
// screens need, the cut patterns and their checker, and the photographs, clips and help pages.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <unistd.h>

#include "app/art_ids.h"
#include "artgen/art_table.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "gfx/pack_writer.h"
#include "patcheck/pattern_rules.h"

namespace fs = std::filesystem;

namespace {

const std::string kDist = TAVIREL_DIST_DIR;
const std::string kArt = TAVIREL_ART_DIR;

class PackContent : public ::testing::Test {
protected:
    ResourcePack pack{};
    void SetUp() override { ASSERT_TRUE(OpenPack(&pack, (kDist + "/Tavirel.rf").c_str())) << "no pack in " << kDist; }
    void TearDown() override { ClosePack(&pack); }
    // The item's header, or a failure when it is absent.
    DibHeader Header(uint32_t id) {
        uint8_t* dib = LoadPackItem(&pack, id);
        DibHeader h{};
        if (dib) {
            h = *DibHeaderOf(dib);
            FreePackedDib(dib);
        }
        return h;
    }
    std::vector<uint8_t> Palette(uint32_t id) {
        uint8_t* dib = LoadPackItem(&pack, id);
        std::vector<uint8_t> p;
        if (dib) {
            const uint8_t* table = dib + kDibPaletteOffset;
            p.assign(table, table + 4 * DibHeaderOf(dib)->biClrUsed);
            FreePackedDib(dib);
        }
        return p;
    }
};

// What the screens fix for the ids they name: exact sizes where given, otherwise limits and the
// frame count that the strip's height must divide by.
struct Fixed {
    uint32_t first, count;
    int width, height;     // 0: free
    int bits;              // 0: 8 or 24
    int heightFrames;      // height divisible by this
    int widthFrames;       // width divisible by this
    int maxFrameWidth, maxFrameHeight;  // 0: free
};

const Fixed kFixedIds[] = {
    {104, 1, 25, 139, 0, 1, 1, 0, 0},      {105, 1, 103, 25, 0, 1, 1, 0, 0},
    {112, 1, 0, 0, 0, 3, 1, 36, 78},       {113, 1, 500, 50, 0, 1, 10, 0, 0},
    {115, 1, 500, 50, 0, 1, 10, 0, 0},     {117, 1, 500, 50, 0, 1, 10, 0, 0},
    {119, 1, 0, 0, 0, 3, 1, 39, 78},       {120, 1, 98, 95, 0, 1, 1, 0, 0},
    {122, 1, 76, 78, 0, 1, 1, 0, 0},       {123, 1, 103, 103, 0, 1, 1, 0, 0},
    {124, 1, 500, 50, 0, 1, 10, 0, 0},     {126, 1, 500, 50, 0, 1, 10, 0, 0},
    {127, 1, 500, 50, 0, 1, 10, 0, 0},     {128, 1, 500, 50, 0, 1, 10, 0, 0},
    {129, 1, 0, 0, 0, 3, 1, 222, 79},      {131, 1, 0, 0, 0, 3, 1, 0, 0},
    {134, 1, 0, 0, 0, 10, 1, 0, 0},        {135, 1, 0, 477, 0, 3, 1, 0, 0},
    {146, 1, 0, 0, 0, 3, 1, 0, 0},         {147, 1, 0, 0, 0, 3, 1, 0, 0},
    {148, 1, 0, 0, 8, 1, 1, 0, 0},         {158, 1, 500, 50, 0, 1, 10, 0, 0},
    {159, 1, 640, 480, 8, 1, 1, 0, 0},     {160, 1, 80, 80, 8, 1, 1, 0, 0},
    {163, 1, 0, 0, 0, 3, 1, 0, 0},         {165, 1, 0, 0, 0, 3, 1, 0, 0},
    {166, 1, 0, 0, 0, 1, 1, 0, 0},         {167, 1, 0, 0, 0, 3, 1, 0, 0},
    {200, 6, 50, 0, 0, 3, 1, 50, 46},      {212, 1, 0, 0, 0, 3, 1, 177, 0},
    {213, 1, 0, 0, 0, 3, 1, 0, 0},         {214, 1, 0, 0, 0, 1, 1, 0, 0},
    {225, 1, 0, 0, 0, 3, 1, 30, 31},       {227, 1, 30, 31, 0, 1, 1, 0, 0},
    {228, 1, 0, 0, 0, 3, 1, 0, 31},        {244, 1, 0, 0, 0, 3, 1, 0, 0},
    {260, 1, 500, 50, 0, 1, 10, 0, 0},     {261, 1, 800, 600, 0, 1, 1, 0, 0},
    {272, 1, 1496, 243, 0, 1, 1, 0, 0},    {273, 1, 1496, 228, 0, 1, 1, 0, 0},
    {340, 1, 550, 50, 0, 1, 11, 0, 0},
    {503, 3, 0, 0, 0, 2, 1, 0, 0},         {507, 1, 0, 0, 0, 1, 1, 0, 0},
    {600, 6, 50, 0, 0, 3, 1, 50, 46},      {2000, 6, 0, 0, 0, 1, 1, 0, 0},
    {2060, 6, 0, 0, 0, 3, 1, 0, 68},       {2070, 6, 88, 168, 0, 3, 1, 0, 0},
    {2080, 6, 88, 224, 0, 4, 1, 0, 0},        {2090, 6, 0, 0, 8, 1, 1, 0, 60},
    {2100, 6, 0, 0, 0, 1, 1, 0, 0},        {2110, 6, 25, 0, 0, 3, 1, 0, 0},
    {2120, 6, 0, 75, 0, 3, 1, 0, 0},       {2130, 6, 0, 0, 0, 1, 1, 0, 0},
    {2150, 6, 0, 0, 8, 1, 1, 474, 53},     {5000, 3, 532, 532, 8, 1, 1, 0, 0},
    {6000, 10, 100, 100, 8, 1, 1, 0, 0},
};

TEST_F(PackContent, EveryIdTheScreensNameIsPresentWithItsSizeAndLayout) {
    for (const Fixed& f : kFixedIds)
        for (uint32_t id = f.first; id < f.first + f.count; ++id) {
            SCOPED_TRACE("id " + std::to_string(id));
            ASSERT_GE(FindPackEntry(&pack, id), 0);
            DibHeader h = Header(id);
            ASSERT_EQ(h.biSize, 40u);
            EXPECT_EQ(h.biCompression, 0u);
            EXPECT_GT(h.biHeight, 0);
            if (f.width) { EXPECT_EQ(h.biWidth, f.width); }
            if (f.height) { EXPECT_EQ(h.biHeight, f.height); }
            if (f.bits) { EXPECT_EQ(h.biBitCount, f.bits); }
            EXPECT_TRUE(h.biBitCount == 8 || h.biBitCount == 24);
            EXPECT_EQ(h.biHeight % f.heightFrames, 0);
            EXPECT_EQ(h.biWidth % f.widthFrames, 0);
            if (f.maxFrameWidth) { EXPECT_LE(h.biWidth / f.widthFrames, f.maxFrameWidth); }
            if (f.maxFrameHeight) { EXPECT_LE(h.biHeight / f.heightFrames, f.maxFrameHeight); }
        }
    // The texture preview holds the ten cloths as square frames.
    DibHeader preview = Header(kArtClothPreview);
    EXPECT_EQ(preview.biHeight, 10 * preview.biWidth);
}

TEST_F(PackContent, EveryTableItemMatchesItsEntry) {
    std::set<uint32_t> seen;
    for (int i = 0; i < kArtTableSize; ++i) {
        const ArtEntry& s = kArtTable[i];
        for (int slot = 0; slot < s.slots; ++slot) {
            uint32_t id = s.id + uint32_t(slot);
            SCOPED_TRACE(std::string(s.name) + " " + std::to_string(id));
            EXPECT_TRUE(seen.insert(id).second) << "id used twice";
            ASSERT_GE(FindPackEntry(&pack, id), 0);
            DibHeader h = Header(id);
            EXPECT_EQ(h.biWidth, s.width);
            EXPECT_EQ(h.biHeight, s.height);
            EXPECT_EQ(h.biBitCount, s.depth == ArtDepth::Rgb24 ? 24 : 8);
            EXPECT_EQ(h.biSizeImage, uint32_t(DibStride(h.biBitCount, h.biWidth) * h.biHeight));
            if (s.depth == ArtDepth::Rgb24) {
                EXPECT_EQ(h.biClrUsed, 0u);
            } else {
                EXPECT_GE(h.biClrUsed, 1u);
                EXPECT_LE(h.biClrUsed, 256u);
            }
            switch (s.layout) {
            case ArtLayout::Command: EXPECT_EQ(h.biHeight % 3, 0); break;
            case ArtLayout::CommandWithDisabled: EXPECT_EQ(h.biHeight % 4, 0); break;
            case ArtLayout::Check: EXPECT_EQ(h.biHeight % 4, 0); break;
            case ArtLayout::Anim:
                EXPECT_EQ(h.biHeight % s.rows, 0);
                EXPECT_EQ(h.biWidth % s.cols, 0);
                break;
            case ArtLayout::Scroll: EXPECT_EQ(h.biHeight, 3 * (s.zones[0] + s.zones[1] + s.zones[2])); break;
            default: break;
            }
        }
    }
    // Nothing in the pack that the table does not know.
    EXPECT_EQ(pack.count, seen.size());
}

// The gather-edges button: the ten frames of every animated button, then an eleventh that shows it
// cannot be pressed now: the rest frame drawn darker and drained of its colour, its icon still there.
TEST_F(PackContent, GatherEdgesButtonEndsWithADimmedFrame) {
    const ArtEntry* entry = FindArtEntry(kArtGatherEdgesButton);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->layout, ArtLayout::Anim);
    EXPECT_EQ(entry->rows, 1);
    EXPECT_EQ(entry->cols, 11);
    uint8_t* dib = LoadPackItem(&pack, kArtGatherEdgesButton);
    ASSERT_NE(dib, nullptr);
    const DibHeader h = *DibHeaderOf(dib);
    EXPECT_EQ(h.biBitCount, 24);
    EXPECT_EQ(h.biWidth, 11 * 50);
    EXPECT_EQ(h.biHeight, 50);
    if (h.biBitCount != 24 || h.biWidth != 550 || h.biHeight != 50) {
        FreePackedDib(dib);
        return;
    }
    const int64_t stride = DibStride(24, h.biWidth);
    // Of frame k: mean brightness, mean colourfulness (largest minus smallest channel) and the spread
    // of brightness over the medallion's face, where the icon stands out of the enamel.
    struct Look {
        double light, colour, faceSpread;
    };
    auto look = [&](int k) {
        double light = 0, colour = 0, faceSum = 0, faceSquares = 0;
        int facePixels = 0;
        for (int y = 0; y < 50; ++y)
            for (int x = 0; x < 50; ++x) {
                const uint8_t* p = DibPixels(dib) + y * stride + (k * 50 + x) * 3;
                double l = 0.3 * p[2] + 0.59 * p[1] + 0.11 * p[0];
                light += l;
                colour += std::max({p[0], p[1], p[2]}) - std::min({p[0], p[1], p[2]});
                if ((x - 25) * (x - 25) + (y - 25) * (y - 25) <= 13 * 13) {
                    faceSum += l;
                    faceSquares += l * l;
                    ++facePixels;
                }
            }
        double faceMean = faceSum / facePixels;
        return Look{light / 2500, colour / 2500, std::sqrt(faceSquares / facePixels - faceMean * faceMean)};
    };
    Look rest = look(0), lit = look(9), disabled = look(10);
    SCOPED_TRACE("light " + std::to_string(rest.light) + " / " + std::to_string(disabled.light) + ", colour " +
                 std::to_string(rest.colour) + " / " + std::to_string(disabled.colour) + ", face spread " +
                 std::to_string(rest.faceSpread) + " / " + std::to_string(disabled.faceSpread));
    EXPECT_GT(lit.light, rest.light * 1.1);              // the glow of the animation
    EXPECT_LT(disabled.light, rest.light * 0.75);        // dimmed
    EXPECT_LT(disabled.colour, rest.colour * 0.5);       // greyed
    EXPECT_GT(disabled.faceSpread, 12.0);                // the icon still shows on the face
    FreePackedDib(dib);
}

TEST_F(PackContent, ComposedPicturesShareOneHousePalette) {
    std::vector<uint8_t> house = Palette(kArtMessageFrame);
    ASSERT_FALSE(house.empty());
    std::vector<uint32_t> ids = {kArtBackdropTile, kArtHonourPanel};
    for (int l = 0; l < kLanguageCount; ++l) {
        ids.push_back(kArtMessageHeading + uint32_t(l));
        ids.push_back(kArtHonourTitle + uint32_t(l));
    }
    for (uint32_t id : ids) {
        SCOPED_TRACE(id);
        EXPECT_EQ(Header(id).biBitCount, 8);
        EXPECT_EQ(Palette(id), house);
    }
}

TEST_F(PackContent, ClothsRepeatWithoutASeam) {
    for (uint32_t id = kArtCloth; id < kArtCloth + 10; ++id) {
        SCOPED_TRACE(id);
        uint8_t* dib = LoadPackItem(&pack, id);
        ASSERT_NE(dib, nullptr);
        const DibColor* pal = DibPalette(dib);
        auto lum = [&](int x, int y) {
            DibColor c = pal[DibPixels(dib)[y * 100 + x]];
            return 0.3 * c.red + 0.59 * c.green + 0.11 * c.blue;
        };
        // The step across the wrap-around edge is no larger than an ordinary step inside the tile.
        double inside = 0, across = 0;
        for (int y = 0; y < 100; ++y) {
            for (int x = 0; x + 1 < 100; ++x) inside += std::abs(lum(x + 1, y) - lum(x, y));
            across += std::abs(lum(0, y) - lum(99, y));
        }
        inside /= 99;
        EXPECT_LT(across, inside * 2.0 + 100);
        FreePackedDib(dib);
    }
}

// The pattern as the checker reads it, straight from the pack.
PatternImage PatternFromPack(ResourcePack* pack, uint32_t id) {
    PatternImage im{};
    uint8_t* dib = LoadPackItem(pack, id);
    if (!dib) return im;
    const DibHeader* h = DibHeaderOf(dib);
    im.width = h->biWidth;
    im.height = h->biHeight;
    im.bitCount = h->biBitCount;
    im.colorsUsed = h->biClrUsed;
    im.compression = h->biCompression;
    int64_t stride = DibStride(8, im.width);
    im.pixels.resize(size_t(im.width) * im.height);
    for (int y = 0; y < im.height; ++y)
        std::memcpy(&im.pixels[size_t(y) * im.width], DibPixels(dib) + (im.height - 1 - y) * stride, size_t(im.width));
    FreePackedDib(dib);
    return im;
}

TEST_F(PackContent, CutPatternsPassTheChecker) {
    for (uint32_t id = kArtCutPattern; id < kArtCutPattern + 3; ++id) {
        PatternImage im = PatternFromPack(&pack, id);
        std::vector<std::string> errors = CheckPattern(im);
        EXPECT_TRUE(errors.empty()) << id << ": " << (errors.empty() ? "" : errors[0]);
    }
}

TEST_F(PackContent, CutPatternsAreThreeDifferentStyles) {
    PatternImage a = PatternFromPack(&pack, kArtCutPattern), b = PatternFromPack(&pack, kArtCutPattern + 1),
                 c = PatternFromPack(&pack, kArtCutPattern + 2);
    auto differing = [](const PatternImage& x, const PatternImage& y) {
        size_t n = 0;
        for (size_t i = 0; i < x.pixels.size(); ++i) n += x.pixels[i] != y.pixels[i];
        return n;
    };
    EXPECT_GT(differing(a, b), 3000u);
    EXPECT_GT(differing(b, c), 3000u);
    EXPECT_GT(differing(a, c), 3000u);
}

// A broken copy: start from a good pattern and damage it in one way.
std::vector<std::string> CheckDamaged(ResourcePack* pack, const std::function<void(PatternImage&)>& damage) {
    PatternImage im = PatternFromPack(pack, kArtCutPattern);
    damage(im);
    return CheckPattern(im);
}

TEST_F(PackContent, CheckerRejectsBrokenCopies) {
    auto set = [](PatternImage& im, int x, int y, uint8_t v) { im.pixels[size_t(y) * im.width + x] = v; };
    // A value that names no region.
    EXPECT_FALSE(CheckDamaged(&pack, [&](PatternImage& im) { set(im, 200, 200, 40); }).empty());
    // A tab of cell 1 pushed 90 pixels into cell 2.
    EXPECT_FALSE(CheckDamaged(&pack, [&](PatternImage& im) {
                     for (int y = 150; y < 180; ++y)
                         for (int x = 266; x < 356; ++x) set(im, x, y, 1);
                 }).empty());
    // The top margin no longer mirrors the bottom row: the repeat would show a seam.
    EXPECT_FALSE(CheckDamaged(&pack, [&](PatternImage& im) {
                     for (int x = 120; x < 140; ++x) set(im, x, 30, 1);
                 }).empty());
    // A cell split in two.
    EXPECT_FALSE(CheckDamaged(&pack, [&](PatternImage& im) {
                     for (int x = 66; x < 266; ++x) set(im, x, 170, 3);
                 }).empty());
    // Wrong size or depth.
    EXPECT_FALSE(CheckDamaged(&pack, [&](PatternImage& im) { im.bitCount = 24; }).empty());
}

TEST(CutPatternTool, PassesTheBuiltPatternsAndFailsABrokenFile) {
    std::string patcheck = TAVIREL_PATCHECK;
    std::string good = patcheck + " " + kArt + "/items/5000.bmp " + kArt + "/items/5001.bmp " + kArt +
                       "/items/5002.bmp >/dev/null";
    EXPECT_EQ(std::system(good.c_str()), 0);
    std::vector<uint8_t> bmp;
    ASSERT_TRUE(ReadWholeFile((kArt + "/items/5001.bmp").c_str(), &bmp));
    uint32_t pixels;
    std::memcpy(&pixels, &bmp[10], 4);
    // Paint a band of region 2 across cell 1 (rows are bottom-up in the file).
    for (int y = 300; y < 310; ++y)
        for (int x = 66; x < 266; ++x) bmp[pixels + size_t(y) * 532 + x] = 2;
    fs::path broken = fs::temp_directory_path() / ("tavirel_broken_pattern_" + std::to_string(::getpid()) + ".bmp");
    ASSERT_TRUE(WriteWholeFile(broken.string().c_str(), bmp.data(), bmp.size()));
    std::string bad = patcheck + " " + broken.string() + " >/dev/null";
    EXPECT_NE(std::system(bad.c_str()), 0);
    fs::remove(broken);
}

std::string ReadText(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

TEST(GameFolder, PhotographsHaveNumbersTitlesCaptionsAndCredits) {
    std::string titles = ReadText(fs::path(TAVIREL_SOURCE_DIR) / "res/strings_titles.rc");
    int count = 0;
    for (const auto& entry : fs::directory_iterator(kDist + "/Image")) {
        if (entry.path().extension() != ".bmp") continue;
        ++count;
        std::string stem = entry.path().stem().string();
        SCOPED_TRACE(stem);
        ASSERT_GE(stem.size(), 2u);
        ASSERT_TRUE(isdigit(stem[stem.size() - 1]) && isdigit(stem[stem.size() - 2]));
        int n = std::stoi(stem.substr(stem.size() - 2));
        // The title 5000 + n exists and holds a ".".
        std::smatch m;
        std::regex title("\\b" + std::to_string(5000 + n) + ",\\s*\"([^\"]*)\"");
        ASSERT_TRUE(std::regex_search(titles, m, title));
        EXPECT_NE(m[1].str().find('.'), std::string::npos);
        EXPECT_TRUE(fs::exists(entry.path().parent_path() / (stem + ".txt")));
        // Uncompressed 24-bit with a 40-byte header and the pixels right after it.
        std::string bmp = ReadText(entry.path());
        ASSERT_GT(bmp.size(), 54u);
        uint32_t offBits, headerSize, compression;
        uint16_t bits;
        int32_t width, height;
        std::memcpy(&offBits, &bmp[10], 4);
        std::memcpy(&headerSize, &bmp[14], 4);
        std::memcpy(&width, &bmp[18], 4);
        std::memcpy(&height, &bmp[22], 4);
        std::memcpy(&bits, &bmp[28], 2);
        std::memcpy(&compression, &bmp[30], 4);
        EXPECT_EQ(bmp.substr(0, 2), "BM");
        EXPECT_EQ(headerSize, 40u);
        EXPECT_EQ(offBits, 54u);
        EXPECT_EQ(bits, 24);
        EXPECT_EQ(compression, 0u);
        EXPECT_GT(height, 0);
        EXPECT_LE(std::max(width, height), 1024);
        EXPECT_GE(std::min(width, height), 135);
        EXPECT_EQ(bmp.size(), 54u + size_t((width * 3 + 3) & ~3) * height);
        std::string credits = ReadText(kDist + "/Credits-pictures.txt");
        EXPECT_NE(credits.find(entry.path().filename().string()), std::string::npos);
    }
    EXPECT_GE(count, 6);
    EXPECT_TRUE(fs::exists(kDist + "/Credits.txt"));
}

uint32_t U32At(const std::string& s, size_t at) {
    uint32_t v = 0;
    if (at + 4 <= s.size()) std::memcpy(&v, &s[at], 4);
    return v;
}

// Decodes one RLE8 frame over `pixels` (rows bottom-up), marking what it draws in `drawn`. False when
// the stream is malformed: a run or a delta past its row or the picture, a cut-off escape or absolute
// run (with its padding byte), or no end of bitmap as its last two bytes.
bool DecodeRle8(const uint8_t* p, size_t n, int width, int height, std::vector<uint8_t>* pixels,
                std::vector<bool>* drawn) {
    int x = 0, y = 0;
    size_t i = 0;
    while (i + 2 <= n) {
        int count = p[i], code = p[i + 1];
        i += 2;
        if (count > 0) {  // encoded run
            if (y >= height || x + count > width) return false;
            for (int k = 0; k < count; ++k, ++x) {
                (*pixels)[size_t(y) * width + x] = uint8_t(code);
                (*drawn)[size_t(y) * width + x] = true;
            }
        } else if (code == 0) {  // end of line
            x = 0;
            if (++y > height) return false;
        } else if (code == 1) {  // end of bitmap
            return i == n;
        } else if (code == 2) {  // delta
            if (i + 2 > n) return false;
            x += p[i];
            y += p[i + 1];
            i += 2;
            if (x > width || y >= height) return false;
        } else {  // absolute run, padded to a 16-bit boundary
            size_t padded = size_t(code + (code & 1));
            if (y >= height || x + code > width || i + padded > n) return false;
            for (int k = 0; k < code; ++k, ++x) {
                (*pixels)[size_t(y) * width + x] = p[i + size_t(k)];
                (*drawn)[size_t(y) * width + x] = true;
            }
            i += padded;
        }
    }
    return false;
}

TEST(GameFolder, HasClipsHelpPagesAndTheSaveFolder) {
    for (int kind = 0; kind < 3; ++kind) {
        SCOPED_TRACE(kind);
        std::string avi = ReadText(kDist + "/Video/" + std::to_string(kind) + ".avi");
        ASSERT_GT(avi.size(), 1000u);
        EXPECT_LT(avi.size(), 1500u * 1000u);
        EXPECT_EQ(avi.substr(0, 4), "RIFF");
        EXPECT_EQ(avi.substr(8, 4), "AVI ");
        // 8-bit MS-RLE with its 256-colour palette in the stream format.
        size_t strh = avi.find("strh"), strf = avi.find("strf"), movi = avi.find("movi"), idx1 = avi.rfind("idx1");
        while (movi != std::string::npos && (movi < 8 || avi.compare(movi - 8, 4, "LIST") != 0))
            movi = avi.find("movi", movi + 1);  // the list type, not palette bytes that spell it
        ASSERT_NE(strh, std::string::npos);
        ASSERT_NE(strf, std::string::npos);
        ASSERT_NE(movi, std::string::npos);
        ASSERT_NE(idx1, std::string::npos);
        EXPECT_EQ(avi.substr(strh + 8, 4), "vids");
        EXPECT_EQ(avi.substr(strh + 12, 4), "mrle");
        EXPECT_EQ(U32At(avi, strf + 4), 40u + 256u * 4u);
        const int width = int(U32At(avi, strf + 12)), height = int(U32At(avi, strf + 16));
        EXPECT_EQ(width, kind == 0 ? 320 : 400);
        EXPECT_EQ(height, kind == 0 ? 240 : 300);
        uint16_t bits;
        std::memcpy(&bits, &avi[strf + 22], 2);
        EXPECT_EQ(bits, 8);
        EXPECT_EQ(U32At(avi, strf + 24), 1u);  // BI_RLE8
        EXPECT_EQ(U32At(avi, strf + 40), 256u);
        // Every frame is well-formed and ends the bitmap; the first is a keyframe and, like every
        // keyframe, draws every pixel of the stated size.
        uint32_t frames = U32At(avi, idx1 + 4) / 16;
        EXPECT_EQ(frames, kind == 0 ? 24u : 36u);
        ASSERT_GT(frames, 0u);
        EXPECT_TRUE(U32At(avi, idx1 + 12) & 0x10) << "AVIIF_KEYFRAME";
        std::vector<uint8_t> pixels(size_t(width) * height);
        for (uint32_t f = 0; f < frames; ++f) {
            SCOPED_TRACE(f);
            size_t entry = idx1 + 8 + 16 * size_t(f);
            EXPECT_EQ(avi.substr(entry, 4), "00dc");
            bool keyframe = U32At(avi, entry + 4) & 0x10;
            size_t chunk = movi + U32At(avi, entry + 8);
            uint32_t length = U32At(avi, entry + 12);
            ASSERT_EQ(avi.substr(chunk, 4), "00dc");
            ASSERT_EQ(U32At(avi, chunk + 4), length);
            ASSERT_LE(chunk + 8 + length, avi.size());
            ASSERT_GE(length, 2u);
            const uint8_t* data = reinterpret_cast<const uint8_t*>(&avi[chunk + 8]);
            EXPECT_EQ(data[length - 2], 0);
            EXPECT_EQ(data[length - 1], 1);
            std::vector<bool> drawn(pixels.size());
            ASSERT_TRUE(DecodeRle8(data, length, width, height, &pixels, &drawn));
            size_t undrawn = 0;
            for (bool d : drawn) undrawn += d ? 0 : 1;
            if (keyframe) {
                EXPECT_EQ(undrawn, 0u);
            }
            if (f == 0) {
                // A picture, not one flat colour.
                EXPECT_GT(std::set<uint8_t>(pixels.begin(), pixels.end()).size(), 16u);
            }
        }
    }
    for (int language = 0; language < kLanguageCount; ++language) {
        std::string page = ReadText(kDist + "/Help/" + std::to_string(language) + "/Index.htm");
        EXPECT_NE(page.find("<html"), std::string::npos) << language;
        EXPECT_GT(page.size(), 2000u) << language;
    }
    EXPECT_TRUE(fs::is_directory(kDist + "/folder"));
    EXPECT_TRUE(fs::exists(kArt + "/contact.png"));
}

}  // namespace
