// Pictures the benchmarks cut and compose, made in memory.
#pragma once

#include <cstdint>
#include <vector>

// A zeroed packed DIB (header, room for 256 colours, rows from byte 1,064); 8-bit ones say 256 colours.
std::vector<uint8_t> MakeDib(int32_t width, int32_t height, int bits);
// A photograph with smooth gradients and some noise, so that nothing compresses into a pattern.
std::vector<uint8_t> MakePhoto(int32_t width, int32_t height);
// A 2 x 2 cut pattern numbered as the game's, with round tabs on every edge (as the artwork has).
std::vector<uint8_t> MakePattern();
