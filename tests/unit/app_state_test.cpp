// The program-folder rule applied to the module's path.
#include <gtest/gtest.h>

#include <cstring>

#include "app/app_state.h"

namespace {

std::string Folder(const char* modulePath) {
    char buffer[kPathCapacity] = {};
    std::strncpy(buffer, modulePath, kPathCapacity - 1);
    int32_t length = FolderOfModulePath(buffer, int32_t(std::strlen(buffer)));
    EXPECT_EQ(length, int32_t(std::strlen(buffer)));
    return buffer;
}

}  // namespace

TEST(AppFolder, CutsJustBehindTheLastBackslash) {
    EXPECT_EQ(Folder("C:\\Games\\Tavirel\\Tavirel.exe"), "C:\\Games\\Tavirel\\");
    EXPECT_EQ(Folder("C:\\Tavirel.exe"), "C:\\");
}

TEST(AppFolder, PathWithoutBackslashKeepsTheWholeName) {
    EXPECT_EQ(Folder("Tavirel.exe"), "Tavirel.exe");
}

TEST(AppFolder, BackslashOnlyAtIndexZeroKeepsTheWholeName) {
    EXPECT_EQ(Folder("\\Tavirel.exe"), "\\Tavirel.exe");
}

TEST(AppFolder, StartsInEnglish) {
    EXPECT_EQ(g_language, kEnglish);
}
