// SPDX-License-Identifier: MIT
// The two time records that public signatures share with the system. This is the only header of the platform
// folder that is installed.

#pragma once

/// Counts 100-nanosecond intervals since 1 January 1601, 00:00 UTC, split into two halves.
struct FILETIME {
    unsigned int dwLowDateTime;
    unsigned int dwHighDateTime;
};

/// A broken-down date. Months count from 1, weekdays from 0 (Sunday).
struct SYSTEMTIME {
    unsigned short wYear;
    unsigned short wMonth;
    unsigned short wDayOfWeek;
    unsigned short wDay;
    unsigned short wHour;
    unsigned short wMinute;
    unsigned short wSecond;
    unsigned short wMilliseconds;
};
