// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xtime.h"

#include "tests/support/thrown.h"
#include "tests/support/time_zone.h"

#include <climits>
#include <gtest/gtest.h>

using support::Thrown;

namespace {

TEST(XTime, PartsAreLocalAndMonthsCountFromZeroOnTheWayOut) {
    TimeZone const zone(TimeZone::Paris);
    CXTime const time(2024, 1, 15, 12, 30, 45, -1);
    EXPECT_EQ(time.GetTime(), 1705318245); // 11:30:45 UTC
    EXPECT_TRUE(time.GetYear() == 2024 && time.GetMonth() == 0 && time.GetDay() == 15);
    EXPECT_TRUE(time.GetHour() == 12 && time.GetMinute() == 30 && time.GetSecond() == 45);
    EXPECT_EQ(time.GetDayOfWeek(), 2); // a Monday
    EXPECT_EQ(time.GetElapsedDays(), 19737);

    std::tm record{};
    ASSERT_TRUE(time.GetLocalTm(&record));
    EXPECT_EQ(CXTime(&record), time);
    ASSERT_TRUE(time.GetUTCTm(&record));
    EXPECT_EQ(record.tm_hour, 11);
}

TEST(XTime, OnlyAResultOfMinusOneIsAnError) {
    TimeZone const zone(TimeZone::Utc);
    EXPECT_EQ(CXTime(1901, 12, 13, 20, 45, 52, 0).GetTime(), INT_MIN);
    EXPECT_EQ(CXTime(5000, 1, 1, 0, 0, 0, 0).GetTime(), 95617584000);
    EXPECT_EQ(Thrown([] { CXTime(1969, 12, 31, 23, 59, 59, 0); }), "argument");
    EXPECT_EQ(Thrown([] { CXTime(INT_MAX, INT_MAX, 1, 0, 0, 0, 0); }), "argument");
    std::tm secondBefore1970{-1, 0, 0, 1, 0, 70, 0, 0, 0, 0, nullptr};
    EXPECT_EQ(Thrown([&] { CXTime{&secondBefore1970}; }), "argument");
    EXPECT_EQ(Thrown([] { CXTime().GetUTCTm(nullptr); }), "argument");
    EXPECT_EQ(Thrown([] { CXTime().GetLocalTm(nullptr); }), "argument");
}

TEST(XTime, ATimeThatCannotBeBrokenDownAnswersZeroAndItsFormat) {
    CXTime const far(LLONG_MAX);
    EXPECT_EQ(far.GetYear(), 0);
    EXPECT_TRUE(far.Format(u"%Y") == u"%Y");
    std::tm record{};
    record.tm_sec = 42;
    EXPECT_FALSE(far.GetLocalTm(&record) || far.GetUTCTm(&record));
    EXPECT_EQ(record.tm_sec, 42);
    SYSTEMTIME systemTime{};
    EXPECT_FALSE(xTimeGetAsSystemTime(systemTime, far));
    EXPECT_FALSE(xTimeGetAsSystemTime(systemTime, CXTime(2'010'000'000'000))); // the year 65664
}

TEST(XTime, ArithmeticStopsAtTheEnds) {
    CXTime time(100);
    EXPECT_EQ((time - CXTime(130)).GetDuration(), -30);
    EXPECT_EQ((time + CXDuration(5)).GetTime(), 105);
    EXPECT_EQ((time - CXDuration(LLONG_MIN)).GetTime(), LLONG_MAX);
    EXPECT_EQ((CXTime(LLONG_MIN) - CXTime(1)).GetDuration(), LLONG_MIN);
    time = 7;
    EXPECT_EQ(time, CXTime(7));
    EXPECT_TRUE(CXTime(-1) < CXTime() && CXTime(2) >= CXTime(2) && CXTime(2) != CXTime(3));
    EXPECT_LE(CXTime::GetTickCount().GetTime() - ::time(nullptr), 1);
    EXPECT_LE(timeGetTick(), timeGetTick());
}

TEST(XTime, SystemTimesGoThroughTheLocalClock) {
    TimeZone const zone(TimeZone::Paris);
    CXTime time(5);
    EXPECT_TRUE(xTimeFromSystemTime(time, {1899, 12, 0, 31, 23, 59, 59, 999}, -1));
    EXPECT_EQ(time.GetTime(), 0);
    EXPECT_TRUE(xTimeFromSystemTime(time, {2024, 7, 6, 1, 12, 0, 0, 999}, -1));
    EXPECT_EQ(time.GetTime(), 1719828000);
    SYSTEMTIME systemTime{};
    ASSERT_TRUE(xTimeGetAsSystemTime(systemTime, time));
    EXPECT_TRUE(systemTime.wMonth == 7 && systemTime.wDay == 1 && systemTime.wDayOfWeek == 1);
    EXPECT_TRUE(systemTime.wHour == 12 && systemTime.wMilliseconds == 0);
    EXPECT_EQ(Thrown([&time] {
                  TimeZone const utc(TimeZone::Utc);
                  xTimeFromSystemTime(time, {1969, 12, 0, 31, 23, 59, 59, 0}, 0);
              }),
              "argument");
    EXPECT_EQ(time.GetTime(), 1719828000); // untouched
}

TEST(XDuration, PartsCutTowardsZero) {
    struct {
        CXDuration span;
        long long days;
        int hours, minutes, seconds;
    } const rows[] = {
        {CXDuration(-90), 0, 0, -1, -30},
        {CXDuration(-1, 0, 0, 1), 0, -23, -59, -59},
        {CXDuration(0, 0, 0, INT_MIN), -24855, -3, -14, -8},
        {CXDuration(INT_MAX, 23, 59, 59), INT_MAX, 23, 59, 59},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(row.span.GetDays(), row.days);
        EXPECT_EQ(row.span.GetHours(), row.hours);
        EXPECT_EQ(row.span.GetMinutes(), row.minutes);
        EXPECT_EQ(row.span.GetSeconds(), row.seconds);
    }
    CXDuration span(LLONG_MAX);
    EXPECT_EQ((span += CXDuration(1)).GetDuration(), LLONG_MAX);
    EXPECT_EQ((span -= CXDuration(LLONG_MAX)).GetDuration(), 0);
    EXPECT_TRUE(CXDuration(-1) < CXDuration() && CXDuration(-1) - 1 == CXDuration(-2));
}

} // namespace
