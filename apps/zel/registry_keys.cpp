// SPDX-License-Identifier: MIT
#include "registry_keys.h"

#include <zeltools/persistence/reg_util.h>

namespace zel {

namespace {

using WideString = CXTString<char16_t>;

std::vector<WideString> SubKeys(CRegUtil& registry) {
    std::vector<WideString> names;
    WideString name;
    for (registry.StartSubKeyEnum(); registry.GetNextSubKeyName(name);) {
        names.push_back(name);
    }
    registry.EndSubKeyEnum();
    return names;
}

std::vector<RegistryValue> Values(CRegUtil& registry) {
    std::vector<RegistryValue> values;
    std::vector<WideString> names;
    WideString name;
    for (registry.StartValueSection(u""); registry.GetNextValueName(name);) {
        names.push_back(name);
    }
    registry.EndValueSection();
    for (WideString const& each : names) {
        RegistryValue value{Utf8(each)};
        if (registry.GetKeyValue(each, value.type, value.bytes)) { // another process may have deleted it meanwhile
            values.push_back(std::move(value));
        }
    }
    return values;
}

} // namespace

std::string ShownKey(std::string const& key) {
    std::string shown = key;
    for (char& character : shown) {
        character = character == '\\' ? '/' : character;
    }
    while (!shown.empty() && shown.back() == '/') {
        shown.pop_back();
    }
    return shown;
}

bool ReadKeys(CRegUtil& registry, std::string const& path, int depth, std::vector<Key>& keys) {
    if (!registry.SetPath(Wide(path), false)) {
        return false;
    }
    registry.OpenBase(false);
    Key key{ShownKey(path), Values(registry), {}};
    for (WideString const& name : SubKeys(registry)) {
        key.subKeys.push_back(Utf8(name));
    }
    registry.CloseBase();
    std::vector<std::string> const below = key.subKeys;
    std::string const above = key.path + '/';
    keys.push_back(std::move(key));
    for (std::string const& name : below) {
        // A slash in a name would be taken for two keys, so such a key is listed and not entered.
        if (depth > 0 && name.find_first_of("/\\") == std::string::npos) {
            ReadKeys(registry, above + name, depth - 1, keys);
        }
    }
    return true;
}

} // namespace zel
