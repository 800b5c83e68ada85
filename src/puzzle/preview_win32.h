// `CWNDPREVLUPA`, the picture preview: a small floating window with a title strip and a close button
// that shows the whole picture of the puzzle fitted into 240 x 180, dragged anywhere by pressing on it.
#pragma once

#include <windows.h>

constexpr const char kPreviewClass[] = "CWNDPREVLUPA";
constexpr int kPreviewCloseButtonId = 10;

// The preview's handle, while it exists, is g_magnifierWindow (app/language_chooser_win32.h): the
// language switch retitles it and the tools bar toggles it through that handle.

LRESULT CALLBACK PreviewProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Creates the preview, hidden, owned by the playing screen at a quarter of the screen width and half
// its height, and gives it its localised title.
HWND CreatePreviewWindow(HWND owner);
// After every cut and whenever the current picture changes: hides the preview and fits it to the
// current picture (or to an empty 240 x 180 area when there is none).
void RefitPreview();
// The tools button: shows a hidden preview, hides a shown one; no move, size, z-order or activation.
void TogglePreview();
// Sets the title from the string table in the current language (at creation and after a change).
void RetitlePreview();
