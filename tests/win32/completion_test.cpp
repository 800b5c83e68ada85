// What follows the last piece: the finished picture with its title, the wallpaper question, and the
// honour roll whatever the answer; with a clip or a picture that cannot be shown, the flow goes on.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "app/app_state.h"
#include "app/app_win32.h"
#include "app/art_ids.h"
#include "app/message_window_win32.h"
#include "controls/controls_win32.h"
#include "extras/completion_win32.h"
#include "extras/honour_win32.h"
#include "extras/video_win32.h"
#include "extras/wallpaper_win32.h"
#include "finished_puzzle.h"
#include "gfx/dib.h"
#include "gfx/pack.h"
#include "message_log_win32.h"
#include "puzzle/picture.h"
#include "setup/picture_window_win32.h"
#include "win32_support.h"

namespace {

constexpr int32_t kScreenWidth = 800, kScreenHeight = 600;

// The DIB as a ".bmp" file: the 14-byte file header in front of the packed header, table and rows.
bool WriteBmpFile(const std::string& path, const uint8_t* dib) {
    const DibHeader* header = DibHeaderOf(dib);
    const uint32_t colors = header->biClrUsed;
    const uint32_t offset = 54 + 4 * colors;
    std::string bytes(14, '\0');
    bytes[0] = 'B';
    bytes[1] = 'M';
    const uint32_t size = offset + header->biSizeImage;
    std::memcpy(&bytes[2], &size, 4);
    std::memcpy(&bytes[10], &offset, 4);
    bytes.append(reinterpret_cast<const char*>(dib), 40 + 4 * colors);
    bytes.append(reinterpret_cast<const char*>(DibPixels(dib)), header->biSizeImage);
    return WriteFileBytes(path, bytes);
}

void PumpFor(DWORD ms) {
    const DWORD start = GetTickCount();
    for (;;) {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
        const DWORD elapsed = GetTickCount() - start;
        if (elapsed >= ms) break;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, ms - elapsed, QS_ALLINPUT);
    }
}

// Until the window is gone, or two seconds.
void PumpUntilGone(HWND window) {
    for (int i = 0; i < 200 && IsWindow(window); ++i) PumpFor(10);
}

// The program folder with one photograph (Image\Ladybird07.bmp) and a pack with every picture the
// picture window, the message window and the honour roll draw.
struct Completion : ::testing::Test {
    TempFolder folder;
    char savedFolder[kPathCapacity];
    int32_t savedWidth = g_screenWidth, savedHeight = g_screenHeight, savedLanguage = g_language;
    HWND savedMain = g_mainWindow;
    VideoHooks savedHooks = g_videoHooks;
    std::vector<uint8_t*> art;

    void SetUp() override {
        std::memcpy(savedFolder, g_appFolder, sizeof savedFolder);
        std::snprintf(g_appFolder, sizeof g_appFolder, "%s", folder.path.c_str());
        static bool registered = false;
        if (!registered) {
            HINSTANCE instance = GetModuleHandleA(nullptr);
            EnsureControlClasses();
            RegisterMessageWindowClass(instance);
            RegisterHonourClass(instance);
            RegisterPictureWindowClass(instance);
            RegisterVideoClass(instance);
            registered = true;
        }
        g_screenWidth = kScreenWidth;
        g_screenHeight = kScreenHeight;
        g_language = kEnglish;
        g_mainWindow = nullptr;
        InstallCompletionFlow();
        auto add = [&](uint32_t id, uint8_t* dib) {
            art.push_back(dib);
            return std::pair<uint32_t, const uint8_t*>(id, dib);
        };
        auto eight = [](int w, int h, uint8_t index) { return MakeDib8(w, h, 256, [index](int, int) { return index; }); };
        auto strip = [](COLORREF c) { return MakeDib24(500, 50, [c](int x, int) { return RGB(x / 50 * 20, GetGValue(c), GetBValue(c)); }); };
        std::vector<std::pair<uint32_t, const uint8_t*>> items = {
            add(kArtBackdropTile, eight(80, 80, 40)),
            add(kArtPictureFrame, eight(800, 600, 50)),
            add(kArtPrintButton, strip(RGB(0, 90, 30))),
            add(kArtCloseAnimButton, strip(RGB(0, 30, 90))),
            add(kArtMessageFrame, eight(400, 200, 60)),
            add(kArtMessageHeading + 0, eight(60, 20, 61)),
            add(kArtMessageHeading + 1, eight(60, 20, 62)),
            add(kArtMessageOkButton, MakeFrameStrip(60, 30, {RGB(200, 0, 0), RGB(0, 200, 0), RGB(0, 0, 200)})),
            add(kArtMessageCancelButton, MakeFrameStrip(70, 32, {RGB(90, 90, 0), RGB(0, 90, 90), RGB(90, 0, 90)})),
            add(kArtHonourPanel, eight(640, 480, 70)),
            add(kArtHonourTitle + 0, eight(200, 40, 71)),
            add(kArtHonourTitle + 1, eight(200, 40, 72)),
            add(kArtWipeButton, strip(RGB(0, 60, 60))),
        };
        ASSERT_TRUE(WriteTestPack(folder.File("Tavirel.rf"), items));
        ASSERT_TRUE(OpenPack(&g_pack, folder.File("Tavirel.rf").c_str()));
        CreateDirectoryA(folder.File("Image").c_str(), nullptr);
        uint8_t* photo = MakeDib24(300, 200, [](int x, int y) { return PatternColor(x, y, 11); });
        ASSERT_TRUE(WriteBmpFile(folder.File("Image\\Ladybird07.bmp"), photo));
        FreePackedDib(photo);
        ASSERT_TRUE(LoadCurrentPicture("Image\\Ladybird07.bmp"));
    }

