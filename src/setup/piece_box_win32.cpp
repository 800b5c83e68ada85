// The piece boxes (`CWNDBOX`): floating windows, each holding one tray view, with a bevelled frame, a title
// of their own (renamed through the message window), a close button, moving by the title strip and resizing
// by the frame.
#include "setup/piece_box_win32.h"

#include <vfw.h>

#include <cstring>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/language_chooser_win32.h"
#include "app/main_window_win32.h"
#include "app/message_window_win32.h"
#include "app/strings_win32.h"
#include "app/theme.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"
#include "gfx/pack.h"
#include "puzzle/board_window_win32.h"
#include "setup/box_frame.h"

HWND g_pieceBoxes[kPieceBoxCount];

namespace {

constexpr UINT kQuietFlags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;
constexpr UINT kQuietHide = SWP_HIDEWINDOW | SWP_NOMOVE | SWP_NOSIZE | kQuietFlags;
constexpr COLORREF kBevelLight = RGB(255, 227, 180);
constexpr COLORREF kBevelDark = RGB(100, 50, 50);
constexpr int32_t kTitleFontHeight = 20;
constexpr int32_t kTitleFontWeight = 700;

struct BoxState {
    HWND hwnd;
    HWND view;  // the tray view inside, control id 100 + box
    HWND closeButton;
    HWND renameButton;
    char* title;       // heap copy of the title, at most 40 characters
    size_t titleSize;  // the title's length + 1
};

// Drawing objects every box shares, made once with the boxes.
struct BoxArt {
    HPEN blackPen, lightPen, darkPen;
    HFONT titleFont;
    HDRAWDIB drawDib;
    uint8_t* closeStrip;   // pack 225
    uint8_t* tile;         // pack 227, tiled over the box
    uint8_t* renameStrip;  // pack 228
};
BoxArt g_boxArt;

// Side-button pictures: empty trays show 200 + k, trays holding pieces 600 + k.
ImageObject g_emptyTrayArt[kPieceBoxCount], g_fullTrayArt[kPieceBoxCount];

// One box moves or resizes at a time.
struct BoxDrag {
    HWND box;
    uint32_t grip;  // BoxGrip bits taken by the press
    POINT anchor;   // the pointer's screen position at the press
    Rect start;     // the box's screen rectangle at the press
};
bool g_boxDragging = false;
BoxDrag g_boxDrag;

HWND g_renamingBox = nullptr;

BoxState* BoxOf(HWND hwnd) { return reinterpret_cast<BoxState*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA)); }

int BoxIndex(HWND box) {
    for (int i = 0; i < kPieceBoxCount; ++i)
        if (box && g_pieceBoxes[i] == box) return i;
    return -1;
}

SIZE BoxSize(HWND hwnd) {
    RECT client;
    GetClientRect(hwnd, &client);
    return SIZE{client.right, client.bottom};
}

RECT TitleArea(HWND hwnd) {
    const BoxLayout layout = LayOutBox(BoxSize(hwnd).cx, BoxSize(hwnd).cy);
    return RECT{kBoxTitleX, kBoxTitleY, layout.rename.x - 4, kBoxFrameWidth + kBoxTitleStrip};
}

void QuietlyHide(HWND hwnd) {
    if (hwnd) SetWindowPos(hwnd, nullptr, 0, 0, 0, 0, kQuietHide);
}

// ---- Shared drawing objects ---------------------------------------------------------------------------

void MakeBoxArt() {
    BoxArt& a = g_boxArt;
    if (!a.blackPen) a.blackPen = CreatePen(PS_SOLID, 1, RGB(0, 0, 0));
    if (!a.lightPen) a.lightPen = CreatePen(PS_SOLID, 1, kBevelLight);
    if (!a.darkPen) a.darkPen = CreatePen(PS_SOLID, 1, kBevelDark);
    if (!a.titleFont)
        a.titleFont = CreateFontA(kTitleFontHeight, 0, 0, 0, kTitleFontWeight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                  OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH,
                                  kCommonFontFace);
    if (!a.drawDib) a.drawDib = DrawDibOpen();
    // The strips go to the buttons of the boxes made next; the boxes that used the old ones are gone.
    FreePackedDib(a.closeStrip);
    FreePackedDib(a.tile);
    FreePackedDib(a.renameStrip);
    a.closeStrip = LoadPackItem(&g_pack, kArtTrayCloseButton);
    a.tile = LoadPackItem(&g_pack, kArtTrayTile);
    a.renameStrip = LoadPackItem(&g_pack, kArtTrayRenameButton);
}

