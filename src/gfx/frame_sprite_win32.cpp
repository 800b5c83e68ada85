// FrameSprite drawing.
#include "gfx/frame_sprite_win32.h"

#include <cstring>
#include <new>

#include "gfx/dib.h"

void FrameSprite_Init(FrameSprite* sprite, HWND window) {
    std::memset(sprite, 0, sizeof *sprite);
    sprite->window = window;
    sprite->rows = sprite->columns = 1;
}

void FrameSprite_Destroy(FrameSprite* sprite) {
    if (sprite->ownImage) {
        ImageObject_Destroy(sprite->ownImage);
        delete sprite->ownImage;
    }
    if (sprite->backing) {
        ImageObject_Destroy(sprite->backing);
        delete sprite->backing;
    }
    std::memset(sprite, 0, sizeof *sprite);
}

static void SourceSize(const FrameSprite* sprite, int32_t* width, int32_t* height) {
    *width = *height = 0;
    if (sprite->sourceIsDc && sprite->sourceDc) {
        BITMAP info;
        HGDIOBJ bitmap = GetCurrentObject(sprite->sourceDc, OBJ_BITMAP);
        if (bitmap && GetObjectA(bitmap, sizeof info, &info)) {
            *width = info.bmWidth;
            *height = info.bmHeight;
        }
    } else if (!sprite->sourceIsDc && sprite->sourceDib) {
        *width = DibHeaderOf(sprite->sourceDib)->biWidth;
        *height = DibHeaderOf(sprite->sourceDib)->biHeight;
    }
}

// Frame width = width / columns; frame height = height / (rows * (masked ? 2 : 1)).
static void UpdateFrameSize(FrameSprite* sprite) {
    int32_t width, height;
    SourceSize(sprite, &width, &height);
    int32_t rows = sprite->rows > 0 ? sprite->rows : 1, columns = sprite->columns > 0 ? sprite->columns : 1;
    sprite->frameWidth = width / columns;
    sprite->frameHeight = height / (rows * (sprite->masked ? 2 : 1));
}

void FrameSprite_SetGrid(FrameSprite* sprite, int32_t rows, int32_t columns) {
    sprite->rows = rows;
    sprite->columns = columns;
    UpdateFrameSize(sprite);
}

void FrameSprite_SetSourceDib(FrameSprite* sprite, const uint8_t* dib, bool masked) {
    sprite->sourceDib = dib;
    sprite->sourceIsDc = 0;
    sprite->masked = masked;
    UpdateFrameSize(sprite);
}

void FrameSprite_SetSourceDc(FrameSprite* sprite, HDC dc, bool masked) {
    sprite->sourceDc = dc;
    sprite->sourceIsDc = 1;
    sprite->masked = masked;
    UpdateFrameSize(sprite);
}

bool FrameSprite_LoadSource(FrameSprite* sprite, uint32_t id, bool masked) {
    if (!sprite->ownImage) {
        sprite->ownImage = new (std::nothrow) ImageObject;
        if (!sprite->ownImage) return false;
        ImageObject_Init(sprite->ownImage, false);
    }
    if (!ImageObject_LoadFromPack(sprite->ownImage, id)) return false;
    FrameSprite_SetSourceDib(sprite, ImageObject_Dib(sprite->ownImage), masked);
    return true;
}

void FrameSprite_SetTargetDib(FrameSprite* sprite, uint8_t* dib) {
    sprite->targetDib = dib;
    sprite->targetIsDc = 0;
}

void FrameSprite_SetTargetDc(FrameSprite* sprite, HDC dc) {
    sprite->targetDc = dc;
    sprite->targetIsDc = 1;
}

