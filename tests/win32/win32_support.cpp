// Helpers shared by the Windows tests.
#include "win32_support.h"

#include <cstring>

#include "gfx/dib.h"
#include "gfx/pack_writer.h"

Canvas::Canvas(int w, int h, COLORREF fill) : width(w), height(h) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = w;
    info.bmiHeader.biHeight = -h;  // top-down, so row y is at bits + y * stride
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* pixels = nullptr;
    bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    bits = static_cast<uint8_t*>(pixels);
    dc = CreateCompatibleDC(nullptr);
    old = SelectObject(dc, bitmap);
    RECT all = {0, 0, w, h};
    HBRUSH brush = CreateSolidBrush(fill);
    FillRect(dc, &all, brush);
    DeleteObject(brush);
    GdiFlush();
}

Canvas::~Canvas() {
    SelectObject(dc, old);
    DeleteObject(bitmap);
    DeleteDC(dc);
}

COLORREF Canvas::At(int x, int y) const {
    GdiFlush();
    const uint8_t* p = bits + y * Stride() + 3 * x;
    return RGB(p[2], p[1], p[0]);
}

void Canvas::Set(int x, int y, COLORREF color) {
    GdiFlush();
    uint8_t* p = bits + y * Stride() + 3 * x;
    p[0] = GetBValue(color);
    p[1] = GetGValue(color);
    p[2] = GetRValue(color);
}

COLORREF PatternColor(int x, int y, uint32_t seed) {
    uint32_t v = (uint32_t(x) * 2654435761u) ^ (uint32_t(y) * 40503u) ^ (seed * 2246822519u);
    v ^= v >> 13;
    v *= 0x5bd1e995u;
    v ^= v >> 15;
    // Keep every channel away from 0 and 255 so that AND and XOR results never look like a plain copy.
    return RGB(1 + (v & 0xFF) % 253, 1 + ((v >> 8) & 0xFF) % 253, 1 + ((v >> 16) & 0xFF) % 253);
}

void Canvas::FillPattern(uint32_t seed) {
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) Set(x, y, PatternColor(x, y, seed));
}

std::vector<uint8_t> Canvas::Snapshot() const {
    GdiFlush();
    return std::vector<uint8_t>(bits, bits + size_t(Stride()) * height);
}

COLORREF TestPaletteEntry(uint32_t i) { return RGB(i & 0xFF, 255 - (i & 0xFF), (i * 7) & 0xFF); }

uint8_t* MakeDib8(int32_t width, int32_t height, uint32_t colors, const std::function<uint8_t(int, int)>& pixel) {
    uint8_t* dib = AllocPackedDib(width, height, 8, colors);
    if (!dib) return nullptr;
    for (uint32_t i = 0; i < colors; ++i) {
        COLORREF c = TestPaletteEntry(i);
        DibPalette(dib)[i] = DibColor{GetBValue(c), GetGValue(c), GetRValue(c), 0};
    }
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) DibSet(dib, x, y, pixel(x, y));
    return dib;
}

uint8_t* MakeDib24(int32_t width, int32_t height, const std::function<COLORREF(int, int)>& pixel) {
    uint8_t* dib = AllocPackedDib(width, height, 24, 0);
    if (!dib) return nullptr;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) DibSet(dib, x, y, pixel(x, y));
    return dib;
}

static uint8_t* DibPixelAddress(const uint8_t* dib, int x, int y) {
    const DibHeader* h = DibHeaderOf(dib);
    int64_t stride = DibStride(h->biBitCount, h->biWidth);
    int64_t row = h->biHeight > 0 ? h->biHeight - 1 - y : y;  // bottom-up unless the height is negative
    return const_cast<uint8_t*>(DibPixels(dib)) + row * stride + int64_t(x) * (h->biBitCount / 8);
}

uint32_t DibAt(const uint8_t* dib, int x, int y) {
    const uint8_t* p = DibPixelAddress(dib, x, y);
    if (DibHeaderOf(dib)->biBitCount == 8) return *p;
    return RGB(p[2], p[1], p[0]);
}

void DibSet(uint8_t* dib, int x, int y, uint32_t value) {
    uint8_t* p = DibPixelAddress(dib, x, y);
    if (DibHeaderOf(dib)->biBitCount == 8) {
        *p = uint8_t(value);
        return;
    }
    p[0] = GetBValue(value);
    p[1] = GetGValue(value);
    p[2] = GetRValue(value);
}

