// FileNameList: the names a wildcard search finds, kept back to back as length-byte records
// (length byte L = name length + 2, the name, a 0 byte), ended by one 0 byte.
#pragma once

#include <cstdint>

struct FileNameList {
    int32_t count;      // names held
    uint32_t capacity;  // bytes allocated for the records
    bool filled;        // a fill has succeeded
    uint8_t* records;   // the block of records, grown in steps of 50 bytes
};

void InitFileNameList(FileNameList* list);
void FreeFileNameList(FileNameList* list);
// Searches the pattern ("Image\*.bmp") and keeps every name found, in the file system's order
// (folders are not filtered out). Fails when nothing matches or a name has 255 characters or more.
bool FillFileNameList(FileNameList* list, const char* pattern);
// Copies name index (without its extension when strip is set) into out, at most size - 1 characters.
// Returns the record's length byte; 0 (and an empty out) when there is no such name.
// A 254-character name has a length byte that wraps to 0, as the records always stored it.
uint8_t FileNameAt(const FileNameList* list, int32_t index, bool strip, char* out, uint32_t size);
