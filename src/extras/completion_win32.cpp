// From the completion clip to the stored record.
#include "extras/completion_win32.h"

#include <windows.h>

#include <cstdio>

#include "app/app_win32.h"
#include "app/art_ids.h"
#include "extras/music_win32.h"
#include "extras/video_win32.h"
#include "extras/wallpaper_win32.h"
#include "puzzle/picture.h"
#include "setup/picture_fit.h"
#include "setup/picture_window_win32.h"

void ShowCompletedPicture() {
    const char* picture = CurrentPicturePath();
    char path[kPathCapacity + kPicturePathCapacity] = "";
    const bool absolute = picture[0] == '\\' || (picture[0] && picture[1] == ':');
    std::snprintf(path, sizeof path, "%s%s", absolute ? "" : g_appFolder, picture);
    // A picture whose name ends in no number has no title; it is shown without one.
    g_pictureTitle[0] = 0;
    const int32_t number = PictureNumberOfPath(picture);
    if (number >= 0)
        LoadStringA(GetModuleHandleA(nullptr), UINT(kStrPictureTitle + number), g_pictureTitle, kPictureTitleCapacity);
    g_pictureTitlePending = g_pictureTitle[0] != 0;
    if (!picture[0] || !OpenPictureWindow(g_mainWindow, path, AskWallpaper, path)) {
        g_pictureTitlePending = false;
        AskWallpaper(1);
    }
}

void InstallCompletionFlow() {
    g_videoHooks.pauseMusic = PauseMusic;
    g_videoHooks.resumeMusic = ResumeMusic;
    g_videoHooks.completionFinished = ShowCompletedPicture;
}
