// browser_open_bench.exe: how long the saved-puzzle browser takes to open on a folder of many saved games,
// in a real window: the list, the four thumbnails, the window with its children and its first paint.
//   browser_open_bench PACK.rf PROGRAM_FOLDER\ [games] [mode] [hold_ms]
// Fills PROGRAM_FOLDER\folder\ with `games` saved games (default 1000) whose thumbnails are made from the
// photographs in PROGRAM_FOLDER\Image\ (plain colours when there are none), times 20 openings and
// closings, and prints the mean and the slowest. With hold_ms it then opens the browser once more in
// `mode` (0 save, 1 open) and keeps it on screen that long, for a look or a screenshot.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/message_window_win32.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "gfx/file_list.h"
#include "gfx/pack.h"
#include "puzzle/picture.h"
#include "setup/browser_win32.h"
#include "setup/saved_puzzle.h"

static LRESULT CALLBACK Main_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_PAINT) {
        PAINTSTRUCT paint;
        HDC dc = BeginPaint(window, &paint);
        HBRUSH brush = CreateSolidBrush(RGB(40, 70, 40));  // a plain table under the browser
        FillRect(dc, &paint.rcPaint, brush);
        DeleteObject(brush);
        EndPaint(window, &paint);
        return 0;
    }
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

static void Put(std::vector<uint8_t>& bytes, size_t at, uint32_t value) { std::memcpy(&bytes[at], &value, 4); }

// A saved game's bytes for a 2 x 2 puzzle with the given thumbnail; the blocks the browser does not
// read are zero.
static std::vector<uint8_t> SavedGameBytes(const std::vector<uint8_t>& thumbnail, int32_t pw, int32_t ph) {
    const uint32_t n = 4;
    const size_t head = 488 + 28 + 20 * n;
    std::vector<uint8_t> bytes(head + thumbnail.size(), 0);
    std::memcpy(bytes.data(), "QMPF10", 7);
    Put(bytes, 28, 2);
    Put(bytes, 32, 2);
    Put(bytes, 36, 5000);
    Put(bytes, 444, 2);
    Put(bytes, 448, 2);
    double scale = 1.0;
    std::memcpy(&bytes[456], &scale, 8);
    bytes[473] = 1;
    Put(bytes, 476, 20 * n + 28);
    Put(bytes, 480, uint32_t(pw));
    Put(bytes, 484, uint32_t(ph));
    if (!thumbnail.empty()) std::memcpy(&bytes[head], thumbnail.data(), thumbnail.size());
    return bytes;
}

// The thumbnails of the photographs in Image\, or one plain colour when there are none.
static std::vector<std::vector<uint8_t>> MakeSavedGames(const std::string& folder) {
    std::vector<std::vector<uint8_t>> games;
    FileNameList images;
    InitFileNameList(&images);
    if (FillFileNameList(&images, (folder + "Image\\*.bmp").c_str())) {
        for (int32_t i = 0; i < images.count; ++i) {
            char name[256];
            FileNameAt(&images, i, false, name, sizeof name);
            uint8_t* picture = ReadPictureFile((folder + "Image\\" + name).c_str());
            std::vector<uint8_t> pixels;
            int32_t pw = 0, ph = 0;
            if (picture && MakeThumbnail(picture, &pixels, &pw, &ph)) games.push_back(SavedGameBytes(pixels, pw, ph));
            if (picture) FreePackedDib(picture);
        }
    }
    FreeFileNameList(&images);
    if (games.empty()) {
        std::vector<uint8_t> plain(size_t(ThumbnailStride(104)) * 78, 0);
        for (size_t i = 0; i + 1 < plain.size(); i += 2) plain[i + 1] = 0x52;  // a reddish brown
        games.push_back(SavedGameBytes(plain, 104, 78));
    }
    return games;
}

static const char* const kNames[] = {"Daisies", "Harbour at dusk", "Meadow", "Storm", "Ladybird on leaf",
                                     "Marigolds"};

