// The executable's media: the WAVE resources play from memory, the cursors, icon, notice dialog and
// strings load, and each video clip opens with MCI, reports its size and ends with a success notice.
#include <gtest/gtest.h>
#include <windows.h>
#include <mmsystem.h>
#include <digitalv.h>

#include <cstring>
#include <string>

#include "app/art_ids.h"

namespace {

HMODULE Module() { return GetModuleHandleA(nullptr); }

// Drains the queue until done() or the timeout, the way a message loop would.
template <typename Done>
bool PumpUntil(Done done, DWORD timeoutMs) {
    DWORD start = GetTickCount();
    while (!done()) {
        if (GetTickCount() - start > timeoutMs) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
    }
    return true;
}

TEST(MediaResources, EachWaveResourcePlaysFromMemory) {
    for (int id : {kResHoverSound, kResClickSound}) {
        SCOPED_TRACE(id);
        HRSRC found = FindResourceA(Module(), MAKEINTRESOURCEA(id), "WAVE");
        ASSERT_NE(found, nullptr);
        HGLOBAL loaded = LoadResource(Module(), found);
        ASSERT_NE(loaded, nullptr);
        const char* wave = static_cast<const char*>(LockResource(loaded));
        ASSERT_NE(wave, nullptr);
        DWORD size = SizeofResource(Module(), found);
        ASSERT_GT(size, 44u);
        // A complete RIFF/WAVE image with its format and data chunks, short enough not to overlap.
        EXPECT_EQ(std::memcmp(wave, "RIFF", 4), 0);
        EXPECT_EQ(std::memcmp(wave + 8, "WAVEfmt ", 8), 0);
        EXPECT_EQ(std::memcmp(wave + 36, "data", 4), 0);
        DWORD bytesPerSecond;
        std::memcpy(&bytesPerSecond, wave + 28, 4);
        EXPECT_LT(size - 44, bytesPerSecond / 4) << "longer than a quarter second";
        EXPECT_TRUE(PlaySoundA(wave, nullptr, SND_MEMORY | SND_ASYNC | SND_NODEFAULT | SND_NOSTOP));
        PumpUntil([] { return false; }, 300);
    }
    PlaySoundA(nullptr, nullptr, 0);
}

TEST(MediaResources, CursorsIconAndNoticeDialogLoad) {
    for (int id : {kResTrayCursor, kResDragCursor, kResNormalCursor}) EXPECT_NE(LoadCursorA(Module(), MAKEINTRESOURCEA(id)), nullptr) << id;
    EXPECT_NE(LoadIconA(Module(), MAKEINTRESOURCEA(kResAppIcon)), nullptr);
    HWND dialog = CreateDialogParamA(Module(), MAKEINTRESOURCEA(kResNoticeDialog), nullptr,
                                     [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
    ASSERT_NE(dialog, nullptr);
    EXPECT_NE(GetDlgItem(dialog, 1000), nullptr);
    EXPECT_NE(GetDlgItem(dialog, IDOK), nullptr);
    char caption[64] = "";
    GetWindowTextA(dialog, caption, sizeof caption);
    EXPECT_STREQ(caption, "Tavirel Puzzle");
    DestroyWindow(dialog);
}

TEST(MediaResources, StringsExistForEveryLanguage) {
    char text[300];
    const int bases[] = {20, 40, 50, 60, 70, 80, 100, 110, 120, 130, 140, 150, 160, 170, 180, 190,
                         kStrWebQuestion, kStrMissingPack, kStrResumeQuestion};
    for (int base : bases)
        for (int language = 0; language < kLanguageCount; ++language)
            EXPECT_GT(LoadStringA(Module(), UINT(base + language), text, sizeof text), 0) << base + language;
    // The resolution notice and the printing wait exist in Spanish and English only.
    for (int base : {200, 210})
        for (int language = 0; language < kLanguageCount; ++language)
            EXPECT_EQ(LoadStringA(Module(), UINT(base + language), text, sizeof text) > 0, language < 2)
                << base + language;
    ASSERT_GT(LoadStringA(Module(), 21, text, sizeof text), 0);
    EXPECT_STREQ(text, "\n\nWrite the new name of the BOX :");
    ASSERT_GT(LoadStringA(Module(), 121, text, sizeof text), 0);
    EXPECT_STREQ(text, "Preview");
    // Picture titles carry the "." the picture window centres on.
    for (int n = 1; n <= 11; ++n) {
        ASSERT_GT(LoadStringA(Module(), UINT(kStrPictureTitle + n), text, 100), 0) << n;
        EXPECT_NE(std::strchr(text, '.'), nullptr) << n;
    }
}

// Receives the MCI notification of a clip that plays to its end.
WPARAM g_notice;
LRESULT CALLBACK NoticeProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == MM_MCINOTIFY) {
        g_notice = wParam;
        return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

TEST(MediaClips, EachClipOpensReportsItsSizeAndEndsSuccessfully) {
    WNDCLASSA wc{};
    wc.lpfnWndProc = NoticeProc;
    wc.hInstance = Module();
    wc.lpszClassName = "TavirelMediaTestNotice";
    RegisterClassA(&wc);
    HWND notice = CreateWindowA(wc.lpszClassName, "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, Module(), nullptr);
    ASSERT_NE(notice, nullptr);
    const SIZE sizes[3] = {{320, 240}, {400, 300}, {400, 300}};
    for (int kind = 0; kind < 3; ++kind) {
        SCOPED_TRACE(kind);
        std::string path = std::string(TAVIREL_CLIP_DIR) + "\\" + std::to_string(kind) + ".avi";
        char deviceType[] = "avivideo";
        MCI_DGV_OPEN_PARMSA open{};
        open.lpstrDeviceType = deviceType;
        open.lpstrElementName = &path[0];
        open.dwStyle = WS_POPUP;
        MCIERROR error = mciSendCommandA(0, MCI_OPEN, MCI_OPEN_TYPE | MCI_OPEN_ELEMENT, DWORD_PTR(&open));
        ASSERT_EQ(error, 0u) << path;
        MCI_DGV_RECT_PARMS where{};
        EXPECT_EQ(mciSendCommandA(open.wDeviceID, MCI_WHERE, MCI_DGV_WHERE_SOURCE, DWORD_PTR(&where)), 0u);
        EXPECT_EQ(where.rc.right - where.rc.left, sizes[kind].cx);
        EXPECT_EQ(where.rc.bottom - where.rc.top, sizes[kind].cy);
        g_notice = 0;
        MCI_PLAY_PARMS play{};
        play.dwCallback = DWORD_PTR(notice);
        EXPECT_EQ(mciSendCommandA(open.wDeviceID, MCI_PLAY, MCI_NOTIFY, DWORD_PTR(&play)), 0u);
        EXPECT_TRUE(PumpUntil([] { return g_notice != 0; }, 15000)) << "no notification";
        EXPECT_EQ(g_notice, WPARAM(MCI_NOTIFY_SUCCESSFUL));
        mciSendCommandA(open.wDeviceID, MCI_CLOSE, 0, 0);
    }
    DestroyWindow(notice);
}

}  // namespace
