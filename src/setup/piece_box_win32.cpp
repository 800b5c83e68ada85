// The piece boxes. For now a box is a plain framed panel; the tray view that holds pieces, its label and
// its moving and sizing come with the trays themselves.
#include "setup/piece_box_win32.h"

#include <cstdio>

#include "app/app_state.h"
#include "app/theme.h"

HWND g_pieceBoxes[kPieceBoxCount];

static void Box_OnPaint(HWND window) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    RECT all;
    GetClientRect(window, &all);
    HBRUSH cloth = CreateSolidBrush(RGB(38, 58, 44));
    FillRect(dc, &all, cloth);
    DeleteObject(cloth);
    FrameRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    char label[16];
    std::snprintf(label, sizeof label, "%d", int(GetDlgCtrlID(window)) - 400 + 1);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, kCommonTextColor);
    TextOutA(dc, 8, 6, label, lstrlenA(label));
    EndPaint(window, &paint);
}

static LRESULT CALLBACK Box_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_PAINT: Box_OnPaint(window); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

void RegisterPieceBoxClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = Box_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kPieceBoxClass;
    RegisterClassA(&windowClass);
}

void CreatePieceBoxes(HWND mainWindow) {
    const int width = 300, height = 360;
    for (int i = 0; i < kPieceBoxCount; ++i) {
        int x = g_screenWidth - 60 - width - 24 * i, y = 90 + 24 * i;
        g_pieceBoxes[i] = CreateWindowExA(0, kPieceBoxClass, "", WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN, x, y,
                                          width, height, mainWindow, reinterpret_cast<HMENU>(INT_PTR(400 + i)),
                                          GetModuleHandleA(nullptr), nullptr);
    }
}

void TogglePieceBox(int box) {
    if (box < 0 || box >= kPieceBoxCount || !g_pieceBoxes[box]) return;
    UINT show = IsWindowVisible(g_pieceBoxes[box]) ? SWP_HIDEWINDOW : SWP_SHOWWINDOW;
    SetWindowPos(g_pieceBoxes[box], nullptr, 0, 0, 0, 0,
                 show | SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOZORDER);
}
