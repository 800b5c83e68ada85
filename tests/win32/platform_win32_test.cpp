// The Win32 side of the platform seam: files, folder search, replacing files, UTC time, block counts.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "app/platform.h"
#include "win32_support.h"

namespace {

bool CollectName(void* context, const char* name) {
    static_cast<std::vector<std::string>*>(context)->push_back(name);
    return true;
}

std::vector<std::string> List(const std::string& pattern, bool* ok) {
    std::vector<std::string> names;
    *ok = SysListFolder(pattern.c_str(), CollectName, &names);
    std::sort(names.begin(), names.end());
    return names;
}

std::string Join(const std::vector<std::string>& names) {
    std::string all;
    for (const auto& n : names) all += (all.empty() ? "" : " ") + n;
    return all;
}

}  // namespace

TEST(Platform, WritesThenReadsSeeksAndSizesAFile) {
    TempFolder folder;
    std::string path = folder.File("data.bin");
    std::string bytes;
    for (int i = 0; i < 300; ++i) bytes += char(i * 7 + 1);

    SysFile* out = SysOpenFile(path.c_str(), SYS_OPEN_CREATE);
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(SysWriteFile(out, bytes.data(), 100));
    EXPECT_TRUE(SysWriteFile(out, bytes.data() + 100, 200));
    EXPECT_EQ(SysFileSize(out), 300);
    SysCloseFile(out);
    EXPECT_EQ(ReadFileBytes(path), bytes);

    SysFile* in = SysOpenFile(path.c_str(), SYS_OPEN_READ);
    ASSERT_NE(in, nullptr);
    EXPECT_EQ(SysFileSize(in), 300);
    char buffer[400];
    uint32_t got = 99;
    ASSERT_TRUE(SysReadFile(in, buffer, 10, &got));
    EXPECT_EQ(got, 10u);
    EXPECT_EQ(std::string(buffer, 10), bytes.substr(0, 10));

    int64_t position = -1;
    ASSERT_TRUE(SysSeekFile(in, 5, SYS_SEEK_CURRENT, &position));
    EXPECT_EQ(position, 15);
    ASSERT_TRUE(SysReadFile(in, buffer, 4, &got));
    EXPECT_EQ(std::string(buffer, 4), bytes.substr(15, 4));

    ASSERT_TRUE(SysSeekFile(in, -4, SYS_SEEK_END, &position));
    EXPECT_EQ(position, 296);
    // A read across the end is short, not an error.
    ASSERT_TRUE(SysReadFile(in, buffer, 50, &got));
    EXPECT_EQ(got, 4u);
    EXPECT_EQ(std::string(buffer, 4), bytes.substr(296, 4));
    ASSERT_TRUE(SysReadFile(in, buffer, 50, &got));
    EXPECT_EQ(got, 0u);

    ASSERT_TRUE(SysSeekFile(in, 123, SYS_SEEK_BEGIN, &position));
    EXPECT_EQ(position, 123);
    ASSERT_TRUE(SysSeekFile(in, 0, SYS_SEEK_CURRENT, nullptr));
    ASSERT_TRUE(SysReadFile(in, buffer, 1, nullptr));
    EXPECT_EQ(buffer[0], bytes[123]);
    EXPECT_FALSE(SysSeekFile(in, -1, SYS_SEEK_BEGIN, &position));
    SysCloseFile(in);
}

TEST(Platform, CreateTruncatesAnExistingFile) {
    TempFolder folder;
    std::string path = folder.File("old.txt");
    ASSERT_TRUE(WriteFileBytes(path, "a longer old content"));
    SysFile* out = SysOpenFile(path.c_str(), SYS_OPEN_CREATE);
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(SysWriteFile(out, "new", 3));
    SysCloseFile(out);
    EXPECT_EQ(ReadFileBytes(path), "new");
}

TEST(Platform, OpeningWhatIsNotThereFails) {
    TempFolder folder;
    EXPECT_EQ(SysOpenFile(folder.File("missing.rf").c_str(), SYS_OPEN_READ), nullptr);
    EXPECT_EQ(SysOpenFile(folder.File("missing.rf").c_str(), SYS_OPEN_READ_EXCLUSIVE), nullptr);
    EXPECT_EQ(SysOpenFile(folder.File("no\\such\\folder.txt").c_str(), SYS_OPEN_CREATE), nullptr);
    EXPECT_EQ(SysOpenFile(nullptr, SYS_OPEN_READ), nullptr);
    // A folder is not a file.
    EXPECT_EQ(SysOpenFile(folder.path.c_str(), SYS_OPEN_READ), nullptr);
    EXPECT_FALSE(SysPathExists(folder.File("missing.rf").c_str()));
    EXPECT_EQ(SysFileSize(nullptr), -1);
    uint32_t got = 7;
    char byte;
    EXPECT_FALSE(SysReadFile(nullptr, &byte, 1, &got));
    EXPECT_EQ(got, 0u);
    EXPECT_FALSE(SysWriteFile(nullptr, &byte, 1));
    EXPECT_FALSE(SysSeekFile(nullptr, 0, SYS_SEEK_BEGIN, nullptr));
    SysCloseFile(nullptr);
}

