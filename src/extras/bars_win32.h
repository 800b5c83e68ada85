// The tool bar `CWNDBARRAHER` (left edge) and the options bar `CWNDBARRAOPC` (bottom edge) with their
// slide-out panels `CWNDHerramientas` and `CWNDOPCIONES` and the animated buttons on them.
#pragma once

#include <windows.h>

#include <cstdint>

#include "gfx/image_object_win32.h"

constexpr const char kOptionsPanelClass[] = "CWNDOPCIONES";
constexpr const char kOptionsBarClass[] = "CWNDBARRAOPC";
constexpr const char kToolsPanelClass[] = "CWNDHerramientas";
constexpr const char kToolsBarClass[] = "CWNDBARRAHER";

// A shown panel checks the pointer with this timer and hides once it has left.
constexpr UINT_PTR kAutoHideTimer = 1;
constexpr UINT kAutoHidePeriodMs = 100;

// What the panel buttons do. The screens that own an operation fill its slot in; an empty slot makes the
// button do nothing. Help, the magnifier and quitting start filled with the game's own operations.
struct BarActions {
    void (*assemble)();        // tools 1: every piece to its home position
    uint8_t (*hint)();         // tools 2: the byte returned becomes the hint button's enabled state
    void (*openMusic)();       // tools 3
    void (*openHonourRoll)();  // tools 4
    void (*openHelp)();        // options 1: LaunchHelp
    void (*toggleMagnifier)(); // options 2: ToggleMagnifier
    void (*quit)();            // options 3: CloseMainWindow
    void (*gatherEdges)();     // tools 5, ours: the loose edge pieces into the first empty box
};
extern BarActions g_barActions;

constexpr int kMaxPanelButtons = 5;
// Indices among the tools buttons.
constexpr int kAssembleButton = 0;
constexpr int kHintButton = 1;
constexpr int kMusicButton = 2;
constexpr int kHonourButton = 3;
constexpr int kGatherEdgesButton = 4;
// Indices among the options buttons.
constexpr int kHelpButton = 0;
constexpr int kMagnifierButton = 1;
constexpr int kClothButton = 3;     // ours: opens the cloth chooser
constexpr int kLanguageButton = 4;  // ours: opens the language chooser
constexpr int kGatherDisabledFrame = 10;  // the gather button's strip ends with its dimmed frame

// One bar with its panel. Both pairs live for the whole run, so their state is plain globals.
struct BarPair {
    HWND bar;
    HWND label;                               // `CQMCOMMAND` on the bar; its pointer-entered notice shows the panel
    ImageObject barTile;
    ImageObject labelStrip;                   // base + language
    HWND panel;
    ImageObject panelTile;
    ImageObject buttonStrips[kMaxPanelButtons];
    HWND buttons[kMaxPanelButtons];           // in creation order
    HWND hideList[kMaxPanelButtons + 1];      // hidden after the panel; the options list has an unused first slot
    uint8_t shown;                            // the panel is out and its auto-hide timer runs
};
extern BarPair g_toolsPair;
extern BarPair g_optionsPair;

// Registers `CWNDOPCIONES`, `CWNDBARRAOPC`, `CWNDHerramientas` and `CWNDBARRAHER`, in that order.
void RegisterBarClasses(HINSTANCE instance);
// Creates the options panel, the tools panel, the options bar and the tools bar as children of the main
// window, in that order, laid out for the screen size, and lets the language chooser reload the labels.
// False when any of the four could not be made.
bool CreateBars(HWND parent);

// What a click on a panel button does, whether the panel is out or not; nothing when the button is
// disabled. The keys use these.
void PressToolsButton(int index);
void PressOptionsButton(int index);
// The gather button is enabled, at rest, while there is something to gather and an empty box to take it,
// and dimmed otherwise.
void RefreshGatherButton();
HWND GatherEdgesButton();

// Puts the hint button back as a new game finds it: enabled, at rest, frame 0.
void ResetHintButton();
HWND HintButton();
// Reloads both bar labels in the current language.
void ReloadBarLabels();
// Shows the magnifier (g_magnifierWindow) where it was left when hidden, hides it when visible; no move,
// resize, reordering or activation.
void ToggleMagnifier();
// Ends the program the way the title bar's exit button does: WM_CLOSE to the main window.
void CloseMainWindow();
