// The value rules of the scroll control `CQMSROLL`: range, step and position setting, the zone under a
// point, one button step and the picture each zone shows. No window here, so the rules test natively.
#pragma once

#include <cstdint>

struct ScrollValues {
    int32_t minimum;
    int32_t maximum;
    int32_t position;
    int32_t step;  // added by the upper button, taken by the lower one
};

enum ScrollZone { SCROLL_ZONE_NONE = 0, SCROLL_ZONE_UPPER = 1, SCROLL_ZONE_MIDDLE = 2, SCROLL_ZONE_LOWER = 3 };

// Minimum 0, maximum 100, position 50, step 5.
ScrollValues DefaultScrollValues();

// maximum = v; a minimum above v takes v together with the position; a step wider than the range drops
// to 1 (0 for a range under 2); a position above v becomes v.
void SetScrollMaximum(ScrollValues* values, int32_t v);
// The mirror of SetScrollMaximum.
void SetScrollMinimum(ScrollValues* values, int32_t v);
// step = v; a step wider than the range becomes half the range, but at least 1. Deliberately not the
// same clamp as the range setters use.
void SetScrollStep(ScrollValues* values, int32_t v);
// Clamped to the range; inside it, truncated toward zero to a multiple of the step counted from 0 (not
// from the minimum), so the result may even fall below the minimum.
void SetScrollPosition(ScrollValues* values, int32_t v);
// Upper zone adds the step (not above the maximum), lower zone takes it (not below the minimum); the
// middle zone does nothing. True when the position changed.
bool ApplyScrollStep(ScrollValues* values, int32_t zone);

// Zone of a client y: upper above upperHeight, lower from upperHeight + middleHeight down, else middle.
int32_t ScrollZoneAt(int32_t y, int32_t upperHeight, int32_t middleHeight);
// Ready when a strip gave a frame height and the three zones fill it exactly.
bool ScrollLayoutReady(bool hasStrip, int32_t frameHeight, const int32_t zoneHeights[3]);

// Which of a zone's pictures to show, counting the disabled picture first when the strip has one:
// disabled shows picture 0; the zone under the pointer shows lit, or pressed during a press, and while
// auto-repeating it alternates pressed with normal (normal while the phase is set).
int32_t ScrollZonePicture(bool enabled, bool hasDisabledFrame, bool isHoverZone, bool pressActive, bool repeating,
                          bool phase);
// Strip row (from the top) of picture `picture` of the zone whose top is zoneTop: the strip stacks each
// zone's pictures one under the other, zone after zone.
int32_t ScrollStripRow(bool hasDisabledFrame, int32_t zoneTop, int32_t zoneHeight, int32_t picture);
