// The slider's value rules: range setters and their follow-down, the step setter, value truncation
// then clamping, the dragged-point projection with its rounding bias, the thumb offset, the line and
// the packing of points into one message value.
#include <gtest/gtest.h>

#include <climits>

#include "controls/slider_rules.h"

namespace {

SliderValues Values(int32_t minimum, int32_t maximum, int32_t value, int32_t step) {
    return SliderValues{minimum, maximum, value, step};
}

// A line from start to end, as the messages set it.
SliderLine Line(SliderPoint start, SliderPoint end) {
    SliderLine line = DefaultSliderLine();
    SetSliderLineStart(&line, start);
    SetSliderLineEnd(&line, end);
    return line;
}

// A point x pixels along a horizontal line, relative to its start.
SliderPoint Along(int32_t x) { return SliderPoint{x, 0}; }

}  // namespace

TEST(SliderRules, DefaultsAreZeroToHundredAtZeroByOne) {
    SliderValues v = DefaultSliderValues();
    EXPECT_EQ(v.minimum, 0);
    EXPECT_EQ(v.maximum, 100);
    EXPECT_EQ(v.value, 0);
    EXPECT_EQ(v.step, 1);
}

TEST(SliderRules, ValueSetByMessageIsTruncatedToTheStep) {
    SliderValues v = Values(0, 100, 0, 5);
    SetSliderValue(&v, 52);
    EXPECT_EQ(v.value, 50);
    SetSliderValue(&v, 54);
    EXPECT_EQ(v.value, 50);
    SetSliderValue(&v, 55);
    EXPECT_EQ(v.value, 55);
}

TEST(SliderRules, ValueOutsideTheRangeIsClampedAfterTruncation) {
    SliderValues v = Values(0, 100, 50, 5);
    SetSliderValue(&v, 103);
    EXPECT_EQ(v.value, 100);
    SetSliderValue(&v, -7);
    EXPECT_EQ(v.value, 0);
    // Truncation first, then the clamp: 3 with step 5 truncates to 0, then rises to the minimum 1.
    v = Values(1, 10, 5, 5);
    SetSliderValue(&v, 3);
    EXPECT_EQ(v.value, 1);
    // 99 by 7 truncates to 98, inside 0..98.
    v = Values(0, 98, 0, 7);
    SetSliderValue(&v, 99);
    EXPECT_EQ(v.value, 98);
}

TEST(SliderRules, NegativeValueTruncatesTowardZero) {
    SliderValues v = Values(-10, 10, 0, 4);
    SetSliderValue(&v, -7);
    EXPECT_EQ(v.value, -4);
}

TEST(SliderRules, ValueIsTakenAsGivenWhenTheStepIsZero) {
    SliderValues v = Values(0, 1, 0, 0);
    SetSliderValue(&v, 1);
    EXPECT_EQ(v.value, 1);
    SetSliderValue(&v, 5);
    EXPECT_EQ(v.value, 1);
}

TEST(SliderRules, MaximumBelowTheMinimumPullsMinimumAndValueDown) {
    SliderValues v = Values(20, 100, 50, 5);
    SetSliderMaximum(&v, 10);
    EXPECT_EQ(v.maximum, 10);
    EXPECT_EQ(v.minimum, 10);
    EXPECT_EQ(v.value, 10);
    EXPECT_EQ(v.step, 0);  // range 0: half of it
}

TEST(SliderRules, MaximumBelowTheValuePullsTheValueDownOnly) {
    SliderValues v = Values(0, 100, 80, 5);
    SetSliderMaximum(&v, 30);
    EXPECT_EQ(v.maximum, 30);
    EXPECT_EQ(v.minimum, 0);
    EXPECT_EQ(v.value, 30);
    EXPECT_EQ(v.step, 5);
}

