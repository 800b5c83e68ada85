// Unit test helpers.
#include "test_support.h"

#include <cstdio>
#include <fstream>
#include <random>

ScratchFolder::ScratchFolder() {
    std::random_device device;
    std::filesystem::path base = std::filesystem::temp_directory_path();
    for (;;) {
        path = base / ("tavirel-test-" + std::to_string(device()));
        if (std::filesystem::create_directory(path)) break;
    }
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string ScratchFolder::File(const std::string& name) const { return (path / name).string(); }

DibColor TestPaletteColor(uint32_t i) {
    return DibColor{uint8_t(i), uint8_t(255 - i), uint8_t(i / 2), 0};
}

std::vector<uint8_t> MakeBmp(int32_t width, int32_t height, int bits, uint32_t colors,
                             const std::function<uint32_t(int32_t, int32_t)>& pixel, uint32_t compression) {
    int64_t stride = DibStride(bits, width);
    int32_t rows = height < 0 ? -height : height;
    uint32_t pixelsAt = 54 + 4 * colors;
    std::vector<uint8_t> bytes(pixelsAt + size_t(stride) * rows, 0);
    bytes[0] = 'B';
    bytes[1] = 'M';
    PutLE<uint32_t>(bytes, 2, uint32_t(bytes.size()));
    PutLE<uint32_t>(bytes, 10, pixelsAt);
    DibHeader h{};
    h.biSize = 40;
    h.biWidth = width;
    h.biHeight = height;
    h.biPlanes = 1;
    h.biBitCount = uint16_t(bits);
    h.biCompression = compression;
    h.biSizeImage = uint32_t(stride * rows);
    h.biClrUsed = colors;
    std::memcpy(&bytes[14], &h, sizeof h);
    for (uint32_t i = 0; i < colors; ++i) {
        DibColor c = TestPaletteColor(i);
        std::memcpy(&bytes[54 + 4 * i], &c, 4);
    }
    for (int32_t y = 0; y < rows; ++y) {
        uint8_t* row = &bytes[pixelsAt + size_t(stride) * y];
        for (int32_t x = 0; x < width; ++x) {
            uint32_t v = pixel(x, y);
            switch (bits) {
            case 1: row[x / 8] |= uint8_t((v & 1) << (7 - x % 8)); break;
            case 4: row[x / 2] |= uint8_t((x & 1) ? (v & 0x0F) : ((v & 0x0F) << 4)); break;
            case 8: row[x] = uint8_t(v); break;
            case 24: row[3 * x] = uint8_t(v); row[3 * x + 1] = uint8_t(v >> 8); row[3 * x + 2] = uint8_t(v >> 16); break;
            case 32: std::memcpy(row + 4 * x, &v, 4); break;
            }
        }
    }
    return bytes;
}

uint32_t PixelInRow(const uint8_t* row, int bits, int32_t x) {
    switch (bits) {
    case 4: return (x & 1) ? (row[x / 2] & 0x0F) : (row[x / 2] >> 4);
    case 8: return row[x];
    case 24: return uint32_t(row[3 * x]) | (uint32_t(row[3 * x + 1]) << 8) | (uint32_t(row[3 * x + 2]) << 16);
    case 32: {
        uint32_t v;
        std::memcpy(&v, row + 4 * x, 4);
        return v;
    }
    }
    return 0;
}

bool WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    return bool(out);
}

std::vector<uint8_t> ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}
