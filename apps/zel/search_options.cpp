// SPDX-License-Identifier: MIT
#include "search_options.h"

#include <CLI/CLI.hpp>
#include <map>

namespace zel {

namespace {

std::map<std::string, CXStringMatch::Mode> const ModeWords = {{"expression", CXStringMatch::ModeExpression},
                                                              {"any", CXStringMatch::ModeAnyWord},
                                                              {"all", CXStringMatch::ModeAllWords}};

} // namespace

void AddSearchModes(CLI::App& command, SearchOptions& options) {
    command
        .add_option("--match", options.mode,
                    "Take the words for an expression with marks, or for plain words of which any or all must be there")
        ->transform(CLI::CheckedTransformer(ModeWords))
        ->option_text("any|all|expression");
    command.add_flag("--case", options.caseSensitive, "Tell small letters from capital ones");
}

void AddWhereOptions(CLI::App& command, SearchOptions& options) {
    CLI::Option* const where =
        command
            .add_option("--where", options.expression,
                        "List what answers by its name, path, type or metadata: table (leg ^ drawer) !chair")
            ->option_text("EXPR");
    AddSearchModes(command, options);
    command.get_option("--match")->needs(where);
    command.get_option("--case")->needs(where);
}

} // namespace zel
