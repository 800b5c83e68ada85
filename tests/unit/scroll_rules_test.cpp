// The scroll control's value rules: range setters, the step setter's different clamp, position
// truncation toward zero, zones, one step, readiness and the picture each zone shows.
#include <gtest/gtest.h>

#include <climits>

#include "controls/scroll_rules.h"

namespace {

ScrollValues Values(int32_t minimum, int32_t maximum, int32_t position, int32_t step) {
    return ScrollValues{minimum, maximum, position, step};
}

}  // namespace

TEST(ScrollRules, DefaultsAreZeroToHundredAtFiftyByFive) {
    ScrollValues v = DefaultScrollValues();
    EXPECT_EQ(v.minimum, 0);
    EXPECT_EQ(v.maximum, 100);
    EXPECT_EQ(v.position, 50);
    EXPECT_EQ(v.step, 5);
}

TEST(ScrollRules, PositionIsTruncatedToAMultipleOfTheStep) {
    ScrollValues v = DefaultScrollValues();
    SetScrollPosition(&v, 52);
    EXPECT_EQ(v.position, 50);
    SetScrollPosition(&v, 54);
    EXPECT_EQ(v.position, 50);
    SetScrollPosition(&v, 55);
    EXPECT_EQ(v.position, 55);
}

TEST(ScrollRules, PositionAboveTheMaximumStoresTheMaximum) {
    ScrollValues v = DefaultScrollValues();
    SetScrollPosition(&v, 103);
    EXPECT_EQ(v.position, 100);
}

TEST(ScrollRules, PositionBelowTheMinimumStoresTheMinimum) {
    ScrollValues v = Values(7, 100, 50, 5);
    SetScrollPosition(&v, 3);
    EXPECT_EQ(v.position, 7);
    SetScrollPosition(&v, -40);
    EXPECT_EQ(v.position, 7);
}

TEST(ScrollRules, NegativePositionTruncatesTowardZeroNotFromTheMinimum) {
    ScrollValues v = DefaultScrollValues();
    SetScrollMinimum(&v, -3);
    SetScrollStep(&v, 2);
    ASSERT_EQ(v.minimum, -3);
    ASSERT_EQ(v.step, 2);
    SetScrollPosition(&v, -1);
    EXPECT_EQ(v.position, 0);
    SetScrollPosition(&v, -3);
    EXPECT_EQ(v.position, -2);
}

TEST(ScrollRules, TruncationMayLeaveThePositionBelowTheMinimum) {
    // Multiples are counted from 0, so 3 with step 5 becomes 0 even though the minimum is 1.
    ScrollValues v = Values(1, 10, 5, 5);
    SetScrollPosition(&v, 3);
    EXPECT_EQ(v.position, 0);
}

TEST(ScrollRules, PositionIsTakenAsGivenWhenTheStepIsZeroOrNegative) {
    ScrollValues v = Values(0, 100, 50, 0);
    SetScrollPosition(&v, 37);
    EXPECT_EQ(v.position, 37);
    v.step = -4;
    SetScrollPosition(&v, 41);
    EXPECT_EQ(v.position, 41);
}

TEST(ScrollRules, MaximumBelowTheMinimumPullsMinimumAndPositionDown) {
    ScrollValues v = Values(20, 100, 50, 5);
    SetScrollMaximum(&v, 10);
    EXPECT_EQ(v.maximum, 10);
    EXPECT_EQ(v.minimum, 10);
    EXPECT_EQ(v.position, 10);
    EXPECT_EQ(v.step, 0);  // range 0: half of it is 0
}

TEST(ScrollRules, MaximumBelowThePositionPullsThePositionDown) {
    ScrollValues v = DefaultScrollValues();
    SetScrollMaximum(&v, 30);
    EXPECT_EQ(v.maximum, 30);
    EXPECT_EQ(v.minimum, 0);
    EXPECT_EQ(v.position, 30);
    EXPECT_EQ(v.step, 5);
}

TEST(ScrollRules, RangeSettersClampAWideStepToOne) {
    ScrollValues v = Values(0, 100, 0, 40);
    SetScrollMaximum(&v, 10);  // 40 > 10: half the range is 5, reduced to 1
    EXPECT_EQ(v.step, 1);
    v = Values(0, 100, 0, 40);
    SetScrollMinimum(&v, 90);  // the mirror
    EXPECT_EQ(v.step, 1);
    EXPECT_EQ(v.position, 90);
}

TEST(ScrollRules, RangeUnderTwoGivesStepZeroThroughTheMaximum) {
    ScrollValues v = DefaultScrollValues();
    SetScrollMaximum(&v, 1);
    EXPECT_EQ(v.step, 0);
    EXPECT_EQ(v.position, 1);
    v = DefaultScrollValues();
    SetScrollMaximum(&v, 0);
    EXPECT_EQ(v.step, 0);
}

