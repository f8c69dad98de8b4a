// SPDX-License-Identifier: MIT
// Profile files: settings as plain text that a person may edit.
//
//     ; a comment
//     [Window]
//     Columns=3
//     Title=" kept with its blanks "
//
//     GetPrivateProfileStringW(u"window", u"columns", value, path)      // true; value == u"3"
//
// Names of sections and entries ignore case; of several that are equal the first counts. Blanks around names and values
// are not part of them, and neither is one pair of quotes around a value; writing adds the pair where it is needed. A
// file is UTF-8, or UTF-16 when it begins with that mark, and stays what it is; lines that mean nothing here, and bytes
// that are no text, are kept.
//
// Writing puts the new file in place whole, and processes that write one after the other keep each other's entries.
//
// Threads: any. A failure is false with the last error.

#pragma once

#include <string>
#include <string_view>

namespace platform {

/// A profile beyond this size is no profile; it is refused with ErrorFileTooLarge.
inline constexpr unsigned long long MaxProfileBytes = 16 << 20;

/// Reads an entry. False, with `value` untouched, when it is missing or the file cannot be read.
bool GetPrivateProfileStringW(std::u16string_view section, std::u16string_view entry, std::u16string& value,
                              char16_t const* path);

/// Writes an entry; a missing file is made, its folder is not.
///
/// @param entry  Null deletes the whole section.
/// @param value  Null deletes the entry. Deleting what is not there is success.
/// Errors:  ErrorInvalidParameter for a text that would not be read back: a line break, `]` in a section, `=` in an
///          entry, an entry that begins with `;` or `[`, an empty name.
bool WritePrivateProfileStringW(char16_t const* section, char16_t const* entry, char16_t const* value,
                                char16_t const* path);

/// The same in the user's own profile, `zeltools/profile.ini` in the configuration folder, which writing makes.
bool GetProfileStringW(std::u16string_view section, std::u16string_view entry, std::u16string& value);
bool WriteProfileStringW(char16_t const* section, char16_t const* entry, char16_t const* value);

} // namespace platform
