// The remembered language and cloth, read from the settings file at start and written when chosen.
#pragma once

#include <cstdint>

// The cloth the main window dresses the table in when it is created.
extern int32_t g_rememberedCloth;

// Sets g_language and g_rememberedCloth from the settings file beside the program (English and cloth 0
// when a value is missing or not one the game writes). The program folder must be known.
void LoadPreferences();
// Keeps the cloth for the next start.
void RememberCloth(int32_t index);
