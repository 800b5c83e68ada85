// The play clock's text.
#include "app/clock_text.h"

#include <cstdio>

void FormatClock(uint32_t hours, uint32_t minutes, uint32_t seconds, char* out, int outSize) {
    std::snprintf(out, size_t(outSize), "%02u:%02u:%02u", hours, minutes, seconds);
}

void FormatClockSeconds(uint32_t totalSeconds, char* out, int outSize) {
    FormatClock(totalSeconds / 3600, totalSeconds / 60 % 60, totalSeconds % 60, out, outSize);
}
