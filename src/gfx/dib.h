// Packed DIBs: one block holding a 40-byte bitmap header, room for a 256-entry colour table,
// and the pixel rows from byte 1,064 (bottom-up, each row padded to 4 bytes). Plus the software blit.
#pragma once

#include <cstddef>
#include <cstdint>

// Same layout as Windows' BITMAPINFOHEADER, little-endian.
struct DibHeader {
    uint32_t biSize;
    int32_t biWidth;
    int32_t biHeight;
    uint16_t biPlanes;
    uint16_t biBitCount;
    uint32_t biCompression;
    uint32_t biSizeImage;
    int32_t biXPelsPerMeter;
    int32_t biYPelsPerMeter;
    uint32_t biClrUsed;
    uint32_t biClrImportant;
};
static_assert(sizeof(DibHeader) == 40, "bitmap header must be 40 bytes");

// One colour-table entry, blue first, as in an RGBQUAD.
struct DibColor {
    uint8_t blue, green, red, reserved;
};

constexpr uint32_t kDibHeaderBytes = 40;
constexpr uint32_t kDibPaletteOffset = 40;
constexpr uint32_t kDibMaxColors = 256;
constexpr uint32_t kDibPixelOffset = 1064;  // pixels start here whatever the colour count

// Raster operations of the software blit; the same codes as GDI's.
constexpr uint32_t kRopSrcCopy = 0x00CC0020;
constexpr uint32_t kRopSrcAnd = 0x008800C6;
constexpr uint32_t kRopSrcInvert = 0x00660046;

inline DibHeader* DibHeaderOf(uint8_t* dib) { return reinterpret_cast<DibHeader*>(dib); }
inline const DibHeader* DibHeaderOf(const uint8_t* dib) { return reinterpret_cast<const DibHeader*>(dib); }
inline DibColor* DibPalette(uint8_t* dib) { return reinterpret_cast<DibColor*>(dib + kDibPaletteOffset); }
inline const DibColor* DibPalette(const uint8_t* dib) {
    return reinterpret_cast<const DibColor*>(dib + kDibPaletteOffset);
}
inline uint8_t* DibPixels(uint8_t* dib) { return dib + kDibPixelOffset; }
inline const uint8_t* DibPixels(const uint8_t* dib) { return dib + kDibPixelOffset; }

// Bytes in one row of a DIB: ((bits * width + 31) / 32) * 4, with the signed, truncating division.
// Computed wide so that hostile sizes cannot overflow; 0 for a width or depth below 1.
int64_t DibStride(int32_t bitCount, int32_t width);

// A new 8-bit packed DIB of width x height (stride rounded up to 4, biSizeImage set, table and pixels
// not cleared). Null for a size below 1 or when the block cannot be had.
uint8_t* AllocPackedDib8(int32_t width, int32_t height);
// A new packed DIB with the given depth; pixels are zeroed. Used by tools and tests.
uint8_t* AllocPackedDib(int32_t width, int32_t height, uint16_t bitCount, uint32_t colorsUsed);
void FreePackedDib(uint8_t* dib);
// Total block size of a packed DIB: 1,064 + biSizeImage.
size_t PackedDibBytes(const uint8_t* dib);

// Copies biBitCount, biClrUsed and the first biClrUsed colour-table entries.
void CopyPalette(const uint8_t* from, uint8_t* to);

// Copies, ANDs or XORs a width x height area of source at (sx, sy) onto target at (x, y), both rows
// counted from the top. Clips to both images; 8-bit targets move one byte a pixel, any other depth
// three. Pixels are processed from the bottom-right corner backwards. Other operations copy nothing.
void SoftBlit(uint8_t* target, int32_t x, int32_t y, int32_t width, int32_t height, const uint8_t* source,
              int32_t sx, int32_t sy, uint32_t rop);
