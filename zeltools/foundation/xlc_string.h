// SPDX-License-Identifier: MIT
// CExLCString: a wide string that holds its text in lower case, for keys and searches that ignore case.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// A CXTString<char16_t> that lowers its text, in the process's C locale, whenever it takes one.
///
///     CExLCString const name(u"Wood.JPG");    // "wood.jpg"
///     name.Find(u".Jpg");                     // 4
///
/// The operations that it inherits leave their result as they make it; only construction and assignment lower.
/// Threads: as CXTString.
class ZEL_API CExLCString : public CXTString<char16_t> {
public:
    CExLCString() noexcept = default;
    CExLCString(CXTString<char16_t> const& text);
    CExLCString(char16_t const* text) : CExLCString(CXTString<char16_t>(text)) {}

    CExLCString& operator=(CXTString<char16_t> const& text);
    CExLCString& operator=(char16_t const* text) { return *this = CXTString<char16_t>(text); }

    /// The first position of the lowered `text` at or behind `start`, searched as CXTString::Find does; -1 if there is
    /// none, for an empty text and for a start outside the string.
    int Find(CXTString<char16_t> const& text, int start = 0) const;
};
