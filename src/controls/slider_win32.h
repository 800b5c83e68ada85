// `CQMSLIDE`: the skinned slider, a thumb picture dragged along a straight line over a background
// strip, setting an integer value between a minimum and a maximum. The thumb is a grid of frames drawn
// through the control's FrameSprite: PM_SLD_SETTHUMBROWS / PM_SLD_SETTHUMBCOLUMNS give the grid and
// PM_SLD_SETTHUMBFRAME the frame shown (row by row; a frame outside the grid shows frame 0). The thumb
// rectangle is one frame. The control keeps the size its creator gave it.
#pragma once

#include <windows.h>

LRESULT CALLBACK SliderProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
