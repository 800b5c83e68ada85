// The piece-count chooser window: the image, its grid drawn by inversion, and the drag that sizes pieces.
#include "setup/count_chooser_win32.h"

#include <vfw.h>

#include "controls/controls_win32.h"
#include "setup/chooser_classes_win32.h"
#include "setup/choosers.h"

HWND g_countChooser = nullptr;

namespace {

struct CountChooserState {
    HWND hwnd;
    HDRAWDIB drawDib;
    const uint8_t* backdrop;  // the parent's picture; not owned
    bool dragging;
    POINT start;              // the press, relative to the image's corner
    int32_t startEdge;        // E0: piece_edge at the press
};

// Inverting keeps every line visible whatever the picture's colours under it.
void CountChooser_PaintGrid(HDC dc) {
    const ChooserState& c = g_choosers;
    int32_t left = c.countLeft, top = c.countTop, width = c.countFit.width, height = c.countFit.height;
    int oldMode = SetROP2(dc, R2_NOT);
    for (int32_t i = 1; i < g_puzzle.cols; ++i) {
        int32_t x = GridLine(left, width, i, g_puzzle.cols);
        POINT line[2] = {{x, top}, {x, top + height}};
        Polyline(dc, line, 2);
    }
    for (int32_t i = 1; i < g_puzzle.rows; ++i) {
        int32_t y = GridLine(top, height, i, g_puzzle.rows);
        POINT line[2] = {{left, y}, {left + width, y}};
        Polyline(dc, line, 2);
    }
    SetROP2(dc, oldMode);
}

void CountChooser_Paint(const CountChooserState* s, HDC dc, const RECT* area) {
    DrawDibRealize(s->drawDib, dc, TRUE);
    const ChooserState& c = g_choosers;
    int32_t width = 0, height = 0;
    if (c.image_chosen && PackedDibSize(c.countCopy, &width, &height)) {
        DrawDibPart(s->drawDib, dc, c.countLeft, c.countTop, width, height, c.countCopy, 0, 0, width, height);
        CountChooser_PaintGrid(dc);
        ExcludeClipRect(dc, c.countLeft, c.countTop, c.countLeft + width, c.countTop + height);
    }
    int32_t areaWidth = area->right - area->left, areaHeight = area->bottom - area->top;
    if (!s->backdrop) {
        FillRect(dc, area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
        return;
    }
    DrawDibPart(s->drawDib, dc, area->left, area->top, areaWidth, areaHeight, s->backdrop,
                area->left + kChooserAreaLeft, area->top + kChooserAreaTop, areaWidth, areaHeight);
}

void CountChooser_OnPaint(CountChooserState* s) {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(s->hwnd, &ps);
    if (dc) CountChooser_Paint(s, dc, &ps.rcPaint);
    EndPaint(s->hwnd, &ps);
}

void CountChooser_OnLButtonDown(CountChooserState* s, int x, int y) {
    if (!g_choosers.image_chosen || !PointOnCountPicture(g_choosers, x, y)) return;
    SetCapture(s->hwnd);
    ShowClassCursor(s->hwnd, ProgramDragCursor());
    s->dragging = true;
    s->start = POINT{x - g_choosers.countLeft, y - g_choosers.countTop};
    s->startEdge = g_choosers.piece_edge;
}

void CountChooser_OnMouseMove(CountChooserState* s, int x, int y) {
    if (!s->dragging) return;
    int32_t dx = x - g_choosers.countLeft - s->start.x, dy = y - g_choosers.countTop - s->start.y;
    // A new grid repaints both choosers on the way.
    if (DragCountChooser(s->startEdge, dx, dy)) NotifyParent(s->hwnd, kChooserChanged);
}

void CountChooser_EndDrag(CountChooserState* s) {
    s->dragging = false;  // first, so the capture change that follows finds no drag to end
    ReleaseOwnCapture(s->hwnd);
    ShowClassCursor(s->hwnd, ProgramNormalCursor());
}

void CountChooser_OnLButtonUp(CountChooserState* s) {
    if (s->dragging) CountChooser_EndDrag(s);
}

void CountChooser_OnCaptureChanged(CountChooserState* s, HWND newOwner) {
    if (s->dragging && newOwner != s->hwnd) CountChooser_EndDrag(s);
}

void CountChooser_OnPaletteChanged(CountChooserState* s) { InvalidateRect(s->hwnd, nullptr, FALSE); }

LRESULT CountChooser_OnCreate(HWND hwnd, const CREATESTRUCTA* create) {
    auto* s = static_cast<CountChooserState*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(CountChooserState)));
    if (!s) return -1;
    s->hwnd = hwnd;
    s->drawDib = DrawDibOpen();
    s->backdrop = static_cast<const uint8_t*>(create->lpCreateParams);
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    return 0;
}

void CountChooser_OnDestroy(CountChooserState* s) {
    if (s->drawDib) DrawDibClose(s->drawDib);
    if (g_countChooser == s->hwnd) g_countChooser = nullptr;
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    HeapFree(GetProcessHeap(), 0, s);
}

}  // namespace

LRESULT CALLBACK CountChooserProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* s = reinterpret_cast<CountChooserState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!s) {
        if (message == WM_CREATE) return CountChooser_OnCreate(hwnd, reinterpret_cast<const CREATESTRUCTA*>(lParam));
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    switch (message) {
    case WM_PAINT: CountChooser_OnPaint(s); return 0;
    case WM_ERASEBKGND: return 1;  // the image and the backdrop cover everything
    case WM_LBUTTONDOWN: CountChooser_OnLButtonDown(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_MOUSEMOVE: CountChooser_OnMouseMove(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONUP: CountChooser_OnLButtonUp(s); return 0;
    case WM_CAPTURECHANGED: CountChooser_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case WM_QUERYNEWPALETTE: CountChooser_OnPaletteChanged(s); return TRUE;
    case WM_PALETTECHANGED:
        if (reinterpret_cast<HWND>(wParam) != hwnd) CountChooser_OnPaletteChanged(s);
        return 0;
    case WM_DESTROY: CountChooser_OnDestroy(s); return 0;
    default: return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}

HWND CreateCountChooser(HWND parent, const uint8_t* backdrop) {
    HWND hwnd = CreateWindowExA(0, kCountChooserClass, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, kChooserAreaLeft,
                                kChooserAreaTop, kChooserAreaWidth, kChooserAreaHeight, parent, nullptr,
                                GetModuleHandleA(nullptr), const_cast<uint8_t*>(backdrop));
    if (!hwnd) return nullptr;
    g_countChooser = hwnd;
    g_repaintChoosers = RepaintChooserWindows;
    return hwnd;
}
