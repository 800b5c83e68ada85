// The random fraction used to scatter pieces: a persistent double seed stirred with the clock and a
// linear congruential generator. Time source and generator state are plain fields so tests can replay.
#pragma once

#include <cstdint>

#include "app/platform.h"

struct RandomState {
    double seed;                      // s, carried from one fraction to the next
    uint32_t generator;               // state of the linear congruential generator
    void (*clock)(SysTime* utcNow);   // the UTC time source; SysUtcTime unless a test replaces it
};

// The program-wide generator the game draws from.
extern RandomState g_random;

// The next value of the 15-bit generator: state = state * 214013 + 2531011, value = bits 16..30.
int NextRandom(RandomState* state);
void SeedRandom(RandomState* state, uint32_t seed);

// A fraction in [0, 1): up to ten rounds of stirring; an early stop in 0.4 .. 0.8999 is stretched
// back to the whole range as (f - 0.4) * 2.
double RandomFraction(RandomState* state);
inline double RandomFraction() { return RandomFraction(&g_random); }
