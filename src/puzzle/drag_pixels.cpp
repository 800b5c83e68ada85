// Drawing the dragged piece at the screen's format, and the block copies of a drag step.
#include "puzzle/drag_pixels.h"

#include <algorithm>
#include <cstring>

#include "puzzle/board_logic.h"
#include "puzzle/cut.h"

int32_t MaskShift(uint32_t mask) {
    if (!mask) return 32;
    int32_t shift = 0;
    while (!(mask & 1u)) {
        mask >>= 1;
        ++shift;
    }
    return shift;
}

namespace {

int32_t MaskDivisor(uint32_t mask, int32_t shift) {
    uint64_t top = shift >= 32 ? 0 : mask >> shift;
    uint64_t divisor = 256 / (top + 1);
    return divisor ? int32_t(divisor) : 1;  // a channel wider than 8 bits takes the colour unchanged
}

}  // namespace

bool DescribeScreenFormat(int32_t bits, uint32_t compression, uint32_t redMask, uint32_t greenMask,
                          uint32_t blueMask, ScreenFormat* out) {
    ScreenFormat f{};
    f.bits = bits;
    if (bits == 16 && compression == kBitFields) {
        f.redShift = MaskShift(redMask);
        f.greenShift = MaskShift(greenMask);
        f.blueShift = MaskShift(blueMask);
        f.redDivisor = MaskDivisor(redMask, f.redShift);
        f.greenDivisor = MaskDivisor(greenMask, f.greenShift);
        f.blueDivisor = MaskDivisor(blueMask, f.blueShift);
    } else if (!(bits == 24 || (bits == 32 && compression == kBitFields))) {
        return false;
    }
    *out = f;
    return true;
}

uint32_t ScreenPixel(const ScreenFormat& f, uint8_t blue, uint8_t green, uint8_t red) {
    if (f.bits != 16) return uint32_t(blue) | uint32_t(green) << 8 | uint32_t(red) << 16;
    auto place = [](uint32_t value, int32_t shift) { return shift >= 32 ? 0u : value << shift; };
    return (place(red / uint32_t(f.redDivisor), f.redShift) + place(green / uint32_t(f.greenDivisor), f.greenShift) +
            place(blue / uint32_t(f.blueDivisor), f.blueShift)) & 0xFFFF;
}

int32_t SurfaceStride(int32_t bitsPerPixel, int32_t width) { return (bitsPerPixel * width + 31) / 32 * 4; }

void CopySurfaceArea(PixelSurface* to, int32_t x, int32_t y, const PixelSurface* from, int32_t fromX,
                     int32_t fromY, int32_t width, int32_t height) {
    // Clip the source, then the target, moving both corners together.
    int32_t cut = std::max({0, -fromX, -x});
    fromX += cut, x += cut, width -= cut;
    cut = std::max({0, -fromY, -y});
    fromY += cut, y += cut, height -= cut;
    width = std::min({width, from->width - fromX, to->width - x});
    height = std::min({height, from->height - fromY, to->height - y});
    if (width <= 0 || height <= 0) return;
    const int32_t bpp = to->bytesPerPixel;
    for (int32_t row = 0; row < height; ++row)
        std::memmove(to->bits + int64_t(to->height - 1 - (y + row)) * to->stride + int64_t(x) * bpp,
                     from->bits + int64_t(from->height - 1 - (fromY + row)) * from->stride + int64_t(fromX) * bpp,
                     size_t(width) * bpp);
}

namespace {

inline void PutPixel(uint8_t* at, int32_t bytes, uint32_t value) {
    at[0] = uint8_t(value);
    at[1] = uint8_t(value >> 8);
    if (bytes > 2) at[2] = uint8_t(value >> 16);
    if (bytes > 3) at[3] = uint8_t(value >> 24);
}

}  // namespace

void CopyViewToSurface(const ViewSurface& view, int32_t x, int32_t y, int32_t width, int32_t height,
                       const ScreenFormat& f, PixelSurface* to) {
    if (!view.pixels) return;
    const int32_t bytes = to->bytesPerPixel;
    for (int32_t row = 0; row < height && row < to->height; ++row) {
        const int32_t vy = y + row;
        if (vy < 0 || vy >= view.height) continue;
        const uint8_t* in = view.pixels + int64_t(view.height - 1 - vy) * view.stride;
        uint8_t* out = to->bits + int64_t(to->height - 1 - row) * to->stride;
        for (int32_t col = 0; col < width && col < to->width; ++col) {
            const int32_t vx = x + col;
            if (vx < 0 || vx >= view.width) continue;
            const uint8_t* px = in + 3 * int64_t(vx);
            PutPixel(out + int64_t(col) * bytes, bytes, ScreenPixel(f, px[0], px[1], px[2]));
        }
    }
}

