// The board's views: painting, press, drag and release, the play clock, the puzzle hooks and new games.
#include "puzzle/board_window_win32.h"

#include <vfw.h>

#include <cstring>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/title_window_win32.h"
#include "controls/control_messages.h"
#include "extras/bars_win32.h"
#include "extras/video_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "puzzle/board_logic.h"
#include "puzzle/compose.h"
#include "puzzle/cut.h"
#include "puzzle/drag_pixels.h"
#include "puzzle/history.h"
#include "puzzle/picture.h"
#include "puzzle/play_clock.h"
#include "puzzle/preview_win32.h"
#include "puzzle/screen_format_win32.h"
#include "puzzle/views.h"

BoardCursors g_boardCursors;
HWND g_saveButton;
void (*g_puzzleChanged)() = nullptr;
BoardCounters g_boardCounters;

namespace {

constexpr int32_t kTableLeft = 49;
constexpr int32_t kTableTop = 78;
constexpr int32_t kTableSpareWidth = 77;    // the table is the screen less these
constexpr int32_t kTableSpareHeight = 128;
constexpr DWORD kTableStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
constexpr DWORD kTrayViewStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS;
constexpr UINT kQuietHide = SWP_HIDEWINDOW | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
constexpr uint32_t kNewGamePatternCells = 2;  // a new game's cut pattern is 2 x 2 cells

// One view window's state, hung on its GWLP_USERDATA.
struct BoardView {
    HWND hwnd;
    int view;                          // control id - 100
    HDC dc;                            // the window's own DC: it keeps the outline pen and the R2_NOT mix
    HPEN outlinePen;                   // dash-dot: the selection outline, drawn by inversion
    HGDIOBJ savedPen;
    HDRAWDIB drawDib;
    BITMAPINFOHEADER header;           // the picture's: 24 bits, its size filled in at each paint
    int32_t drawnWidth, drawnHeight;   // the picture size DrawDib last drew; another one restarts it
};

HWND g_dropTargets[kTrayCount];  // tray k's side button
UINT_PTR g_playTimer;             // the thread timer of the play clock, 0 when none runs
bool g_tableMade;                 // CreateTable has run before
bool g_cutPending;                // the next first sizing of a view cuts the current photograph
bool g_pendingScatter;

BoardView* ViewOf(HWND hwnd) { return reinterpret_cast<BoardView*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA)); }

// Pointer coordinates come as signed 16-bit values: a captured pointer left or above the window is negative.
Point PointerOf(LPARAM lParam) {
    return Point{int16_t(LOWORD(lParam)), int16_t(HIWORD(lParam))};
}

// The tray (or the playing screen, for the table) hears that a view became empty or got pieces.
void NotifyViewParent(int view, WPARAM event) {
    HWND window = ViewWindow(view);
    HWND parent = window ? GetParent(window) : nullptr;
    if (parent) SendMessageA(parent, PM_NOTIFY, event, reinterpret_cast<LPARAM>(window));
}

bool CutCurrentPicture(uint32_t patternRows, uint32_t patternColumns, uint32_t patternId, bool scatter) {
    uint8_t* pattern = LoadPackItem(&g_pack, patternId);
    bool cut = CutPuzzle(&g_puzzle, CurrentPicture(), pattern, patternRows, patternColumns, patternId, scatter);
    if (pattern) FreePackedDib(pattern);
    return cut;
}

// What lies under a screen point, as the drop rules tell windows apart.
PointerWindow WindowUnder(POINT screen) {
    HWND window = WindowFromPoint(screen);
    if (!window || !(GetWindowLongPtrA(window, GWL_STYLE) & WS_CHILD)) return PointerWindow{POINTER_OUTSIDE, 0};
    const int32_t id = GetDlgCtrlID(window);
    const int view = id - kViewControlBase;
    if (view >= 0 && view < kViewCount) {
        if (window == ViewWindow(view)) return PointerWindow{POINTER_VIEW, id};
        if (view < kTrayCount && window == g_dropTargets[view]) return PointerWindow{POINTER_DROP_TARGET, id};
    }
    return PointerWindow{POINTER_OTHER_CHILD, id};
}