static bool WriteGames(const std::string& folder, int count) {
    std::string saved = folder + "folder";
    CreateDirectoryA(saved.c_str(), nullptr);
    std::vector<std::vector<uint8_t>> games = MakeSavedGames(folder);
    for (int k = 0; k < count; ++k) {
        char name[96];
        if (k < 6) std::snprintf(name, sizeof name, "\\%s.epf", kNames[k]);
        else std::snprintf(name, sizeof name, "\\Saved game %04d.epf", k);
        const std::vector<uint8_t>& bytes = games[size_t(k) % games.size()];
        HANDLE file = CreateFileA((saved + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) return false;
        DWORD written = 0;
        BOOL ok = WriteFile(file, bytes.data(), DWORD(bytes.size()), &written, nullptr);
        CloseHandle(file);
        if (!ok || written != bytes.size()) return false;
    }
    return true;
}

int main(int argc, char** argv) {
    if (argc < 3 || !OpenPack(&g_pack, argv[1])) {
        std::fprintf(stderr, "usage: browser_open_bench PACK.rf PROGRAM_FOLDER\\ [games] [mode] [hold_ms]\n");
        return 2;
    }
    std::string folder = argv[2];
    if (folder.empty() || folder.back() != '\\') folder += '\\';
    int games = argc >= 4 ? std::atoi(argv[3]) : 1000;
    uint8_t mode = uint8_t(argc >= 5 ? std::atoi(argv[4]) : 1);
    int hold = argc >= 6 ? std::atoi(argv[5]) : 0;
    std::snprintf(g_appFolder, sizeof g_appFolder, "%s", folder.c_str());
    if (!WriteGames(folder, games)) {
        std::fprintf(stderr, "could not write the saved games\n");
        return 1;
    }

    HINSTANCE instance = GetModuleHandleA(nullptr);
    g_screenWidth = GetSystemMetrics(SM_CXSCREEN);
    g_screenHeight = GetSystemMetrics(SM_CYSCREEN);
    RegisterControlClasses(instance);
    RegisterMessageWindowClass(instance);
    RegisterBrowserClasses(instance);
    WNDCLASSA mainClass = {};
    mainClass.lpfnWndProc = Main_WindowProc;
    mainClass.hInstance = instance;
    mainClass.lpszClassName = "BrowserOpenBench";
    RegisterClassA(&mainClass);
    g_mainWindow = CreateWindowExA(0, "BrowserOpenBench", "", WS_POPUP | WS_VISIBLE, 0, 0, g_screenWidth,
                                   g_screenHeight, nullptr, nullptr, instance, nullptr);
    Pump();

    const int runs = 20;
    double total = 0, slowest = 0;
    for (int run = 0; run < runs; ++run) {
        LARGE_INTEGER t0, t1;
        QueryPerformanceCounter(&t0);
        HWND browser = OpenSavedPuzzleBrowser(mode);
        if (!browser) {
            std::fprintf(stderr, "the browser did not open\n");
            return 1;
        }
        UpdateWindow(browser);
        for (HWND child = GetWindow(browser, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
            UpdateWindow(child);
        GdiFlush();
        QueryPerformanceCounter(&t1);
        double seconds = Seconds(t0, t1);
        total += seconds;
        if (seconds > slowest) slowest = seconds;
        DestroyWindow(browser);
        Pump();
    }
    std::printf("open the browser on %d saved games and paint it: mean %.1f ms, slowest %.1f ms (%d runs)\n", games,
                total * 1e3 / runs, slowest * 1e3, runs);

    if (hold > 0) {
        HWND browser = OpenSavedPuzzleBrowser(mode);
        DWORD until = GetTickCount() + DWORD(hold);
        while (IsWindow(browser) && GetTickCount() < until) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
            Pump();
        }
        if (IsWindow(browser)) DestroyWindow(browser);
    }
    DestroyWindow(g_mainWindow);
    ClosePack(&g_pack);
    return 0;
}
