// CWNDCAMBIOIDIOMA: the small movable window that switches between Spanish and English.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kLanguageChooserClass[] = "CWNDCAMBIOIDIOMA";

void RegisterLanguageChooserClass(HINSTANCE instance);
// Opens the chooser over the main window, which stays disabled until the chooser closes.
HWND OpenLanguageChooser();
// Switches the language at once: the word-carrying buttons reload, "Idioma" is written, the preview's
// caption follows. Screens open at the moment keep their texts until they are opened again.
void ApplyLanguage(int32_t language);

// Buttons elsewhere that carry words and must reload with the language (null when absent).
extern void (*g_reloadBarLabels)();
extern HWND g_magnifierWindow;
