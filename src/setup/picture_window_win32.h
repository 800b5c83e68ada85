// CWNDIMGPREV: one photograph large on a framed full-screen backdrop, its title written over it on
// the first paint, with print and close buttons when a print path is given. The reward after a
// completed puzzle and the large view of a gallery picture.
#pragma once

#include <windows.h>

#include <cstdint>

#include "gfx/image_object_win32.h"

constexpr const char kPictureWindowClass[] = "CWNDIMGPREV";
constexpr int kPictureTitleCapacity = 101;  // up to 100 characters and the terminator
constexpr int kPicturePrintButtonId = 100;
constexpr int kPictureCloseButtonId = 101;

// Called with 1 when the picture window has gone.
typedef void (*PictureDismissFunction)(uint8_t value);

// The title drawn over the picture (string 5000 + the picture's number), filled by the opener, and the
// one-shot flag that has it drawn on the next paint.
extern char g_pictureTitle[kPictureTitleCapacity];
extern bool g_pictureTitlePending;

// What OpenPictureWindow hands to the window's creation (lpCreateParams): the window reads the picture
// and builds everything while it is created, and refuses creation when the picture cannot be read.
struct PictureWindowRequest {
    const char* picturePath;
    PictureDismissFunction dismiss;  // may be null
    const char* printPath;           // may be null: no buttons
};

void RegisterPictureWindowClass(HINSTANCE instance);
// Null (and nothing shown, the dismiss function not called) when the picture cannot be read.
// The owner is disabled while the window lives. printPath may be null: then the window has no buttons
// and a key or a double click closes it.
HWND OpenPictureWindow(HWND owner, const char* picturePath, PictureDismissFunction dismiss, const char* printPath);
HWND CurrentPictureWindow();

// The print buttons' action: the wait window, the music paused, the photograph at imagePath printed
// (the information text when null): PrintWithWaitWindow, shared by the picture window and the
// information text; tests put a recorder in its place.
typedef void (*PrintFunction)(HWND owner, const char* imagePath);
extern PrintFunction g_printWithWaitWindow;

// Animated buttons are silent controls; the screens that hold them give them the interface sounds: the
// hover sound when the pointer enters, the click sound when the button is pressed, nothing otherwise.
void AnimatedButtonSound(WPARAM event);

// A screen-sized backdrop in memory-DC mode: the felt tile (pack 160) repeated from the top-left
// corner, the panel picture panelId copied centred over it (nothing when the pack lacks it).
// *panelAt receives the panel's top-left corner on the screen. False when no bitmap can be made.
bool ComposeScreenBackdrop(ImageObject* backdrop, uint32_t panelId, POINT* panelAt);
