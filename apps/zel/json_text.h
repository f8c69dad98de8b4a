// SPDX-License-Identifier: MIT
// JSON as the commands print it.

#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string_view>

namespace zel {

/// Puts a native name into an object as `key`. A name that is not UTF-8 comes with U+FFFD in place of what is not, and
/// then a second member, `key` + "Bytes", has its bytes in hexadecimal, so that nothing is lost.
void SetName(nlohmann::ordered_json& object, char const* key, std::string_view nativeName);

} // namespace zel
