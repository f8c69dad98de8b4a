// SPDX-License-Identifier: MIT
// The formatter of dates. Numbers are written here; names and the locale's own forms come from the C library.
#include "zeltools/platform/clock.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace platform {

namespace {

bool IsInRange(std::tm const& record) {
    auto const within = [](int value, int last) { return value >= 0 && value <= last; };
    return within(record.tm_mon, 11) && within(record.tm_mday - 1, 30) && within(record.tm_hour, 23) &&
           within(record.tm_min, 59) && within(record.tm_sec, 60) && within(record.tm_wday, 6) &&
           within(record.tm_yday, 365);
}

bool IsLeapYear(long long year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

/// The week-based year and the week of ISO 8601: the week that holds a Thursday belongs to that Thursday's year.
struct IsoWeek {
    long long year;
    int week;
};

IsoWeek WeekOf(std::tm const& record) {
    long long year = 1900LL + record.tm_year;
    int const thursday = record.tm_yday - (record.tm_wday + 6) % 7 + 3; // this week's, as a day of the year
    if (thursday < 0) {
        --year;
        return {year, (thursday + (IsLeapYear(year) ? 366 : 365)) / 7 + 1};
    }
    int const days = IsLeapYear(year) ? 366 : 365;
    return thursday >= days ? IsoWeek{year + 1, 1} : IsoWeek{year, thursday / 7 + 1};
}

class Writer {
public:
    explicit Writer(std::tm const& date) : record(date) {}

    /// Appends the text of one conversion; false for an unknown letter.
    bool Write(char16_t letter, bool plain);

    std::u16string text;

private:
    /// `plain` leaves the leading zeros or blanks out.
    void Number(long long value, int width, bool plain, char16_t fill = u'0');
    void Sequence(std::u16string_view pieces, bool plain);
    void Zone();

    std::tm const& record;
};

void Writer::Number(long long value, int width, bool plain, char16_t fill) {
    std::string const digits = std::to_string(std::llabs(value));
    if (value < 0)
        text += u'-';
    if (!plain && static_cast<int>(digits.size()) < width)
        text.append(static_cast<std::size_t>(width) - digits.size(), fill);
    text.append(digits.begin(), digits.end());
}

/// Letters are conversions, everything else stands for itself.
void Writer::Sequence(std::u16string_view pieces, bool plain) {
    for (char16_t const piece : pieces) {
        if ((piece >= u'A' && piece <= u'Z') || (piece >= u'a' && piece <= u'z'))
            Write(piece, plain);
        else
            text += piece;
    }
}

void Writer::Zone() {
    int const minutes = UtcOffsetMinutes(record);
    text += minutes < 0 ? u'-' : u'+';
    Number(std::abs(minutes) / 60 * 100 + std::abs(minutes) % 60, 4, false);
}

bool Writer::Write(char16_t letter, bool plain) {
    long long const year = 1900LL + record.tm_year;
    int const hour12 = record.tm_hour % 12 == 0 ? 12 : record.tm_hour % 12;
    int const sinceMonday = (record.tm_wday + 6) % 7;
    auto const lastTwo = [](long long number) { return std::llabs(number) % 100; };
    switch (letter) {
    case u'a':
    case u'A':
    case u'b':
    case u'B':
    case u'p':
    case u'X': text += LocaleTimeText(static_cast<char>(letter), record); break;
    case u'h': text += LocaleTimeText('b', record); break;
    case u'c':
    case u'x':
        if (!plain) {
            text += LocaleTimeText(static_cast<char>(letter), record);
            break;
        }
        Sequence(u"A, B d, Y", false);
        if (letter == u'c')
            Sequence(u" X", false);
        break;
    case u'r':
        if (plain)
            Sequence(u"I:M:S p", true);
        else
            text += LocaleTimeText('r', record);
        break;
    case u'C': Number(year / 100, 2, plain); break;
    case u'd': Number(record.tm_mday, 2, plain); break;
    case u'D': Sequence(u"m/d/y", plain); break;
    case u'e': Number(record.tm_mday, 2, plain, u' '); break;
    case u'F': Sequence(u"Y-m-d", plain); break;
    case u'g': Number(lastTwo(WeekOf(record).year), 2, plain); break;
    case u'G': Number(WeekOf(record).year, 4, plain); break;
    case u'H': Number(record.tm_hour, 2, plain); break;
    case u'I': Number(hour12, 2, plain); break;
    case u'j': Number(record.tm_yday + 1, 3, plain); break;
    case u'm': Number(record.tm_mon + 1, 2, plain); break;
    case u'M': Number(record.tm_min, 2, plain); break;
    case u'n': text += u'\n'; break;
    case u'R': Sequence(u"H:M", plain); break;
    case u'S': Number(record.tm_sec, 2, plain); break;
    case u't': text += u'\t'; break;
    case u'T': Sequence(u"H:M:S", plain); break;
    case u'u': Number(sinceMonday + 1, 1, plain); break;
    case u'U': Number((record.tm_yday + 7 - record.tm_wday) / 7, 2, plain); break;
    case u'V': Number(WeekOf(record).week, 2, plain); break;
    case u'w': Number(record.tm_wday, 1, plain); break;
    case u'W': Number((record.tm_yday + 7 - sinceMonday) / 7, 2, plain); break;
    case u'y': Number(lastTwo(year), 2, plain); break;
    case u'Y': Number(year, 4, plain); break;
    case u'z': Zone(); break;
    case u'Z': text += ZoneName(record); break;
    case u'%': text += u'%'; break;
    default: return false;
    }
    return true;
}

} // namespace

std::size_t FormatTime(char16_t* target, std::size_t capacity, char16_t const* format, std::tm const& record) {
    if (capacity == 0)
        return 0;
    *target = 0;
    if (!IsInRange(record))
        return 0;
    Writer writer(record);
    for (char16_t const* c = format; *c; ++c) {
        if (*c == u'%') {
            ++c;
            bool const plain = *c == u'#';
            if (plain)
                ++c;
            if (*c == u'E' || *c == u'O')
                ++c;
            if (!writer.Write(*c, plain))
                return 0;
        } else {
            writer.text += *c;
        }
        if (writer.text.size() >= capacity)
            return 0;
    }
    std::size_t const length = writer.text.size();
    std::memcpy(target, writer.text.c_str(), (length + 1) * sizeof(char16_t));
    return length;
}

} // namespace platform
