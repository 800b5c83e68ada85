// The resource pack reader, the pack writer and the rfpack tool.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "gfx/dib.h"
#include "gfx/pack.h"
#include "gfx/pack_writer.h"
#include "test_support.h"

namespace {

// A pack item: header, colors table entries, pixel bytes (value = seed + i).
std::vector<uint8_t> MakeItem(int32_t width, int32_t height, int bits, uint32_t colors, uint8_t seed) {
    DibHeader h{};
    h.biSize = 40;
    h.biWidth = width;
    h.biHeight = height;
    h.biPlanes = 1;
    h.biBitCount = uint16_t(bits);
    h.biSizeImage = uint32_t(DibStride(bits, width) * height);
    h.biClrUsed = colors;
    std::vector<uint8_t> item(40 + 4 * colors + h.biSizeImage);
    std::memcpy(item.data(), &h, 40);
    for (uint32_t i = 0; i < colors; ++i) {
        DibColor c = TestPaletteColor(i);
        std::memcpy(&item[40 + 4 * i], &c, 4);
    }
    for (uint32_t i = 0; i < h.biSizeImage; ++i) item[40 + 4 * colors + i] = uint8_t(seed + i);
    return item;
}

struct RawEntry {
    uint32_t id;
    uint64_t offset;
};

// Items back to back from offset 0, then the given directory (offsets default to where items landed).
std::vector<uint8_t> MakeRawPack(const std::vector<std::vector<uint8_t>>& items, std::vector<RawEntry> entries) {
    std::vector<uint8_t> file;
    std::vector<uint64_t> at;
    for (const auto& item : items) {
        at.push_back(file.size());
        file.insert(file.end(), item.begin(), item.end());
    }
    for (size_t i = 0; i < entries.size(); ++i) {
        uint64_t offset = entries[i].offset == UINT64_MAX ? at[i] : entries[i].offset;
        PackEntry e{entries[i].id, 0, uint32_t(offset), uint32_t(offset >> 32)};
        const uint8_t* raw = reinterpret_cast<const uint8_t*>(&e);
        file.insert(file.end(), raw, raw + sizeof e);
    }
    uint32_t count = uint32_t(entries.size());
    const uint8_t* raw = reinterpret_cast<const uint8_t*>(&count);
    file.insert(file.end(), raw, raw + 4);
    return file;
}

constexpr uint64_t kWhereItLanded = UINT64_MAX;

}  // namespace

TEST(ResourcePack, EmptyPackHoldsOnlyItsCount) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({}, {})));
    EXPECT_EQ(ReadBytes(path).size(), 4u);
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    EXPECT_EQ(pack.count, 0u);
    EXPECT_EQ(LoadPackItem(&pack, 0), nullptr);
    EXPECT_EQ(LoadPackItem(&pack, 200), nullptr);
    ClosePack(&pack);
}

TEST(ResourcePack, FirstOfTwoEntriesWithOneIdWins) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    auto first = MakeItem(4, 2, 8, 2, 10), second = MakeItem(8, 3, 8, 2, 50);
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({first, second}, {{7, kWhereItLanded}, {7, kWhereItLanded}})));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    uint8_t* dib = LoadPackItem(&pack, 7);
    ASSERT_NE(dib, nullptr);
    EXPECT_EQ(DibHeaderOf(dib)->biWidth, 4);
    EXPECT_EQ(DibPixels(dib)[0], 10);
    FreePackedDib(dib);
    ClosePack(&pack);
}

TEST(ResourcePack, EightBitItemWithoutColourCountTakesPixelsRightAfterHeader) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    auto item = MakeItem(4, 2, 8, 0, 30);  // biClrUsed 0: no table stored
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({item}, {{300, kWhereItLanded}})));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    uint8_t* dib = LoadPackItem(&pack, 300);
    ASSERT_NE(dib, nullptr);
    EXPECT_EQ(DibHeaderOf(dib)->biClrUsed, 0u);
    // The pixels are the bytes right after the 40-byte header; the palette area was not filled.
    for (int i = 0; i < 8; ++i) EXPECT_EQ(DibPixels(dib)[i], uint8_t(30 + i));
    FreePackedDib(dib);
    ClosePack(&pack);
}

TEST(ResourcePack, TwentyFourBitItemPixelsStartAt1064) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    auto item = MakeItem(3, 2, 24, 0, 90);
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({item}, {{6000, kWhereItLanded}})));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    uint8_t* dib = LoadPackItem(&pack, 6000);
    ASSERT_NE(dib, nullptr);
    EXPECT_EQ(DibHeaderOf(dib)->biClrUsed, 0u);
    EXPECT_EQ(PackedDibBytes(dib), 1064u + 24u);
    EXPECT_EQ(0, std::memcmp(dib + 1064, item.data() + 40, 24));
    FreePackedDib(dib);
    ClosePack(&pack);
}

