// SPDX-License-Identifier: MIT
// How GoogleTest shows the toolkit's strings: quoted, with every unit outside printable ASCII as \xHH or \uXXXX.

#pragma once

#include "zeltools/foundation/xlc_string.h"
#include "zeltools/foundation/xstring.h"

#include <ostream>
#include <string>
#include <string_view>

namespace support {

/// All of a string's characters, embedded zeros included, for a comparison that does not end at the first zero.
template <class T>
std::basic_string<T> Whole(CXTString<T> const& text) {
    return {text.GetConstBuffer(), static_cast<std::size_t>(text.GetLength())};
}

template <class T>
void PrintEscaped(std::basic_string_view<T> text, std::ostream& stream) {
    constexpr char const* digits = "0123456789ABCDEF";
    stream << (sizeof(T) == 1 ? "\"" : "u\"");
    for (T const character : text) {
        unsigned const unit = static_cast<std::make_unsigned_t<T>>(character);
        if (unit == '"' || unit == '\\')
            stream << '\\';
        if (unit >= 0x20 && unit < 0x7F) {
            stream << static_cast<char>(unit);
            continue;
        }
        stream << (sizeof(T) == 1 ? "\\x" : "\\u");
        for (int shift = sizeof(T) * 8 - 4; shift >= 0; shift -= 4)
            stream << digits[unit >> shift & 0xF];
    }
    stream << '"';
}

} // namespace support

template <class T>
void PrintTo(CXTString<T> const& text, std::ostream* stream) {
    support::PrintEscaped<T>(support::Whole(text), *stream);
}

inline void PrintTo(CExLCString const& text, std::ostream* stream) {
    PrintTo(static_cast<CXTString<char16_t> const&>(text), stream);
}
