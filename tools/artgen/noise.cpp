// Periodic value noise with a smooth (quintic) blend between lattice values.
#include "artgen/noise.h"

#include <cmath>

uint32_t HashInt(uint32_t x) {
    x ^= x >> 16;
    x *= 0x7feb352dU;
    x ^= x >> 15;
    x *= 0x846ca68bU;
    x ^= x >> 16;
    return x;
}

static double Lattice(int x, int y, int periodX, int periodY, uint32_t seed) {
    x = ((x % periodX) + periodX) % periodX;
    y = ((y % periodY) + periodY) % periodY;
    return HashInt(uint32_t(x) * 73856093U ^ uint32_t(y) * 19349663U ^ HashInt(seed)) / 4294967295.0;
}

static double Fade(double t) { return t * t * t * (t * (t * 6 - 15) + 10); }

double PeriodicNoise(double x, double y, int periodX, int periodY, uint32_t seed) {
    double fx = std::floor(x), fy = std::floor(y);
    int ix = int(fx), iy = int(fy);
    double tx = Fade(x - fx), ty = Fade(y - fy);
    double a = Lattice(ix, iy, periodX, periodY, seed), b = Lattice(ix + 1, iy, periodX, periodY, seed);
    double c = Lattice(ix, iy + 1, periodX, periodY, seed), d = Lattice(ix + 1, iy + 1, periodX, periodY, seed);
    return (a + (b - a) * tx) + ((c + (d - c) * tx) - (a + (b - a) * tx)) * ty;
}

double PeriodicFbm(double u, double v, int baseCellsX, int baseCellsY, int octaves, uint32_t seed) {
    double sum = 0, weight = 0.5, total = 0;
    int cx = baseCellsX, cy = baseCellsY;
    for (int o = 0; o < octaves; ++o) {
        sum += weight * PeriodicNoise(u * cx, v * cy, cx, cy, seed + 977U * uint32_t(o));
        total += weight;
        weight *= 0.5;
        cx *= 2;
        cy *= 2;
    }
    return sum / total;
}

uint32_t Rng::Next() {
    state = state * 1664525U + 1013904223U;
    return HashInt(state);
}
double Rng::Uniform() { return Next() / 4294967296.0; }
double Rng::Range(double low, double high) { return low + (high - low) * Uniform(); }
