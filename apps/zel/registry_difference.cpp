// SPDX-License-Identifier: MIT
#include "registry_difference.h"

#include "output.h"
#include "terminal.h"

#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace zel {

namespace {

using Json = nlohmann::ordered_json;

/// The way from the first key of a list to one of it.
std::string WayTo(Key const& key, std::vector<Key> const& keys) {
    return &key == &keys[0] ? "." : ShownKey(key.path).substr(ShownKey(keys[0].path).size() + 1);
}

bool IsSameName(std::string const& a, std::string const& b) {
    return Wide(a).CompareNoCase(Wide(b)) == 0;
}

bool IsSame(RegistryValue const& a, RegistryValue const& b) {
    return a.type == b.type && std::equal(a.bytes.begin(), a.bytes.end(), b.bytes.begin(), b.bytes.end());
}

Json SideOf(RegistryValue const& value) {
    Json side = ToJson(value);
    side.erase("name");
    return side;
}

/// Adds what the keys of a side have and the others lack; with a name for the other side, what differs too.
void AddRows(Json& rows, std::vector<Key> const& keys, char const* side, std::vector<Key> const& others,
             char const* otherSide) {
    for (Key const& key : keys) {
        std::string const way = WayTo(key, keys);
        auto const other = std::find_if(others.begin(), others.end(),
                                        [&](Key const& each) { return IsSameName(WayTo(each, others), way); });
        if (other == others.end()) {
            rows.push_back({{"key", way}, {side, {{"type", "key"}, {"value", ""}}}});
        }
        for (RegistryValue const& value : key.values) {
            RegistryValue const* found = nullptr;
            for (std::size_t i = 0; other != others.end() && i < other->values.size() && found == nullptr; ++i) {
                found = IsSameName(other->values[i].name, value.name) ? &other->values[i] : nullptr;
            }
            if (found == nullptr || (otherSide != nullptr && !IsSame(value, *found))) {
                rows.push_back({{"key", way}, {"name", value.name}, {side, SideOf(value)}});
                if (found != nullptr) {
                    rows.back()[otherSide] = SideOf(*found);
                }
            }
        }
    }
}

/// One line of a row: what one side has.
std::string LineOf(Json const& row, Json const& value) {
    std::string line = row.at("key").get<std::string>();
    if (row.contains("name")) {
        std::string const name = row.at("name");
        Json const& content = value.at("value");
        line += fmt::format(": {}  {}  {}", name.empty() ? "(default)" : name, value.at("type").get<std::string>(),
                            content.is_string() ? content.get<std::string>() : content.dump());
    } else {
        line += "  key";
    }
    return line;
}

} // namespace

Json DifferenceOf(std::vector<Key> const& first, std::vector<Key> const& second) {
    Json rows = Json::array();
    AddRows(rows, first, "first", second, "second");
    AddRows(rows, second, "second", first, nullptr); // what both have has its row by now
    return rows;
}

void PrintDifference(Json const& rows) {
    bool const terminal = isatty(STDOUT_FILENO) != 0;
    for (Json const& row : rows) {
        for (auto const& [side, sign] : {std::pair{"first", '-'}, std::pair{"second", '+'}}) {
            if (row.contains(side)) {
                Print("{} {}\n", sign, ShownName(LineOf(row, row.at(side)), terminal));
            }
        }
    }
}

} // namespace zel
