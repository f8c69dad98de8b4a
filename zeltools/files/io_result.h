// SPDX-License-Identifier: MIT
// How a load or save ended, and what a user is told of it.

#pragma once

#include "zeltools/foundation/xstring.h"

/// The result codes of a load or save. Any other number, -5 too, is an unknown error.
enum IO_FILE_RESULT : int {
    IoSuccess = 1,
    IoCannotOpen = -1,
    IoUnknownType = -2, ///< No parser for the name.
    IoBadFormat = -3,
    IoNoMemory = -4,
    IoDiskFull = -6,
    IoUnauthorized = -7,
    IoNothingToSave = -8,
    IoCannotSaveSo = -9, ///< Not in this format with these options.
    IoEmptyFile = -10,
    IoCanceled = -11,
    IoOwnText = -12, ///< The text was set by whoever reported it.
};

// End of the public section ----------------------------------------------------------------------------------------

namespace detail {

/// A result code as a text in the thread's language; empty for IoOwnText.
///
/// @param loading   Tells the texts of success apart.
/// @param fileName  Its last component goes into the text of IoCannotOpen. Null counts as empty.
CXTString<char16_t> GetIoResultText(bool loading, int code, char16_t const* fileName);

} // namespace detail
