// CWNDBACK: the background window that covers the screen, parent of every screen, with the six side
// buttons half off the right edge and the info button.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kMainWindowClass[] = "CWNDBACK";
constexpr int kSideButtonCount = 6;
constexpr int kFirstSideButtonId = 100;

extern HWND g_sideButtons[kSideButtonCount];
extern HWND g_infoButton;
extern int32_t g_tableBackground;  // 0..9: the cloth is pack id 6000 + this
// Dresses the table (and the size chooser's sample) in cloth 0..9 at once and remembers it for the next
// start. Nothing changes when the index is out of range or the picture cannot be loaded.
void ChangeTableCloth(int32_t index);

// Where side button i stands: half of it off the right edge.
POINT SideButtonPosition(int i);

// The gather command (button and key): the loose edge pieces of the table into the first empty box, as one
// gesture for undo, and that box shown.
void GatherEdgesIntoABox();

void RegisterMainWindowClass(HINSTANCE instance);
// Creates the maximised main window (called when the opening clip has ended) and records it.
HWND CreateMainWindow();
