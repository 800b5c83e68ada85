// about.exe: the game's name, version and credits, including the licences of the bundled photographs
// (read from Credits.txt beside the program).
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "app/version.h"

static const char kAboutClass[] = "TavirelAbout";
static const char kHeading[] =
    "Tavirel Puzzle " TAVIREL_VERSION_TEXT "\r\n"
    "A photo jigsaw game.\r\n"
    "\r\n"
    "Program, artwork, sounds and clips made by the Tavirel Puzzle team.\r\n"
    "\r\n";

// Credits.txt beside about.exe, with its lines turned into the edit control's CR LF form.
static std::string ReadCredits() {
    char path[MAX_PATH];
    DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
    char* slash = std::strrchr(path, '\\');
    if (!length || !slash) return std::string();
    std::strcpy(slash + 1, "Credits.txt");
    FILE* file = std::fopen(path, "rb");
    if (!file) return "Credits.txt was not found beside the program.\r\n";
    std::string text;
    int ch;
    while ((ch = std::fgetc(file)) != EOF) {
        if (ch == '\r') continue;
        if (ch == '\n') text += '\r';
        text += char(ch);
    }
    std::fclose(file);
    return text;
}

static LRESULT CALLBACK About_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE: {
        std::string text = std::string(kHeading) + ReadCredits();
        RECT client;
        GetClientRect(window, &client);
        HWND edit = CreateWindowExA(WS_EX_CLIENTEDGE, "EDIT", text.c_str(),
                                    WS_CHILD | WS_VISIBLE | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL, 8,
                                    8, client.right - 16, client.bottom - 16, window, nullptr,
                                    GetModuleHandleA(nullptr), nullptr);
        SendMessageA(edit, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
        return 0;
    }
    case WM_CHAR:
        if (wParam == VK_ESCAPE) DestroyWindow(window);
        return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = About_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kAboutClass;
    if (!RegisterClassA(&windowClass)) return 1;
    int width = 560, height = 420;
    HWND window = CreateWindowExA(0, kAboutClass, "About Tavirel Puzzle", WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU,
                                  (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                                  (GetSystemMetrics(SM_CYSCREEN) - height) / 2, width, height, nullptr, nullptr,
                                  instance, nullptr);
    if (!window) return 1;
    ShowWindow(window, show);
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    return int(msg.wParam);
}
