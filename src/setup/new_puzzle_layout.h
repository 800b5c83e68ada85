// The new-puzzle screen's geometry and small rules: where every child stands on the 640 x 300 panel,
// how a thumbnail fits its slot, which list entry each slot shows, the page wipe's strips and the
// cycling of the three piece shapes.
#pragma once

#include <cstdint>

#include "gfx/geometry.h"

constexpr int32_t kNewPuzzlePanelWidth = 640;
constexpr int32_t kNewPuzzlePanelHeight = 300;

constexpr int32_t kNewPuzzlePageCount = 4;  // 0 pictures, 1 size, 2 piece count, 3 shape
constexpr int32_t kShapeCount = 3;          // piece shape styles, cut with pattern 5000 + shape
constexpr int32_t kThumbnailSlotCount = 4;
constexpr int32_t kCaptionCount = 3;        // rows, columns, number of pieces

// Places in panel client coordinates.
constexpr Point kCloseButtonAt = {119, 255};
constexpr Point kHelpButtonAt = {514, 257};
constexpr Point kFitSizeButtonAt = {452, 44};
constexpr Point kActualSizeButtonAt = {452, 134};
constexpr Point kStartButtonAt = {246, 235};
constexpr Point kShapePictureAt = {147, 65};
constexpr Point kDecorationAt = {395, 235};
constexpr Point kSliderAt = {365, 61};       // the zoom slider (page 1) and the count slider (page 2)
constexpr Point kImageScrollAt = {555, 75};
constexpr int32_t kCaptionLeft = 410;
constexpr int32_t kCaptionTops[kCaptionCount] = {80, 120, 160};
constexpr int32_t kNumberGap = 6;            // between the widest caption and the column of numbers

// The page tabs stand side by side along the top of the page, each 120 x 36, their feet on the page.
constexpr int32_t kTabTop = 8;
int32_t TabLeft(int32_t page);
// The shape checks stand in a column right of the shape picture.
Point ShapeCheckPlace(int32_t shape);

// Thumbnail slots: 108 x 127 each; a thumbnail is fitted into 104 x 123 and centred, so a 2-pixel band
// is left all round for the selection frame.
constexpr int32_t kSlotTop = 88;
constexpr int32_t kSlotWidth = 108;
constexpr int32_t kSlotHeight = 127;
constexpr int32_t kThumbnailBoxWidth = 104;
constexpr int32_t kThumbnailBoxHeight = 123;
constexpr int32_t kSelectionFrameWidth = 2;
int32_t SlotLeft(int32_t slot);

// The thumbnail of an image of that size, in slot coordinates: fitted into 104 x 123 (width-bound when
// height * 104 / width is at most 123, else height-bound; sides truncated) and centred in the slot.
// 0 x 0 for an image without area.
Rect PlaceThumbnail(int32_t imageWidth, int32_t imageHeight);

// The image scroll bar runs from 4 - count to 0; a list of four or fewer cannot scroll (0 to 0).
int32_t ImageScrollMinimum(int32_t imageCount);
// The list entry slot shows at a scroll position: slot - position, or -1 when that is outside the list.
int32_t SlotEntry(int32_t slot, int32_t scrollPosition, int32_t imageCount);

// The shape picture steps through the shapes and comes back to the first.
int32_t NextShape(int32_t shape);

// The page area that a page switch wipes: 500 x 230 at (105, 45), inside the page's frame.
constexpr Rect kPageArea = {105, 45, 500, 230};
// The wipe repaints the area in 4-pixel strips from the top, one strip for each v = 2, 6, .., 230,
// covering rows v - 2 .. v + 1 (the last strip is cut at the area's foot).
constexpr int32_t kWipeStep = 4;
int32_t WipeStripCount();
// Strip k in page-area coordinates (x 0, full width).
Rect WipeStrip(int32_t k);
