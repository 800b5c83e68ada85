// The wallpaper question after the reward display, and the finished picture set as the desktop
// wallpaper. Whatever the answer, the honour-roll check follows.
#pragma once

#include <windows.h>

#include <cstdint>

// The picture window's dismiss function after a completed puzzle: asks whether the picture should
// become the wallpaper.
void AskWallpaper(uint8_t value);
// The question's answer: yes sets the wallpaper; then, in every case, the honour-roll check.
void SetWallpaper(uint8_t yes);
// The current puzzle picture scaled to the screen, as a BMP file at path.
bool WriteWallpaperBitmap(const char* path);
// The wallpaper steps with Tavirel.bmp in windowsFolder; when that file cannot be written there (a
// normal user on today's Windows), in the local application-data folder's "Tavirel Puzzle" instead.
// The path set goes to usedPath (empty when neither could be written). Returns true when one was set.
bool PlaceWallpaper(const char* windowsFolder, char* usedPath, int capacity);
// The folder that takes the wallpaper when the Windows folder refuses it (created when missing).
bool WallpaperFallbackFolder(char* out, int capacity);
