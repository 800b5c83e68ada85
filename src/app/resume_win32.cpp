// The resume file in the running game: when it is written, and the question at start-up.
#include "app/resume_win32.h"

#include <cstdio>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/message_window_win32.h"
#include "app/platform.h"
#include "app/resume.h"
#include "controls/control_messages.h"
#include "extras/bars_win32.h"
#include "puzzle/board_window_win32.h"
#include "puzzle/model.h"
#include "setup/saved_puzzle_win32.h"

static ResumeTracker g_resume;
static char g_resumePath[kPathCapacity + 16];

const char* ResumePath() {
    std::snprintf(g_resumePath, sizeof g_resumePath, "%s%s", g_appFolder, kResumeFileName);
    return g_resumePath;
}

static ResumeGame GameInPlay() {
    ResumeGame game;
    game.hasPuzzle = HasPuzzle(&g_puzzle);
    game.finished = g_puzzle.finished != 0;
    game.dragging = g_puzzle.dragMode != 0;
    game.elapsed = g_puzzle.elapsed;
    return game;
}

// The resume file is no save of the player's: writing it leaves the save button and the leave
// question as they were.
static void Carry(ResumeAction action, const ResumeGame& game) {
    if (action == RESUME_WRITE) {
        const uint8_t dirty = g_puzzle.puzzle_dirty;
        const bool written = SavePuzzleFile(ResumePath(), true);
        g_puzzle.puzzle_dirty = dirty;
        if (!written) return;  // tried again at the next check
    } else if (action == RESUME_DELETE) {
        SysDeleteFile(ResumePath());
    } else {
        return;
    }
    NoteResumeWritten(&g_resume, game);
}

void StartResumeKeeping(HWND mainWindow) {
    g_resume = ResumeTracker{};
    SetTimer(mainWindow, kResumeTimerId, 1000, nullptr);
}

void OnResumeTimer() {
    const ResumeGame game = GameInPlay();
    Carry(ResumeActionAt(&g_resume, GetTickCount(), game), game);
}

void NoteGameChanged() { NoteResumeChange(&g_resume, GetTickCount()); }

void WriteResumeNow() {
    const ResumeGame game = GameInPlay();
    if (!game.hasPuzzle) return;
    Carry(game.finished ? RESUME_DELETE : RESUME_WRITE, game);
}

static void AnswerResume(uint8_t answer) {
    if (!answer) {
        SysDeleteFile(ResumePath());
        return;
    }
    bool hintsLeft = false;
    // A file that no longer loads stays where it is: nothing the player made is thrown away.
    if (!LoadPuzzleFile(ResumePath(), &hintsLeft)) return;
    if (HWND hint = HintButton()) SendMessageA(hint, PM_SETENABLE, 0, hintsLeft ? 1 : 0);
    // The game came back from the resume file, not from a save of the player's: leaving it still asks.
    g_puzzle.puzzle_dirty = 1;
    if (g_saveButton) SendMessageA(g_saveButton, PM_SETENABLE, 0, 1);
    NoteResumeWritten(&g_resume, GameInPlay());
}

void OfferResume() {
    if (!g_mainWindow || !ResumeFileOffersGame(ResumePath())) return;
    ShowMessage(kStrResumeQuestion, g_mainWindow, AnswerResume, false);
}
