// Entry point of Tavirel.exe. For now it opens an empty background window and runs the message loop.
#include <windows.h>

static const char kMainClass[] = "TavirelPlaceholder";

static LRESULT CALLBACK Back_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_KEYDOWN:
        if (wParam == VK_ESCAPE) DestroyWindow(window);
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = Back_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = kMainClass;
    if (!RegisterClassA(&windowClass)) return 1;
    HWND window = CreateWindowExA(0, kMainClass, "Tavirel Puzzle", WS_POPUP | WS_VISIBLE | WS_MAXIMIZE, 0, 0,
                                  GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN), nullptr, nullptr,
                                  instance, nullptr);
    if (!window) return 1;
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    return int(msg.wParam);
}
