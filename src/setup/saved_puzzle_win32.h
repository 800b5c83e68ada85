// The game's side of saved puzzles: saving the puzzle in play with the six box names, and loading a saved
// one into the board, its boxes and the clock. The file itself is read and written by saved_puzzle.h.
#pragma once

#include <cstdint>

// Saves the puzzle in play to path (".epf"), with its thumbnail when asked. The file is written beside the
// target and put in its place only when every write succeeded. Clears puzzle_dirty on success.
bool SavePuzzleFile(const char* path, bool withThumbnail);
// Reads and checks the whole file, its photograph and the cut first; only then does the loaded puzzle
// replace the one in play (boxes hidden and renamed, their side buttons, the table redrawn, the clock
// shown). A failed load leaves the game in play untouched. *hintsLeft: hints remain for this puzzle.
bool LoadPuzzleFile(const char* path, bool* hintsLeft);
// Told after every successful load, as the resume file wants to know (null: nobody listens).
extern void (*g_puzzleLoaded)();
