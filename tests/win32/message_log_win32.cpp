// Helpers for the control tests: logging parent, sequence comparison, pointer input and pixels.
#include "message_log_win32.h"

#include <gtest/gtest.h>

#include <sstream>

#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "win32_support.h"

void EnsureControlClasses() {
    static bool registered = false;
    if (!registered) registered = RegisterControlClasses(GetModuleHandleA(nullptr));
}

namespace {

// Screen places for test parents, well away from the corner other tests use and from the parking spot.
const POINT kSlots[] = {{20, 400}, {350, 400}, {680, 400}};
constexpr int kSlotCount = int(sizeof kSlots / sizeof kSlots[0]);

// Claims one place across processes with a named mutex per place; the first free one wins.
HANDLE ClaimSlot(POINT* origin) {
    HANDLE mutexes[kSlotCount];
    for (int i = 0; i < kSlotCount; ++i) {
        std::string name = "TavirelControlTestSlot" + std::to_string(i);
        mutexes[i] = CreateMutexA(nullptr, FALSE, name.c_str());
    }
    DWORD got = WaitForMultipleObjects(kSlotCount, mutexes, FALSE, 60000);
    int index = -1;
    if (got < WAIT_OBJECT_0 + kSlotCount)
        index = int(got - WAIT_OBJECT_0);
    else if (got >= WAIT_ABANDONED_0 && got < WAIT_ABANDONED_0 + kSlotCount)
        index = int(got - WAIT_ABANDONED_0);  // its owner died: ours now
    for (int i = 0; i < kSlotCount; ++i)
        if (i != index) CloseHandle(mutexes[i]);
    *origin = kSlots[index < 0 ? 0 : index];
    return index < 0 ? nullptr : mutexes[index];
}

LRESULT CALLBACK LoggingParentProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* create = reinterpret_cast<CREATESTRUCTA*>(lParam);
        SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
    }
    auto* parent = reinterpret_cast<LoggingParent*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!parent) return DefWindowProcA(hwnd, message, wParam, lParam);
    switch (message) {
    case PM_NOTIFY:
        parent->log.push_back(LoggedMessage{message, wParam, lParam});
        if (parent->onNotify) parent->onNotify(wParam, reinterpret_cast<HWND>(lParam));
        return 0;
    case WM_ERASEBKGND: return 1;
    case WM_MOUSEACTIVATE: return MA_NOACTIVATE;  // see the constructor
    case WM_PAINT: {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(hwnd, &ps);
        HBRUSH brush = CreateSolidBrush(parent->fill);
        FillRect(dc, &ps.rcPaint, brush);
        DeleteObject(brush);
        EndPaint(hwnd, &ps);
        return 0;
    }
    default: return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}

const char* ParentClass() {
    static bool registered = false;
    if (!registered) {
        WNDCLASSA wc = {};
        wc.lpfnWndProc = LoggingParentProc;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
        wc.lpszClassName = "TavirelLoggingParent";
        registered = RegisterClassA(&wc) != 0;
    }
    return "TavirelLoggingParent";
}

const char* EventName(UINT message, WPARAM event) {
    if (message != PM_NOTIFY) return "?";
    switch (event) {
    case NOTIFY_PRESSED: return "pressed";
    case NOTIFY_RELEASED: return "released";
    case NOTIFY_ENTERED: return "entered";
    case NOTIFY_LEFT: return "left";
    case NOTIFY_CLICKED: return "clicked/changed";
    case NOTIFY_SPECIAL: return "special";
    case NOTIFY_ZONE_LEFT + 1: case NOTIFY_ZONE_LEFT + 2: case NOTIFY_ZONE_LEFT + 3: return "zone left";
    case NOTIFY_ZONE_PRESSED + 1: case NOTIFY_ZONE_PRESSED + 2: case NOTIFY_ZONE_PRESSED + 3: return "zone pressed";
    case NOTIFY_ZONE_RELEASED + 1: case NOTIFY_ZONE_RELEASED + 2: case NOTIFY_ZONE_RELEASED + 3:
        return "zone released";
    default: return "";
    }
}

}  // namespace

LoggingParent::LoggingParent(int width, int height, COLORREF color) : fill(color) {
    EnsureControlClasses();
    POINT origin;
    slot_ = ClaimSlot(&origin);
    hwnd = CreateWindowExA(0, ParentClass(), "controls test", WS_POPUP | WS_CLIPCHILDREN, origin.x, origin.y, width,
                           height, nullptr, nullptr, GetModuleHandleA(nullptr), this);
    if (hwnd) {
        // Shown without ever becoming active: under Wine with no window manager, hiding or destroying
        // an active top-level window waits two seconds for a withdrawal that never comes. Mouse input
        // reaches the window under the pointer all the same.
        SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_SHOWWINDOW | SWP_NOACTIVATE | SWP_NOMOVE | SWP_NOSIZE);
        UpdateWindow(hwnd);
        PumpMessages(30);
    }
}

LoggingParent::~LoggingParent() {
    if (hwnd) DestroyWindow(hwnd);
    FlushMessages();
    if (slot_) {
        ReleaseMutex(slot_);
        CloseHandle(slot_);
    }
}

