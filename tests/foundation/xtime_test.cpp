// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xtime.h"

#include "tests/support/time_zone.h"
#include "zeltools/foundation/thread_exceptions.h"
#include "zeltools/foundation/xexception.h"

#include <climits>
#include <gtest/gtest.h>

namespace {

/// Whether the action throws the exception for a bad argument, which is caught as hosts catch it.
template <class Action>
bool ThrowsInvalidArg(Action action) {
    try {
        action();
    } catch (CXInvalidArgException*) {
        XDeleteThreadException();
        return true;
    }
    return false;
}

TEST(XTime, PartsAreLocalAndMonthsCountFromZeroOnTheWayOut) {
    TimeZone const zone(TimeZone::Paris);
    CXTime const time(2024, 1, 15, 12, 30, 45, -1);
    EXPECT_EQ(time.GetTime(), 1705318245); // 11:30:45 UTC
    EXPECT_TRUE(time.GetYear() == 2024 && time.GetMonth() == 0 && time.GetDay() == 15);
    EXPECT_TRUE(time.GetHour() == 12 && time.GetMinute() == 30 && time.GetSecond() == 45);
    EXPECT_EQ(time.GetDayOfWeek(), 2); // a Monday
    EXPECT_EQ(time.GetElapsedDays(), 19737);
    EXPECT_EQ(CXTime(-1).GetElapsedDays(), 0);

    std::tm record{};
    ASSERT_TRUE(time.GetLocalTm(&record));
    EXPECT_EQ(CXTime(&record), time);
    ASSERT_TRUE(time.GetUTCTm(&record));
    EXPECT_EQ(record.tm_hour, 11);
    EXPECT_EQ(CXTime(static_cast<std::tm const*>(nullptr)), CXTime());
}

TEST(XTime, OnlyAResultOfMinusOneIsAnError) {
    TimeZone const zone(TimeZone::Utc);
    EXPECT_EQ(CXTime(1901, 12, 13, 20, 45, 52, 0).GetTime(), INT_MIN);
    EXPECT_EQ(CXTime(5000, 1, 1, 0, 0, 0, 0).GetTime(), 95617584000);
    EXPECT_TRUE(ThrowsInvalidArg([] { CXTime(1969, 12, 31, 23, 59, 59, 0); }));
    EXPECT_TRUE(ThrowsInvalidArg([] { CXTime(INT_MAX, INT_MAX, 1, 0, 0, 0, 0); }));
    EXPECT_TRUE(ThrowsInvalidArg([] {
        std::tm record{};
        record.tm_year = 70;
        record.tm_mday = 1;
        record.tm_sec = -1;
        CXTime{&record};
    }));
    EXPECT_TRUE(ThrowsInvalidArg([] { CXTime().GetUTCTm(nullptr); }));
    EXPECT_TRUE(ThrowsInvalidArg([] { CXTime().GetLocalTm(nullptr); }));
}

TEST(XTime, ATimeThatCannotBeBrokenDownAnswersZeroAndItsFormat) {
    CXTime const far(LLONG_MAX);
    EXPECT_EQ(far.GetYear(), 0);
    EXPECT_EQ(far.GetMonth() + far.GetDay() + far.GetHour() + far.GetMinute() + far.GetSecond(), 0);
    EXPECT_EQ(far.GetDayOfWeek(), 0);
    EXPECT_TRUE(far.Format(u"%Y") == u"%Y");
    EXPECT_TRUE(far.FormatGmt(u"at %Q") == u"at %Q");
    std::tm record{};
    record.tm_sec = 42;
    EXPECT_FALSE(far.GetLocalTm(&record) || far.GetUTCTm(&record));
    EXPECT_EQ(record.tm_sec, 42);
    SYSTEMTIME systemTime{};
    EXPECT_FALSE(xTimeGetAsSystemTime(systemTime, far));
    EXPECT_FALSE(xTimeGetAsSystemTime(systemTime, CXTime(2'010'000'000'000))); // the year 65664
}

TEST(XTime, FormatsLocallyAndInUtc) {
    TimeZone const zone(TimeZone::Paris);
    CXTime const time(2024, 7, 1, 0, 30, 0, -1);
    EXPECT_TRUE(time.Format(u"%Y-%m-%d %H:%M %z") == u"2024-07-01 00:30 +0200");
    EXPECT_TRUE(time.FormatGmt(u"%Y-%m-%d %H:%M %z") == u"2024-06-30 22:30 +0000");
    EXPECT_TRUE(time.Format(nullptr).IsEmpty());
    EXPECT_TRUE(time.FormatGmt(nullptr).IsEmpty());
    EXPECT_TRUE(time.Format(u"%Q").IsEmpty());
    std::u16string const text(251, u'x');
    EXPECT_EQ(time.Format((text + u"%Y").c_str()).GetLength(), 255);
    EXPECT_TRUE(time.Format((text + u"x%Y").c_str()).IsEmpty());
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
    EXPECT_TRUE(ThrowsInvalidArg([&time] {
        TimeZone const utc(TimeZone::Utc);
        xTimeFromSystemTime(time, {1969, 12, 0, 31, 23, 59, 59, 0}, 0);
    }));
    EXPECT_EQ(time.GetTime(), 1719828000); // untouched
}

TEST(XTime, FileTimesComeBackInSummerAndWinter) {
    TimeZone const zone(TimeZone::Paris);
    for (long long const seconds : {1704106800LL, 1719828000LL, -86400LL * 365, 95617584000LL}) {
        unsigned long long const ticks = static_cast<unsigned long long>(seconds + 11'644'473'600) * 10'000'000 + 9;
        FILETIME const fileTime{static_cast<unsigned int>(ticks), static_cast<unsigned int>(ticks >> 32)};
        CXTime time;
        EXPECT_TRUE(xTimeFromFileTime(time, fileTime, -1));
        EXPECT_EQ(time.GetTime(), seconds);
    }
    CXTime time(5);
    EXPECT_FALSE(xTimeFromFileTime(time, {0, 0x80000000}, -1));
    EXPECT_EQ(time.GetTime(), 0);
}

TEST(XDuration, PartsCutTowardsZero) {
    struct {
        CXDuration span;
        long long days, totalHours, totalMinutes;
        int hours, minutes, seconds;
    } const rows[] = {
        {CXDuration(1, 2, 3, 4), 1, 26, 1563, 2, 3, 4},
        {CXDuration(-90), 0, 0, -1, 0, -1, -30},
        {CXDuration(-1, 0, 0, 1), 0, -23, -1439, -23, -59, -59},
        {CXDuration(0, 0, 0, INT_MIN), -24855, -596523, -35791394, -3, -14, -8},
        {CXDuration(INT_MAX, 23, 59, 59), INT_MAX, 51539607551, 3092376453119, 23, 59, 59},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(row.span.GetDays(), row.days);
        EXPECT_EQ(row.span.GetTotalHours(), row.totalHours);
        EXPECT_EQ(row.span.GetTotalMinutes(), row.totalMinutes);
        EXPECT_EQ(row.span.GetHours(), row.hours);
        EXPECT_EQ(row.span.GetMinutes(), row.minutes);
        EXPECT_EQ(row.span.GetSeconds(), row.seconds);
    }
    EXPECT_EQ(CXDuration(1, 2, 3, 4).GetTotalSeconds(), 93784);
    CXDuration span(LLONG_MAX);
    EXPECT_EQ((span += CXDuration(1)).GetDuration(), LLONG_MAX);
    EXPECT_EQ((span -= CXDuration(LLONG_MAX)).GetDuration(), 0);
    EXPECT_TRUE(CXDuration(-1) < CXDuration() && CXDuration(-1) - 1 == CXDuration(-2));
}

} // namespace
