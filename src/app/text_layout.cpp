// Line breaking and full justification of message texts.
#include "app/text_layout.h"

#include <cstring>

void BeginTextLayout(TextLayout* layout, const char* text, size_t length, int32_t width, TextMeasure measure,
                     void* context) {
    std::memset(layout, 0, sizeof *layout);
    layout->text = text;
    layout->length = text ? length : 0;
    layout->width = width;
    layout->measure = measure;
    layout->context = context;
    layout->lineHeight = measure ? measure(context, " ", 1).height : 0;
}

// A line grows word by word from its start. A word is taken with the spaces after it except the last
// one, which is the break the line may be cut at; spaces before a newline or the end stay on the line.
// The line keeps the longest such prefix narrower than the width. The words scanned for a line count
// the one that did not fit: the justification is spread over that many breaks, which leaves a cut line
// a little short of the right margin. That look is the game's and is kept.
bool NextTextLine(TextLayout* layout, TextLine* line) {
    const char* text = layout->text;
    size_t end = layout->length;
    size_t start = layout->position;
    if (!layout->measure || start >= end) return false;

    std::memset(line, 0, sizeof *line);
    line->begin = start;
    line->y = layout->y;
    layout->y += layout->lineHeight;
    if (text[start] == '\n') {
        // Two newlines in a row, or a leading one: the line only moves the text down.
        line->onlyMovesDown = true;
        layout->position = start + 1;
        return true;
    }

    size_t fitEnd = start;  // end of the longest prefix that fitted
    int32_t fitExtent = 0;
    int32_t words = 0;
    for (size_t word = start;;) {
        size_t wordEnd = word;
        while (wordEnd < end && text[wordEnd] != ' ' && text[wordEnd] != '\n') ++wordEnd;
        size_t spacesEnd = wordEnd;
        while (spacesEnd < end && text[spacesEnd] == ' ') ++spacesEnd;
        size_t candidate = wordEnd;
        if (spacesEnd > wordEnd) candidate = (spacesEnd < end && text[spacesEnd] != '\n') ? spacesEnd - 1 : spacesEnd;
        ++words;
        int32_t extent = layout->measure(layout->context, text + start, candidate - start).width;
        if (extent >= layout->width) break;
        fitEnd = candidate;
        fitExtent = extent;
        if (candidate >= end || text[candidate] == '\n') break;  // the line ends here at once
        word = candidate + 1;  // past the one space the line may be cut at
    }

    line->length = fitEnd - start;
    line->extent = fitExtent;
    // Only the line that runs to the end of the text is left ragged; one ending at a newline is not.
    line->justified = fitEnd < end;
    if (line->justified) {
        line->justifyExtra = layout->width - fitExtent;
        line->justifyBreaks = words;
    }
    // The byte at the cut is skipped: the break space, the newline, or, when not even the first word
    // fitted, that word's first character (the line then comes out empty and the rest goes on).
    layout->position = fitEnd < end ? fitEnd + 1 : end;
    return true;
}
