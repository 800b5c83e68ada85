// The clip player: which clips close on clicks, keys and their end, replay, the music around a clip,
// and what happens when a clip cannot play.
#include <gtest/gtest.h>
#include <windows.h>

#include <mmsystem.h>

#include <cstring>
#include <string>

#include "app/app_win32.h"
#include "controls/control_messages.h"
#include "controls/controls_win32.h"
#include "extras/video_win32.h"
#include "message_log_win32.h"
#include "win32_support.h"

#ifndef TAVIREL_CLIP_DIR
#error "the build passes the folder of the test clips"
#endif

namespace {

int g_openingDone, g_completionDone, g_musicPaused, g_musicResumed;

// Pumps until the window is gone or the time is up; true when it went.
bool WaitUntilGone(HWND window, DWORD ms) {
    DWORD end = GetTickCount() + ms;
    while (IsWindow(window) && int(end - GetTickCount()) > 0) PumpMessages(50);
    return !IsWindow(window);
}

DWORD ClipStatus(DWORD item) {
    MCI_STATUS_PARMS status = {};
    status.dwItem = item;
    if (!VideoDevice() || mciSendCommandA(VideoDevice(), MCI_STATUS, MCI_STATUS_ITEM, DWORD_PTR(&status))) return 0;
    return DWORD(status.dwReturn);
}

struct VideoFixture : ::testing::Test {
    TestWindow main{0, 0, 200, 200};
    void SetUp() override {
        RegisterControlClasses(GetModuleHandleA(nullptr));
        RegisterVideoClass(GetModuleHandleA(nullptr));
        // The clips lie in <folder>\Video: the program folder is the one above.
        std::string folder = TAVIREL_CLIP_DIR;
        folder.resize(folder.size() - std::strlen("Video"));
        std::strcpy(g_appFolder, folder.c_str());
        g_screenWidth = GetSystemMetrics(SM_CXSCREEN);
        g_screenHeight = GetSystemMetrics(SM_CYSCREEN);
        g_mainWindow = main.hwnd;
        g_openingDone = g_completionDone = g_musicPaused = g_musicResumed = 0;
        g_videoHooks = VideoHooks{};
        g_videoHooks.openingFinished = [] { ++g_openingDone; };
        g_videoHooks.completionFinished = [] { ++g_completionDone; };
        g_videoHooks.pauseMusic = [] { ++g_musicPaused; };
        g_videoHooks.resumeMusic = [] { ++g_musicResumed; };
    }
    void TearDown() override {
        g_videoHooks = VideoHooks{};
        g_mainWindow = nullptr;
    }
};

}  // namespace

TEST_F(VideoFixture, ClipPathIsTheKindsDigitInTheVideoFolder) {
    char path[MAX_PATH];
    BuildClipPath(1, path, sizeof path);
    EXPECT_EQ(std::string(path), std::string(g_appFolder) + "Video\\1.avi");
}

TEST_F(VideoFixture, CompletionClipClosesOnAClickAndLeadsOn) {
    HWND video = OpenVideo(VIDEO_COMPLETION);
    ASSERT_NE(video, nullptr);
    EXPECT_NE(VideoDevice(), 0u);
    EXPECT_FALSE(IsWindowEnabled(main.hwnd));
    PumpMessages(200);
    PostMessageA(video, WM_LBUTTONUP, 0, 0);
    ASSERT_TRUE(WaitUntilGone(video, 2000));
    EXPECT_EQ(VideoDevice(), 0u);
    EXPECT_EQ(g_completionDone, 1);
    EXPECT_EQ(g_openingDone, 0);
    EXPECT_TRUE(IsWindowEnabled(main.hwnd));
}

TEST_F(VideoFixture, OpeningClipClosesOnAKey) {
    HWND video = OpenVideo(VIDEO_OPENING);
    ASSERT_NE(video, nullptr);
    PumpMessages(200);
    PostMessageA(video, WM_CHAR, 'x', 1);
    ASSERT_TRUE(WaitUntilGone(video, 2000));
    EXPECT_EQ(g_openingDone, 1);
}

