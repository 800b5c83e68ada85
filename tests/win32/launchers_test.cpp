// The help, about and web launchers: what they hand to the shell, and when they hand nothing.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

#include "app/app_win32.h"
#include "app/launchers_win32.h"
#include "win32_support.h"

namespace {

struct ShellCall {
    std::string verb, file;
    HWND owner;
    ULONG mask;
    int show;
    bool parameters, directory;
};
std::vector<ShellCall> g_calls;

BOOL WINAPI RecordShellCall(SHELLEXECUTEINFOA* info) {
    g_calls.push_back({info->lpVerb ? info->lpVerb : "", info->lpFile ? info->lpFile : "", info->hwnd, info->fMask,
                       info->nShow, info->lpParameters != nullptr, info->lpDirectory != nullptr});
    info->hProcess = nullptr;
    return TRUE;
}

struct LauncherFixture : ::testing::Test {
    TempFolder folder;
    HWND fakeMain = reinterpret_cast<HWND>(0x1234);
    void SetUp() override {
        g_calls.clear();
        g_shellExecute = RecordShellCall;
        std::strcpy(g_appFolder, folder.path.c_str());
        g_mainWindow = fakeMain;
    }
    void TearDown() override {
        g_shellExecute = ShellExecuteExA;
        g_mainWindow = nullptr;
        g_language = kEnglish;
    }
};

}  // namespace

TEST_F(LauncherFixture, HelpOpensTheLanguagesIndexPage) {
    LaunchHelp();
    ASSERT_EQ(g_calls.size(), 1u);
    EXPECT_EQ(g_calls[0].file, folder.path + "Help\\1\\Index.htm");
    EXPECT_EQ(g_calls[0].verb, "open");
    EXPECT_EQ(g_calls[0].owner, fakeMain);
    EXPECT_EQ(g_calls[0].mask, ULONG(SEE_MASK_NOCLOSEPROCESS));
    EXPECT_EQ(g_calls[0].show, 0);
    EXPECT_FALSE(g_calls[0].parameters);
    EXPECT_FALSE(g_calls[0].directory);
    g_language = kSpanish;
    LaunchHelp();
    ASSERT_EQ(g_calls.size(), 2u);
    EXPECT_EQ(g_calls[1].file, folder.path + "Help\\0\\Index.htm");
}

TEST_F(LauncherFixture, AboutStartsOnlyWhenTheProgramIsThere) {
    LaunchAbout();
    EXPECT_TRUE(g_calls.empty());
    ASSERT_TRUE(WriteFileBytes(folder.File("about.exe"), "MZ"));
    LaunchAbout();
    ASSERT_EQ(g_calls.size(), 1u);
    EXPECT_EQ(g_calls[0].file, folder.path + "about.exe");
    EXPECT_EQ(g_calls[0].verb, "open");
}

TEST_F(LauncherFixture, WebSiteOpensOnlyOnAYes) {
    LaunchWebSite(0);
    EXPECT_TRUE(g_calls.empty());
    LaunchWebSite(1);
    ASSERT_EQ(g_calls.size(), 1u);
    EXPECT_EQ(g_calls[0].file, kWebSiteAddress);
}

TEST(Launchers, HelpPageReallyOpensThroughTheShell) {
    // With Wine's browser stand-in the real shell call succeeds for an existing page.
    TempFolder folder;
    CreateDirectoryA(folder.File("Help").c_str(), nullptr);
    CreateDirectoryA(folder.File("Help\\1").c_str(), nullptr);
    ASSERT_TRUE(WriteFileBytes(folder.File("Help\\1\\Index.htm"), "<html><body>help</body></html>"));
    std::strcpy(g_appFolder, folder.path.c_str());
    char path[MAX_PATH + 32];
    BuildHelpPath(path, sizeof path);
    SHELLEXECUTEINFOA info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS;
    info.lpVerb = "open";
    info.lpFile = path;
    EXPECT_TRUE(ShellExecuteExA(&info));
    if (info.hProcess) {
        WaitForSingleObject(info.hProcess, 5000);
        CloseHandle(info.hProcess);
    }
}