TEST(SliderRules, MaximumAboveTheValueLeavesIt) {
    SliderValues v = Values(0, 100, 50, 1);
    SetSliderMaximum(&v, 99);
    EXPECT_EQ(v.maximum, 99);
    EXPECT_EQ(v.value, 50);
    EXPECT_EQ(v.step, 1);
}

TEST(SliderRules, MinimumAboveTheMaximumPushesMaximumAndValueUp) {
    SliderValues v = Values(0, 100, 50, 5);
    SetSliderMinimum(&v, 150);
    EXPECT_EQ(v.minimum, 150);
    EXPECT_EQ(v.maximum, 150);
    EXPECT_EQ(v.value, 150);
    EXPECT_EQ(v.step, 0);
}

TEST(SliderRules, MinimumAboveTheValuePushesTheValueUpOnly) {
    SliderValues v = Values(0, 100, 10, 5);
    SetSliderMinimum(&v, 40);
    EXPECT_EQ(v.minimum, 40);
    EXPECT_EQ(v.maximum, 100);
    EXPECT_EQ(v.value, 40);
    EXPECT_EQ(v.step, 5);
}

TEST(SliderRules, RangeSettersTurnAStepWiderThanTheRangeIntoHalfTheRange) {
    SliderValues v = Values(0, 100, 0, 40);
    SetSliderMaximum(&v, 30);  // 40 > 30: 15
    EXPECT_EQ(v.step, 15);
    v = Values(0, 100, 0, 40);
    SetSliderMinimum(&v, 75);  // range 25: 12
    EXPECT_EQ(v.step, 12);
    v = Values(0, 100, 0, 40);
    SetSliderMaximum(&v, 40);  // exactly the range: kept
    EXPECT_EQ(v.step, 40);
}

TEST(SliderRules, StepIsKeptFromOneToTheRange) {
    SliderValues v = Values(0, 100, 0, 1);
    SetSliderStep(&v, 1);
    EXPECT_EQ(v.step, 1);
    SetSliderStep(&v, 100);
    EXPECT_EQ(v.step, 100);
    SetSliderStep(&v, 7);
    EXPECT_EQ(v.step, 7);
}

TEST(SliderRules, StepOutsideOneToTheRangeBecomesHalfTheRange) {
    SliderValues v = Values(0, 100, 0, 1);
    SetSliderStep(&v, 101);
    EXPECT_EQ(v.step, 50);
    SetSliderStep(&v, 0);
    EXPECT_EQ(v.step, 50);
    SetSliderStep(&v, -3);
    EXPECT_EQ(v.step, 50);
    v = Values(0, 11, 0, 1);
    SetSliderStep(&v, 40);  // 11 / 2 truncates to 5
    EXPECT_EQ(v.step, 5);
    v = Values(3, 4, 3, 1);
    SetSliderStep(&v, 2);  // range 1: 0
    EXPECT_EQ(v.step, 0);
}

TEST(SliderRules, WideRangesDoNotOverflow) {
    SliderValues v = Values(INT32_MIN, INT32_MAX, 0, 1);
    SetSliderStep(&v, 0);
    EXPECT_EQ(v.step, INT32_MAX);  // (2^32 - 1) / 2
    SetSliderValue(&v, INT32_MIN + 1);
    EXPECT_EQ(v.value, -INT32_MAX);  // -1 whole step
    SliderLine line = Line({0, 0}, {100, 0});
    int32_t at = SliderValueAtPoint(&v, &line, Along(50));
    EXPECT_GE(at, v.minimum);
    EXPECT_LE(at, v.maximum);
}

TEST(SliderRules, DragToTheMiddleOfZeroToHundredByFiveGivesFiftyTwo) {
    SliderValues v = Values(0, 100, 0, 5);
    SliderLine line = Line({10, 20}, {110, 20});
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(50)), 52);  // trunc(50 + 2.5), not 50
    // The same value set by message is truncated to the step instead.
    SetSliderValue(&v, 52);
    EXPECT_EQ(v.value, 50);
}

