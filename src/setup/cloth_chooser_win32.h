// `CWNDMOSAIC`: the small movable panel where the player dresses the table in one of the ten cloths.
#pragma once

#include <windows.h>

constexpr const char kClothChooserClass[] = "CWNDMOSAIC";

// The panel's children, for the keys and the tests.
constexpr int kClothCloseId = 100;
constexpr int kClothHelpId = 101;
constexpr int kClothPreviewId = 102;
constexpr int kClothSelectorId = 103;

void RegisterClothChooserClass(HINSTANCE instance);
// Disables the owner and opens the panel centred on the screen, starting from the table's present cloth.
// The owner is enabled again when the panel goes (at once when it cannot be made). While a panel is
// open, this hands back that panel and changes nothing.
HWND OpenClothChooser(HWND owner);
// The open panel, or null.
HWND CurrentClothChooser();
