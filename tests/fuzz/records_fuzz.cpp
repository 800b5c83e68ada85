// Fuzz target: any bytes read as the records file; what loads must be a table the screen can show.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "extras/records.h"
#include "fuzz_support.h"

static void LoadAndUse(const uint8_t* data, size_t size) {
    std::string path = WriteFuzzInput(data, size, ".qmr");
    RecordsHeader header;
    RecordEntry entries[kRecordCount];
    bool fromFile = LoadRecords(path.c_str(), &header, entries);
    // A loaded file always has its ten entries; a refused one is gone.
    if (header.count != kRecordCount) __builtin_trap();
    if (!fromFile && size > 0 && std::fopen(path.c_str(), "rb")) __builtin_trap();
    char name[kRecordNameBytes + 1];
    char score[kScoreTextBytes];
    for (const RecordEntry& entry : entries) {
        RecordNameText(entry, name);
        if (std::strlen(name) > kRecordNameBytes) __builtin_trap();
        RecordScoreText(entry.score, score);
    }
    // What loaded comes back the same through the writer.
    std::string copy = path + ".out";
    if (!WriteRecords(copy.c_str(), &header, entries)) __builtin_trap();
    RecordsHeader copyHeader;
    RecordEntry copyEntries[kRecordCount];
    if (!LoadRecords(copy.c_str(), &copyHeader, copyEntries)) __builtin_trap();
    if (std::memcmp(entries, copyEntries, sizeof entries) != 0) __builtin_trap();
    std::remove(copy.c_str());
    int32_t rank = RankForScore(entries, entries[0].score);
    if (rank < 0 || rank > kRecordCount) __builtin_trap();
    if (rank < kRecordCount) InsertRecord(entries, rank, entries[0].score, name);
    std::remove(path.c_str());
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    LoadAndUse(data, size);
    // The same bytes behind a good header, so the search reaches the entries.
    std::vector<uint8_t> framed(kRecordsHeaderBytes + size);
    std::memcpy(framed.data(), "QmRecords\0\0\0\x0a\0\0\0", kRecordsHeaderBytes);
    if (size) std::memcpy(framed.data() + kRecordsHeaderBytes, data, size);
    LoadAndUse(framed.data(), framed.size());
    return 0;
}
