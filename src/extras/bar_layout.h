// Where the tool bar, the options bar, their slide-out panels and the panel buttons stand, computed from
// the screen size, and the auto-hide test of a panel.
#pragma once

#include <cstdint>

struct BarRect {
    int32_t x, y, width, height;  // in the main window's client coordinates
};

// The tools bar and panel start just below the title bar.
constexpr int32_t kBarsTop = 78;
constexpr int32_t kToolsPanelWidth = 98;
constexpr int32_t kOptionsPanelHeight = 103;
constexpr int32_t kBarThickness = 25;

// Tile sizes of the four backdrops, as drawn; the artwork is made to these sizes.
constexpr int32_t kToolsBarTileWidth = 25, kToolsBarTileHeight = 139;          // stepping down
constexpr int32_t kOptionsBarTileWidth = 103, kOptionsBarTileHeight = 25;      // stepping right
constexpr int32_t kToolsPanelTileWidth = 98, kToolsPanelTileHeight = 95;       // stepping down
constexpr int32_t kOptionsPanelTileWidth = 103, kOptionsPanelTileHeight = 103; // stepping right

constexpr int kToolsButtonCount = 4;    // assemble, hint, music, honour roll (top to bottom)
constexpr int kOptionsButtonCount = 3;  // help, magnifier, quit (left to right)
constexpr int32_t kPanelButtonSize = 50;
constexpr int32_t kOptionsButtonY = 27;
constexpr int32_t kBarLabelSize = 50;  // provisional: a label takes its strip's frame size

BarRect OptionsPanelRect(int32_t screenWidth, int32_t screenHeight);
BarRect ToolsPanelRect(int32_t screenWidth, int32_t screenHeight);
BarRect OptionsBarRect(int32_t screenWidth, int32_t screenHeight);
BarRect ToolsBarRect(int32_t screenWidth, int32_t screenHeight);

// Spacing of the tools buttons: a fifth of the panel's height, truncated.
int32_t ToolsButtonStep(int32_t screenHeight);
// Top of tools button k = 1..4 in the panel: k * step - 35 (x is 0).
int32_t ToolsButtonY(int32_t screenHeight, int k);
// The gather-edges button, our own below the four: centred in the space between the fourth button and
// the panel's bottom, which every screen of 600 lines or more leaves for it (x is 0).
int32_t GatherButtonY(int32_t screenHeight);
// Left of options button k = 1..3 in the panel: k * width / 4 - 35, the product divided (y is 27).
int32_t OptionsButtonX(int32_t screenWidth, int k);
// Our two buttons beyond the three: k = 4 (the cloth) centred in the free space left of the first,
// k = 5 (the language) centred in the free space right of the third.
int32_t OptionsExtraButtonX(int32_t screenWidth, int k);

// The tools label is centred on the screen's height, (height - 140) / 2, given in the bar's own
// coordinates; the options label is centred on the width, (width - 104) / 2, at the bar's top.
int32_t ToolsLabelY(int32_t screenHeight);
int32_t OptionsLabelX(int32_t screenWidth);

// A panel stays out while the pointer, in its client coordinates, lies within 0..width and 0..height,
// both far edges included: the pixel just past the right or bottom edge still counts as inside.
bool PanelKeepsPointer(int32_t x, int32_t y, int32_t width, int32_t height);
