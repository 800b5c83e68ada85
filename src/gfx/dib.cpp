// Packed DIB helpers and the software blit between packed DIBs.
#include "gfx/dib.h"

#include <cstring>

#include "app/platform.h"
#include "gfx/geometry.h"

int64_t DibStride(int32_t bitCount, int32_t width) {
    if (bitCount < 1 || width < 1) return 0;
    return (int64_t(bitCount) * width + 31) / 32 * 4;
}

uint8_t* AllocPackedDib8(int32_t width, int32_t height) {
    if (width < 1 || height < 1) return nullptr;
    int64_t stride = (int64_t(width) + 3) / 4 * 4;
    int64_t image = stride * height;
    if (image > 0x7FFFFFFF - int64_t(kDibPixelOffset)) return nullptr;
    uint8_t* dib = static_cast<uint8_t*>(SysAllocBlock(size_t(image) + kDibPixelOffset));
    if (!dib) return nullptr;
    DibHeader header{};
    header.biSize = kDibHeaderBytes;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 8;
    header.biSizeImage = uint32_t(image);
    std::memcpy(dib, &header, sizeof header);
    return dib;
}

uint8_t* AllocPackedDib(int32_t width, int32_t height, uint16_t bitCount, uint32_t colorsUsed) {
    if (width < 1 || height < 1 || colorsUsed > kDibMaxColors) return nullptr;
    int64_t image = DibStride(bitCount, width) * height;
    if (image <= 0 || image > 0x7FFFFFFF - int64_t(kDibPixelOffset)) return nullptr;
    uint8_t* dib = static_cast<uint8_t*>(SysAllocBlock(size_t(image) + kDibPixelOffset));
    if (!dib) return nullptr;
    std::memset(dib, 0, size_t(image) + kDibPixelOffset);
    DibHeader* header = DibHeaderOf(dib);
    header->biSize = kDibHeaderBytes;
    header->biWidth = width;
    header->biHeight = height;
    header->biPlanes = 1;
    header->biBitCount = bitCount;
    header->biSizeImage = uint32_t(image);
    header->biClrUsed = colorsUsed;
    return dib;
}

void FreePackedDib(uint8_t* dib) { SysFreeBlock(dib); }

size_t PackedDibBytes(const uint8_t* dib) { return dib ? kDibPixelOffset + DibHeaderOf(dib)->biSizeImage : 0; }

void CopyPalette(const uint8_t* from, uint8_t* to) {
    if (!from || !to) return;
    const DibHeader* src = DibHeaderOf(from);
    DibHeader* dst = DibHeaderOf(to);
    dst->biBitCount = src->biBitCount;
    dst->biClrUsed = src->biClrUsed;
    uint32_t colors = src->biClrUsed <= kDibMaxColors ? src->biClrUsed : kDibMaxColors;
    std::memmove(DibPalette(to), DibPalette(from), colors * sizeof(DibColor));
}

// Row stride the blit uses for an image of this width at the target's pixel size.
static int64_t BlitStride(int32_t width, int bytesPerPixel) {
    return bytesPerPixel == 1 ? (int64_t(width) + 3) / 4 * 4 : (int64_t(width) + 1) * 3 / 4 * 4;
}

// The blit trusts only images whose pixel area really holds their rows.
static bool BlitImageFits(const uint8_t* dib, int bytesPerPixel) {
    const DibHeader* h = DibHeaderOf(dib);
    if (h->biWidth < 1 || h->biHeight < 1) return false;
    return BlitStride(h->biWidth, bytesPerPixel) * h->biHeight <= int64_t(h->biSizeImage);
}

void SoftBlit(uint8_t* target, int32_t x, int32_t y, int32_t width, int32_t height, const uint8_t* source,
              int32_t sx, int32_t sy, uint32_t rop) {
    if (!target || !source || width == 0 || height == 0) return;
    if (rop != kRopSrcCopy && rop != kRopSrcAnd && rop != kRopSrcInvert) return;
    const DibHeader* th = DibHeaderOf(target);
    const DibHeader* sh = DibHeaderOf(source);
    int bpp = th->biBitCount == 8 ? 1 : 3;
    if (!BlitImageFits(target, bpp) || !BlitImageFits(source, bpp)) return;

    Rect clipped;
    if (!RectRelation(Rect{x, y, width, height}, Rect{0, 0, th->biWidth, th->biHeight}, RECT_INTERSECTION, &clipped))
        return;
    if (clipped.width <= 0 || clipped.height <= 0) return;
    Rect fromRect{sx + (clipped.x - x), sy + (clipped.y - y), clipped.width, clipped.height};
    Rect from;
    if (!RectRelation(fromRect, Rect{0, 0, sh->biWidth, sh->biHeight}, RECT_INTERSECTION, &from)) return;
    if (from.width <= 0 || from.height <= 0) return;
    // Clipping the source moves the target corner by the same amount.
    int32_t tx = clipped.x + (from.x - fromRect.x);
    int32_t ty = clipped.y + (from.y - fromRect.y);

    int64_t targetStride = BlitStride(th->biWidth, bpp);
    int64_t sourceStride = BlitStride(sh->biWidth, bpp);
    uint8_t* tPixels = DibPixels(target);
    const uint8_t* sPixels = DibPixels(source);
    int32_t rowBytes = from.width * bpp;
    for (int32_t r = from.height - 1; r >= 0; --r) {
        uint8_t* t = tPixels + (int64_t(th->biHeight) - (ty + r) - 1) * targetStride + int64_t(tx) * bpp;
        const uint8_t* s = sPixels + (int64_t(sh->biHeight) - (from.y + r) - 1) * sourceStride + int64_t(from.x) * bpp;
        for (int32_t i = rowBytes - 1; i >= 0; --i) {
            if (rop == kRopSrcCopy)
                t[i] = s[i];
            else if (rop == kRopSrcAnd)
                t[i] &= s[i];
            else
                t[i] ^= s[i];
        }
    }
}
