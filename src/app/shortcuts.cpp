// The key table and the situations in which it holds.
#include "app/shortcuts.h"

namespace {

GameCommand WithCtrl(const KeyPress& k) {
    switch (k.key) {
    case 'N': return k.shift ? CMD_NONE : CMD_NEW_PUZZLE;
    case 'O': return k.shift ? CMD_NONE : CMD_OPEN;
    case 'S': return k.shift ? CMD_NONE : CMD_SAVE;
    case 'Z': return k.shift ? CMD_REDO : CMD_UNDO;
    case 'Y': return k.shift ? CMD_NONE : CMD_REDO;
    }
    return CMD_NONE;
}

GameCommand Plain(const KeyPress& k) {
    if (k.key >= '1' && k.key <= '6') return GameCommand(CMD_BOX_1 + (k.key - '1'));
    if (k.key >= kKeyNumpad0 + 1 && k.key <= kKeyNumpad0 + 6) return GameCommand(CMD_BOX_1 + (k.key - kKeyNumpad0 - 1));
    switch (k.key) {
    case 'H': return CMD_HINT;
    case 'A': return CMD_ASSEMBLE;
    case 'P': return CMD_PREVIEW;
    case 'E': return CMD_GATHER_EDGES;
    case 'R': return CMD_HONOUR_ROLL;
    case 'M': return CMD_MUSIC;
    case 'C': return CMD_CLOTH;
    case 'L': return CMD_LANGUAGE;
    case kKeyF1: return CMD_HELP;
    }
    return CMD_NONE;
}

}  // namespace

GameCommand ShortcutFor(const KeyPress& press, const ShortcutSituation& situation) {
    if (situation.typing || situation.asking || press.alt) return CMD_NONE;
    if (situation.dragging)
        return press.key == kKeyEscape && !press.ctrl && !press.shift && !press.repeat ? CMD_CANCEL_DRAG : CMD_NONE;
    if (press.key == kKeyEscape) return CMD_NONE;
    GameCommand command = press.ctrl ? WithCtrl(press) : press.shift ? CMD_NONE : Plain(press);
    if (command == CMD_NONE) return CMD_NONE;
    if (press.repeat && command != CMD_UNDO && command != CMD_REDO) return CMD_NONE;
    if (!situation.playing && command != CMD_HELP) return CMD_NONE;
    return command;
}
