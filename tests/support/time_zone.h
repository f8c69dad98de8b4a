// SPDX-License-Identifier: MIT
// Runs a test in another time zone. Zones are given as POSIX rules, so that no zone files are needed.

#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

class TimeZone {
public:
    static constexpr char const* Utc = "UTC0";
    /// Summer from the last Sunday of March, 01:00 UTC, to the last one of October, 01:00 UTC.
    static constexpr char const* Paris = "CET-1CEST,M3.5.0,M10.5.0/3";
    /// Half an hour of summer time, on the southern half of the earth.
    static constexpr char const* LordHowe = "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0";

    explicit TimeZone(char const* rule) {
        if (char const* const value = std::getenv("TZ")) {
            hadOld = true;
            old = value;
        }
        ::setenv("TZ", rule, 1);
        ::tzset();
    }
    ~TimeZone() {
        if (hadOld)
            ::setenv("TZ", old.c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }
    TimeZone(TimeZone const&) = delete;
    TimeZone& operator=(TimeZone const&) = delete;

private:
    std::string old;
    bool hadOld = false;
};
