// The shared feedback of the animated buttons: glow while the pointer is over them, back to rest after.
#include "controls/animated_button_win32.h"

#include "controls/control_messages.h"

namespace {

constexpr LPARAM kTowardsGlow = 1;
constexpr LPARAM kTowardsRest = 0;

void RunTowards(HWND button, LPARAM direction) {
    SendMessageA(button, PM_ANIM_SETUSERVALUE, 0, direction);
    SendMessageA(button, PM_ANIM_SETRUNNING, 0, 1);
}

void ShowFullGlow(HWND button) {
    SendMessageA(button, PM_ANIM_SETUSERVALUE, 0, kTowardsGlow);
    SendMessageA(button, PM_ANIM_SETRUNNING, 0, 0);
    SendMessageA(button, PM_ANIM_SETFRAME, 0, kButtonGlowFrame);
}

// One step per tick; the animation stops where its direction ends, so a button at rest or held at
// full glow costs no timer.
void StepFrame(HWND button) {
    bool towardsGlow = SendMessageA(button, PM_ANIM_GETUSERVALUE, 0, 0) == kTowardsGlow;
    int32_t frame = int32_t(SendMessageA(button, PM_ANIM_GETFRAME, 0, 0));
    int32_t target = towardsGlow ? kButtonGlowFrame : kButtonRestFrame;
    if (frame < kButtonRestFrame || frame > kButtonGlowFrame) frame = target;  // set elsewhere: settle
    else if (frame < target) ++frame;
    else if (frame > target) --frame;
    if (frame == target) SendMessageA(button, PM_ANIM_SETRUNNING, 0, 0);
    SendMessageA(button, PM_ANIM_SETFRAME, 0, frame);
}

}  // namespace

void AnimatedButtonFeedback(HWND button, WPARAM event) {
    if (!button) return;
    switch (event) {
    case NOTIFY_ENTERED: RunTowards(button, kTowardsGlow); break;
    case NOTIFY_LEFT: RunTowards(button, kTowardsRest); break;
    case NOTIFY_PRESSED: ShowFullGlow(button); break;
    case NOTIFY_SPECIAL: StepFrame(button); break;
    default: break;  // released and clicked leave the look as it is
    }
}
