// The pixel checker of the printing test: reading the rendered page and the pictures it must show.
#include "page_check.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "app/platform.h"
#include "gfx/bmp_reader.h"
#include "gfx/dib.h"
#include "gfx/pack.h"

namespace {

constexpr int32_t kLargestSide = 20000;  // a rendered sheet or a photograph is far smaller

bool AllocRgb(RgbImage* image, int32_t width, int32_t height) {
    image->pixels = nullptr;
    if (width < 1 || height < 1 || width > kLargestSide || height > kLargestSide) return false;
    image->width = width;
    image->height = height;
    image->pixels = static_cast<uint8_t*>(std::calloc(size_t(width) * size_t(height), 3));
    return image->pixels != nullptr;
}

void SetRgb(RgbImage* image, int32_t x, int32_t y, uint8_t r, uint8_t g, uint8_t b) {
    uint8_t* p = image->pixels + (size_t(y) * size_t(image->width) + size_t(x)) * 3;
    p[0] = r;
    p[1] = g;
    p[2] = b;
}

// One pixel of a DIB row, through its colour table when it has one.
bool RowPixel(const uint8_t* row, int32_t bits, int32_t x, const DibColor* table, uint32_t colors, uint8_t* rgb) {
    uint32_t index = 0;
    switch (bits) {
    case 1: index = (row[x / 8] >> (7 - x % 8)) & 1; break;
    case 4: index = (x & 1) ? (row[x / 2] & 0x0F) : (row[x / 2] >> 4); break;
    case 8: index = row[x]; break;
    case 24:
    case 32: {
        const uint8_t* p = row + int64_t(x) * (bits / 8);
        rgb[0] = p[2];
        rgb[1] = p[1];
        rgb[2] = p[0];
        return true;
    }
    default: return false;
    }
    if (index >= colors) return false;
    rgb[0] = table[index].red;
    rgb[1] = table[index].green;
    rgb[2] = table[index].blue;
    return true;
}

// Rows as stored (bottom-up unless topDown) into an RGB image, top row first.
bool DibRowsToRgb(const uint8_t* rows, int32_t width, int32_t height, int32_t bits, bool topDown,
                  const DibColor* table, uint32_t colors, RgbImage* image) {
    if (!AllocRgb(image, width, height)) return false;
    int64_t stride = DibStride(bits, width);
    for (int32_t y = 0; y < height; ++y) {
        const uint8_t* row = rows + stride * (topDown ? y : height - 1 - y);
        for (int32_t x = 0; x < width; ++x) {
            uint8_t rgb[3];
            if (!RowPixel(row, bits, x, table, colors, rgb)) {
                FreeRgbImage(image);
                return false;
            }
            SetRgb(image, x, y, rgb[0], rgb[1], rgb[2]);
        }
    }
    return true;
}

// The next number of a PPM header, skipping blanks and comments.
bool PpmNumber(const uint8_t* bytes, size_t size, size_t* at, int32_t* value) {
    while (*at < size) {
        uint8_t c = bytes[*at];
        if (c == '#') {
            while (*at < size && bytes[*at] != '\n') ++*at;
        } else if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            ++*at;
        } else {
            break;
        }
    }
    int64_t number = 0;
    size_t start = *at;
    while (*at < size && bytes[*at] >= '0' && bytes[*at] <= '9' && number <= kLargestSide * 100)
        number = number * 10 + (bytes[(*at)++] - '0');
    *value = int32_t(number);
    return *at > start;
}

}  // namespace

void FreeRgbImage(RgbImage* image) {
    std::free(image->pixels);
    std::memset(image, 0, sizeof *image);
}

bool ReadPpm(const char* path, RgbImage* image) {
    std::memset(image, 0, sizeof *image);
    SysFile* file = SysOpenFile(path, SYS_OPEN_READ);
    if (!file) return false;
    int64_t size = SysFileSize(file);
    uint8_t* bytes = nullptr;
    uint32_t got = 0;
    if (size > 16 && size < int64_t(3) * kLargestSide * kLargestSide)
        bytes = static_cast<uint8_t*>(std::malloc(size_t(size)));
    bool ok = bytes && SysReadFile(file, bytes, uint32_t(size), &got) && got == uint32_t(size);
    SysCloseFile(file);
    size_t at = 2;
    int32_t width = 0, height = 0, maxval = 0;
    ok = ok && bytes[0] == 'P' && bytes[1] == '6' && PpmNumber(bytes, size_t(size), &at, &width) &&
         PpmNumber(bytes, size_t(size), &at, &height) && PpmNumber(bytes, size_t(size), &at, &maxval) &&
         maxval == 255 && at < size_t(size);
    ++at;  // the one blank after maxval
    ok = ok && width >= 1 && height >= 1 && width <= kLargestSide && height <= kLargestSide &&
         int64_t(size) - int64_t(at) >= int64_t(width) * height * 3 && AllocRgb(image, width, height);
    if (ok) std::memcpy(image->pixels, bytes + at, size_t(width) * size_t(height) * 3);
    std::free(bytes);
    return ok;
}

