// The honour roll: CWNDHONOR, the full-screen table of the ten best scores, the ranking check run after
// a completed puzzle and the record written with the name the player types.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kHonourClass[] = "CWNDHONOR";

// Control ids of the screen's children: row i's rank, name and score labels, and the two buttons.
constexpr int kHonourFirstRankId = 100;
constexpr int kHonourFirstNameId = 110;
constexpr int kHonourFirstScoreId = 120;
constexpr int kHonourWipeId = 130;
constexpr int kHonourCloseId = 131;

void RegisterHonourClass(HINSTANCE instance);
// Disables the main window and shows the table; also the tools panel's honour-roll button.
HWND OpenHonourWindow();
HWND CurrentHonourWindow();
// Computes the score of the puzzle in play, ranks it against Records.qmr and, for a place in the ten,
// opens the table and asks for the player's name (StoreRecord is the answer).
void CheckForRecord();
// The name question's answer: inserts the record at the rank found and rewrites Records.qmr.
void StoreRecord(uint8_t ok);
