// SPDX-License-Identifier: MIT
#include "zeltools/platform/clock.h"

#include <algorithm>
#include <climits>

namespace platform {

namespace {

constexpr long long SecondsPerDay = 86400;
constexpr long long TicksPerSecond = 10'000'000;  // of 100 nanoseconds
constexpr long long DaysFrom1601To1970 = 134'774; // 369 years, 89 of them leap years
constexpr long long EpochTicks = DaysFrom1601To1970 * SecondsPerDay * TicksPerSecond;

constexpr long long FloorDivide(long long dividend, long long divisor) {
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

struct Date {
    long long year;
    int month; ///< 1 to 12
    int day;   ///< 1 to 31
};

/// Days since 1970-01-01. The year is taken to begin in March, so that the leap day is its last, and then
/// 400 years always have 146,097 days and the days before a month are (153 * month + 2) / 5.
constexpr long long DaysFromDate(Date const& date) {
    long long const year = date.year - (date.month <= 2 ? 1 : 0);
    long long const cycle = FloorDivide(year, 400);
    long long const yearOfCycle = year - cycle * 400;
    long long const dayOfYear = (153 * (date.month + (date.month > 2 ? -3 : 9)) + 2) / 5 + date.day - 1;
    return cycle * 146'097 + yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100 + dayOfYear - 719'468;
}

constexpr Date DateFromDays(long long days) {
    days += 719'468; // 1970-01-01 counted from 0000-03-01
    long long const cycle = FloorDivide(days, 146'097);
    long long const dayOfCycle = days - cycle * 146'097;
    long long const yearOfCycle = (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36'524 - dayOfCycle / 146'096) / 365;
    long long const dayOfYear = dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
    int const shiftedMonth = static_cast<int>((5 * dayOfYear + 2) / 153);
    int const month = shiftedMonth + (shiftedMonth < 10 ? 3 : -9);
    return {yearOfCycle + cycle * 400 + (month <= 2 ? 1 : 0), month,
            static_cast<int>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1)};
}

static_assert(DaysFromDate({1970, 1, 1}) == 0 && DaysFromDate({1601, 1, 1}) == -DaysFrom1601To1970);

/// 0 for Sunday; 1970-01-01 was a Thursday.
constexpr int DayOfWeek(long long days) {
    return static_cast<int>((days % 7 + 11) % 7);
}

unsigned long long Ticks(FILETIME const& fileTime) {
    return static_cast<unsigned long long>(fileTime.dwHighDateTime) << 32 | fileTime.dwLowDateTime;
}

/// File times have 63 bits: with the top bit set they mean nothing.
bool StoreTicks(long long ticks, FILETIME* fileTime) {
    if (ticks < 0)
        return false;
    *fileTime = {static_cast<unsigned int>(ticks), static_cast<unsigned int>(ticks >> 32)};
    return true;
}

/// Seconds since 1970 of a record taken as UTC, every field of any size.
long long NaiveSeconds(std::tm const& record) {
    long long const months = static_cast<long long>(record.tm_year) * 12 + record.tm_mon;
    long long const year = FloorDivide(months, 12);
    int const month = static_cast<int>(months - year * 12);
    long long const days = DaysFromDate({1900 + year, month + 1, 1}) + record.tm_mday - 1;
    return days * SecondsPerDay + record.tm_hour * 3600LL + record.tm_min * 60LL + record.tm_sec;
}

/// How far local time lies ahead of UTC at an instant.
bool OffsetAt(long long seconds, long long* offset, bool* daylight) {
    std::tm local;
    if (!SecondsToLocal(seconds, &local))
        return false;
    *offset = NaiveSeconds(local) - seconds;
    *daylight = local.tm_isdst > 0;
    return true;
}

} // namespace

bool FileTimeToSystemTime(FILETIME const* fileTime, SYSTEMTIME* systemTime) {
    unsigned long long const ticks = Ticks(*fileTime);
    if (ticks >> 63)
        return false;
    long long const seconds = static_cast<long long>(ticks / TicksPerSecond);
    long long const days = seconds / SecondsPerDay - DaysFrom1601To1970;
    int const secondOfDay = static_cast<int>(seconds % SecondsPerDay);
    Date const date = DateFromDays(days);
    auto const field = [](auto value) { return static_cast<unsigned short>(value); };
    *systemTime = {field(date.year),          field(date.month),
                   field(DayOfWeek(days)),    field(date.day),
                   field(secondOfDay / 3600), field(secondOfDay / 60 % 60),
                   field(secondOfDay % 60),   field(ticks % TicksPerSecond / 10'000)};
    return true;
}

bool SystemTimeToFileTime(SYSTEMTIME const* systemTime, FILETIME* fileTime) {
    SYSTEMTIME const& time = *systemTime;
    if (time.wYear < 1601 || time.wYear > 30827 || time.wMonth < 1 || time.wMonth > 12 || time.wHour > 23 ||
        time.wMinute > 59 || time.wSecond > 59 || time.wMilliseconds > 999)
        return false;
    long long const days = DaysFromDate({time.wYear, time.wMonth, time.wDay});
    Date const real = DateFromDays(days);
    if (real.month != time.wMonth || real.day != time.wDay)
        return false; // the month has no such day
    long long const seconds =
        (days + DaysFrom1601To1970) * SecondsPerDay + time.wHour * 3600 + time.wMinute * 60 + time.wSecond;
    return StoreTicks(seconds * TicksPerSecond + time.wMilliseconds * 10'000LL, fileTime);
}

bool FileTimeToLocalFileTime(FILETIME const* fileTime, FILETIME* localFileTime) {
    unsigned long long const ticks = Ticks(*fileTime);
    long long offset = 0;
    bool daylight = false;
    if (ticks >> 63 || !OffsetAt(FileTimeToSeconds(*fileTime), &offset, &daylight))
        return false;
    long long local = 0;
    return !__builtin_add_overflow(static_cast<long long>(ticks), offset * TicksPerSecond, &local) &&
           StoreTicks(local, localFileTime);
}

long long FileTimeToSeconds(FILETIME const& fileTime) {
    return static_cast<long long>(Ticks(fileTime) / TicksPerSecond) - DaysFrom1601To1970 * SecondsPerDay;
}

bool SecondsToFileTime(long long seconds, FILETIME* fileTime) {
    constexpr long long First = -DaysFrom1601To1970 * SecondsPerDay;
    constexpr long long Last = (LLONG_MAX - EpochTicks) / TicksPerSecond;
    if (seconds < First || seconds > Last)
        return false;
    return StoreTicks(seconds * TicksPerSecond + EpochTicks, fileTime);
}

bool SecondsToUtc(long long seconds, std::tm* record) {
    long long const days = FloorDivide(seconds, SecondsPerDay);
    int const secondOfDay = static_cast<int>((seconds % SecondsPerDay + SecondsPerDay) % SecondsPerDay);
    Date const date = DateFromDays(days);
    if (date.year - 1900 < INT_MIN || date.year - 1900 > INT_MAX)
        return false;
    std::tm result{};
    result.tm_year = static_cast<int>(date.year - 1900);
    result.tm_mon = date.month - 1;
    result.tm_mday = date.day;
    result.tm_hour = secondOfDay / 3600;
    result.tm_min = secondOfDay / 60 % 60;
    result.tm_sec = secondOfDay % 60;
    result.tm_wday = DayOfWeek(days);
    result.tm_yday = static_cast<int>(days - DaysFromDate({date.year, 1, 1}));
    *record = result;
    return true;
}

long long LocalToSeconds(std::tm* record) {
    long long const naive = NaiveSeconds(*record);

    // The offsets on both sides of the date; they differ only about a change of the clocks.
    struct Side {
        long long offset = 0;
        bool daylight = false;
    } before, after;
    if (!OffsetAt(naive - SecondsPerDay, &before.offset, &before.daylight) ||
        !OffsetAt(naive + SecondsPerDay, &after.offset, &after.daylight))
        return -1;

    // An instant fits where the clock that showed it really was at that offset: none in an hour that is left out,
    // two in an hour that comes twice. Standard time is the smaller offset, and it gives the later instant.
    Side const larger = before.offset >= after.offset ? before : after;
    Side const smaller = before.offset >= after.offset ? after : before;
    bool fitsLarger = false;
    bool fitsSmaller = false;
    Side found;
    if (OffsetAt(naive - larger.offset, &found.offset, &found.daylight))
        fitsLarger = found.offset == larger.offset;
    if (OffsetAt(naive - smaller.offset, &found.offset, &found.daylight))
        fitsSmaller = found.offset == smaller.offset;

    int const wanted = record->tm_isdst;
    Side const fitting = fitsSmaller ? smaller : larger; // also the answer to an hour that is left out
    long long seconds = naive - fitting.offset;
    if (wanted >= 0 && fitting.daylight != (wanted > 0)) {
        Side const other = fitsSmaller ? larger : smaller;
        bool const otherFits = fitsSmaller ? fitsLarger : !fitsLarger;
        if (otherFits && other.daylight == (wanted > 0))
            seconds = naive - other.offset;
        else
            seconds += wanted > 0 ? -3600 : 3600;
    }

    std::tm normalised;
    if (!SecondsToLocal(seconds, &normalised))
        return -1;
    *record = normalised;
    return seconds;
}

} // namespace platform
