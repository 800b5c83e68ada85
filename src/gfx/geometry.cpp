// Point arithmetic and the rectangle relation.
#include "gfx/geometry.h"

#include <algorithm>

Point MultiplyPoint(Point a, double factor) {
    return Point{static_cast<int32_t>(a.x * factor), static_cast<int32_t>(a.y * factor)};
}

Point DividePoint(Point a, double divisor) {
    return Point{static_cast<int32_t>(a.x / divisor), static_cast<int32_t>(a.y / divisor)};
}

// 0 before the span, 1 on it (both ends included), 2 after it.
static int ClassifyEdge(int64_t edge, int64_t spanStart, int64_t spanEnd) {
    if (edge < spanStart) return 0;
    if (edge <= spanEnd) return 1;
    return 2;
}

bool RectRelation(const Rect& a, const Rect& b, int mode, Rect* out) {
    int64_t aRight = int64_t(a.x) + a.width, aBottom = int64_t(a.y) + a.height;
    int64_t bRight = int64_t(b.x) + b.width, bBottom = int64_t(b.y) + b.height;
    int left = ClassifyEdge(a.x, b.x, bRight);
    int right = ClassifyEdge(aRight, b.x, bRight);
    int top = ClassifyEdge(a.y, b.y, bBottom);
    int bottom = ClassifyEdge(aBottom, b.y, bBottom);
    bool touches = right > 0 && left < 2 && bottom >= 1 && top < 2;

    Rect result{0, 0, 0, 0};
    if (mode == RECT_INTERSECTION && touches) {
        int64_t x0 = std::max<int64_t>(a.x, b.x), y0 = std::max<int64_t>(a.y, b.y);
        int64_t x1 = std::min(aRight, bRight), y1 = std::min(aBottom, bBottom);
        result = Rect{int32_t(x0), int32_t(y0), int32_t(x1 - x0), int32_t(y1 - y0)};
    } else if (mode == RECT_UNION) {
        int64_t x0 = std::min<int64_t>(a.x, b.x), y0 = std::min<int64_t>(a.y, b.y);
        int64_t x1 = std::max(aRight, bRight), y1 = std::max(aBottom, bBottom);
        result = Rect{int32_t(x0), int32_t(y0), int32_t(x1 - x0), int32_t(y1 - y0)};
    }
    if (out) *out = result;
    return touches;
}
