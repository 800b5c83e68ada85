// Background music through MCI: one chosen track at a time, looping, paused by the screens that
// make sounds or pictures of their own. Every operation does nothing while no device is open.
#pragma once

#include <windows.h>

#include <cstdint>

extern UINT g_musicDevice;   // the open MCI device, 0 when none
extern int32_t g_musicTrack; // the chosen track 1..4, 0 before any choice

// Stops and closes any open device, opens the compact disc in time format TMSF and plays track t.
bool StartMusicTrack(int32_t track);
// Plays the chosen stretch from its start; the main window hears MM_MCINOTIFY at its end.
void PlayMusic();
void PauseMusic();
void ResumeMusic();
// Stops and closes the device: pause and resume do nothing until a track is chosen again.
void StopMusic();
// The main window's MM_MCINOTIFY: a stretch that ended well starts again.
void OnMusicNotify(WPARAM code);
