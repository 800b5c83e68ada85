// The resource pack "Tavirel.rf": items (bitmaps without their file header) addressed by numeric id,
// found through a directory of 16-byte entries read from the end of the file.
#pragma once

#include <cstdint>

#include "app/platform.h"

struct PackEntry {
    uint32_t id;
    uint32_t size;        // item length in bytes; written by the pack tool, never read by the game
    uint32_t offsetLow;   // the item's position from the file's start, low and high 32 bits
    uint32_t offsetHigh;
};
static_assert(sizeof(PackEntry) == 16, "pack entries are 16 bytes");

struct ResourcePack {
    SysFile* file;          // held with exclusive access while the game runs
    uint32_t count;         // N, the directory's entry count
    PackEntry* directory;   // N entries, heap
    int64_t fileSize;
};

// The game's pack, open from start-up until the message loop ends.
extern ResourcePack g_pack;

// The directory search uses a 16-bit index, so later entries are out of reach.
constexpr uint32_t kPackReachableEntries = 65536;
// A directory larger than this is refused at open: its byte count would not fit 32 bits.
constexpr uint32_t kPackLargestDirectory = 0x0FFFFFFF;

// False when the file cannot be opened or its count does not fit the file; the pack stays closed.
bool OpenPack(ResourcePack* pack, const char* path);
void ClosePack(ResourcePack* pack);
bool IsPackOpen(const ResourcePack* pack);
// Index of the first directory entry carrying id, or -1.
int32_t FindPackEntry(const ResourcePack* pack, uint32_t id);
// Reads item id into a new packed DIB (header, colour table at 40, pixels at 1,064). Null when the id
// is absent, the item does not fit the file, or memory is short.
uint8_t* LoadPackItem(ResourcePack* pack, uint32_t id);
