// `CQMTXT`: a text drawn over the part of its parent's background picture that lies under it, bold
// while the pointer is over it, dropped onto its shadow while pressed, clickable like a command button.
#pragma once

#include <windows.h>

LRESULT CALLBACK TextLabelProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