TEST(SliderRules, DraggedValueIsBiasedByHalfAStep) {
    SliderValues v = Values(0, 100, 0, 5);
    SliderLine line = Line({0, 0}, {100, 0});
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(10)), 12);  // trunc(12.5)
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(11)), 13);  // trunc(13.5): not a multiple of the step
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(0)), 2);    // t = 0 is not "before the start"
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(97)), 99);
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(99)), 100);  // trunc(101.5), clamped
    // Step 1 rounds to the nearest, halves up.
    v.step = 1;
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(37)), 37);
    v.maximum = 99;
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(50)), 50);  // 49.5 + 0.5
}

TEST(SliderRules, DragBeyondEitherEndPinsToMinimumOrMaximum) {
    SliderValues v = Values(-20, 40, 0, 3);
    SliderLine line = Line({5, 5}, {105, 5});
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(101)), 40);
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(5000)), 40);
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(-1)), -20);
    EXPECT_EQ(SliderValueAtPoint(&v, &line, Along(-5000)), -20);
    // And the thumb goes to the line's ends.
    v.value = SliderValueAtPoint(&v, &line, Along(-5000));
    EXPECT_EQ(SliderThumbOffset(&v, line.direction).x, 0);
    v.value = SliderValueAtPoint(&v, &line, Along(5000));
    EXPECT_EQ(SliderThumbOffset(&v, line.direction).x, 100);
    EXPECT_EQ(SliderThumbOffset(&v, line.direction).y, 0);
}

TEST(SliderRules, ProjectionUsesOnlyTheComponentAlongTheLine) {
    SliderValues v = Values(0, 100, 0, 1);
    SliderLine line = Line({0, 0}, {0, 100});
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{500, 30}), 30);
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{-500, 30}), 30);
    // A diagonal line: (30, 10) on the line from (0, 0) to (40, 20) is (30*40 + 10*20) / 2000 = 0.7.
    line = Line({0, 0}, {40, 20});
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{30, 10}), 70);
}

TEST(SliderRules, LineRunningUpwardGrowsTowardItsUpperEnd) {
    // The minimum at the bottom (y 136), the maximum at the top (y 0).
    SliderValues v = Values(0, 99, 50, 1);
    SliderLine line = Line({0, 136}, {0, 0});
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{0, 0}), 0);       // at the start
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{0, -136}), 99);   // at the end
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{0, -68}), 50);    // 49.5 + 0.5
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{0, 20}), 0);      // below the start
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{0, -200}), 99);   // above the end
}

TEST(SliderRules, LineOfNoLengthKeepsTheValue) {
    SliderValues v = Values(0, 100, 35, 5);
    SliderLine line = Line({7, 7}, {7, 7});
    EXPECT_EQ(line.squaredLength, 0.0f);
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{30, 0}), 35);
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{-30, 0}), 35);
}

TEST(SliderRules, ThumbStandsAtTheStartAtTheMinimumAndAtTheEndAtTheMaximum) {
    SliderValues v = Values(10, 60, 10, 1);
    SliderPoint direction = {-50, 100};
    SliderPoint at = SliderThumbOffset(&v, direction);
    EXPECT_EQ(at.x, 0);
    EXPECT_EQ(at.y, 0);
    v.value = 60;
    at = SliderThumbOffset(&v, direction);
    EXPECT_EQ(at.x, -50);
    EXPECT_EQ(at.y, 100);
}

TEST(SliderRules, ThumbStandsInProportionInBetween) {
    SliderValues v = Values(10, 60, 35, 1);
    SliderPoint at = SliderThumbOffset(&v, SliderPoint{-50, 100});
    EXPECT_EQ(at.x, -25);
    EXPECT_EQ(at.y, 50);
    // Truncated toward zero: 136 * 50 / 99 = 68.7 -> 68, -136 * 50 / 99 -> -68.
    v = Values(0, 99, 50, 1);
    at = SliderThumbOffset(&v, SliderPoint{0, -136});
    EXPECT_EQ(at.x, 0);
    EXPECT_EQ(at.y, -68);
    at = SliderThumbOffset(&v, SliderPoint{136, 0});
    EXPECT_EQ(at.x, 68);
}

