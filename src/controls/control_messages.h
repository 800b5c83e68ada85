// Private window messages shared by the skinned controls and their parents, and the events a control
// reports to its parent with PM_NOTIFY.
#pragma once

#include <cstdint>

// Control -> parent. wParam: one of the NotifyEvent values; lParam: the control's window.
constexpr unsigned PM_NOTIFY = 1324;
// Parent -> child control messages share the range 1324 .. 1424; numbers a control does not use return 1.
constexpr unsigned PM_FIRST = 1324;
constexpr unsigned PM_LAST = 1424;
constexpr unsigned PM_GETENABLE = 1324;
constexpr unsigned PM_SETENABLE = 1325;
constexpr unsigned PM_GETIMAGE = 1326;
constexpr unsigned PM_SETIMAGE = 1327;
constexpr unsigned PM_GETDISFRAME = 1334;
constexpr unsigned PM_SETDISFRAME = 1335;
// Sent by the message loop to a child's parent before the child's WM_CHAR; non-zero swallows it.
constexpr unsigned PM_CHILDCHAR = 1524;

enum NotifyEvent {
    NOTIFY_PRESSED = 0,
    NOTIFY_RELEASED = 1,
    NOTIFY_ENTERED = 2,
    NOTIFY_LEFT = 3,
    NOTIFY_CLICKED = 4,  // clicked, or value changed
    NOTIFY_SPECIAL = 5,  // control-specific (radio box unchecked by its program, animation tick)
};

// Notices the board sends to a tray with PM_NOTIFY: its view became empty or non-empty.
constexpr unsigned NOTIFY_VIEW_EMPTY = 1;
constexpr unsigned NOTIFY_VIEW_FILLED = 2;
