// The resume file in the running game: written without counting as the player's save, removed for a
// finished game, and the question at start-up loading it on yes and removing it on no.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/platform.h"
#include "app/message_window_win32.h"
#include "app/resume.h"
#include "app/resume_win32.h"
#include "board_test_helpers.h"
#include "puzzle/join.h"

namespace {

// The board screen of the board tests, with the program folder in its scratch folder and the message
// window's owner standing in for the main window.
struct ResumeScreen {
    BoardScreen screen{160, 120};
    char folder[kPathCapacity];
    HWND main = g_mainWindow;
    ResumeScreen() {
        std::memcpy(folder, g_appFolder, sizeof folder);
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s", screen.folder.path.c_str());
        RegisterMessageWindowClass(GetModuleHandleA(nullptr));
        g_mainWindow = screen.parent.hwnd;
    }
    ~ResumeScreen() {
        if (HWND message = CurrentMessageWindow()) DestroyWindow(message);
        PumpMessages(80);
        SysDeleteFile(ResumePath());
        g_mainWindow = main;
        std::memcpy(g_appFolder, folder, sizeof folder);
    }
};

std::vector<PieceRecord> Pieces() { return std::vector<PieceRecord>(g_puzzle.pieces, g_puzzle.pieces + PieceCount(&g_puzzle)); }

bool SamePieces(const std::vector<PieceRecord>& a, const std::vector<PieceRecord>& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i].x != b[i].x || a[i].y != b[i].y || a[i].group != b[i].group || a[i].lit != b[i].lit) return false;
    return true;
}

void Answer(WPARAM key) {
    HWND message = CurrentMessageWindow();
    ASSERT_NE(message, nullptr);
    SendMessageA(message, WM_CHAR, key, 0);
    PumpMessages(150);
}

}  // namespace

TEST(ResumeKeeping, TheGameIsWrittenWithoutCountingAsASaveOfThePlayers) {
    ResumeScreen s;
    ASSERT_TRUE(s.screen.cut);
    g_puzzle.puzzle_dirty = 1;
    WriteResumeNow();
    EXPECT_TRUE(SysPathExists(ResumePath()));
    EXPECT_TRUE(ResumeFileOffersGame(ResumePath()));
    EXPECT_EQ(g_puzzle.puzzle_dirty, 1) << "the resume file is no save of the player's";
    // Beside the program, never among the saved games.
    EXPECT_EQ(std::string(ResumePath()), s.screen.folder.path + "Resume.epf");
}

TEST(ResumeKeeping, AFinishedGameRemovesTheResumeFile) {
    ResumeScreen s;
    ASSERT_TRUE(s.screen.cut);
    WriteResumeNow();
    ASSERT_TRUE(SysPathExists(ResumePath()));
    ShowComplete(&g_puzzle);
    WriteResumeNow();
    EXPECT_FALSE(SysPathExists(ResumePath()));
}

TEST(ResumeKeeping, YesAtStartUpBringsTheGameBackAsItWas) {
    ResumeScreen s;
    ASSERT_TRUE(s.screen.cut);
    const uint32_t top = g_puzzle.views[kTableView].entries[0];
    DropPiece(&g_puzzle, 0, kTableView, top, 12, 14);  // one piece into the tray
    g_puzzle.elapsed = 95;
    WriteResumeNow();
    const std::vector<PieceRecord> kept = Pieces();
    const uint32_t trayCount = g_puzzle.views[0].count;
    // The game moves on after the file was written, then the program "starts again".
    s.screen.LayOut({0, 1, 2, 3}, SpreadPositions());
    ASSERT_FALSE(SamePieces(Pieces(), kept));
    OfferResume();
    ASSERT_NE(CurrentMessageWindow(), nullptr) << "an unfinished game in the resume file is offered";
    Answer(13);
    EXPECT_TRUE(SamePieces(Pieces(), kept));
    EXPECT_EQ(g_puzzle.views[0].count, trayCount);
    EXPECT_EQ(g_puzzle.elapsed, 95u);
    EXPECT_EQ(g_puzzle.puzzle_dirty, 1) << "a resumed game is in no saved file: leaving it still asks";
    EXPECT_TRUE(SysPathExists(ResumePath()));
}

TEST(ResumeKeeping, NoAtStartUpRemovesTheFileAndLeavesTheTableAlone) {
    ResumeScreen s;
    ASSERT_TRUE(s.screen.cut);
    WriteResumeNow();
    s.screen.LayOut({3, 2, 1, 0}, SpreadPositions());
    const std::vector<PieceRecord> now = Pieces();
    OfferResume();
    ASSERT_NE(CurrentMessageWindow(), nullptr);
    Answer(27);
    EXPECT_FALSE(SysPathExists(ResumePath()));
    EXPECT_TRUE(SamePieces(Pieces(), now));
}

TEST(ResumeKeeping, NoQuestionWithoutAnUnfinishedGame) {
    ResumeScreen s;
    ASSERT_TRUE(s.screen.cut);
    OfferResume();
    EXPECT_EQ(CurrentMessageWindow(), nullptr) << "no file";
    WriteResumeNow();
    ShowComplete(&g_puzzle);
    WriteResumeNow();  // a finished game removes the file
    OfferResume();
    EXPECT_EQ(CurrentMessageWindow(), nullptr);
}