// ---- Dragging on the screen -------------------------------------------------------------------------

bool DragSurfacesFit() {
    const DragSurfaces& s = g_dragSurfaces;
    return s.ready && s.width == g_puzzle.boxWidth && s.height == g_puzzle.boxHeight && HasPuzzle(&g_puzzle);
}

uint32_t DraggedPiece() { return g_puzzle.views[g_drag.sourceView].entries[0]; }

void CopyToScreen(HWND window, HDC screen, const Rect& area) {
    BitBlt(screen, area.x, area.y, area.width, area.height, g_dragSurfaces.compositionDc, 0, 0, SRCCOPY);
    const uint32_t k = g_boardCounters.screenCopies++;
    if (k < uint32_t(kScreenCopyLog)) {
        g_boardCounters.copies[k] = area;
        g_boardCounters.copyWindows[k] = window;
    }
}

// The press keeps the box of the view's picture, now composed without the lifted piece.
void KeepPictureUnderBox(const BoardView* s) {
    const ViewSurface& picture = g_puzzle.surfaces[s->view];
    if (!DragSurfacesFit() || !picture.pixels) return;
    BITMAPINFOHEADER header = s->header;
    header.biWidth = picture.width;
    header.biHeight = picture.height;
    const DragSurfaces& d = g_dragSurfaces;
    // The picture is bottom-up: the source rectangle's lower edge is counted from its last row.
    SetDIBitsToDevice(d.backgroundDc, 0, 0, DWORD(d.width), DWORD(d.height), g_drag.dragPos.x,
                      picture.height - (g_drag.dragPos.y + d.height), 0, UINT(picture.height), picture.pixels,
                      reinterpret_cast<BITMAPINFO*>(&header), DIB_RGB_COLORS);
}

// The background store goes back under the box at `at`: the piece has left that place.
void RestoreBackgroundAt(HWND window, Point at) {
    const DragSurfaces& d = g_dragSurfaces;
    if (!window || !d.ready) return;
    HDC screen = GetDC(window);
    BitBlt(screen, at.x, at.y, d.width, d.height, d.backgroundDc, 0, 0, SRCCOPY);
    ReleaseDC(window, screen);
    ++g_boardCounters.restores;
}

// The piece appears in a window where nothing of it is shown yet: what lies under its box is kept, and
// the piece is drawn over it off the screen before the box goes to the screen.
void ShowPieceAt(HWND window, uint32_t piece, Point at) {
    DragSurfaces& d = g_dragSurfaces;
    HDC screen = GetDC(window);
    BitBlt(d.compositionDc, 0, 0, d.width, d.height, screen, at.x, at.y, SRCCOPY);
    BitBlt(d.backgroundDc, 0, 0, d.width, d.height, d.compositionDc, 0, 0, SRCCOPY);
    GdiFlush();  // the piece is written straight into the section's bits
    DrawPieceOnSurface(&g_puzzle, piece, d.format, &d.compositionPixels, 0, 0);
    CopyToScreen(window, screen, Rect{at.x, at.y, d.width, d.height});
    ReleaseDC(window, screen);
}

// One step inside one window. When the old and new boxes overlap, the union is put together in the
// composition section (screen, then the old background, then the piece) and copied back in one BitBlt,
// so nothing on the screen ever shows the piece missing.
void MovePieceWithin(HWND window, uint32_t piece, Point from, Point to) {
    DragSurfaces& d = g_dragSurfaces;
    Rect area;
    if (!DragStepArea(Rect{from.x, from.y, d.width, d.height}, Rect{to.x, to.y, d.width, d.height}, &area)) {
        RestoreBackgroundAt(window, from);
        ShowPieceAt(window, piece, to);
        return;
    }
    HDC screen = GetDC(window);
    BitBlt(d.compositionDc, 0, 0, area.width, area.height, screen, area.x, area.y, SRCCOPY);
    BitBlt(d.compositionDc, from.x - area.x, from.y - area.y, d.width, d.height, d.backgroundDc, 0, 0, SRCCOPY);
    BitBlt(d.backgroundDc, 0, 0, d.width, d.height, d.compositionDc, to.x - area.x, to.y - area.y, SRCCOPY);
    GdiFlush();
    DrawPieceOnSurface(&g_puzzle, piece, d.format, &d.compositionPixels, to.x - area.x, to.y - area.y);
    CopyToScreen(window, screen, area);
    ReleaseDC(window, screen);
}

