// The game's keys: the situation read from the windows, and each command run through its button.
#include "app/shortcuts_win32.h"

#include <cstring>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/language_chooser_win32.h"
#include "app/message_window_win32.h"
#include "app/title_window_win32.h"
#include "extras/bars_win32.h"
#include "extras/music_window_win32.h"
#include "extras/video_win32.h"
#include "puzzle/board_window_win32.h"
#include "puzzle/history.h"
#include "puzzle/model.h"
#include "setup/browser_win32.h"
#include "setup/cloth_chooser_win32.h"
#include "setup/new_puzzle_win32.h"
#include "setup/piece_box_win32.h"

void (*g_openClothChooser)() = nullptr;

namespace {

constexpr int kStrAssembleQuestion = 250;  // "Assemble the whole puzzle? This ends the game ..."

bool ShownByUs(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId() && IsWindowVisible(window);
}

// A screen of the class is up, as a child of the main window or as a window of its own.
bool ScreenShown(const char* className) {
    if (g_mainWindow)
        for (HWND w = FindWindowExA(g_mainWindow, nullptr, className, nullptr); w;
             w = FindWindowExA(g_mainWindow, w, className, nullptr))
            if (IsWindowVisible(w)) return true;
    for (HWND w = FindWindowExA(nullptr, nullptr, className, nullptr); w; w = FindWindowExA(nullptr, w, className, nullptr))
        if (ShownByUs(w)) return true;
    return false;
}

bool TextFieldHasFocus() {
    HWND focus = GetFocus();
    char name[16] = "";
    return focus && GetClassNameA(focus, name, sizeof name) && lstrcmpiA(name, "Edit") == 0;
}

void AnswerAssemble(uint8_t answer) {
    if (answer) PressToolsButton(kAssembleButton);
}

}  // namespace

ShortcutSituation CurrentShortcutSituation() {
    ShortcutSituation s = {};
    s.typing = TextFieldHasFocus();
    s.asking = CurrentMessageWindow() != nullptr;
    s.dragging = g_puzzle.dragMode != 0;
    s.playing = g_mainWindow && IsWindowVisible(g_mainWindow) && !IsIconic(g_mainWindow) &&
                ViewWindow(kTableView) && !ScreenShown(kNewPuzzleClass) && !ScreenShown(kBrowserClass) &&
                !ScreenShown(kVideoClass) && !ScreenShown(kLanguageChooserClass) &&
                !ScreenShown(kClothChooserClass) && !ScreenShown(kMusicWindowClass);
    return s;
}

void RunGameCommand(GameCommand command) {
    switch (command) {
    case CMD_NONE: return;
    case CMD_NEW_PUZZLE: PressTitleButton(TitleNewPuzzleButton()); return;
    case CMD_OPEN: PressTitleButton(TitleOpenButton()); return;
    case CMD_SAVE: PressTitleButton(TitleSaveButton()); return;
    case CMD_UNDO: UndoGesture(&g_history, &g_puzzle); return;
    case CMD_REDO: RedoGesture(&g_history, &g_puzzle); return;
    case CMD_HINT: PressToolsButton(kHintButton); return;
    case CMD_ASSEMBLE:
        // It ends the game: asked first, unlike the button, which a player presses on purpose.
        if (HasPuzzle(&g_puzzle) && !g_puzzle.finished)
            ShowMessage(kStrAssembleQuestion, g_mainWindow, AnswerAssemble, false);
        return;
    case CMD_PREVIEW: PressOptionsButton(kMagnifierButton); return;
    case CMD_GATHER_EDGES:
        RefreshGatherButton();
        PressToolsButton(kGatherEdgesButton);
        return;
    case CMD_HELP: PressOptionsButton(kHelpButton); return;
    case CMD_HONOUR_ROLL: PressToolsButton(kHonourButton); return;
    case CMD_MUSIC: PressToolsButton(kMusicButton); return;
    case CMD_CLOTH:
        if (g_openClothChooser) g_openClothChooser();
        return;
    case CMD_LANGUAGE: OpenLanguageChooser(); return;
    case CMD_CANCEL_DRAG: CancelBoardGesture(); return;
    default:
        if (command >= CMD_BOX_1 && command <= CMD_BOX_6) TogglePieceBox(command - CMD_BOX_1);
        return;
    }
}

bool OfferShortcut(const MSG* msg) {
    if (msg->message != WM_KEYDOWN) return false;
    KeyPress press = {};
    press.key = uint32_t(msg->wParam);
    press.ctrl = GetKeyState(VK_CONTROL) < 0;
    press.shift = GetKeyState(VK_SHIFT) < 0;
    press.alt = GetKeyState(VK_MENU) < 0;
    press.repeat = (msg->lParam & (LPARAM(1) << 30)) != 0;
    const GameCommand command = ShortcutFor(press, CurrentShortcutSituation());
    if (command == CMD_NONE) return false;
    RunGameCommand(command);
    return true;
}
