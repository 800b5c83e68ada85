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

// `CQMCHECK`: the value and the radio flag (lParam non-zero sets).
constexpr unsigned PM_GETCHECKED = 1336;
constexpr unsigned PM_SETCHECKED = 1337;
constexpr unsigned PM_GETRADIO = 1338;
constexpr unsigned PM_SETRADIO = 1339;

// `CQMTXT`. The background picture goes with PM_GETIMAGE / PM_SETIMAGE; enabling with PM_SETENABLE.
constexpr unsigned PM_TXT_GETSHADOW = 1334;
constexpr unsigned PM_TXT_SETSHADOW = 1335;
constexpr unsigned PM_TXT_GETSHADOWCOLOR = 1336;
constexpr unsigned PM_TXT_SETSHADOWCOLOR = 1337;
constexpr unsigned PM_TXT_GETTEXTCOLOR = 1338;
constexpr unsigned PM_TXT_SETTEXTCOLOR = 1339;
constexpr unsigned PM_TXT_GETDISABLEDCOLOR = 1340;
constexpr unsigned PM_TXT_SETDISABLEDCOLOR = 1341;
constexpr unsigned PM_TXT_GETSHADOWOFFSET = 1342;
constexpr unsigned PM_TXT_SETSHADOWOFFSET = 1343;
constexpr unsigned PM_TXT_GETHEIGHT = 1344;
constexpr unsigned PM_TXT_SETHEIGHT = 1345;
constexpr unsigned PM_TXT_GETNORMALWEIGHT = 1346;
constexpr unsigned PM_TXT_SETNORMALWEIGHT = 1347;
constexpr unsigned PM_TXT_GETLITWEIGHT = 1348;
constexpr unsigned PM_TXT_SETLITWEIGHT = 1349;
constexpr unsigned PM_TXT_GETTEXT = 1350;  // wParam: buffer size, lParam: buffer
constexpr unsigned PM_TXT_SETTEXT = 1351;  // lParam: the text; result 0 when refused
constexpr unsigned PM_TXT_SETFACE = 1352;  // lParam: the face name; result 0 when refused
constexpr int32_t kLabelTextLimit = 200;   // texts of this many characters or more are refused
constexpr int32_t kLabelFaceLimit = 100;

// `CQMANIM`. The frame grid goes with PM_GETIMAGE / PM_SETIMAGE; enabling with PM_SETENABLE.
constexpr unsigned PM_ANIM_GETBACKGROUND = 1334;  // lParam: a packed DIB of what lies under the control
constexpr unsigned PM_ANIM_SETBACKGROUND = 1335;
constexpr unsigned PM_ANIM_GETMASKED = 1336;
constexpr unsigned PM_ANIM_SETMASKED = 1337;
constexpr unsigned PM_ANIM_GETFRAME = 1338;
constexpr unsigned PM_ANIM_SETFRAME = 1339;
constexpr unsigned PM_ANIM_GETROWS = 1340;
constexpr unsigned PM_ANIM_SETROWS = 1341;
constexpr unsigned PM_ANIM_GETCOLUMNS = 1342;
constexpr unsigned PM_ANIM_SETCOLUMNS = 1343;
constexpr unsigned PM_ANIM_GETPERIOD = 1344;  // milliseconds
constexpr unsigned PM_ANIM_SETPERIOD = 1345;
constexpr unsigned PM_ANIM_GETRUNNING = 1346;
constexpr unsigned PM_ANIM_SETRUNNING = 1347;
constexpr unsigned PM_ANIM_GETUSERVALUE = 1348;
constexpr unsigned PM_ANIM_SETUSERVALUE = 1349;
constexpr unsigned PM_ANIM_GETLIT = 1350;

