// The settings file lies beside the program.
#include <gtest/gtest.h>

#include <cstring>

#include "app/app_state.h"
#include "app/settings.h"

TEST(Settings, TheFileLiesInTheProgramFolder) {
    char saved[kPathCapacity];
    std::memcpy(saved, g_appFolder, sizeof saved);
    std::strcpy(g_appFolder, "C:\\Games\\Tavirel Puzzle\\");
    EXPECT_STREQ(SettingsFilePath(), "C:\\Games\\Tavirel Puzzle\\tavirel.ini");
    g_appFolder[0] = 0;
    EXPECT_STREQ(SettingsFilePath(), "tavirel.ini");
    std::memcpy(g_appFolder, saved, sizeof saved);
}
