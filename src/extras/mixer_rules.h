// The volume arithmetic of the music window: a mixer control's raw value as the percent its slider
// shows, and a slider's percent as the raw value the mixer is given.
#pragma once

#include <cstdint>

// The sliders run from 0 to 99: a full mixer reads as 99.
constexpr int32_t kVolumeSliderTop = 99;

// (value - minimum) * 100 / (maximum - minimum), in unsigned whole numbers; 50 when the control's
// minimum is not below its maximum. A value outside the range is taken as the nearer end.
uint32_t PercentOfMixerValue(uint32_t value, uint32_t minimum, uint32_t maximum);

// The raw value for percent p (0..100): (maximum - minimum) * p * 0.01 + minimum in double precision,
// truncated, then rounded down to a multiple of (steps - 1) of the raw value itself, steps 0 counting
// as 1. The quantisation is the mixer's habit and is kept as it is: with 65536 steps every setting under
// 100 % becomes the minimum. One step would divide by zero; the value then stays unquantised.
// False (value untouched) for p outside 0..100 or a minimum not below the maximum.
bool MixerValueOfPercent(int32_t percent, uint32_t minimum, uint32_t maximum, uint32_t steps, uint32_t* value);

// What a slider shows for a mixer reading: the percent, at most 99.
int32_t SliderValueOfPercent(uint32_t percent);
