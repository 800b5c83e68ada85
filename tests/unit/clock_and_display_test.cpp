// The play clock's text and the start-up display check.
#include <gtest/gtest.h>

#include "app/clock_text.h"
#include "app/display_check.h"

namespace {

std::string Clock(uint32_t h, uint32_t m, uint32_t s) {
    char text[24];
    FormatClock(h, m, s, text, sizeof text);
    return text;
}

}  // namespace

TEST(ClockText, FiveMinutesSevenSeconds) { EXPECT_EQ(Clock(0, 5, 7), "00:05:07"); }

TEST(ClockText, TwelveThirtyFourFiftySix) { EXPECT_EQ(Clock(12, 34, 56), "12:34:56"); }

TEST(ClockText, HundredHoursShowThreeDigits) { EXPECT_EQ(Clock(100, 0, 0), "100:00:00"); }

TEST(ClockText, CountOfSecondsSplitsIntoHoursMinutesSeconds) {
    char text[24];
    FormatClockSeconds(100 * 3600 + 61, text, sizeof text);
    EXPECT_STREQ(text, "100:01:01");
    FormatClockSeconds(0, text, sizeof text);
    EXPECT_STREQ(text, "00:00:00");
}

TEST(DisplayCheck, EightBitColourAtAnySizeGetsOnlyTheColourNotice) {
    EXPECT_EQ(DisplayNoticeBase(8, 1024, 768), 160);
    EXPECT_EQ(DisplayNoticeBase(8, 640, 480), 160);
}

TEST(DisplayCheck, SixteenBitsAt800By599GetsTheResolutionNotice) {
    EXPECT_EQ(DisplayNoticeBase(16, 800, 599), 200);
    EXPECT_EQ(DisplayNoticeBase(32, 799, 600), 200);
}

TEST(DisplayCheck, SixteenBitsAt800By600IsEnough) {
    EXPECT_EQ(DisplayNoticeBase(16, 800, 600), 0);
    EXPECT_EQ(DisplayNoticeBase(32, 1920, 1080), 0);
}
