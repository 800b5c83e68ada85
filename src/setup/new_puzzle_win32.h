// `CWNDNEW`, the new-puzzle screen (photograph, size, piece count and shape on four pages, then start),
// and `CWNDPREVFS`, its four thumbnail slots.
#pragma once

#include <windows.h>

#include <cstdint>

#include "gfx/file_list.h"
#include "gfx/image_object_win32.h"
#include "setup/new_puzzle_layout.h"

constexpr const char kNewPuzzleClass[] = "CWNDNEW";
constexpr const char kThumbnailSlotClass[] = "CWNDPREVFS";

// Control ids. The page tabs and the thumbnail slots share 300..303 on purpose: the notification
// handler tests the tabs by id, and the slots never notify (they act on their own mouse messages).
constexpr int kShapeCheckId = 200;  // + shape
constexpr int kTabId = 300;         // + page
constexpr int kSlotId = 300;        // + slot

enum NewPuzzlePage { PAGE_PICTURES = 0, PAGE_SIZE = 1, PAGE_PIECES = 2, PAGE_SHAPE = 3 };

// The screen's pictures, loaded from the pack when the panel is built and kept while it lives.
enum NewPuzzleArt {
    ART_PANEL,
    ART_CLOSE,
    ART_HELP,
    ART_TAB_FIRST,  // four tabs, one per page
    ART_SHAPE_CHECK_FIRST = ART_TAB_FIRST + kNewPuzzlePageCount,  // three shape checks
    ART_FIT_SIZE = ART_SHAPE_CHECK_FIRST + kShapeCount,
    ART_ACTUAL_SIZE,
    ART_START,
    ART_SHAPE_PICTURE,
    ART_DECORATION,
    ART_ZOOM_SCROLL,
    ART_COUNT_SCROLL,
    ART_IMAGE_SCROLL,
    NEW_PUZZLE_ART_COUNT
};

// The screen's state: program-wide, one instance, alive while the panel exists (all zero otherwise).
struct NewPuzzleScreen {
    HWND panel;
    HWND closeButton, helpButton;
    HWND tabs[kNewPuzzlePageCount];
    HWND shapeChecks[kShapeCount];
    HWND fitSizeButton, actualSizeButton, startButton, shapePicture, decoration;  // `CQMANIM`
    HWND zoomSlider, countSlider, imageScroll;                                   // `CQMSROLL`
    HWND captions[kCaptionCount], numbers[kCaptionCount];                        // rows, columns, pieces
    HWND slots[kThumbnailSlotCount];
    HWND sizeChooser, countChooser;
    int32_t page;
    int32_t shape;       // piece shape style 0..2
    int32_t selection;   // index in images of the chosen photograph, -1 for none
    FileNameList images; // program folder + "Image\*.bmp", in the order the search gives
    ImageObject art[NEW_PUZZLE_ART_COUNT];  // art[ART_PANEL] is the backdrop
    bool dragging;       // the panel is being moved
    POINT anchor;        // the pointer's last screen position while moving
    uint32_t wipeStrips; // strips painted by page wipes since the panel was built
};
extern NewPuzzleScreen g_newPuzzle;

// What the start button runs: a new game cut from the current photograph with pattern rows 2, pattern
// columns 2, pattern id 5000 + shape and the pieces scattered, every view repainted. Null does nothing.
extern void (*g_startNewGame)(int32_t shape);

// Registers `CWNDNEW` and `CWNDPREVFS`; true when both are registered (already registered counts).
// The screen also needs the control classes and the chooser classes.
bool RegisterNewPuzzleClasses(HINSTANCE instance);
// Opens the screen centred over the main window, which stays disabled until it closes. An open
// screen is returned as it is.
HWND OpenNewPuzzleScreen();
// Makes the title bar's new-puzzle button open this screen.
void InstallNewPuzzleScreen();

// The size of the thumbnail a slot shows; false for an empty slot.
bool GetSlotThumbnail(HWND slot, int32_t* width, int32_t* height);
