// SPDX-License-Identifier: MIT
// How `zel list` remembers its options from one call to the next.
//
// An option that is given counts and is remembered; one that is not given is as it was when it was last given. This is
// for a person at a terminal: where standard output is anything else, nothing is read and nothing is remembered, so
// that what a script gets depends on its own command line alone. --preferences and --no-preferences decide it either
// way.

#pragma once

#include "commands.h"

#include <optional>

namespace CLI {
class App;
}

namespace zel {

/// What the command line says of the options that are remembered; nothing where it says nothing.
struct ListChoices {
    std::optional<bool> recursive;
    std::optional<bool> json;
    std::optional<SortBy> sort;
    std::optional<ProgressStyle> progress;
    // Not remembered, since they are a matter of the files and the moment.
    bool open = true;
    unsigned int threads = 0;        ///< 0 for the toolkit's worker count.
    std::optional<bool> preferences; ///< Whether to remember at all; nothing for a terminal only.
};

/// Adds the options to the command line.
void AddListChoices(CLI::App& command, ListChoices& choices);

/// Adds -r alone.
void AddRecursiveChoice(CLI::App& command, ListChoices& choices);
/// Adds what tells how the work is done: --progress, --open and --threads.
void AddWorkChoices(CLI::App& command, ListChoices& choices);

/// Completes the choices by what is remembered, remembers them, and puts them into the options.
void ApplyListChoices(ListChoices choices, ListOptions& options);

} // namespace zel
