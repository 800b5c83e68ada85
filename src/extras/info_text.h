// The information text about orchids: two pages of 26 fixed English lines, grouped into paragraphs.
// The information screen shows it and the information print puts it on paper, in the same paragraphs.
#pragma once

#include <cstdint>

constexpr int kInfoPageCount = 2;
constexpr int kInfoLinesPerPage = 26;
constexpr int kInfoLineCapacity = 100;  // bytes of one line's buffer, terminator included

struct InfoLine {
    const char* text;
    uint8_t endsParagraph;  // the last line of its paragraph
    uint8_t endsSection;    // the last line of a group of paragraphs on one subject
};

// Null outside page 0..1, line 0..25.
const InfoLine* InfoTextLine(int page, int line);
// Pixels the screen moves down after a line: 13 within a paragraph, 20 after its last line.
int32_t InfoScreenStep(int page, int line);
