// `CWNDFILE`: the saved-puzzle browser, in save mode (0) or open mode (non-zero), with its four
// `CWNDPREVFILE` thumbnail slots over "folder\*.epf".
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kBrowserClass[] = "CWNDFILE";
constexpr const char kBrowserSlotClass[] = "CWNDPREVFILE";

void RegisterBrowserClasses(HINSTANCE instance);
// Opens the browser owned by the main window, centred; the main window is disabled until it closes.
HWND OpenSavedPuzzleBrowser(uint8_t mode);
