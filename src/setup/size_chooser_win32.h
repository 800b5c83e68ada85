// `CWNDIMAGETAM`, the size chooser: a miniature of the table with the chosen image on it at the chosen
// zoom; dragging along the frame's diagonal zooms.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kSizeChooserClass[] = "CWNDIMAGETAM";

// The size chooser while it exists, else null.
extern HWND g_sizeChooser;

LRESULT CALLBACK SizeChooserProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Creates the visible chooser on the new-puzzle screen: the table's shape in the 250 x 160 chooser
// area at (115, 61), centred.
HWND CreateSizeChooser(HWND parent);

// The table's background picture, tiled 100 x 100 around the image; not owned (the board keeps it).
// Null paints black.
void SetChooserTableTexture(const uint8_t* dib);
