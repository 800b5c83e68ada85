// The music: our own pieces through MCI when there is no disc device, the loop on the success notice,
// pause and resume around clips and printing, stop; the music window with its track buttons, sliders,
// indicators and the mixer behind them (a private PulseAudio server gives Wine a real mixer here).
#include <gtest/gtest.h>
#include <windows.h>

#include <mmsystem.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "controls/animated_button_win32.h"
#include "controls/control_messages.h"
#include "extras/completion_win32.h"
#include "extras/mixer_rules.h"
#include "extras/mixer_win32.h"
#include "extras/music_win32.h"
#include "extras/music_window_win32.h"
#include "extras/printing_win32.h"
#include "extras/video_win32.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "win32_support.h"

#ifndef TAVIREL_MUSIC_DIR
#error "the build passes the folder of the game's own music"
#endif

namespace {

std::vector<WPARAM> g_notices;  // MM_MCINOTIFY codes the main window heard

LRESULT CALLBACK MainProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == MM_MCINOTIFY) {
        g_notices.push_back(wParam);
        OnMusicNotify(wParam, lParam);
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

DWORD MusicStatus(DWORD item) {
    MCI_STATUS_PARMS status = {};
    status.dwItem = item;
    if (!g_musicDevice || mciSendCommandA(g_musicDevice, MCI_STATUS, MCI_STATUS_ITEM | MCI_WAIT, DWORD_PTR(&status)))
        return DWORD(-1);
    return DWORD(status.dwReturn);
}

int OpenMciDevices() {
    char answer[32] = "";
    mciSendStringA("sysinfo all quantity open", answer, sizeof answer, nullptr);
    return std::atoi(answer);
}

bool Count(WPARAM code) {
    for (WPARAM n : g_notices)
        if (n == code) return true;
    return false;
}

struct MusicFixture : ::testing::Test {
    HWND main = nullptr;
    char savedFolder[kPathCapacity];
    void SetUp() override {
        std::memcpy(savedFolder, g_appFolder, sizeof savedFolder);
        // The pieces lie in <folder>\Music: the program folder is the one above.
        std::string folder = TAVIREL_MUSIC_DIR;
        folder.resize(folder.size() - std::strlen("Music"));
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s", folder.c_str());
        WNDCLASSA windowClass = {};
        windowClass.lpfnWndProc = MainProc;
        windowClass.hInstance = GetModuleHandleA(nullptr);
        windowClass.lpszClassName = "MusicTestMain";
        RegisterClassA(&windowClass);
        main = CreateWindowExA(0, "MusicTestMain", "", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr,
                               GetModuleHandleA(nullptr), nullptr);
        g_mainWindow = main;
        g_notices.clear();
        g_musicTrack = 0;
    }
    void TearDown() override {
        StopMusic();
        PumpMessages(50);
        g_mainWindow = nullptr;
        DestroyWindow(main);
        std::memcpy(g_appFolder, savedFolder, sizeof savedFolder);
    }
};

}  // namespace

TEST_F(MusicFixture, OwnPiecePathsAreTheMusicFolderBesideTheProgram) {
    char path[MAX_PATH];
    ASSERT_TRUE(OwnPiecePath(3, path, sizeof path));
    EXPECT_EQ(std::string(path), std::string(g_appFolder) + "Music\\Track3.wav");
    EXPECT_FALSE(OwnPiecePath(0, path, sizeof path));
    EXPECT_FALSE(OwnPiecePath(5, path, sizeof path));
}

TEST_F(MusicFixture, OwnPiecesPlayWhenNoDiscDeviceOpens) {
    // No drive here: the compact disc fails to open, as on nearly every computer today.
    MCI_OPEN_PARMSA disc = {};
    disc.lpstrDeviceType = reinterpret_cast<LPCSTR>(MCI_DEVTYPE_CD_AUDIO);
    ASSERT_NE(mciSendCommandA(0, MCI_OPEN, MCI_OPEN_TYPE | MCI_OPEN_TYPE_ID | MCI_WAIT, DWORD_PTR(&disc)), 0u);
    ASSERT_TRUE(StartMusicTrack(2));
    EXPECT_NE(g_musicDevice, 0u);
    EXPECT_EQ(g_musicOwnPieces, 1);
    EXPECT_EQ(g_musicTrack, 2);
    EXPECT_EQ(MusicStatus(MCI_STATUS_MODE), DWORD(MCI_MODE_PLAY));
    EXPECT_GT(MusicStatus(MCI_STATUS_LENGTH), 60000u);  // a piece of more than a minute, in milliseconds
    EXPECT_TRUE(PumpUntil([] { return MusicStatus(MCI_STATUS_POSITION) > 100; }, 5000));
}

TEST_F(MusicFixture, AMissingPieceLeavesTheMusicOff) {
    std::snprintf(g_appFolder, sizeof g_appFolder, "C:\\no such folder\\");
    EXPECT_FALSE(StartMusicTrack(1));
    EXPECT_EQ(g_musicDevice, 0u);
    PauseMusic();
    ResumeMusic();
    EXPECT_EQ(g_musicDevice, 0u);
}

