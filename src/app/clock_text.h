// The play clock's text, HH:MM:SS.
#pragma once

#include <cstdint>

// Hours, minutes and seconds in decimal, each below 10 led by a "0", joined by ":"; hours may run past
// 99 (100 hours show 100:00:00). out needs room for 16 characters.
void FormatClock(uint32_t hours, uint32_t minutes, uint32_t seconds, char* out, int outSize);
// The same for a count of seconds.
void FormatClockSeconds(uint32_t totalSeconds, char* out, int outSize);
