// SPDX-License-Identifier: MIT
#include "json_text.h"

#include "terminal.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <string>

namespace zel {

void SetName(nlohmann::ordered_json& object, char const* key, std::string_view nativeName) {
    bool exact = false;
    object[key] = ValidUtf8(nativeName, exact);
    if (!exact) {
        std::string bytes;
        for (char const c : nativeName) {
            bytes += fmt::format("{:02x}", static_cast<unsigned char>(c));
        }
        object[std::string(key) + "Bytes"] = bytes;
    }
}

} // namespace zel
