// Percent to raw mixer value and back, with the mixer's own quantisation.
#include "extras/mixer_rules.h"

uint32_t PercentOfMixerValue(uint32_t value, uint32_t minimum, uint32_t maximum) {
    if (minimum >= maximum) return 50;
    if (value < minimum) value = minimum;
    if (value > maximum) value = maximum;
    // 64 bits: a control with a range near 2^32 still reads right instead of wrapping.
    return uint32_t(uint64_t(value - minimum) * 100u / uint64_t(maximum - minimum));
}

bool MixerValueOfPercent(int32_t percent, uint32_t minimum, uint32_t maximum, uint32_t steps, uint32_t* value) {
    if (percent < 0 || percent > 100 || minimum >= maximum) return false;
    uint32_t raw = uint32_t(double(maximum - minimum) * percent * 0.01 + minimum);
    uint32_t count = steps ? steps : 1;
    if (count > 1) raw = raw / (count - 1) * (count - 1);
    *value = raw;
    return true;
}

int32_t SliderValueOfPercent(uint32_t percent) {
    return percent > uint32_t(kVolumeSliderTop) ? kVolumeSliderTop : int32_t(percent);
}
