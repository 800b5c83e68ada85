// BmpFileReader: reads ".bmp" photographs from disk, whole or resampled to a requested size while
// reading (nearest neighbour, one source row in memory at a time).
#pragma once

#include <cstdint>

#include "app/platform.h"
#include "gfx/dib.h"

struct BmpFileReader {
    SysFile* file;        // null when closed
    char* path;           // heap copy of the path
    int state;            // 0 nothing read, 1 a valid header has been read
    bool compressed;      // RLE files open but cannot be resampled
    uint32_t colorCount;  // entries in the colour table
    DibHeader* header;    // heap copy of the 40-byte header
    int64_t fileSize;
};

void InitBmpReader(BmpFileReader* reader);
// Opens and checks the file: "BM", biWidth >= 1, biPlanes 1, no bit fields, a known colour count.
bool OpenBmp(BmpFileReader* reader, const char* path);
void CloseBmp(BmpFileReader* reader);
bool BmpHeader(const BmpFileReader* reader, DibHeader* out);
// Colour-table entries first .. first + count - 1, as stored.
bool BmpPalette(BmpFileReader* reader, uint32_t first, uint32_t count, DibColor* out);
// The header followed by the whole colour table (40 + 4 * colorCount bytes), as a BITMAPINFO.
bool BmpInfo(BmpFileReader* reader, uint8_t* out);
bool BmpSize(const BmpFileReader* reader, int32_t* width, int32_t* height);
// Bytes ReadBmpPixels writes: the stored stride times |biHeight|; 0 when the file cannot hold them.
int64_t BmpPixelBytes(const BmpFileReader* reader);
// Whole rows as stored, from byte 54 + 4 * colour count.
bool ReadBmpPixels(BmpFileReader* reader, uint8_t* out);
// Bytes ReadBmpResampled writes for a target of width x |height| at the file's depth.
int64_t BmpResampledBytes(const BmpFileReader* reader, int32_t width, int32_t height);
// Resamples to width x |height|; a height whose sign differs from biHeight's flips the rows.
// A height of 0 writes nothing and succeeds.
bool ReadBmpResampled(BmpFileReader* reader, int32_t width, int32_t height, uint8_t* out);
