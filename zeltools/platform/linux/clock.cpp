// SPDX-License-Identifier: MIT
#include "zeltools/platform/clock.h"

#include <cuchar>
#include <cwchar>
#include <time.h>

namespace platform {

void GetSystemTimeAsFileTime(FILETIME* fileTime) {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    SecondsToFileTime(now.tv_sec, fileTime);
    unsigned long long const ticks =
        (static_cast<unsigned long long>(fileTime->dwHighDateTime) << 32 | fileTime->dwLowDateTime) +
        static_cast<unsigned long long>(now.tv_nsec) / 100;
    *fileTime = {static_cast<unsigned int>(ticks), static_cast<unsigned int>(ticks >> 32)};
}

unsigned long long GetTickCount64() {
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<unsigned long long>(now.tv_sec) * 1000 +
           static_cast<unsigned long long>(now.tv_nsec) / 1'000'000;
}

long long CurrentSeconds() {
    return ::time(nullptr);
}

bool SecondsToLocal(long long seconds, std::tm* record) {
    // TZ is read by the first call of the process; a host that changes it afterwards calls tzset.
    time_t const time = seconds;
    std::tm local{};
    if (!::localtime_r(&time, &local))
        return false;
    *record = local;
    return true;
}

int UtcOffsetMinutes(std::tm const& record) {
    return static_cast<int>(record.tm_gmtoff / 60);
}

std::u16string ZoneName(std::tm const& record) {
    // Abbreviations are ASCII in every zone description.
    std::u16string name;
    for (char const* c = record.tm_zone ? record.tm_zone : "UTC"; *c; ++c)
        name += static_cast<char16_t>(static_cast<unsigned char>(*c));
    return name;
}

std::u16string LocaleTimeText(char piece, std::tm const& record) {
    char const format[] = {'%', piece, '\0'};
    char text[512]; // the longest %c of the installed locales stays far below
    std::size_t const length = ::strftime(text, sizeof text, format, &record);
    std::u16string wide;
    std::mbstate_t state{};
    for (std::size_t position = 0; position < length;) {
        char16_t unit = 0;
        std::size_t const used = std::mbrtoc16(&unit, text + position, length - position, &state);
        if (used == static_cast<std::size_t>(-1) || used == static_cast<std::size_t>(-2)) {
            wide += u'\uFFFD';
            state = {};
            ++position;
            continue;
        }
        wide += unit;
        if (used != static_cast<std::size_t>(-3)) // -3: the second half of a pair, nothing was consumed
            position += used;
    }
    return wide;
}

} // namespace platform
