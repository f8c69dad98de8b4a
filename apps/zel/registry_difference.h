// SPDX-License-Identifier: MIT
// What differs between two keys of the registry.

#pragma once

#include "registry_keys.h"

#include <nlohmann/json_fwd.hpp>

namespace zel {

/// The values that one of two keys lacks or has otherwise, with those of the keys below as far as they were read: a
/// row names the key by the way from the first of its list and the value, and has it as "first", as "second", or both.
/// A key that only one side has is a row without "name".
nlohmann::ordered_json DifferenceOf(std::vector<Key> const& first, std::vector<Key> const& second);

/// Prints such rows for a person.
void PrintDifference(nlohmann::ordered_json const& rows);

} // namespace zel
