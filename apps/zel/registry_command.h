// SPDX-License-Identifier: MIT
// zel registry: the settings in the registry, by key and name.

#pragma once

#include "commands.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zel {

/// What the command line asked for.
struct RegistryOptions {
    int (*run)(RegistryOptions const&) = nullptr; ///< The chosen command.
    std::string key;
    std::string otherKey; ///< To compare with.
    std::string name;     ///< Of a value; empty for the default value.
    std::vector<std::string> values;
    std::string type = "string";
    bool recursive = false;
    bool wholeKey = false;
    bool json = false;
};

/// Adds the command with those below it; they fill the options when the line is parsed.
CLI::App* AddRegistryCommand(CLI::App& app, RegistryOptions& options);

/// Carries out what was asked.
int RunRegistry(RegistryOptions const& options);

} // namespace zel
