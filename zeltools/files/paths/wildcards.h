// SPDX-License-Identifier: MIT
// Matching of names with `*` (any characters, also none) and `?` (any one character).
//
// | name     | pattern | caseSensitive | result |                                                      |
// |----------|---------|---------------|--------|------------------------------------------------------|
// | `ABC`    | `a*C`   | false         | true   | what stands before the first `*` ignores case        |
// | `ABC`    | `*a*c`  | false         | false  | what stands behind it never does                     |
// | `a.tif`  | `*.tif` | true          | true   |                                                      |
// | `ab`     | `?`     | true          | false  |                                                      |
//
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/foundation/xstring.h"

/// Whether the whole name fits the pattern.
///
/// @param caseSensitive  false: in front of the first `*` the low 8 bits of each unit are compared, ASCII letters
///                       without regard to case.
/// Time: at most the product of both lengths; no recursion.
ZEL_API bool fileMatchWilcards(CXTString<char16_t> const& name, CXTString<char16_t> const& pattern, bool caseSensitive);

/// Whether the lower-cased name fits a pattern of the table, as fileGetHashFromExtensionList fills it. False for an
/// empty table.
ZEL_API bool fileMatchWilcards(CXTString<char16_t> const& name, CHashTable<CXTString<char16_t>> const& table);
