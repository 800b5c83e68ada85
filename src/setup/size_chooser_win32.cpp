// The size chooser window: painting the table miniature, and the zooming drag.
#include "setup/size_chooser_win32.h"

#include <vfw.h>

#include "controls/controls_win32.h"
#include "setup/chooser_classes_win32.h"
#include "setup/choosers.h"

HWND g_sizeChooser = nullptr;

namespace {

constexpr int32_t kTextureTile = 100;

const uint8_t* g_tableTexture = nullptr;

struct SizeChooserState {
    HWND hwnd;
    HDRAWDIB drawDib;
    bool dragging;
    POINT start;       // P0: where the press was, client coordinates
    double startZoom;  // Z0: the zoom at the press
};

// Tiles at multiples of 100 in window coordinates, from the paint rectangle's corner rounded down.
void SizeChooser_PaintTable(const SizeChooserState* s, HDC dc, const RECT* area) {
    int32_t width = 0, height = 0;
    if (!PackedDibSize(g_tableTexture, &width, &height)) {
        FillRect(dc, area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
        return;
    }
    int32_t tileWidth = width < kTextureTile ? width : kTextureTile;
    int32_t tileHeight = height < kTextureTile ? height : kTextureTile;
    for (int32_t y = area->top - area->top % kTextureTile; y < area->bottom; y += kTextureTile)
        for (int32_t x = area->left - area->left % kTextureTile; x < area->right; x += kTextureTile)
            DrawDibPart(s->drawDib, dc, x, y, tileWidth, tileHeight, g_tableTexture, 0, 0, tileWidth, tileHeight);
}

void SizeChooser_Paint(const SizeChooserState* s, HDC dc, const RECT* area) {
    DrawDibRealize(s->drawDib, dc, TRUE);
    int32_t copyWidth = 0, copyHeight = 0;
    if (g_choosers.image_chosen && PackedDibSize(g_choosers.sizeCopy, &copyWidth, &copyHeight)) {
        ChooserRect r = ZoomedCopyRect(g_choosers.frame, copyWidth, copyHeight, g_puzzle.scale);
        DrawDibPart(s->drawDib, dc, r.x, r.y, r.width, r.height, g_choosers.sizeCopy, 0, 0, copyWidth, copyHeight);
        ExcludeClipRect(dc, r.x, r.y, r.x + r.width, r.y + r.height);
    }
    SizeChooser_PaintTable(s, dc, area);
}

void SizeChooser_OnPaint(SizeChooserState* s) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(s->hwnd, &ps);
    if (dc) SizeChooser_Paint(s, dc, &ps.rcPaint);
    EndPaint(s->hwnd, &ps);
}

void SizeChooser_OnLButtonDown(SizeChooserState* s, int x, int y) {
    if (!g_choosers.image_chosen) return;
    SetCapture(s->hwnd);
    ShowClassCursor(s->hwnd, ProgramDragCursor());
    s->dragging = true;
    s->start = POINT{x, y};
    s->startZoom = g_puzzle.scale;
}

void SizeChooser_OnMouseMove(SizeChooserState* s, int x, int y) {
    if (!s->dragging) return;
    // The zoom's change repaints both choosers on the way.
    if (DragSizeChooser(s->startZoom, x - s->start.x, y - s->start.y)) NotifyParent(s->hwnd, kChooserChanged);
}

void SizeChooser_EndDrag(SizeChooserState* s) {
    s->dragging = false;  // first, so the capture change that follows finds no drag to end
    ReleaseOwnCapture(s->hwnd);
    ShowClassCursor(s->hwnd, ProgramNormalCursor());
}

void SizeChooser_OnLButtonUp(SizeChooserState* s) {
    if (s->dragging) SizeChooser_EndDrag(s);
}

void SizeChooser_OnCaptureChanged(SizeChooserState* s, HWND newOwner) {
    if (s->dragging && newOwner != s->hwnd) SizeChooser_EndDrag(s);
}

void SizeChooser_OnPaletteChanged(SizeChooserState* s) { InvalidateRect(s->hwnd, nullptr, FALSE); }

LRESULT SizeChooser_OnCreate(HWND hwnd) {
    auto* s = static_cast<SizeChooserState*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(SizeChooserState)));
    if (!s) return -1;
    s->hwnd = hwnd;
    s->drawDib = DrawDibOpen();
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    return 0;
}

void SizeChooser_OnDestroy(SizeChooserState* s) {
    if (s->drawDib) DrawDibClose(s->drawDib);
    if (g_sizeChooser == s->hwnd) g_sizeChooser = nullptr;
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    HeapFree(GetProcessHeap(), 0, s);
}

}  // namespace

LRESULT CALLBACK SizeChooserProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* s = reinterpret_cast<SizeChooserState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!s) {
        if (message == WM_CREATE) return SizeChooser_OnCreate(hwnd);
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    switch (message) {
    case WM_PAINT: SizeChooser_OnPaint(s); return 0;
    case WM_ERASEBKGND: return 1;  // the picture and the tiles cover everything
    case WM_LBUTTONDOWN: SizeChooser_OnLButtonDown(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_MOUSEMOVE: SizeChooser_OnMouseMove(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONUP: SizeChooser_OnLButtonUp(s); return 0;
    case WM_CAPTURECHANGED: SizeChooser_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_QUERYNEWPALETTE: SizeChooser_OnPaletteChanged(s); return TRUE;
    case WM_PALETTECHANGED:
        if (reinterpret_cast<HWND>(wParam) != hwnd) SizeChooser_OnPaletteChanged(s);
        return 0;
    case WM_DESTROY: SizeChooser_OnDestroy(s); return 0;
    default: return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}

HWND CreateSizeChooser(HWND parent) {
    TakeTableSize();
    ChooserRect place = SizeChooserRect(g_choosers.frame);
    HWND hwnd = CreateWindowExA(0, kSizeChooserClass, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, place.x, place.y,
                                place.width, place.height, parent, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (!hwnd) return nullptr;
    g_sizeChooser = hwnd;
    g_repaintChoosers = RepaintChooserWindows;
    return hwnd;
}

void SetChooserTableTexture(const uint8_t* dib) {
    g_tableTexture = dib;
    if (g_sizeChooser) InvalidateRect(g_sizeChooser, nullptr, FALSE);
}
