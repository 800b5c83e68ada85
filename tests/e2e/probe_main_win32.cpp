// e2e_probe.exe: looks into a running game from a second Wine process in the same desktop, for the
// end-to-end scripts.
//   e2e_probe notice [seconds]   waits for the start-up notice, prints "NOTICE: <text>" and the classes of
//                                the other top-level windows, then presses OK
//   e2e_probe windows            prints the class of every visible top-level window
//   e2e_probe screen             prints "SCREEN: <width> <height> <bits per pixel>"
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

static BOOL CALLBACK PrintWindowClass(HWND window, LPARAM) {
    if (!IsWindowVisible(window)) return TRUE;
    char name[128] = "";
    GetClassNameA(window, name, sizeof name);
    std::printf("WINDOW: %s\n", name);
    return TRUE;
}

static int Notice(int seconds) {
    HWND dialog = nullptr;
    for (int waited = 0; waited < seconds * 10 && !dialog; ++waited) {
        dialog = FindWindowA("#32770", "Tavirel Puzzle");
        if (!dialog) Sleep(100);
    }
    if (!dialog) {
        std::printf("NOTICE: none\n");
        EnumWindows(PrintWindowClass, 0);
        return 1;
    }
    char text[400] = "";
    GetDlgItemTextA(dialog, 1000, text, sizeof text);
    std::string oneLine;
    for (const char* c = text; *c; ++c) oneLine += (*c == '\r' || *c == '\n') ? ' ' : *c;
    std::printf("NOTICE: %s\n", oneLine.c_str());
    EnumWindows(PrintWindowClass, 0);
    std::fflush(stdout);
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
    return 0;
}

int main(int argc, char** argv) {
    if (argc >= 2 && !std::strcmp(argv[1], "notice")) return Notice(argc >= 3 ? std::atoi(argv[2]) : 20);
    if (argc >= 2 && !std::strcmp(argv[1], "windows")) {
        EnumWindows(PrintWindowClass, 0);
        return 0;
    }
    if (argc >= 2 && !std::strcmp(argv[1], "screen")) {
        HDC screen = GetDC(nullptr);
        std::printf("SCREEN: %d %d %d\n", GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                    GetDeviceCaps(screen, BITSPIXEL));
        ReleaseDC(nullptr, screen);
        return 0;
    }
    std::fprintf(stderr, "usage: e2e_probe notice [seconds] | windows | screen\n");
    return 2;
}
