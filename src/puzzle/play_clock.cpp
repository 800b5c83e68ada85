// The play clock's arithmetic and text.
#include "puzzle/play_clock.h"

#include <cstdio>

void FormatPlayClock(uint32_t elapsed, char* text) {
    uint32_t hours = elapsed / 3600;
    uint32_t minutes = elapsed / 60 - 60 * hours;
    uint32_t seconds = elapsed % 60;
    std::snprintf(text, kClockTextSize, "%s%u:%s%u:%s%u", hours < 10 ? "0" : "", hours, minutes < 10 ? "0" : "",
                  minutes, seconds < 10 ? "0" : "", seconds);
}

void TickPlayClock(PuzzleState* p) {
    if (!p->paused) p->elapsed += 1;
    char text[kClockTextSize];
    FormatPlayClock(p->elapsed, text);
    if (g_puzzleHooks.showClock) g_puzzleHooks.showClock(text);
}
