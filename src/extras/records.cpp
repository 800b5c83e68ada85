// The records file: loading with its fall-back to the empty table, ranking, insertion and writing.
#include "extras/records.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "app/platform.h"

// The blocks go to and from the file as they lie in memory.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the records file is little-endian");

namespace {

constexpr char kRecordsTag[kRecordsTagBytes] = {'Q', 'm', 'R', 'e', 'c', 'o', 'r', 'd', 's'};
constexpr char kEmptyNameChar = '-';
constexpr const char kWriteAsideSuffix[] = ".new";

// Characters before the first NUL, looking at no more than limit bytes.
size_t BoundedLength(const char* text, size_t limit) {
    size_t length = 0;
    while (length < limit && text[length]) ++length;
    return length;
}

}  // namespace

void DefaultRecords(RecordsHeader* header, RecordEntry entries[kRecordCount]) {
    std::memset(header, 0, sizeof *header);
    std::memcpy(header->tag, kRecordsTag, sizeof header->tag);
    header->count = kRecordCount;
    for (int32_t i = 0; i < kRecordCount; ++i) {
        std::memset(entries[i].name, kEmptyNameChar, kRecordNameLimit);
        entries[i].name[kRecordNameLimit] = 0;
        entries[i].score = 0;
    }
}

bool LoadRecords(const char* path, RecordsHeader* header, RecordEntry entries[kRecordCount]) {
    // The empty table first: what a file cut short does not hold keeps its values.
    DefaultRecords(header, entries);
    SysFile* file = SysOpenFile(path, SYS_OPEN_READ);
    bool ok = false;
    if (file) {
        RecordsHeader read;
        std::memset(&read, 0, sizeof read);
        uint32_t got = 0;
        if (SysReadFile(file, &read, kRecordsHeaderBytes, &got) && got == kRecordsHeaderBytes &&
            read.count == kRecordCount) {
            RecordEntry loaded[kRecordCount];
            std::memcpy(loaded, entries, sizeof loaded);
            if (SysReadFile(file, loaded, kRecordsEntriesBytes, &got)) {
                *header = read;
                std::memcpy(entries, loaded, sizeof loaded);
                ok = true;
            }
        }
        SysCloseFile(file);
    }
    if (ok) return true;
    // A foreign or damaged file is not kept: the table starts empty and the next record writes a good one.
    SysDeleteFile(path);
    DefaultRecords(header, entries);
    return false;
}

int32_t RankForScore(const RecordEntry entries[kRecordCount], int32_t score) {
    int32_t rank = kRecordCount;
    if (score <= entries[kRecordCount - 1].score) return rank;
    while (rank >= 1 && entries[rank - 1].score < score) --rank;
    return rank;
}

bool InsertRecord(RecordEntry entries[kRecordCount], int32_t rank, int32_t score, const char* name) {
    if (rank < 0 || rank >= kRecordCount || !name) return false;
    for (int32_t i = kRecordCount - 1; i > rank; --i) entries[i] = entries[i - 1];
    entries[rank].score = score;
    size_t length = BoundedLength(name, kRecordNameLimit);
    std::memcpy(entries[rank].name, name, length);
    entries[rank].name[length] = 0;
    return true;
}

void RecordNameText(const RecordEntry& entry, char text[kRecordNameBytes + 1]) {
    size_t length = BoundedLength(entry.name, kRecordNameBytes);
    std::memcpy(text, entry.name, length);
    text[length] = 0;
}

void RecordScoreText(int32_t score, char text[kScoreTextBytes]) {
    std::snprintf(text, kScoreTextBytes, "%ld", long(score));
}

bool WriteRecords(const char* path, const RecordsHeader* header, const RecordEntry entries[kRecordCount]) {
    if (!path || !*path) return false;
    RecordsHeader written = *header;
    std::memset(written.unused, 0, sizeof written.unused);
    const std::string aside = std::string(path) + kWriteAsideSuffix;
    SysFile* file = SysOpenFile(aside.c_str(), SYS_OPEN_CREATE);
    if (!file) return false;
    // Two writes, as the blocks lie: the entries follow only a header that went out whole.
    bool ok = SysWriteFile(file, &written, kRecordsHeaderBytes) &&
              SysWriteFile(file, entries, kRecordsEntriesBytes);
    SysCloseFile(file);
    if (ok) ok = SysReplaceFile(aside.c_str(), path);
    if (!ok) SysDeleteFile(aside.c_str());
    return ok;
}
