// The records file: its 296 bytes, the empty table, ranking and ties, the insertion and its name bytes,
// damaged files, and writes that fail part-way.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "app/platform.h"
#include "extras/records.h"
#include "test_support.h"

namespace {

constexpr size_t kFileSize = 296;

std::string NameBytes(const std::vector<uint8_t>& file, int i) {
    const char* at = reinterpret_cast<const char*>(file.data()) + 16 + 28 * i;
    return std::string(at, 24);
}

int32_t ScoreAt(const std::vector<uint8_t>& file, int i) {
    int32_t value;
    std::memcpy(&value, file.data() + 16 + 28 * i + 24, 4);
    return value;
}

// 23 dashes and the NUL: an empty entry's name field.
std::string EmptyName() { return std::string(23, '-') + std::string(1, '\0'); }

// A name field: the given bytes, then zeros up to 24.
std::string Field(const std::string& bytes) {
    std::string field = bytes;
    field.resize(24, '\0');
    return field;
}

// The bytes of a records file holding these ten (name field, score) rows, built here by hand.
std::vector<uint8_t> TableBytes(const std::vector<std::pair<std::string, int32_t>>& rows, int32_t count = 10) {
    std::vector<uint8_t> bytes(kFileSize, 0);
    std::memcpy(bytes.data(), "QmRecords", 9);
    PutLE<int32_t>(bytes, 12, count);
    for (size_t i = 0; i < rows.size() && i < 10; ++i) {
        std::string field = Field(rows[i].first);
        std::memcpy(bytes.data() + 16 + 28 * i, field.data(), 24);
        PutLE<int32_t>(bytes, 16 + 28 * i + 24, rows[i].second);
    }
    return bytes;
}

// Ten players "Player0" .. "Player9" with scores 1000, 900, .., 100.
std::vector<std::pair<std::string, int32_t>> TenPlayers() {
    std::vector<std::pair<std::string, int32_t>> rows;
    for (int i = 0; i < 10; ++i) rows.emplace_back("Player" + std::to_string(i), 1000 - 100 * i);
    return rows;
}

struct Records : ::testing::Test {
    ScratchFolder folder;
    std::string path = folder.File("Records.qmr");
    RecordsHeader header;
    RecordEntry entries[kRecordCount];

    void TearDown() override { SysSetFaultPlan(nullptr); }

    void WriteTable(const std::vector<uint8_t>& bytes) { ASSERT_TRUE(WriteBytes(path, bytes)); }
    std::vector<uint8_t> File() const { return ReadBytes(path); }
    bool Exists() const { return SysPathExists(path.c_str()); }
    bool AsideExists() const { return SysPathExists((path + ".new").c_str()); }

    // What storing a record does with the file: read it afresh, place the record, write it back.
    bool Store(int32_t score, const char* name) {
        LoadRecords(path.c_str(), &header, entries);
        int32_t rank = RankForScore(entries, score);
        if (!InsertRecord(entries, rank, score, name)) return false;
        return WriteRecords(path.c_str(), &header, entries);
    }
    int32_t RankInFile(int32_t score) {
        LoadRecords(path.c_str(), &header, entries);
        return RankForScore(entries, score);
    }
};

// ---- The empty table ----

TEST_F(Records, DefaultTableIsTenEntriesOfTwentyThreeDashesAndZero) {
    DefaultRecords(&header, entries);
    ASSERT_TRUE(WriteRecords(path.c_str(), &header, entries));
    std::vector<uint8_t> file = File();
    ASSERT_EQ(file.size(), kFileSize);
    EXPECT_EQ(std::string(file.begin(), file.begin() + 9), "QmRecords");
    EXPECT_EQ(file[9], 0);
    EXPECT_EQ(file[10], 0);
    EXPECT_EQ(file[11], 0);
    int32_t count;
    std::memcpy(&count, file.data() + 12, 4);
    EXPECT_EQ(count, 10);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(NameBytes(file, i), EmptyName()) << "entry " << i;
        EXPECT_EQ(ScoreAt(file, i), 0) << "entry " << i;
    }
}

