// Writing resource packs and BMP files: used by the pack tool, the artwork generator and tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/platform.h"
#include "gfx/pack.h"

struct PackWriter {
    SysFile* file;                    // the file being written, beside the final one
    std::string path;                 // where the pack goes when finished
    std::string tempPath;
    std::vector<PackEntry> directory;
    uint64_t position;                // next item's offset
    bool failed;
};

// Starts a pack that replaces path only when FinishPack succeeds.
bool BeginPack(PackWriter* writer, const char* path);
// Adds one item exactly as given: header, colour table of biClrUsed entries, biSizeImage pixel bytes.
bool AddPackItem(PackWriter* writer, uint32_t id, const uint8_t* item, uint32_t bytes);
// Adds a packed DIB (pixels at 1,064) as an item.
bool AddPackDib(PackWriter* writer, uint32_t id, const uint8_t* dib);
// Writes the directory and the count, then puts the pack in place.
bool FinishPack(PackWriter* writer);
// Drops an unfinished pack; the file that stood at path is untouched.
void AbortPack(PackWriter* writer);

// Turns a .bmp file's bytes into a pack item: a 40-byte header with biSizeImage and biClrUsed always
// set (a palette image gets its full table count), the colour table, the pixel rows. Only uncompressed
// 1-, 4-, 8-, 24- and 32-bit files are accepted.
bool BmpBytesToPackItem(const std::vector<uint8_t>& bmp, std::vector<uint8_t>* item);
// Item bytes (header, table, pixels) as a packed DIB block; null when they do not hold together.
uint8_t* PackItemToDib(const uint8_t* item, uint32_t bytes);
// A packed DIB as a .bmp file (file header, 40-byte header, biClrUsed colours, pixels), written aside
// and then put in place.
bool WriteDibAsBmp(const char* path, const uint8_t* dib);

bool ReadWholeFile(const char* path, std::vector<uint8_t>* bytes);
// Writes beside the target, then replaces it.
bool WriteWholeFile(const char* path, const uint8_t* bytes, size_t count);
