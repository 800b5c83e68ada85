// Hand-offs to the shell: the help pages, the separate about program and the game's web site.
#pragma once

#include <windows.h>

#include <shellapi.h>

#include <cstdint>

// The game's web site, opened when the player agrees to the web question.
constexpr const char kWebSiteAddress[] = "https://tavirel-puzzle.example.org/";

// Program folder + "Help\" + language + "\Index.htm".
void BuildHelpPath(char* out, int size);
void LaunchHelp();
// Starts program folder + "about.exe" when it exists; nothing otherwise.
void LaunchAbout();
// Answer of the web question: 1 opens the web site, 0 does nothing.
void LaunchWebSite(uint8_t answer);

// The shell call every launcher goes through; tests put a recorder in its place.
extern BOOL(WINAPI* g_shellExecute)(SHELLEXECUTEINFOA* info);
