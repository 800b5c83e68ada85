// The finished picture as a desktop wallpaper: its size on the screen and the BMP file that holds it.
#pragma once

#include <cstdint>

struct WallpaperSize {
    int32_t width, height;  // 0 x 0 when the picture or the screen has no area
};

// The picture scaled to fill the screen's width, or its height when it is relatively taller:
// f = screenWidth / pictureWidth when pictureHeight * screenWidth / pictureWidth <= screenHeight,
// else screenHeight / pictureHeight, worked out in doubles; the sides are truncated.
WallpaperSize WallpaperSizeFor(int32_t pictureWidth, int32_t pictureHeight, int32_t screenWidth,
                               int32_t screenHeight);

// Colour-table entries a header stands for: biClrUsed, or the full table of an 8-bit-or-less picture
// that leaves it 0; none for deeper pictures.
uint32_t WallpaperColorCount(const uint8_t* dib);

// Writes the packed DIB picture, scaled for the screen, as a BMP file: the 14-byte file header, the
// picture's header with the new size (and its true pixel byte count), its colour table and the rows.
// The file is written beside path and then put in its place, so a failure never leaves half a bitmap
// where a good one stood. False when the picture cannot be scaled or the file cannot be written.
bool WriteWallpaperFile(const char* path, const uint8_t* picture, int32_t screenWidth, int32_t screenHeight);
