// The random fraction generator.
#include "gfx/random.h"

RandomState g_random = {0.0, 1, SysUtcTime};

int NextRandom(RandomState* state) {
    state->generator = state->generator * 214013u + 2531011u;
    return int((state->generator >> 16) & 0x7FFF);
}

void SeedRandom(RandomState* state, uint32_t seed) { state->generator = seed; }

double RandomFraction(RandomState* state) {
    double s = state->seed;
    double f = 0.0;
    bool allRounds = true;
    for (int round = 1; round <= 10; ++round) {
        SysTime now;
        (state->clock ? state->clock : SysUtcTime)(&now);
        int r = NextRandom(state);
        s = (r / 32768.0 + now.millisecond * 0.001 + now.second / 60.0 + s) * 2.5;
        // The whole part is taken modulo 65,536 before it is removed.
        f = s - double(int64_t(s) & 0xFFFF);
        if (round == 10) break;
        if (f >= 0.4 && f <= 0.8999) {
            allRounds = false;
            break;
        }
    }
    state->seed = f;
    return allRounds ? f : (f - 0.4) * 2;
}
