// Whether the display can run the game, and which notice to show when it cannot.
#pragma once

#include <cstdint>

constexpr int32_t kMinimumBitsPerPixel = 16;
constexpr int32_t kMinimumScreenWidth = 800;
constexpr int32_t kMinimumScreenHeight = 600;

// 0 when the display is good enough; otherwise the string base of the notice: the colour depth is
// judged first, so a small screen in 8-bit colour only hears about its colours.
int DisplayNoticeBase(int32_t bitsPerPixel, int32_t width, int32_t height);