    void TearDown() override {
        if (HWND picture = CurrentPictureWindow()) DestroyWindow(picture);
        if (HWND message = CurrentMessageWindow()) DestroyWindow(message);
        if (HWND honour = CurrentHonourWindow()) DestroyWindow(honour);
        PumpFor(100);  // an answer still on its way finds no question
        if (HWND message = CurrentMessageWindow()) DestroyWindow(message);
        if (HWND honour = CurrentHonourWindow()) DestroyWindow(honour);
        ClearCurrentPicture();
        ClosePack(&g_pack);
        for (uint8_t* dib : art) FreePackedDib(dib);
        DeleteFileA(folder.File("Image\\Ladybird07.bmp").c_str());
        DeleteFileA(folder.File("Records.qmr").c_str());
        RemoveDirectoryA(folder.File("Image").c_str());
        g_videoHooks = savedHooks;
        g_mainWindow = savedMain;
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
        g_language = savedLanguage;
        std::memcpy(g_appFolder, savedFolder, sizeof savedFolder);
    }

    // Answers the question now showing with Enter (13) or Escape (27), typing name first when it asks
    // for one; returns when the answer has reached its callback.
    void Answer(WPARAM key, const char* name = nullptr) {
        HWND message = CurrentMessageWindow();
        ASSERT_NE(message, nullptr);
        if (name) {
            HWND field = FindWindowExA(message, nullptr, "EDIT", nullptr);
            ASSERT_NE(field, nullptr);
            SendMessageA(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name));
        }
        SendMessageA(message, WM_CHAR, key, 0);
        PumpUntilGone(message);
        ASSERT_FALSE(IsWindow(message));
        PumpFor(300);  // the answer waits 45 ms on its timer
    }

    static bool AsksForAName(HWND message) { return message && FindWindowExA(message, nullptr, "EDIT", nullptr); }
};

}  // namespace

TEST_F(Completion, TheFinishedPictureShowsWithItsTitleAndCanBePrinted) {
    ShowCompletedPicture();
    HWND picture = CurrentPictureWindow();
    ASSERT_NE(picture, nullptr);
    char expected[128] = "";
    LoadStringA(GetModuleHandleA(nullptr), kStrPictureTitle + 7, expected, sizeof expected);
    ASSERT_STRNE(expected, "");
    EXPECT_STREQ(g_pictureTitle, expected);
    EXPECT_NE(GetDlgItem(picture, kPicturePrintButtonId), nullptr);
    EXPECT_NE(GetDlgItem(picture, kPictureCloseButtonId), nullptr);
    EXPECT_EQ(CurrentMessageWindow(), nullptr);  // the question waits for the picture to close
}

TEST_F(Completion, ClosingTheFinishedPictureAsksAboutTheWallpaper) {
    ShowCompletedPicture();
    HWND picture = CurrentPictureWindow();
    ASSERT_NE(picture, nullptr);
    SendMessageA(picture, WM_CLOSE, 0, 0);
    PumpUntilGone(picture);
    HWND message = CurrentMessageWindow();
    ASSERT_NE(message, nullptr);
    EXPECT_FALSE(AsksForAName(message));
    EXPECT_EQ(CurrentHonourWindow(), nullptr);
}

TEST_F(Completion, APictureThatCannotBeReadGoesStraightToTheWallpaperQuestion) {
    ASSERT_TRUE(DeleteFileA(folder.File("Image\\Ladybird07.bmp").c_str()));
    ShowCompletedPicture();
    EXPECT_EQ(CurrentPictureWindow(), nullptr);
    HWND message = CurrentMessageWindow();
    ASSERT_NE(message, nullptr);
    EXPECT_FALSE(AsksForAName(message));
}

TEST_F(Completion, AClipThatCannotPlayStillLeadsToTheFinishedPicture) {
    // The program folder holds no Video folder: the completion clip cannot open.
    EXPECT_EQ(OpenVideo(VIDEO_COMPLETION), nullptr);
    EXPECT_NE(CurrentPictureWindow(), nullptr);
}

TEST_F(Completion, AnsweringNoToTheWallpaperQuestionStillChecksTheHonourRoll) {
    FinishedPuzzle puzzle(0);  // a score of 4000 against no records
    AskWallpaper(1);
    Answer(27);
    HWND honour = CurrentHonourWindow();
    ASSERT_NE(honour, nullptr);
    EXPECT_TRUE(AsksForAName(CurrentMessageWindow()));
}

TEST_F(Completion, TheWholeEndOfAGameStoresTheRecordWithTheTypedName) {
    FinishedPuzzle puzzle(14);  // 4000 / 3 = 1333
    ShowCompletedPicture();
    HWND picture = CurrentPictureWindow();
    ASSERT_NE(picture, nullptr);
    SendMessageA(picture, WM_CLOSE, 0, 0);
    PumpUntilGone(picture);
    Answer(13);  // yes: the wallpaper is set, then the honour roll
    char windows[MAX_PATH] = "";
    GetWindowsDirectoryA(windows, sizeof windows);
    EXPECT_NE(GetFileAttributesA((std::string(windows) + "\\Tavirel.bmp").c_str()), INVALID_FILE_ATTRIBUTES);
    ASSERT_NE(CurrentHonourWindow(), nullptr);
    Answer(13, "Ada");
    const std::string records = ReadFileBytes(folder.File("Records.qmr"));
    ASSERT_EQ(records.size(), 296u);
    EXPECT_STREQ(records.c_str() + 16, "Ada");
    int32_t score = 0;
    std::memcpy(&score, records.data() + 16 + 24, 4);
    EXPECT_EQ(score, 1333);
    EXPECT_NE(CurrentHonourWindow(), nullptr);  // the table stays for the player to see
}
