// SPDX-License-Identifier: MIT
// The toolkit's texts as the commands print them.

#pragma once

#include "terminal.h"
#include <zeltools/foundation/four_cc.h>
#include <zeltools/foundation/string_conversion.h>

#include <string>

namespace zel {

inline std::string Utf8(CXTString<char16_t> const& text) {
    return static_cast<char const*>(XCW2A(text, xEncodingUtf8));
}

inline CXTString<char16_t> FromUtf8(std::string const& text) {
    return static_cast<char16_t const*>(XCA2W(text.c_str(), xEncodingUtf8));
}

/// The four characters of a class; empty for none.
inline std::string ClassText(unsigned int classId) {
    return classId ? std::string(FourCCText(classId).data()) : std::string();
}

/// Text that came out of a file, fit for JSON.
inline std::string ShownUtf8(std::string const& text) {
    bool exact = false;
    return ValidUtf8(text, exact);
}

} // namespace zel
