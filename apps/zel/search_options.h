// SPDX-License-Identifier: MIT
// The search of a command: which files answer an expression.

#pragma once

#include <zeltools/tags/xstring_match.h>

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace zel {

struct SearchOptions {
    std::optional<std::string> expression; ///< UTF-8; nothing for every file.
    CXStringMatch::Mode mode = CXStringMatch::ModeExpression;
    bool caseSensitive = false;
    bool explain = false; ///< Whether it is told how the expression was understood, and what answered.
};

/// Adds --match and --case.
void AddSearchModes(CLI::App& command, SearchOptions& options);

/// Adds --where with its modes.
void AddWhereOptions(CLI::App& command, SearchOptions& options);

} // namespace zel