TEST(Platform, ExclusiveOpenRefusesASecondOpen) {
    TempFolder folder;
    std::string path = folder.File("Tavirel.rf");
    ASSERT_TRUE(WriteFileBytes(path, "pack"));

    SysFile* held = SysOpenFile(path.c_str(), SYS_OPEN_READ_EXCLUSIVE);
    ASSERT_NE(held, nullptr);
    SysFile* second = SysOpenFile(path.c_str(), SYS_OPEN_READ_EXCLUSIVE);
    EXPECT_EQ(second, nullptr);
    SysFile* reader = SysOpenFile(path.c_str(), SYS_OPEN_READ);
    EXPECT_EQ(reader, nullptr);
    // Nor can another program's plain open get at it.
    HANDLE raw = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                             0, nullptr);
    EXPECT_EQ(raw, INVALID_HANDLE_VALUE);
    if (raw != INVALID_HANDLE_VALUE) CloseHandle(raw);
    SysCloseFile(second);
    SysCloseFile(reader);
    SysCloseFile(held);

    // Once closed, it opens again.
    held = SysOpenFile(path.c_str(), SYS_OPEN_READ_EXCLUSIVE);
    EXPECT_NE(held, nullptr);
    SysCloseFile(held);
}

TEST(Platform, SharedReadsOpenTogether) {
    TempFolder folder;
    std::string path = folder.File("photo.bmp");
    ASSERT_TRUE(WriteFileBytes(path, "BM"));
    SysFile* a = SysOpenFile(path.c_str(), SYS_OPEN_READ);
    SysFile* b = SysOpenFile(path.c_str(), SYS_OPEN_READ);
    EXPECT_NE(a, nullptr);
    EXPECT_NE(b, nullptr);
    // A shared reader still keeps an exclusive open out.
    SysFile* exclusive = SysOpenFile(path.c_str(), SYS_OPEN_READ_EXCLUSIVE);
    EXPECT_EQ(exclusive, nullptr);
    SysCloseFile(exclusive);
    SysCloseFile(a);
    SysCloseFile(b);
}

