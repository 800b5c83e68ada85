// Shell launchers for help, the about program and the web site.
#include "app/launchers_win32.h"

#include <cstdio>

#include "app/app_win32.h"

BOOL(WINAPI* g_shellExecute)(SHELLEXECUTEINFOA* info) = ShellExecuteExA;

// ShellExecuteExA with the verb "open", owned by the main window, the process handle kept and closed.
static void OpenWithShell(const char* file) {
    SHELLEXECUTEINFOA info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS;
    info.hwnd = g_mainWindow;
    info.lpVerb = "open";
    info.lpFile = file;
    info.nShow = 0;
    if (g_shellExecute(&info) && info.hProcess) CloseHandle(info.hProcess);
}

void BuildHelpPath(char* out, int size) {
    std::snprintf(out, size_t(size), "%sHelp\\%d\\Index.htm", g_appFolder, int(g_language));
}

void LaunchHelp() {
    char path[MAX_PATH + 32];
    BuildHelpPath(path, sizeof path);
    OpenWithShell(path);
}

void LaunchAbout() {
    char path[MAX_PATH + 16];
    std::snprintf(path, sizeof path, "%sabout.exe", g_appFolder);
    WIN32_FIND_DATAA found;
    HANDLE search = FindFirstFileA(path, &found);
    if (search == INVALID_HANDLE_VALUE) return;
    FindClose(search);
    OpenWithShell(path);
}

void LaunchWebSite(uint8_t answer) {
    if (answer == 1) OpenWithShell(kWebSiteAddress);
}