static void SaveBackground(FrameSprite* sprite, int32_t x, int32_t y) {
    // The store is made in the target's mode; a sprite moved to the other kind of target gets a new one.
    if (sprite->backing && sprite->backing->memoryDcMode != sprite->targetIsDc) {
        ImageObject_Destroy(sprite->backing);
        ImageObject_Init(sprite->backing, sprite->targetIsDc != 0);
        sprite->backgroundSaved = 0;
    }
    if (!sprite->backing) {
        sprite->backing = new (std::nothrow) ImageObject;
        if (!sprite->backing) return;
        ImageObject_Init(sprite->backing, sprite->targetIsDc != 0);
    }
    int32_t w = sprite->frameWidth, h = sprite->frameHeight;
    if (sprite->targetIsDc) {
        if (!ImageObject_SetSize(sprite->backing, w, h, false)) return;
        BitBlt(ImageObject_Dc(sprite->backing), 0, 0, w, h, sprite->targetDc, x, y, SRCCOPY);
    } else {
        if (!sprite->targetDib) return;
        // The store takes the target's depth, so a 24-bit target gets a 24-bit store.
        const DibHeader* target = DibHeaderOf(sprite->targetDib);
        uint8_t* store = target->biBitCount == 8 ? AllocPackedDib8(w, h)
                                                 : AllocPackedDib(w, h, target->biBitCount, 0);
        if (!store) return;
        ImageObject_SetDib(sprite->backing, store);
        CopyPalette(sprite->targetDib, store);
        SoftBlit(store, 0, 0, w, h, sprite->targetDib, x, y, kRopSrcCopy);
    }
    sprite->lastX = x;
    sprite->lastY = y;
    sprite->backgroundSaved = 1;
}

// One copy of the source area at (sx, sy) onto the target, by whichever path the pair allows.
static void DrawArea(FrameSprite* sprite, int32_t x, int32_t y, int32_t sx, int32_t sy, DWORD rop) {
    int32_t w = sprite->frameWidth, h = sprite->frameHeight;
    if (sprite->targetIsDc) {
        if (sprite->sourceIsDc)
            BitBlt(sprite->targetDc, x, y, w, h, sprite->sourceDc, sx, sy, rop);
        else
            DrawPackedDib(sprite->targetDc, x, y, w, h, sprite->sourceDib, sx, sy);
    } else if (!sprite->sourceIsDc && sprite->targetDib) {
        SoftBlit(sprite->targetDib, x, y, w, h, sprite->sourceDib, sx, sy, rop);
    }
}

static void FinishDraw(FrameSprite* sprite, int32_t x, int32_t y, bool invalidate, bool erase) {
    if (invalidate && sprite->window)
        InvalidateArea(sprite->window, Point{x, y}, Point{sprite->frameWidth, sprite->frameHeight}, erase);
}

void FrameSprite_DrawMasked(FrameSprite* sprite, int32_t index, int32_t x, int32_t y, bool invalidate, bool erase,
                            bool saveBackground) {
    int32_t columns = sprite->columns > 0 ? sprite->columns : 1;
    int32_t x0 = (index % columns) * sprite->frameWidth;
    int32_t y0 = (index / columns) * sprite->frameHeight * 2;
    if (saveBackground) SaveBackground(sprite, x, y);
    DrawArea(sprite, x, y, x0, y0 + sprite->frameHeight, SRCAND);
    DrawArea(sprite, x, y, x0, y0, SRCINVERT);
    FinishDraw(sprite, x, y, invalidate, erase);
}

void FrameSprite_DrawWithRop(FrameSprite* sprite, int32_t index, int32_t x, int32_t y, bool invalidate, bool erase,
                             bool saveBackground, DWORD rop) {
    int32_t columns = sprite->columns > 0 ? sprite->columns : 1;
    int32_t x0 = (index % columns) * sprite->frameWidth;
    int32_t y0 = (index / columns) * sprite->frameHeight * (sprite->masked ? 2 : 1);
    if (saveBackground) SaveBackground(sprite, x, y);
    DrawArea(sprite, x, y, x0, y0, rop);
    FinishDraw(sprite, x, y, invalidate, erase);
}

// Puts back exactly what was saved: the store's own size, not the current frame size, which changes
// when the sprite is given another strip while a frame is up.
void FrameSprite_RestoreBackground(FrameSprite* sprite, bool invalidate, bool erase) {
    if (!sprite->backgroundSaved || !sprite->backing) return;
    sprite->backgroundSaved = 0;
    ImageObject* store = sprite->backing;
    int32_t w = 0, h = 0;
    ImageObject_GetSize(store, &w, &h);
    if (sprite->targetIsDc && store->memoryDcMode)
        BitBlt(sprite->targetDc, sprite->lastX, sprite->lastY, w, h, ImageObject_Dc(store), 0, 0, SRCCOPY);
    else if (!sprite->targetIsDc && !store->memoryDcMode && sprite->targetDib)
        SoftBlit(sprite->targetDib, sprite->lastX, sprite->lastY, w, h, ImageObject_Dib(store), 0, 0, kRopSrcCopy);
    if (invalidate && sprite->window)
        InvalidateArea(sprite->window, Point{sprite->lastX, sprite->lastY}, Point{w, h}, erase);
}