int LoggingParent::Count(WPARAM event) const {
    int n = 0;
    for (const LoggedMessage& m : log)
        if (m.message == PM_NOTIFY && m.wParam == event) ++n;
    return n;
}

HWND CreateControl(const char* className, HWND parent, int x, int y, int width, int height, int id) {
    EnsureControlClasses();
    HWND hwnd = CreateWindowExA(0, className, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, x, y, width, height,
                                parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                GetModuleHandleA(nullptr), nullptr);
    if (hwnd) UpdateWindow(hwnd);
    return hwnd;
}

std::string DescribeLog(const std::vector<LoggedMessage>& log) {
    std::ostringstream out;
    for (const LoggedMessage& m : log)
        out << "  " << m.message << " wParam " << m.wParam << " (" << EventName(m.message, m.wParam) << ") from "
            << reinterpret_cast<void*>(m.lParam) << "\n";
    return out.str();
}

void ExpectSequence(const LoggingParent& parent, const ExpectedMessage* expected, HWND control,
                    const char* context) {
    size_t count = 0;
    while (expected[count].message) ++count;
    bool same = parent.log.size() == count;
    for (size_t i = 0; same && i < count; ++i) {
        const LoggedMessage& got = parent.log[i];
        same = got.message == expected[i].message && got.wParam == expected[i].wParam &&
               got.lParam == reinterpret_cast<LPARAM>(control);
    }
    if (same) return;
    std::ostringstream out;
    out << context << ": message sequence differs (control " << static_cast<void*>(control) << ")\nexpected:\n";
    for (size_t i = 0; i < count; ++i)
        out << "  " << expected[i].message << " wParam " << expected[i].wParam << " ("
            << EventName(expected[i].message, expected[i].wParam) << ")\n";
    out << "actual:\n" << DescribeLog(parent.log);
    ADD_FAILURE() << out.str();
}

void PumpMessages(DWORD ms) {
    DWORD start = GetTickCount();
    for (;;) {
        DWORD elapsed = GetTickCount() - start;
        if (elapsed >= ms) break;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, ms - elapsed, QS_ALLINPUT);
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
    }
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}

namespace {

// Absolute input runs 0..65535 over the virtual screen; rounded up so the pointer lands on the pixel.
LONG ScaleAbsolute(int value, int origin, int extent) {
    if (extent <= 0) return 0;
    return LONG((int64_t(value - origin) * 65536 + extent - 1) / extent);
}

void SendMouse(DWORD flags, int screenX, int screenY) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dx = ScaleAbsolute(screenX, GetSystemMetrics(SM_XVIRTUALSCREEN), GetSystemMetrics(SM_CXVIRTUALSCREEN));
    input.mi.dy = ScaleAbsolute(screenY, GetSystemMetrics(SM_YVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN));
    input.mi.dwFlags = flags | MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_VIRTUALDESK;
    SendInput(1, &input, sizeof input);
}

POINT CurrentPointer() {
    POINT p = {0, 0};
    GetCursorPos(&p);
    return p;
}

}  // namespace

void PointerTo(int screenX, int screenY) {
    SetCursorPos(screenX, screenY);
    SendMouse(0, screenX, screenY);
    PumpMessages(120);
}

void PointerToClient(HWND hwnd, int x, int y) {
    POINT p = {x, y};
    ClientToScreen(hwnd, &p);
    PointerTo(p.x, p.y);
}

void LeftDown() {
    POINT p = CurrentPointer();
    SendMouse(MOUSEEVENTF_LEFTDOWN, p.x, p.y);
    PumpMessages(120);
}

void LeftUp() {
    POINT p = CurrentPointer();
    SendMouse(MOUSEEVENTF_LEFTUP, p.x, p.y);
    PumpMessages(120);
}

void ParkPointer() { PointerTo(1000, 30); }

PointerLock::PointerLock() {
    mutex = CreateMutexA(nullptr, FALSE, "TavirelControlTestPointer");
    if (mutex) WaitForSingleObject(mutex, 90000);  // an abandoned lock is ours as well
    ParkPointer();
}

PointerLock::~PointerLock() {
    ParkPointer();
    if (mutex) {
        ReleaseMutex(mutex);
        CloseHandle(mutex);
    }
}

COLORREF ClientPixel(HWND hwnd, int x, int y) {
    HDC dc = GetDC(hwnd);
    COLORREF color = GetPixel(dc, x, y);
    ReleaseDC(hwnd, dc);
    return color;
}

SIZE ClientSize(HWND hwnd) {
    RECT r = {};
    GetClientRect(hwnd, &r);
    return SIZE{r.right - r.left, r.bottom - r.top};
}

SIZE WindowSize(HWND hwnd) {
    RECT r = {};
    GetWindowRect(hwnd, &r);
    return SIZE{r.right - r.left, r.bottom - r.top};
}

uint8_t* MakeFrameStrip(int width, int frameHeight, std::initializer_list<COLORREF> colors) {
    std::vector<COLORREF> bands(colors);
    return MakeDib24(width, frameHeight * int(bands.size()),
                     [&](int, int y) { return bands[size_t(y / frameHeight)]; });
}

uint8_t* MakeSolidDib(int width, int height, COLORREF color) {
    return MakeDib24(width, height, [&](int, int) { return color; });
}
