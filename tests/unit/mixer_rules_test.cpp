// The music window's volume arithmetic.
#include <gtest/gtest.h>

#include "extras/mixer_rules.h"

TEST(MixerRules, ReadingIsAWholePercentRoundedDown) {
    EXPECT_EQ(PercentOfMixerValue(0, 0, 65535), 0u);
    EXPECT_EQ(PercentOfMixerValue(19482, 0, 65535), 29u);  // 29.73 %
    EXPECT_EQ(PercentOfMixerValue(32767, 0, 65535), 49u);
    EXPECT_EQ(PercentOfMixerValue(65535, 0, 65535), 100u);
    EXPECT_EQ(PercentOfMixerValue(150, 100, 200), 50u);
}

TEST(MixerRules, AControlWhoseMinimumEqualsItsMaximumReadsFifty) {
    EXPECT_EQ(PercentOfMixerValue(7, 7, 7), 50u);
    EXPECT_EQ(PercentOfMixerValue(0, 9, 3), 50u);
}

TEST(MixerRules, AReadingOfAHundredShowsAsNinetyNine) {
    EXPECT_EQ(SliderValueOfPercent(PercentOfMixerValue(65535, 0, 65535)), 99);
    EXPECT_EQ(SliderValueOfPercent(99), 99);
    EXPECT_EQ(SliderValueOfPercent(0), 0);
}

TEST(MixerRules, AValueOutsideTheRangeReadsAsTheNearerEnd) {
    EXPECT_EQ(PercentOfMixerValue(5, 10, 20), 0u);
    EXPECT_EQ(PercentOfMixerValue(0xFFFFFFFFu, 10, 20), 100u);
}

TEST(MixerRules, AHugeRangeDoesNotWrap) {
    EXPECT_EQ(PercentOfMixerValue(0xFFFFFFFFu, 0, 0xFFFFFFFFu), 100u);
    EXPECT_EQ(PercentOfMixerValue(0x80000000u, 0, 0xFFFFFFFFu), 50u);
}

// 65535 * 0.3 = 19660.5, truncated 19660, then down to a multiple of 191 (192 steps): 19482.
TEST(MixerRules, WritingQuantisesToMultiplesOfStepsLessOne) {
    uint32_t value = 1;
    ASSERT_TRUE(MixerValueOfPercent(30, 0, 65535, 192, &value));
    EXPECT_EQ(value, 19482u);
    // Even the top rounds down: 65535 is no multiple of 191, so the fullest setting is 65513 (99 %).
    ASSERT_TRUE(MixerValueOfPercent(100, 0, 65535, 192, &value));
    EXPECT_EQ(value, 65513u);
    EXPECT_EQ(PercentOfMixerValue(value, 0, 65535), 99u);
}

// Kept as the mixer does it: the raw value, not the step size, is what gets rounded.
TEST(MixerRules, WithSixtyFiveThousandStepsEverySettingBelowAHundredIsTheMinimum) {
    uint32_t value = 1;
    for (int p : {0, 1, 30, 50, 99}) {
        ASSERT_TRUE(MixerValueOfPercent(p, 0, 65535, 65536, &value));
        EXPECT_EQ(value, 0u) << p;
    }
    ASSERT_TRUE(MixerValueOfPercent(100, 0, 65535, 65536, &value));
    EXPECT_EQ(value, 65535u);
}

TEST(MixerRules, NoStepCountOrOneStepLeavesTheValueUnquantised) {
    uint32_t value = 0;
    ASSERT_TRUE(MixerValueOfPercent(30, 0, 65535, 0, &value));
    EXPECT_EQ(value, 19660u);
    ASSERT_TRUE(MixerValueOfPercent(30, 0, 65535, 1, &value));
    EXPECT_EQ(value, 19660u);
}

TEST(MixerRules, TheMinimumIsAddedAfterScaling) {
    uint32_t value = 0;
    ASSERT_TRUE(MixerValueOfPercent(50, 1000, 2000, 0, &value));
    EXPECT_EQ(value, 1500u);
}

TEST(MixerRules, WritingRefusesPercentsOutsideTheRangeAndEmptyControls) {
    uint32_t value = 77;
    EXPECT_FALSE(MixerValueOfPercent(-1, 0, 100, 0, &value));
    EXPECT_FALSE(MixerValueOfPercent(101, 0, 100, 0, &value));
    EXPECT_FALSE(MixerValueOfPercent(50, 5, 5, 0, &value));
    EXPECT_FALSE(MixerValueOfPercent(50, 6, 5, 0, &value));
    EXPECT_EQ(value, 77u);
}
