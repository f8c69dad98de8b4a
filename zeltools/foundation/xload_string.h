// SPDX-License-Identifier: MIT
// The toolkit's messages by number.
//
//     xLoadString(5215);    // "Selected directory does not exist."

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Loads row `id` of the string table in the calling thread's language; empty for a number without a text.
///
/// The text may be a format: its row in resources/strings.inc says which arguments it takes.
/// Threads: any.
ZEL_API CXTString<char16_t> xLoadString(unsigned int id);