void DrawOutline(const BoardView* s) {
    POINT points[5];
    for (int k = 0; k < 5; ++k) points[k] = POINT{g_drag.outline[k].x, g_drag.outline[k].y};
    HDC dc = GetDC(s->hwnd);  // the window's own DC, pen and mix included
    Polyline(dc, points, 5);
    ReleaseDC(s->hwnd, dc);
}

// ---- Message handlers -------------------------------------------------------------------------------

LRESULT Board_OnCreate(HWND hwnd, const CREATESTRUCTA* create) {
    const int view = int(reinterpret_cast<INT_PTR>(create->hMenu)) - kViewControlBase;
    if (view < 0 || view >= kViewCount) return -1;
    auto* s = static_cast<BoardView*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(BoardView)));
    if (!s) return -1;
    s->hwnd = hwnd;
    s->view = view;
    s->dc = GetDC(hwnd);
    s->outlinePen = CreatePen(PS_DASHDOT, 0, RGB(0, 0, 0));
    s->savedPen = SelectObject(s->dc, s->outlinePen);
    SetROP2(s->dc, R2_NOT);
    s->drawDib = DrawDibOpen();
    s->header.biSize = sizeof(BITMAPINFOHEADER);
    s->header.biPlanes = 1;
    s->header.biBitCount = 24;
    g_puzzle.dragMode = 0;
    FreeViewPicture(&g_puzzle, view);
    if (!HasPuzzle(&g_puzzle)) g_puzzle.views[view].count = 0;
    g_puzzle.surfaces[view].window = hwnd;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    return 0;
}

void Board_OnDestroy(BoardView* s) {
    // The views live as long as the playing screen: losing one ends the puzzle.
    ClearPuzzle(&g_puzzle, false);
    g_puzzle.rows = g_puzzle.cols = 0;
    g_puzzle.dragMode = 0;
    FreeViewPicture(&g_puzzle, s->view);
    if (g_puzzle.surfaces[s->view].window == s->hwnd) g_puzzle.surfaces[s->view].window = nullptr;
    if (s->view < kTrayCount) g_dropTargets[s->view] = nullptr;
    if (s->view == kTableView) ReleaseDragSurfaces();
    if (s->drawDib) DrawDibClose(s->drawDib);
    SelectObject(s->dc, GetStockObject(BLACK_PEN));
    if (s->outlinePen) DeleteObject(s->outlinePen);
    ReleaseDC(s->hwnd, s->dc);
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    HeapFree(GetProcessHeap(), 0, s);
}

void Board_OnSize(BoardView* s, int32_t width, int32_t height) {
    if (ResizeViewPicture(&g_puzzle, s->view, width, height) != VIEW_FIRST_SIZE) return;
    if (g_cutPending) {
        g_cutPending = false;
        CutCurrentPicture(g_puzzle.patternRows, g_puzzle.patternColumns, g_puzzle.patternId, g_pendingScatter);
    }
    RepaintView(&g_puzzle, s->view, false);
}

