// A piece box's geometry: what a press on its frame takes hold of, how a drag moves or resizes it (never
// below 201 pixels either way), where its tray view and buttons stand at a size, and its 40-character title.
#pragma once

#include <cstddef>
#include <cstdint>

#include "gfx/geometry.h"

constexpr int32_t kBoxCreatedSize = 300;
constexpr int32_t kBoxMinimumSize = 201;     // neither width nor height goes below this
constexpr int32_t kBoxFrameWidth = 6;        // the bevel: six one-pixel lines per edge
constexpr int32_t kBoxTitleStrip = 30;       // the tray view starts this far below the frame's top
constexpr int32_t kBoxCornerGrip = 16;       // the bottom-right square that resizes both ways
constexpr int32_t kBoxButtonSize = 22;       // close and rename, as their strips draw them
constexpr int32_t kBoxButtonTop = 7;
constexpr int32_t kBoxCloseFromRight = 30;   // close button's left edge = box width - this
constexpr int32_t kBoxRenameFromRight = 54;  // rename button's left edge = box width - this
constexpr int32_t kBoxTitleX = 10, kBoxTitleY = 5;
constexpr size_t kBoxTitleLimit = 40;        // characters a box keeps of a title
constexpr size_t kBoxNameLimit = 23;         // characters the rename question takes

// What a press takes hold of: a set of edges to resize, or the whole box to move.
enum BoxGrip : uint32_t {
    GRIP_NONE = 0,
    GRIP_LEFT = 1,
    GRIP_TOP = 2,
    GRIP_RIGHT = 4,
    GRIP_BOTTOM = 8,
    GRIP_MOVE = 16,
};

// Which pointer shape tells the player what a grip does.
enum BoxCursor {
    BOX_CURSOR_ARROW,
    BOX_CURSOR_MOVE,
    BOX_CURSOR_WE,    // left or right edge
    BOX_CURSOR_NS,    // top or bottom edge
    BOX_CURSOR_NWSE,  // top-left or bottom-right corner
    BOX_CURSOR_NESW,  // top-right or bottom-left corner
};

// Where the children stand in a box of a given size (box client coordinates).
struct BoxLayout {
    Rect view;    // the tray view: below the title strip, inside the frame
    Point close;  // top-left corners of the close and rename buttons
    Point rename;
};

// The grip under box point (x, y) in a box width x height: the six-pixel frame resizes by its edges (two
// at once near a corner, and anywhere in the bottom-right 16 x 16 square), the title strip above the view
// moves the box; the view's own area grips nothing (the view takes those presses itself).
uint32_t BoxGripAt(int32_t width, int32_t height, int32_t x, int32_t y);
BoxCursor BoxCursorFor(uint32_t grip);

// The box's screen rectangle after the pointer has moved (dx, dy) since the press that took `grip` with
// the box at `start`. Edges not gripped stay where they were; a gripped left or top edge stops where the
// box would get narrower or shorter than 201 pixels, so the opposite edge never moves.
Rect DraggedBoxRect(const Rect& start, uint32_t grip, int32_t dx, int32_t dy);

BoxLayout LayOutBox(int32_t width, int32_t height);

// The number of characters of `text` a box keeps as its title: up to its end or 40. Null counts as empty.
size_t BoxTitleLength(const char* text);
// Copies a title of `length` characters for a caller's buffer of `size` bytes: at most 40 characters and
// always one byte short of the buffer, ended with a zero. Returns the characters copied (0 when size is 0).
size_t CopyBoxTitle(const char* title, size_t length, char* buffer, size_t size);
// A typed name as the rename question gives it: at most 23 characters, written with its zero into `name`
// (kBoxNameLimit + 1 bytes). Returns the characters kept.
size_t CutBoxName(const char* typed, char* name);
