// The Win32 half of the program-wide state.
#include "app/app_win32.h"

#include <mmsystem.h>

const void* g_hoverSound = nullptr;
const void* g_clickSound = nullptr;
HWND g_mainWindow = nullptr;
int32_t g_videoMode = 0;

void PlayInterfaceSound(const void* sound) {
    if (!sound) return;
    PlaySoundA(static_cast<LPCSTR>(sound), nullptr, SND_MEMORY | SND_ASYNC | SND_NODEFAULT | SND_NOSTOP);
}
