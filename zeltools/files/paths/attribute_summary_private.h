// SPDX-License-Identifier: MIT
// The system's attribute word in the toolkit's four bits.

#pragma once

#include "zeltools/files/paths/file_find_info.h"
#include "zeltools/platform/file_names.h"

namespace detail {

/// Gives XFILE_ATTRIBUTE bits for an attribute word; 0 for the word that stands for a failure.
inline unsigned int SummarizeAttributes(unsigned int attributes) {
    if (attributes == platform::InvalidFileAttributes) {
        return 0;
    }
    return ((attributes & platform::FileAttributeNormal) != 0 ? XFILE_ATTRIBUTE_NORMAL : 0U) |
           ((attributes & platform::FileAttributeReadOnly) != 0 ? XFILE_ATTRIBUTE_READONLY : 0U) |
           ((attributes & platform::FileAttributeHidden) != 0 ? XFILE_ATTRIBUTE_HIDDEN : 0U) |
           ((attributes & platform::FileAttributeDirectory) != 0 ? XFILE_ATTRIBUTE_DIRECTORY : 0U);
}

} // namespace detail
