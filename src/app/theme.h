// Shared look of texts drawn by the program: the common font face and text colours (0x00BBGGRR).
#pragma once

#include <cstdint>

// Present on every Windows since XP and in Wine's own fonts.
constexpr const char kCommonFontFace[] = "Tahoma";
constexpr uint32_t kCommonTextColor = 0x00E8F4FF;    // warm ivory
constexpr uint32_t kSelectedTextColor = 0x0040C8FF;  // gold, for the chosen entry of a list
