// The Win32 half of the program-wide state: sounds, the main window and the video mode.
#pragma once

#include <windows.h>

#include "app/app_state.h"

// The two interface sounds: whole WAVE images inside the module's resources (never copied or freed).
extern const void* g_hoverSound;
extern const void* g_clickSound;
// The background window, parent of every screen; null until the opening clip has ended.
extern HWND g_mainWindow;
// 2 opening clip (its end creates the main window), 1 completion clip, 0 framed clip.
extern int32_t g_videoMode;

// Plays one of the interface sounds without cutting off one that is still playing.
void PlayInterfaceSound(const void* sound);
