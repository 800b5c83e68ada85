// The walnut frame of the playing screen: the parts of the main window that no child covers, computed
// from the screen size and the children's places, and the brass rail drawn round the table.
#pragma once

#include <cstdint>
#include <vector>

struct FrameBox {
    int32_t left, top, right, bottom;  // client coordinates, right and bottom excluded
};

enum FrameGrain : uint8_t {
    kGrainAcross,   // wider than tall: the wood runs left to right
    kGrainUpright,  // taller than wide: the wood runs top to bottom
};

struct FrameArea {
    FrameBox rect;
    FrameGrain grain;
};

// What stands on the main window besides the fixed bars and table: the side buttons take their size
// from their strips, the info button from its own.
struct FrameChildren {
    int32_t sideButtonWidth, sideButtonHeight;
    int32_t infoWidth, infoHeight;
};

// The table is the screen less these, from (49, 78); the title bar is 78 tall across the whole top.
constexpr int32_t kFrameTableLeft = 49;
constexpr int32_t kFrameTableTop = 78;
constexpr int32_t kFrameTableSpareWidth = 77;
constexpr int32_t kFrameTableSpareHeight = 128;
constexpr int32_t kFrameTitleHeight = 78;
constexpr int32_t kFrameInfoTop = 80;
constexpr int kFrameSideButtons = 6;

// The rail round the table, ring by ring from the table's edge outwards (0x00BBGGRR): a dark shadow
// line, then a brass moulding lit from outside in.
constexpr int kRailRings = 5;
constexpr uint32_t kRailColors[kRailRings] = {0x000C172A, 0x00164F6E, 0x00459AC2, 0x0086CFE9, 0x00164F6E};
// The wood where no tile is at hand: walnut, never the black of an unpainted screen.
constexpr uint32_t kFrameFallbackColor = 0x0018345A;

FrameBox TableRect(int32_t screenWidth, int32_t screenHeight);
// Ring d (1 = touching the table) of the rail: the table rectangle grown by d on every side.
FrameBox RailRing(int32_t screenWidth, int32_t screenHeight, int d);

// Every child that stays on the main window while a game is played, in client coordinates: title bar,
// tools bar, options bar, table, the six side buttons (half off the right edge) and the info button.
std::vector<FrameBox> MainWindowChildren(int32_t screenWidth, int32_t screenHeight, const FrameChildren& children);

// The part of `area` outside every rectangle of `covered`, as disjoint rectangles: cut into horizontal
// bands at every top and bottom edge, then bands of the same span stacked into one. Empty or inverted
// rectangles cover nothing.
std::vector<FrameBox> UncoveredRects(const FrameBox& area, const std::vector<FrameBox>& covered);

// The frame: what the children leave of the screen, each piece with the grain that suits its shape.
std::vector<FrameArea> MainFrameAreas(int32_t screenWidth, int32_t screenHeight, const FrameChildren& children);

bool RectsOverlap(const FrameBox& a, const FrameBox& b);
FrameBox IntersectRects(const FrameBox& a, const FrameBox& b);  // empty (right <= left) when apart
