// The current photograph, and fitting and scaling of packed DIBs.
#include "puzzle/picture.h"

#include <cstring>

#include "app/app_state.h"
#include "gfx/bmp_reader.h"
#include "gfx/dib.h"

namespace {

uint8_t* g_picture = nullptr;
char g_picturePath[kPicturePathCapacity] = "";

bool IsAbsolutePath(const char* path) {
    if (path[0] == '\\' || path[0] == '/') return true;
    char c = path[0];
    return ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) && path[1] == ':';
}

// The path to open: the given one when absolute, else the program folder in front of it. False when
// the result would not fit.
bool ResolvePicturePath(const char* path, char* out) {
    size_t length = strnlen(path, kPicturePathCapacity);
    if (length == 0 || length >= size_t(kPicturePathCapacity)) return false;
    size_t folder = IsAbsolutePath(path) ? 0 : strnlen(g_appFolder, kPathCapacity);
    if (folder + length >= size_t(kPicturePathCapacity)) return false;
    std::memcpy(out, g_appFolder, folder);
    std::memcpy(out + folder, path, length + 1);
    return true;
}

// Reads the open file whole into a new bottom-up packed DIB; null when it is not one we can play.
uint8_t* ReadWholePicture(BmpFileReader* reader) {
    DibHeader file;
    if (!BmpHeader(reader, &file) || reader->compressed) return nullptr;
    if (file.biBitCount != 8 && file.biBitCount != 24) return nullptr;
    if (file.biBitCount == 8 && reader->colorCount > kDibMaxColors) return nullptr;
    // The file must really hold every row before a block of that size is asked for.
    if (BmpPixelBytes(reader) == 0) return nullptr;
    int32_t rows = file.biHeight < 0 ? -file.biHeight : file.biHeight;
    uint32_t colors = file.biBitCount == 8 ? reader->colorCount : 0;
    uint8_t* dib = AllocPackedDib(file.biWidth, rows, file.biBitCount, colors);
    if (!dib) return nullptr;
    bool ok = colors == 0 || BmpPalette(reader, 0, colors, DibPalette(dib));
    // Reading at the same size copies the rows; a positive height turns a top-down file bottom-up.
    ok = ok && ReadBmpResampled(reader, file.biWidth, rows, DibPixels(dib));
    if (!ok) {
        FreePackedDib(dib);
        return nullptr;
    }
    return dib;
}

}  // namespace

uint8_t* ReadPictureFile(const char* path) {
    if (!path) return nullptr;
    char full[kPicturePathCapacity];
    if (!ResolvePicturePath(path, full)) return nullptr;
    BmpFileReader reader;
    InitBmpReader(&reader);
    if (!OpenBmp(&reader, full)) return nullptr;
    uint8_t* dib = ReadWholePicture(&reader);
    CloseBmp(&reader);
    return dib;
}

void SetCurrentPicture(uint8_t* dib, const char* path) {
    if (dib == g_picture) return;
    FreePackedDib(g_picture);
    g_picture = dib;
    size_t length = path ? strnlen(path, kPicturePathCapacity - 1) : 0;
    if (length) std::memcpy(g_picturePath, path, length);
    g_picturePath[length] = 0;
}

bool LoadCurrentPicture(const char* path) {
    uint8_t* dib = ReadPictureFile(path);
    if (!dib) return false;
    SetCurrentPicture(dib, path);
    return true;
}

void ClearCurrentPicture() {
    FreePackedDib(g_picture);
    g_picture = nullptr;
    g_picturePath[0] = 0;
}

const uint8_t* CurrentPicture() { return g_picture; }

const char* CurrentPicturePath() { return g_picturePath; }

PictureFit FitPicture(int32_t width, int32_t height, int32_t boxWidth, int32_t boxHeight) {
    PictureFit fit = {};
    if (width < 1 || height < 1 || boxWidth < 1 || boxHeight < 1) return fit;
    // height * boxWidth / width <= boxHeight, compared without dividing.
    fit.widthBound = int64_t(height) * boxWidth <= int64_t(boxHeight) * width;
    fit.numerator = fit.widthBound ? boxWidth : boxHeight;
    fit.denominator = fit.widthBound ? width : height;
    fit.scale = double(fit.numerator) / double(fit.denominator);
    fit.width = ScaleByFit(width, fit);
    fit.height = ScaleByFit(height, fit);
    return fit;
}

int32_t ScaleByFit(int32_t value, const PictureFit& fit) {
    if (fit.denominator < 1) return 0;
    int64_t scaled = int64_t(value) * fit.numerator / fit.denominator;
    if (scaled > INT32_MAX) return INT32_MAX;
    if (scaled < INT32_MIN) return INT32_MIN;
    return int32_t(scaled);
}

uint8_t* ScalePackedDib(const uint8_t* dib, int32_t width, int32_t height) {
    if (!dib || width < 1 || height < 1) return nullptr;
    const DibHeader* from = DibHeaderOf(dib);
    int32_t bits = from->biBitCount;
    if ((bits != 8 && bits != 24 && bits != 32) || from->biCompression != 0) return nullptr;
    if (from->biWidth < 1 || from->biHeight == 0 || from->biHeight == INT32_MIN) return nullptr;
    int64_t sourceRows = from->biHeight < 0 ? -int64_t(from->biHeight) : from->biHeight;
    int64_t sourceStride = DibStride(bits, from->biWidth);
    if (from->biSizeImage != 0 && int64_t(from->biSizeImage) < sourceStride * sourceRows) return nullptr;
    // An 8-bit table holds biClrUsed entries, or all 256 when that is 0.
    uint32_t used = bits == 8 && from->biClrUsed <= kDibMaxColors ? from->biClrUsed : 0;
    uint32_t colors = bits == 8 ? (used ? used : kDibMaxColors) : 0;
    uint8_t* out = AllocPackedDib(width, height, uint16_t(bits), used);
    if (!out) return nullptr;
    if (colors) std::memcpy(DibPalette(out), DibPalette(dib), colors * sizeof(DibColor));

    int64_t bytesPerPixel = bits / 8;
    int64_t targetStride = DibStride(bits, width);
    const uint8_t* source = DibPixels(dib);
    uint8_t* target = DibPixels(out);
    for (int32_t y = 0; y < height; ++y) {
        // Rows counted from the top on both sides; a top-down source stores its top row first.
        int64_t sourceY = int64_t(y) * sourceRows / height;
        int64_t sourceRow = from->biHeight > 0 ? sourceRows - 1 - sourceY : sourceY;
        const uint8_t* in = source + sourceRow * sourceStride;
        uint8_t* row = target + (int64_t(height) - 1 - y) * targetStride;
        for (int32_t x = 0; x < width; ++x) {
            int64_t sourceX = int64_t(x) * from->biWidth / width;
            std::memcpy(row + x * bytesPerPixel, in + sourceX * bytesPerPixel, size_t(bytesPerPixel));
        }
    }
    return out;
}
