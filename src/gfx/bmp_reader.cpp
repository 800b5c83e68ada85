// The BMP file reader and its resampling read.
#include "gfx/bmp_reader.h"

#include <cstdlib>
#include <cstring>

// Offsets assume the 40-byte header; files with larger headers are read wrongly, as they always were.
constexpr int64_t kBmpHeaderAt = 14;
constexpr int64_t kBmpTableAt = 54;

void InitBmpReader(BmpFileReader* reader) { std::memset(reader, 0, sizeof *reader); }

void CloseBmp(BmpFileReader* reader) {
    if (reader->file) SysCloseFile(reader->file);
    std::free(reader->path);
    std::free(reader->header);
    InitBmpReader(reader);
}

bool OpenBmp(BmpFileReader* reader, const char* path) {
    CloseBmp(reader);
    SysFile* file = SysOpenFile(path, SYS_OPEN_READ);
    if (!file) return false;
    reader->file = file;
    reader->fileSize = SysFileSize(file);
    uint16_t magic = 0;
    uint32_t got = 0;
    DibHeader header;
    if (!SysReadFile(file, &magic, 2, &got) || got != 2 || magic != 0x4D42 ||
        !SysSeekFile(file, kBmpHeaderAt, SYS_SEEK_BEGIN, nullptr) ||
        !SysReadFile(file, &header, sizeof header, &got) || got != sizeof header) {
        CloseBmp(reader);
        return false;
    }
    reader->state = 1;
    // INT32_MIN has no magnitude; refuse it with the other unusable headers.
    if (header.biWidth < 1 || header.biPlanes != 1 || header.biCompression == 3 || header.biHeight == INT32_MIN) {
        CloseBmp(reader);
        return false;
    }
    reader->compressed = header.biCompression != 0;
    uint32_t colors = header.biClrUsed;
    if (!colors) {
        switch (header.biBitCount) {
        case 4: colors = 16; break;
        case 8: colors = 256; break;
        case 24:
        case 32: colors = 0; break;
        default: CloseBmp(reader); return false;
        }
    }
    reader->colorCount = colors;
    reader->header = static_cast<DibHeader*>(std::malloc(sizeof header));
    size_t length = strnlen(path, 260);
    reader->path = static_cast<char*>(std::malloc(length + 1));
    if (!reader->header || !reader->path) {
        CloseBmp(reader);
        return false;
    }
    *reader->header = header;
    std::memcpy(reader->path, path, length);
    reader->path[length] = 0;
    return true;
}

bool BmpHeader(const BmpFileReader* reader, DibHeader* out) {
    if (!reader->file || !reader->header) return false;
    *out = *reader->header;
    return true;
}

bool BmpPalette(BmpFileReader* reader, uint32_t first, uint32_t count, DibColor* out) {
    if (!reader->file || !out || count == 0) return false;
    if (first >= reader->colorCount || count > reader->colorCount - first) return false;
    uint32_t got = 0, bytes = count * 4;
    return SysSeekFile(reader->file, kBmpTableAt + 4 * int64_t(first), SYS_SEEK_BEGIN, nullptr) &&
           SysReadFile(reader->file, out, bytes, &got) && got == bytes;
}

bool BmpInfo(BmpFileReader* reader, uint8_t* out) {
    if (!reader->file || !out) return false;
    std::memcpy(out, reader->header, sizeof(DibHeader));
    if (!reader->colorCount) return true;
    return BmpPalette(reader, 0, reader->colorCount, reinterpret_cast<DibColor*>(out + sizeof(DibHeader)));
}

bool BmpSize(const BmpFileReader* reader, int32_t* width, int32_t* height) {
    if (!reader->file) return false;
    *width = reader->header->biWidth;
    *height = reader->header->biHeight;
    return true;
}

static int64_t PixelDataAt(const BmpFileReader* reader) { return kBmpTableAt + 4 * int64_t(reader->colorCount); }

// Bytes of pixel data the file really holds after the colour table.
static int64_t PixelDataAvailable(const BmpFileReader* reader) { return reader->fileSize - PixelDataAt(reader); }

int64_t BmpPixelBytes(const BmpFileReader* reader) {
    if (!reader->file) return 0;
    const DibHeader* h = reader->header;
    int64_t rows = h->biHeight < 0 ? -int64_t(h->biHeight) : h->biHeight;
    int64_t bytes = DibStride(h->biBitCount, h->biWidth) * rows;
    if (bytes <= 0 || bytes > PixelDataAvailable(reader) || bytes > 0xFFFFFFFFll) return 0;
    return bytes;
}

bool ReadBmpPixels(BmpFileReader* reader, uint8_t* out) {
    int64_t bytes = BmpPixelBytes(reader);
    if (!bytes || !out) return false;
    uint32_t got = 0;
    return SysSeekFile(reader->file, PixelDataAt(reader), SYS_SEEK_BEGIN, nullptr) &&
           SysReadFile(reader->file, out, uint32_t(bytes), &got) && got == uint32_t(bytes);
}

