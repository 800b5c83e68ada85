// The six piece boxes that the side buttons show and hide.
#pragma once

#include <windows.h>

constexpr const char kPieceBoxClass[] = "CWNDBOX";
constexpr int kPieceBoxCount = 6;

extern HWND g_pieceBoxes[kPieceBoxCount];

void RegisterPieceBoxClass(HINSTANCE instance);
// Creates the six boxes, hidden, owned by the main window, each with its tray view; box i belongs to
// side button 100 + i. The side buttons must exist first.
void CreatePieceBoxes(HWND mainWindow);
// Shows a hidden box or hides a shown one, without moving, sizing or activating it.
void TogglePieceBox(int box);
