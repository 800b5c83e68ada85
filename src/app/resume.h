// The resume file: the game in play kept in the program folder, so that a crash, a power cut or a killed
// process loses at most the last few seconds of play. This part decides when to write it and whether a
// file found at start-up holds a game worth offering.
#pragma once

#include <cstdint>

// In the program folder, not in "folder\", so that the saved-puzzle browser never lists it.
constexpr char kResumeFileName[] = "Resume.epf";
// A change is written this long after it happened: a burst of drops costs one write.
constexpr uint32_t kResumeSettleMs = 3000;
// While the clock runs and nothing moves, the play time is still written every this many seconds.
constexpr uint32_t kResumeClockSeconds = 10;

struct ResumeTracker {
    uint8_t changed;          // a change not yet written
    uint32_t changedAt;       // milliseconds of the last change
    uint32_t writtenElapsed;  // the play time the file holds
    uint8_t finishedSeen;     // the file was already removed for this finished game
};

enum ResumeAction { RESUME_NOTHING, RESUME_WRITE, RESUME_DELETE };

// What the game in play is: whether a puzzle lies on the table, whether it is shown complete, whether
// a piece or a selection is being dragged, and its play time in seconds.
struct ResumeGame {
    bool hasPuzzle;
    bool finished;
    bool dragging;
    uint32_t elapsed;
};

void NoteResumeChange(ResumeTracker* t, uint32_t nowMs);
// Called about once a second. Writes happen between gestures only: never while dragging. A finished
// game's file is removed once. Without a puzzle the last file stays as it is: the player may still want
// it at the next start.
ResumeAction ResumeActionAt(const ResumeTracker* t, uint32_t nowMs, const ResumeGame& game);
// After the file was written (or removed) for that game.
void NoteResumeWritten(ResumeTracker* t, const ResumeGame& game);

// True when the file at path is a saved puzzle (the "QMPF10" header) of a game that is not finished.
bool ResumeFileOffersGame(const char* path);
