// The settings file's place beside the program.
#include "app/settings.h"

#include <cstdio>

#include "app/app_state.h"

const char* SettingsFilePath() {
    static char path[kPathCapacity + sizeof kSettingsFileName];
    std::snprintf(path, sizeof path, "%s%s", g_appFolder, kSettingsFileName);
    return path;
}
