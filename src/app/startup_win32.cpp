// Start-up and the run of the program.
#include "app/startup_win32.h"

#include <cstdio>

#include "app/app_win32.h"
#include "app/preferences_win32.h"
#include "app/settings.h"
#include "app/art_ids.h"
#include "app/display_check.h"
#include "app/language_chooser_win32.h"
#include "app/main_window_win32.h"
#include "app/message_loop_win32.h"
#include "app/message_window_win32.h"
#include "app/resume_win32.h"
#include "app/shortcuts_win32.h"
#include "app/strings_win32.h"
#include "app/title_window_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "extras/bars_win32.h"
#include "extras/completion_win32.h"
#include "extras/honour_win32.h"
#include "extras/info_win32.h"
#include "extras/music_window_win32.h"
#include "extras/printing_win32.h"
#include "extras/video_win32.h"
#include "gfx/pack.h"
#include "puzzle/board_window_win32.h"
#include "setup/chooser_classes_win32.h"
#include "setup/new_puzzle_win32.h"
#include "setup/browser_win32.h"
#include "setup/cloth_chooser_win32.h"
#include "setup/piece_box_win32.h"
#include "setup/picture_window_win32.h"
#include "puzzle/model.h"

static INT_PTR CALLBACK Notice_DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_COMMAND:
        if (HIWORD(wParam) == 0) DestroyWindow(dialog);
        return 1;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    }
    return 0;
}

HWND ShowStartupNotice(HINSTANCE instance, int stringId) {
    HWND dialog = CreateDialogParamA(instance, MAKEINTRESOURCEA(kResNoticeDialog), nullptr, Notice_DialogProc, 0);
    if (!dialog) {
        PostQuitMessage(0);
        return nullptr;
    }
    char text[300] = "";
    LoadStringA(instance, UINT(stringId), text, sizeof text);
    SendDlgItemMessageA(dialog, kNoticeTextId, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    return dialog;
}

// The WAVE resources stay where the module's resources lie for the whole run.
static const void* LockWave(HINSTANCE instance, int id) {
    HRSRC found = FindResourceA(instance, MAKEINTRESOURCEA(id), "WAVE");
    HGLOBAL loaded = found ? LoadResource(instance, found) : nullptr;
    return loaded ? LockResource(loaded) : nullptr;
}

void RegisterWindowClasses(HINSTANCE instance) {
    RegisterControlClasses(instance);
    RegisterLanguageChooserClass(instance);
    RegisterMainWindowClass(instance);
    RegisterMusicWindowClass(instance);
    RegisterBoardClass(instance);
    RegisterChooserAndPreviewClasses(instance);
    RegisterNewPuzzleClasses(instance);
    RegisterBarClasses(instance);
    RegisterTitleWindowClass(instance);
    RegisterPieceBoxClass(instance);
    RegisterMessageWindowClass(instance);
    RegisterBrowserClasses(instance);
    RegisterVideoClass(instance);
    RegisterPictureWindowClass(instance);
    RegisterClothChooserClass(instance);
    RegisterHonourClass(instance);
    RegisterInfoClasses(instance);
    RegisterPrintWaitClass(instance);
}

// The title bar's new-puzzle button puts the current puzzle away before the screen opens: the screen's
// choosers set the next puzzle's rows, columns and zoom.
// The save button follows the game: nothing to save without a puzzle or right after a cut.
static void DisableSaveButton() {
    if (g_saveButton) SendMessageA(g_saveButton, PM_SETENABLE, 0, 0);
}

static void CloseGameAndOpenNewPuzzle() {
    ClearPuzzle(&g_puzzle, true);
    DisableSaveButton();
    OpenNewPuzzleScreen();
}

// A new game is kept in the resume file from its first moment.
static void StartGameWithShape(int32_t shape) {
    if (!StartNewGame(shape)) return;
    DisableSaveButton();
    WriteResumeNow();
}

// The play clock stands still while the browser is open; closing it lets the clock count again.
static void OpenSavedPuzzles(uint8_t mode) {
    if (OpenSavedPuzzleBrowser(mode)) g_puzzle.paused = 1;
}

// The cloth chooser over the main window (one already open is simply kept).
static void OpenClothChooserOverMainWindow() { OpenClothChooser(g_mainWindow); }

static void OpeningFinished() {
    if (g_mainWindow) return;
    CreateMainWindow();
    OfferResume();
}

int RunTavirel(HINSTANCE instance) {
    // The folder first: the remembered language (English when none) speaks even the start-up notices.
    int length = int(GetModuleFileNameA(instance, g_appFolder, kPathCapacity));
    FolderOfModulePath(g_appFolder, length);
    LoadPreferences();
    g_screenWidth = GetSystemMetrics(SM_CXSCREEN);
    g_screenHeight = GetSystemMetrics(SM_CYSCREEN);
    HDC screen = GetDC(nullptr);
    int bits = GetDeviceCaps(screen, BITSPIXEL);
    ReleaseDC(nullptr, screen);

    int notice = DisplayNoticeBase(bits, g_screenWidth, g_screenHeight);
    if (notice) {
        ShowStartupNotice(instance, notice + g_language);
        return RunMessageLoop();
    }

    g_hoverSound = LockWave(instance, kResHoverSound);
    g_clickSound = LockWave(instance, kResClickSound);

    WritePrivateProfileStringA(kSettingsSection, "AppPath", g_appFolder, SettingsFilePath());

    RegisterWindowClasses(instance);

    char packPath[kPathCapacity + 16];
    std::snprintf(packPath, sizeof packPath, "%sTavirel.rf", g_appFolder);
    if (!OpenPack(&g_pack, packPath)) {
        // Without its artwork the game cannot draw a single screen: say so and stop.
        ShowStartupNotice(instance, kStrMissingPack + g_language);
        return RunMessageLoop();
    }

    g_videoHooks.openingFinished = OpeningFinished;
    InstallCompletionFlow();
    g_openNewPuzzleScreen = CloseGameAndOpenNewPuzzle;
    g_startNewGame = StartGameWithShape;
    g_openSavedPuzzles = OpenSavedPuzzles;
    g_openClothChooser = OpenClothChooserOverMainWindow;
    g_videoMode = VIDEO_OPENING;
    OpenVideo(VIDEO_OPENING);
    int code = RunMessageLoop();
    ClosePack(&g_pack);
    return code;
}
