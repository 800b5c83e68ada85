// The program-wide state every screen reads: language, screen size and the program folder.
#pragma once

#include <cstdint>

// Language index: 0 Spanish, 1 English, 2 Portuguese, 3 Italian, 4 French, 5 German.
// Every localised text or word-carrying picture is base + g_language.
enum Language { kSpanish, kEnglish, kPortuguese, kItalian, kFrench, kGerman };
constexpr int kLanguageCount = 6;

extern int32_t g_language;
// Read once when the program starts; every layout is computed from them.
extern int32_t g_screenWidth;
extern int32_t g_screenHeight;
// The program's folder with its trailing backslash; every data path is this plus a relative name.
constexpr int kPathCapacity = 260;
extern char g_appFolder[kPathCapacity];

// The folder part of a module path, by the program's rule: cut just behind the last backslash when it
// stands at index 1 .. 259; otherwise (none, or only at index 0) the whole name stays. Returns the length.
int32_t FolderOfModulePath(char* path, int32_t length);
