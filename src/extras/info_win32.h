// The information screens: the gallery CWNDINFO with fifteen picture buttons CWNDBUTTONINFO per page,
// and the orchid information text CWNDPREVIEWINFO with its two pages and print button.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kGalleryClass[] = "CWNDINFO";
constexpr const char kGalleryButtonClass[] = "CWNDBUTTONINFO";
constexpr const char kInfoTextClass[] = "CWNDPREVIEWINFO";

// The gallery's controls.
constexpr int kGalleryCloseId = 100;
constexpr int kGalleryInfoId = 101;
constexpr int kGalleryNextId = 102;
constexpr int kGalleryPreviousId = 103;
constexpr int kGalleryFirstPictureId = 200;  // picture button k has id 200 + k
// The information text's controls.
constexpr int kInfoCloseId = 100;
constexpr int kInfoNextPageId = 101;
constexpr int kInfoPreviousPageId = 102;
constexpr int kInfoPrintId = 103;

// Questions a test may ask the gallery and its picture buttons.
constexpr unsigned PM_GALLERY_GETFIRST = 1580;    // the index of the picture on the first button
constexpr unsigned PM_GALLERY_GETCOUNT = 1581;    // pictures in the image folder
constexpr unsigned PM_PICTUREBUTTON_GETHOVER = 1582;  // 1 while the pointer is over the button
// A picture button's thumbnail goes with PM_GETIMAGE / PM_SETIMAGE (lParam: a packed DIB the button
// takes over and frees, or 0 for none).

// The page of the information text on show, 0 or 1; back to 0 whenever the screen is built.
extern int32_t g_infoPage;

void RegisterInfoClasses(HINSTANCE instance);
// The main window's info button: the gallery over the main window, disabled until the gallery closes.
HWND OpenGallery(HWND owner);
// The information text over owner (the gallery), disabled until the screen closes.
HWND OpenInfoText(HWND owner);
