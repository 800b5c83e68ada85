// The play clock: one tick a second while the game is not paused, shown as HH:MM:SS.
#pragma once

#include <cstdint>

#include "puzzle/model.h"

constexpr int kClockTextSize = 32;  // room for the largest hour count a 32-bit second counter reaches

// Hours, minutes and seconds, each with a leading "0" below 10, joined by ":" ("00:00:00" after a cut).
void FormatPlayClock(uint32_t elapsed, char* text);
// The timer's second: counts unless paused, then shows the clock.
void TickPlayClock(PuzzleState* p);
