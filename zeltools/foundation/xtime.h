// SPDX-License-Identifier: MIT
// A calendar time in whole seconds, its parts in local time, and its text.
//
//     CXTime time(2024, 1, 15, 12, 0, 0, -1);     // noon in local time
//     time.GetYear();                             // 2024
//     time.GetMonth();                            // 0: months count from 0 here, from 1 in the constructor
//     time.Format(u"%Y-%m-%d");                   // "2024-01-15"
//     (time + CXDuration(1, 0, 0, 0)).GetDay();   // 16
//
// For measuring elapsed time there is timeGetTick.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/block_movable.h"
#include "zeltools/foundation/xduration.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/platform/system_records.h"

#include <compare>
#include <concepts>
#include <ctime>

class CXArchive;

/// Seconds since 1970-01-01 00:00:00 UTC in 64 bits, before and after; 0 is the empty time. Sums stop at the ends.
///
/// Local time follows the process's time zone by the offset that holds at the date. The getters answer 0 for a time
/// whose year a broken-down record cannot hold, and never raise an error.
/// Threads: a plain value; any thread, as long as nobody changes the time zone meanwhile.
class ZEL_API CXTime final {
public:
    CXTime() = default;

    /// Takes a count of seconds as it stands.
    template <std::integral T>
    CXTime(T count) : seconds(static_cast<long long>(count)) {}

    /// A record in local time, whose fields may lie outside their ranges; null gives 0.
    /// Errors:  CXInvalidArgException where there is no such time, and for the second before 1970, which cannot be
    ///          told from a failure.
    CXTime(std::tm const* record);

    /// Local time.
    /// @param year   The full year.
    /// @param month  From 1.
    /// @param isDst  Above 0: daylight saving time is meant; 0: standard time; below 0: the date decides.
    /// Errors:  as above.
    CXTime(int year, int month, int day, int hour, int minute, int second, int isDst);

    /// The present time. It counts seconds; in spite of its name it is no tick counter.
    static CXTime GetTickCount();

    /// The seconds since 1970 UTC.
    long long GetTime() const { return seconds; }

    /// Writes the seconds to a storing archive, 8 bytes, or reads them from a loading one.
    /// Errors:  those of the archive; the time then stays.
    virtual void Serialize(CXArchive& archive);

    // ---- Parts, in local time ----

    /// The full year.
    int GetYear() const;
    /// From 0 for January to 11. The constructor counts months from 1, so a month that goes from here to there needs
    /// 1 added.
    int GetMonth() const;
    /// Day of the month, from 1.
    int GetDay() const;
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    /// From 1 for Sunday to 7.
    int GetDayOfWeek() const;

    /// Days since 1970, cut towards zero, with no regard to the time zone.
    long long GetElapsedDays() const { return seconds / 86400; }

    /// Breaks the time down.
    /// @return false, with the record untouched, for a year that it cannot hold.
    /// Errors:  CXInvalidArgException for null.
    bool GetUTCTm(std::tm* record) const;
    bool GetLocalTm(std::tm* record) const;

    // ---- Text ----

    /// Writes the time by a format of wcsftime, in local time or in UTC: the C11 conversions, and # for no leading
    /// zeros or the long forms of %c and %x. Names follow the process's locale.
    /// @return the text; empty for null, for a format with an unknown conversion or a percent sign at its end, and
    ///         for a text of more than 255 units. A time that cannot be broken down gives the format as it stands.
    CXTString<char16_t> Format(char16_t const* format) const;
    CXTString<char16_t> FormatGmt(char16_t const* format) const;

    // ---- Arithmetic and order ----

    CXTime& operator=(long long count) {
        seconds = count;
        return *this;
    }
    CXDuration operator-(CXTime const& other) const { return detail::SaturatedSubtract(seconds, other.seconds); }
    CXTime operator+(CXDuration span) const { return detail::SaturatedAdd(seconds, span.GetDuration()); }
    CXTime operator-(CXDuration span) const { return detail::SaturatedSubtract(seconds, span.GetDuration()); }
    auto operator<=>(CXTime const& other) const = default;

private:
    long long seconds = 0;
};

template <>
inline constexpr bool xIsBlockMovable<CXTime> = true;

/// Takes a broken-down date in local time. Milliseconds and weekday are not looked at; a year below 1900 gives 0.
/// @param isDst  As in the constructor of CXTime.
/// @return true.
/// Errors:  CXInvalidArgException where there is no such time; the time is then untouched.
ZEL_API bool xTimeFromSystemTime(CXTime& time, SYSTEMTIME const& systemTime, int isDst);

/// Takes a file time, by way of its local date.
/// @return false, with the time 0, for a file time that is none (the top bit is set).
/// Errors:  as xTimeFromSystemTime.
ZEL_API bool xTimeFromFileTime(CXTime& time, FILETIME const& fileTime, int isDst);

/// Breaks a time down in local time, with 0 milliseconds.
/// @return false, with the record untouched, for a year that it cannot hold.
ZEL_API bool xTimeGetAsSystemTime(SYSTEMTIME& systemTime, CXTime const& time);

/// Milliseconds since the system started; never goes back.
ZEL_API long long timeGetTick();
