// Pack writer and BMP file conversions.
#include "gfx/pack_writer.h"

#include <cstring>

#include "gfx/dib.h"

bool BeginPack(PackWriter* writer, const char* path) {
    writer->path = path;
    writer->tempPath = writer->path + ".tmp";
    writer->directory.clear();
    writer->position = 0;
    writer->failed = false;
    writer->file = SysOpenFile(writer->tempPath.c_str(), SYS_OPEN_CREATE);
    return writer->file != nullptr;
}

bool AddPackItem(PackWriter* writer, uint32_t id, const uint8_t* item, uint32_t bytes) {
    if (!writer->file || writer->failed) return false;
    if (!SysWriteFile(writer->file, item, bytes)) {
        writer->failed = true;
        return false;
    }
    PackEntry entry{id, bytes, uint32_t(writer->position & 0xFFFFFFFFu), uint32_t(writer->position >> 32)};
    writer->directory.push_back(entry);
    writer->position += bytes;
    return true;
}

bool AddPackDib(PackWriter* writer, uint32_t id, const uint8_t* dib) {
    const DibHeader* h = DibHeaderOf(dib);
    if (h->biClrUsed > kDibMaxColors) return false;
    std::vector<uint8_t> item(kDibHeaderBytes + 4 * size_t(h->biClrUsed) + h->biSizeImage);
    std::memcpy(item.data(), dib, kDibHeaderBytes + 4 * size_t(h->biClrUsed));
    std::memcpy(item.data() + kDibHeaderBytes + 4 * h->biClrUsed, DibPixels(dib), h->biSizeImage);
    return AddPackItem(writer, id, item.data(), uint32_t(item.size()));
}

bool FinishPack(PackWriter* writer) {
    if (!writer->file) return false;
    uint32_t count = uint32_t(writer->directory.size());
    bool ok = !writer->failed &&
              (count == 0 || SysWriteFile(writer->file, writer->directory.data(), count * uint32_t(sizeof(PackEntry)))) &&
              SysWriteFile(writer->file, &count, 4);
    SysCloseFile(writer->file);
    writer->file = nullptr;
    if (ok) ok = SysReplaceFile(writer->tempPath.c_str(), writer->path.c_str());
    if (!ok) SysDeleteFile(writer->tempPath.c_str());
    return ok;
}

void AbortPack(PackWriter* writer) {
    if (writer->file) SysCloseFile(writer->file);
    writer->file = nullptr;
    SysDeleteFile(writer->tempPath.c_str());
}

template <typename T>
static T ReadLE(const std::vector<uint8_t>& bytes, size_t at) {
    T value;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

bool BmpBytesToPackItem(const std::vector<uint8_t>& bmp, std::vector<uint8_t>* item) {
    if (bmp.size() < 14 + kDibHeaderBytes || bmp[0] != 'B' || bmp[1] != 'M') return false;
    uint32_t pixelsAt = ReadLE<uint32_t>(bmp, 10);
    uint32_t headerSize = ReadLE<uint32_t>(bmp, 14);
    DibHeader h;
    std::memcpy(&h, bmp.data() + 14, sizeof h);
    if (headerSize < kDibHeaderBytes || h.biWidth < 1 || h.biHeight == 0 || h.biHeight == INT32_MIN ||
        h.biPlanes != 1 || h.biCompression != 0)
        return false;
    if (h.biBitCount != 1 && h.biBitCount != 4 && h.biBitCount != 8 && h.biBitCount != 24 && h.biBitCount != 32)
        return false;
    uint32_t colors = h.biClrUsed;
    if (h.biBitCount <= 8 && colors == 0) colors = 1u << h.biBitCount;
    if (h.biBitCount > 8) colors = 0;
    if (colors > kDibMaxColors) return false;
    int64_t rows = h.biHeight < 0 ? -int64_t(h.biHeight) : h.biHeight;
    int64_t image = DibStride(h.biBitCount, h.biWidth) * rows;
    uint64_t tableAt = 14 + uint64_t(headerSize);
    if (image <= 0 || image > 0x7FFFFFFF || tableAt + 4ull * colors > bmp.size() ||
        uint64_t(pixelsAt) + uint64_t(image) > bmp.size())
        return false;
    h.biSize = kDibHeaderBytes;
    h.biSizeImage = uint32_t(image);
    h.biClrUsed = colors;
    item->assign(kDibHeaderBytes + 4 * size_t(colors) + size_t(image), 0);
    std::memcpy(item->data(), &h, sizeof h);
    std::memcpy(item->data() + kDibHeaderBytes, bmp.data() + tableAt, 4 * size_t(colors));
    std::memcpy(item->data() + kDibHeaderBytes + 4 * colors, bmp.data() + pixelsAt, size_t(image));
    return true;
}

uint8_t* PackItemToDib(const uint8_t* item, uint32_t bytes) {
    if (bytes < kDibHeaderBytes) return nullptr;
    DibHeader h;
    std::memcpy(&h, item, sizeof h);
    if (h.biClrUsed > kDibMaxColors || uint64_t(kDibHeaderBytes) + 4ull * h.biClrUsed + h.biSizeImage > bytes)
        return nullptr;
    uint8_t* dib = static_cast<uint8_t*>(SysAllocBlock(size_t(kDibPixelOffset) + h.biSizeImage));
    if (!dib) return nullptr;
    std::memset(dib, 0, kDibPixelOffset);
    std::memcpy(dib, item, kDibHeaderBytes + 4 * size_t(h.biClrUsed));
    std::memcpy(dib + kDibPixelOffset, item + kDibHeaderBytes + 4 * h.biClrUsed, h.biSizeImage);
    return dib;
}

bool WriteDibAsBmp(const char* path, const uint8_t* dib) {
    const DibHeader* h = DibHeaderOf(dib);
    if (h->biClrUsed > kDibMaxColors) return false;
    uint32_t table = 4 * h->biClrUsed;
    uint32_t pixelsAt = 14 + kDibHeaderBytes + table;
    std::vector<uint8_t> out(size_t(pixelsAt) + h->biSizeImage);
    uint32_t fileSize = uint32_t(out.size());
    out[0] = 'B';
    out[1] = 'M';
    std::memcpy(&out[2], &fileSize, 4);
    std::memcpy(&out[10], &pixelsAt, 4);
    std::memcpy(&out[14], dib, kDibHeaderBytes + table);
    std::memcpy(&out[pixelsAt], DibPixels(dib), h->biSizeImage);
    return WriteWholeFile(path, out.data(), out.size());
}

bool ReadWholeFile(const char* path, std::vector<uint8_t>* bytes) {
    SysFile* file = SysOpenFile(path, SYS_OPEN_READ);
    if (!file) return false;
    int64_t size = SysFileSize(file);
    bool ok = size >= 0 && size <= 0x7FFFFFFF;
    if (ok) {
        bytes->resize(size_t(size));
        uint32_t got = 0;
        ok = size == 0 || (SysReadFile(file, bytes->data(), uint32_t(size), &got) && got == uint32_t(size));
    }
    SysCloseFile(file);
    return ok;
}

bool WriteWholeFile(const char* path, const uint8_t* bytes, size_t count) {
    std::string temp = std::string(path) + ".tmp";
    SysFile* file = SysOpenFile(temp.c_str(), SYS_OPEN_CREATE);
    if (!file) return false;
    bool ok = count == 0 || SysWriteFile(file, bytes, uint32_t(count));
    SysCloseFile(file);
    if (ok) ok = SysReplaceFile(temp.c_str(), path);
    if (!ok) SysDeleteFile(temp.c_str());
    return ok;
}
