// Line breaking and full justification of message texts: where each line of a wrapped text starts and
// ends, how far down it stands and what justification it is drawn with, for any measured font.
#pragma once

#include <cstddef>
#include <cstdint>

struct TextExtent {
    int32_t width, height;  // pixels
};

// The extent of length bytes at text in the font the text is drawn in.
typedef TextExtent (*TextMeasure)(void* context, const char* text, size_t length);

struct TextLine {
    size_t begin, length;   // the bytes drawn on this line (length 0: nothing is drawn)
    int32_t y;              // offset below the text's top
    int32_t extent;         // width of the drawn bytes
    bool justified;         // drawn with the justification below (every line but the text's last)
    int32_t justifyExtra;   // width - extent, spread over the line's breaks
    int32_t justifyBreaks;  // words scanned for the line, the one that did not fit included
    bool onlyMovesDown;     // an empty line from a newline: nothing is drawn or justified
};

// Walks a text line by line. The line height is the height of one space in the measured font.
struct TextLayout {
    const char* text;
    size_t length;
    int32_t width;
    TextMeasure measure;
    void* context;
    size_t position;  // start of the text not yet laid out
    int32_t y;        // top of the next line
    int32_t lineHeight;
};

void BeginTextLayout(TextLayout* layout, const char* text, size_t length, int32_t width, TextMeasure measure,
                     void* context);
// The next line, or false when the whole text has been laid out. Every line consumes at least one byte,
// so a text of n bytes gives at most n lines.
bool NextTextLine(TextLayout* layout, TextLine* line);
