// When the resume file is written, and whether one found at start-up holds an unfinished game.
#include "app/resume.h"

#include <cstring>

#include "app/platform.h"

void NoteResumeChange(ResumeTracker* t, uint32_t nowMs) {
    t->changed = 1;
    t->changedAt = nowMs;
    t->finishedSeen = 0;
}

ResumeAction ResumeActionAt(const ResumeTracker* t, uint32_t nowMs, const ResumeGame& game) {
    if (!game.hasPuzzle) return RESUME_NOTHING;
    if (game.finished) return t->finishedSeen ? RESUME_NOTHING : RESUME_DELETE;
    if (game.dragging) return RESUME_NOTHING;
    // Unsigned difference: right across the wrap of the millisecond counter.
    if (t->changed && nowMs - t->changedAt >= kResumeSettleMs) return RESUME_WRITE;
    if (game.elapsed >= t->writtenElapsed + kResumeClockSeconds) return RESUME_WRITE;
    return RESUME_NOTHING;
}

void NoteResumeWritten(ResumeTracker* t, const ResumeGame& game) {
    t->changed = 0;
    t->writtenElapsed = game.elapsed;
    t->finishedSeen = game.finished ? 1 : 0;
}

bool ResumeFileOffersGame(const char* path) {
    // The header's magic at 0 and the finished flag at 472; a file shorter than the header and the view
    // counts holds no game.
    constexpr uint32_t kHeaderAndCounts = 488 + 28;
    SysFile* file = SysOpenFile(path, SYS_OPEN_READ);
    if (!file) return false;
    uint8_t header[kHeaderAndCounts];
    uint32_t got = 0;
    bool read = SysReadFile(file, header, sizeof header, &got) && got == sizeof header;
    SysCloseFile(file);
    if (!read) return false;
    return std::memcmp(header, "QMPF10", 7) == 0 && header[472] == 0;
}
