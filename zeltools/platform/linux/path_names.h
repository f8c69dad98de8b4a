// SPDX-License-Identifier: MIT
// Server and drive paths as lists of native names.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Appends the names of a toolkit path to a list. Empty ones and `.` are left out; `..` takes the last name away, but
/// never one of the first `fixed`. False for a character that no name has.
bool SplitNames(std::u16string_view path, std::size_t fixed, std::vector<std::string>& names);

/// Appends the names of a native path to a list.
void SplitNativeNames(std::string_view path, std::vector<std::string>& names);

} // namespace platform
