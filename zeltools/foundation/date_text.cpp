// SPDX-License-Identifier: MIT
#include "zeltools/foundation/date_text.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/text_format.h"
#include "zeltools/platform/clock.h"
#include "zeltools/platform/language.h"
#include "zeltools/resources/string_table_private.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>

namespace {

constexpr unsigned int firstDayName = 5710;
constexpr unsigned int firstMonthName = 5720;

/// Lower case for the letters of the names: Latin 1, whatever the process's locale is.
char16_t Lowered(char16_t unit) {
    bool const isCapital =
        (unit >= u'A' && unit <= u'Z') || (unit >= u'\u00C0' && unit <= u'\u00DE' && unit != u'\u00D7');
    return isCapital ? static_cast<char16_t>(unit + 0x20) : unit;
}

/// The place of a word among the names in a run of rows, in either language; -1 for none.
int FindName(std::u16string_view word, unsigned int firstRow, int count) {
    auto const isSame = [](char16_t a, char16_t b) { return Lowered(a) == Lowered(b); };
    for (int i = 0; i < count; ++i) {
        for (unsigned short const language : {platform::LanguageEnglish, platform::LanguageFrench}) {
            std::u16string_view const name = platform::FindString(firstRow + static_cast<unsigned int>(i), language);
            if (std::equal(word.begin(), word.end(), name.begin(), name.end(), isSame))
                return i;
        }
    }
    return -1;
}

/// The name at a place of a run of rows, in the thread's language.
char16_t const* Name(unsigned int firstRow, int index) {
    return platform::FindString(firstRow + static_cast<unsigned int>(index), platform::GetThreadUILanguage()).data();
}

bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

int DaysOfMonth(long long year, int month) {
    bool const isLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month == 2 ? 28 + isLeap : month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

/// A date as it is read from the front of a text to its end. Each step answers whether the text went on as the step
/// wants it, and leaves the text alone otherwise.
class DateReader {
public:
    explicit DateReader(std::u16string_view text) : rest(text) {}

    /// The moment that the whole text means.
    std::optional<long long> Read() {
        SkipBlanks();
        bool const isRead = ReadTime() ? TakeToday() : ReadDate() && ReadTimeBehindDate();
        SkipBlanks();
        if (!isRead || !rest.empty())
            return std::nullopt;
        return Moment();
    }

private:
    static constexpr int NoNumber = -1;
    static constexpr std::size_t MaxYearDigits = 10; // as those of the last year that a broken-down record holds

    void SkipBlanks() {
        while (!rest.empty() && xIsSpace(rest.front()))
            rest.remove_prefix(1);
    }

    bool Skip(char16_t unit) {
        if (!rest.starts_with(unit))
            return false;
        rest.remove_prefix(1);
        return true;
    }

    std::size_t CountDigits() const {
        return static_cast<std::size_t>(std::find_if_not(rest.begin(), rest.end(), IsDigit) - rest.begin());
    }

    template <class T = int>
    T Number(std::size_t digits) {
        T number = 0;
        for (char16_t const digit : rest.substr(0, digits))
            number = number * 10 + (digit - u'0');
        rest.remove_prefix(digits);
        return number;
    }

    /// One or two digits.
    bool ReadSmall(int& number) {
        std::size_t const digits = CountDigits();
        if (digits < 1 || digits > 2)
            return false;
        number = Number(digits);
        return true;
    }

    /// At least four characters, so that no two-digit year is taken for one of the first century.
    bool ReadYear() {
        bool const isNegative = Skip(u'-');
        std::size_t const digits = CountDigits();
        if (digits + isNegative < 4 || digits > MaxYearDigits)
            return false;
        year = Number<long long>(digits);
        if (isNegative)
            year = -year;
        return true;
    }

    std::u16string_view ReadWord() {
        auto const isLetter = [](char16_t unit) {
            return !IsDigit(unit) && !xIsSpace(unit) && unit != u',' && unit != u'.';
        };
        auto const end = std::find_if_not(rest.begin(), rest.end(), isLetter);
        std::u16string_view const word = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
        rest.remove_prefix(word.size());
        return word;
    }

    bool ReadDate() {
        std::size_t const digits = CountDigits();
        if (digits == 0) {
            if (FindName(ReadWord(), firstDayName, 7) < 0)
                return false;
            Skip(u',');
            SkipBlanks();
            return ReadLongDate();
        }
        std::u16string_view const behind = rest.substr(digits);
        if (digits == 8 && (behind.empty() || !IsSeparator(behind.front()))) {
            year = Number(4);
            record.tm_mon = Number(2);
            record.tm_mday = Number(2);
            return true;
        }
        if (behind.empty() || !IsSeparator(behind.front()))
            return ReadLongDate();
        char16_t const separator = behind.front();
        if (digits > 2)
            return ReadYear() && Skip(separator) && ReadSmall(record.tm_mon) && Skip(separator) &&
                   ReadSmall(record.tm_mday);
        return ReadSmall(record.tm_mday) && Skip(separator) && ReadSmall(record.tm_mon) && Skip(separator) &&
               ReadYear();
    }

    static bool IsSeparator(char16_t unit) { return unit == u'/' || unit == u'-' || unit == u'.'; }

    bool ReadLongDate() {
        if (!ReadSmall(record.tm_mday))
            return false;
        SkipBlanks();
        record.tm_mon = FindName(ReadWord(), firstMonthName, 12) + 1;
        SkipBlanks();
        return ReadYear();
    }

    /// Hours and minutes, seconds and their cut fraction. Nothing is taken of a text that does not begin so.
    bool ReadTime() {
        std::u16string_view const start = rest;
        if (!ReadSmall(record.tm_hour) || !Skip(u':')) {
            rest = start;
            record.tm_hour = 0;
            return false;
        }
        if (CountDigits() != 2)
            record.tm_min = NoNumber;
        else
            record.tm_min = Number(2);
        if (Skip(u':')) {
            record.tm_sec = CountDigits() == 2 ? Number(2) : NoNumber;
            if (Skip(u'.') || Skip(u','))
                rest.remove_prefix(CountDigits());
        }
        return true;
    }

    bool TakeToday() {
        std::tm today;
        if (!platform::SecondsToLocal(platform::CurrentSeconds(), &today))
            return false;
        year = today.tm_year + 1900LL;
        record.tm_mon = today.tm_mon + 1;
        record.tm_mday = today.tm_mday;
        return true;
    }

    bool ReadTimeBehindDate() {
        if (rest.starts_with(u'T') || rest.starts_with(u't'))
            return Skip(rest.front()) && ReadTime() && ReadZone();
        SkipBlanks();
        return rest.empty() || (ReadTime() && ReadZone());
    }

    bool ReadZone() {
        if (Skip(u'Z') || Skip(u'z')) {
            zoneSeconds = 0;
            return true;
        }
        if (!rest.starts_with(u'+') && !rest.starts_with(u'-'))
            return true;
        int const sign = rest.front() == u'-' ? -1 : 1;
        rest.remove_prefix(1);
        std::size_t const digits = CountDigits();
        if (digits != 2 && digits != 4)
            return false;
        int const hours = Number(2);
        int minutes = 0;
        if (digits == 4 || (Skip(u':') && CountDigits() == 2))
            minutes = Number(2);
        if (hours > 23 || minutes > 59)
            return false;
        zoneSeconds = sign * (hours * 3600 + minutes * 60);
        return true;
    }

    std::optional<long long> Moment() const {
        bool const exists = record.tm_mon >= 1 && record.tm_mon <= 12 && record.tm_mday >= 1 &&
                            record.tm_mday <= DaysOfMonth(year, record.tm_mon) && record.tm_hour >= 0 &&
                            record.tm_hour <= 23 && record.tm_min >= 0 && record.tm_min <= 59 && record.tm_sec >= 0 &&
                            record.tm_sec <= 59;
        if (!exists)
            return std::nullopt;
        if (zoneSeconds)
            return MomentInZone(*zoneSeconds);
        if (year - 1900 > std::numeric_limits<int>::max() || year - 1900 < std::numeric_limits<int>::min())
            return std::nullopt;
        std::tm local = record;
        local.tm_year = static_cast<int>(year - 1900);
        local.tm_mon -= 1;
        local.tm_sec = 0; // a full minute is never the second before 1970, by which failure is told
        local.tm_isdst = -1;
        long long const minute = platform::LocalToSeconds(&local);
        return minute == -1 ? std::nullopt : std::optional(minute + record.tm_sec);
    }

    /// Days by cycles of 400 years, counted from a first of March, so that the leap day comes last.
    long long MomentInZone(int zone) const {
        long long const fromMarch = year - (record.tm_mon <= 2);
        long long const cycle = (fromMarch >= 0 ? fromMarch : fromMarch - 399) / 400;
        long long const yearOfCycle = fromMarch - cycle * 400;
        long long const dayOfYear = (153 * ((record.tm_mon + 9) % 12) + 2) / 5 + record.tm_mday - 1;
        long long const dayOfCycle = yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100 + dayOfYear;
        long long const day = cycle * 146097 + dayOfCycle - 719468;
        return day * 86400 + record.tm_hour * 3600 + record.tm_min * 60 + record.tm_sec - zone;
    }

    std::u16string_view rest;
    long long year = 0;
    std::tm record{}; // without the year, and with the month from 1 on
    std::optional<int> zoneSeconds;
};

} // namespace

CXTString<char16_t> GetFileDateString(CXTime const& time, bool date, bool hour, bool text) {
    std::tm local;
    if (!time.GetLocalTm(&local))
        return {};
    // In one piece beside the heap, since lists of files ask this for every row.
    constexpr std::size_t room = 80;
    char16_t result[room];
    long long const year = local.tm_year + 1900LL;
    int length = 0;
    if (text)
        length = xFormat(result, room, u"%s %d %s %04I64d", Name(firstDayName, local.tm_wday), local.tm_mday,
                         Name(firstMonthName, local.tm_mon), year);
    else if (date)
        length = xFormat(result, room, u"%02d/%02d/%04I64d", local.tm_mday, local.tm_mon + 1, year);
    if (hour)
        length += xFormat(result + length, room - static_cast<std::size_t>(length), u" %02d:%02d", local.tm_hour,
                          local.tm_min);
    return {result, length};
}

bool ConvertText2Time(CXTString<char16_t> const& text, CXTime& time) {
    std::u16string_view const whole(text, static_cast<std::size_t>(text.GetLength()));
    std::optional<long long> const moment = DateReader(whole).Read();
    if (moment)
        time = *moment;
    return moment.has_value();
}