TEST(ScrollRules, RangeUnderTwoGivesStepZeroThroughTheMinimum) {
    ScrollValues v = DefaultScrollValues();
    SetScrollMinimum(&v, 99);
    EXPECT_EQ(v.step, 0);
    EXPECT_EQ(v.position, 99);
}

TEST(ScrollRules, MinimumAboveTheMaximumPushesMaximumAndPositionUp) {
    ScrollValues v = DefaultScrollValues();
    SetScrollMinimum(&v, 150);
    EXPECT_EQ(v.minimum, 150);
    EXPECT_EQ(v.maximum, 150);
    EXPECT_EQ(v.position, 150);
}

TEST(ScrollRules, StepThatFitsTheRangeIsKept) {
    ScrollValues v = DefaultScrollValues();
    SetScrollStep(&v, 100);
    EXPECT_EQ(v.step, 100);
    SetScrollStep(&v, 7);
    EXPECT_EQ(v.step, 7);
}

TEST(ScrollRules, StepSetterClampsAWideStepToHalfTheRange) {
    ScrollValues v = Values(0, 10, 0, 1);
    SetScrollStep(&v, 40);  // 40 > 10: half the range, 5 (the range setters would give 1)
    EXPECT_EQ(v.step, 5);
    v = Values(0, 11, 0, 1);
    SetScrollStep(&v, 40);  // 11 / 2 truncates to 5
    EXPECT_EQ(v.step, 5);
}

TEST(ScrollRules, StepSetterRaisesASmallHalfRangeToOne) {
    ScrollValues v = Values(0, 1, 0, 0);
    SetScrollStep(&v, 5);  // half of 1 is 0, raised to 1 (the range setters would give 0)
    EXPECT_EQ(v.step, 1);
    v = Values(4, 4, 4, 0);
    SetScrollStep(&v, 2);
    EXPECT_EQ(v.step, 1);
    v = Values(0, 3, 0, 0);
    SetScrollStep(&v, 9);
    EXPECT_EQ(v.step, 1);
}

TEST(ScrollRules, TheTwoStepClampsDifferForTheSameRange) {
    ScrollValues byRange = Values(0, 100, 0, 30);
    SetScrollMaximum(&byRange, 20);
    ScrollValues byStep = Values(0, 20, 0, 5);
    SetScrollStep(&byStep, 30);
    EXPECT_EQ(byRange.step, 1);
    EXPECT_EQ(byStep.step, 10);
}

TEST(ScrollRules, ExtremeRangesDoNotOverflow) {
    ScrollValues v = Values(0, 0, 0, 1);
    SetScrollMinimum(&v, INT32_MIN);
    SetScrollMaximum(&v, INT32_MAX);
    EXPECT_EQ(v.step, 1);
    SetScrollStep(&v, INT32_MAX);
    EXPECT_EQ(v.step, INT32_MAX);
    v.position = INT32_MAX - 1;
    EXPECT_TRUE(ApplyScrollStep(&v, SCROLL_ZONE_UPPER));
    EXPECT_EQ(v.position, INT32_MAX);
    v.position = INT32_MIN + 1;
    EXPECT_TRUE(ApplyScrollStep(&v, SCROLL_ZONE_LOWER));
    EXPECT_EQ(v.position, INT32_MIN);
}

TEST(ScrollRules, UpperZoneAddsTheStepUpToTheMaximum) {
    ScrollValues v = DefaultScrollValues();
    EXPECT_TRUE(ApplyScrollStep(&v, SCROLL_ZONE_UPPER));
    EXPECT_EQ(v.position, 55);
    v.position = 98;
    EXPECT_TRUE(ApplyScrollStep(&v, SCROLL_ZONE_UPPER));
    EXPECT_EQ(v.position, 100);
    EXPECT_FALSE(ApplyScrollStep(&v, SCROLL_ZONE_UPPER));
    EXPECT_EQ(v.position, 100);
}

TEST(ScrollRules, LowerZoneTakesTheStepDownToTheMinimum) {
    ScrollValues v = DefaultScrollValues();
    EXPECT_TRUE(ApplyScrollStep(&v, SCROLL_ZONE_LOWER));
    EXPECT_EQ(v.position, 45);
    v.position = 3;
    EXPECT_TRUE(ApplyScrollStep(&v, SCROLL_ZONE_LOWER));
    EXPECT_EQ(v.position, 0);
    EXPECT_FALSE(ApplyScrollStep(&v, SCROLL_ZONE_LOWER));
}

TEST(ScrollRules, MiddleZoneDoesNotStep) {
    ScrollValues v = DefaultScrollValues();
    EXPECT_FALSE(ApplyScrollStep(&v, SCROLL_ZONE_MIDDLE));
    EXPECT_FALSE(ApplyScrollStep(&v, SCROLL_ZONE_NONE));
    EXPECT_EQ(v.position, 50);
}

