// Registration of the chooser and preview classes, and the helpers both choosers share.
#include "setup/chooser_classes_win32.h"

#include <initializer_list>

#include "app/art_ids.h"
#include "gfx/dib.h"
#include "puzzle/preview_win32.h"
#include "setup/count_chooser_win32.h"
#include "setup/size_chooser_win32.h"

static bool RegisterOneClass(HINSTANCE instance, const char* name, WNDPROC procedure, HCURSOR cursor,
                             HBRUSH background) {
    WNDCLASSA wc = {};
    wc.lpfnWndProc = procedure;
    wc.hInstance = instance;
    wc.hCursor = cursor;
    wc.hbrBackground = background;
    wc.lpszClassName = name;
    return RegisterClassA(&wc) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

bool RegisterChooserAndPreviewClasses(HINSTANCE instance) {
    // The choosers paint every pixel themselves: no background brush.
    return RegisterOneClass(instance, kCountChooserClass, CountChooserProc, ProgramNormalCursor(), nullptr) &&
           RegisterOneClass(instance, kSizeChooserClass, SizeChooserProc, ProgramNormalCursor(), nullptr) &&
           RegisterOneClass(instance, kPreviewClass, PreviewProc, LoadCursorA(nullptr, IDC_ARROW),
                            static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
}

static HCURSOR ModuleCursor(int id) {
    HCURSOR cursor = LoadCursorA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(id));
    return cursor ? cursor : LoadCursorA(nullptr, IDC_ARROW);
}

HCURSOR ProgramNormalCursor() { return ModuleCursor(kResNormalCursor); }

HCURSOR ProgramDragCursor() { return ModuleCursor(kResDragCursor); }

void ShowClassCursor(HWND hwnd, HCURSOR cursor) {
    SetClassLongPtrA(hwnd, GCLP_HCURSOR, reinterpret_cast<LONG_PTR>(cursor));
    SetCursor(cursor);
}

void RepaintChooserWindows() {
    for (HWND hwnd : {g_sizeChooser, g_countChooser}) {
        if (!hwnd) continue;
        InvalidateRect(hwnd, nullptr, FALSE);
        UpdateWindow(hwnd);
    }
}

void DrawDibPart(HDRAWDIB drawDib, HDC dc, int32_t x, int32_t y, int32_t width, int32_t height, const uint8_t* dib,
                 int32_t sx, int32_t sy, int32_t sourceWidth, int32_t sourceHeight) {
    if (!drawDib || !dib || width <= 0 || height <= 0 || sourceWidth <= 0 || sourceHeight <= 0) return;
    DrawDibDraw(drawDib, dc, x, y, width, height, reinterpret_cast<LPBITMAPINFOHEADER>(const_cast<uint8_t*>(dib)),
                const_cast<uint8_t*>(dib + kDibPixelOffset), sx, sy, sourceWidth, sourceHeight, 0);
}