TEST(Platform, ListFolderMatchesTheWildcardIgnoringCase) {
    TempFolder folder;
    for (const char* name : {"a.bmp", "B.BMP", "c.txt", "photo.Bmp", "d.bm", "e.bmp.txt", "f.bmpx"})
        ASSERT_TRUE(WriteFileBytes(folder.File(name), "x"));
    ASSERT_TRUE(CreateDirectoryA(folder.File("sub").c_str(), nullptr));

    bool ok = false;
    std::vector<std::string> names = List(folder.File("*.bmp"), &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Join(names), "B.BMP a.bmp photo.Bmp");

    names = List(folder.File("?.txt"), &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Join(names), "c.txt");

    names = List(folder.File("*.TXT"), &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Join(names), "c.txt e.bmp.txt");

    names = List(folder.File("photo.bmp"), &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Join(names), "photo.Bmp");

    // Folders are listed like files.
    names = List(folder.File("s*"), &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(Join(names), "sub");

    names = List(folder.File("*.*"), &ok);
    EXPECT_TRUE(ok);
    names.erase(std::remove_if(names.begin(), names.end(), [](const std::string& n) { return n == "." || n == ".."; }),
                names.end());
    EXPECT_EQ(Join(names), "B.BMP a.bmp c.txt d.bm e.bmp.txt f.bmpx photo.Bmp sub");
}

TEST(Platform, ListFolderFailsWhenNothingMatches) {
    TempFolder folder;
    ASSERT_TRUE(WriteFileBytes(folder.File("a.bmp"), "x"));
    bool ok = true;
    std::vector<std::string> names = List(folder.File("*.epf"), &ok);
    EXPECT_FALSE(ok);
    EXPECT_TRUE(names.empty());

    // Only a name whose 8.3 alias would match ("X~1.EPF"): still nothing.
    ASSERT_TRUE(WriteFileBytes(folder.File("x.epfold"), "x"));
    names = List(folder.File("*.epf"), &ok);
    EXPECT_FALSE(ok);
    EXPECT_TRUE(names.empty()) << Join(names);

    names = List(folder.File("missing\\*.bmp"), &ok);
    EXPECT_FALSE(ok);
    EXPECT_TRUE(names.empty());

    EXPECT_FALSE(SysListFolder(nullptr, CollectName, &names));
    EXPECT_FALSE(SysListFolder(folder.File("*.bmp").c_str(), nullptr, nullptr));
}

TEST(Platform, ListFolderStopsWhenTheVisitorSaysSo) {
    TempFolder folder;
    for (const char* name : {"1.epf", "2.epf", "3.epf", "4.epf"}) ASSERT_TRUE(WriteFileBytes(folder.File(name), "x"));
    int visits = 0;
    auto stopAtTwo = [](void* context, const char*) { return ++*static_cast<int*>(context) < 2; };
    EXPECT_TRUE(SysListFolder(folder.File("*.epf").c_str(), stopAtTwo, &visits));
    EXPECT_EQ(visits, 2);
}

TEST(Platform, ReplaceFilePutsTheNewFileInPlace) {
    TempFolder folder;
    std::string target = folder.File("Records.qmr"), aside = folder.File("Records.qmr.tmp");
    ASSERT_TRUE(WriteFileBytes(target, "old records"));
    ASSERT_TRUE(WriteFileBytes(aside, "new"));
    EXPECT_TRUE(SysReplaceFile(aside.c_str(), target.c_str()));
    EXPECT_EQ(ReadFileBytes(target), "new");
    EXPECT_FALSE(SysPathExists(aside.c_str()));

    // Also when nothing stood there yet.
    std::string fresh = folder.File("fresh.qmr");
    ASSERT_TRUE(WriteFileBytes(aside, "first"));
    EXPECT_TRUE(SysReplaceFile(aside.c_str(), fresh.c_str()));
    EXPECT_EQ(ReadFileBytes(fresh), "first");

    // A missing source fails and leaves the target alone.
    EXPECT_FALSE(SysReplaceFile(folder.File("gone.tmp").c_str(), target.c_str()));
    EXPECT_EQ(ReadFileBytes(target), "new");
}

TEST(Platform, DeleteFileAndPathExists) {
    TempFolder folder;
    std::string path = folder.File("doomed.epf");
    ASSERT_TRUE(WriteFileBytes(path, "x"));
    EXPECT_TRUE(SysPathExists(path.c_str()));
    EXPECT_TRUE(SysPathExists(folder.path.c_str()));
    EXPECT_TRUE(SysDeleteFile(path.c_str()));
    EXPECT_FALSE(SysPathExists(path.c_str()));
    EXPECT_FALSE(SysDeleteFile(path.c_str()));
}

TEST(Platform, UtcTimeIsSane) {
    SysTime t;
    std::memset(&t, 0xFF, sizeof t);
    time_t before = std::time(nullptr);
    SysUtcTime(&t);
    time_t after = std::time(nullptr);
    EXPECT_GE(t.year, 2024);
    EXPECT_LT(t.year, 2200);
    EXPECT_GE(t.month, 1);
    EXPECT_LE(t.month, 12);
    EXPECT_GE(t.day, 1);
    EXPECT_LE(t.day, 31);
    EXPECT_LE(t.hour, 23);
    EXPECT_LE(t.minute, 59);
    EXPECT_LE(t.second, 59);
    EXPECT_LE(t.millisecond, 999);

    // The same instant as the C library's clock, which is UTC, not local time.
    struct tm parts = {};
    parts.tm_year = t.year - 1900;
    parts.tm_mon = t.month - 1;
    parts.tm_mday = t.day;
    parts.tm_hour = t.hour;
    parts.tm_min = t.minute;
    parts.tm_sec = t.second;
    time_t seen = _mkgmtime(&parts);
    EXPECT_GE(seen, before - 1);
    EXPECT_LE(seen, after + 1);

    // Milliseconds move: within a couple of seconds two readings differ.
    SysTime later = t;
    for (int i = 0; i < 200 && std::memcmp(&later, &t, sizeof t) == 0; ++i) {
        Sleep(5);
        SysUtcTime(&later);
    }
    EXPECT_NE(std::memcmp(&later, &t, sizeof t), 0);
}

TEST(Platform, BlocksAreCountedUntilFreed) {
    size_t baseline = SysLiveBlocks();
    void* a = SysAllocBlock(1064);
    void* b = SysAllocBlock(0);
    ASSERT_NE(a, nullptr);
    ASSERT_NE(b, nullptr);
    EXPECT_NE(a, b);
    std::memset(a, 0x5A, 1064);
    EXPECT_EQ(SysLiveBlocks(), baseline + 2);
    SysFreeBlock(a);
    EXPECT_EQ(SysLiveBlocks(), baseline + 1);
    SysFreeBlock(nullptr);
    EXPECT_EQ(SysLiveBlocks(), baseline + 1);
    SysFreeBlock(b);
    EXPECT_EQ(SysLiveBlocks(), baseline);
}
