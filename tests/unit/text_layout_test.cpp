// Line breaking and justification of message texts, measured with made-up fonts.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "app/text_layout.h"

namespace {

// A font whose every byte is 10 pixels wide and whose lines are 16 pixels high.
TextExtent FixedFont(void*, const char*, size_t length) { return TextExtent{int32_t(length) * 10, 16}; }

// A font of varied widths: 'W' 20, 'i' 4, a space 5, anything else 10; lines 19 pixels high.
TextExtent VariedFont(void* calls, const char* text, size_t length) {
    if (calls) ++*static_cast<int*>(calls);
    int32_t width = 0;
    for (size_t i = 0; i < length; ++i) width += text[i] == 'W' ? 20 : text[i] == 'i' ? 4 : text[i] == ' ' ? 5 : 10;
    return TextExtent{width, 19};
}

std::vector<TextLine> Lay(const std::string& text, int32_t width, TextMeasure measure = FixedFont,
                          void* context = nullptr) {
    TextLayout layout;
    BeginTextLayout(&layout, text.data(), text.size(), width, measure, context);
    std::vector<TextLine> lines;
    TextLine line;
    while (NextTextLine(&layout, &line)) {
        lines.push_back(line);
        if (lines.size() > text.size() + 1) break;  // a runaway layout fails below instead of hanging
    }
    return lines;
}

std::string Drawn(const std::string& text, const TextLine& line) { return text.substr(line.begin, line.length); }

}  // namespace

TEST(TextLayout, TwoLeadingNewlinesStartTheTextTwoLineHeightsDown) {
    const std::string text = "\n\nAre you sure you want to erase the file?";
    std::vector<TextLine> lines = Lay(text, 460);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_TRUE(lines[0].onlyMovesDown);
    EXPECT_TRUE(lines[1].onlyMovesDown);
    EXPECT_EQ(lines[0].length + lines[1].length, 0u);
    EXPECT_FALSE(lines[2].onlyMovesDown);
    EXPECT_EQ(lines[2].y, 2 * 16);
    EXPECT_EQ(Drawn(text, lines[2]), "Are you sure you want to erase the file?");
}

TEST(TextLayout, BreaksAfterTheLastWordThatFits) {
    const std::string text = "aaa bbb ccc ddd";
    std::vector<TextLine> lines = Lay(text, 100);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(Drawn(text, lines[0]), "aaa bbb");
    EXPECT_EQ(lines[0].extent, 70);
    EXPECT_EQ(lines[0].y, 0);
    EXPECT_EQ(Drawn(text, lines[1]), "ccc ddd");  // the space at the cut is skipped
    EXPECT_EQ(lines[1].y, 16);
}

TEST(TextLayout, AWordReachingTheWidthExactlyDoesNotFit) {
    const std::string text = "aaaa bbbbb c";
    std::vector<TextLine> lines = Lay(text, 100);  // "aaaa bbbbb" is exactly 100
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(Drawn(text, lines[0]), "aaaa");
    EXPECT_EQ(Drawn(text, lines[1]), "bbbbb c");
}

TEST(TextLayout, NewlineEndsTheLineAtOnceAndIsJustified) {
    const std::string text = "ab cd\nef gh";
    std::vector<TextLine> lines = Lay(text, 200);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(Drawn(text, lines[0]), "ab cd");
    EXPECT_TRUE(lines[0].justified);
    EXPECT_EQ(lines[0].justifyExtra, 200 - 50);
    EXPECT_EQ(lines[0].justifyBreaks, 2);  // no word failed: the two that fitted
    EXPECT_EQ(Drawn(text, lines[1]), "ef gh");
    EXPECT_EQ(lines[1].y, 16);
}

TEST(TextLayout, LastLineIsNotJustified) {
    const std::string text = "aaa bbb ccc ddd";
    std::vector<TextLine> lines = Lay(text, 100);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[0].justified);
    EXPECT_FALSE(lines[1].justified);
    EXPECT_EQ(lines[1].justifyExtra, 0);
    EXPECT_EQ(lines[1].justifyBreaks, 0);

    std::vector<TextLine> single = Lay("one two", 460);
    ASSERT_EQ(single.size(), 1u);
    EXPECT_FALSE(single[0].justified);
}

TEST(TextLayout, WordCountIncludesTheWordThatDidNotFit) {
    const std::string text = "aa bb cc dddddd";
    std::vector<TextLine> lines = Lay(text, 100);  // "aa bb cc" 80 fits, with "dddddd" 150 does not
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(Drawn(text, lines[0]), "aa bb cc");
    EXPECT_TRUE(lines[0].justified);
    EXPECT_EQ(lines[0].justifyExtra, 20);
    EXPECT_EQ(lines[0].justifyBreaks, 4);  // three fitted, one did not
}

