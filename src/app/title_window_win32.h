// CWNDTESSELTITULO: the bar across the top with the play clock and the new-puzzle, open, save, about,
// minimise and exit buttons.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kTitleWindowClass[] = "CWNDTESSELTITULO";
constexpr int32_t kTitleHeight = 78;

// Layout for a screen width: c = (width - 703) / 3; the about button at c + 316, the clock at 2c + 506.
int32_t TitleClockX(int32_t screenWidth);
int32_t TitleAboutX(int32_t screenWidth);
// The open and save buttons stand between New puzzle and the about button, at every screen width in the
// same place: an 800-pixel screen leaves 190 pixels there (New puzzle ends at 158, about starts at 348).
constexpr int32_t kTitleOpenX = 162;
constexpr int32_t kTitleSaveX = 254;
constexpr int32_t kTitleFileButtonY = 10;

void RegisterTitleWindowClass(HINSTANCE instance);
HWND CreateTitleWindow(HWND parent);
// Called once a second by the play clock; redraws only the clock's rectangle.
void ShowClock(uint32_t totalSeconds, uint32_t hours, uint32_t minutes, uint32_t seconds);
// The clock text now shown ("00:00:00" before the first tick).
const char* TitleClockText();
// Reloads the word-carrying buttons after a change of language.
void ReloadTitleButtons();
// Plays the click sound for callers outside the buttons.
void PlayTitleClick();

// What the new-puzzle button opens; set by the screens that exist (null: nothing opens).
extern void (*g_openNewPuzzleScreen)();
// What the open (mode 1) and save (mode 0) buttons open: the saved-puzzle browser.
extern void (*g_openSavedPuzzles)(uint8_t mode);
// The title bar's open and save buttons (null before the bar exists).
HWND TitleNewPuzzleButton();
HWND TitleOpenButton();
HWND TitleSaveButton();
// What a click on the title button does, unless it is disabled; the keys use it.
void PressTitleButton(HWND button);
