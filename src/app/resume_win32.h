// Keeps the game in play in the resume file while it is played, and offers it again at the next start.
#pragma once

#include <windows.h>

// Starts the once-a-second check on the main window (its WM_TIMER with kResumeTimerId comes here).
void StartResumeKeeping(HWND mainWindow);
constexpr UINT_PTR kResumeTimerId = 0x5E5;
void OnResumeTimer();
// The puzzle changed (a drop, a join, a hint, a renamed box): written a few seconds from now.
void NoteGameChanged();
// Writes the game in play now, or removes the file of a finished one: a new or opened game, the window
// minimised, the program closing.
void WriteResumeNow();
// After the opening clip: a resume file with an unfinished game brings the question; yes loads it
// exactly as a saved game, no removes the file.
void OfferResume();
// The resume file's full path.
const char* ResumePath();