// `CQMSROLL`. The strip goes with PM_GETIMAGE / PM_SETIMAGE; enabling with PM_SETENABLE.
constexpr unsigned PM_SCR_GETUPPERHEIGHT = 1334;
constexpr unsigned PM_SCR_SETUPPERHEIGHT = 1335;
constexpr unsigned PM_SCR_GETMIDDLEHEIGHT = 1336;
constexpr unsigned PM_SCR_SETMIDDLEHEIGHT = 1337;
constexpr unsigned PM_SCR_GETLOWERHEIGHT = 1338;
constexpr unsigned PM_SCR_SETLOWERHEIGHT = 1339;
constexpr unsigned PM_SCR_GETMAXIMUM = 1340;
constexpr unsigned PM_SCR_SETMAXIMUM = 1341;
constexpr unsigned PM_SCR_GETMINIMUM = 1342;
constexpr unsigned PM_SCR_SETMINIMUM = 1343;
constexpr unsigned PM_SCR_GETPOSITION = 1344;
constexpr unsigned PM_SCR_SETPOSITION = 1345;
constexpr unsigned PM_SCR_GETSTEP = 1346;
constexpr unsigned PM_SCR_SETSTEP = 1347;
constexpr unsigned PM_SCR_GETEXTRA = 1348;
constexpr unsigned PM_SCR_SETEXTRA = 1349;
constexpr unsigned PM_SCR_GETDISFRAME = 1350;
constexpr unsigned PM_SCR_SETDISFRAME = 1351;
constexpr unsigned PM_SCR_GETREPEATDELAY = 1352;  // milliseconds
constexpr unsigned PM_SCR_SETREPEATDELAY = 1353;
constexpr unsigned PM_SCR_GETREPEATPERIOD = 1354;
constexpr unsigned PM_SCR_SETREPEATPERIOD = 1355;

// `CQMSLIDE`. Its own numbering throughout: the range pairs run the other way round from `CQMSROLL`'s
// (maximum first), and the callers count on it.
constexpr unsigned PM_SLD_GETENABLE = 1324;
constexpr unsigned PM_SLD_SETENABLE = 1325;
constexpr unsigned PM_SLD_GETBACKGROUND = 1326;
constexpr unsigned PM_SLD_SETBACKGROUND = 1327;  // lParam: a packed DIB; result 0 when refused
constexpr unsigned PM_SLD_GETTHUMB = 1334;
constexpr unsigned PM_SLD_SETTHUMB = 1335;       // lParam: a packed DIB, a grid of thumb frames; 0 clears
constexpr unsigned PM_SLD_GETTHUMBFRAME = 1336;  // the frame of the thumb grid drawn, row by row
constexpr unsigned PM_SLD_SETTHUMBFRAME = 1337;
constexpr unsigned PM_SLD_GETTHUMBROWS = 1338;   // rows of the thumb grid
constexpr unsigned PM_SLD_SETTHUMBROWS = 1339;
constexpr unsigned PM_SLD_GETTHUMBCOLUMNS = 1340;  // columns of the thumb grid
constexpr unsigned PM_SLD_SETTHUMBCOLUMNS = 1341;
constexpr unsigned PM_SLD_GETMAXIMUM = 1342;
constexpr unsigned PM_SLD_SETMAXIMUM = 1343;
constexpr unsigned PM_SLD_GETMINIMUM = 1344;
constexpr unsigned PM_SLD_SETMINIMUM = 1345;
constexpr unsigned PM_SLD_GETVALUE = 1346;
constexpr unsigned PM_SLD_SETVALUE = 1347;
constexpr unsigned PM_SLD_GETSTEP = 1348;
constexpr unsigned PM_SLD_SETSTEP = 1349;
constexpr unsigned PM_SLD_GETLINESTART = 1350;  // x in the low, y in the high 16 bits, both signed
constexpr unsigned PM_SLD_SETLINESTART = 1351;  // keeps the line end where it was
constexpr unsigned PM_SLD_GETLINEEND = 1352;
constexpr unsigned PM_SLD_SETLINEEND = 1353;

enum NotifyEvent {
    NOTIFY_PRESSED = 0,
    NOTIFY_RELEASED = 1,
    NOTIFY_ENTERED = 2,
    NOTIFY_LEFT = 3,
    NOTIFY_CLICKED = 4,  // clicked, or value changed
    NOTIFY_SPECIAL = 5,  // control-specific (radio box unchecked by its program, animation tick)
    // `CQMSROLL` adds the zone (1 upper, 2 middle, 3 lower) to these.
    NOTIFY_ZONE_LEFT = 7,       // the pointer left the control while that zone was lit
    NOTIFY_ZONE_PRESSED = 10,   // a press on that zone
    NOTIFY_ZONE_RELEASED = 13,  // a release over that zone (the pressed zone when released outside)
};

// Notices the board sends to a tray with PM_NOTIFY: its view became empty or non-empty.
constexpr unsigned NOTIFY_VIEW_EMPTY = 1;
constexpr unsigned NOTIFY_VIEW_FILLED = 2;
