// A thumbnail centred in its cell and the closed frame drawn round it when it is pointed at or chosen:
// shared by the saved-games browser and the picture gallery.
#pragma once

#include <windows.h>

#include <cstdint>

struct ThumbnailPlace {
    int32_t x, y, width, height;
};

// The packed DIB at its own size, centred in a cell of cellWidth x cellHeight (halves truncated toward zero).
ThumbnailPlace CentredThumbnail(const uint8_t* dib, int32_t cellWidth, int32_t cellHeight);
// A closed frame one pixel outside the thumbnail. A 2-pixel pen covers the pixel before its line as
// well, so the right and bottom lines stand one further out and the band is two pixels on every side,
// never over the thumbnail.
void PaintThumbnailFrame(HDC dc, const ThumbnailPlace& at, int32_t penWidth, COLORREF color);
