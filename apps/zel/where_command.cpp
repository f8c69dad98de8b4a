// SPDX-License-Identifier: MIT
#include "commands.h"
#include "json_text.h"
#include "output.h"
#include "terminal.h"
#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/application_data.h>
#include <zeltools/foundation/application_path.h>
#include <zeltools/foundation/application_preferences.h>
#include <zeltools/foundation/application_product_name.h>

#include <cstdio>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace zel {

namespace {

struct Location {
    char const* key;
    char const* label;
    std::string value;
};

std::string Native(CXTString<char16_t> const& path) {
    return static_cast<char const*>(fileGetNativeName(path));
}

} // namespace

int RunWhere(bool json) {
    Location const locations[] = {
        {"applicationPath", "Application path", Native(GetApplicationPath(false))},
        {"productName", "Product name", Native(GetInternalProductName(true))},
        {"commonData", "Data of all users", Native(GetCommonApplicationDataPath(false, nullptr))},
        {"userData", "Data of this user", Native(GetUserApplicationDataPath(false, nullptr))},
        {"commonPreferences", "Preferences of all users", Native(GetCommonPreferencesPath(false))},
        {"userPreferences", "Preferences of this user", Native(GetUserPreferencesPath(false))},
        {"preferencesFile", "Preferences file", Native(GetPreferencesFile())},
    };
    if (json) {
        nlohmann::ordered_json object;
        for (Location const& location : locations) {
            SetName(object, location.key, location.value);
        }
        Print("{}\n", object.dump(2));
    } else {
        bool const terminal = isatty(STDOUT_FILENO);
        for (Location const& location : locations) {
            Print("{:<26}{}\n", location.label, ShownName(location.value, terminal));
        }
    }
    return EndOutput(ExitAllWell);
}

} // namespace zel