// ---- Painting -----------------------------------------------------------------------------------------

void PaintBackdrop(HDC dc, const RECT& area, int32_t width, int32_t height) {
    int32_t tw = 0, th = 0;
    if (!g_boxArt.drawDib || !PackedDibSize(g_boxArt.tile, &tw, &th)) {
        RECT all = {0, 0, width, height};
        FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
        return;
    }
    auto* header = reinterpret_cast<LPBITMAPINFOHEADER>(g_boxArt.tile);
    for (int32_t y = area.top - area.top % th; y < area.bottom; y += th)
        for (int32_t x = area.left - area.left % tw; x < area.right; x += tw)
            DrawDibDraw(g_boxArt.drawDib, dc, x, y, tw, th, header, g_boxArt.tile + kDibPixelOffset, 0, 0, tw, th, 0);
}

// Six nested one-pixel lines per edge, outside in: black, black, black, light, light, light on the top and
// left; dark, dark, dark, black, black, black on the bottom and right.
void PaintBevel(HDC dc, int32_t width, int32_t height) {
    HGDIOBJ oldPen = SelectObject(dc, g_boxArt.blackPen);
    for (int32_t i = 0; i < kBoxFrameWidth; ++i) {
        const int32_t right = width - 1 - i, bottom = height - 1 - i;
        SelectObject(dc, i < 3 ? g_boxArt.blackPen : g_boxArt.lightPen);
        MoveToEx(dc, i, bottom, nullptr);
        LineTo(dc, i, i);
        LineTo(dc, right, i);
        SelectObject(dc, i < 3 ? g_boxArt.darkPen : g_boxArt.blackPen);
        MoveToEx(dc, right, i, nullptr);
        LineTo(dc, right, bottom);
        LineTo(dc, i - 1, bottom);
    }
    SelectObject(dc, oldPen);
}

void Box_Paint(const BoxState* s, HDC dc, const RECT& area) {
    const SIZE size = BoxSize(s->hwnd);
    PaintBackdrop(dc, area, size.cx, size.cy);
    RECT title = TitleArea(s->hwnd), overlap;
    if (s->titleSize > 1 && IntersectRect(&overlap, &title, &area)) {
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, kCommonTextColor);
        HGDIOBJ oldFont = SelectObject(dc, g_boxArt.titleFont);
        // Cut short before the rename button rather than run under it.
        ExtTextOutA(dc, kBoxTitleX, kBoxTitleY, ETO_CLIPPED, &title, s->title, UINT(s->titleSize - 1), nullptr);
        SelectObject(dc, oldFont);
    }
    PaintBevel(dc, size.cx, size.cy);
}

void Box_OnPaint(BoxState* s) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s->hwnd, &paint);
    if (dc) Box_Paint(s, dc, paint.rcPaint);
    EndPaint(s->hwnd, &paint);
}

// ---- Title --------------------------------------------------------------------------------------------

// Keeps a heap copy of at most 40 characters; the old title stays when there is no memory for the new one.
bool Box_OnSetText(BoxState* s, const char* text) {
    const size_t length = BoxTitleLength(text);
    auto* copy = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, length + 1));
    if (!copy) return false;
    if (length) std::memcpy(copy, text, length);
    copy[length] = 0;
    if (s->title) HeapFree(GetProcessHeap(), 0, s->title);
    s->title = copy;
    s->titleSize = length + 1;
    // The system's own copy serves other processes that read the title without asking the window.
    DefWindowProcA(s->hwnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(copy));
    RECT title = TitleArea(s->hwnd);
    InvalidateRect(s->hwnd, &title, FALSE);
    return true;
}

LRESULT Box_OnGetText(const BoxState* s, WPARAM size, char* buffer) {
    return LRESULT(CopyBoxTitle(s->title, s->titleSize ? s->titleSize - 1 : 0, buffer, size));
}

// ---- Creation and destruction -------------------------------------------------------------------------

HWND CreateBoxButton(HWND box, int id, Point at, const uint8_t* strip) {
    HWND button = CreateWindowExA(0, "CQMCOMMAND", "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, at.x, at.y,
                                  kBoxButtonSize, kBoxButtonSize, box, reinterpret_cast<HMENU>(INT_PTR(id)),
                                  GetModuleHandleA(nullptr), nullptr);
    if (button && strip) SendMessageA(button, PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(strip));
    return button;
}

