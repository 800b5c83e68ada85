// `CQMANIM`: shows one frame of a grid image, ticks its parent while running so the parent can step the
// frame, and is clickable like a command button (without sounds).
#pragma once

#include <windows.h>

LRESULT CALLBACK AnimationProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
