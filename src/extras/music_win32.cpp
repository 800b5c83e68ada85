// The MCI side of the background music: start, play, pause, resume, stop and the loop.
#include "extras/music_win32.h"

#include <mmsystem.h>

#include "app/app_win32.h"

UINT g_musicDevice;
int32_t g_musicTrack;

static DWORD_PTR Parms(void* block) { return reinterpret_cast<DWORD_PTR>(block); }

bool StartMusicTrack(int32_t track) {
    StopMusic();
    g_musicTrack = track;
    MCI_OPEN_PARMSA open = {};
    open.lpstrDeviceType = reinterpret_cast<LPCSTR>(MCI_DEVTYPE_CD_AUDIO);
    if (mciSendCommandA(0, MCI_OPEN, MCI_OPEN_TYPE | MCI_OPEN_TYPE_ID | MCI_WAIT, Parms(&open)) != 0) return false;
    g_musicDevice = open.wDeviceID;
    MCI_SET_PARMS set = {};
    set.dwTimeFormat = MCI_FORMAT_TMSF;
    mciSendCommandA(g_musicDevice, MCI_SET, MCI_SET_TIME_FORMAT | MCI_WAIT, Parms(&set));
    PlayMusic();
    return true;
}

// Tracks 1 and 2 stop at the end of their own track; 3 and 4 play on to the end of the disc.
void PlayMusic() {
    if (!g_musicDevice) return;
    MCI_GENERIC_PARMS none = {};
    mciSendCommandA(g_musicDevice, MCI_STOP, MCI_WAIT, Parms(&none));
    MCI_PLAY_PARMS play = {};
    play.dwCallback = reinterpret_cast<DWORD_PTR>(g_mainWindow);
    play.dwFrom = MCI_MAKE_TMSF(g_musicTrack + 1, 0, 0, 0);
    play.dwTo = MCI_MAKE_TMSF(g_musicTrack + 2, 0, 0, 0);
    DWORD flags = g_musicTrack < 3 ? MCI_NOTIFY | MCI_FROM | MCI_TO : MCI_NOTIFY | MCI_FROM;
    mciSendCommandA(g_musicDevice, MCI_PLAY, flags, Parms(&play));
}

void PauseMusic() {
    if (!g_musicDevice) return;
    MCI_GENERIC_PARMS none = {};
    mciSendCommandA(g_musicDevice, MCI_PAUSE, MCI_WAIT, Parms(&none));
}

void ResumeMusic() {
    if (!g_musicDevice) return;
    MCI_PLAY_PARMS play = {};
    play.dwCallback = reinterpret_cast<DWORD_PTR>(g_mainWindow);
    play.dwTo = MCI_MAKE_TMSF(g_musicTrack + 2, 0, 0, 0);
    mciSendCommandA(g_musicDevice, MCI_PLAY, g_musicTrack < 3 ? MCI_NOTIFY | MCI_TO : MCI_NOTIFY, Parms(&play));
}

void StopMusic() {
    if (!g_musicDevice) return;
    MCI_GENERIC_PARMS none = {};
    mciSendCommandA(g_musicDevice, MCI_STOP, MCI_WAIT, Parms(&none));
    mciSendCommandA(g_musicDevice, MCI_CLOSE, MCI_WAIT, Parms(&none));
    g_musicDevice = 0;
}

void OnMusicNotify(WPARAM code) {
    if (code == MCI_NOTIFY_SUCCESSFUL) PlayMusic();
}
