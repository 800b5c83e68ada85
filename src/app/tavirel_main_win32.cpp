// Entry point of Tavirel.exe.
#include <windows.h>

#include "app/startup_win32.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) { return RunTavirel(instance); }