// The state block is made with the window, so that the title CreateWindowExA gives is kept cut to 40.
LRESULT Box_OnNcCreate(HWND hwnd, WPARAM wParam, const CREATESTRUCTA* create) {
    auto* s = static_cast<BoxState*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(BoxState)));
    if (!s) return FALSE;
    s->hwnd = hwnd;
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(s));
    CREATESTRUCTA untitled = *create;
    untitled.lpszName = nullptr;
    if (!DefWindowProcA(hwnd, WM_NCCREATE, wParam, reinterpret_cast<LPARAM>(&untitled))) return FALSE;
    return Box_OnSetText(s, create->lpszName) ? TRUE : FALSE;
}

LRESULT Box_OnCreate(BoxState* s, const CREATESTRUCTA* create) {
    const BoxLayout layout = LayOutBox(create->cx, create->cy);
    s->closeButton = CreateBoxButton(s->hwnd, kBoxCloseButtonId, layout.close, g_boxArt.closeStrip);
    s->renameButton = CreateBoxButton(s->hwnd, kBoxRenameButtonId, layout.rename, g_boxArt.renameStrip);
    return 0;
}

void EndBoxDrag() {
    g_boxDragging = false;
    g_boxDrag.box = nullptr;
    SetCursor(LoadCursorA(nullptr, IDC_ARROW));
}

void Box_OnDestroy(BoxState* s) {
    if (g_boxDragging && g_boxDrag.box == s->hwnd) EndBoxDrag();
    if (g_renamingBox == s->hwnd) g_renamingBox = nullptr;
    const int k = BoxIndex(s->hwnd);
    if (k >= 0) g_pieceBoxes[k] = nullptr;
    if (s->title) HeapFree(GetProcessHeap(), 0, s->title);
    SetWindowLongPtrA(s->hwnd, GWLP_USERDATA, 0);
    HeapFree(GetProcessHeap(), 0, s);
}

// ---- Moving and resizing ------------------------------------------------------------------------------

// The view fills the box below the title strip; the buttons keep to the right edge.
void Box_OnSize(BoxState* s, int32_t width, int32_t height) {
    const BoxLayout layout = LayOutBox(width, height);
    if (s->view) MoveWindow(s->view, layout.view.x, layout.view.y, layout.view.width, layout.view.height, TRUE);
    if (s->closeButton)
        SetWindowPos(s->closeButton, nullptr, layout.close.x, layout.close.y, 0, 0, SWP_NOSIZE | kQuietFlags);
    if (s->renameButton)
        SetWindowPos(s->renameButton, nullptr, layout.rename.x, layout.rename.y, 0, 0, SWP_NOSIZE | kQuietFlags);
    // The bevel and the title's clip follow the edges: the whole box is drawn again.
    InvalidateRect(s->hwnd, nullptr, FALSE);
}

HCURSOR CursorFor(uint32_t grip) {
    switch (BoxCursorFor(grip)) {
    case BOX_CURSOR_MOVE: return LoadCursorA(nullptr, IDC_SIZEALL);
    case BOX_CURSOR_WE: return LoadCursorA(nullptr, IDC_SIZEWE);
    case BOX_CURSOR_NS: return LoadCursorA(nullptr, IDC_SIZENS);
    case BOX_CURSOR_NWSE: return LoadCursorA(nullptr, IDC_SIZENWSE);
    case BOX_CURSOR_NESW: return LoadCursorA(nullptr, IDC_SIZENESW);
    default: return LoadCursorA(nullptr, IDC_ARROW);
    }
}

// Edges and the corner show resize cursors so players find them; the title strip shows the move cursor.
bool Box_OnSetCursor(BoxState* s, HWND over, int hitTest) {
    if (over != s->hwnd || hitTest != HTCLIENT) return false;
    POINT pointer;
    GetCursorPos(&pointer);
    ScreenToClient(s->hwnd, &pointer);
    const SIZE size = BoxSize(s->hwnd);
    SetCursor(CursorFor(BoxGripAt(size.cx, size.cy, pointer.x, pointer.y)));
    return true;
}

void Box_OnLButtonDown(BoxState* s, int x, int y) {
    if (g_boxDragging) return;
    const SIZE size = BoxSize(s->hwnd);
    const uint32_t grip = BoxGripAt(size.cx, size.cy, x, y);
    if (grip == GRIP_NONE) return;
    RECT window;
    GetWindowRect(s->hwnd, &window);
    g_boxDragging = true;
    g_boxDrag.box = s->hwnd;
    g_boxDrag.grip = grip;
    g_boxDrag.anchor = POINT{x, y};
    ClientToScreen(s->hwnd, &g_boxDrag.anchor);
    g_boxDrag.start = Rect{window.left, window.top, window.right - window.left, window.bottom - window.top};
    SetCapture(s->hwnd);
    SetCursor(CursorFor(grip));
}

