// SPDX-License-Identifier: MIT
// What the formatter and the scanner share: the form behind a percent sign, its sizes, and the locale's decimal point.

#pragma once

#include <climits>
#include <clocale>
#include <cstddef>
#include <cwchar>
#include <string_view>

namespace detail {

/// How wide an integer argument or target is.
enum class ValueSize {
    Bits8,  ///< hh
    Bits16, ///< h
    Bits32, ///< none, l, I32
    Bits64, ///< ll, I64, I, j, z, t
};

/// How wide text is said to be, where the form says it.
enum class TextWidth {
    FromLetter, ///< Own width for `s` and `c`, the other for `S` and `C`.
    Narrow,     ///< h
    Wide,       ///< l, w
};

/// Reads decimal digits into a count; one that an int cannot hold stays just above. Leaves the count where there are
/// none. Returns what follows.
template <typename T>
T const* ParseCount(T const* at, long long& count) {
    if (*at < T('0') || *at > T('9'))
        return at;
    long long number = 0;
    for (; *at >= T('0') && *at <= T('9'); ++at) {
        number = number * 10 + (*at - T('0'));
        if (number > INT_MAX)
            number = INT_MAX + 1LL;
    }
    count = number;
    return at;
}

/// One form of a format for text of T.
template <typename T>
struct FormatForm {
    bool left = false;      ///< -
    bool plus = false;      ///< +
    bool blank = false;     ///< a blank
    bool alternate = false; ///< #
    bool zero = false;      ///< 0
    bool isLongDouble = false;
    bool isLong = false; ///< l, for the scanner's reals
    ValueSize size = ValueSize::Bits32;
    TextWidth textWidth = TextWidth::FromLetter;
    long long width = 0;      ///< At most INT_MAX + 1.
    long long precision = -1; ///< -1: none.
    T letter = 0;

    T const* ParseFlags(T const* at) {
        for (;; ++at) {
            switch (*at) {
            case T('-'): left = true; break;
            case T('+'): plus = true; break;
            case T(' '): blank = true; break;
            case T('#'): alternate = true; break;
            case T('0'): zero = true; break;
            default: return at;
            }
        }
    }

    T const* ParseSize(T const* at) {
        for (;; ++at) {
            switch (*at) {
            case T('h'):
                size = size == ValueSize::Bits16 ? ValueSize::Bits8 : ValueSize::Bits16;
                textWidth = TextWidth::Narrow;
                break;
            case T('l'):
                size = isLong ? ValueSize::Bits64 : ValueSize::Bits32;
                isLong = true;
                textWidth = TextWidth::Wide;
                break;
            case T('w'): textWidth = TextWidth::Wide; break;
            case T('L'): isLongDouble = true; break;
            case T('j'):
            case T('z'):
            case T('t'): size = ValueSize::Bits64; break;
            case T('I'):
                if (at[1] == T('6') && at[2] == T('4')) {
                    size = ValueSize::Bits64;
                    at += 2;
                } else if (at[1] == T('3') && at[2] == T('2')) {
                    size = ValueSize::Bits32;
                    at += 2;
                } else {
                    size = ValueSize::Bits64; // as wide as a pointer
                }
                break;
            default: return at;
            }
        }
    }

    /// Whether a text form means text of the format's own width.
    [[nodiscard]] bool IsOwnWidth() const {
        if (textWidth == TextWidth::FromLetter)
            return letter != T('S') && letter != T('C');
        return (textWidth == TextWidth::Wide) == (sizeof(T) > 1);
    }

    /// The sign that a value shows, empty where none.
    [[nodiscard]] std::string_view Sign(bool negative) const { return negative ? "-" : plus ? "+" : blank ? " " : ""; }
};

/// The decimal point of the process's C locale, in text of T. Some locales take several bytes for it.
template <typename T>
class DecimalPoint {
public:
    DecimalPoint() {
        char const* const point = std::localeconv()->decimal_point;
        if constexpr (sizeof(T) == 1) {
            m_view = point;
        } else {
            wchar_t wide = L'.';
            std::mbstate_t state{};
            if (point[1] == '\0')
                wide = static_cast<unsigned char>(point[0]);
            else if (std::mbrtowc(&wide, point, MB_LEN_MAX, &state) > MB_LEN_MAX)
                wide = L'.';
            m_unit = static_cast<T>(wide);
            m_view = {&m_unit, 1};
        }
    }
    DecimalPoint(DecimalPoint const&) = delete;
    DecimalPoint& operator=(DecimalPoint const&) = delete;

    [[nodiscard]] std::basic_string_view<T> View() const { return m_view; }

private:
    T m_unit = T('.');
    std::basic_string_view<T> m_view;
};

} // namespace detail
