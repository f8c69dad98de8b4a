// SPDX-License-Identifier: MIT
#include "zeltools/platform/clock.h"

#include "tests/support/time_zone.h"
#include "tests/support/vectors.h"

#include <climits>
#include <gtest/gtest.h>
#include <map>
#include <set>

using namespace platform;

namespace {

FILETIME FileTimeOf(unsigned long long ticks) {
    return {static_cast<unsigned int>(ticks), static_cast<unsigned int>(ticks >> 32)};
}

unsigned long long TicksOf(FILETIME const& time) {
    return static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

constexpr char const* SystemTimeColumns[] = {"year", "month",  "dayofweek", "day",
                                             "hour", "minute", "second",    "milliseconds"};

SYSTEMTIME SystemTimeOf(std::vector<long long> const& fields) {
    auto const field = [&fields](std::size_t i) { return static_cast<unsigned short>(fields[i]); };
    return {field(0), field(1), field(2), field(3), field(4), field(5), field(6), field(7)};
}

std::vector<long long> Fields(SYSTEMTIME const& t) {
    return {t.wYear, t.wMonth, t.wDayOfWeek, t.wDay, t.wHour, t.wMinute, t.wSecond, t.wMilliseconds};
}

std::vector<long long> Fields(std::tm const& t) {
    return {t.tm_year, t.tm_mon, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec, t.tm_wday, t.tm_yday, t.tm_isdst};
}

template <class Columns>
std::vector<long long> Cells(vectors::Row const& row, Columns const& columns) {
    std::vector<long long> cells;
    for (char const* column : columns)
        cells.push_back(row.Number(column));
    return cells;
}

std::u16string Format(char16_t const* format, std::tm const& record, std::size_t capacity = 256) {
    std::u16string text(capacity, u'?');
    text.resize(FormatTime(text.data(), capacity, format, record));
    return text;
}

TEST(FileTimes, AgreeWithTheRecordings) {
    for (vectors::Row const& row : vectors::ReadTable("file_time_to_system_time")) {
        FILETIME const fileTime = FileTimeOf(row.Hex("filetime"));
        SYSTEMTIME time{};
        ASSERT_EQ(FileTimeToSystemTime(&fileTime, &time), row.Truth("returned")) << row;
        if (row.Truth("returned")) {
            EXPECT_EQ(Fields(time), Cells(row, SystemTimeColumns)) << row;
        }
    }
    for (vectors::Row const& row : vectors::ReadTable("system_time_to_file_time")) {
        SYSTEMTIME const time = SystemTimeOf(Cells(row, SystemTimeColumns));
        FILETIME fileTime{};
        ASSERT_EQ(SystemTimeToFileTime(&time, &fileTime), row.Truth("returned")) << row;
        if (row.Truth("returned")) {
            EXPECT_EQ(TicksOf(fileTime), row.Hex("filetime")) << row;
        }
    }
    for (vectors::DocumentedRow const& row : vectors::ReadDocumented("system_time_to_file_time")) {
        std::vector<long long> fields;
        for (std::string const& cell : vectors::Split(row.inputs[0], " "))
            fields.push_back(std::stoll(cell));
        SYSTEMTIME const time = SystemTimeOf(fields);
        FILETIME fileTime{};
        EXPECT_EQ(SystemTimeToFileTime(&time, &fileTime), row.answer == "1") << row.place;
    }
}

TEST(FileTimes, TheTopBitAndTheEndsOfTheRangeFail) {
    FILETIME const none = FileTimeOf(1ULL << 63);
    SYSTEMTIME systemTime{};
    FILETIME fileTime = FileTimeOf(77);
    EXPECT_FALSE(FileTimeToSystemTime(&none, &systemTime));
    EXPECT_FALSE(FileTimeToLocalFileTime(&none, &fileTime));
    EXPECT_FALSE(SecondsToFileTime(-11'644'473'601, &fileTime)); // a second before 1601
    EXPECT_FALSE(SecondsToFileTime(LLONG_MAX, &fileTime));
    EXPECT_EQ(TicksOf(fileTime), 77u); // untouched
    ASSERT_TRUE(SecondsToFileTime(-11'644'473'600, &fileTime));
    EXPECT_EQ(TicksOf(fileTime), 0u);
    EXPECT_EQ(FileTimeToSeconds(fileTime), -11'644'473'600);

    TimeZone const zone("EST5"); // local time would lie before 1601
    EXPECT_FALSE(FileTimeToLocalFileTime(&fileTime, &fileTime));
    TimeZone const east("CET-1");
    FILETIME const last = FileTimeOf(LLONG_MAX);
    EXPECT_FALSE(FileTimeToLocalFileTime(&last, &fileTime));
}

TEST(FileTimes, BecomeLocalByTheOffsetOfTheirOwnDate) {
    TimeZone const zone(TimeZone::Paris);
    std::pair<long long, long long> const rows[] = {
        {1704110400, 3600}, {1719835200, 7200}, {1711846799, 3600}, {1711846800, 7200}};
    for (auto const& [seconds, offset] : rows) {
        FILETIME utc, local;
        ASSERT_TRUE(SecondsToFileTime(seconds, &utc));
        ASSERT_TRUE(FileTimeToLocalFileTime(&utc, &local));
        EXPECT_EQ(FileTimeToSeconds(local) - seconds, offset) << seconds;
    }
}

TEST(Calendar, AgreesWithTheRecordings) {
    constexpr char const* Columns[] = {"tm_year", "tm_mon",  "tm_mday", "tm_hour", "tm_min",
                                       "tm_sec",  "tm_wday", "tm_yday", "tm_isdst"};
    // The recorded calls refuse times before 1970 and after 3000, which files do carry; here they break down.
    std::map<std::string, std::set<long long>> const accepted = {
        {"gmtime64", {-86400, -2147483648, 253402300800}},
        {"localtime64", {-1, -2147483648}},
    };
    TimeZone const zone(TimeZone::Utc);
    for (auto const& [table, beyond] : accepted) {
        for (vectors::Row const& row : vectors::ReadTable(table)) {
            long long const seconds = row.Number("seconds");
            std::tm record{};
            bool const done = (table == "gmtime64" ? SecondsToUtc : SecondsToLocal)(seconds, &record);
            bool const recorded = row.Number("error") == 0;
            EXPECT_EQ(done, recorded || beyond.contains(seconds)) << row;
            EXPECT_FALSE(recorded && beyond.contains(seconds)) << row;
            if (recorded) {
                EXPECT_EQ(Fields(record), Cells(row, Columns)) << row;
            }
        }
    }
}

TEST(Calendar, ReachesFarBeyondTheRecordings) {
    TimeZone const zone(TimeZone::Utc);
    std::pair<long long, char16_t const*> const rows[] = {
        {-1, u"1969-12-31 23:59:59 3 365"},
        {-2147483648, u"1901-12-13 20:45:52 5 347"},
        {253402300800, u"10000-01-01 00:00:00 6 001"},
        {-62167219200, u"0000-01-01 00:00:00 6 001"}, // the year 0 is a leap year and begins on a Saturday
        {-62135596801, u"0000-12-31 23:59:59 0 366"},
    };
    for (auto const& [seconds, text] : rows) {
        std::tm utc{}, local{};
        ASSERT_TRUE(SecondsToUtc(seconds, &utc) && SecondsToLocal(seconds, &local));
        EXPECT_EQ(Format(u"%Y-%m-%d %H:%M:%S %w %j", utc), text);
        EXPECT_EQ(Fields(utc), Fields(local));
        EXPECT_EQ(LocalToSeconds(&local), seconds);
    }
    std::tm record{};
    for (long long const seconds : {LLONG_MIN, LLONG_MAX}) {
        EXPECT_FALSE(SecondsToUtc(seconds, &record) || SecondsToLocal(seconds, &record));
    }
}

TEST(LocalToSeconds, AgreesWithTheRecordings) {
    TimeZone const zone(TimeZone::Utc);
    constexpr std::pair<char const*, int std::tm::*> Given[] = {
        {"tm_year", &std::tm::tm_year},  {"tm_mon", &std::tm::tm_mon}, {"tm_mday", &std::tm::tm_mday},
        {"tm_hour", &std::tm::tm_hour},  {"tm_min", &std::tm::tm_min}, {"tm_sec", &std::tm::tm_sec},
        {"tm_isdst", &std::tm::tm_isdst}};
    constexpr char const* Normalised[] = {"year", "mon", "mday", "hour", "min", "sec", "wday", "yday", "isdst"};
    for (vectors::Row const& row : vectors::ReadTable("mktime64")) {
        std::tm record{};
        for (auto const& [column, field] : Given)
            record.*field = static_cast<int>(row.Number(column));
        EXPECT_EQ(LocalToSeconds(&record), row.Number("seconds")) << row;
        EXPECT_EQ(Fields(record), Cells(row, Normalised)) << row;
    }
}

TEST(LocalToSeconds, FollowsTheClocksOfTheZone) {
    struct Row {
        char const* zone;
        int month, day, hour, minute, isDst;
        long long seconds;
        char16_t const* shown;
    } const rows[] = {
        // Summer and winter, left to the date, agreed with and contradicted.
        {TimeZone::Paris, 7, 1, 12, 0, -1, 1719828000, u"12:00 +0200 CEST"},
        {TimeZone::Paris, 7, 1, 12, 0, 0, 1719831600, u"13:00 +0200 CEST"},
        {TimeZone::Paris, 1, 1, 12, 0, 1, 1704103200, u"11:00 +0100 CET"},
        {TimeZone::Utc, 1, 1, 12, 0, 1, 1704106800, u"11:00 +0000 UTC"},
        // 02:00 to 03:00 of 31 March does not exist; 02:00 to 03:00 of 27 October comes twice.
        {TimeZone::Paris, 3, 31, 2, 30, -1, 1711845000, u"01:30 +0100 CET"},
        {TimeZone::Paris, 3, 31, 2, 30, 1, 1711845000, u"01:30 +0100 CET"},
        {TimeZone::Paris, 3, 31, 2, 30, 0, 1711848600, u"03:30 +0200 CEST"},
        {TimeZone::Paris, 10, 27, 2, 30, -1, 1729992600, u"02:30 +0100 CET"},
        {TimeZone::Paris, 10, 27, 2, 30, 1, 1729989000, u"02:30 +0200 CEST"},
        // Summer time of half an hour: 01:30 to 02:00 of 7 April comes twice.
        {TimeZone::LordHowe, 4, 7, 1, 45, 1, 1712414700, u"01:45 +1100 +11"},
        {TimeZone::LordHowe, 4, 7, 1, 45, 0, 1712416500, u"01:45 +1030 +1030"},
    };
    for (Row const& row : rows) {
        TimeZone const zone(row.zone);
        std::tm record{0, row.minute, row.hour, row.day, row.month - 1, 124, 0, 0, row.isDst, 0, nullptr};
        EXPECT_EQ(LocalToSeconds(&record), row.seconds) << row.month << '-' << row.day << ' ' << row.isDst;
        EXPECT_EQ(Format(u"%H:%M %z %Z", record), row.shown) << row.month << '-' << row.day << ' ' << row.isDst;
    }
}

TEST(LocalToSeconds, FieldsAtTheEndsOfTheirTypeNeitherOverflowNorHang) {
    TimeZone const zone(TimeZone::Paris);
    std::tm record{};
    for (int const end : {INT_MAX, INT_MIN}) {
        record.tm_year = record.tm_mon = record.tm_mday = record.tm_hour = record.tm_min = record.tm_sec = end;
        EXPECT_EQ(LocalToSeconds(&record), -1);
        EXPECT_EQ(record.tm_sec, end); // untouched
    }
}

TEST(FormatTime, AgreesWithTheRecordings) {
    auto const check = [](long long seconds, std::u16string const& format, std::u16string const& expected) {
        std::tm record{};
        ASSERT_TRUE(SecondsToUtc(seconds, &record));
        EXPECT_EQ(Format(format.c_str(), record), expected);
    };
    for (vectors::Row const& row : vectors::ReadTable("wcsftime")) {
        SCOPED_TRACE(row);
        EXPECT_EQ(static_cast<std::size_t>(row.Number("count")), row.Wide("result").size());
        check(row.Number("seconds"), row.Wide("format"), row.Wide("result"));
    }
    for (vectors::DocumentedRow const& row : vectors::ReadDocumented("wcsftime")) {
        SCOPED_TRACE(row.place);
        check(std::stoll(row.inputs[0]), vectors::DecodeWide(row.inputs[1]), vectors::DecodeWide(row.answer));
    }
}

TEST(FormatTime, FitsExactlyOrNotAtAll) {
    std::tm record{};
    ASSERT_TRUE(SecondsToUtc(0, &record));
    EXPECT_EQ(Format(u"%Y", record, 5), u"1970");
    EXPECT_EQ(Format(u"%Y", record, 4), u"");
    EXPECT_EQ(Format(u"%c", record, 0), u"");
    EXPECT_EQ(Format(u"%#", record), u"");
    EXPECT_EQ(Format(u"%#c", record), u"Thursday, January 01, 1970 00:00:00");
    record.tm_mon = 12; // there is no such month, so no name either
    EXPECT_EQ(Format(u"%B", record), u"");
}

} // namespace
