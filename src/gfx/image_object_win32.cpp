// ImageObject and the DrawDib drawing helpers.
#include "gfx/image_object_win32.h"

#include <vfw.h>

#include <cassert>
#include <cstring>

#include "gfx/dib.h"
#include "gfx/pack.h"

void ImageObject_Init(ImageObject* image, bool memoryDcMode) {
    std::memset(image, 0, sizeof *image);
    HDC screen = GetDC(nullptr);
    image->dc = CreateCompatibleDC(screen);
    ReleaseDC(nullptr, screen);
    image->allocWidth = image->allocHeight = 1;
    image->width = image->height = 1;
    image->memoryDcMode = memoryDcMode ? 1 : 0;
}

void ImageObject_Destroy(ImageObject* image) {
    if (image->memoryDcMode) {
        if (image->savedBitmap) {
            HGDIOBJ held = SelectObject(image->dc, image->savedBitmap);
            if (image->ownsBitmap && held) DeleteObject(held);
        }
        if (image->savedPalette) {
            HPALETTE held = SelectPalette(image->dc, image->savedPalette, TRUE);
            if (!image->paletteShared && held) DeleteObject(held);
        }
    } else {
        FreePackedDib(image->block);
    }
    if (image->dc) DeleteDC(image->dc);
    std::memset(image, 0, sizeof *image);
}

void ImageObject_SetDib(ImageObject* image, uint8_t* dib) {
    assert(!image->memoryDcMode);
    if (image->block != dib) FreePackedDib(image->block);
    image->block = dib;
    if (dib) {
        image->allocWidth = DibHeaderOf(dib)->biWidth;
        image->allocHeight = DibHeaderOf(dib)->biHeight;
    }
}

bool ImageObject_LoadFromPack(ImageObject* image, uint32_t id) {
    if (image->memoryDcMode) {
        HANDLE loaded = LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(id & 0xFFFF), IMAGE_BITMAP, 0, 0,
                                   LR_CREATEDIBSECTION | LR_SHARED);
        return loaded && ImageObject_Attach(image, static_cast<HBITMAP>(loaded), false, 0);
    }
    uint8_t* dib = LoadPackItem(&g_pack, id);
    if (!dib) return false;
    ImageObject_SetDib(image, dib);
    return true;
}

// Selects bitmap into the DC, keeping the DC's own bitmap aside the first time and deleting a
// replaced bitmap we owned.
static bool SelectBitmap(ImageObject* image, HBITMAP bitmap, bool owned) {
    HGDIOBJ previous = SelectObject(image->dc, bitmap);
    if (!previous || previous == HGDI_ERROR) return false;
    if (!image->savedBitmap)
        image->savedBitmap = static_cast<HBITMAP>(previous);
    else if (image->ownsBitmap && previous != bitmap)
        DeleteObject(previous);
    image->ownsBitmap = owned;
    return true;
}

bool ImageObject_Attach(ImageObject* image, HBITMAP bitmap, bool takeOwnership, int paletteEntries) {
    assert(image->memoryDcMode);
    if (!SelectBitmap(image, bitmap, takeOwnership)) {
        if (takeOwnership) DeleteObject(bitmap);
        return false;
    }
    BITMAP info;
    std::memset(&info, 0, sizeof info);
    if (GetObjectA(bitmap, sizeof info, &info)) {
        image->allocWidth = image->width = info.bmWidth;
        image->allocHeight = image->height = info.bmHeight;
    }
    int bits = info.bmBitsPixel;
    int entries = bits == 4 ? 16 : bits == 8 ? 256 : paletteEntries;
    if (bits == 1 || bits == 16 || bits == 24 || bits == 32 || entries <= 0) return true;
    if (entries > 256) entries = 256;

    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colors[256];
    } table;
    std::memset(&table, 0, sizeof table);
    table.header.biSize = sizeof table.header;
    table.header.biWidth = info.bmWidth;
    table.header.biHeight = info.bmHeight;
    table.header.biPlanes = 1;
    // With no bits asked for, GetDIBits returns the colour table only when the header names a
    // depth; left at 0 it fills the header alone and the palette would come out all black.
    table.header.biBitCount = WORD(bits);
    // A DIB section selected into our DC also reports its table through GetDIBColorTable.
    if (!GetDIBits(image->dc, bitmap, 0, 0, nullptr, reinterpret_cast<BITMAPINFO*>(&table), DIB_RGB_COLORS))
        GetDIBColorTable(image->dc, 0, UINT(entries), table.colors);

    struct {
        WORD version, count;
        PALETTEENTRY entries[256];
    } logical;
    logical.version = 0x300;
    logical.count = WORD(entries);
    for (int i = 0; i < logical.count; ++i) {
        logical.entries[i].peRed = table.colors[i].rgbRed;
        logical.entries[i].peGreen = table.colors[i].rgbGreen;
        logical.entries[i].peBlue = table.colors[i].rgbBlue;
        logical.entries[i].peFlags = 0;
    }
    HPALETTE palette = CreatePalette(reinterpret_cast<LOGPALETTE*>(&logical));
    if (!palette) return true;
    HPALETTE replaced = SelectPalette(image->dc, palette, TRUE);
    RealizePalette(image->dc);
    if (!image->savedPalette)
        image->savedPalette = replaced;
    else if (!image->paletteShared && replaced)
        DeleteObject(replaced);
    image->paletteShared = 0;
    return true;
}

