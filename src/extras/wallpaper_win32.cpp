// The wallpaper question and the steps that put the finished picture on the desktop.
#include "extras/wallpaper_win32.h"

#include <shlobj.h>

#include <cstdio>
#include <cstring>

#include "app/app_win32.h"
#include "app/message_window_win32.h"
#include "extras/honour_win32.h"
#include "extras/wallpaper.h"
#include "puzzle/picture.h"

constexpr int kStrWallpaperQuestion = 140;

void AskWallpaper(uint8_t) {
    ShowMessage(kStrWallpaperQuestion, g_mainWindow, SetWallpaper, false);
}

bool WriteWallpaperBitmap(const char* path) {
    return WriteWallpaperFile(path, CurrentPicture(), g_screenWidth, g_screenHeight);
}

bool WallpaperFallbackFolder(char* out, int capacity) {
    char base[MAX_PATH] = "";
    if (FAILED(SHGetFolderPathA(nullptr, CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, base)))
        return false;
    const int length = std::snprintf(out, size_t(capacity), "%s\\Tavirel Puzzle", base);
    if (length <= 0 || length >= capacity) return false;
    if (!CreateDirectoryA(out, nullptr) && GetLastError() != ERROR_ALREADY_EXISTS) return false;
    return true;
}

// Writes Tavirel.bmp into folder, clearing a read-only mark an older copy may carry.
static bool WriteInto(const char* folder, char* path, int capacity) {
    const int length = std::snprintf(path, size_t(capacity), "%s\\Tavirel.bmp", folder);
    if (length <= 0 || length >= capacity) return false;
    SetFileAttributesA(path, FILE_ATTRIBUTE_NORMAL);
    return WriteWallpaperBitmap(path);
}

bool PlaceWallpaper(const char* windowsFolder, char* usedPath, int capacity) {
    usedPath[0] = 0;
    // The old wallpaper goes first, so that its file is free to be replaced.
    SystemParametersInfoA(SPI_SETDESKWALLPAPER, 0, nullptr, SPIF_UPDATEINIFILE | SPIF_SENDWININICHANGE);
    char path[MAX_PATH] = "";
    bool written = WriteInto(windowsFolder, path, sizeof path);
    if (!written) {
        char folder[MAX_PATH] = "";
        written = WallpaperFallbackFolder(folder, sizeof folder) && WriteInto(folder, path, sizeof path);
    }
    if (!written) return false;  // the desktop stays without a wallpaper, as the player would see anyway
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\desktop", 0, KEY_SET_VALUE, &key) == ERROR_SUCCESS) {
        RegSetValueExA(key, "TileWallpaper", 0, REG_SZ, reinterpret_cast<const BYTE*>("0"), 2);
        RegCloseKey(key);
    }
    SystemParametersInfoA(SPI_SETDESKWALLPAPER, 0, path, SPIF_UPDATEINIFILE | SPIF_SENDWININICHANGE);
    std::snprintf(usedPath, size_t(capacity), "%s", path);
    return true;
}

void SetWallpaper(uint8_t yes) {
    if (yes) {
        char windowsFolder[MAX_PATH] = "";
        GetWindowsDirectoryA(windowsFolder, sizeof windowsFolder);
        char used[MAX_PATH];
        PlaceWallpaper(windowsFolder, used, sizeof used);
    }
    CheckForRecord();
}
