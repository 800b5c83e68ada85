// The finished picture as the desktop wallpaper: the bitmap written, the desktop registry values, and
// the folder of the player's own files when the Windows folder refuses the file.
#include <gtest/gtest.h>
#include <windows.h>
#include <shlobj.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "app/app_state.h"
#include "extras/wallpaper_win32.h"
#include "gfx/dib.h"
#include "puzzle/picture.h"
#include "win32_support.h"

namespace {

std::string DesktopValue(const char* name) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\desktop", 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
        return "<no key>";
    char value[MAX_PATH] = "";
    DWORD size = sizeof value, type = 0;
    LONG result = RegQueryValueExA(key, name, nullptr, &type, reinterpret_cast<BYTE*>(value), &size);
    RegCloseKey(key);
    if (result != ERROR_SUCCESS || type != REG_SZ) return "<none>";
    return value;
}

uint32_t U32(const std::string& bytes, size_t at) {
    uint32_t value = 0;
    if (at + 4 <= bytes.size()) std::memcpy(&value, bytes.data() + at, 4);
    return value;
}

class Wallpaper : public ::testing::Test {
protected:
    int32_t savedWidth = g_screenWidth, savedHeight = g_screenHeight;
    void SetUp() override {
        g_screenWidth = 1024;
        g_screenHeight = 768;
        // 300 x 150: wider than the screen's shape, so the wallpaper fills the width.
        SetCurrentPicture(MakeDib24(300, 150, [](int x, int y) { return PatternColor(x, y, 3); }), "Image\\Test07.bmp");
    }
    void TearDown() override {
        ClearCurrentPicture();
        g_screenWidth = savedWidth;
        g_screenHeight = savedHeight;
    }
    void ExpectWallpaperFile(const std::string& path) {
        const std::string bytes = ReadFileBytes(path);
        const uint32_t pixels = uint32_t(DibStride(24, 1024)) * 512;
        ASSERT_EQ(bytes.size(), 54 + pixels) << path;
        EXPECT_EQ(bytes.substr(0, 2), "BM");
        EXPECT_EQ(U32(bytes, 2), 54 + pixels);  // file size
        EXPECT_EQ(U32(bytes, 10), 54u);         // pixel offset
        EXPECT_EQ(int32_t(U32(bytes, 18)), 1024);
        EXPECT_EQ(int32_t(U32(bytes, 22)), 512);
    }
};

}  // namespace

TEST_F(Wallpaper, TheWindowsFolderTakesTheBitmapAndTheDesktopShowsItUntiled) {
    char windows[MAX_PATH] = "";
    GetWindowsDirectoryA(windows, sizeof windows);
    char used[MAX_PATH] = "";
    ASSERT_TRUE(PlaceWallpaper(windows, used, sizeof used));
    const std::string expected = std::string(windows) + "\\Tavirel.bmp";
    EXPECT_STREQ(used, expected.c_str());
    ExpectWallpaperFile(expected);
    EXPECT_EQ(DesktopValue("TileWallpaper"), "0");
    EXPECT_EQ(lstrcmpiA(DesktopValue("Wallpaper").c_str(), expected.c_str()), 0) << DesktopValue("Wallpaper");
    char asked[MAX_PATH] = "";
    SystemParametersInfoA(SPI_GETDESKWALLPAPER, sizeof asked, asked, 0);
    EXPECT_EQ(lstrcmpiA(asked, expected.c_str()), 0) << asked;
}

TEST_F(Wallpaper, AWindowsFolderThatRefusesTheFileSendsItToTheLocalApplicationData) {
    char local[MAX_PATH] = "";
    ASSERT_TRUE(SUCCEEDED(SHGetFolderPathA(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, local)));
    const std::string expected = std::string(local) + "\\Tavirel Puzzle\\Tavirel.bmp";
    DeleteFileA(expected.c_str());
    // A folder that does not exist cannot take a file, as a protected Windows folder refuses one.
    char used[MAX_PATH] = "";
    ASSERT_TRUE(PlaceWallpaper("C:\\no such folder\\windows", used, sizeof used));
    EXPECT_STREQ(used, expected.c_str());
    ExpectWallpaperFile(expected);
    EXPECT_EQ(DesktopValue("TileWallpaper"), "0");
    EXPECT_EQ(lstrcmpiA(DesktopValue("Wallpaper").c_str(), expected.c_str()), 0) << DesktopValue("Wallpaper");
}

TEST_F(Wallpaper, AReadOnlyOlderCopyIsReplaced) {
    TempFolder dir;
    const std::string folder = dir.path.substr(0, dir.path.size() - 1);
    const std::string path = dir.File("Tavirel.bmp");
    ASSERT_TRUE(WriteFileBytes(path, "an older wallpaper"));
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY);
    char used[MAX_PATH] = "";
    ASSERT_TRUE(PlaceWallpaper(folder.c_str(), used, sizeof used));
    EXPECT_STREQ(used, path.c_str());
    ExpectWallpaperFile(path);
}

TEST_F(Wallpaper, WithoutAPictureNothingIsSetAndNothingWritten) {
    ClearCurrentPicture();
    TempFolder dir;
    const std::string folder = dir.path.substr(0, dir.path.size() - 1);
    char used[MAX_PATH] = "x";
    EXPECT_FALSE(PlaceWallpaper(folder.c_str(), used, sizeof used));
    EXPECT_STREQ(used, "");
    EXPECT_EQ(GetFileAttributesA(dir.File("Tavirel.bmp").c_str()), INVALID_FILE_ATTRIBUTES);
}
