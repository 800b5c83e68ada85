// The seven views' 24-bit pictures: made at a view's first size, kept across later sizes.
#pragma once

#include <cstdint>

#include "puzzle/model.h"

// Row stride of a view picture: (3 * width + 3) rounded down to a multiple of 4.
inline int32_t ViewStride(int32_t width) { return (3 * width + 3) & ~3; }

enum ViewResize {
    VIEW_FIRST_SIZE,  // the picture was made; the board cuts a pending puzzle, then composes it whole
    VIEW_RESIZED,     // the picture kept its top-left corner; new strips were composed and invalidated
    VIEW_KEPT,        // below 2 x 2, or short of memory: the old picture stays as it was
};

// The view's window got a size.
ViewResize ResizeViewPicture(PuzzleState* p, int view, int32_t width, int32_t height);
void FreeViewPicture(PuzzleState* p, int view);
