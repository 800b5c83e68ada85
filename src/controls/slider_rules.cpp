// The value rules of the slider control.
#include "controls/slider_rules.h"

#include <cmath>

SliderValues DefaultSliderValues() { return SliderValues{0, 100, 0, 1}; }

// Wide arithmetic: a range from INT32_MIN to INT32_MAX must not overflow.
static int64_t Range(const SliderValues* values) { return int64_t(values->maximum) - values->minimum; }

// The range setters' clamp: a too-wide step becomes half the range.
static void ClampStepToRange(SliderValues* values) {
    int64_t range = Range(values);
    if (values->step > range) values->step = int32_t(range / 2);
}

void SetSliderMaximum(SliderValues* values, int32_t v) {
    values->maximum = v;
    if (values->minimum > v) values->minimum = values->value = v;
    ClampStepToRange(values);
    if (values->value > v) values->value = v;
}

void SetSliderMinimum(SliderValues* values, int32_t v) {
    values->minimum = v;
    if (values->maximum < v) values->maximum = values->value = v;
    ClampStepToRange(values);
    if (values->value < v) values->value = v;
}

void SetSliderStep(SliderValues* values, int32_t v) {
    int64_t range = Range(values);
    values->step = v >= 1 && v <= range ? v : int32_t(range / 2);  // the range is never negative
}

void SetSliderValue(SliderValues* values, int32_t v) {
    int64_t next = v;
    if (values->step > 0) next = (next / values->step) * values->step;  // C++ division truncates toward zero
    if (next > values->maximum) next = values->maximum;
    if (next < values->minimum) next = values->minimum;
    values->value = int32_t(next);
}

int32_t SliderValueAtPoint(const SliderValues* values, const SliderLine* line, SliderPoint p) {
    if (!(line->squaredLength > 0.0f)) return values->value;
    int64_t dot = int64_t(p.x) * line->direction.x + int64_t(p.y) * line->direction.y;
    float t = float(dot) / line->squaredLength;
    if (t > 1.0f) return values->maximum;
    if (t < 0.0f) return values->minimum;
    double along = double(Range(values)) * t + values->minimum;
    double next;
    if (values->step > 0)
        next = std::trunc((along / values->step + 0.5) * values->step);
    else
        next = std::trunc(along);
    // Clamped before the conversion, so no value outside int32 is ever converted.
    if (next > values->maximum) next = values->maximum;
    if (next < values->minimum) next = values->minimum;
    return int32_t(next);
}

SliderPoint SliderThumbOffset(const SliderValues* values, SliderPoint direction) {
    if (values->value <= values->minimum) return SliderPoint{0, 0};
    if (values->value >= values->maximum) return direction;
    int64_t range = Range(values);
    int64_t along = int64_t(values->value) - values->minimum;
    return SliderPoint{int32_t(direction.x * along / range), int32_t(direction.y * along / range)};
}

static void UpdateSquaredLength(SliderLine* line) {
    double dx = line->direction.x, dy = line->direction.y;
    line->squaredLength = float(dx * dx + dy * dy);
}

SliderLine DefaultSliderLine() { return SliderLine{{0, 0}, {0, 0}, 0.0f}; }

SliderPoint SliderLineEnd(const SliderLine* line) {
    return SliderPoint{line->start.x + line->direction.x, line->start.y + line->direction.y};
}

void SetSliderLineStart(SliderLine* line, SliderPoint start) {
    SliderPoint end = SliderLineEnd(line);
    line->start = start;
    line->direction = SliderPoint{end.x - start.x, end.y - start.y};
    UpdateSquaredLength(line);
}

void SetSliderLineEnd(SliderLine* line, SliderPoint end) {
    line->direction = SliderPoint{end.x - line->start.x, end.y - line->start.y};
    UpdateSquaredLength(line);
}

int32_t PackSliderPoint(SliderPoint p) {
    uint32_t packed = uint32_t(uint16_t(p.x)) | (uint32_t(uint16_t(p.y)) << 16);
    return int32_t(packed);
}

SliderPoint UnpackSliderPoint(int32_t packed) {
    uint32_t bits = uint32_t(packed);
    return SliderPoint{int16_t(uint16_t(bits & 0xFFFF)), int16_t(uint16_t(bits >> 16))};
}
