// The remembered choices through the settings file.
#include "app/preferences_win32.h"

#include <windows.h>

#include <cstdio>

#include "app/app_state.h"
#include "app/preferences.h"
#include "app/settings.h"

int32_t g_rememberedCloth;

static void ReadSetting(const char* key, char* text, DWORD size) {
    GetPrivateProfileStringA(kSettingsSection, key, "", text, size, SettingsFilePath());
}

void LoadPreferences() {
    char text[32];
    ReadSetting(kLanguageKey, text, sizeof text);
    g_language = LanguageFromSetting(text);
    ReadSetting(kClothKey, text, sizeof text);
    g_rememberedCloth = ClothFromSetting(text);
}

void RememberCloth(int32_t index) {
    g_rememberedCloth = index;
    char text[16];
    std::snprintf(text, sizeof text, "%d", int(index));
    WritePrivateProfileStringA(kSettingsSection, kClothKey, text, SettingsFilePath());
}
