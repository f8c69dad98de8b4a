// SPDX-License-Identifier: MIT
// The clock and the calendar: file times, broken-down dates, local time and the millisecond counter.
//
// Calendar arithmetic is the proleptic Gregorian one, days counted by 400-year cycles as in Howard Hinnant's
// "chrono-compatible low-level date algorithms"; only the time zone and the clocks ask the system.
// Threads: all of it from any thread, as long as nobody changes TZ meanwhile.

#pragma once

#include "zeltools/platform/system_records.h"

#include <ctime>
#include <string>

namespace platform {

/// Breaks a file time down in UTC.
/// @return false, with the record untouched, for a file time with the top bit set.
bool FileTimeToSystemTime(FILETIME const* fileTime, SYSTEMTIME* systemTime);

/// The reverse; the weekday is not looked at.
/// @return false, with the file time untouched, for a date that does not exist or lies outside 1601 to 30827.
bool SystemTimeToFileTime(SYSTEMTIME const* systemTime, FILETIME* fileTime);

/// Moves a file time from UTC to local time, by the offset that holds at that date.
/// @return false, with the result untouched, where either time cannot be held.
bool FileTimeToLocalFileTime(FILETIME const* fileTime, FILETIME* localFileTime);

/// The present time as a file time, in UTC.
void GetSystemTimeAsFileTime(FILETIME* fileTime);

/// Between the two ways to count: seconds since 1970 and a file time. Fractions of a second are cut downwards.
long long FileTimeToSeconds(FILETIME const& fileTime);

/// @return false, with the file time untouched, before 1601 or from the year 30828 on.
bool SecondsToFileTime(long long seconds, FILETIME* fileTime);

/// Milliseconds since the system started, sleep included. Never goes back.
unsigned long long GetTickCount64();

/// Seconds since 1970 UTC, now.
long long CurrentSeconds();

/// Breaks seconds since 1970 down in UTC or in local time, for every year that the record can hold.
/// @return false, with the record untouched, for a year beyond it.
bool SecondsToUtc(long long seconds, std::tm* record);
bool SecondsToLocal(long long seconds, std::tm* record);

/// The seconds since 1970 of a record in local time, whose fields may lie outside their ranges: January 366 is
/// 31 December of a leap year. tm_isdst says which of two offsets is meant; below 0 the date decides, an hour that
/// comes twice is its second one, and an hour that is left out is told by the offset behind it, so that 02:30 becomes
/// 01:30. A tm_isdst that the date contradicts moves the time by an hour.
/// The record receives the normalised date.
/// @return -1, with the record untouched, for a year beyond the record; -1 is also the second before 1970.
long long LocalToSeconds(std::tm* record);

/// How far the record's own offset lies ahead of UTC, in minutes, and its zone's abbreviation.
int UtcOffsetMinutes(std::tm const& record);
std::u16string ZoneName(std::tm const& record);

/// One of the pieces that follow the process's locale: a, A, b, B, p, c, x, X or r of the C library's strftime.
std::u16string LocaleTimeText(char piece, std::tm const& record);

/// Writes a date by a wcsftime format: the conversions of C11, the flag # (no leading zeros; long forms for %c and %x)
/// and the modifiers E and O, which change nothing.
/// @param capacity  Room in units, terminator included.
/// @return the units written without the terminator; 0, with an empty target, where they do not fit, for an unknown
///         conversion, a percent sign at the end or a record whose fields are out of range.
std::size_t FormatTime(char16_t* target, std::size_t capacity, char16_t const* format, std::tm const& record);

} // namespace platform
