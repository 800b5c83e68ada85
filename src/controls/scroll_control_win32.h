// `CQMSROLL`: the skinned value control, three stacked zones (upper button, middle part, lower button)
// drawn from a zone-major frame strip, stepping an integer position with auto-repeat while held.
#pragma once

#include <windows.h>

LRESULT CALLBACK ScrollControlProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
