// SPDX-License-Identifier: MIT
#include "commands.h"
#include "media_options.h"
#include "sort_rows.h"
#include "template_options.h"

#include <CLI/CLI.hpp>

namespace zel {

namespace {

/// Leaves room for the numbers of all files that follow.
constexpr unsigned long long MaxStart = 1'000'000'000'000'000;

} // namespace

CLI::App* AddRenameCommand(CLI::App& app, RenameOptions& options) {
    CLI::App* const command =
        app.add_subcommand("rename", "Give files new names from a template; without --apply, tell what would be done");
    command->add_option("PATH", options.files.paths, "Files, and folders for the files in them")->required();
    AddTemplateOptions(*command, options.wording);
    command->callback([&options] {
        if (!options.wording.IsGiven()) {
            throw CLI::RequiredError("--template or --template-file");
        }
    });
    command->add_flag("--apply", options.apply, "Rename");
    command->add_flag("-r,--recursive", options.files.recursive, "Enter the folders below too; links are not followed");
    command->add_flag("--folders", options.folders,
                      "Let slashes in a new name lead into folders below the file's own, which are made");
    command->add_flag("--whole-name", options.wholeName,
                      "The template gives the extension too; otherwise a file keeps its own, unless the template ends "
                      "in one");
    command->add_option("--sort", options.files.sort, "Number the files by name, size, date or kind; walk as they come")
        ->transform(CLI::CheckedTransformer(SortWords()))
        ->option_text("KEY");
    command->add_option("--start", options.start, "The number of the first file")
        ->check(CLI::Range(0ULL, MaxStart))
        ->option_text("N");
    command->add_flag("--json", options.json, "Print JSON");
    options.files.threads = 0;
    command
        ->add_option("--threads", options.files.threads, "Open so many files at once; by default one a free processor")
        ->check(CLI::Range(1U, MaxThreads))
        ->option_text("N");
    options.files.limits.timeMs = 60'000; // nobody waits longer for one file of many
    AddLimits(*command, options.files.limits);
    return command;
}

} // namespace zel
