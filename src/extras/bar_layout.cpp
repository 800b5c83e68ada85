// Layout of the tool and options bars and their panels.
#include "extras/bar_layout.h"

BarRect OptionsPanelRect(int32_t screenWidth, int32_t screenHeight) {
    return BarRect{0, screenHeight - kOptionsPanelHeight, screenWidth, kOptionsPanelHeight};
}

BarRect ToolsPanelRect(int32_t, int32_t screenHeight) {
    return BarRect{0, kBarsTop, kToolsPanelWidth, screenHeight - kBarsTop};
}

BarRect OptionsBarRect(int32_t screenWidth, int32_t screenHeight) {
    return BarRect{0, screenHeight - kBarThickness, screenWidth, kBarThickness};
}

// Stops short of the options bar: the two bars never overlap.
BarRect ToolsBarRect(int32_t, int32_t screenHeight) {
    return BarRect{0, kBarsTop, kBarThickness, screenHeight - kBarsTop - kBarThickness};
}

int32_t ToolsButtonStep(int32_t screenHeight) { return int32_t((screenHeight - kBarsTop) * 0.2); }

int32_t ToolsButtonY(int32_t screenHeight, int k) { return k * ToolsButtonStep(screenHeight) - 35; }

int32_t GatherButtonY(int32_t screenHeight) {
    const int32_t above = ToolsButtonY(screenHeight, kToolsButtonCount) + kPanelButtonSize;
    return (above + screenHeight - kBarsTop) / 2 - kPanelButtonSize / 2;
}

int32_t OptionsButtonX(int32_t screenWidth, int k) { return k * screenWidth / 4 - 35; }

int32_t OptionsExtraButtonX(int32_t screenWidth, int k) {
    if (k == kOptionsButtonCount + 1) return OptionsButtonX(screenWidth, 1) / 2 - kPanelButtonSize / 2;
    const int32_t gapStart = OptionsButtonX(screenWidth, kOptionsButtonCount) + kPanelButtonSize;
    return (gapStart + screenWidth) / 2 - kPanelButtonSize / 2;
}

int32_t ToolsLabelY(int32_t screenHeight) { return (screenHeight - 140) / 2 - kBarsTop; }

int32_t OptionsLabelX(int32_t screenWidth) { return (screenWidth - 104) / 2; }

bool PanelKeepsPointer(int32_t x, int32_t y, int32_t width, int32_t height) {
    return x >= 0 && x <= width && y >= 0 && y <= height;
}
