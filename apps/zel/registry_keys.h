// SPDX-License-Identifier: MIT
// Keys of the registry as lists, as the commands read them.

#pragma once

#include "registry_values.h"

#include <string>
#include <vector>

class CRegUtil;

namespace zel {

/// The registry makes none deeper; a file that was tampered with may have a circle.
inline constexpr int MostKeysDeep = 512;

/// A key with what is in it.
struct Key {
    std::string path;
    std::vector<RegistryValue> values;
    std::vector<std::string> subKeys;
};

/// A key's path with slashes, and none at its end.
std::string ShownKey(std::string const& key);

/// Reads a key, and all below it down to `depth` keys, each after the one above. False when the first cannot be read.
bool ReadKeys(CRegUtil& registry, std::string const& path, int depth, std::vector<Key>& keys);

} // namespace zel