TEST_F(MusicFixture, AChosenTrackLoopsOnTheSuccessNotice) {
    ASSERT_TRUE(StartMusicTrack(1));
    const DWORD length = MusicStatus(MCI_STATUS_LENGTH);
    ASSERT_GT(length, 1000u);
    // Skip to the last moments, as the main window would have asked, and let the piece end for real.
    MCI_PLAY_PARMS play = {};
    play.dwCallback = DWORD_PTR(main);
    play.dwFrom = length - 300;
    ASSERT_EQ(mciSendCommandA(g_musicDevice, MCI_PLAY, MCI_NOTIFY | MCI_FROM, DWORD_PTR(&play)), 0u);
    ASSERT_TRUE(PumpUntil([] { return Count(MCI_NOTIFY_SUCCESSFUL); }, 5000));
    // The notice started the piece again from its beginning.
    EXPECT_EQ(MusicStatus(MCI_STATUS_MODE), DWORD(MCI_MODE_PLAY));
    EXPECT_LT(MusicStatus(MCI_STATUS_POSITION), length / 2);
    EXPECT_TRUE(PumpUntil([] { return MusicStatus(MCI_STATUS_POSITION) > 50; }, 5000));
}

TEST_F(MusicFixture, ALateNoticeFromAnotherDeviceRestartsNothing) {
    ASSERT_TRUE(StartMusicTrack(3));
    ASSERT_TRUE(PumpUntil([] { return MusicStatus(MCI_STATUS_POSITION) > 400; }, 5000));
    SendMessageA(main, MM_MCINOTIFY, MCI_NOTIFY_SUCCESSFUL, LPARAM(g_musicDevice + 1));
    EXPECT_GE(MusicStatus(MCI_STATUS_POSITION), 400u);
}

TEST_F(MusicFixture, PauseAndResumeGoOnFromWhereThePieceStopped) {
    ASSERT_TRUE(StartMusicTrack(4));
    ASSERT_TRUE(PumpUntil([] { return MusicStatus(MCI_STATUS_POSITION) > 500; }, 5000));
    PauseMusic();
    EXPECT_NE(MusicStatus(MCI_STATUS_MODE), DWORD(MCI_MODE_PLAY));
    const DWORD at = MusicStatus(MCI_STATUS_POSITION);
    PumpMessages(150);
    EXPECT_EQ(MusicStatus(MCI_STATUS_POSITION), at);
    ResumeMusic();
    EXPECT_EQ(MusicStatus(MCI_STATUS_MODE), DWORD(MCI_MODE_PLAY));
    EXPECT_GE(MusicStatus(MCI_STATUS_POSITION) + 50, at);
    EXPECT_FALSE(Count(MCI_NOTIFY_SUCCESSFUL));
}

TEST_F(MusicFixture, AfterStopPauseAndResumeDoNothing) {
    ASSERT_TRUE(StartMusicTrack(1));
    StopMusic();
    EXPECT_EQ(g_musicDevice, 0u);
    EXPECT_EQ(OpenMciDevices(), 0);
    PauseMusic();
    ResumeMusic();
    PlayMusic();
    EXPECT_EQ(g_musicDevice, 0u);
    EXPECT_EQ(OpenMciDevices(), 0);
}

TEST_F(MusicFixture, TheCompletionClipPausesTheMusicAndItsEndResumesIt) {
    RegisterVideoClass(GetModuleHandleA(nullptr));
    InstallCompletionFlow();
    EXPECT_EQ(g_videoHooks.pauseMusic, PauseMusic);
    EXPECT_EQ(g_videoHooks.resumeMusic, ResumeMusic);
    g_videoHooks.completionFinished = nullptr;  // the picture window is not part of this test
    ASSERT_TRUE(StartMusicTrack(2));
    ASSERT_TRUE(PumpUntil([] { return MusicStatus(MCI_STATUS_POSITION) > 300; }, 5000));
    HWND video = OpenVideo(VIDEO_COMPLETION);
    ASSERT_NE(video, nullptr);
    EXPECT_NE(MusicStatus(MCI_STATUS_MODE), DWORD(MCI_MODE_PLAY));
    const DWORD at = MusicStatus(MCI_STATUS_POSITION);
    PostMessageA(video, WM_LBUTTONUP, 0, 0);
    ASSERT_TRUE(PumpUntil([&] { return !IsWindow(video); }, 3000));
    EXPECT_EQ(MusicStatus(MCI_STATUS_MODE), DWORD(MCI_MODE_PLAY));
    EXPECT_GE(MusicStatus(MCI_STATUS_POSITION) + 50, at);
    g_videoHooks = VideoHooks{};
}

TEST_F(MusicFixture, PrintingPausesTheMusicAndResumesIt) {
    RegisterPrintWaitClass(GetModuleHandleA(nullptr));
    ASSERT_TRUE(StartMusicTrack(3));
    ASSERT_TRUE(PumpUntil([] { return MusicStatus(MCI_STATUS_POSITION) > 300; }, 5000));
    const DWORD before = MusicStatus(MCI_STATUS_POSITION);
    g_notices.clear();
    PrintWithWaitWindow(main, nullptr);
    // The pause stopped the playing stretch (its notice says so) and the resume played on from there.
    EXPECT_TRUE(PumpUntil([] { return Count(MCI_NOTIFY_ABORTED) || Count(MCI_NOTIFY_SUPERSEDED); }, 2000));
    EXPECT_FALSE(Count(MCI_NOTIFY_SUCCESSFUL));
    EXPECT_EQ(MusicStatus(MCI_STATUS_MODE), DWORD(MCI_MODE_PLAY));
    EXPECT_GE(MusicStatus(MCI_STATUS_POSITION), before);
}
