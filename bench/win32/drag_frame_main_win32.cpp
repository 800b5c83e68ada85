// drag_frame_bench.exe: how long one drag step takes in the real board window, with the largest puzzle a
// screen allows (the largest zoom and the most pieces of a 1600 x 1200 photograph).
//   drag_frame_bench PACK.rf [steps]     run it in a Wine desktop of the screen size to measure, e.g.
//   wine explorer /desktop=bench,1920x1080 drag_frame_bench.exe Z:\...\Tavirel.rf
// Prints the table, the grid and the average time of a drag step (WM_MOUSEMOVE of a captured piece,
// its off-screen composition and its one copy to the window), and of a full repaint of the table.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/app_win32.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "gfx/pack_writer.h"
#include "puzzle/board_window_win32.h"
#include "puzzle/compose.h"
#include "puzzle/model.h"
#include "puzzle/picture.h"
#include "setup/choosers.h"

static LRESULT CALLBACK Parent_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcA(window, message, wParam, lParam);
}

static void Pump() {
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&msg);
}

static double Seconds(LARGE_INTEGER from, LARGE_INTEGER to) {
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return double(to.QuadPart - from.QuadPart) / double(frequency.QuadPart);
}

int main(int argc, char** argv) {
    if (argc < 2 || !OpenPack(&g_pack, argv[1])) {
        std::fprintf(stderr, "usage: drag_frame_bench PACK.rf [steps]\n");
        return 2;
    }
    int steps = argc >= 3 ? std::atoi(argv[2]) : 400;
    HINSTANCE instance = GetModuleHandleA(nullptr);
    g_screenWidth = GetSystemMetrics(SM_CXSCREEN);
    g_screenHeight = GetSystemMetrics(SM_CYSCREEN);
    RegisterControlClasses(instance);
    RegisterBoardClass(instance);
    WNDCLASSA parentClass = {};
    parentClass.lpfnWndProc = Parent_WindowProc;
    parentClass.hInstance = instance;
    parentClass.lpszClassName = "DragFrameBench";
    RegisterClassA(&parentClass);
    HWND parent = CreateWindowExA(0, "DragFrameBench", "", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, g_screenWidth,
                                  g_screenHeight, nullptr, nullptr, instance, nullptr);
    g_mainWindow = parent;

    // A 1600 x 1200 photograph whose every pixel differs, written beside the program.
    uint8_t* photo = AllocPackedDib(1600, 1200, 24, 0);
    for (int32_t y = 0; y < 1200; ++y)
        for (int32_t x = 0; x < 1600; ++x) {
            uint8_t* p = DibPixels(photo) + size_t(y) * 4800 + 3 * size_t(x);
            p[0] = uint8_t(x);
            p[1] = uint8_t(y);
            p[2] = uint8_t((x ^ y) >> 3);
        }
    WriteDibAsBmp("drag_frame_photo.bmp", photo);
    FreePackedDib(photo);
    uint8_t* cloth = LoadPackItem(&g_pack, 6000);
    SetTableTexture(&g_puzzle, cloth);
    HWND table = CreateTable(parent);
    if (!LoadCurrentPicture("drag_frame_photo.bmp")) return 1;
    PrepareImageForSizing();
    SetZoomPercent(100);  // the largest zoom, which also sets the most pieces
    LARGE_INTEGER t0, t1;
    QueryPerformanceCounter(&t0);
    bool cut = StartNewGame(0);
    QueryPerformanceCounter(&t1);
    UpdateWindow(table);
    Pump();
    if (!cut) {
        std::printf("the cut failed\n");
        return 1;
    }
    std::printf("table %d x %d, grid %d x %d = %u pieces, boxes %d x %d, cut and full compose %.1f ms\n",
                int(g_puzzle.tableWidth), int(g_puzzle.tableHeight), int(g_puzzle.rows), int(g_puzzle.cols),
                PieceCount(&g_puzzle), int(g_puzzle.boxWidth), int(g_puzzle.boxHeight), Seconds(t0, t1) * 1e3);

    // Grab the topmost piece in the middle of its cell and move it back and forth a few pixels a step.
    uint32_t top = g_puzzle.views[kTableView].entries[0];
    const PieceRecord& piece = g_puzzle.pieces[top];
    int32_t gx = piece.x + g_puzzle.boxWidth / 2, gy = piece.y + g_puzzle.boxHeight / 2;
    SendMessageA(table, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(gx, gy));
    QueryPerformanceCounter(&t0);
    for (int k = 0; k < steps; ++k) {
        int d = (k % 40) < 20 ? k % 20 : 20 - k % 20;
        SendMessageA(table, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(gx + 3 * d, gy + 2 * d));
    }
    GdiFlush();
    QueryPerformanceCounter(&t1);
    SendMessageA(table, WM_LBUTTONUP, 0, MAKELPARAM(gx, gy));
    std::printf("drag step: %.1f us (mean of %d)\n", Seconds(t0, t1) * 1e6 / steps, steps);

    QueryPerformanceCounter(&t0);
    for (int k = 0; k < 10; ++k) {
        InvalidateRect(table, nullptr, FALSE);
        RepaintView(&g_puzzle, kTableView, true);
        UpdateWindow(table);
    }
    GdiFlush();
    QueryPerformanceCounter(&t1);
    std::printf("full recompose and paint of the table: %.2f ms (mean of 10)\n", Seconds(t0, t1) * 1e3 / 10);
    DestroyWindow(parent);
    FreePackedDib(cloth);
    DeleteFileA("drag_frame_photo.bmp");
    ClosePack(&g_pack);
    return 0;
}
