// 256-colour palettes with libimagequant: one palette shared by a set of pictures (the house palette
// for pictures composed with the software blit) or one per picture (cloths).
#pragma once

#include <cstdint>
#include <vector>

#include "gfx/dib.h"

struct RgbaImage {
    int width, height;
    std::vector<uint8_t> rgba;  // rows from the top, 4 bytes a pixel, alpha 255
};

// Quantizes all images to one palette of at most maxColors; dither 0..1. Returns one 8-bit packed
// DIB per image (biClrUsed = the palette's size), or an empty vector on failure.
std::vector<uint8_t*> QuantizeWithSharedPalette(const std::vector<RgbaImage>& images, int maxColors, double dither);