void DrawPieceOnSurface(const PuzzleState* p, uint32_t piece, const ScreenFormat& f, PixelSurface* to, int32_t x,
                        int32_t y) {
    if (!p->sheet) return;
    const int32_t W = p->boxWidth, H = p->boxHeight, bytes = to->bytesPerPixel;
    const bool selected = !p->pieces[piece].lit;
    const int32_t firstRow = std::max(0, -y), endRow = std::min(H, to->height - y);
    const int32_t firstColumn = std::max(0, -x), endColumn = std::min(W, to->width - x);
    for (int32_t boxRow = firstRow; boxRow < endRow; ++boxRow) {
        const uint32_t* in = SheetPixel(p, piece, 0, boxRow);
        uint8_t* out = to->bits + int64_t(to->height - 1 - (y + boxRow)) * to->stride + int64_t(x) * bytes;
        const bool stippleRow = selected && boxRow % 2 == 0;
        OutlineSpan whole{0, W};
        uint32_t spanCount = 1;
        const OutlineSpan* spans = &whole;
        if (p->outlineShapes) {
            OutlineRow row = PieceOutlineRow(p, piece, boxRow);
            spans = row.spans;
            spanCount = row.count;
        }
        for (uint32_t m = 0; m < spanCount; ++m) {
            const int32_t from = std::max(spans[m].begin, firstColumn), end = std::min(spans[m].end, endColumn);
            for (int32_t bx = from; bx < end; ++bx) {
                uint32_t v = in[bx];
                if (!(v >> 24)) continue;
                if (stippleRow && bx % 3 == 0) v ^= 0x00FFFFFFu;
                // 32 bits take the sheet pixel as it is, inside flag and all.
                uint32_t pixel = f.bits == 32 ? v : ScreenPixel(f, uint8_t(v), uint8_t(v >> 8), uint8_t(v >> 16));
                PutPixel(out + int64_t(bx) * bytes, bytes, pixel);
            }
        }
    }
}

void RestoreDragBackground(const PuzzleState* p, PixelSurface* screen, const PixelSurface* background, Point oldPos) {
    CopySurfaceArea(screen, oldPos.x, oldPos.y, background, 0, 0, p->boxWidth, p->boxHeight);
}

Rect DragEnterPixels(const PuzzleState* p, uint32_t piece, const ScreenFormat& f, PixelSurface* screen,
                     PixelSurface* background, PixelSurface* composition, Point newPos) {
    const int32_t W = p->boxWidth, H = p->boxHeight;
    CopySurfaceArea(composition, 0, 0, screen, newPos.x, newPos.y, W, H);
    CopySurfaceArea(background, 0, 0, composition, 0, 0, W, H);
    DrawPieceOnSurface(p, piece, f, composition, 0, 0);
    CopySurfaceArea(screen, newPos.x, newPos.y, composition, 0, 0, W, H);
    return Rect{newPos.x, newPos.y, W, H};
}

Rect DragStepPixels(const PuzzleState* p, uint32_t piece, const ScreenFormat& f, PixelSurface* screen,
                    PixelSurface* background, PixelSurface* composition, Point oldPos, Point newPos) {
    const int32_t W = p->boxWidth, H = p->boxHeight;
    Rect area;
    if (!DragStepArea(Rect{oldPos.x, oldPos.y, W, H}, Rect{newPos.x, newPos.y, W, H}, &area)) {
        // Apart: the old place gets its background back directly on the screen.
        RestoreDragBackground(p, screen, background, oldPos);
        return DragEnterPixels(p, piece, f, screen, background, composition, newPos);
    }
    // Overlapping: the union is put together off the screen and copied once, so nothing flickers.
    CopySurfaceArea(composition, 0, 0, screen, area.x, area.y, area.width, area.height);
    CopySurfaceArea(composition, oldPos.x - area.x, oldPos.y - area.y, background, 0, 0, W, H);
    CopySurfaceArea(background, 0, 0, composition, newPos.x - area.x, newPos.y - area.y, W, H);
    DrawPieceOnSurface(p, piece, f, composition, newPos.x - area.x, newPos.y - area.y);
    CopySurfaceArea(screen, area.x, area.y, composition, 0, 0, area.width, area.height);
    return area;
}