TEST(ResourcePack, PaletteItemKeepsItsTableAt40AndPixelsAt1064) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    auto item = MakeItem(5, 3, 8, 3, 1);
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({item}, {{5000, kWhereItLanded}})));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    uint8_t* dib = LoadPackItem(&pack, 5000);
    ASSERT_NE(dib, nullptr);
    EXPECT_EQ(0, std::memcmp(dib + 40, item.data() + 40, 12));
    EXPECT_EQ(0, std::memcmp(dib + 1064, item.data() + 52, item.size() - 52));
    FreePackedDib(dib);
    ClosePack(&pack);
}

TEST(ResourcePack, MissingFileFailsToOpen) {
    ScratchFolder folder;
    ResourcePack pack;
    EXPECT_FALSE(OpenPack(&pack, folder.File("Tavirel.rf").c_str()));
    EXPECT_FALSE(IsPackOpen(&pack));
    EXPECT_EQ(LoadPackItem(&pack, 1), nullptr);
}

TEST(ResourcePack, FileShorterThanItsCountFailsToOpen) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    ASSERT_TRUE(WriteBytes(path, {1, 2}));
    ResourcePack pack;
    EXPECT_FALSE(OpenPack(&pack, path.c_str()));
}

TEST(ResourcePack, CountLargerThanTheFileFailsCleanly) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    auto file = MakeRawPack({MakeItem(2, 2, 8, 1, 0)}, {{1, kWhereItLanded}});
    PutLE<uint32_t>(file, file.size() - 4, 0xFFFFFFFFu);
    ASSERT_TRUE(WriteBytes(path, file));
    ResourcePack pack;
    EXPECT_FALSE(OpenPack(&pack, path.c_str()));
    // One entry more than the file holds also fails.
    PutLE<uint32_t>(file, file.size() - 4, uint32_t((file.size() - 4) / 16 + 1));
    ASSERT_TRUE(WriteBytes(path, file));
    EXPECT_FALSE(OpenPack(&pack, path.c_str()));
}

TEST(ResourcePack, AbsentIdFailsWithoutReadingPastTheDirectory) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({MakeItem(2, 2, 8, 1, 0)}, {{1, kWhereItLanded}})));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    EXPECT_EQ(FindPackEntry(&pack, 2), -1);
    EXPECT_EQ(LoadPackItem(&pack, 2), nullptr);
    ClosePack(&pack);
}

TEST(ResourcePack, OffsetPastTheEndFailsTheLoad) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({MakeItem(2, 2, 8, 1, 0)}, {{1, 1u << 20}, {2, 1ull << 40}})));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    EXPECT_EQ(LoadPackItem(&pack, 1), nullptr);
    EXPECT_EQ(LoadPackItem(&pack, 2), nullptr);
    ClosePack(&pack);
}

TEST(ResourcePack, ImageSizeOfFourGigabytesFailsWithoutAllocating) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    auto item = MakeItem(2, 2, 8, 1, 0);
    PutLE<uint32_t>(item, 20, 0xFFFFFFFFu);  // biSizeImage
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({item}, {{1, kWhereItLanded}})));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    size_t before = SysLiveBlocks();
    EXPECT_EQ(LoadPackItem(&pack, 1), nullptr);
    EXPECT_EQ(SysLiveBlocks(), before);
    ClosePack(&pack);
}

TEST(ResourcePack, ColourCountOver256FailsTheLoad) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    auto item = MakeItem(2, 2, 8, 1, 0);
    PutLE<uint32_t>(item, 32, 257u);  // biClrUsed
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({item}, {{1, kWhereItLanded}})));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    EXPECT_EQ(LoadPackItem(&pack, 1), nullptr);
    ClosePack(&pack);
}

TEST(ResourcePack, ItemRunningPastTheEndFailsTheLoad) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    auto item = MakeItem(4, 4, 8, 0, 0);
    PutLE<uint32_t>(item, 20, 1000u);  // claims more pixel bytes than the whole file holds
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({item}, {{1, kWhereItLanded}})));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    EXPECT_EQ(LoadPackItem(&pack, 1), nullptr);
    ClosePack(&pack);
    // An entry whose header would run into the end of the file.
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({}, {{1, 0}})));
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    EXPECT_EQ(LoadPackItem(&pack, 1), nullptr);
    ClosePack(&pack);
}

