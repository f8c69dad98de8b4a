// SPDX-License-Identifier: MIT
// What a search says about one file, and the four attributes that the toolkit knows.

#pragma once

#include "zeltools/foundation/xstring.h"

/// Attributes of a file, as bits.
enum XFILE_ATTRIBUTE : unsigned int {
    XFILE_ATTRIBUTE_NORMAL = 1, ///< None of the others holds.
    XFILE_ATTRIBUTE_READONLY = 2,
    XFILE_ATTRIBUTE_HIDDEN = 4,
    XFILE_ATTRIBUTE_DIRECTORY = 8,
};

/// One entry that a search found.
struct xFileFindInfo {
    CXTString<char16_t> name;         ///< The last component.
    unsigned int attributes = 0;      ///< XFILE_ATTRIBUTE bits.
    unsigned long long sizeBytes = 0; ///< 0 for a folder.
};
