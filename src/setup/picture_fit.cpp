// The picture window's arithmetic: fitting, title placement and picture numbers.
#include "setup/picture_fit.h"

#include <cstring>

PictureSize FitPictureToWell(int32_t width, int32_t height) {
    if (width < 1 || height < 1) return PictureSize{0, 0};
    // q = 550 * height / width, its product taken in integers; q > 388 tested without dividing, which
    // is the same test for every size a file can hold.
    bool heightBound = int64_t(kPictureWellWidth) * height > int64_t(kPictureWellHeight) * width;
    int64_t numerator = heightBound ? kPictureWellHeight : kPictureWellWidth;
    int64_t denominator = heightBound ? height : width;
    // Multiplying before dividing keeps the truncation exact: with the factor 388 / 600 rounded to a
    // double, a 300 x 600 picture would come out 193 x 387 instead of 194 x 388.
    int64_t fittedWidth = width * numerator / denominator;
    int64_t fittedHeight = height * numerator / denominator;
    return PictureSize{fittedWidth < 1 ? 1 : int32_t(fittedWidth), fittedHeight < 1 ? 1 : int32_t(fittedHeight)};
}

int32_t TitleCharsBeforeDot(const char* title, int32_t capacity) {
    if (!title) return 0;
    int32_t n = 0;
    while (n < capacity && title[n] && title[n] != '.') ++n;
    return n;
}

int32_t PictureTitleLeft(int32_t screenWidth, const char* title, int32_t capacity) {
    return (screenWidth - kPictureTitleCharWidth * TitleCharsBeforeDot(title, capacity)) / 2;
}

int32_t PictureTitleTop(int32_t screenHeight) { return screenHeight / 2 - kPictureTitleAboveCentre; }

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

int32_t PictureNumberOfPath(const char* path) {
    if (!path) return -1;
    size_t length = strnlen(path, 4096);
    // The name ends where its extension begins; a "." in a folder name is no extension.
    size_t end = length;
    for (size_t i = length; i > 0; --i) {
        char c = path[i - 1];
        if (c == '\\' || c == '/') break;
        if (c == '.') {
            end = i - 1;
            break;
        }
    }
    if (end == 0 || !IsDigit(path[end - 1])) return -1;
    int32_t number = path[end - 1] - '0';
    if (end >= 2 && path[end - 2] != '\\' && IsDigit(path[end - 2])) number += 10 * (path[end - 2] - '0');
    return number;
}
