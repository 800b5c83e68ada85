// A piece box's geometry: grips of the frame and title strip, move and resize arithmetic, layout, title cuts.
#include "setup/box_frame.h"

uint32_t BoxGripAt(int32_t width, int32_t height, int32_t x, int32_t y) {
    if (x < 0 || y < 0 || x >= width || y >= height) return GRIP_NONE;
    uint32_t grip = GRIP_NONE;
    if (x < kBoxFrameWidth) grip |= GRIP_LEFT;
    if (x >= width - kBoxFrameWidth) grip |= GRIP_RIGHT;
    if (y < kBoxFrameWidth) grip |= GRIP_TOP;
    if (y >= height - kBoxFrameWidth) grip |= GRIP_BOTTOM;
    if (x >= width - kBoxCornerGrip && y >= height - kBoxCornerGrip) grip = GRIP_RIGHT | GRIP_BOTTOM;
    if (grip != GRIP_NONE) return grip;
    return y < kBoxFrameWidth + kBoxTitleStrip ? uint32_t(GRIP_MOVE) : uint32_t(GRIP_NONE);
}

BoxCursor BoxCursorFor(uint32_t grip) {
    if (grip & GRIP_MOVE) return BOX_CURSOR_MOVE;
    const bool horizontal = grip & (GRIP_LEFT | GRIP_RIGHT), vertical = grip & (GRIP_TOP | GRIP_BOTTOM);
    if (horizontal && vertical) {
        const bool falling = ((grip & GRIP_LEFT) != 0) == ((grip & GRIP_TOP) != 0);
        return falling ? BOX_CURSOR_NWSE : BOX_CURSOR_NESW;
    }
    if (horizontal) return BOX_CURSOR_WE;
    if (vertical) return BOX_CURSOR_NS;
    return BOX_CURSOR_ARROW;
}

namespace {

// One axis of a resize: the near edge (left or top) or the far one moves by `delta`.
void ResizeSpan(int32_t* position, int32_t* length, bool nearEdge, bool farEdge, int32_t delta) {
    const int32_t start = *position, end = *position + *length;
    if (nearEdge) {
        int32_t moved = start + delta;
        if (end - moved < kBoxMinimumSize) moved = end - kBoxMinimumSize;
        *position = moved;
        *length = end - moved;
    } else if (farEdge) {
        int32_t moved = end + delta;
        if (moved - start < kBoxMinimumSize) moved = start + kBoxMinimumSize;
        *length = moved - start;
    }
}

}  // namespace

Rect DraggedBoxRect(const Rect& start, uint32_t grip, int32_t dx, int32_t dy) {
    Rect r = start;
    if (grip & GRIP_MOVE) {
        r.x += dx;
        r.y += dy;
        return r;
    }
    ResizeSpan(&r.x, &r.width, grip & GRIP_LEFT, grip & GRIP_RIGHT, dx);
    ResizeSpan(&r.y, &r.height, grip & GRIP_TOP, grip & GRIP_BOTTOM, dy);
    return r;
}

BoxLayout LayOutBox(int32_t width, int32_t height) {
    BoxLayout layout;
    layout.view = Rect{kBoxFrameWidth, kBoxFrameWidth + kBoxTitleStrip, width - 2 * kBoxFrameWidth,
                       height - kBoxTitleStrip - 2 * kBoxFrameWidth};
    layout.close = Point{width - kBoxCloseFromRight, kBoxButtonTop};
    layout.rename = Point{width - kBoxRenameFromRight, kBoxButtonTop};
    return layout;
}

size_t BoxTitleLength(const char* text) {
    size_t length = 0;
    if (text)
        while (length < kBoxTitleLimit && text[length]) ++length;
    return length;
}

size_t CopyBoxTitle(const char* title, size_t length, char* buffer, size_t size) {
    if (!buffer || size == 0) return 0;
    size_t n = length < kBoxTitleLimit ? length : kBoxTitleLimit;
    if (n > size - 1) n = size - 1;
    if (!title) n = 0;
    for (size_t i = 0; i < n; ++i) buffer[i] = title[i];
    buffer[n] = 0;
    return n;
}

size_t CutBoxName(const char* typed, char* name) {
    size_t n = 0;
    if (typed)
        while (n < kBoxNameLimit && typed[n]) {
            name[n] = typed[n];
            ++n;
        }
    name[n] = 0;
    return n;
}