TEST(TextLayout, OverWideWordDropsItsFirstCharacterAndTheScanGoesOn) {
    const std::string text = "abcdefghijkl xy";
    std::vector<TextLine> lines = Lay(text, 100);
    // "abcdefghijkl" (120), "bcdefghijkl" (110) and "cdefghijkl" (100) cannot be placed: three empty
    // lines, each dropping one character; "defghijkl" (90) then fits.
    ASSERT_EQ(lines.size(), 5u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(lines[i].length, 0u) << i;
        EXPECT_EQ(lines[i].begin, size_t(i)) << i;
        EXPECT_FALSE(lines[i].onlyMovesDown) << i;
        EXPECT_EQ(lines[i].justifyExtra, 100) << i;
        EXPECT_EQ(lines[i].justifyBreaks, 1) << i;
        EXPECT_EQ(lines[i].y, 16 * i) << i;
    }
    EXPECT_EQ(Drawn(text, lines[3]), "defghijkl");
    EXPECT_EQ(lines[3].justifyBreaks, 2);
    EXPECT_EQ(Drawn(text, lines[4]), "xy");
    EXPECT_EQ(lines[4].y, 64);
}

TEST(TextLayout, EmptyTextGivesNoLines) {
    EXPECT_TRUE(Lay("", 460).empty());
    TextLayout layout;
    BeginTextLayout(&layout, nullptr, 5, 460, FixedFont, nullptr);
    TextLine line;
    EXPECT_FALSE(NextTextLine(&layout, &line));
}

TEST(TextLayout, TextOfOnlyNewlinesOnlyMovesDown) {
    std::vector<TextLine> lines = Lay("\n\n\n", 460);
    ASSERT_EQ(lines.size(), 3u);
    for (size_t i = 0; i < lines.size(); ++i) {
        EXPECT_TRUE(lines[i].onlyMovesDown) << i;
        EXPECT_EQ(lines[i].length, 0u) << i;
        EXPECT_FALSE(lines[i].justified) << i;
        EXPECT_EQ(lines[i].y, int32_t(16 * i)) << i;
    }
}

TEST(TextLayout, EmptyLineBetweenParagraphsOnlyMovesDown) {
    const std::string text = "ab\n\ncd";
    std::vector<TextLine> lines = Lay(text, 200);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(Drawn(text, lines[0]), "ab");
    EXPECT_TRUE(lines[0].justified);
    EXPECT_TRUE(lines[1].onlyMovesDown);
    EXPECT_EQ(Drawn(text, lines[2]), "cd");
    EXPECT_EQ(lines[2].y, 32);
}

TEST(TextLayout, MeasuresWithTheFontsOwnWidthsAndLineHeight) {
    const std::string text = "WW ii WW";
    int calls = 0;
    std::vector<TextLine> lines = Lay(text, 60, VariedFont, &calls);
    // "WW" 40, "WW ii" 53, "WW ii WW" 98.
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(Drawn(text, lines[0]), "WW ii");
    EXPECT_EQ(lines[0].extent, 53);
    EXPECT_EQ(lines[0].justifyExtra, 7);
    EXPECT_EQ(lines[0].justifyBreaks, 3);
    EXPECT_EQ(lines[1].y, 19);  // the height of a space
    EXPECT_GT(calls, 0);
}

TEST(TextLayout, AWordKeepsTheSpacesAfterItButTheLast) {
    const std::string text = "ab   cd";
    std::vector<TextLine> lines = Lay(text, 60);  // "ab  " 40 fits, "ab   cd" 70 does not
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(Drawn(text, lines[0]), "ab  ");
    EXPECT_EQ(Drawn(text, lines[1]), "cd");
}

TEST(TextLayout, SpacesBeforeANewlineStayOnTheLine) {
    const std::string text = "ab  \ncd";
    std::vector<TextLine> lines = Lay(text, 200);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(Drawn(text, lines[0]), "ab  ");
    EXPECT_EQ(Drawn(text, lines[1]), "cd");
    EXPECT_EQ(lines[1].y, 16);
}

TEST(TextLayout, NoWidthAtAllDropsEveryByteAndEnds) {
    const std::string text = "abc de";
    std::vector<TextLine> lines = Lay(text, 0);
    ASSERT_EQ(lines.size(), text.size());
    for (const TextLine& line : lines) EXPECT_EQ(line.length, 0u);
}

TEST(TextLayout, RandomTextsStayInsideTheTextAndTheWidth) {
    std::mt19937 random(20240611u);
    const char alphabet[] = "aWi  \n";
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 60, ' ');
        for (char& c : text) c = alphabet[random() % (sizeof alphabet - 1)];
        int32_t width = int32_t(random() % 120) - 10;
        std::vector<TextLine> lines = Lay(text, width, VariedFont);
        ASSERT_LE(lines.size(), text.size()) << round;
        size_t previousEnd = 0;
        for (size_t i = 0; i < lines.size(); ++i) {
            const TextLine& line = lines[i];
            ASSERT_LE(line.begin + line.length, text.size()) << round;
            EXPECT_GE(line.begin, previousEnd) << round;
            EXPECT_EQ(line.y, int32_t(19 * i)) << round;
            if (line.length > 0) {
                EXPECT_LT(line.extent, width) << round;
            }
            EXPECT_EQ(std::string(text, line.begin, line.length).find('\n'), std::string::npos) << round;
            previousEnd = line.begin + line.length;
        }
    }
}
