// `CWNDBOX`: the six piece boxes that the side buttons show and hide, each holding one tray view.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr const char kPieceBoxClass[] = "CWNDBOX";
constexpr int kPieceBoxCount = 6;
constexpr int kBoxCloseButtonId = 10;
constexpr int kBoxRenameButtonId = 11;

extern HWND g_pieceBoxes[kPieceBoxCount];

void RegisterPieceBoxClass(HINSTANCE instance);
// Creates the six boxes, hidden, owned by the main window, each with its tray view; box i belongs to
// side button 100 + i. The side buttons must exist first.
void CreatePieceBoxes(HWND mainWindow);
// Shows a hidden box or hides a shown one, without moving, sizing or activating it.
void TogglePieceBox(int box);

// The box whose rename question is open, or null.
HWND RenamingPieceBox();
// The answer to the rename question: a non-zero answer makes the typed text (cut to 23 characters) the
// box's title; in every case the box is enabled again and its title repainted.
void FinishBoxRename(uint8_t answer, const char* typed);
