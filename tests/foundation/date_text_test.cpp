// SPDX-License-Identifier: MIT
#include "zeltools/foundation/date_text.h"

#include "tests/support/printers.h"
#include "tests/support/time_zone.h"
#include "zeltools/foundation/thread_language.h"

#include <gtest/gtest.h>

namespace {

TEST(GetFileDateString, WritesInTheThreadsLanguage) {
    SetThreadLanguage(1036);
    CXTime const time(2003, 9, 2, 22, 5, 59, -1);
    EXPECT_EQ(GetFileDateString(time, true, true, true), u"mardi 2 septembre 2003 22:05");
    EXPECT_EQ(GetFileDateString(time, true, false, false), u"02/09/2003");
    EXPECT_EQ(GetFileDateString(time, false, false, false), u"");
    EXPECT_EQ(GetFileDateString(CXTime(1LL << 62), true, true, false), u""); // beyond every year
}

// Every form comes back, for years of all lengths and for the second before 1970.
TEST(ConvertText2Time, ReadsWhatIsWritten) {
    TimeZone const zone(TimeZone::Utc);
    for (long long const seconds :
         {1062540300LL, 0LL, -60LL, -62135596800LL, -63000000000LL, 399999999960LL, 67767976233532740LL}) {
        for (int const language : {1033, 1036}) {
            SetThreadLanguage(static_cast<unsigned short>(language));
            for (bool const text : {false, true}) {
                CXTime back;
                EXPECT_TRUE(ConvertText2Time(GetFileDateString(CXTime(seconds), true, true, text), back));
                EXPECT_EQ(back.GetTime(), seconds);
            }
        }
    }
}

TEST(ConvertText2Time, ReadsDatesAndNothingElse) {
    TimeZone const zone(TimeZone::Paris); // two hours ahead in September, one in January
    struct Row {
        char16_t const* text;
        long long seconds; ///< 1 for no date
    };
    constexpr long long midnight = 1062453600; // 2003-09-01T22:00:00Z
    Row const rows[] = {
        {u"  2.9.2003\t22:05:07 ", midnight + 79507},
        {u"tuesday, 2 SEPTEMBER 2003", midnight},
        {u"2 AO\u00DBT 2003", midnight - 31 * 86400},
        {u"2003-09-02", midnight},
        {u"20030902T01:00", midnight + 3600},
        {u"2003-09-02T00:00:00Z", midnight + 7200},
        {u"2003-09-02T00:00:00.999-01:30", midnight + 7200 + 5400},
        {u"2000-02-29T00:00:00+00", 951782400},
        {u"1969-12-31T23:59:59Z", -1},
        {u"01/01/1970 00:59:59", -1},
        {u"", 1},
        {u"02/09/03", 1}, // of which century?
        {u"02/13/2003", 1},
        {u"29/02/1900", 1},
        {u"02/09/2003 24:00", 1},
        {u"02/09/2003 22:5", 1},
        {u"02/09/2003T", 1},
        {u"02/09/2003 22:05+25", 1},
        {u"02/09/2003 tomorrow", 1},
        {u"02/09/99999999999", 1},
    };
    for (Row const& row : rows) {
        CXTime time(1);
        EXPECT_EQ(ConvertText2Time(row.text, time), row.seconds != 1) << CXTString<char>(row.text);
        EXPECT_EQ(time.GetTime(), row.seconds) << CXTString<char>(row.text);
    }
    CXTime today;
    EXPECT_TRUE(ConvertText2Time(u" 22:05", today));
    EXPECT_EQ(GetFileDateString(today, false, true, false), u" 22:05");
    EXPECT_LT((today - CXTime::GetTickCount()).GetDuration(), 86400);
}

} // namespace
