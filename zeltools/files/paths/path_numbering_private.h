// SPDX-License-Identifier: MIT
// The numbering that the functions for numbered, unique and temporary names share.

#pragma once

#include "zeltools/foundation/xstring.h"

namespace detail {

/// Raises the number at the end of a path's name by one, or again and again until the name does not exist.
///
/// @param parenthesis, maxName  As in fileNextNumberedName.
CXTString<char16_t> NumberedName(CXTString<char16_t> const& path, bool parenthesis, int maxName, bool mustNotExist);

} // namespace detail
