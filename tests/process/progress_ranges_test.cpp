// SPDX-License-Identifier: MIT
#include "zeltools/process/progress_ranges.h"

#include "zeltools/foundation/xexception.h"
#include "zeltools/process/progress_text.h"

#include <climits>
#include <gtest/gtest.h>
#include <random>

namespace {

TEST(ProgressRanges, InnerRangeFillsItsShareOfTheOuterOne) {
    CProgressRanges bars;
    EXPECT_EQ(bars.PushSubRange(10, true), 0);
    EXPECT_TRUE(bars.SetSubRangePos(5, true));
    EXPECT_EQ(bars.GetPos(true), 50);
    bars.SetNextSubRangeStepCount(2, true);
    EXPECT_EQ(bars.PushSubRange(4, true), 1);
    EXPECT_EQ(bars.GetSubRange(1, true).scale, 5.0f);
    EXPECT_EQ(bars.GetSubRange(1, true).end, 70);
    bars.SetSubRangePos(1, true);
    EXPECT_EQ(bars.PushSubRange(3, true), 2); // one step of 5 units, in thirds
    bars.SetSubRangePos(2, true);
    EXPECT_EQ(bars.GetPos(true), 58); // 55 + 3.33
    EXPECT_EQ(bars.PullSubRange(true), 2);
    EXPECT_EQ(bars.GetPos(true), 60);
    EXPECT_EQ(bars.PullSubRange(true), 1);
    EXPECT_EQ(bars.GetPos(true), 70);
    EXPECT_EQ(bars.GetSubRange(0, true).nextStep, 0); // the next one fills one step again
    EXPECT_EQ(bars.PullSubRange(true), 0);
    EXPECT_EQ(bars.GetPos(true), 100);
    EXPECT_EQ(bars.PullSubRange(true), -1);
    EXPECT_FALSE(bars.SetSubRangePos(1, true));
    EXPECT_EQ(bars.GetPos(false), 0); // the other bar stands
}

TEST(ProgressRanges, OutermostRangeTakesTheUnitsThatWereSaidOrAllThatAreLeft) {
    CProgressRanges bars;
    bars.SetRange(0, 1000, false);
    bars.SetPos(100, false);
    bars.SetNextSubRangeStepCount(300, false);
    bars.PushSubRange(3, false);
    bars.SetSubRangePos(1, false);
    EXPECT_EQ(bars.GetPos(false), 200);
    bars.PullSubRange(false);
    EXPECT_EQ(bars.GetPos(false), 400);
    EXPECT_EQ(bars.GetNextStep(false), 0);
    bars.PushSubRange(0, false); // no steps count as one
    EXPECT_EQ(bars.GetSubRange(0, false).scale, 600.0f);
    bars.PullSubRange(false);
    EXPECT_EQ(bars.GetPos(false), 1000);
}

TEST(ProgressRanges, ShareThatWouldPassTheEndIsReplaced) {
    CProgressRanges bars;
    bars.SetPos(90, true);
    bars.SetNextSubRangeStepCount(30, true); // 120 is beyond 100: 100 - 30
    EXPECT_EQ(bars.GetNextStep(true), 70);
    bars.SetNextSubRangeStepCount(10, true);
    EXPECT_EQ(bars.GetNextStep(true), 10);
    bars.PushSubRange(5, true); // 90 to 100, 2 units a step
    bars.SetSubRangePos(4, true);
    bars.SetNextSubRangeStepCount(48, true); // 4 + 96 is not beyond 100
    EXPECT_EQ(bars.GetSubRange(0, true).nextStep, 48);
    bars.SetNextSubRangeStepCount(49, true); // 4 + 98 is: 100 - 98
    EXPECT_EQ(bars.GetSubRange(0, true).nextStep, 2);
}

TEST(ProgressRanges, PullToALevelEndsAllWithin) {
    CProgressRanges bars;
    for (int const steps : {2, 5, 5, 5}) {
        bars.PushSubRange(steps, true);
    }
    EXPECT_EQ(bars.PullToSubRange(4, true), 4);
    EXPECT_EQ(bars.PullToSubRange(-1, true), 4);
    EXPECT_EQ(bars.GetPos(true), 0);
    EXPECT_EQ(bars.PullToSubRange(1, true), 1);
    EXPECT_EQ(bars.GetPos(true), 50);
}

TEST(ProgressRanges, BarStaysInItsRangeAndStartsOverAtItsLowestPosition) {
    CProgressRanges bars;
    bars.SetRange(50, -50, true);
    EXPECT_EQ(bars.GetStartTick(true), 0);
    bars.SetPos(INT_MIN, true);
    EXPECT_EQ(bars.GetPos(true), -50);
    EXPECT_GT(bars.GetStartTick(true), 0);
    bars.SetPos(50, true);
    bars.SetRange(0, 10, true);
    EXPECT_EQ(bars.GetPos(true), 10);
    try {
        bars.PushSubRange(-1, true);
        ADD_FAILURE() << "a negative count of steps";
    } catch (CXInvalidArgException* failure) {
        failure->Delete();
    }
    EXPECT_EQ(bars.GetSubRangeCount(true), 0);
}

// Whatever the numbers are, the bar stays in its range; the sanitizers watch the arithmetic.
TEST(ProgressRanges, NoNumberLeadsOutOfTheRange) {
    unsigned int const seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    int const interesting[] = {INT_MIN, INT_MIN + 1, -16777217, -1, 0, 1, 2, 100, 16777217, INT_MAX - 1, INT_MAX};
    auto const number = [&] { return interesting[random() % std::size(interesting)]; };
    CProgressRanges bars;
    for (int i = 0; i < 20000; ++i) {
        switch (random() % 8) {
        case 0: bars.SetRange(number(), number(), true); break;
        case 1: bars.SetNextSubRangeStepCount(number(), true); break;
        case 2:
        case 3: bars.PushSubRange(number() & INT_MAX, true); break;
        case 4:
        case 5: bars.SetSubRangePos(number(), true); break;
        case 6: bars.OffsetPos(number(), true); break;
        case 7: bars.PullToSubRange(static_cast<int>(random() % 8), true); break;
        }
        int lowest = 0;
        int highest = 0;
        bars.GetRange(lowest, highest, true);
        ASSERT_LE(lowest, bars.GetPos(true));
        ASSERT_GE(highest, bars.GetPos(true));
    }
}

TEST(ProgressText, TimesAreWrittenAndEstimated) {
    EXPECT_EQ(progressPercentText(42), u"42 %");
    EXPECT_EQ(progressTimeText(-1), u"0:00");
    EXPECT_EQ(progressTimeText(3599), u"59:59");
    EXPECT_EQ(progressTimeText(3600 * 27 + 61), u"27:01:01");
    EXPECT_EQ(progressSecondsLeft(30, 0.25), 90);
    EXPECT_EQ(progressSecondsLeft(30, 1.5), 0);
    EXPECT_EQ(progressSecondsLeft(30, 0), -1);
    EXPECT_EQ(progressSecondsLeft(30, 1e-9), -1);
}

} // namespace