void Board_Paint(BoardView* s, HDC dc, const RECT& area) {
    const ViewSurface& picture = g_puzzle.surfaces[s->view];
    if (!picture.pixels || !s->drawDib) return;
    RECT r = area;
    if (r.left < 0) r.left = 0;
    if (r.top < 0) r.top = 0;
    if (r.right > picture.width) r.right = picture.width;
    if (r.bottom > picture.height) r.bottom = picture.height;
    if (r.right <= r.left || r.bottom <= r.top) return;
    if (picture.width != s->drawnWidth || picture.height != s->drawnHeight) {
        // DrawDib keeps its work bitmap while the header's address stays the same; a new size needs a new one.
        DrawDibEnd(s->drawDib);
        s->drawnWidth = picture.width;
        s->drawnHeight = picture.height;
    }
    s->header.biWidth = picture.width;
    s->header.biHeight = picture.height;
    const int width = r.right - r.left, height = r.bottom - r.top;
    DrawDibDraw(s->drawDib, dc, r.left, r.top, width, height, &s->header, picture.pixels, r.left, r.top, width, height,
                0);
    ++g_boardCounters.paints;
}

void Board_OnPaint(BoardView* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s->hwnd, &paint);
    Board_Paint(s, dc, paint.rcPaint);
    EndPaint(s->hwnd, &paint);
}

void Board_OnPaletteChange(BoardView* s) {
    HDC dc = GetDC(s->hwnd);
    if (s->drawDib) DrawDibRealize(s->drawDib, dc, TRUE);
    ReleaseDC(s->hwnd, dc);
    InvalidateRect(s->hwnd, nullptr, FALSE);
}

// A step of a piece drag. Over a tray's side button the piece shows at the top-left corner of that tray's
// view (hidden or not) with the tray cursor; elsewhere it follows the pointer in the window it is drawn in.
void Board_DragPiece(BoardView* s, Point pointer) {
    ++g_boardCounters.dragSteps;
    POINT screen = {pointer.x, pointer.y};
    ClientToScreen(s->hwnd, &screen);
    const PointerWindow under = WindowUnder(screen);
    const bool overDropTarget = under.kind == POINTER_DROP_TARGET;
    SetCursor(overDropTarget ? g_boardCursors.tray : g_boardCursors.arrow);
    int target = DragTargetView(&g_drag, under);
    if (!ViewWindow(target)) target = g_drag.dragView;
    HWND targetWindow = ViewWindow(target);
    POINT inTarget = {pointer.x, pointer.y};
    MapWindowPoints(s->hwnd, targetWindow, &inTarget, 1);
    const Point position = DragStepPosition(&g_drag, Point{inTarget.x, inTarget.y}, overDropTarget);
    if (DragSurfacesFit() && targetWindow) {
        if (target == g_drag.dragView) {
            MovePieceWithin(targetWindow, DraggedPiece(), g_drag.dragPos, position);
        } else {
            RestoreBackgroundAt(ViewWindow(g_drag.dragView), g_drag.dragPos);
            ShowPieceAt(targetWindow, DraggedPiece(), position);
        }
    }
    g_drag.dragView = target;
    g_drag.dragPos = position;
}

// A step of the selection rectangle: drawing the old outline again erases it.
void Board_DragOutline(BoardView* s, Point pointer) {
    DrawOutline(s);
    UpdateSelectionOutline(&g_drag, pointer);
    DrawOutline(s);
}

void Board_OnMouseMove(BoardView* s, Point pointer) {
    if (g_puzzle.dragMode == 1)
        Board_DragPiece(s, pointer);
    else if (g_puzzle.dragMode == 2)
        Board_DragOutline(s, pointer);
}

void Board_OnLButtonDown(BoardView* s, Point pointer) {
    if (g_puzzle.dragMode != 0) return;  // one gesture at a time
    SetCapture(s->hwnd);
    BeginGesture(&g_history, &g_puzzle);  // the press itself raises the piece: it belongs to the gesture
    if (PressOnView(&g_puzzle, &g_drag, s->view, pointer) != PRESS_PIECE) return;
    KeepPictureUnderBox(s);
    Board_DragPiece(s, pointer);
}

