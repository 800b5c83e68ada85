// Start-up: the display checks, the sounds, the program folder, the window classes, the pack and the
// opening clip; then the message loop until the main window goes.
#pragma once

#include <windows.h>

constexpr int kNoticeTextId = 1000;  // the notice's static text

// Shows the start-up notice (dialog 564) with string id; its closing ends the program.
HWND ShowStartupNotice(HINSTANCE instance, int stringId);
// Registers every window class of the program, in the program's fixed order.
void RegisterWindowClasses(HINSTANCE instance);
// The whole run; returns the exit code.
int RunTavirel(HINSTANCE instance);
