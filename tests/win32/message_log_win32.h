// Helpers for the control tests: a parent window that logs every PM_NOTIFY it receives, comparison of
// that log with a {0}-terminated table, real pointer input, pixel read-back and frame strips.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

// One expected message: its number and wParam. Tables end with {0}.
struct ExpectedMessage {
    UINT message;
    WPARAM wParam = 0;
};

// One message the parent received.
struct LoggedMessage {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

// Registers the control classes once per process.
void EnsureControlClasses();

// A visible top-level popup (WS_POPUP | WS_CLIPCHILDREN, shown without activation) painted in one colour,
// logging every PM_NOTIFY. Each one takes a screen place of its own, claimed across processes, so tests running side
// by side never overlap (overlapped windows would be clipped and their pixels unreadable).
struct LoggingParent {
    HWND hwnd = nullptr;
    COLORREF fill;
    std::vector<LoggedMessage> log;
    // Called after each PM_NOTIFY has been logged (e.g. to step an animation's frame).
    std::function<void(WPARAM event, HWND control)> onNotify;

    LoggingParent(int width, int height, COLORREF fill = RGB(0, 0, 96));
    ~LoggingParent();
    LoggingParent(const LoggingParent&) = delete;
    LoggingParent& operator=(const LoggingParent&) = delete;

    void Clear() { log.clear(); }
    int Count(WPARAM event) const;

  private:
    HANDLE slot_ = nullptr;
};

// A skinned control as a visible child (WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS).
HWND CreateControl(const char* className, HWND parent, int x, int y, int width = 50, int height = 50, int id = 0);

// Compares the PM_NOTIFY messages logged from `control` (and nothing from anywhere else) with the
// table; on mismatch reports both lists side by side.
void ExpectSequence(const LoggingParent& parent, const ExpectedMessage* expected, HWND control,
                    const char* context);
std::string DescribeLog(const std::vector<LoggedMessage>& log);

// Dispatches messages for about ms milliseconds (Wine's flush_events pattern).
void PumpMessages(DWORD ms);
// Pumps messages until the test holds or `ms` milliseconds have passed; true when it held.
template <typename Test>
bool PumpUntil(Test test, DWORD ms) {
    const DWORD end = GetTickCount() + ms;
    while (!test()) {
        if (int(end - GetTickCount()) <= 0) return false;
        PumpMessages(20);
    }
    return true;
}

// Real pointer input: SetCursorPos, then SendInput with absolute coordinates over the virtual screen,
// then ~120 ms of message pumping so the input is delivered.
void PointerTo(int screenX, int screenY);
void PointerToClient(HWND hwnd, int x, int y);
void LeftDown();
void LeftUp();
// Puts the pointer where no test window ever stands.
void ParkPointer();

// Held for a whole test that moves the real pointer: such tests run one at a time even when the test
// runner starts several processes at once. Parks the pointer on both ends.
struct PointerLock {
    HANDLE mutex = nullptr;
    PointerLock();
    ~PointerLock();
    PointerLock(const PointerLock&) = delete;
    PointerLock& operator=(const PointerLock&) = delete;
};

// The pixel at client (x, y) as the screen holds it, read through a window DC.
COLORREF ClientPixel(HWND hwnd, int x, int y);
// Client size of a window.
SIZE ClientSize(HWND hwnd);
SIZE WindowSize(HWND hwnd);

// A 24-bit vertical strip `width` wide: one band `frameHeight` tall per colour, top to bottom.
uint8_t* MakeFrameStrip(int width, int frameHeight, std::initializer_list<COLORREF> colors);
// A 24-bit picture filled with one colour.
uint8_t* MakeSolidDib(int width, int height, COLORREF color);
