// The records file "Records.qmr": the ten best scores with their players' names, best first, and the
// rules that place a new score among them.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr const char kRecordsFileName[] = "Records.qmr";
constexpr int32_t kRecordCount = 10;
constexpr uint32_t kRecordNameBytes = 24;     // a name of at most 23 characters and its NUL
constexpr int32_t kRecordNameLimit = 23;
constexpr uint32_t kRecordsTagBytes = 9;      // "QmRecords", no terminator
constexpr uint32_t kRecordsHeaderBytes = 16;
constexpr uint32_t kRecordEntryBytes = 28;
constexpr uint32_t kRecordsEntriesBytes = kRecordEntryBytes * kRecordCount;    // 280
constexpr uint32_t kRecordsFileBytes = kRecordsHeaderBytes + kRecordsEntriesBytes;  // 296
// Room for any score as text: "-2147483648" and its NUL.
constexpr size_t kScoreTextBytes = 12;

// Both blocks are kept in memory exactly as they lie in the file (little-endian), so they are read and
// written whole.
struct RecordsHeader {
    char tag[kRecordsTagBytes];
    uint8_t unused[3];  // written as zero, never read
    int32_t count;      // always kRecordCount in a good file
};

// Bytes of a name after its NUL may hold what an older, longer name left there; only the text up to
// the NUL counts.
struct RecordEntry {
    char name[kRecordNameBytes];
    int32_t score;
};

static_assert(sizeof(RecordsHeader) == kRecordsHeaderBytes, "the header is 16 bytes in the file");
static_assert(sizeof(RecordEntry) == kRecordEntryBytes, "an entry is 28 bytes in the file");

// The empty table: the tag, count 10, and in every entry 23 dashes, a NUL and score 0.
void DefaultRecords(RecordsHeader* header, RecordEntry entries[kRecordCount]);

// Fills both blocks from the file at path. A file that cannot be opened, has no full 16-byte header or
// a count other than 10 is deleted and the blocks get the empty table (it is not written back: the file
// comes again with the next record). The tag is not compared. Entries past the end of a file cut short
// after its header keep the empty table's values. True when the blocks came from the file.
bool LoadRecords(const char* path, RecordsHeader* header, RecordEntry entries[kRecordCount]);

// The place a score takes, 0..9 (0 the best), or 10 when it makes no record: directly below every entry
// whose score is greater than or equal to it, so on a tie the older record keeps the higher place.
int32_t RankForScore(const RecordEntry entries[kRecordCount], int32_t score);

// Puts a record at rank (0..9): the entries from rank on move down one place whole, all 24 name bytes
// with them, and the last one drops out; then the score, and the name's first 23 characters with their
// NUL over the start of the entry's name, leaving the bytes after the NUL as they were. False, with
// nothing changed, for a rank outside 0..9.
bool InsertRecord(RecordEntry entries[kRecordCount], int32_t rank, int32_t score, const char* name);

// The name as shown: the text up to its NUL, at most the 24 bytes of the field. text holds 25 bytes.
void RecordNameText(const RecordEntry& entry, char text[kRecordNameBytes + 1]);
// A score as shown: plain signed decimal, no grouping.
void RecordScoreText(int32_t score, char text[kScoreTextBytes]);

// Writes the 296 bytes beside path (path + ".new"), header first and the entries only after it, and
// puts that file in place of path when both writes succeeded. On any failure the file beside is removed
// and whatever stood at path is left as it was. The header's unused bytes are written as zero.
bool WriteRecords(const char* path, const RecordsHeader* header, const RecordEntry entries[kRecordCount]);
