// The views' pictures and what happens to them when a view's window changes size.
#include "puzzle/views.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "puzzle/compose.h"

namespace {

uint8_t* AllocatePicture(int32_t width, int32_t height) {
    if (width < 0 || height < 0) return nullptr;
    int64_t bytes = int64_t(ViewStride(width)) * height;
    return static_cast<uint8_t*>(std::calloc(size_t(bytes > 0 ? bytes : 1), 1));
}

void TakeSize(ViewSurface* s, uint8_t* pixels, int32_t width, int32_t height) {
    s->pixels = pixels;
    s->width = width;
    s->height = height;
    s->stride = ViewStride(width);
    s->lastRow = height - 1;
}

}  // namespace

ViewResize ResizeViewPicture(PuzzleState* p, int view, int32_t width, int32_t height) {
    ViewSurface* s = &p->surfaces[view];
    if (!s->pixels) {
        uint8_t* pixels = AllocatePicture(width, height);
        if (!pixels) return VIEW_KEPT;
        TakeSize(s, pixels, width, height);
        return VIEW_FIRST_SIZE;
    }
    if (width < 2 || height < 2) return VIEW_KEPT;
    uint8_t* pixels = AllocatePicture(width, height);
    if (!pixels) return VIEW_KEPT;
    // Rows are stored bottom-up; the picture keeps its top-left corner, so row i from the top moves.
    const int32_t oldWidth = s->width, oldHeight = s->height;
    const int32_t rows = std::min(oldHeight, height);
    const size_t bytes = size_t(3) * size_t(std::min(oldWidth, width));
    const int32_t stride = ViewStride(width);
    for (int32_t i = 0; i < rows; ++i)
        std::memcpy(pixels + int64_t(height - 1 - i) * stride, s->pixels + int64_t(oldHeight - 1 - i) * s->stride, bytes);
    std::free(s->pixels);
    TakeSize(s, pixels, width, height);
    if (width > oldWidth) RepaintRect(p, view, oldWidth, 0, width - oldWidth, height, true, false);
    if (height > oldHeight) RepaintRect(p, view, 0, oldHeight, width, height - oldHeight, true, false);
    return VIEW_RESIZED;
}

void FreeViewPicture(PuzzleState* p, int view) {
    ViewSurface* s = &p->surfaces[view];
    std::free(s->pixels);
    void* window = s->window;
    *s = ViewSurface{};
    s->window = window;
}
