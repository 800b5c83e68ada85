// The two choices the game remembers between runs, as they stand in the settings file: the language
// ("Idioma", written by the language chooser) and the table cloth ("Tapete").
#pragma once

#include <cstdint>

constexpr char kLanguageKey[] = "Idioma";
constexpr char kClothKey[] = "Tapete";
constexpr int32_t kClothCount = 10;

// "0" (Spanish) or "1" (English), the two the chooser offers; anything else, a missing value included,
// gives English.
int32_t LanguageFromSetting(const char* text);
// "0" .. "9"; anything else gives cloth 0, the green baize.
int32_t ClothFromSetting(const char* text);
