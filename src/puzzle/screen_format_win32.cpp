// The screen-format probe and the drag surfaces made at each cut.
#include "puzzle/screen_format_win32.h"

#include <cstring>

DragSurfaces g_dragSurfaces;
bool (*g_readScreenFormat)(HDC dc, HBITMAP bitmap, BitmapFormat* out) = ReadBitmapFormat;

namespace {

// Room for whatever GetDIBits puts behind the header: three masks or a whole colour table.
struct HeaderWithTable {
    BITMAPINFOHEADER header;
    RGBQUAD table[256];
};

// The header and masks a DIB section at the screen's format needs.
struct HeaderWithMasks {
    BITMAPINFOHEADER header;
    DWORD masks[3];
};

void FreeSurface(HDC* dc, HBITMAP* bitmap, HGDIOBJ* saved) {
    if (*dc && *saved) SelectObject(*dc, *saved);
    if (*bitmap) DeleteObject(*bitmap);
    if (*dc) DeleteDC(*dc);
    *dc = nullptr;
    *bitmap = nullptr;
    *saved = nullptr;
}

}  // namespace

bool ReadBitmapFormat(HDC dc, HBITMAP bitmap, BitmapFormat* out) {
    HeaderWithTable info;
    std::memset(&info, 0, sizeof info);
    info.header.biSize = sizeof(BITMAPINFOHEADER);
    // With a zero bit count GDI fills in the header only; asked again with that header it adds the masks.
    if (!GetDIBits(dc, bitmap, 0, 0, nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS)) return false;
    if (!GetDIBits(dc, bitmap, 0, 0, nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS)) return false;
    std::memset(out, 0, sizeof *out);
    out->header = info.header;
    if (info.header.biCompression == BI_BITFIELDS) std::memcpy(out->masks, info.table, sizeof out->masks);
    return true;
}

void ReleaseDragSurfaces() {
    DragSurfaces* s = &g_dragSurfaces;
    FreeSurface(&s->backgroundDc, &s->background, &s->backgroundSaved);
    FreeSurface(&s->compositionDc, &s->composition, &s->compositionSaved);
    *s = DragSurfaces{};
}

bool PrepareDragSurfaces(int32_t width, int32_t height) {
    ReleaseDragSurfaces();
    if (width < 1 || height < 1 || width > 0x3FFF || height > 0x3FFF) return false;
    DragSurfaces* s = &g_dragSurfaces;
    HDC screen = GetDC(nullptr);
    if (!screen) return false;
    s->background = CreateCompatibleBitmap(screen, width, height);
    BitmapFormat format;
    bool ok = s->background && g_readScreenFormat(screen, s->background, &format) &&
              DescribeScreenFormat(format.header.biBitCount, format.header.biCompression, format.masks[0],
                                   format.masks[1], format.masks[2], &s->format);
    void* bits = nullptr;
    if (ok) {
        // The section copies the screen's header and masks; only its size is the composition's own.
        HeaderWithMasks info;
        std::memset(&info, 0, sizeof info);
        info.header = format.header;
        info.header.biSize = sizeof(BITMAPINFOHEADER);
        info.header.biWidth = 2 * width;
        info.header.biHeight = 2 * height;  // bottom-up, as the drag's pixel work expects
        info.header.biPlanes = 1;
        info.header.biSizeImage = 0;
        info.header.biClrUsed = 0;
        info.header.biClrImportant = 0;
        std::memcpy(info.masks, format.masks, sizeof info.masks);
        s->composition = CreateDIBSection(screen, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &bits,
                                          nullptr, 0);
        s->backgroundDc = CreateCompatibleDC(screen);
        s->compositionDc = CreateCompatibleDC(screen);
        ok = s->composition && bits && s->backgroundDc && s->compositionDc;
    }
    if (ok) {
        s->backgroundSaved = SelectObject(s->backgroundDc, s->background);
        s->compositionSaved = SelectObject(s->compositionDc, s->composition);
        const int32_t bitsPerPixel = s->format.bits;
        s->compositionPixels = PixelSurface{static_cast<uint8_t*>(bits), 2 * width, 2 * height,
                                            SurfaceStride(bitsPerPixel, 2 * width), bitsPerPixel / 8};
        s->width = width;
        s->height = height;
        s->ready = true;
    }
    ReleaseDC(nullptr, screen);
    if (!ok) ReleaseDragSurfaces();
    return ok;
}
