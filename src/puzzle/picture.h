// The photograph being played (its path and its pixels as one packed DIB), and the fitting and
// nearest-neighbour scaling that the preview, the choosers and the thumbnails share.
#pragma once

#include <cstdint>

// Longest path kept, with its terminating zero.
constexpr int32_t kPicturePathCapacity = 260;

// Makes the ".bmp" file at path the current picture: the whole file read into one packed DIB (header,
// the file's colour table at 40, pixels at 1,064), always bottom-up with a positive height. A relative
// path is taken from the program folder. Only uncompressed 8- and 24-bit files are accepted. On failure
// the picture that was current stays current.
bool LoadCurrentPicture(const char* path);
// Reads the ".bmp" file at path into a new packed DIB exactly as LoadCurrentPicture would, without making
// it current (a saved game checks its photograph before it replaces the one in play). Null on failure.
// Free it with FreePackedDib.
uint8_t* ReadPictureFile(const char* path);
// Makes dib (from ReadPictureFile; the picture takes it over) current, loaded from path. A path that does
// not fit is cut to the capacity.
void SetCurrentPicture(uint8_t* dib, const char* path);
// Forgets the current picture and its path.
void ClearCurrentPicture();
// The current picture, or null when none is loaded.
const uint8_t* CurrentPicture();
// The path the current picture was loaded from as it was given; empty when none is loaded.
const char* CurrentPicturePath();

// A picture fitted into a box without changing its shape: width-bound when height * boxWidth / width
// is at most boxHeight, else height-bound. The factor is the ratio numerator / denominator (boxWidth /
// width or boxHeight / height); the fitted sides are truncated.
struct PictureFit {
    double scale;                    // numerator / denominator
    int32_t numerator, denominator;
    int32_t width, height;           // the fitted size; 0 x 0 for a picture or box without area
    bool widthBound;
};
// The sides are worked out from the integers, multiplying before dividing, so a 4:3 picture in a 4:3
// box (or a square one in a square box) fills it exactly: w * (240.0 / w) in floating point would
// sometimes lose the last pixel.
PictureFit FitPicture(int32_t width, int32_t height, int32_t boxWidth, int32_t boxHeight);
// value * scale of the fit, truncated, worked out from the integers.
int32_t ScaleByFit(int32_t value, const PictureFit& fit);

// A new packed DIB of width x height (bottom-up) sampled from dib by nearest neighbour: target column
// x takes source column trunc(x * sourceWidth / width), rows likewise counted from the top. Same depth
// and colour table as the source. 8-, 24- and 32-bit uncompressed sources; null for anything else, for
// a size below 1 x 1, or when memory is short. Free it with FreePackedDib.
uint8_t* ScalePackedDib(const uint8_t* dib, int32_t width, int32_t height);