TEST_F(Records, MissingFileGivesTheEmptyTableAndCreatesNothing) {
    EXPECT_FALSE(LoadRecords(path.c_str(), &header, entries));
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(std::string(entries[i].name, 24), EmptyName());
        EXPECT_EQ(entries[i].score, 0);
    }
    EXPECT_FALSE(Exists());
}

TEST_F(Records, WrittenTableLoadsBackUnchanged) {
    WriteTable(TableBytes(TenPlayers()));
    ASSERT_TRUE(LoadRecords(path.c_str(), &header, entries));
    ASSERT_TRUE(WriteRecords(path.c_str(), &header, entries));
    EXPECT_EQ(File(), TableBytes(TenPlayers()));
    for (int i = 0; i < 10; ++i) EXPECT_EQ(entries[i].score, 1000 - 100 * i);
}

// ---- Ranking ----

TEST_F(Records, AnyPositiveScoreRanksFirstWithoutAFile) {
    EXPECT_EQ(RankInFile(1), 0);
    EXPECT_EQ(RankInFile(INT_MAX), 0);
}

TEST_F(Records, ZeroOrNegativeScoreNeverRanksAgainstTheEmptyTable) {
    EXPECT_EQ(RankInFile(0), 10);
    EXPECT_EQ(RankInFile(-1), 10);
    EXPECT_EQ(RankInFile(INT_MIN), 10);
}

TEST_F(Records, ScoreEqualToTheTenthMakesNoRecord) {
    WriteTable(TableBytes(TenPlayers()));
    EXPECT_EQ(RankInFile(100), 10);
    EXPECT_EQ(RankInFile(99), 10);
    EXPECT_EQ(RankInFile(101), 9);
}

TEST_F(Records, ScoreEqualToAnEntryRanksJustBelowIt) {
    WriteTable(TableBytes(TenPlayers()));
    for (int k = 0; k < 9; ++k) EXPECT_EQ(RankInFile(1000 - 100 * k), k + 1) << "equal to entry " << k;
}

TEST_F(Records, BestScoreRanksAboveEveryEntry) {
    WriteTable(TableBytes(TenPlayers()));
    EXPECT_EQ(RankInFile(1001), 0);
    EXPECT_EQ(RankInFile(950), 1);
}

TEST_F(Records, ScoresCompareSigned) {
    std::vector<std::pair<std::string, int32_t>> rows;
    for (int i = 0; i < 10; ++i) rows.emplace_back("Low", -100 - i);
    WriteTable(TableBytes(rows));
    EXPECT_EQ(RankInFile(-50), 0);
    EXPECT_EQ(RankInFile(-105), 6);
    EXPECT_EQ(RankInFile(-200), 10);
}

// ---- Storing ----

TEST_F(Records, RecordStoredAtRankOneMovesEveryOtherDown) {
    WriteTable(TableBytes(TenPlayers()));
    ASSERT_TRUE(Store(5000, "Ada"));
    std::vector<uint8_t> file = File();
    ASSERT_EQ(file.size(), kFileSize);
    // The new name lies over the start of the field that entry 0 held; its old bytes stay after the NUL.
    EXPECT_EQ(NameBytes(file, 0), std::string("Ada\0", 4) + Field("Player0").substr(4));
    EXPECT_EQ(ScoreAt(file, 0), 5000);
    for (int i = 1; i < 10; ++i) {
        EXPECT_EQ(NameBytes(file, i), Field("Player" + std::to_string(i - 1))) << "entry " << i;
        EXPECT_EQ(ScoreAt(file, i), 1000 - 100 * (i - 1)) << "entry " << i;
    }
    EXPECT_EQ(std::string(file.begin(), file.begin() + 9), "QmRecords");
}

