// The game's keys on Windows: the message loop offers every key press here first.
#pragma once

#include <windows.h>

#include "app/shortcuts.h"

// The cloth chooser's opener, once the game has one; the C key does nothing without it.
extern void (*g_openClothChooser)();

// A key press that is one of the game's commands in the present situation runs that command and is
// swallowed (true); anything else goes on to the window it was meant for.
bool OfferShortcut(const MSG* msg);
// The situation a key press meets now: a text field or the message window, a drag, the playing screen.
ShortcutSituation CurrentShortcutSituation();
// Runs one command as its button or its screen would.
void RunGameCommand(GameCommand command);
