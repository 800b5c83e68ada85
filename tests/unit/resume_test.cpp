// When the resume file is written, and which files found at start-up offer a game.
#include <gtest/gtest.h>

#include <vector>

#include "app/resume.h"
#include "test_support.h"

namespace {

ResumeGame Playing(uint32_t elapsed = 0) { return ResumeGame{true, false, false, elapsed}; }

std::vector<uint8_t> SavedHeader(uint8_t finished) {
    std::vector<uint8_t> bytes(488 + 28 + 40, 0);
    const char magic[] = "QMPF10";
    for (size_t i = 0; i < sizeof magic; ++i) bytes[i] = uint8_t(magic[i]);
    bytes[472] = finished;
    return bytes;
}

}  // namespace

TEST(ResumeTracking, AChangeIsWrittenThreeSecondsLaterNotBefore) {
    ResumeTracker t{};
    NoteResumeChange(&t, 1000);
    EXPECT_EQ(ResumeActionAt(&t, 1000 + kResumeSettleMs - 1, Playing()), RESUME_NOTHING);
    EXPECT_EQ(ResumeActionAt(&t, 1000 + kResumeSettleMs, Playing()), RESUME_WRITE);
    NoteResumeWritten(&t, Playing());
    EXPECT_EQ(ResumeActionAt(&t, 1000 + 2 * kResumeSettleMs, Playing()), RESUME_NOTHING);
}

TEST(ResumeTracking, EveryNewChangePutsTheWriteOffAgain) {
    ResumeTracker t{};
    NoteResumeChange(&t, 0);
    NoteResumeChange(&t, 2500);
    EXPECT_EQ(ResumeActionAt(&t, 3000, Playing()), RESUME_NOTHING);
    EXPECT_EQ(ResumeActionAt(&t, 5500, Playing()), RESUME_WRITE);
}

TEST(ResumeTracking, NothingIsWrittenWhileAPieceIsDragged) {
    ResumeTracker t{};
    NoteResumeChange(&t, 0);
    ResumeGame dragging = Playing();
    dragging.dragging = true;
    EXPECT_EQ(ResumeActionAt(&t, 60000, dragging), RESUME_NOTHING);
    EXPECT_EQ(ResumeActionAt(&t, 60000, Playing()), RESUME_WRITE);
}

TEST(ResumeTracking, TheRunningClockIsWrittenEveryTenSecondsOfPlay) {
    ResumeTracker t{};
    NoteResumeWritten(&t, Playing(20));
    EXPECT_EQ(ResumeActionAt(&t, 0, Playing(20 + kResumeClockSeconds - 1)), RESUME_NOTHING);
    EXPECT_EQ(ResumeActionAt(&t, 0, Playing(20 + kResumeClockSeconds)), RESUME_WRITE);
}

TEST(ResumeTracking, AFinishedGameRemovesTheFileOnce) {
    ResumeTracker t{};
    ResumeGame finished = Playing(50);
    finished.finished = true;
    EXPECT_EQ(ResumeActionAt(&t, 0, finished), RESUME_DELETE);
    NoteResumeWritten(&t, finished);
    EXPECT_EQ(ResumeActionAt(&t, 10000, finished), RESUME_NOTHING);
    // A new game that changes is kept again.
    NoteResumeChange(&t, 20000);
    EXPECT_EQ(ResumeActionAt(&t, 30000, Playing()), RESUME_WRITE);
}

TEST(ResumeTracking, WithoutAPuzzleTheLastFileStays) {
    ResumeTracker t{};
    NoteResumeChange(&t, 0);
    EXPECT_EQ(ResumeActionAt(&t, 100000, ResumeGame{false, false, false, 0}), RESUME_NOTHING);
}

TEST(ResumeTracking, TheSettlingTimeHoldsAcrossTheWrapOfTheMillisecondCounter) {
    ResumeTracker t{};
    NoteResumeChange(&t, 0xFFFFFF00u);
    EXPECT_EQ(ResumeActionAt(&t, 0x100u, Playing()), RESUME_NOTHING);
    EXPECT_EQ(ResumeActionAt(&t, 0xFFFFFF00u + kResumeSettleMs, Playing()), RESUME_WRITE);
}

TEST(ResumeFile, AnUnfinishedSavedGameIsOffered) {
    ScratchFolder folder;
    std::string path = folder.File("Resume.epf");
    ASSERT_TRUE(WriteBytes(path, SavedHeader(0)));
    EXPECT_TRUE(ResumeFileOffersGame(path.c_str()));
}

TEST(ResumeFile, AFinishedGameAMissingFileAndAForeignFileAreNotOffered) {
    ScratchFolder folder;
    std::string finished = folder.File("finished.epf"), foreign = folder.File("foreign.epf"),
                shortFile = folder.File("short.epf");
    ASSERT_TRUE(WriteBytes(finished, SavedHeader(1)));
    std::vector<uint8_t> other = SavedHeader(0);
    other[6] = '!';  // "QMPF10" without its NUL
    ASSERT_TRUE(WriteBytes(foreign, other));
    std::vector<uint8_t> cut = SavedHeader(0);
    cut.resize(500);
    ASSERT_TRUE(WriteBytes(shortFile, cut));
    EXPECT_FALSE(ResumeFileOffersGame(finished.c_str()));
    EXPECT_FALSE(ResumeFileOffersGame(foreign.c_str()));
    EXPECT_FALSE(ResumeFileOffersGame(shortFile.c_str()));
    EXPECT_FALSE(ResumeFileOffersGame(folder.File("none.epf").c_str()));
}
