// The program-wide state.
#include "app/app_state.h"

int32_t g_language = kEnglish;
int32_t g_screenWidth = 0;
int32_t g_screenHeight = 0;
char g_appFolder[kPathCapacity];

int32_t FolderOfModulePath(char* path, int32_t length) {
    if (length > kPathCapacity - 1) length = kPathCapacity - 1;
    for (int32_t i = length; i >= 0; --i) {
        if (path[i] != '\\') continue;
        if (i >= 1 && i < kPathCapacity - 1) {
            path[i + 1] = 0;
            return i + 1;
        }
        break;
    }
    return length;
}
