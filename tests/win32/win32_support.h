// Helpers shared by the Windows tests: a 24-bit canvas read back pixel by pixel, packed DIBs built
// and read in picture coordinates (row 0 at the top), a scratch folder, packs and a test window.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

// A 24-bit top-down DIB section selected into its own memory DC, filled with one colour.
struct Canvas {
    HDC dc = nullptr;
    HBITMAP bitmap = nullptr;
    HGDIOBJ old = nullptr;
    uint8_t* bits = nullptr;
    int width = 0, height = 0;

    Canvas(int w, int h, COLORREF fill);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    int Stride() const { return (width * 3 + 3) & ~3; }
    COLORREF At(int x, int y) const;
    void Set(int x, int y, COLORREF color);
    // Every pixel gets a colour of its own, so that any misplaced copy shows.
    void FillPattern(uint32_t seed);
    std::vector<uint8_t> Snapshot() const;
};

// A colour that differs from pixel to pixel; no channel is ever 0 or 255.
COLORREF PatternColor(int x, int y, uint32_t seed);

// Packed DIBs built from a function of picture coordinates (y = 0 is the top row). For 8 bits the
// function gives the palette index; for 24 bits a COLORREF.
uint8_t* MakeDib8(int32_t width, int32_t height, uint32_t colors, const std::function<uint8_t(int, int)>& pixel);
uint8_t* MakeDib24(int32_t width, int32_t height, const std::function<COLORREF(int, int)>& pixel);
// Reads pixel (x, y), y counted from the top: an 8-bit index, or a COLORREF for 24 bits.
uint32_t DibAt(const uint8_t* dib, int x, int y);
void DibSet(uint8_t* dib, int x, int y, uint32_t value);
// The colour MakeDib8 puts at palette entry i: red i, green 255 - i, blue (i * 7) & 255.
COLORREF TestPaletteEntry(uint32_t i);

// A fresh folder under the Windows temporary folder, removed with its files when the test ends.
struct TempFolder {
    std::string path;  // with a trailing backslash
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    std::string File(const char* name) const { return path + name; }
};

bool WriteFileBytes(const std::string& path, const std::string& bytes);
std::string ReadFileBytes(const std::string& path);

// Writes a pack holding the given (id, packed DIB) items with the game's pack writer.
bool WriteTestPack(const std::string& path, const std::vector<std::pair<uint32_t, const uint8_t*>>& items);

// A visible popup window with a plain window procedure; counts the erase requests it receives.
struct TestWindow {
    HWND hwnd = nullptr;
    TestWindow(int x, int y, int width, int height);
    ~TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;
};
int ErasesSeen(HWND hwnd);
// Under Wine without a window manager a window that was activated, or shown as an active window,
// costs two seconds when it is destroyed. While one of these lives, no window of this thread is
// activated: tests that build screens hidden (their classes do all the work while they are created)
// refuse the foreground their closing would bring to an owner.
struct NoActivation {
    HHOOK hook;
    NoActivation();
    ~NoActivation();
    NoActivation(const NoActivation&) = delete;
    NoActivation& operator=(const NoActivation&) = delete;
};

// Dispatches whatever is queued, without waiting.
void FlushMessages();
