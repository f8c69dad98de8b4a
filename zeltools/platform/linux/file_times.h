// SPDX-License-Identifier: MIT
// The system's clock values and the toolkit's file times: 100 ns steps since 1601.

#pragma once

#include "zeltools/platform/system_records.h"

#include <ctime>

namespace platform {

inline constexpr long long StepsPerSecond = 10'000'000;
inline constexpr long long NanosecondsPerStep = 100;
inline constexpr long long SecondsFrom1601To1970 = 11'644'473'600;

/// A time before 1601 becomes 1601.
inline FILETIME ToFileTime(long long seconds, unsigned int nanoseconds) {
    long long const steps =
        (seconds + SecondsFrom1601To1970) * StepsPerSecond + static_cast<long long>(nanoseconds) / NanosecondsPerStep;
    auto const value = static_cast<unsigned long long>(steps < 0 ? 0 : steps);
    return {static_cast<unsigned int>(value), static_cast<unsigned int>(value >> 32)};
}

inline timespec ToTimeSpec(FILETIME const& time) {
    auto const steps =
        static_cast<long long>(static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime);
    timespec result{};
    result.tv_sec = steps / StepsPerSecond - SecondsFrom1601To1970;
    result.tv_nsec = steps % StepsPerSecond * NanosecondsPerStep;
    return result;
}

} // namespace platform
