// Localised texts from the string table: id = base + language.
#pragma once

#include <windows.h>

#include <cstdint>

// String bases of the table.
enum StringBase {
    STR_BOX_NAME = 20,
    STR_ERASE_FILE = 40,
    STR_ROWS = 50,
    STR_COLUMNS = 60,
    STR_PIECE_COUNT = 70,
    STR_LEAVE_CHANGED = 80,
    STR_PERCENTAGE = 100,
    STR_SCORE = 110,
    STR_PREVIEW = 120,
    STR_HONOUR_NAME = 130,
    STR_WALLPAPER = 140,
    STR_PRINT = 150,
    STR_COLOUR_DEPTH = 160,
    STR_SUGGESTED_FOLDER = 170,
    STR_DESKTOP = 180,
    STR_MY_PC = 190,
    STR_RESOLUTION = 200,
    STR_PRINTING = 210,
};
// The bases we add ourselves (web question, missing pack) and the picture titles are in art_ids.h.

// Loads base + current language; a missing id gives an empty text (no other language stands in).
int LoadLocalString(int base, char* buffer, int size);
