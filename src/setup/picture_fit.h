// The picture window's arithmetic: a photograph fitted into the 550 x 388 well of the frame, the place
// of its title, and the picture number that ends a picture's file name (its title is string 5000 + it).
#pragma once

#include <cstdint>

constexpr int32_t kPictureWellWidth = 550;
constexpr int32_t kPictureWellHeight = 388;
// The title is centred as if every character before its first "." were this wide.
constexpr int32_t kPictureTitleCharWidth = 15;
constexpr int32_t kPictureTitleAboveCentre = 270;  // the title's top, up from the screen's middle

struct PictureSize {
    int32_t width, height;
};

// q = 550 * height / width: above 388 the height binds (factor 388 / height), otherwise the width
// (550 / width); both sides are scaled by the factor and truncated. Height is the picture's height in
// rows (a top-down file's negative height made positive by the caller). A side that would shrink below
// one pixel keeps one; a picture without area gives 0 x 0.
PictureSize FitPictureToWell(int32_t width, int32_t height);

// Characters of the title before its first "."; the length of the whole title when it has none.
// Never reads past capacity characters, terminated or not.
int32_t TitleCharsBeforeDot(const char* title, int32_t capacity);
// The title's left edge: (screenWidth - 15 * n) / 2, n as above.
int32_t PictureTitleLeft(int32_t screenWidth, const char* title, int32_t capacity);
int32_t PictureTitleTop(int32_t screenHeight);

// The number at the end of a picture's path: the last character is the units digit, the one before it
// the tens digit unless it is a "\" (or no digit at all, as in "Rose7"). An extension after the name
// ("Image\Daisy11.bmp") is looked past. -1 when the name does not end in a digit.
int32_t PictureNumberOfPath(const char* path);