TEST_F(Records, RecordStoredAtRankTenReplacesOnlyTheTenth) {
    WriteTable(TableBytes(TenPlayers()));
    ASSERT_TRUE(Store(150, "Zed"));
    std::vector<uint8_t> file = File();
    ASSERT_EQ(file.size(), kFileSize);
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(NameBytes(file, i), Field("Player" + std::to_string(i))) << "entry " << i;
        EXPECT_EQ(ScoreAt(file, i), 1000 - 100 * i) << "entry " << i;
    }
    EXPECT_EQ(NameBytes(file, 9), std::string("Zed\0", 4) + Field("Player9").substr(4));
    EXPECT_EQ(ScoreAt(file, 9), 150);
}

TEST_F(Records, TieIsStoredBelowTheOlderRecord) {
    WriteTable(TableBytes(TenPlayers()));
    ASSERT_TRUE(Store(700, "Newcomer"));
    std::vector<uint8_t> file = File();
    EXPECT_EQ(NameBytes(file, 3), Field("Player3"));
    EXPECT_EQ(ScoreAt(file, 3), 700);
    EXPECT_EQ(NameBytes(file, 4).substr(0, 9), std::string("Newcomer\0", 9));
    EXPECT_EQ(ScoreAt(file, 4), 700);
    EXPECT_EQ(NameBytes(file, 5), Field("Player4"));
    EXPECT_EQ(ScoreAt(file, 5), 600);
    EXPECT_EQ(NameBytes(file, 9), Field("Player8"));
}

TEST_F(Records, TwentyThreeCharacterNameFillsTheFieldWithItsNul) {
    const std::string name = "ABCDEFGHIJKLMNOPQRSTUVW";
    ASSERT_EQ(name.size(), 23u);
    ASSERT_TRUE(Store(10, name.c_str()));
    std::vector<uint8_t> file = File();
    EXPECT_EQ(NameBytes(file, 0), name + std::string(1, '\0'));
    EXPECT_EQ(ScoreAt(file, 0), 10);
    for (int i = 1; i < 10; ++i) EXPECT_EQ(NameBytes(file, i), EmptyName()) << "entry " << i;
}