bool ImageObject_SetSize(ImageObject* image, int32_t width, int32_t height, bool exact) {
    if (!image->memoryDcMode) {
        uint8_t* dib = AllocPackedDib8(width, height);
        if (!dib) return false;
        ImageObject_SetDib(image, dib);
        return true;
    }
    if (!exact && width <= image->allocWidth && height <= image->allocHeight) {
        image->width = width;
        image->height = height;
        return true;
    }
    int32_t w = exact ? width : (width > image->allocWidth ? width : image->allocWidth);
    int32_t h = exact ? height : (height > image->allocHeight ? height : image->allocHeight);
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, w, h);
    ReleaseDC(nullptr, screen);
    if (!bitmap) return false;
    if (!SelectBitmap(image, bitmap, true)) {
        DeleteObject(bitmap);
        return false;
    }
    image->allocWidth = w;
    image->allocHeight = h;
    image->width = width;
    image->height = height;
    return true;
}

void ImageObject_GetSize(const ImageObject* image, int32_t* width, int32_t* height) {
    if (image->memoryDcMode || !image->block) {
        *width = image->width;
        *height = image->height;
    } else {
        *width = DibHeaderOf(image->block)->biWidth;
        *height = DibHeaderOf(image->block)->biHeight;
    }
}

HDC ImageObject_Dc(const ImageObject* image) {
    assert(image->memoryDcMode);
    return image->dc;
}

HBITMAP ImageObject_Bitmap(const ImageObject* image) {
    assert(image->memoryDcMode);
    return static_cast<HBITMAP>(GetCurrentObject(image->dc, OBJ_BITMAP));
}

HPALETTE ImageObject_Palette(const ImageObject* image) {
    assert(image->memoryDcMode);
    return static_cast<HPALETTE>(GetCurrentObject(image->dc, OBJ_PAL));
}

void ImageObject_RealizePalette(const ImageObject* image) {
    assert(image->memoryDcMode);
    RealizePalette(image->dc);
}

uint8_t* ImageObject_Dib(const ImageObject* image) {
    assert(!image->memoryDcMode);
    return image->block;
}

static void DrawDibArea(HDC dc, int32_t x, int32_t y, int32_t width, int32_t height, const uint8_t* dib,
                        int32_t sx, int32_t sy, BOOL background) {
    if (width == 0 || height == 0 || !dib) return;
    HDRAWDIB hdd = DrawDibOpen();
    if (!hdd) return;
    DrawDibRealize(hdd, dc, background);
    DrawDibDraw(hdd, dc, x, y, width, height,
                reinterpret_cast<LPBITMAPINFOHEADER>(const_cast<uint8_t*>(dib)),
                const_cast<uint8_t*>(dib + kDibPixelOffset), sx, sy, width, height, 0);
    DrawDibClose(hdd);
}

void DrawPackedDib(HDC dc, int32_t x, int32_t y, int32_t width, int32_t height, const uint8_t* dib, int32_t sx,
                   int32_t sy) {
    DrawDibArea(dc, x, y, width, height, dib, sx, sy, TRUE);
}

void PaintRect(HDC dc, const RECT* rect, const uint8_t* dib) {
    int32_t width = rect->right - rect->left, height = rect->bottom - rect->top;
    if (!dib) {
        BitBlt(dc, rect->left, rect->top, width, height, nullptr, 0, 0, BLACKNESS);
        return;
    }
    DrawDibArea(dc, rect->left, rect->top, width, height, dib, rect->left, rect->top, FALSE);
}

void InvalidateArea(HWND window, Point position, Point size, bool erase) {
    RECT rect = {position.x, position.y, position.x + size.x, position.y + size.y};
    InvalidateRect(window, &rect, erase);
}
