// The game's keys: which command a key press means in the situation the game is in.
#pragma once

#include <cstdint>

enum GameCommand {
    CMD_NONE,
    CMD_NEW_PUZZLE,   // Ctrl+N
    CMD_OPEN,         // Ctrl+O
    CMD_SAVE,         // Ctrl+S
    CMD_UNDO,         // Ctrl+Z
    CMD_REDO,         // Ctrl+Y, Ctrl+Shift+Z
    CMD_HINT,         // H
    CMD_ASSEMBLE,     // A, asked first
    CMD_PREVIEW,      // P: the magnifier on or off
    CMD_BOX_1,        // 1 .. 6: box shown or hidden (CMD_BOX_1 + k)
    CMD_BOX_6 = CMD_BOX_1 + 5,
    CMD_GATHER_EDGES, // E
    CMD_HELP,         // F1
    CMD_HONOUR_ROLL,  // R
    CMD_MUSIC,        // M
    CMD_CLOTH,        // C
    CMD_LANGUAGE,     // L
    CMD_CANCEL_DRAG,  // Esc while a drag runs
};

// Key codes as Windows numbers them: letters and digits are their upper-case characters.
constexpr uint32_t kKeyEscape = 0x1B;
constexpr uint32_t kKeyF1 = 0x70;
constexpr uint32_t kKeyNumpad0 = 0x60;

struct KeyPress {
    uint32_t key;
    bool ctrl, shift, alt;
    bool repeat;  // held down: the key was already down before this press
};

// What the game is doing when the key comes.
struct ShortcutSituation {
    bool typing;       // a text field has the keyboard (a name being typed)
    bool asking;       // the message window is open: its Enter and Escape are its own
    bool dragging;     // a piece or the selection rectangle is being dragged
    bool playing;      // the playing screen is in front: no other screen (new puzzle, browser, clip) over it
};

// The command, or CMD_NONE when the key is not the game's here. Nothing is the game's while a name is
// typed or a question waits; during a drag only Esc is (it puts the piece back); a held key repeats only
// undo and redo; everything but help needs the playing screen.
GameCommand ShortcutFor(const KeyPress& press, const ShortcutSituation& situation);
