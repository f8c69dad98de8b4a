// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xtime.h"

#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/platform/clock.h"

namespace {

/// -1 stands for a failure and for the second before 1970 alike.
long long SecondsOrThrow(std::tm& record) {
    long long const seconds = platform::LocalToSeconds(&record);
    if (seconds == -1)
        detail::ThrowInvalidArg();
    return seconds;
}

int LocalPart(long long seconds, int std::tm::*field, int correction) {
    std::tm record;
    return platform::SecondsToLocal(seconds, &record) ? detail::SaturatedAdd(record.*field, correction) : 0;
}

CXTString<char16_t> FormatRecord(bool brokenDown, std::tm const& record, char16_t const* format) {
    if (!brokenDown)
        return format;
    char16_t text[256];
    std::size_t const length = platform::FormatTime(text, 256, format, record);
    return CXTString<char16_t>(text, static_cast<int>(length));
}

} // namespace

CXTime::CXTime(std::tm const* record) {
    if (!record)
        return;
    std::tm copy = *record;
    seconds = SecondsOrThrow(copy);
}

CXTime::CXTime(int year, int month, int day, int hour, int minute, int second, int isDst) {
    std::tm record{};
    record.tm_year = detail::SaturatedSubtract(year, 1900);
    record.tm_mon = detail::SaturatedSubtract(month, 1);
    record.tm_mday = day;
    record.tm_hour = hour;
    record.tm_min = minute;
    record.tm_sec = second;
    record.tm_isdst = isDst;
    seconds = SecondsOrThrow(record);
}

CXTime CXTime::GetTickCount() {
    return platform::CurrentSeconds();
}

int CXTime::GetYear() const {
    return LocalPart(seconds, &std::tm::tm_year, 1900);
}
int CXTime::GetMonth() const {
    return LocalPart(seconds, &std::tm::tm_mon, 0);
}
int CXTime::GetDay() const {
    return LocalPart(seconds, &std::tm::tm_mday, 0);
}
int CXTime::GetHour() const {
    return LocalPart(seconds, &std::tm::tm_hour, 0);
}
int CXTime::GetMinute() const {
    return LocalPart(seconds, &std::tm::tm_min, 0);
}
int CXTime::GetSecond() const {
    return LocalPart(seconds, &std::tm::tm_sec, 0);
}
int CXTime::GetDayOfWeek() const {
    return LocalPart(seconds, &std::tm::tm_wday, 1);
}

bool CXTime::GetUTCTm(std::tm* record) const {
    if (!record)
        detail::ThrowInvalidArg();
    return platform::SecondsToUtc(seconds, record);
}

bool CXTime::GetLocalTm(std::tm* record) const {
    if (!record)
        detail::ThrowInvalidArg();
    return platform::SecondsToLocal(seconds, record);
}

CXTString<char16_t> CXTime::Format(char16_t const* format) const {
    std::tm record{};
    return format ? FormatRecord(GetLocalTm(&record), record, format) : CXTString<char16_t>();
}

CXTString<char16_t> CXTime::FormatGmt(char16_t const* format) const {
    std::tm record{};
    return format ? FormatRecord(GetUTCTm(&record), record, format) : CXTString<char16_t>();
}

bool xTimeFromSystemTime(CXTime& time, SYSTEMTIME const& systemTime, int isDst) {
    if (systemTime.wYear < 1900)
        time = 0;
    else
        time = CXTime(systemTime.wYear, systemTime.wMonth, systemTime.wDay, systemTime.wHour, systemTime.wMinute,
                      systemTime.wSecond, isDst);
    return true;
}

bool xTimeFromFileTime(CXTime& time, FILETIME const& fileTime, int isDst) {
    FILETIME local;
    SYSTEMTIME broken;
    if (platform::FileTimeToLocalFileTime(&fileTime, &local) && platform::FileTimeToSystemTime(&local, &broken))
        return xTimeFromSystemTime(time, broken, isDst);
    time = 0;
    return false;
}

bool xTimeGetAsSystemTime(SYSTEMTIME& systemTime, CXTime const& time) {
    std::tm record;
    if (!time.GetLocalTm(&record) || record.tm_year < -1900 || record.tm_year > 65535 - 1900)
        return false;
    auto const field = [](int value) { return static_cast<unsigned short>(value); };
    systemTime = {field(record.tm_year + 1900), field(record.tm_mon + 1), field(record.tm_wday), field(record.tm_mday),
                  field(record.tm_hour),        field(record.tm_min),     field(record.tm_sec),  0};
    return true;
}

long long timeGetTick() {
    return static_cast<long long>(platform::GetTickCount64());
}
