// The file name list of a wildcard search.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "gfx/file_list.h"
#include "test_support.h"

namespace {

std::set<std::string> AllNames(const FileNameList& list, bool strip) {
    std::set<std::string> names;
    for (int32_t i = 0; i < list.count; ++i) {
        char name[300];
        EXPECT_NE(FileNameAt(&list, i, strip, name, sizeof name), 0);
        names.insert(name);
    }
    return names;
}

}  // namespace

TEST(FileNameList, KeepsEveryMatchingNameAndStripsExtensions) {
    ScratchFolder folder;
    for (const char* name : {"Pic01.bmp", "pic02.BMP", "notes.txt", "Pic03.bmp"}) WriteBytes(folder.File(name), {1});
    FileNameList list;
    InitFileNameList(&list);
    ASSERT_TRUE(FillFileNameList(&list, folder.File("*.bmp").c_str()));
    EXPECT_EQ(list.count, 3);
    EXPECT_EQ(AllNames(list, false), (std::set<std::string>{"Pic01.bmp", "pic02.BMP", "Pic03.bmp"}));
    EXPECT_EQ(AllNames(list, true), (std::set<std::string>{"Pic01", "pic02", "Pic03"}));
    char name[32];
    EXPECT_EQ(FileNameAt(&list, 0, false, name, sizeof name), 11);  // "Pic0N.bmp" is 9 characters: L = 11
    FreeFileNameList(&list);
}

TEST(FileNameList, RecordsGrowPastTheFirstFiftyBytes) {
    ScratchFolder folder;
    for (int i = 0; i < 40; ++i) WriteBytes(folder.File("image_number_" + std::to_string(100 + i) + ".bmp"), {1});
    FileNameList list;
    InitFileNameList(&list);
    ASSERT_TRUE(FillFileNameList(&list, folder.File("*.bmp").c_str()));
    EXPECT_EQ(list.count, 40);
    EXPECT_GE(list.capacity, 40u * 22u);
    EXPECT_EQ(list.capacity % 50, 0u);
    auto names = AllNames(list, true);
    EXPECT_EQ(names.size(), 40u);
    EXPECT_TRUE(names.count("image_number_139"));
    FreeFileNameList(&list);
}

TEST(FileNameList, NothingMatchingFails) {
    ScratchFolder folder;
    WriteBytes(folder.File("a.txt"), {1});
    FileNameList list;
    InitFileNameList(&list);
    EXPECT_FALSE(FillFileNameList(&list, folder.File("*.bmp").c_str()));
    EXPECT_FALSE(list.filled);
    EXPECT_FALSE(FillFileNameList(&list, folder.File("missing\\*.bmp").c_str()));
    FreeFileNameList(&list);
}

TEST(FileNameList, FoldersAreNotFilteredOut) {
    ScratchFolder folder;
    std::filesystem::create_directory(folder.path / "Album.bmp");
    WriteBytes(folder.File("x.bmp"), {1});
    FileNameList list;
    InitFileNameList(&list);
    ASSERT_TRUE(FillFileNameList(&list, folder.File("*.bmp").c_str()));
    EXPECT_EQ(AllNames(list, false), (std::set<std::string>{"Album.bmp", "x.bmp"}));
    FreeFileNameList(&list);
}

TEST(FileNameList, NameRefusesBadIndexSmallBufferOrUnfilledList) {
    ScratchFolder folder;
    WriteBytes(folder.File("only.bmp"), {1});
    FileNameList list;
    InitFileNameList(&list);
    char name[16] = "junk";
    EXPECT_EQ(FileNameAt(&list, 0, false, name, sizeof name), 0);  // not filled
    EXPECT_STREQ(name, "");
    ASSERT_TRUE(FillFileNameList(&list, folder.File("*.bmp").c_str()));
    EXPECT_EQ(FileNameAt(&list, 1, false, name, sizeof name), 0);
    EXPECT_EQ(FileNameAt(&list, -1, false, name, sizeof name), 0);
    EXPECT_EQ(FileNameAt(&list, 0, false, nullptr, 16), 0);
    EXPECT_EQ(FileNameAt(&list, 0, false, name, 1), 0);
    // A short buffer takes size - 1 characters.
    EXPECT_EQ(FileNameAt(&list, 0, false, name, 4), 10);
    EXPECT_STREQ(name, "onl");
    FreeFileNameList(&list);
}

#ifndef _WIN32
// Windows paths stop at 260 characters, so names this long are only made on the native side.
TEST(FileNameList, NameOf254CharactersIsAccepted) {
    ScratchFolder folder;
    std::string longName = std::string(250, 'n') + ".bmp";
    ASSERT_EQ(longName.size(), 254u);
    ASSERT_TRUE(WriteBytes(folder.File(longName), {1}));
    ASSERT_TRUE(WriteBytes(folder.File("z.bmp"), {1}));
    FileNameList list;
    InitFileNameList(&list);
    ASSERT_TRUE(FillFileNameList(&list, folder.File("*.bmp").c_str()));
    EXPECT_EQ(list.count, 2);
    std::set<std::string> names;
    for (int32_t i = 0; i < list.count; ++i) {
        char name[300];
        uint8_t length = FileNameAt(&list, i, false, name, sizeof name);
        names.insert(name);
        // 254 + 2 does not fit the length byte: it wraps to 0, while the name itself reads back whole.
        EXPECT_EQ(length, std::string(name) == longName ? 0 : 7);
    }
    EXPECT_EQ(names, (std::set<std::string>{longName, "z.bmp"}));
    FreeFileNameList(&list);
}

TEST(FileNameList, NameOf255CharactersFailsTheWholeList) {
    ScratchFolder folder;
    std::string longName = std::string(251, 'n') + ".bmp";
    ASSERT_EQ(longName.size(), 255u);
    ASSERT_TRUE(WriteBytes(folder.File(longName), {1}));
    ASSERT_TRUE(WriteBytes(folder.File("z.bmp"), {1}));
    FileNameList list;
    InitFileNameList(&list);
    EXPECT_FALSE(FillFileNameList(&list, folder.File("*.bmp").c_str()));
    EXPECT_EQ(list.count, 0);
    EXPECT_FALSE(list.filled);
    FreeFileNameList(&list);
}
#endif
