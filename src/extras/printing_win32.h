// Printing on the default printer, without a dialog: the photograph with its caption, and the two
// pages of the information text, each page between the header and footer banners. Every failure is
// silent. The wait window CWNDESPEREIMPRIMIENDO shows "printing, please wait" and five progress squares.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kPrintWaitClass[] = "CWNDESPEREIMPRIMIENDO";
constexpr const char kPrintDocumentName[] = "Velloran Series";

// The progress squares in the wait window: square k at (125 + 50 k, 247), 44 x 44.
constexpr int32_t kPrintSquareCount = 5;
constexpr int32_t kPrintSquareX = 125, kPrintSquareStep = 50, kPrintSquareY = 247, kPrintSquareSize = 44;

void RegisterPrintWaitClass(HINSTANCE instance);
// The wait window over the table (owner: the screen that prints); null when it cannot be made.
HWND OpenPrintWaitWindow(HWND owner);
// Lights progress square 0..4 of a wait window and shows it at once; anything else does nothing.
void LightPrintProgress(HWND waitWindow, int32_t square);
// Prints one page: the photograph at imagePath, its caption from the ".txt" file beside it. imagePath is
// a writable buffer of kPathCapacity characters and holds the caption's path afterwards. The wait
// window (may be null) lights one progress square per band. False when nothing was printed.
bool PrintPhotograph(HWND waitWindow, char* imagePath);
// Prints the two information pages. False when nothing was printed.
bool PrintInformation();
// The whole sequence of a print button: wait window, music paused, print, music resumed, wait window
// closed. imagePath null prints the information text.
void PrintWithWaitWindow(HWND owner, const char* imagePath);

// The pages themselves, drawn on any DC of the given size (the printer's, or a bitmap's); imagePath and
// waitWindow as for PrintPhotograph. False when the photograph cannot be read or the page has no room;
// nothing is drawn then.
bool DrawPhotographPage(HDC dc, int32_t pageWidth, int32_t pageHeight, HWND waitWindow, char* imagePath);
bool DrawInformationPage(HDC dc, int32_t pageWidth, int32_t pageHeight, int32_t page);