// Ends the gesture over `under`: a piece drag drops there, a selection rectangle selects (or, when
// `cancelSelection`, is only wiped off).
void Board_ReleaseOver(BoardView* s, PointerWindow under, bool cancelSelection) {
    if (g_puzzle.dragMode == 1) {
        HWND shownIn = ViewWindow(g_drag.dragView);
        const RECT shownAt = {g_drag.dragPos.x, g_drag.dragPos.y, g_drag.dragPos.x + g_puzzle.boxWidth,
                              g_drag.dragPos.y + g_puzzle.boxHeight};
        ReleasePiece(&g_puzzle, &g_drag, under);
        // The dragged image lives only on the screen; the picture under it is right again, so paint it.
        if (shownIn) InvalidateRect(shownIn, &shownAt, FALSE);
    } else if (g_puzzle.dragMode == 2) {
        DrawOutline(s);
        if (cancelSelection)
            g_puzzle.dragMode = 0;
        else
            ReleaseSelection(&g_puzzle, &g_drag);
    }
    g_puzzle.dragMode = 0;
    EndGesture(&g_history, &g_puzzle);
}

// Ends the gesture with the pointer at `pointer` in the pressed view's coordinates.
void Board_Release(BoardView* s, Point pointer) {
    POINT screen = {pointer.x, pointer.y};
    ClientToScreen(s->hwnd, &screen);
    Board_ReleaseOver(s, WindowUnder(screen), false);
}

void Board_OnLButtonUp(BoardView* s, Point pointer) {
    SetCursor(g_boardCursors.wait);
    Board_Release(s, pointer);
    SetCursor(g_boardCursors.arrow);
    ReleaseCapture();
}

// Losing the capture in the middle of a gesture ends it as a release just outside the window's corner.
void Board_OnCaptureChanged(BoardView* s, HWND gainer) {
    if (g_puzzle.dragMode != 0 && gainer != s->hwnd) Board_Release(s, Point{-1, -1});
}

