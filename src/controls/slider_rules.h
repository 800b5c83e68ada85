// The value rules of the slider control `CQMSLIDE`: range, step and value setting, the line the thumb
// runs along, the value under a dragged point and where the thumb stands for a value. No window here,
// so the rules test natively.
#pragma once

#include <cstdint>

struct SliderValues {
    int32_t minimum;
    int32_t maximum;
    int32_t value;
    int32_t step;  // truncates values set by message; biases the rounding of dragged values
};

struct SliderPoint {
    int32_t x;
    int32_t y;
};

// The straight line the thumb runs along, in client coordinates of the control.
struct SliderLine {
    SliderPoint start;      // where the thumb stands at the minimum
    SliderPoint direction;  // line end minus line start; the thumb stands at start + direction at the maximum
    float squaredLength;    // direction.x² + direction.y², kept for the projection
};

// Minimum 0, maximum 100, value 0, step 1.
SliderValues DefaultSliderValues();

// maximum = v; a minimum above v takes v together with the value; a step wider than the new range
// becomes half the range (truncated, so 0 for a range under 2); a value above v becomes v.
void SetSliderMaximum(SliderValues* values, int32_t v);
// The mirror of SetSliderMaximum.
void SetSliderMinimum(SliderValues* values, int32_t v);
// step = v when 1 <= v <= range, else half the range (truncated).
void SetSliderStep(SliderValues* values, int32_t v);
// trunc(v / step) * step (toward zero), then clamped to the range. A step of 0 (a range under 2) takes
// v as it is before the clamp.
void SetSliderValue(SliderValues* values, int32_t v);

// The value for a point p given relative to the line start (pointer - grab offset - line start), with
// t = (p . direction) / squaredLength: past the end gives the maximum, before the start the minimum,
// else trunc(((maximum - minimum) * t + minimum) / step + 0.5) * step with the last product taken in
// floating point before truncating, which is trunc(minimum + t * range + step / 2): the step biases
// the rounding instead of snapping to its multiples (0..100 by 5 at t = 0.5 gives 52). The game keeps
// that bias on purpose. Clamped to the range; a line of no length keeps the current value.
int32_t SliderValueAtPoint(const SliderValues* values, const SliderLine* line, SliderPoint p);

// Where the thumb stands, relative to the line start: (0, 0) at the minimum (also when minimum equals
// maximum), the whole direction at the maximum, else direction * (value - minimum) / range truncated
// toward zero.
SliderPoint SliderThumbOffset(const SliderValues* values, SliderPoint direction);

// A line from (0, 0) to (0, 0).
SliderLine DefaultSliderLine();
SliderPoint SliderLineEnd(const SliderLine* line);
// Moves the start and keeps the end where it was (the direction changes).
void SetSliderLineStart(SliderLine* line, SliderPoint start);
void SetSliderLineEnd(SliderLine* line, SliderPoint end);

// Points travel in one message value: x in the low and y in the high 16 bits, both signed.
int32_t PackSliderPoint(SliderPoint p);
SliderPoint UnpackSliderPoint(int32_t packed);