bool ReadBmpAsRgb(const char* path, RgbImage* image) {
    std::memset(image, 0, sizeof *image);
    BmpFileReader reader;
    InitBmpReader(&reader);
    DibHeader header;
    DibColor table[kDibMaxColors];
    bool ok = OpenBmp(&reader, path) && !reader.compressed && BmpHeader(&reader, &header) &&
              reader.colorCount <= kDibMaxColors &&
              (reader.colorCount == 0 || BmpPalette(&reader, 0, reader.colorCount, table));
    int64_t bytes = ok ? BmpPixelBytes(&reader) : 0;
    uint8_t* rows = bytes > 0 ? static_cast<uint8_t*>(std::malloc(size_t(bytes))) : nullptr;
    ok = rows && ReadBmpPixels(&reader, rows) &&
         DibRowsToRgb(rows, header.biWidth, header.biHeight < 0 ? -header.biHeight : header.biHeight,
                      header.biBitCount, header.biHeight < 0, table, reader.colorCount, image);
    std::free(rows);
    CloseBmp(&reader);
    return ok;
}

bool ReadPackItemAsRgb(uint32_t id, RgbImage* image) {
    std::memset(image, 0, sizeof *image);
    uint8_t* dib = LoadPackItem(&g_pack, id);
    if (!dib) return false;
    const DibHeader* h = DibHeaderOf(dib);
    uint32_t colors = h->biClrUsed ? h->biClrUsed : (h->biBitCount <= 8 ? 1u << h->biBitCount : 0);
    int64_t needed = DibStride(h->biBitCount, h->biWidth) * int64_t(h->biHeight);
    bool ok = h->biHeight > 0 && colors <= kDibMaxColors && needed > 0 && uint64_t(needed) <= h->biSizeImage &&
              DibRowsToRgb(DibPixels(dib), h->biWidth, h->biHeight, h->biBitCount, false, DibPalette(dib), colors,
                           image);
    FreePackedDib(dib);
    return ok;
}

Rgb PixelAt(const RgbImage* image, int32_t x, int32_t y) {
    if (x < 0) x = 0;
    if (y < 0) y = 0;
    if (x >= image->width) x = image->width - 1;
    if (y >= image->height) y = image->height - 1;
    const uint8_t* p = image->pixels + (size_t(y) * size_t(image->width) + size_t(x)) * 3;
    return Rgb{p[0], p[1], p[2]};
}

int32_t RgbDistance(Rgb a, Rgb b) { return std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b); }

bool IsPaper(Rgb c) { return c.r >= 235 && c.g >= 235 && c.b >= 235; }

double RenderX(const PageMap* map, double deviceX) {
    return (deviceX + map->offsetX) * map->renderWidth / map->physicalWidth;
}
double RenderY(const PageMap* map, double deviceY) {
    return (deviceY + map->offsetY) * map->renderHeight / map->physicalHeight;
}
double DeviceX(const PageMap* map, double renderX) {
    return renderX * map->physicalWidth / map->renderWidth - map->offsetX;
}
double DeviceY(const PageMap* map, double renderY) {
    return renderY * map->physicalHeight / map->renderHeight - map->offsetY;
}

