// SPDX-License-Identifier: MIT
// A find is a list of those who answer, with nothing but their paths.
#include "commands.h"
#include "list_settings.h"
#include "media_options.h"

#include <CLI/CLI.hpp>

namespace zel {

CLI::App* AddFindCommand(CLI::App& app, ListOptions& options, ListChoices& choices) {
    CLI::App* const command =
        app.add_subcommand("find", "Print the files that answer a search expression, by their name, path, type or "
                                   "metadata");
    command->add_option("EXPR", options.search.expression, "Such as table (leg ^ drawer) !chair")->required();
    command->add_option("PATH", options.paths, "Files and folders")->required();
    options.namesOnly = true;
    options.recursive = true;
    choices.preferences = false;
    AddSearchModes(*command, options.search);
    command->add_flag("--explain", options.search.explain,
                      "Tell how the expression was understood, and which word of each file answered");
    AddRecursiveChoice(*command, choices);
    AddWorkChoices(*command, choices);
    AddLimits(*command, options.limits);
    return command;
}

} // namespace zel
