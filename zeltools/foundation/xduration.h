// SPDX-License-Identifier: MIT
// A span of time in whole seconds.
//
//     CXDuration span(1, 2, 3, 4);   // a day, 2 hours, 3 minutes, 4 seconds
//     span.GetDuration();            // 93784
//     span.GetTotalHours();          // 26
//     span.GetHours();               // 2

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/saturated.h"

#include <compare>

/// A signed 64-bit count of seconds; sums stop at the ends of it.
///
/// All divisions cut towards zero, so the parts of a negative span are negative or zero: -90 seconds are -1 minute
/// and -30 seconds.
/// Threads: a plain value.
class ZEL_API CXDuration {
public:
    constexpr CXDuration() = default;
    constexpr CXDuration(long long count) : seconds(count) {}
    /// The sum of the parts, each of any size and sign.
    constexpr CXDuration(int days, int hours, int minutes, int secondCount)
        : seconds(((static_cast<long long>(days) * 24 + hours) * 60 + minutes) * 60 + secondCount) {}

    constexpr long long GetDays() const { return seconds / 86400; }
    constexpr long long GetTotalHours() const { return seconds / 3600; }
    /// What whole days leave, in hours.
    constexpr int GetHours() const { return static_cast<int>(GetTotalHours() - GetDays() * 24); }
    constexpr long long GetTotalMinutes() const { return seconds / 60; }
    /// What whole hours leave, in minutes.
    constexpr int GetMinutes() const { return static_cast<int>(GetTotalMinutes() - GetTotalHours() * 60); }
    constexpr long long GetTotalSeconds() const { return seconds; }
    constexpr long long GetDuration() const { return seconds; }
    /// What whole minutes leave, in seconds.
    constexpr int GetSeconds() const { return static_cast<int>(seconds - GetTotalMinutes() * 60); }

    constexpr CXDuration operator+(CXDuration other) const { return detail::SaturatedAdd(seconds, other.seconds); }
    constexpr CXDuration operator-(CXDuration other) const { return detail::SaturatedSubtract(seconds, other.seconds); }
    constexpr CXDuration& operator+=(CXDuration other) { return *this = *this + other; }
    constexpr CXDuration& operator-=(CXDuration other) { return *this = *this - other; }
    constexpr auto operator<=>(CXDuration const& other) const = default;

private:
    long long seconds = 0;
};