void Box_OnMouseMove(BoxState* s, int x, int y) {
    if (!g_boxDragging || g_boxDrag.box != s->hwnd) return;
    POINT now = {x, y};
    ClientToScreen(s->hwnd, &now);
    const Rect r = DraggedBoxRect(g_boxDrag.start, g_boxDrag.grip, now.x - g_boxDrag.anchor.x,
                                  now.y - g_boxDrag.anchor.y);
    RECT window;
    GetWindowRect(s->hwnd, &window);
    const bool moved = r.x != window.left || r.y != window.top;
    const bool sized = r.width != window.right - window.left || r.height != window.bottom - window.top;
    if (!moved && !sized) return;
    SetWindowPos(s->hwnd, nullptr, r.x, r.y, r.width, r.height, (sized ? 0 : SWP_NOSIZE) | kQuietFlags);
    if (sized) UpdateWindow(s->hwnd);
}

void Box_OnLButtonUp(BoxState* s) {
    if (!g_boxDragging || g_boxDrag.box != s->hwnd) return;
    EndBoxDrag();  // first, so the capture change that follows finds no drag to end
    ReleaseOwnCapture(s->hwnd);
}

void Box_OnCaptureChanged(BoxState* s, HWND gainer) {
    if (g_boxDragging && g_boxDrag.box == s->hwnd && gainer != s->hwnd) EndBoxDrag();
}

// ---- Children's notices -------------------------------------------------------------------------------

void RenameCallback(uint8_t answer) { FinishBoxRename(answer, MessageInputText()); }

// The box being named stays, disabled; the other boxes and the preview step aside for the question.
void Box_StartRename(BoxState* s) {
    g_renamingBox = s->hwnd;
    EnableWindow(s->hwnd, FALSE);
    for (HWND box : g_pieceBoxes)
        if (box != s->hwnd) QuietlyHide(box);
    QuietlyHide(g_magnifierWindow);
    // Without a message window no answer would ever come to enable the box again.
    if (!ShowMessage(STR_BOX_NAME, g_mainWindow, RenameCallback, true)) FinishBoxRename(0, nullptr);
}

// The tray view reports whether it holds pieces: the side button shows it at a glance.
void Box_OnViewNotice(HWND box, WPARAM event) {
    const int k = BoxIndex(box);
    if (k < 0 || !g_sideButtons[k]) return;
    ImageObject* art = event == kViewBecameFilled ? &g_fullTrayArt[k]
                       : event == kViewBecameEmpty ? &g_emptyTrayArt[k]
                                                   : nullptr;
    if (!art) return;
    SendMessageA(g_sideButtons[k], PM_SETIMAGE, 0, reinterpret_cast<LPARAM>(ImageObject_Dib(art)));
    InvalidateRect(g_sideButtons[k], nullptr, FALSE);
}

void Box_OnNotify(BoxState* s, WPARAM event, HWND from) {
    if (!from) return;
    if (from == s->view) {
        Box_OnViewNotice(s->hwnd, event);
    } else if (event == NOTIFY_CLICKED && from == s->closeButton) {
        SendMessageA(s->hwnd, WM_CLOSE, 0, 0);
    } else if (event == NOTIFY_CLICKED && from == s->renameButton) {
        Box_StartRename(s);
    }
}