int64_t BmpResampledBytes(const BmpFileReader* reader, int32_t width, int32_t height) {
    if (!reader->file || width < 1 || height == INT32_MIN) return 0;
    int64_t rows = height < 0 ? -int64_t(height) : height;
    return DibStride(reader->header->biBitCount, width) * rows;
}

// Builds one target row from one source row through the column map.
static void MapRow(int bits, const uint8_t* src, int64_t srcStride, uint8_t* dst, int64_t dstStride,
                   const int32_t* map, int32_t width) {
    switch (bits) {
    case 4:
        for (int32_t x = 0; x < width; ++x) {
            int32_t from = map[x];
            uint8_t nibble = (from & 1) ? (src[from / 2] & 0x0F) : (src[from / 2] >> 4);
            uint8_t& d = dst[x / 2];
            d = (x & 1) ? uint8_t((d & 0xF0) | nibble) : uint8_t((d & 0x0F) | (nibble << 4));
        }
        break;
    case 8:
        for (int32_t x = 0; x < width; ++x) dst[x] = src[map[x]];
        break;
    case 24:
        for (int32_t x = 0; x < width; ++x) std::memcpy(dst + 3 * int64_t(x), src + 3 * int64_t(map[x]), 3);
        break;
    default:
        // Other depths move 32-bit words; words that would leave either row are skipped.
        for (int32_t x = 0; x < width; ++x) {
            if (4 * int64_t(x) + 4 > dstStride || 4 * int64_t(map[x]) + 4 > srcStride) continue;
            std::memcpy(dst + 4 * int64_t(x), src + 4 * int64_t(map[x]), 4);
        }
        break;
    }
}

bool ReadBmpResampled(BmpFileReader* reader, int32_t width, int32_t height, uint8_t* out) {
    if (!reader->file || reader->compressed) return false;
    if (height == 0) return true;
    if (width < 1 || height == INT32_MIN || !out) return false;
    const DibHeader* h = reader->header;
    int64_t hs = h->biHeight < 0 ? -int64_t(h->biHeight) : h->biHeight;
    int64_t hd = height < 0 ? -int64_t(height) : height;
    int64_t srcStride = DibStride(h->biBitCount, h->biWidth);
    int64_t dstStride = DibStride(h->biBitCount, width);
    // A source row must fit the file's pixel data: this also refuses absurd widths before allocating.
    if (hs == 0 || srcStride <= 0 || dstStride <= 0 || srcStride > PixelDataAvailable(reader) ||
        srcStride > 0xFFFFFFFFll)
        return false;
    if (!SysSeekFile(reader->file, PixelDataAt(reader), SYS_SEEK_BEGIN, nullptr)) return false;

    bool enlarging = hs < hd;
    int64_t loops = enlarging ? hd : hs;
    double step = enlarging ? double(hd) / double(hs) : double(hs) / double(hd);
    bool flip = (h->biHeight < 0) != (height < 0);
    double cx = double(h->biWidth) / width;

    uint8_t* srcRow = static_cast<uint8_t*>(std::malloc(size_t(srcStride)));
    uint8_t* dstRow = static_cast<uint8_t*>(std::calloc(size_t(dstStride), 1));
    int32_t* map = static_cast<int32_t*>(std::malloc(sizeof(int32_t) * size_t(width)));
    bool ok = srcRow && dstRow && map;
    if (ok) {
        for (int32_t x = width - 1; x >= 0; --x) {
            int64_t from = int64_t(x * cx);
            map[x] = int32_t(from < h->biWidth ? from : h->biWidth - 1);
        }
    }
    double acc = 0.0;
    int64_t written = 0, pendingSkip = 0, rowsRead = 0;
    for (int64_t i = 0; ok && i < loops; ++i) {
        if (written == hd) break;
        // Rounding can ask for one row more than the file has; the last row read stands in for it.
        if (int64_t(acc) == i && rowsRead < hs) {
            acc += step;
            ++rowsRead;
            if (pendingSkip) {
                ok = SysSeekFile(reader->file, pendingSkip, SYS_SEEK_CURRENT, nullptr);
                pendingSkip = 0;
            }
            uint32_t got = 0;
            ok = ok && SysReadFile(reader->file, srcRow, uint32_t(srcStride), &got) && got == uint32_t(srcStride);
            if (!ok) break;
            MapRow(h->biBitCount, srcRow, srcStride, dstRow, dstStride, map, width);
        } else if (!enlarging) {
            pendingSkip += srcStride;
            continue;
        }
        int64_t r = enlarging ? i : written++;
        if (flip) r = hd - r - 1;
        std::memcpy(out + r * dstStride, dstRow, size_t(dstStride));
    }
    std::free(srcRow);
    std::free(dstRow);
    std::free(map);
    return ok;
}
