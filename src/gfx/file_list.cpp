// The file name list of a wildcard search.
#include "gfx/file_list.h"

#include <cstdlib>
#include <cstring>

#include "app/platform.h"

constexpr uint32_t kListGrowth = 50;
constexpr size_t kLongestName = 254;

void InitFileNameList(FileNameList* list) { std::memset(list, 0, sizeof *list); }

void FreeFileNameList(FileNameList* list) {
    std::free(list->records);
    InitFileNameList(list);
}

struct FillContext {
    FileNameList* list;
    uint32_t used;  // bytes of records written so far
    bool failed;
};

// Makes room for `more` bytes, growing by 50 bytes at a time while fewer than 4 would be left spare.
static bool Reserve(FillContext* fill, uint32_t more) {
    FileNameList* list = fill->list;
    while (fill->used + more + 4 > list->capacity) {
        uint8_t* grown = static_cast<uint8_t*>(std::realloc(list->records, list->capacity + kListGrowth));
        if (!grown) return false;
        list->records = grown;
        list->capacity += kListGrowth;
    }
    return true;
}

static bool AddName(void* context, const char* name) {
    FillContext* fill = static_cast<FillContext*>(context);
    size_t length = std::strlen(name);
    if (length > kLongestName || !Reserve(fill, uint32_t(length) + 2)) {
        fill->failed = true;
        return false;
    }
    uint8_t* at = fill->list->records + fill->used;
    at[0] = uint8_t(length + 2);
    std::memcpy(at + 1, name, length + 1);
    fill->used += uint32_t(length) + 2;
    fill->list->records[fill->used] = 0;
    fill->list->count++;
    return true;
}

bool FillFileNameList(FileNameList* list, const char* pattern) {
    FreeFileNameList(list);
    list->records = static_cast<uint8_t*>(std::malloc(kListGrowth));
    if (!list->records) return false;
    list->capacity = kListGrowth;
    list->records[0] = 0;
    FillContext fill{list, 0, false};
    if (!SysListFolder(pattern, AddName, &fill) || fill.failed) {
        FreeFileNameList(list);
        return false;
    }
    list->filled = true;
    return true;
}

uint8_t FileNameAt(const FileNameList* list, int32_t index, bool strip, char* out, uint32_t size) {
    if (out && size > 0) out[0] = 0;
    if (!list->filled || index < 0 || index >= list->count || !out || size < 2) return 0;
    // Walk by each record's real extent: equal to its length byte, except for a 254-character name
    // whose length byte has wrapped.
    const uint8_t* record = list->records;
    for (int32_t i = 0; i < index; ++i) record += std::strlen(reinterpret_cast<const char*>(record + 1)) + 2;
    const char* name = reinterpret_cast<const char*>(record + 1);
    size_t length = std::strlen(name);
    size_t limit = length < size - 1 ? length : size - 1;
    size_t n = 0;
    for (; n < limit; ++n) {
        if (strip && name[n] == '.') break;
        out[n] = name[n];
    }
    out[n] = 0;
    return record[0];
}
