// SPDX-License-Identifier: MIT
// Runs a test in another time zone. Zones are given as POSIX rules, so that no zone files are needed.

#pragma once

#include "tests/support/scoped_variable.h"

#include <ctime>
#include <optional>

class TimeZone {
public:
    static constexpr char const* Utc = "UTC0";
    /// Summer from the last Sunday of March, 01:00 UTC, to the last one of October, 01:00 UTC.
    static constexpr char const* Paris = "CET-1CEST,M3.5.0,M10.5.0/3";
    /// Half an hour of summer time, on the southern half of the earth.
    static constexpr char const* LordHowe = "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0";

    explicit TimeZone(char const* rule) {
        variable.emplace("TZ", rule);
        ::tzset();
    }
    ~TimeZone() {
        variable.reset();
        ::tzset();
    }

private:
    std::optional<ScopedVariable> variable;
};
