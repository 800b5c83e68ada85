// `CWNDIMAGECANT`, the piece-count chooser: the chosen image with its cutting grid drawn over it;
// dragging across it makes the pieces larger or smaller.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kCountChooserClass[] = "CWNDIMAGECANT";

// The count chooser while it exists, else null.
extern HWND g_countChooser;

LRESULT CALLBACK CountChooserProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Creates the visible 250 x 160 chooser at (115, 61) of the new-puzzle screen. backdrop is the screen's
// own picture (a packed DIB in the screen's client coordinates, not owned): the chooser shows it around
// the image so that it blends in.
HWND CreateCountChooser(HWND parent, const uint8_t* backdrop);
