// The game's keys and the situations in which they hold.
#include <gtest/gtest.h>

#include "app/shortcuts.h"

namespace {

constexpr ShortcutSituation kPlaying = {false, false, false, true};

KeyPress Key(uint32_t key, bool ctrl = false, bool shift = false) { return KeyPress{key, ctrl, shift, false, false}; }

}  // namespace

TEST(Shortcuts, EveryCommandHasTheKeyPlayersExpect) {
    struct Row {
        KeyPress press;
        GameCommand command;
    } rows[] = {
        {Key('N', true), CMD_NEW_PUZZLE}, {Key('O', true), CMD_OPEN},     {Key('S', true), CMD_SAVE},
        {Key('Z', true), CMD_UNDO},       {Key('Y', true), CMD_REDO},     {Key('Z', true, true), CMD_REDO},
        {Key('H'), CMD_HINT},             {Key('A'), CMD_ASSEMBLE},       {Key('P'), CMD_PREVIEW},
        {Key('1'), CMD_BOX_1},            {Key('6'), CMD_BOX_6},          {Key(kKeyNumpad0 + 3), GameCommand(CMD_BOX_1 + 2)},
        {Key('E'), CMD_GATHER_EDGES},     {Key(kKeyF1), CMD_HELP},        {Key('R'), CMD_HONOUR_ROLL},
        {Key('M'), CMD_MUSIC},            {Key('C'), CMD_CLOTH},          {Key('L'), CMD_LANGUAGE},
    };
    for (const Row& row : rows) EXPECT_EQ(ShortcutFor(row.press, kPlaying), row.command) << row.press.key;
    // Keys that are not the game's.
    for (uint32_t key : {uint32_t('7'), uint32_t('0'), uint32_t('X'), uint32_t('Q'), kKeyEscape, uint32_t(' ')})
        EXPECT_EQ(ShortcutFor(Key(key), kPlaying), CMD_NONE) << key;
    EXPECT_EQ(ShortcutFor(Key('H', true), kPlaying), CMD_NONE);   // Ctrl+H is nothing
    EXPECT_EQ(ShortcutFor(Key('N'), kPlaying), CMD_NONE);         // N alone is nothing
    EXPECT_EQ(ShortcutFor(Key('S', true, true), kPlaying), CMD_NONE);
}

TEST(Shortcuts, NothingFiresWhileANameIsTypedOrAQuestionWaits) {
    ShortcutSituation typing = kPlaying, asking = kPlaying;
    typing.typing = true;
    asking.asking = true;
    for (KeyPress press : {Key('H'), Key('E'), Key('1'), Key('Z', true), Key('S', true), Key(kKeyF1), Key(kKeyEscape)}) {
        EXPECT_EQ(ShortcutFor(press, typing), CMD_NONE) << press.key;
        EXPECT_EQ(ShortcutFor(press, asking), CMD_NONE) << press.key;
    }
}

TEST(Shortcuts, DuringADragOnlyEscapeCountsAndItCancelsTheDrag) {
    ShortcutSituation dragging = kPlaying;
    dragging.dragging = true;
    EXPECT_EQ(ShortcutFor(Key(kKeyEscape), dragging), CMD_CANCEL_DRAG);
    EXPECT_EQ(ShortcutFor(Key('Z', true), dragging), CMD_NONE);
    EXPECT_EQ(ShortcutFor(Key('E'), dragging), CMD_NONE);
    EXPECT_EQ(ShortcutFor(Key(kKeyEscape), kPlaying), CMD_NONE);  // Esc is other windows' when no drag runs
}

TEST(Shortcuts, AHeldKeyRepeatsOnlyUndoAndRedo) {
    KeyPress undo = Key('Z', true), redo = Key('Y', true), box = Key('3'), preview = Key('P');
    undo.repeat = redo.repeat = box.repeat = preview.repeat = true;
    EXPECT_EQ(ShortcutFor(undo, kPlaying), CMD_UNDO);
    EXPECT_EQ(ShortcutFor(redo, kPlaying), CMD_REDO);
    EXPECT_EQ(ShortcutFor(box, kPlaying), CMD_NONE);  // a held 3 would flicker the box
    EXPECT_EQ(ShortcutFor(preview, kPlaying), CMD_NONE);
}

TEST(Shortcuts, AwayFromThePlayingScreenOnlyHelpAnswers) {
    ShortcutSituation elsewhere = kPlaying;
    elsewhere.playing = false;
    EXPECT_EQ(ShortcutFor(Key(kKeyF1), elsewhere), CMD_HELP);
    for (KeyPress press : {Key('H'), Key('N', true), Key('Z', true), Key('1'), Key('E')})
        EXPECT_EQ(ShortcutFor(press, elsewhere), CMD_NONE) << press.key;
}

TEST(Shortcuts, AltCombinationsAreLeftToWindows) {
    KeyPress altF1 = Key(kKeyF1), altH = Key('H');
    altF1.alt = altH.alt = true;
    EXPECT_EQ(ShortcutFor(altF1, kPlaying), CMD_NONE);
    EXPECT_EQ(ShortcutFor(altH, kPlaying), CMD_NONE);
}
