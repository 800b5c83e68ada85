// Point arithmetic and the rectangle relation (touch test, intersection, union).
#pragma once

#include <cstdint>

struct Point {
    int32_t x, y;
};

// A rectangle as position and size; shared edges count as touching.
struct Rect {
    int32_t x, y, width, height;
};

inline Point MakePoint(int32_t x, int32_t y) { return Point{x, y}; }
inline Point AddPoints(Point a, Point b) { return Point{a.x + b.x, a.y + b.y}; }
inline Point SubtractPoints(Point a, Point b) { return Point{a.x - b.x, a.y - b.y}; }
inline void AddToPoint(Point* a, Point b) { *a = AddPoints(*a, b); }
inline void SubtractFromPoint(Point* a, Point b) { *a = SubtractPoints(*a, b); }
// Each coordinate is truncated toward zero after the multiplication or division.
Point MultiplyPoint(Point a, double factor);
Point DividePoint(Point a, double divisor);
inline void MultiplyPointInPlace(Point* a, double factor) { *a = MultiplyPoint(*a, factor); }
inline void DividePointInPlace(Point* a, double divisor) { *a = DividePoint(*a, divisor); }
inline int64_t DotProduct(Point a, Point b) { return int64_t(a.x) * b.x + int64_t(a.y) * b.y; }
inline bool PointsEqual(Point a, Point b) { return a.x == b.x && a.y == b.y; }
inline bool PointsDiffer(Point a, Point b) { return !PointsEqual(a, b); }

enum RectMode {
    RECT_UNION = 1,         // the bounding rectangle of both
    RECT_INTERSECTION = 2,  // the overlap, or all zeros when they do not touch
};

// Whether A and B touch (edges on B's span count as inside), and in *out the union or the
// intersection as the mode asks. Other modes give a zero rectangle.
bool RectRelation(const Rect& a, const Rect& b, int mode, Rect* out);
