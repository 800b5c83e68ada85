// Saving and loading the game in play with the six box windows' names, hiding and telling the boxes on load.
#include "setup/saved_puzzle_win32.h"

#include <windows.h>

#include "controls/control_messages.h"
#include "puzzle/board_window_win32.h"
#include "puzzle/model.h"
#include "puzzle/picture.h"
#include "setup/piece_box_win32.h"
#include "setup/saved_puzzle.h"

namespace {

constexpr UINT kQuietHide = SWP_HIDEWINDOW | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;

// The box window that holds view k: the program's box, or the window the view lies in.
HWND BoxWindow(int k) {
    if (g_pieceBoxes[k]) return g_pieceBoxes[k];
    HWND view = ViewWindow(k);
    return view ? GetParent(view) : nullptr;
}

}  // namespace

void (*g_puzzleLoaded)() = nullptr;

bool SavePuzzleFile(const char* path, bool withThumbnail) {
    SavedBoxNames boxes = {};
    for (int k = 0; k < kTrayCount; ++k) {
        HWND box = BoxWindow(k);
        // At most 23 characters: the 24th byte is the name's NUL.
        if (box) GetWindowTextA(box, boxes.names[k], int(kSavedNameBytes));
    }
    if (!SavePuzzleToFile(path, &g_puzzle, CurrentPicturePath(), boxes, CurrentPicture(), withThumbnail))
        return false;
    g_puzzle.puzzle_dirty = 0;
    return true;
}

bool LoadPuzzleFile(const char* path, bool* hintsLeft) {
    SavedPuzzle saved;
    if (!LoadSavedPuzzle(path, &g_puzzle, &saved)) return false;
    for (int k = 0; k < kTrayCount; ++k) {
        HWND box = BoxWindow(k);
        if (!box) continue;
        SetWindowPos(box, nullptr, 0, 0, 0, 0, kQuietHide);
        const WPARAM notice = saved.counts[k] ? kViewBecameFilled : kViewBecameEmpty;
        SendMessageA(box, PM_NOTIFY, notice, reinterpret_cast<LPARAM>(ViewWindow(k)));
        SetWindowTextA(box, saved.boxes.names[k]);
    }
    ShowLoadedPuzzle(&g_puzzle);
    if (hintsLeft) *hintsLeft = SavedHintsLeft(saved);
    if (g_puzzleLoaded) g_puzzleLoaded();
    return true;
}