TEST(ResourcePack, EntriesPast65536AreOutOfReach) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    auto item = MakeItem(1, 1, 8, 0, 0);
    std::vector<RawEntry> entries(65537, RawEntry{1, 0});
    entries.back().id = 2;  // entry 65536: beyond a 16-bit index
    entries[65535].id = 3;  // the last one reachable
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({item}, entries)));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    EXPECT_EQ(FindPackEntry(&pack, 3), 65535);
    EXPECT_EQ(FindPackEntry(&pack, 2), -1);
    EXPECT_EQ(LoadPackItem(&pack, 2), nullptr);
    ClosePack(&pack);
}

TEST(ResourcePack, OpenPackIsExclusiveUntilClosed) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    ASSERT_TRUE(WriteBytes(path, MakeRawPack({}, {})));
    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    ClosePack(&pack);
    EXPECT_FALSE(IsPackOpen(&pack));
    EXPECT_EQ(pack.directory, nullptr);
}

TEST(PackWriter, RoundTripKeepsIdsAndPixels) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    std::vector<std::vector<uint8_t>> items = {MakeItem(5, 3, 8, 256, 7), MakeItem(7, 2, 24, 0, 9),
                                               MakeItem(9, 9, 4, 16, 3)};
    uint32_t ids[] = {122, 6000, 5001};
    PackWriter writer;
    ASSERT_TRUE(BeginPack(&writer, path.c_str()));
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(AddPackItem(&writer, ids[i], items[i].data(), uint32_t(items[i].size())));
    ASSERT_TRUE(FinishPack(&writer));
    EXPECT_FALSE(std::filesystem::exists(path + ".tmp"));

    ResourcePack pack;
    ASSERT_TRUE(OpenPack(&pack, path.c_str()));
    ASSERT_EQ(pack.count, 3u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(pack.directory[i].id, ids[i]);
        EXPECT_EQ(pack.directory[i].size, items[i].size());
        uint8_t* dib = LoadPackItem(&pack, ids[i]);
        ASSERT_NE(dib, nullptr);
        const DibHeader* h = DibHeaderOf(dib);
        size_t table = 4 * size_t(h->biClrUsed);
        EXPECT_EQ(0, std::memcmp(dib, items[i].data(), 40 + table));
        EXPECT_EQ(0, std::memcmp(DibPixels(dib), items[i].data() + 40 + table, h->biSizeImage));
        FreePackedDib(dib);
    }
    ClosePack(&pack);
}

TEST(PackWriter, AbortedPackLeavesTheOldOneInPlace) {
    ScratchFolder folder;
    std::string path = folder.File("Tavirel.rf");
    auto old = MakeRawPack({}, {});
    ASSERT_TRUE(WriteBytes(path, old));
    PackWriter writer;
    ASSERT_TRUE(BeginPack(&writer, path.c_str()));
    auto item = MakeItem(2, 2, 8, 0, 0);
    ASSERT_TRUE(AddPackItem(&writer, 1, item.data(), uint32_t(item.size())));
    AbortPack(&writer);
    EXPECT_EQ(ReadBytes(path), old);
    EXPECT_FALSE(std::filesystem::exists(path + ".tmp"));
}

TEST(PackWriter, BmpFileBecomesItemWithColourCountAndImageSizeSet) {
    // A BMP that leaves biClrUsed and biSizeImage at 0, as many painting programs write them.
    auto bmp = MakeBmp(6, 4, 8, 256, [](int32_t x, int32_t y) { return uint32_t(x * 10 + y); });
    PutLE<uint32_t>(bmp, 14 + 20, 0);
    PutLE<uint32_t>(bmp, 14 + 32, 0);
    std::vector<uint8_t> item;
    ASSERT_TRUE(BmpBytesToPackItem(bmp, &item));
    DibHeader h;
    std::memcpy(&h, item.data(), 40);
    EXPECT_EQ(h.biClrUsed, 256u);
    EXPECT_EQ(h.biSizeImage, 8u * 4u);
    EXPECT_EQ(item.size(), 40u + 1024u + 32u);
    EXPECT_EQ(0, std::memcmp(item.data() + 40 + 1024, bmp.data() + 54 + 1024, 32));
}

TEST(PackWriter, CompressedOrTruncatedBmpIsRefused) {
    std::vector<uint8_t> item;
    auto rle = MakeBmp(4, 4, 8, 256, [](int32_t, int32_t) { return 1u; }, 1);
    EXPECT_FALSE(BmpBytesToPackItem(rle, &item));
    auto cut = MakeBmp(4, 4, 24, 0, [](int32_t, int32_t) { return 1u; });
    cut.resize(cut.size() - 1);
    EXPECT_FALSE(BmpBytesToPackItem(cut, &item));
    EXPECT_FALSE(BmpBytesToPackItem({'B', 'M'}, &item));
}

