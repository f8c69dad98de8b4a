// SPDX-License-Identifier: MIT
// Native names compared as the systems that drive and server paths come from compare them.

#pragma once

#include <string_view>

namespace platform {

/// Whether two native names differ in nothing but case, beyond ASCII too.
bool IsSameNameWithoutCase(std::string_view a, std::string_view b);

} // namespace platform
