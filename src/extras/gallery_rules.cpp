// The rules of the information screens: paging and places.
#include "extras/gallery_rules.h"

#include <cmath>

#include "extras/info_text.h"

namespace {

constexpr double kSocketRadius = 8.0;
constexpr double kSocketStrength = 0.3;
constexpr double kWalnutBlue = 0x0c, kWalnutGreen = 0x17, kWalnutRed = 0x2a;

// How much of the pixel whose centre is (x, y) lies inside the rounded rectangle: 1 inside, 0 outside,
// a linear ramp one pixel wide across the edge.
double SocketCoverage(double x, double y, int32_t width, int32_t height) {
    double r = kSocketRadius;
    if (2 * r > width) r = width / 2.0;
    if (2 * r > height) r = height / 2.0;
    double nearestX = x < r ? r : x > width - r ? width - r : x;
    double nearestY = y < r ? r : y > height - r ? height - r : y;
    double outside = std::hypot(x - nearestX, y - nearestY) - r;
    double coverage = 0.5 - outside;
    return coverage < 0 ? 0 : coverage > 1 ? 1 : coverage;
}

uint8_t Blend(uint8_t value, double towards, double amount) {
    return uint8_t(std::lround(value + (towards - value) * amount));
}

}  // namespace

PanelPlace GalleryWellPlace(int32_t button) {
    if (button < 0 || button >= kGalleryPageSize) return PanelPlace{-1, -1};
    return PanelPlace{kGalleryWellLeft + kGalleryWellStep * (button % kGalleryColumns),
                      kGalleryWellTop + kGalleryWellStep * (button / kGalleryColumns)};
}

int32_t GalleryNextFirst(int32_t first, int32_t count) {
    return first + kGalleryPageSize < count ? first + kGalleryPageSize : first;
}

int32_t GalleryPreviousFirst(int32_t first) {
    if (first <= 0) return first;
    return first > kGalleryPageSize ? first - kGalleryPageSize : 0;
}

int32_t GalleryPictureOnButton(int32_t first, int32_t button, int32_t count) {
    if (button < 0 || button >= kGalleryPageSize || first < 0) return -1;
    int32_t picture = first + button;
    return picture < count ? picture : -1;
}

bool GalleryHasPages(int32_t count) { return count > kGalleryPageSize; }

int32_t InfoTextLeft(int32_t screenWidth) { return screenWidth / 2 - 300; }

int32_t InfoTextTop(int32_t screenHeight) { return screenHeight / 2 - 250; }

int32_t InfoLineTop(int32_t firstTop, int32_t page, int32_t line) {
    int32_t top = firstTop;
    for (int32_t before = 0; before < line && before < kInfoLinesPerPage; ++before) top += InfoScreenStep(page, before);
    return top;
}

int32_t InfoNextPage(int32_t page) { return page < kInfoPageCount - 1 ? page + 1 : page; }

int32_t InfoPreviousPage(int32_t page) { return page > 0 ? page - 1 : page; }

void ShadeButtonSocket(uint8_t* pixels, int32_t width, int32_t height, int32_t stride) {
    if (!pixels || width < 1 || height < 1 || int64_t(stride) < 4 * int64_t(width)) return;
    for (int32_t y = 0; y < height; ++y) {
        uint8_t* row = pixels + int64_t(y) * stride;
        for (int32_t x = 0; x < width; ++x) {
            double amount = kSocketStrength * SocketCoverage(x + 0.5, y + 0.5, width, height);
            if (amount <= 0) continue;
            uint8_t* pixel = row + 4 * x;
            pixel[0] = Blend(pixel[0], kWalnutBlue, amount);
            pixel[1] = Blend(pixel[1], kWalnutGreen, amount);
            pixel[2] = Blend(pixel[2], kWalnutRed, amount);
        }
    }
}
