// SPDX-License-Identifier: MIT
// The texts that stand beside a progress bar.
//
//     progressPercentText(42);          // "42 %"
//     progressTimeText(75);             // "1:15"
//     progressSecondsLeft(30, 0.25);    // 90
//
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// A position as it stands, with a percent sign: it is a percentage on a bar from 0 to 100.
ZEL_API CXTString<char16_t> progressPercentText(int position);

/// A time as minutes and seconds, from an hour on with the hours: "0:07", "12:00", "1:00:00". Below 0 it is 0.
ZEL_API CXTString<char16_t> progressTimeText(long long seconds);

/// The seconds that are left when the share `done` of the work took so many, and all of it goes on as it went.
/// @param done  From 0 to 1.
/// @return -1 where nobody can tell: nothing is done, or the answer would be more than a hundred days.
ZEL_API long long progressSecondsLeft(double secondsGone, double done);