TEST(SliderRules, ThumbOfAnEmptyRangeStaysOnTheLineWithoutDividingByZero) {
    SliderValues v = Values(42, 42, 42, 0);
    SliderPoint direction = {80, -30};
    SliderPoint at = SliderThumbOffset(&v, direction);
    // Anywhere on the segment is acceptable; it is the start here.
    EXPECT_EQ(int64_t(at.x) * direction.y, int64_t(at.y) * direction.x);
    EXPECT_GE(int64_t(at.x) * direction.x + int64_t(at.y) * direction.y, 0);
    EXPECT_LE(int64_t(at.x) * direction.x + int64_t(at.y) * direction.y,
              int64_t(direction.x) * direction.x + int64_t(direction.y) * direction.y);
    SliderLine line = Line({0, 0}, {80, -30});
    EXPECT_EQ(SliderValueAtPoint(&v, &line, SliderPoint{40, -15}), 42);
}

TEST(SliderRules, LineEndSetsTheDirectionAndItsSquaredLength) {
    SliderLine line = DefaultSliderLine();
    SetSliderLineEnd(&line, SliderPoint{30, -40});
    EXPECT_EQ(line.direction.x, 30);
    EXPECT_EQ(line.direction.y, -40);
    EXPECT_EQ(line.squaredLength, 2500.0f);
}

TEST(SliderRules, SettingTheStartKeepsTheEndWhereItWas) {
    SliderLine line = DefaultSliderLine();
    SetSliderLineEnd(&line, SliderPoint{100, 20});
    SetSliderLineStart(&line, SliderPoint{10, 50});
    EXPECT_EQ(line.start.x, 10);
    EXPECT_EQ(line.start.y, 50);
    SliderPoint end = SliderLineEnd(&line);
    EXPECT_EQ(end.x, 100);
    EXPECT_EQ(end.y, 20);
    EXPECT_EQ(line.direction.x, 90);
    EXPECT_EQ(line.direction.y, -30);
    EXPECT_EQ(line.squaredLength, 9000.0f);
}

TEST(SliderRules, StartSetFirstOnAFreshLineMakesTheLineRunBackToTheOrigin) {
    SliderLine line = DefaultSliderLine();
    SetSliderLineStart(&line, SliderPoint{0, 136});
    EXPECT_EQ(line.direction.x, 0);
    EXPECT_EQ(line.direction.y, -136);
    EXPECT_EQ(SliderLineEnd(&line).y, 0);
}

TEST(SliderRules, PointsPackXLowAndYHighAsSigned16Bits) {
    EXPECT_EQ(PackSliderPoint(SliderPoint{0, 136}), 136 << 16);
    EXPECT_EQ(PackSliderPoint(SliderPoint{5, 0}), 5);
    EXPECT_EQ(uint32_t(PackSliderPoint(SliderPoint{-1, 2})), 0x0002FFFFu);
    EXPECT_EQ(uint32_t(PackSliderPoint(SliderPoint{3, -2})), 0xFFFE0003u);
    SliderPoint p = UnpackSliderPoint(int32_t(0xFFFE0003u));
    EXPECT_EQ(p.x, 3);
    EXPECT_EQ(p.y, -2);
    p = UnpackSliderPoint(int32_t(0x80007FFFu));
    EXPECT_EQ(p.x, 32767);
    EXPECT_EQ(p.y, -32768);
    for (int32_t x : {-32768, -300, -1, 0, 1, 250, 32767})
        for (int32_t y : {-32768, -7, 0, 136, 32767}) {
            SliderPoint back = UnpackSliderPoint(PackSliderPoint(SliderPoint{x, y}));
            EXPECT_EQ(back.x, x);
            EXPECT_EQ(back.y, y);
        }
}
