// Where the game keeps its few settings: "tavirel.ini" beside the program, with the saved games, so that
// a per-user install (which may not write into the Windows folder) keeps them and an uninstall finds them.
#pragma once

constexpr char kSettingsFileName[] = "tavirel.ini";
constexpr char kSettingsSection[] = "Tavirel";

// The program folder followed by the settings file's name (just the name before the folder is known).
const char* SettingsFilePath();
