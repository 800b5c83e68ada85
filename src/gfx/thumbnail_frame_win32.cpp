// Thumbnail placing and its frame.
#include "gfx/thumbnail_frame_win32.h"

#include "gfx/dib.h"

ThumbnailPlace CentredThumbnail(const uint8_t* dib, int32_t cellWidth, int32_t cellHeight) {
    const DibHeader* h = DibHeaderOf(dib);
    return ThumbnailPlace{(cellWidth - h->biWidth) / 2, (cellHeight - h->biHeight) / 2, h->biWidth, h->biHeight};
}

void PaintThumbnailFrame(HDC dc, const ThumbnailPlace& at, int32_t penWidth, COLORREF color) {
    HPEN pen = CreatePen(PS_SOLID, penWidth, color);
    if (!pen) return;
    HGDIOBJ old = SelectObject(dc, pen);
    int32_t left = at.x - 1, top = at.y - 1, right = at.x + at.width + 1, bottom = at.y + at.height + 1;
    POINT corners[5] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}};
    Polyline(dc, corners, 5);
    SelectObject(dc, old);
    DeleteObject(pen);
}
