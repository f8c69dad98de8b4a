// SPDX-License-Identifier: MIT
// Texts between the toolkit and OpenImageIO, whose strings are UTF-8 wherever they come from.

#pragma once

#include <zeltools/foundation/string_conversion.h>
#include <zeltools/foundation/xstring.h>

#include <string>

/// Bytes that are not UTF-8 become U+FFFD.
inline CXTString<char16_t> ToText(std::string const& utf8) {
    return CXTString<char16_t>(static_cast<char16_t const*>(XCA2W(utf8.c_str(), xEncodingUtf8)));
}

inline std::string ToUtf8(CXTString<char16_t> const& text) {
    XCW2A const utf8(text, xEncodingUtf8);
    char const* const bytes = utf8;
    return bytes ? bytes : "";
}