TempFolder::TempFolder() {
    char base[MAX_PATH];
    DWORD n = GetTempPathA(sizeof base, base);
    std::string root(base, n);
    if (root.empty() || root.back() != '\\') root += '\\';
    for (unsigned i = GetTickCount() ^ GetCurrentProcessId();; ++i) {
        std::string candidate = root + "tavirel-w32-" + std::to_string(i);
        if (CreateDirectoryA(candidate.c_str(), nullptr)) {
            path = candidate + "\\";
            break;
        }
        if (GetLastError() != ERROR_ALREADY_EXISTS) break;
    }
}

static void RemoveTree(const std::string& folder) {
    WIN32_FIND_DATAA found;
    HANDLE search = FindFirstFileA((folder + "*").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            std::string name = found.cFileName;
            if (name == "." || name == "..") continue;
            std::string full = folder + name;
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
                RemoveTree(full + "\\");
            else
                DeleteFileA(full.c_str());
        } while (FindNextFileA(search, &found));
        FindClose(search);
    }
    RemoveDirectoryA(folder.c_str());
}

TempFolder::~TempFolder() {
    if (!path.empty()) RemoveTree(path);
}

bool WriteFileBytes(const std::string& path, const std::string& bytes) {
    HANDLE h = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    BOOL ok = bytes.empty() || WriteFile(h, bytes.data(), DWORD(bytes.size()), &written, nullptr);
    CloseHandle(h);
    return ok && written == bytes.size();
}

std::string ReadFileBytes(const std::string& path) {
    HANDLE h = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (h == INVALID_HANDLE_VALUE) return "<missing>";
    std::string bytes;
    char buffer[4096];
    DWORD got = 0;
    while (ReadFile(h, buffer, sizeof buffer, &got, nullptr) && got > 0) bytes.append(buffer, got);
    CloseHandle(h);
    return bytes;
}

bool WriteTestPack(const std::string& path, const std::vector<std::pair<uint32_t, const uint8_t*>>& items) {
    PackWriter writer;
    if (!BeginPack(&writer, path.c_str())) return false;
    for (const auto& item : items) {
        if (!AddPackDib(&writer, item.first, item.second)) {
            AbortPack(&writer);
            return false;
        }
    }
    return FinishPack(&writer);
}

static LRESULT CALLBACK TestWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ERASEBKGND) {
        SetWindowLongPtrA(hwnd, GWLP_USERDATA, GetWindowLongPtrA(hwnd, GWLP_USERDATA) + 1);
        return 1;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

static const char* TestWindowClass() {
    static bool registered = false;
    if (!registered) {
        WNDCLASSA wc = {};
        wc.lpfnWndProc = TestWindowProc;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
        wc.lpszClassName = "TavirelTestWindow";
        registered = RegisterClassA(&wc) != 0;
    }
    return "TavirelTestWindow";
}

TestWindow::TestWindow(int x, int y, int width, int height) {
    // Shown without activation: an activated window is handed to the window manager, and with none
    // running (bare Xvfb) Wine then waits two seconds for it on every destroy.
    hwnd = CreateWindowExA(0, TestWindowClass(), "test", WS_POPUP, x, y, width, height, nullptr,
                           nullptr, GetModuleHandleA(nullptr), nullptr);
    if (hwnd) {
        ShowWindow(hwnd, SW_SHOWNOACTIVATE);
        UpdateWindow(hwnd);
        FlushMessages();
    }
}

TestWindow::~TestWindow() {
    if (hwnd) DestroyWindow(hwnd);
    FlushMessages();
}

int ErasesSeen(HWND hwnd) { return int(GetWindowLongPtrA(hwnd, GWLP_USERDATA)); }

void FlushMessages() {
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}

static LRESULT CALLBACK RefuseActivation(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_ACTIVATE) return 1;
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

NoActivation::NoActivation() : hook(SetWindowsHookExA(WH_CBT, RefuseActivation, nullptr, GetCurrentThreadId())) {}

NoActivation::~NoActivation() {
    if (hook) UnhookWindowsHookEx(hook);
}