double StretchedMatch(const RgbImage* page, const PageMap* map, const RgbImage* art, int32_t x, int32_t y,
                      int32_t width, int32_t height, int32_t tolerance) {
    // Blocks of 3 x 3 rendered pixels against the same places of the picture, both averaged, so that
    // the rendering's resampling of thin lines and small letters weighs alike on both sides.
    constexpr int32_t kBlock = 3;
    constexpr int32_t kSolidInk = 150;
    int32_t left = int32_t(std::ceil(RenderX(map, x))) + 2, right = int32_t(RenderX(map, x + width)) - 2;
    int32_t top = int32_t(std::ceil(RenderY(map, y))) + 2, bottom = int32_t(RenderY(map, y + height)) - 2;
    auto artX = [&](double rx) { return (DeviceX(map, rx) - x) * art->width / width; };
    auto artY = [&](double ry) { return (DeviceY(map, ry) - y) * art->height / height; };
    int64_t seen = 0, matched = 0;
    for (int32_t ry = top; ry + kBlock <= bottom && ry + kBlock <= page->height; ry += kBlock)
        for (int32_t rx = left; rx + kBlock <= right && rx + kBlock <= page->width; rx += kBlock) {
            Rgb want = MeanColor(art, int32_t(artX(rx)), int32_t(artY(ry)), int32_t(artX(rx + kBlock)) - 1,
                                 int32_t(artY(ry + kBlock)) - 1);
            // Paper matches paper anywhere, and a block the picture barely touches matches most colours:
            // only the blocks of solid ink tell where the picture is.
            if (RgbDistance(want, Rgb{255, 255, 255}) < kSolidInk) continue;
            ++seen;
            Rgb got = MeanColor(page, rx, ry, rx + kBlock - 1, ry + kBlock - 1);
            matched += RgbDistance(got, want) <= tolerance ? 1 : 0;
        }
    return seen ? double(matched) / double(seen) : 0.0;
}

bool FindPictureBox(const RgbImage* page, int32_t fromY, int32_t toY, double minShare, InkBox* box) {
    auto rowInk = [page](int32_t y) {
        int32_t ink = 0;
        for (int32_t x = 0; x < page->width; ++x) ink += IsPaper(PixelAt(page, x, y)) ? 0 : 1;
        return double(ink) / page->width;
    };
    int32_t middle = (fromY + toY) / 2;
    if (rowInk(middle) < minShare) return false;
    box->top = middle;
    while (box->top - 1 >= fromY && rowInk(box->top - 1) >= minShare) --box->top;
    box->bottom = middle;
    while (box->bottom + 1 <= toY && rowInk(box->bottom + 1) >= minShare) ++box->bottom;
    int32_t rows = box->bottom - box->top + 1;
    auto columnInk = [page, box, rows](int32_t x) {
        int32_t ink = 0;
        for (int32_t y = box->top; y <= box->bottom; ++y) ink += IsPaper(PixelAt(page, x, y)) ? 0 : 1;
        return double(ink) / rows;
    };
    int32_t centre = page->width / 2;
    if (columnInk(centre) < minShare) return false;
    box->left = centre;
    while (box->left - 1 >= 0 && columnInk(box->left - 1) >= minShare) --box->left;
    box->right = centre;
    while (box->right + 1 < page->width && columnInk(box->right + 1) >= minShare) ++box->right;
    return true;
}

Rgb MeanColor(const RgbImage* image, int32_t x0, int32_t y0, int32_t x1, int32_t y1) {
    if (x0 < 0) x0 = 0;
    if (y0 < 0) y0 = 0;
    if (x1 >= image->width) x1 = image->width - 1;
    if (y1 >= image->height) y1 = image->height - 1;
    int64_t r = 0, g = 0, b = 0, n = 0;
    for (int32_t y = y0; y <= y1; ++y)
        for (int32_t x = x0; x <= x1; ++x) {
            Rgb c = PixelAt(image, x, y);
            r += c.r;
            g += c.g;
            b += c.b;
            ++n;
        }
    if (!n) return PixelAt(image, x0, y0);
    return Rgb{int32_t(r / n), int32_t(g / n), int32_t(b / n)};
}

int32_t CountNear(const RgbImage* page, Rgb color, int32_t tolerance, int32_t top, int32_t bottom) {
    int32_t count = 0;
    for (int32_t y = top < 0 ? 0 : top; y < bottom && y < page->height; ++y)
        for (int32_t x = 0; x < page->width; ++x) count += RgbDistance(PixelAt(page, x, y), color) <= tolerance;
    return count;
}

void FindTextRuns(const RgbImage* page, int32_t fromY, int32_t toY, int32_t darkness, TextRuns* runs) {
    std::memset(runs, 0, sizeof *runs);
    runs->left = page->width;
    runs->right = -1;
    runs->top = -1;
    bool inRun = false;
    for (int32_t y = fromY < 0 ? 0 : fromY; y < toY && y < page->height; ++y) {
        bool dark = false;
        for (int32_t x = 0; x < page->width; ++x) {
            Rgb c = PixelAt(page, x, y);
            if (c.r < darkness && c.g < darkness && c.b < darkness) {
                dark = true;
                if (x < runs->left) runs->left = x;
                if (x > runs->right) runs->right = x;
            }
        }
        if (dark) {
            if (runs->top < 0) runs->top = y;
            runs->bottom = y;
            if (!inRun && runs->count < 64) runs->firstTop[runs->count] = y;
            if (!inRun) ++runs->count;
        }
        inRun = dark;
    }
}
