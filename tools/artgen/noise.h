// Periodic value noise for the procedural textures (wood, felt, parchment): the lattice wraps, so a
// texture sampled over one period tiles without a seam.
#pragma once

#include <cstdint>

uint32_t HashInt(uint32_t x);
// Noise in [0, 1] at (x, y) in lattice units; the lattice repeats every periodX by periodY cells.
double PeriodicNoise(double x, double y, int periodX, int periodY, uint32_t seed);
// Sum of octaves, each twice the frequency and half the weight of the last; result in about [0, 1].
// (x, y) are in units of the texture (0..1 across one period); baseCells is the first octave's lattice.
double PeriodicFbm(double u, double v, int baseCellsX, int baseCellsY, int octaves, uint32_t seed);
// A small deterministic generator for layout jitter.
struct Rng {
    uint32_t state;
    uint32_t Next();
    double Uniform();                          // [0, 1)
    double Range(double low, double high);
};
