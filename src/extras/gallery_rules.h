// The rules of the information screens: the gallery's pages of fifteen pictures and where its
// pictures and buttons stand on the 800 x 600 panel, and the information text's two pages, where its
// lines go and where its buttons stand.
#pragma once

#include <cstdint>

constexpr int32_t kGalleryPageSize = 15;
constexpr int32_t kGalleryColumns = 5;
constexpr int32_t kPanelWidth = 800;  // the gallery's and the information text's panels
constexpr int32_t kPanelHeight = 600;

// A place on a panel, from its top-left corner.
struct PanelPlace {
    int32_t x, y;
};

// The fifteen picture buttons sit on the panel's wells, three rows of five.
constexpr int32_t kGalleryWellSide = 116;
constexpr int32_t kGalleryWellStep = 136;
constexpr int32_t kGalleryWellLeft = 70;
constexpr int32_t kGalleryWellTop = 70;
// Thumbnails are fitted into this square, leaving room in the well for the hover frame around them.
constexpr int32_t kGalleryThumbnailSide = 104;
PanelPlace GalleryWellPlace(int32_t button);

// The gallery's four animated buttons (50 x 50) on the line below the wells; the page arrows stand
// under the middle well.
constexpr int32_t kPanelButtonSide = 50;
constexpr PanelPlace kGalleryPreviousPlace = {345, 496};
constexpr PanelPlace kGalleryNextPlace = {405, 496};
constexpr PanelPlace kGalleryInfoPlace = {590, 496};
constexpr PanelPlace kGalleryClosePlace = {669, 496};

// The index of the first picture after "next": first + 15 while that is below count, else first.
int32_t GalleryNextFirst(int32_t first, int32_t count);
// After "previous": first - 15, not below 0; first itself when already 0.
int32_t GalleryPreviousFirst(int32_t first);
// The picture shown on button 0..14: first + button, or -1 when that is past the end of the list.
int32_t GalleryPictureOnButton(int32_t first, int32_t button, int32_t count);
// More pictures than one page holds: the page arrows are worth showing.
bool GalleryHasPages(int32_t count);

// The information text: its first line's place on the screen; each next line moves down by
// InfoScreenStep.
int32_t InfoTextLeft(int32_t screenWidth);
int32_t InfoTextTop(int32_t screenHeight);
// The top of a line of a page, from the first line's top.
int32_t InfoLineTop(int32_t firstTop, int32_t page, int32_t line);
// Page turns: the next page only from page 0, the previous only from page 1.
int32_t InfoNextPage(int32_t page);
int32_t InfoPreviousPage(int32_t page);

// The panels carry no sockets for their buttons: the screens sink one into the backdrop behind each
// button, as the picture frame has them, this many pixels wider than the button on every side.
constexpr int32_t kButtonSocketMargin = 4;
// Darkens a rounded rectangle (radius 8, soft edge) filling a width x height area towards dark walnut,
// by 30 %. Pixels are 32-bit (blue, green, red, unused), rows top-down and stride bytes apart.
void ShadeButtonSocket(uint8_t* pixels, int32_t width, int32_t height, int32_t stride);

// The information text's buttons on its panel: the close and print buttons (50 x 50, animated) on the
// same line as the gallery's, the two page buttons (60 x 36) centred on that line.
constexpr PanelPlace kInfoClosePlace = {669, 496};
constexpr PanelPlace kInfoPrintPlace = {590, 496};
constexpr PanelPlace kInfoNextPlace = {430, 503};
constexpr PanelPlace kInfoPreviousPlace = {350, 503};