TEST_F(Records, LongerNameIsCutToTwentyThreeCharacters) {
    ASSERT_TRUE(Store(10, "ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
    EXPECT_EQ(NameBytes(File(), 0), std::string("ABCDEFGHIJKLMNOPQRSTUVW") + std::string(1, '\0'));
}

TEST_F(Records, ShorterNameOverALongerOneKeepsTheOldBytesAfterItsNul) {
    std::vector<std::pair<std::string, int32_t>> rows = TenPlayers();
    rows[0].first = "Maximiliana Fernandez";
    WriteTable(TableBytes(rows));
    ASSERT_TRUE(Store(2000, "Bo"));
    std::vector<uint8_t> file = File();
    EXPECT_EQ(NameBytes(file, 0), std::string("Bo\0", 3) + Field("Maximiliana Fernandez").substr(3));
    EXPECT_EQ(NameBytes(file, 1), Field("Maximiliana Fernandez"));
}

TEST_F(Records, ShownNameStopsAtTheNul) {
    std::vector<std::pair<std::string, int32_t>> rows = TenPlayers();
    rows[0].first = std::string("Bo\0imiliana Fernandez", 21);
    WriteTable(TableBytes(rows));
    ASSERT_TRUE(LoadRecords(path.c_str(), &header, entries));
    char text[kRecordNameBytes + 1];
    RecordNameText(entries[0], text);
    EXPECT_STREQ(text, "Bo");
    RecordNameText(entries[1], text);
    EXPECT_STREQ(text, "Player1");
}

TEST_F(Records, NameWithoutANulIsShownToTheFieldsEnd) {
    std::vector<std::pair<std::string, int32_t>> rows = TenPlayers();
    rows[2].first = std::string(24, 'x');
    WriteTable(TableBytes(rows));
    ASSERT_TRUE(LoadRecords(path.c_str(), &header, entries));
    char text[kRecordNameBytes + 1];
    RecordNameText(entries[2], text);
    EXPECT_EQ(std::string(text), std::string(24, 'x'));
}

TEST_F(Records, InsertionOutsideTheTableChangesNothing) {
    DefaultRecords(&header, entries);
    RecordEntry before[kRecordCount];
    std::memcpy(before, entries, sizeof before);
    EXPECT_FALSE(InsertRecord(entries, 10, 5, "Nobody"));
    EXPECT_FALSE(InsertRecord(entries, -1, 5, "Nobody"));
    EXPECT_EQ(std::memcmp(before, entries, sizeof before), 0);
}

TEST_F(Records, WipedFileIsRecreatedByTheNextRecordWithNineEmptyEntries) {
    WriteTable(TableBytes(TenPlayers()));
    ASSERT_TRUE(SysDeleteFile(path.c_str()));
    ASSERT_TRUE(Store(42, "Fresh"));
    std::vector<uint8_t> file = File();
    ASSERT_EQ(file.size(), kFileSize);
    EXPECT_EQ(NameBytes(file, 0), std::string("Fresh\0", 6) + EmptyName().substr(6));
    EXPECT_EQ(ScoreAt(file, 0), 42);
    for (int i = 1; i < 10; ++i) {
        EXPECT_EQ(NameBytes(file, i), EmptyName()) << "entry " << i;
        EXPECT_EQ(ScoreAt(file, i), 0) << "entry " << i;
    }
}

TEST_F(Records, HeaderUnusedBytesAreWrittenAsZero) {
    std::vector<uint8_t> bytes = TableBytes(TenPlayers());
    bytes[9] = 0xAA;
    bytes[10] = 0xBB;
    bytes[11] = 0xCC;
    WriteTable(bytes);
    ASSERT_TRUE(Store(5000, "High"));
    std::vector<uint8_t> file = File();
    EXPECT_EQ(file[9], 0);
    EXPECT_EQ(file[10], 0);
    EXPECT_EQ(file[11], 0);
}

// ---- Damaged and foreign files ----

TEST_F(Records, FileWithACountOtherThanTenIsDeletedOnTheNextRead) {
    for (int32_t count : {0, 9, 11, -10}) {
        WriteTable(TableBytes(TenPlayers(), count));
        EXPECT_FALSE(LoadRecords(path.c_str(), &header, entries)) << "count " << count;
        EXPECT_FALSE(Exists()) << "count " << count;
        EXPECT_EQ(std::string(entries[0].name, 24), EmptyName()) << "count " << count;
        EXPECT_EQ(entries[0].score, 0) << "count " << count;
        EXPECT_EQ(header.count, 10) << "count " << count;
    }
}

TEST_F(Records, FileShorterThanSixteenBytesIsDeletedOnTheNextRead) {
    std::vector<uint8_t> full = TableBytes(TenPlayers());
    for (size_t size : {0, 1, 12, 13, 15}) {
        WriteTable(std::vector<uint8_t>(full.begin(), full.begin() + long(size)));
        EXPECT_FALSE(LoadRecords(path.c_str(), &header, entries)) << size << " bytes";
        EXPECT_FALSE(Exists()) << size << " bytes";
        EXPECT_EQ(std::string(entries[3].name, 24), EmptyName()) << size << " bytes";
    }
}

TEST_F(Records, TagIsNotCompared) {
    std::vector<uint8_t> bytes = TableBytes(TenPlayers());
    std::memcpy(bytes.data(), "Something", 9);
    WriteTable(bytes);
    EXPECT_TRUE(LoadRecords(path.c_str(), &header, entries));
    EXPECT_TRUE(Exists());
    EXPECT_EQ(entries[0].score, 1000);
}

TEST_F(Records, EntriesPastTheEndOfAShortFileKeepTheEmptyValues) {
    std::vector<uint8_t> full = TableBytes(TenPlayers());
    // The header and two whole entries.
    WriteTable(std::vector<uint8_t>(full.begin(), full.begin() + 16 + 2 * 28));
    EXPECT_TRUE(LoadRecords(path.c_str(), &header, entries));
    EXPECT_EQ(entries[0].score, 1000);
    EXPECT_EQ(entries[1].score, 900);
    EXPECT_EQ(std::string(entries[1].name), "Player1");
    for (int i = 2; i < 10; ++i) {
        EXPECT_EQ(std::string(entries[i].name, 24), EmptyName()) << "entry " << i;
        EXPECT_EQ(entries[i].score, 0) << "entry " << i;
    }
}

TEST_F(Records, LongerFileReadsOnlyItsFirst296Bytes) {
    std::vector<uint8_t> bytes = TableBytes(TenPlayers());
    bytes.resize(1000, 0x7F);
    WriteTable(bytes);
    EXPECT_TRUE(LoadRecords(path.c_str(), &header, entries));
    EXPECT_EQ(entries[9].score, 100);
    EXPECT_EQ(std::string(entries[9].name), "Player9");
}

// ---- Score text ----

TEST_F(Records, ScoreTextIsPlainSignedDecimal) {
    char text[kScoreTextBytes];
    RecordScoreText(0, text);
    EXPECT_STREQ(text, "0");
    RecordScoreText(1234567, text);
    EXPECT_STREQ(text, "1234567");
    RecordScoreText(-42, text);
    EXPECT_STREQ(text, "-42");
    RecordScoreText(INT_MIN, text);
    EXPECT_STREQ(text, "-2147483648");
    RecordScoreText(INT_MAX, text);
    EXPECT_STREQ(text, "2147483647");
}

// ---- Failed writes ----

TEST_F(Records, FailedCreateLeavesThePreviousFileIntact) {
    WriteTable(TableBytes(TenPlayers()));
    const std::vector<uint8_t> previous = File();
    SysFaultPlan plan{0, false, false, true};
    SysSetFaultPlan(&plan);
    EXPECT_FALSE(Store(5000, "Ada"));
    SysSetFaultPlan(nullptr);
    EXPECT_EQ(File(), previous);
    EXPECT_FALSE(AsideExists());
}

TEST_F(Records, ShortWriteOfTheHeaderLeavesThePreviousFileIntact) {
    WriteTable(TableBytes(TenPlayers()));
    const std::vector<uint8_t> previous = File();
    SysFaultPlan plan{1, true, false, false};
    SysSetFaultPlan(&plan);
    EXPECT_FALSE(Store(5000, "Ada"));
    SysSetFaultPlan(nullptr);
    EXPECT_EQ(File(), previous);
    EXPECT_FALSE(AsideExists());
}

TEST_F(Records, ShortWriteOfTheEntriesLeavesThePreviousFileIntact) {
    WriteTable(TableBytes(TenPlayers()));
    const std::vector<uint8_t> previous = File();
    SysFaultPlan plan{2, true, false, false};
    SysSetFaultPlan(&plan);
    EXPECT_FALSE(Store(5000, "Ada"));
    SysSetFaultPlan(nullptr);
    EXPECT_EQ(File(), previous);
    EXPECT_FALSE(AsideExists());
}

TEST_F(Records, FailedReplaceLeavesThePreviousFileIntact) {
    WriteTable(TableBytes(TenPlayers()));
    const std::vector<uint8_t> previous = File();
    SysFaultPlan plan{0, false, true, false};
    SysSetFaultPlan(&plan);
    EXPECT_FALSE(Store(5000, "Ada"));
    SysSetFaultPlan(nullptr);
    EXPECT_EQ(File(), previous);
    EXPECT_FALSE(AsideExists());
}

TEST_F(Records, StoreMakesExactlyTwoWrites) {
    WriteTable(TableBytes(TenPlayers()));
    // A third write never comes, so failing it changes nothing.
    SysFaultPlan plan{3, false, false, false};
    SysSetFaultPlan(&plan);
    EXPECT_TRUE(Store(5000, "Ada"));
    SysSetFaultPlan(nullptr);
    EXPECT_EQ(ScoreAt(File(), 0), 5000);
    EXPECT_FALSE(AsideExists());
}

}  // namespace
