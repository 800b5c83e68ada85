// Looks at a printed page as rendered from its PDF (a binary PPM): the banners, the photograph's place
// and colours, the caption and the lines of text, in printer units mapped onto the rendering.
#pragma once

#include <cstdint>

// RGB pixels, top row first, three bytes each.
struct RgbImage {
    int32_t width, height;
    uint8_t* pixels;
};

struct Rgb {
    int32_t r, g, b;
};

void FreeRgbImage(RgbImage* image);
// A binary PPM ("P6", maxval 255) as pdftoppm writes it; false for anything else or a short file.
bool ReadPpm(const char* path, RgbImage* image);
// A BMP through the game's BMP reader (1, 4, 8, 24 or 32 bits, either row order).
bool ReadBmpAsRgb(const char* path, RgbImage* image);
// A picture of the open pack.
bool ReadPackItemAsRgb(uint32_t id, RgbImage* image);
Rgb PixelAt(const RgbImage* image, int32_t x, int32_t y);
// Sum of the three channels' differences.
int32_t RgbDistance(Rgb a, Rgb b);
bool IsPaper(Rgb c);

// The printer's page as the rendering shows it: the printable area (HORZRES x VERTRES) lies at the
// physical offset inside the physical sheet, which fills the rendered image.
struct PageMap {
    int32_t horzRes, vertRes;
    int32_t physicalWidth, physicalHeight;
    int32_t offsetX, offsetY;
    int32_t renderWidth, renderHeight;
};
double RenderX(const PageMap* map, double deviceX);
double RenderY(const PageMap* map, double deviceY);
double DeviceX(const PageMap* map, double renderX);
double DeviceY(const PageMap* map, double renderY);

// Share of the picture's ink (its pixels that are not paper) found again on the page where the picture
// stretched over the device rectangle puts it (a border of two rendered pixels is left out: resampling
// blurs it).
double StretchedMatch(const RgbImage* page, const PageMap* map, const RgbImage* art, int32_t x, int32_t y,
                      int32_t width, int32_t height, int32_t tolerance);

// The rendered rows and columns, around the page's centre, that are not paper: a row or column
// belongs to the picture when at least minShare of it is ink. False when the centre is paper.
struct InkBox {
    int32_t left, top, right, bottom;  // rendered pixels, inclusive
};
bool FindPictureBox(const RgbImage* page, int32_t fromY, int32_t toY, double minShare, InkBox* box);

// Mean colour of a rectangle of an image (clipped to it).
Rgb MeanColor(const RgbImage* image, int32_t x0, int32_t y0, int32_t x1, int32_t y1);

// Rendered pixels between rows top and bottom within the tolerance of a colour.
int32_t CountNear(const RgbImage* page, Rgb color, int32_t tolerance, int32_t top, int32_t bottom);

// Runs of rows holding dark ink (every channel below darkness) between two rows, with the leftmost and
// rightmost dark column seen.
struct TextRuns {
    int32_t count;
    int32_t firstTop[64];
    int32_t left, right, top, bottom;
};
void FindTextRuns(const RgbImage* page, int32_t fromY, int32_t toY, int32_t darkness, TextRuns* runs);
