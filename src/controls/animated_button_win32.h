// The hover and press feedback shared by every animated button (a `CQMANIM` with one row of ten frames):
// frame 0 is the button at rest, frames 1..9 a growing glow with a small swing of the icon.
#pragma once

#include <windows.h>

#include <cstdint>

constexpr int32_t kButtonRestFrame = 0;
constexpr int32_t kButtonGlowFrame = 9;  // the last glowing frame, held while the pointer stays

// A screen calls this with every PM_NOTIFY (event, control) it receives from an animated button, before
// acting on the event itself:
//   entered      the animation runs towards the glow;
//   left         it runs back to rest;
//   pressed      the full glow shows at once (a quick click is still seen);
//   tick         one frame further in the current direction; reaching the end stops the animation.
// The direction is kept in the button's user value (1 towards the glow, 0 back to rest), so a screen
// that uses this feedback leaves that value alone; setting it to 0 together with frame 0 puts the
// button back to rest.
void AnimatedButtonFeedback(HWND button, WPARAM event);
