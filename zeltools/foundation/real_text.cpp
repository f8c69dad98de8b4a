// SPDX-License-Identifier: MIT
#include "zeltools/foundation/real_text_private.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace detail {

namespace {

constexpr int hexadecimalDigits = 13; // of the 52 bits behind a double's point

char Lower(char letter) {
    return static_cast<char>(letter | 0x20);
}

} // namespace

// Writes the digits with a point and an exponent as the letter wants them, in lower case; returns their end.
char* RealText::Convert(double magnitude, char letter, int precision, bool alternate) {
    char* const end = m_buffer + sizeof m_buffer;
    switch (letter) {
    case 'f': return std::to_chars(m_buffer, end, magnitude, std::chars_format::fixed, precision).ptr;
    case 'e': return std::to_chars(m_buffer, end, magnitude, std::chars_format::scientific, precision).ptr;
    case 'a': return std::to_chars(m_buffer, end, magnitude, std::chars_format::hex, precision).ptr;
    default: break;
    }
    if (!alternate)
        return std::to_chars(m_buffer, end, magnitude, std::chars_format::general, precision).ptr;
    // With its zeros kept, g is e or f by the exponent that e finds after rounding.
    int const digits = std::max(precision, 1);
    char* const written = Convert(magnitude, 'e', digits - 1, false);
    char const* const mark = std::find(m_buffer, written, 'e');
    int exponent = 0;
    std::from_chars(mark + 2, written, exponent);
    exponent = mark[1] == '-' ? -exponent : exponent;
    return exponent < -4 || exponent >= digits ? written : Convert(magnitude, 'f', digits - 1 - exponent, false);
}

void RealText::Set(double value, char letter, long long precision, bool alternate) {
    char const form = Lower(letter);
    bool const upper = form != letter;
    m_isNegative = std::signbit(value);
    m_isFinite = std::isfinite(value);
    m_hasPoint = false;
    m_trailingZeros = 0;
    m_prefix = m_fraction = m_exponent = {};
    if (!m_isFinite) {
        m_whole = std::isnan(value) ? (upper ? "NAN" : "nan") : (upper ? "INF" : "inf");
        return;
    }
    int const most = form == 'a' ? hexadecimalDigits : maximalPrecision;
    if (precision < 0)
        precision = form == 'a' ? hexadecimalDigits : 6;
    int const asked = static_cast<int>(std::min<long long>(precision, most));
    if (form != 'g' || alternate)
        m_trailingZeros = precision - asked;

    char* const begin = m_buffer;
    char* const end = Convert(std::fabs(value), form, asked, alternate);
    if (upper)
        std::transform(begin, end, begin, [](char c) { return c >= 'a' ? static_cast<char>(c - 32) : c; });
    char const mark = form == 'a' ? 'p' : 'e';
    char* const exponent = form == 'f' ? end : std::find(begin, end, static_cast<char>(upper ? mark - 32 : mark));
    char* const point = std::find(begin, exponent, '.');
    m_prefix = form != 'a' ? std::string_view() : upper ? "0X" : "0x";
    m_whole = {begin, static_cast<std::size_t>(point - begin)};
    m_hasPoint = point != exponent || alternate || m_trailingZeros > 0;
    if (point != exponent)
        m_fraction = {point + 1, static_cast<std::size_t>(exponent - point - 1)};
    m_exponent = {exponent, static_cast<std::size_t>(end - exponent)};
}

} // namespace detail
