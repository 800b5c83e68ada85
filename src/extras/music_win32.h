// Background music through MCI: one chosen track at a time, looping, paused by the screens that
// make sounds or pictures of their own. Every operation does nothing while no device is open.
// A computer with an audio compact disc plays its tracks; without a disc device the same track numbers
// play the game's own four pieces from the Music folder beside the program.
#pragma once

#include <windows.h>

#include <cstdint>

extern UINT g_musicDevice;    // the open MCI device, 0 when none
extern int32_t g_musicTrack;  // the chosen track 1..4, 0 before any choice
extern uint8_t g_musicOwnPieces;  // the open device plays one of our pieces, not the disc

constexpr int32_t kMusicTrackCount = 4;

// Stops and closes any open device, then opens the compact disc in time format TMSF and plays track t;
// when no disc device opens, opens our piece t instead and plays it. False when neither opens.
bool StartMusicTrack(int32_t track);
// Plays the chosen stretch from its start; the main window hears MM_MCINOTIFY at its end.
void PlayMusic();
void PauseMusic();
void ResumeMusic();
// Stops and closes the device: pause and resume do nothing until a track is chosen again.
void StopMusic();
// The main window's MM_MCINOTIFY (wParam, lParam): a stretch of the open device that ended well starts
// again.
void OnMusicNotify(WPARAM code, LPARAM device);
// Where our piece t lies: the program folder, "Music\Track<t>.wav". False for a track outside 1..4.
bool OwnPiecePath(int32_t track, char* path, size_t size);
