// `CQMCOMMAND` and `CQMBOXSCOMMAND`: the push button drawn from a vertical strip of frames (normal,
// lit, pressed, with an optional disabled frame first). Both classes share this window procedure.
#pragma once

#include <windows.h>

LRESULT CALLBACK CommandButtonProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
