// The MCI side of the background music: start, play, pause, resume, stop and the loop.
#include "extras/music_win32.h"

#include <mmsystem.h>

#include <cstdio>

#include "app/app_state.h"
#include "app/app_win32.h"

UINT g_musicDevice;
int32_t g_musicTrack;
uint8_t g_musicOwnPieces;

namespace {

DWORD g_pausedAt;       // our piece: where a pause stopped it, in milliseconds
uint8_t g_piecePaused;  // our piece: stopped by a pause, waiting for its resume

DWORD_PTR Parms(void* block) { return reinterpret_cast<DWORD_PTR>(block); }
DWORD_PTR Callback() { return reinterpret_cast<DWORD_PTR>(g_mainWindow); }

bool OpenDisc() {
    MCI_OPEN_PARMSA open = {};
    open.lpstrDeviceType = reinterpret_cast<LPCSTR>(MCI_DEVTYPE_CD_AUDIO);
    if (mciSendCommandA(0, MCI_OPEN, MCI_OPEN_TYPE | MCI_OPEN_TYPE_ID | MCI_WAIT, Parms(&open)) != 0) return false;
    g_musicDevice = open.wDeviceID;
    MCI_SET_PARMS set = {};
    set.dwTimeFormat = MCI_FORMAT_TMSF;
    mciSendCommandA(g_musicDevice, MCI_SET, MCI_SET_TIME_FORMAT | MCI_WAIT, Parms(&set));
    return true;
}

bool OpenOwnPiece(int32_t track) {
    char path[kPathCapacity + 32];
    if (!OwnPiecePath(track, path, sizeof path)) return false;
    MCI_OPEN_PARMSA open = {};
    open.lpstrDeviceType = "waveaudio";
    open.lpstrElementName = path;
    if (mciSendCommandA(0, MCI_OPEN, MCI_OPEN_TYPE | MCI_OPEN_ELEMENT | MCI_WAIT, Parms(&open)) != 0) return false;
    g_musicDevice = open.wDeviceID;
    g_musicOwnPieces = 1;
    MCI_SET_PARMS set = {};
    set.dwTimeFormat = MCI_FORMAT_MILLISECONDS;
    mciSendCommandA(g_musicDevice, MCI_SET, MCI_SET_TIME_FORMAT | MCI_WAIT, Parms(&set));
    return true;
}

// Our piece plays from `from` to its end and says so to the main window.
void PlayPieceFrom(DWORD from) {
    g_piecePaused = 0;
    MCI_PLAY_PARMS play = {};
    play.dwCallback = Callback();
    play.dwFrom = from;
    mciSendCommandA(g_musicDevice, MCI_PLAY, MCI_NOTIFY | MCI_FROM, Parms(&play));
}

}  // namespace

bool OwnPiecePath(int32_t track, char* path, size_t size) {
    if (track < 1 || track > kMusicTrackCount) return false;
    int n = std::snprintf(path, size, "%sMusic\\Track%d.wav", g_appFolder, int(track));
    return n > 0 && size_t(n) < size;
}

bool StartMusicTrack(int32_t track) {
    StopMusic();
    g_musicTrack = track;
    if (!OpenDisc() && !OpenOwnPiece(track)) return false;
    PlayMusic();
    return true;
}

// On the disc, tracks 1 and 2 stop at the end of their own track; 3 and 4 play on to the end of the
// disc. Our pieces are one file each and play whole.
void PlayMusic() {
    if (!g_musicDevice) return;
    MCI_GENERIC_PARMS none = {};
    mciSendCommandA(g_musicDevice, MCI_STOP, MCI_WAIT, Parms(&none));
    if (g_musicOwnPieces) {
        PlayPieceFrom(0);
        return;
    }
    MCI_PLAY_PARMS play = {};
    play.dwCallback = Callback();
    play.dwFrom = MCI_MAKE_TMSF(g_musicTrack + 1, 0, 0, 0);
    play.dwTo = MCI_MAKE_TMSF(g_musicTrack + 2, 0, 0, 0);
    DWORD flags = g_musicTrack < 3 ? MCI_NOTIFY | MCI_FROM | MCI_TO : MCI_NOTIFY | MCI_FROM;
    mciSendCommandA(g_musicDevice, MCI_PLAY, flags, Parms(&play));
}

// Our piece is stopped where it stands rather than paused: a stopped wave device takes a later play from
// a position the same way on every system, where resuming a paused one does not.
void PauseMusic() {
    if (!g_musicDevice) return;
    MCI_GENERIC_PARMS none = {};
    if (!g_musicOwnPieces) {
        mciSendCommandA(g_musicDevice, MCI_PAUSE, MCI_WAIT, Parms(&none));
        return;
    }
    if (g_piecePaused) return;
    MCI_STATUS_PARMS status = {};
    status.dwItem = MCI_STATUS_POSITION;
    g_pausedAt = mciSendCommandA(g_musicDevice, MCI_STATUS, MCI_STATUS_ITEM | MCI_WAIT, Parms(&status)) == 0
                     ? DWORD(status.dwReturn)
                     : 0;
    mciSendCommandA(g_musicDevice, MCI_STOP, MCI_WAIT, Parms(&none));
    g_piecePaused = 1;
}

void ResumeMusic() {
    if (!g_musicDevice) return;
    if (g_musicOwnPieces) {
        if (g_piecePaused) PlayPieceFrom(g_pausedAt);
        return;
    }
    MCI_PLAY_PARMS play = {};
    play.dwCallback = Callback();
    play.dwTo = MCI_MAKE_TMSF(g_musicTrack + 2, 0, 0, 0);
    mciSendCommandA(g_musicDevice, MCI_PLAY, g_musicTrack < 3 ? MCI_NOTIFY | MCI_TO : MCI_NOTIFY, Parms(&play));
}

void StopMusic() {
    if (!g_musicDevice) return;
    MCI_GENERIC_PARMS none = {};
    mciSendCommandA(g_musicDevice, MCI_STOP, MCI_WAIT, Parms(&none));
    mciSendCommandA(g_musicDevice, MCI_CLOSE, MCI_WAIT, Parms(&none));
    g_musicDevice = 0;
    g_musicOwnPieces = 0;
    g_piecePaused = 0;
}

void OnMusicNotify(WPARAM code, LPARAM device) {
    // A late notice from a device closed since (another track was chosen) must not restart this one.
    if (code == MCI_NOTIFY_SUCCESSFUL && UINT(device) == g_musicDevice) PlayMusic();
}