TEST_F(VideoFixture, OpeningClipClosesAtItsEnd) {
    HWND video = OpenVideo(VIDEO_OPENING);
    ASSERT_NE(video, nullptr);
    PumpMessages(500);
    EXPECT_TRUE(IsWindow(video));  // still playing half a second in
    ASSERT_TRUE(WaitUntilGone(video, 15000));
    EXPECT_EQ(g_openingDone, 1);
}

TEST_F(VideoFixture, FramedClipStaysOnClicksKeysAndItsEnd) {
    HWND video = OpenVideo(VIDEO_FRAMED);
    ASSERT_NE(video, nullptr);
    PostMessageA(video, WM_LBUTTONUP, 0, 0);
    PostMessageA(video, WM_CHAR, 'x', 1);
    PostMessageA(video, MM_MCINOTIFY, MCI_NOTIFY_SUCCESSFUL, LPARAM(VideoDevice()));
    PumpMessages(300);
    EXPECT_TRUE(IsWindow(video));
    SendMessageA(video, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(video));
    EXPECT_TRUE(IsWindowEnabled(main.hwnd));
}

TEST_F(VideoFixture, ReplayWhilePlayingDoesNothingAndRestartsAStoppedClip) {
    HWND video = OpenVideo(VIDEO_FRAMED);
    ASSERT_NE(video, nullptr);
    // The replay button stands at (ox + 296, oy + 378) of the centred frame.
    HWND replay = nullptr;
    for (HWND child = GetWindow(video, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        RECT r;
        GetWindowRect(child, &r);
        POINT at = {r.left, r.top}, origin = {0, 0};
        ClientToScreen(video, &origin);
        LONG ox = (g_screenWidth - 1) / 2, oy = (g_screenHeight - 1) / 2;  // no frame picture: 1 x 1
        if (at.x - origin.x == ox + 296 && at.y - origin.y == oy + 378) replay = child;
    }
    ASSERT_NE(replay, nullptr);
    PumpMessages(800);
    DWORD before = ClipStatus(MCI_STATUS_POSITION);
    ASSERT_EQ(ClipStatus(MCI_STATUS_MODE), DWORD(MCI_MODE_PLAY));
    SendMessageA(video, PM_NOTIFY, NOTIFY_CLICKED, LPARAM(replay));
    PumpMessages(100);
    EXPECT_GE(ClipStatus(MCI_STATUS_POSITION), before);  // not sent back to the start
    // Once the clip has stopped at its end, replay plays it again from the start.
    DWORD end = GetTickCount() + 15000;
    while (ClipStatus(MCI_STATUS_MODE) != MCI_MODE_STOP && int(end - GetTickCount()) > 0) PumpMessages(100);
    ASSERT_EQ(ClipStatus(MCI_STATUS_MODE), DWORD(MCI_MODE_STOP));
    DWORD atEnd = ClipStatus(MCI_STATUS_POSITION);
    SendMessageA(video, PM_NOTIFY, NOTIFY_CLICKED, LPARAM(replay));
    PumpMessages(100);
    EXPECT_EQ(ClipStatus(MCI_STATUS_MODE), DWORD(MCI_MODE_PLAY));
    EXPECT_LT(ClipStatus(MCI_STATUS_POSITION), atEnd);
    SendMessageA(video, WM_CLOSE, 0, 0);
}

TEST_F(VideoFixture, ClosingResumesTheMusicPausedForTheClip) {
    HWND video = OpenVideo(VIDEO_COMPLETION);
    ASSERT_NE(video, nullptr);
    EXPECT_EQ(g_musicPaused, 1);
    EXPECT_EQ(g_musicResumed, 0);
    SendMessageA(video, WM_CLOSE, 0, 0);
    EXPECT_EQ(g_musicResumed, 1);
}

TEST_F(VideoFixture, MissingClipLeadsTheFlowOnWithoutAWindow) {
    TempFolder empty;
    std::strcpy(g_appFolder, empty.path.c_str());
    EXPECT_EQ(OpenVideo(VIDEO_OPENING), nullptr);
    EXPECT_EQ(g_openingDone, 1);
    EXPECT_EQ(VideoDevice(), 0u);
    EXPECT_EQ(g_musicPaused, 0);
    EXPECT_TRUE(IsWindowEnabled(main.hwnd));
    EXPECT_EQ(OpenVideo(VIDEO_COMPLETION), nullptr);
    EXPECT_EQ(g_completionDone, 1);
}