LRESULT CALLBACK Box_WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    BoxState* s = BoxOf(hwnd);
    if (!s) {
        if (message == WM_NCCREATE) return Box_OnNcCreate(hwnd, wParam, reinterpret_cast<const CREATESTRUCTA*>(lParam));
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
    switch (message) {
    case WM_CREATE: return Box_OnCreate(s, reinterpret_cast<const CREATESTRUCTA*>(lParam));
    case WM_DESTROY: Box_OnDestroy(s); return 0;
    // Only a creation that failed before WM_CREATE comes here with its block still hung on the window.
    case WM_NCDESTROY:
        Box_OnDestroy(s);
        return DefWindowProcA(hwnd, message, wParam, lParam);
    case WM_PAINT: Box_OnPaint(s); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_SETTEXT: return Box_OnSetText(s, reinterpret_cast<const char*>(lParam)) ? TRUE : FALSE;
    case WM_GETTEXT: return Box_OnGetText(s, wParam, reinterpret_cast<char*>(lParam));
    case WM_GETTEXTLENGTH: return LRESULT(s->titleSize ? s->titleSize - 1 : 0);
    case WM_SIZE: Box_OnSize(s, LOWORD(lParam), HIWORD(lParam)); return 0;
    case WM_SETCURSOR:
        if (Box_OnSetCursor(s, reinterpret_cast<HWND>(wParam), LOWORD(lParam))) return TRUE;
        return DefWindowProcA(hwnd, message, wParam, lParam);
    case WM_LBUTTONDOWN: Box_OnLButtonDown(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_MOUSEMOVE: Box_OnMouseMove(s, MouseX(lParam), MouseY(lParam)); return 0;
    case WM_LBUTTONUP: Box_OnLButtonUp(s); return 0;
    case WM_CAPTURECHANGED: Box_OnCaptureChanged(s, reinterpret_cast<HWND>(lParam)); return 0;
    case PM_NOTIFY: Box_OnNotify(s, wParam, reinterpret_cast<HWND>(lParam)); return 0;
    // Closing only hides: the box, its tray and its title live as long as the program.
    case WM_CLOSE: QuietlyHide(hwnd); return 0;
    default: return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}

}  // namespace

void RegisterPieceBoxClass(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = Box_WindowProc;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kPieceBoxClass;
    RegisterClassA(&windowClass);
}

void CreatePieceBoxes(HWND mainWindow) {
    // Made once per run; boxes left from an earlier call go first, with the strips their buttons use.
    for (HWND& box : g_pieceBoxes)
        if (box) {
            if (IsWindow(box)) DestroyWindow(box);
            box = nullptr;
        }
    MakeBoxArt();
    for (int i = 0; i < kPieceBoxCount; ++i) {
        // Side buttons may still show an older strip: a fresh load never frees what they point at.
        ImageObject_Init(&g_emptyTrayArt[i], false);
        ImageObject_LoadFromPack(&g_emptyTrayArt[i], kArtTrayEmptyButton + uint32_t(i));
        ImageObject_Init(&g_fullTrayArt[i], false);
        ImageObject_LoadFromPack(&g_fullTrayArt[i], kArtTrayFullButton + uint32_t(i));
        char title[8] = "Box  ";
        title[4] = char('1' + i);
        HWND box = CreateWindowExA(0, kPieceBoxClass, title, WS_POPUP | WS_CLIPSIBLINGS | WS_CLIPCHILDREN,
                                   60 + 10 * i, 78 + 10 * i, kBoxCreatedSize, kBoxCreatedSize, mainWindow, nullptr,
                                   GetModuleHandleA(nullptr), nullptr);
        g_pieceBoxes[i] = box;
        if (!box) continue;
        const BoxLayout layout = LayOutBox(kBoxCreatedSize, kBoxCreatedSize);
        BoxOf(box)->view = CreateTrayView(box, i, layout.view.x, layout.view.y, layout.view.width, layout.view.height,
                                          g_sideButtons[i]);
    }
}

void TogglePieceBox(int box) {
    if (box < 0 || box >= kPieceBoxCount || !g_pieceBoxes[box]) return;
    UINT show = IsWindowVisible(g_pieceBoxes[box]) ? SWP_HIDEWINDOW : SWP_SHOWWINDOW;
    SetWindowPos(g_pieceBoxes[box], nullptr, 0, 0, 0, 0, show | SWP_NOMOVE | SWP_NOSIZE | kQuietFlags);
}

HWND RenamingPieceBox() { return g_renamingBox; }

void FinishBoxRename(uint8_t answer, const char* typed) {
    HWND box = g_renamingBox;
    g_renamingBox = nullptr;
    if (!box || !IsWindow(box)) return;
    if (answer) {
        char name[kBoxNameLimit + 1];
        CutBoxName(typed, name);
        SetWindowTextA(box, name);
        // Box names are part of a saved game: a new name is a change worth saving.
        if (HasPuzzle(&g_puzzle)) {
            g_puzzle.puzzle_dirty = 1;
            if (g_puzzleHooks.enableSave) g_puzzleHooks.enableSave();
        }
    }
    EnableWindow(box, TRUE);
    // Closing the question brings the main window forward; under Wine the renamed box, disabled at that
    // moment, can end up beneath it, so it is put back on top (without taking the focus).
    SetWindowPos(box, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    RECT title = TitleArea(box);
    InvalidateRect(box, &title, FALSE);
}
