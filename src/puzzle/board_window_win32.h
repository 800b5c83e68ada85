// `CWNDPUZZLE`: the table and the six tray views where pieces lie. Each view paints its composed picture,
// takes presses, drags pieces flicker-free (also into the trays through their side buttons), draws the
// selection rectangle and starts the play clock. Also the board's side of the puzzle hooks and the start
// of a new game from the current photograph.
#pragma once

#include <windows.h>

#include <cstdint>

#include "gfx/geometry.h"
#include "puzzle/model.h"

constexpr const char kBoardClass[] = "CWNDPUZZLE";
constexpr int kTableControlId = 106;        // view k's window has control id 100 + k
constexpr UINT kPlayClockPeriodMs = 1000;

// The notices a view's parent gets as PM_NOTIFY (1324), lParam the view's window.
constexpr WPARAM kViewBecameEmpty = 1;
constexpr WPARAM kViewBecameFilled = 2;

// The cursors the board shows; CreateTable loads them. The tray cursor is the program's resource 245;
// where the module has none, the arrow stands in.
struct BoardCursors {
    HCURSOR arrow;
    HCURSOR wait;
    HCURSOR tray;  // while a dragged piece is over a tray's side button
};
extern BoardCursors g_boardCursors;

// Read-only questions any process may send to the table view (control id 106) to learn the state of the
// game, as the end-to-end tests do: wParam = (question << 24) | piece index; the answer packs two signed
// 16-bit numbers as MAKELONG(first, second), or one number; -1 when there is no puzzle or no such piece.
constexpr UINT PM_BOARD_QUERY = WM_APP + 0x2A0;
enum BoardQuestion {
    BOARD_ASK_POSITION = 0,  // MAKELONG(x, y): the piece's box in its view's coordinates
    BOARD_ASK_VIEW = 1,      // the view holding the piece, 0 .. 6
    BOARD_ASK_GROUP = 2,     // the piece's group id, 0 when alone
    BOARD_ASK_GRID = 3,      // MAKELONG(rows, cols)
    BOARD_ASK_CELL = 4,      // MAKELONG(w, h)
    BOARD_ASK_BOX = 5,       // MAKELONG(W, H)
    BOARD_ASK_FINISHED = 6,  // 1 once the puzzle is shown complete
    BOARD_ASK_DEPTH = 7,     // the piece's place in its view's run, 0 on top
    BOARD_ASK_MARGIN = 8,    // MAKELONG(mx, my): the tab margins of a box
    BOARD_ASK_LIT = 9,       // the piece's lit flag: 1 plain, 0 selected
    BOARD_ASK_ELAPSED = 10,  // seconds of play
    BOARD_ASK_HINTS = 11,    // hints used
    BOARD_ASK_CHANGED = 12,  // 1 when the game has changed since it was cut, saved or loaded
};
LRESULT AnswerBoardQuery(WPARAM question);

// The save button of the playing screen, enabled by every change to the puzzle; null while there is none.
extern HWND g_saveButton;
// Told of every change to the puzzle, as the save button is (null: nobody listens).
extern void (*g_puzzleChanged)();

// True when `CWNDPUZZLE` is registered (also when it was already).
bool RegisterBoardClass(HINSTANCE instance);
// Points the puzzle hooks at the board's Win32 work: painting, the tray notices, the clock, cursors,
// sounds, the drag surfaces and the completion step. CreateTable installs them.
void InstallBoardHooks();

// The playing screen's table: loads the cursors, shows the clock as 00:00:00, creates the picture preview
// (hidden) and the table view (control id 106) at (49, 78), screen width - 77 by screen height - 128.
// Entered a second time it first forgets a pending cut.
HWND CreateTable(HWND parent);
// Tray k's view (control id 100 + k) inside the tray window; a piece dropped on dropTarget (the tray's
// side button) lands centred in this view, even while the tray window is hidden.
HWND CreateTrayView(HWND tray, int k, int32_t x, int32_t y, int32_t width, int32_t height, HWND dropTarget);
// The window of view 0 .. 6, or null.
HWND ViewWindow(int view);

// A new game from the current photograph: the cut pattern of shape style 0 .. 2 (pack id 5000 + shape),
// 2 x 2 pattern cells, the pieces scattered; then every view repaints. False when the cut failed.
bool StartNewGame(int shape);
// Esc during a drag: a dragged piece goes back as when it is let go outside the game's windows, a
// selection rectangle is wiped off without selecting. False when no drag runs.
bool CancelBoardGesture();
// Makes the next first sizing of a view cut the current photograph with the puzzle's stored pattern
// (patternRows, patternColumns, patternId), scattering with `scatter`.
void MarkCutPending(bool scatter);

// What the board did to the screen since the counters were zeroed; tests read them.
constexpr int kScreenCopyLog = 16;
struct BoardCounters {
    uint32_t paints;                   // WM_PAINT draws of a view's picture
    uint32_t dragSteps;
    uint32_t screenCopies;             // composed areas copied to a view's window in one BitBlt
    uint32_t restores;                 // background stores put straight back on a window
    Rect copies[kScreenCopyLog];       // the first copied areas, in window coordinates
    HWND copyWindows[kScreenCopyLog];
};
extern BoardCounters g_boardCounters;
