// SPDX-License-Identifier: MIT
// The content of a profile file as bytes: finding an entry, changing one. profile_file.h says what it means.
//
// Threads: any.

#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Finds an entry. False, with `value` untouched, when it is missing.
bool FindInProfile(std::string_view bytes, std::u16string_view section, std::u16string_view entry,
                   std::u16string& value);

/// Whether an entry would be read back as it is written.
bool CanBeInProfile(char16_t const* section, char16_t const* entry, char16_t const* value);

/// Writes an entry; a null value deletes it, a null entry the section. False when there is nothing to change.
bool ChangeProfile(std::string& bytes, char16_t const* section, char16_t const* entry, char16_t const* value);

} // namespace platform
