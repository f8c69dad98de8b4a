// SPDX-License-Identifier: MIT
// Dates as people read and type them: day first, in the calling thread's language, in local time.
//
//     CXTime const time(2003, 9, 2, 22, 5, 0, -1);
//     GetFileDateString(time, true, true, false);     // "02/09/2003 22:05"
//     GetFileDateString(time, true, false, true);     // "Tuesday 2 September 2003"
//
//     CXTime back;
//     ConvertText2Time(u"02/09/2003 22:05", back);    // true; back == time
//     ConvertText2Time(u"2003-09-02", back);          // true; midnight
//
// For any other form there is CXTime::Format.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/foundation/xtime.h"

/// Writes a date.
///
/// | date | hour | text | 2 September 2003, 22:05                   |
/// |------|------|------|-------------------------------------------|
/// | yes  | no   | no   | "02/09/2003"                              |
/// | any  | no   | yes  | "Tuesday 2 September 2003"                |
/// | yes  | yes  | no   | "02/09/2003 22:05"                        |
/// | any  | yes  | yes  | "Tuesday 2 September 2003 22:05"          |
/// | no   | yes  | no   | " 22:05": the time always follows a blank |
/// | no   | no   | no   | ""                                        |
///
/// @return empty as well for a time whose year a broken-down record cannot hold.
/// Threads: any.
ZEL_API CXTString<char16_t> GetFileDateString(CXTime const& time, bool date, bool hour, bool text);

/// Reads a date in local time: each form that GetFileDateString writes, with or without seconds, and ISO 8601 dates.
///
/// | Text                                                  | Read                                               |
/// |-------------------------------------------------------|----------------------------------------------------|
/// | 02/09/2003, 2/9/2003, 02.09.2003, 02-09-2003          | day, month, year                                   |
/// | Tuesday 2 September 2003, mardi 2 septembre 2003      | in English and French; weekday optional, unchecked |
/// | 2003-09-02, 2003/09/02, 20030902                      | year, month, day                                   |
/// | 2003-09-02T22:05:07Z, ... 22:05:07.25+02:00           | with a zone: that moment                           |
/// | 22:05 or 22:05:07, alone                              | today                                              |
///
/// White space around the text and between date and time is skipped; letters are compared without case.
///
/// @param time  Untouched on failure.
/// @return whether the whole text is a date that exists.
/// Threads: any.
ZEL_API bool ConvertText2Time(CXTString<char16_t> const& text, CXTime& time);
