// The music window `CWNDMUSICA`: four track buttons, the master and wave volume sliders bound to the
// system mixer both ways, their press indicators, and the close and stop buttons.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kMusicWindowClass[] = "CWNDMUSICA";

// Where the pieces of the window stand, in client pixels.
constexpr int32_t kMasterSliderX = 69, kWaveSliderX = 181;
constexpr int32_t kSliderTopY = 100, kSliderBottomY = 236;  // the thumb's top at 99 and at 0
constexpr POINT kMusicTitleAt = {60, 10};
constexpr POINT kTrackButtonAt[4] = {{262, 104}, {332, 104}, {262, 174}, {332, 174}};
// The track buttons' strips end with the frame of the track that plays, after their ten glow frames.
constexpr int32_t kTrackSelectedFrame = 10;

// The window's controls, for the tests and the keys.
struct MusicWindowParts {
    HWND sliders[3];       // master, wave, and the compact disc's slot, which stays empty
    HWND trackButtons[4];  // tracks 1..4
    HWND closeButton, stopButton;
    DWORD volumeControls[3];  // the mixer controls of the speakers, the wave output and the compact disc
    uint8_t held;             // a slider is being held
};

void RegisterMusicWindowClass(HINSTANCE instance);
// Hides the piece boxes and the magnifier, disables the main window and opens the music window centred
// on the screen, or returns the one already open. Opening it never starts the music.
HWND OpenMusicWindow();
HWND CurrentMusicWindow();
const MusicWindowParts* MusicWindowPartsOf(HWND window);
// The frame a press indicator shows (0 idle, 1 held): 0 master, 1 wave, 2 compact disc.
int32_t MusicIndicatorFrame(HWND window, int indicator);
