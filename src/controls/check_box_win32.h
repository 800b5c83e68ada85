// `CQMCHECK`: the two-state picture button (frames unchecked, unchecked lit, checked, checked lit, with an
// optional disabled frame first); a radio box can be checked by a click but never unchecked.
#pragma once

#include <windows.h>

LRESULT CALLBACK CheckBoxProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