#ifdef TAVIREL_RFPACK
namespace {

int RunTool(const std::string& command) { return std::system((command + " >/dev/null 2>&1").c_str()); }

std::string Capture(const std::string& command, const std::string& outPath) {
    std::system((command + " >" + outPath + " 2>/dev/null").c_str());
    std::ifstream in(outPath);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

}  // namespace

TEST(Rfpack, BuildListAndExtractRoundTrip) {
    ScratchFolder folder;
    auto a = MakeBmp(76, 78, 24, 0, [](int32_t x, int32_t y) { return uint32_t(x * 3 + y * 5000); });
    auto b = MakeBmp(100, 100, 8, 256, [](int32_t x, int32_t y) { return uint32_t((x ^ y) & 0xFF); });
    ASSERT_TRUE(WriteBytes(folder.File("a.bmp"), a));
    ASSERT_TRUE(WriteBytes(folder.File("b.bmp"), b));
    ASSERT_TRUE(WriteBytes(folder.File("list.txt"), {}));
    {
        std::ofstream list(folder.File("list.txt"));
        list << "# two items\n122 a.bmp\n\n6000 b.bmp\n";
    }
    std::string pack = folder.File("Tavirel.rf");
    ASSERT_EQ(RunTool(std::string(TAVIREL_RFPACK) + " build " + pack + " " + folder.File("list.txt")), 0);
    std::string listing = Capture(std::string(TAVIREL_RFPACK) + " list " + pack, folder.File("out.txt"));
    EXPECT_NE(listing.find("122 "), std::string::npos);
    EXPECT_NE(listing.find(" 76 78 24 0"), std::string::npos);
    EXPECT_NE(listing.find("6000 "), std::string::npos);
    EXPECT_NE(listing.find(" 100 100 8 256"), std::string::npos);

    ASSERT_EQ(RunTool(std::string(TAVIREL_RFPACK) + " extract " + pack + " 122 " + folder.File("a2.bmp")), 0);
    ASSERT_EQ(RunTool(std::string(TAVIREL_RFPACK) + " extract " + pack + " 6000 " + folder.File("b2.bmp")), 0);
    auto a2 = ReadBytes(folder.File("a2.bmp")), b2 = ReadBytes(folder.File("b2.bmp"));
    ASSERT_EQ(a2.size(), a.size());
    EXPECT_EQ(0, std::memcmp(a2.data() + 54, a.data() + 54, a.size() - 54));
    ASSERT_EQ(b2.size(), b.size());
    EXPECT_EQ(0, std::memcmp(b2.data() + 54, b.data() + 54, b.size() - 54));
    EXPECT_NE(RunTool(std::string(TAVIREL_RFPACK) + " extract " + pack + " 999 " + folder.File("c.bmp")), 0);
}

TEST(Rfpack, TwoEntriesOfOneIdLoadTheFirst) {
    ScratchFolder folder;
    ASSERT_TRUE(WriteBytes(folder.File("first.bmp"), MakeBmp(4, 4, 24, 0, [](int32_t, int32_t) { return 0x112233u; })));
    ASSERT_TRUE(WriteBytes(folder.File("second.bmp"), MakeBmp(8, 8, 24, 0, [](int32_t, int32_t) { return 0x445566u; })));
    {
        std::ofstream list(folder.File("list.txt"));
        list << "200 first.bmp\n200 second.bmp\n";
    }
    std::string pack = folder.File("Tavirel.rf");
    ASSERT_EQ(RunTool(std::string(TAVIREL_RFPACK) + " build " + pack + " " + folder.File("list.txt")), 0);
    ResourcePack opened;
    ASSERT_TRUE(OpenPack(&opened, pack.c_str()));
    EXPECT_EQ(opened.count, 2u);
    uint8_t* dib = LoadPackItem(&opened, 200);
    ASSERT_NE(dib, nullptr);
    EXPECT_EQ(DibHeaderOf(dib)->biWidth, 4);
    EXPECT_EQ(DibPixels(dib)[0], 0x33);
    FreePackedDib(dib);
    ClosePack(&opened);
}

TEST(Rfpack, BadListLineFailsAndWritesNoPack) {
    ScratchFolder folder;
    {
        std::ofstream list(folder.File("list.txt"));
        list << "200 missing.bmp\n";
    }
    std::string pack = folder.File("Tavirel.rf");
    EXPECT_NE(RunTool(std::string(TAVIREL_RFPACK) + " build " + pack + " " + folder.File("list.txt")), 0);
    EXPECT_FALSE(std::filesystem::exists(pack));
    EXPECT_FALSE(std::filesystem::exists(pack + ".tmp"));
}
#endif
