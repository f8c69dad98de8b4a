// SPDX-License-Identifier: MIT
// Lists of file extensions and search patterns, as a person types them, and their canonical form: lower-case patterns
// with one blank between, none twice.
//
//     fileCleanExtensionList(u"TIF, .png;b.c tif", true, nullptr)          // *.tif *.png b.c
//     fileCleanExtensionList(u"abc \"two words\" a?c", false, nullptr)     // *abc* two words a?c
//
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/foundation/xstring.h"

/// Gives the canonical form of a list.
///
/// Blanks, commas and semicolons separate; the list ends after 259 characters. With `extensions`, `.x` and `x` become
/// `*.x`, and anything with a dot further on stays. Without, a text is to be found anywhere: `x` becomes `*x*`, one
/// with `?` stays, and one in double quotes is taken literally, blanks and all.
///
/// @param table  Receives the patterns, and those that it holds already are left out of the result. May be null.
ZEL_API CXTString<char16_t> fileCleanExtensionList(CXTString<char16_t> const& list, bool extensions,
                                                   CHashTable<CXTString<char16_t>>* table);

/// Makes `table` the set of a list's patterns and `list` its canonical form.
///
/// @return the number of patterns.
ZEL_API int fileGetHashFromExtensionList(CXTString<char16_t>& list, CHashTable<CXTString<char16_t>>& table,
                                         bool extensions);
