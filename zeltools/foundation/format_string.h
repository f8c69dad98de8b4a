// SPDX-License-Identifier: MIT
// A formatted text as the value of an expression.
//
//     FormatString(u"%s (%d)", u"oak", 2)    // "oak (2)"

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Formats as CXTString::Format does.
/// @return the text; empty for a null format and for one that cannot be carried out.
/// Threads: any; as with printf, not while another thread calls setlocale.
ZEL_API CXTString<char16_t> FormatString(char16_t const* format, ...);

/// The same with a row of the string table, in the calling thread's language; empty for an id without text.
ZEL_API CXTString<char16_t> FormatString(unsigned int id, ...);
