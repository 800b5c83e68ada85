// Localised texts.
#include "app/strings_win32.h"

#include "app/app_state.h"

int LoadLocalString(int base, char* buffer, int size) {
    if (!buffer || size < 1) return 0;
    buffer[0] = 0;
    return LoadStringA(GetModuleHandleA(nullptr), UINT(base + g_language), buffer, size);
}
