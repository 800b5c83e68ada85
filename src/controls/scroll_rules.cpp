// The value rules of the scroll control.
#include "controls/scroll_rules.h"

ScrollValues DefaultScrollValues() { return ScrollValues{0, 100, 50, 5}; }

// Wide arithmetic: a range from INT32_MIN to INT32_MAX must not overflow.
static int64_t Range(const ScrollValues* values) { return int64_t(values->maximum) - values->minimum; }

// The range setters' clamp: a too-wide step becomes 1, or 0 when the range is under 2.
static void ClampStepToRange(ScrollValues* values) {
    int64_t range = Range(values);
    if (values->step <= range) return;
    int64_t half = range / 2;
    values->step = half >= 1 ? 1 : int32_t(half);
}

void SetScrollMaximum(ScrollValues* values, int32_t v) {
    values->maximum = v;
    if (values->minimum > v) values->minimum = values->position = v;
    ClampStepToRange(values);
    if (values->position > v) values->position = v;
}

void SetScrollMinimum(ScrollValues* values, int32_t v) {
    values->minimum = v;
    if (values->maximum < v) values->maximum = values->position = v;
    ClampStepToRange(values);
    if (values->position < v) values->position = v;
}

void SetScrollStep(ScrollValues* values, int32_t v) {
    values->step = v;
    int64_t range = Range(values);
    if (v <= range) return;
    int64_t half = range / 2;  // truncated toward zero
    values->step = half <= 1 ? 1 : int32_t(half);
}

void SetScrollPosition(ScrollValues* values, int32_t v) {
    if (v > values->maximum)
        values->position = values->maximum;
    else if (v < values->minimum)
        values->position = values->minimum;
    else if (values->step > 0)
        values->position = (v / values->step) * values->step;  // C++ division truncates toward zero
    else
        values->position = v;
}

bool ApplyScrollStep(ScrollValues* values, int32_t zone) {
    int64_t next = values->position;
    if (zone == SCROLL_ZONE_UPPER) {
        next += values->step;
        if (next > values->maximum) next = values->maximum;
    } else if (zone == SCROLL_ZONE_LOWER) {
        next -= values->step;
        if (next < values->minimum) next = values->minimum;
    } else {
        return false;
    }
    // A negative step could push past the other end; the position never leaves the range by a step.
    if (next > values->maximum) next = values->maximum;
    if (next < values->minimum) next = values->minimum;
    bool changed = next != values->position;
    values->position = int32_t(next);
    return changed;
}

int32_t ScrollZoneAt(int32_t y, int32_t upperHeight, int32_t middleHeight) {
    if (y < upperHeight) return SCROLL_ZONE_UPPER;
    if (int64_t(y) >= int64_t(upperHeight) + middleHeight) return SCROLL_ZONE_LOWER;
    return SCROLL_ZONE_MIDDLE;
}

bool ScrollLayoutReady(bool hasStrip, int32_t frameHeight, const int32_t zoneHeights[3]) {
    int64_t sum = int64_t(zoneHeights[0]) + zoneHeights[1] + zoneHeights[2];
    return hasStrip && frameHeight > 0 && sum == frameHeight;
}

int32_t ScrollZonePicture(bool enabled, bool hasDisabledFrame, bool isHoverZone, bool pressActive, bool repeating,
                          bool phase) {
    if (!enabled) return 0;  // the disabled picture when there is one, else the normal one
    int32_t normal = hasDisabledFrame ? 1 : 0;
    if (!isHoverZone) return normal;
    if (!pressActive) return normal + 1;
    if (repeating && phase) return normal;
    return normal + 2;
}

int32_t ScrollStripRow(bool hasDisabledFrame, int32_t zoneTop, int32_t zoneHeight, int32_t picture) {
    return (3 + (hasDisabledFrame ? 1 : 0)) * zoneTop + picture * zoneHeight;
}