TEST(ScrollRules, ZeroStepChangesNothing) {
    ScrollValues v = Values(0, 1, 0, 0);
    EXPECT_FALSE(ApplyScrollStep(&v, SCROLL_ZONE_UPPER));
    EXPECT_EQ(v.position, 0);
}

TEST(ScrollRules, NegativeRangeStepsTowardTheUpperEnd) {
    // The table-background chooser's selector: minimum -9, maximum 0, step 1; the upper button adds.
    ScrollValues v = Values(0, 0, 0, 1);
    SetScrollMinimum(&v, -9);
    SetScrollMaximum(&v, 0);
    SetScrollStep(&v, 1);
    SetScrollPosition(&v, -4);
    EXPECT_EQ(v.position, -4);
    ApplyScrollStep(&v, SCROLL_ZONE_UPPER);
    EXPECT_EQ(v.position, -3);
    ApplyScrollStep(&v, SCROLL_ZONE_LOWER);
    ApplyScrollStep(&v, SCROLL_ZONE_LOWER);
    EXPECT_EQ(v.position, -5);
}

TEST(ScrollRules, ZoneIsChosenByTheBoundaries) {
    EXPECT_EQ(ScrollZoneAt(0, 10, 20), SCROLL_ZONE_UPPER);
    EXPECT_EQ(ScrollZoneAt(9, 10, 20), SCROLL_ZONE_UPPER);
    EXPECT_EQ(ScrollZoneAt(10, 10, 20), SCROLL_ZONE_MIDDLE);
    EXPECT_EQ(ScrollZoneAt(29, 10, 20), SCROLL_ZONE_MIDDLE);
    EXPECT_EQ(ScrollZoneAt(30, 10, 20), SCROLL_ZONE_LOWER);
    EXPECT_EQ(ScrollZoneAt(500, 10, 20), SCROLL_ZONE_LOWER);
    EXPECT_EQ(ScrollZoneAt(-5, 10, 20), SCROLL_ZONE_UPPER);
}

TEST(ScrollRules, ReadyOnlyWhenTheZonesFillTheFrame) {
    const int32_t fits[3] = {10, 20, 12};
    const int32_t short_[3] = {10, 20, 11};
    const int32_t unset[3] = {0, 0, 0};
    EXPECT_TRUE(ScrollLayoutReady(true, 42, fits));
    EXPECT_FALSE(ScrollLayoutReady(true, 42, short_));
    EXPECT_FALSE(ScrollLayoutReady(false, 42, fits));
    EXPECT_FALSE(ScrollLayoutReady(false, 0, unset));
    EXPECT_FALSE(ScrollLayoutReady(true, 0, unset));
}

TEST(ScrollRules, ZonePictureFollowsHoverPressAndRepeatPhase) {
    // enabled, disabled frame, hover zone, press active, repeating, phase
    EXPECT_EQ(ScrollZonePicture(true, false, false, false, false, false), 0);
    EXPECT_EQ(ScrollZonePicture(true, false, true, false, false, false), 1);
    EXPECT_EQ(ScrollZonePicture(true, false, true, true, false, false), 2);
    EXPECT_EQ(ScrollZonePicture(true, false, true, true, true, false), 2);
    EXPECT_EQ(ScrollZonePicture(true, false, true, true, true, true), 0);
    EXPECT_EQ(ScrollZonePicture(true, true, false, false, false, false), 1);
    EXPECT_EQ(ScrollZonePicture(true, true, true, false, false, false), 2);
    EXPECT_EQ(ScrollZonePicture(true, true, true, true, false, false), 3);
    EXPECT_EQ(ScrollZonePicture(true, true, true, true, true, true), 1);
    // Disabled: the first picture, whatever else holds.
    EXPECT_EQ(ScrollZonePicture(false, true, true, true, true, false), 0);
    EXPECT_EQ(ScrollZonePicture(false, false, true, false, false, false), 0);
}

TEST(ScrollRules, StripRowIsZoneMajor) {
    // Zones 10, 20, 12 high: the upper zone's pictures start at row 0, the middle's at 3 x 10, the lower's
    // at 3 x 30; with a disabled picture each zone holds four.
    EXPECT_EQ(ScrollStripRow(false, 0, 10, 0), 0);
    EXPECT_EQ(ScrollStripRow(false, 0, 10, 2), 20);
    EXPECT_EQ(ScrollStripRow(false, 10, 20, 0), 30);
    EXPECT_EQ(ScrollStripRow(false, 10, 20, 1), 50);
    EXPECT_EQ(ScrollStripRow(false, 30, 12, 2), 114);
    EXPECT_EQ(ScrollStripRow(true, 10, 20, 0), 40);
    EXPECT_EQ(ScrollStripRow(true, 30, 12, 3), 156);
}
