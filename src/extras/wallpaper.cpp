// The wallpaper file: the finished picture scaled to the screen, as a plain BMP.
#include "extras/wallpaper.h"

#include <cstring>
#include <string>

#include "app/platform.h"
#include "gfx/dib.h"
#include "puzzle/picture.h"

WallpaperSize WallpaperSizeFor(int32_t pictureWidth, int32_t pictureHeight, int32_t screenWidth,
                               int32_t screenHeight) {
    WallpaperSize size = {0, 0};
    if (pictureWidth < 1 || pictureHeight < 1 || screenWidth < 1 || screenHeight < 1) return size;
    const double f = double(pictureHeight) * screenWidth / pictureWidth <= screenHeight
                         ? double(screenWidth) / pictureWidth
                         : double(screenHeight) / pictureHeight;
    size.width = int32_t(pictureWidth * f);
    size.height = int32_t(pictureHeight * f);
    return size;
}

uint32_t WallpaperColorCount(const uint8_t* dib) {
    const DibHeader* header = DibHeaderOf(dib);
    if (header->biClrUsed) return header->biClrUsed <= kDibMaxColors ? header->biClrUsed : kDibMaxColors;
    return header->biBitCount <= 8 ? 1u << header->biBitCount : 0;
}

static void PutU16(uint8_t* at, uint16_t value) { std::memcpy(at, &value, 2); }
static void PutU32(uint8_t* at, uint32_t value) { std::memcpy(at, &value, 4); }

bool WriteWallpaperFile(const char* path, const uint8_t* picture, int32_t screenWidth, int32_t screenHeight) {
    if (!path || !*path || !picture) return false;
    const DibHeader* source = DibHeaderOf(picture);
    const WallpaperSize size = WallpaperSizeFor(source->biWidth, source->biHeight, screenWidth, screenHeight);
    if (size.width < 1 || size.height < 1) return false;
    uint8_t* scaled = ScalePackedDib(picture, size.width, size.height);
    if (!scaled) return false;

    const uint32_t colors = WallpaperColorCount(picture);
    const int64_t stride = DibStride(source->biBitCount, size.width);
    const uint32_t pixelBytes = uint32_t(stride * size.height);
    const uint32_t pixelOffset = 54 + 4 * colors;

    uint8_t fileHeader[14] = {'B', 'M'};
    PutU32(fileHeader + 2, pixelOffset + pixelBytes);
    PutU16(fileHeader + 6, 0);
    PutU16(fileHeader + 8, 0);
    PutU32(fileHeader + 10, pixelOffset);
    // The picture's own header: only the size and the byte count it implies change.
    DibHeader info = *source;
    info.biWidth = size.width;
    info.biHeight = size.height;
    info.biSizeImage = pixelBytes;
    uint8_t infoAndColors[40 + 4 * kDibMaxColors];
    std::memcpy(infoAndColors, &info, 40);
    std::memcpy(infoAndColors + 40, picture + kDibPaletteOffset, 4 * size_t(colors));

    const std::string temporary = std::string(path) + ".tmp";
    SysFile* file = SysOpenFile(temporary.c_str(), SYS_OPEN_CREATE);
    bool ok = file != nullptr;
    if (ok) ok = SysWriteFile(file, fileHeader, sizeof fileHeader);
    if (ok) ok = SysWriteFile(file, infoAndColors, 40 + 4 * colors);
    if (ok) ok = SysWriteFile(file, DibPixels(scaled), pixelBytes);
    if (file) SysCloseFile(file);
    FreePackedDib(scaled);
    if (ok) ok = SysReplaceFile(temporary.c_str(), path);
    if (!ok && file) SysDeleteFile(temporary.c_str());
    return ok;
}