LRESULT CALLBACK Board_WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    BoardView* s = ViewOf(hwnd);
    if (!s) {
        if (message == WM_CREATE) return Board_OnCreate(hwnd, reinterpret_cast<const CREATESTRUCTA*>(lParam));
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    switch (message) {
    case WM_DESTROY: Board_OnDestroy(s); return 0;
    case WM_SIZE: Board_OnSize(s, LOWORD(lParam), HIWORD(lParam)); return 0;
    case WM_PAINT: Board_OnPaint(s); return 0;
    case WM_QUERYNEWPALETTE: Board_OnPaletteChange(s); return TRUE;
    case WM_PALETTECHANGED:
        if (reinterpret_cast<HWND>(wParam) != hwnd) Board_OnPaletteChange(s);
        return 0;
    case WM_MOUSEMOVE: Board_OnMouseMove(s, PointerOf(lParam)); return 0;
    case WM_LBUTTONDOWN: Board_OnLButtonDown(s, PointerOf(lParam)); return 0;
    case WM_LBUTTONUP: Board_OnLButtonUp(s, PointerOf(lParam)); return 0;
    case WM_CAPTURECHANGED: Board_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case PM_BOARD_QUERY: return AnswerBoardQuery(wParam);
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

// ---- The play clock and the puzzle hooks ---------------------------------------------------------------

void CALLBACK PlayClockTick(HWND, UINT, UINT_PTR, DWORD) { TickPlayClock(&g_puzzle); }

void Hook_StopClock() {
    if (g_playTimer) KillTimer(nullptr, g_playTimer);
    g_playTimer = 0;
    g_puzzle.timerId = 0;
}

void Hook_StartClock() {
    Hook_StopClock();
    g_playTimer = SetTimer(nullptr, 0, kPlayClockPeriodMs, PlayClockTick);
    g_puzzle.timerId = uint32_t(g_playTimer);
}

void Hook_ShowClock(const char*) {
    const uint32_t elapsed = g_puzzle.elapsed, hours = elapsed / 3600;
    ShowClock(elapsed, hours, elapsed / 60 - 60 * hours, elapsed % 60);
}

// A tray that empties or fills may change whether the edge pieces can be gathered.
void Hook_ViewEmptied(int view) {
    NotifyViewParent(view, kViewBecameEmpty);
    RefreshGatherButton();
}
void Hook_ViewFilled(int view) {
    NotifyViewParent(view, kViewBecameFilled);
    RefreshGatherButton();
}
void Hook_RepaintView(int view) { RepaintView(&g_puzzle, view, true); }
void Hook_RestoreCursor() { SetCursor(g_boardCursors.arrow); }
void Hook_WaitCursor() { SetCursor(g_boardCursors.wait); }

void Hook_InvalidateRect(int view, Rect area) {
    HWND window = ViewWindow(view);
    if (!window) return;
    RECT r = {area.x, area.y, area.x + area.width, area.y + area.height};
    InvalidateRect(window, &r, FALSE);
}

void Hook_UpdateView(int view) {
    if (HWND window = ViewWindow(view)) UpdateWindow(window);
}

void Hook_HideTray(int view) {
    HWND window = ViewWindow(view);
    HWND tray = window ? GetParent(window) : nullptr;
    if (tray) SetWindowPos(tray, nullptr, 0, 0, 0, 0, kQuietHide);
}

void Hook_JoinSound() { PlayInterfaceSound(g_clickSound); }

// The hint button is put back as a new game finds it before the completion clip starts.
void Hook_PuzzleCompleted() {
    ResetHintButton();
    RefreshGatherButton();
    g_videoMode = VIDEO_COMPLETION;
    OpenVideo(VIDEO_COMPLETION);
}

void Hook_EnableSave() {
    if (g_saveButton) SendMessageA(g_saveButton, PM_SETENABLE, 0, 1);
    if (g_puzzleChanged) g_puzzleChanged();
    RefreshGatherButton();
}

void Hook_RefitPreview() { RefitPreview(); }
bool Hook_PrepareDragSurfaces(int32_t width, int32_t height) { return PrepareDragSurfaces(width, height); }
void Hook_RestoreDragBackground() { RestoreBackgroundAt(ViewWindow(g_drag.dragView), g_drag.dragPos); }

}  // namespace

LRESULT AnswerBoardQuery(WPARAM question) {
    const PuzzleState* p = &g_puzzle;
    if (!HasPuzzle(p)) return -1;
    uint32_t kind = uint32_t(question >> 24), piece = uint32_t(question & 0xFFFFFF);
    bool known = piece < PieceCount(p);
    switch (kind) {
    case BOARD_ASK_POSITION:
        return known ? LRESULT(MAKELONG(WORD(p->pieces[piece].x), WORD(p->pieces[piece].y))) : -1;
    case BOARD_ASK_VIEW: {
        int view = -1;
        return known && FindPieceInViews(p, piece, &view, nullptr) ? view : -1;
    }
    case BOARD_ASK_GROUP: return known ? LRESULT(p->pieces[piece].group) : -1;
    case BOARD_ASK_GRID: return LRESULT(MAKELONG(WORD(p->rows), WORD(p->cols)));
    case BOARD_ASK_CELL: return LRESULT(MAKELONG(WORD(p->cellWidth), WORD(p->cellHeight)));
    case BOARD_ASK_BOX: return LRESULT(MAKELONG(WORD(p->boxWidth), WORD(p->boxHeight)));
    case BOARD_ASK_FINISHED: return p->finished;
    case BOARD_ASK_DEPTH: {
        uint32_t position = 0;
        return known && FindPieceInViews(p, piece, nullptr, &position) ? LRESULT(position) : -1;
    }
    case BOARD_ASK_MARGIN:
        return LRESULT(MAKELONG(WORD((p->boxWidth - p->cellWidth) / 2), WORD((p->boxHeight - p->cellHeight) / 2)));
    case BOARD_ASK_LIT: return known ? LRESULT(p->pieces[piece].lit) : -1;
    case BOARD_ASK_ELAPSED: return LRESULT(p->elapsed);
    case BOARD_ASK_HINTS: return LRESULT(p->hintsUsed);
    case BOARD_ASK_CHANGED: return p->puzzle_dirty;
    }
    return -1;
}

HWND ViewWindow(int view) {
    if (view < 0 || view >= kViewCount) return nullptr;
    return static_cast<HWND>(g_puzzle.surfaces[view].window);
}

void InstallBoardHooks() {
    PuzzleHooks& h = g_puzzleHooks;
    h.viewEmptied = Hook_ViewEmptied;
    h.viewFilled = Hook_ViewFilled;
    h.repaintView = Hook_RepaintView;
    h.stopClock = Hook_StopClock;
    h.restoreCursor = Hook_RestoreCursor;
    h.invalidateRect = Hook_InvalidateRect;
    h.updateView = Hook_UpdateView;
    h.hideTray = Hook_HideTray;
    h.startClock = Hook_StartClock;
    h.showClock = Hook_ShowClock;
    h.joinSound = Hook_JoinSound;
    h.puzzleCompleted = Hook_PuzzleCompleted;
    h.enableSave = Hook_EnableSave;
    h.waitCursor = Hook_WaitCursor;
    h.refitPreview = Hook_RefitPreview;
    h.prepareDragSurfaces = Hook_PrepareDragSurfaces;
    h.restoreDragBackground = Hook_RestoreDragBackground;
}

bool RegisterBoardClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_OWNDC;  // each view keeps its outline pen and mix in its own DC
    windowClass.lpfnWndProc = Board_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kBoardClass;
    return RegisterClassA(&windowClass) || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

HWND CreateTable(HWND parent) {
    if (g_tableMade) g_cutPending = false;
    g_tableMade = true;
    InstallBoardHooks();
    HINSTANCE instance = GetModuleHandleA(nullptr);
    g_boardCursors.arrow = LoadCursorA(nullptr, IDC_ARROW);
    g_boardCursors.wait = LoadCursorA(nullptr, IDC_WAIT);
    HCURSOR tray = LoadCursorA(instance, MAKEINTRESOURCEA(kResTrayCursor));
    g_boardCursors.tray = tray ? tray : g_boardCursors.arrow;
    g_puzzle.clockPending = 0;
    ShowClock(0, 0, 0, 0);
    CreatePreviewWindow(parent);
    g_puzzle.tableWidth = g_screenWidth - kTableSpareWidth;
    g_puzzle.tableHeight = g_screenHeight - kTableSpareHeight;
    return CreateWindowExA(0, kBoardClass, "", kTableStyle, kTableLeft, kTableTop, g_puzzle.tableWidth,
                           g_puzzle.tableHeight, parent, reinterpret_cast<HMENU>(INT_PTR(kTableControlId)), instance,
                           nullptr);
}

HWND CreateTrayView(HWND tray, int k, int32_t x, int32_t y, int32_t width, int32_t height, HWND dropTarget) {
    if (k < 0 || k >= kTrayCount) return nullptr;
    g_dropTargets[k] = dropTarget;
    return CreateWindowExA(0, kBoardClass, "", kTrayViewStyle, x, y, width, height, tray,
                           reinterpret_cast<HMENU>(INT_PTR(kViewControlBase + k)), GetModuleHandleA(nullptr), nullptr);
}

bool StartNewGame(int shape) {
    const bool cut = CutCurrentPicture(kNewGamePatternCells, kNewGamePatternCells,
                                       kArtCutPattern + uint32_t(shape), true);
    for (int view = 0; view < kViewCount; ++view) RepaintView(&g_puzzle, view, true);
    RefreshGatherButton();
    return cut;
}

bool CancelBoardGesture() {
    if (g_puzzle.dragMode == 0) return false;
    HWND window = ViewWindow(g_drag.sourceView);
    BoardView* s = window ? ViewOf(window) : nullptr;
    if (!s) return false;
    // As a release outside every window of the game: the piece goes back where it was.
    Board_ReleaseOver(s, PointerWindow{POINTER_OUTSIDE, 0}, true);
    SetCursor(g_boardCursors.arrow);
    if (GetCapture() == window) ReleaseCapture();
    return true;
}

void MarkCutPending(bool scatter) {
    g_cutPending = true;
    g_pendingScatter = scatter;
}
