// The display check made at start-up.
#include "app/display_check.h"

int DisplayNoticeBase(int32_t bitsPerPixel, int32_t width, int32_t height) {
    if (bitsPerPixel < kMinimumBitsPerPixel) return 160;
    if (width < kMinimumScreenWidth || height < kMinimumScreenHeight) return 200;
    return 0;
}
