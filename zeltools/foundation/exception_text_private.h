// SPDX-License-Identifier: MIT
// The sentences that name a file and what went wrong with it.

#pragma once

#include "zeltools/foundation/xload_string.h"
#include "zeltools/foundation/xstring.h"

namespace detail {

/// The message of that number with the file name in it, or with the word for a file without a name.
inline CXTString<char16_t> FormatFileText(unsigned int textNumber, CXTString<char16_t> const& fileName) {
    constexpr unsigned int UnnamedFileText = 61446;
    CXTString<char16_t> const name = fileName.IsEmpty() ? xLoadString(UnnamedFileText) : fileName;
    CXTString<char16_t> text;
    text.Format(xLoadString(textNumber), static_cast<char16_t const*>(name));
    return text;
}

} // namespace detail
