// CWNDVIDEO: a full-screen window that plays one of the three clips of the Video folder through MCI.
// Kind 2 opens the game, kind 1 rewards a completed puzzle, kind 0 plays framed with three buttons.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kVideoClass[] = "CWNDVIDEO";

enum VideoKind { VIDEO_FRAMED = 0, VIDEO_COMPLETION = 1, VIDEO_OPENING = 2 };

// What happens around a clip; the screens that exist fill these in (null: nothing happens).
struct VideoHooks {
    void (*pauseMusic)();
    void (*resumeMusic)();
    void (*openingFinished)();     // the opening clip is over (or could not play): build the main window
    void (*completionFinished)();  // the completion clip is over: show the finished picture
    void (*askWebQuestion)();      // the framed clip's web button
};
extern VideoHooks g_videoHooks;

// Program folder + "Video\N.avi" for the kind's digit.
void BuildClipPath(int kind, char* out, int size);
void RegisterVideoClass(HINSTANCE instance);
// Opens the clip window over the main window, which stays disabled while it exists. When the clip
// cannot be played no window appears; the opening and completion flows then go on at once.
HWND OpenVideo(int kind);
// The MCI device of the open clip, 0 when none.
UINT VideoDevice();
