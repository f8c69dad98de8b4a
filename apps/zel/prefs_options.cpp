// SPDX-License-Identifier: MIT
// The command line of `zel prefs`.

#include "commands.h"
#include "custom_values.h"

#include <CLI/CLI.hpp>

namespace zel {

namespace {

CLI::App* AddAction(CLI::App& prefs, PrefsOptions& options, PrefsAction action, char const* name, char const* help) {
    CLI::App* const command = prefs.add_subcommand(name, help);
    command->add_option("FILE", options.file, "A preferences file")->required();
    command->callback([&options, action] { options.action = action; });
    return command;
}

void AddKeys(CLI::App* command, PrefsOptions& options, bool required) {
    CLI::Option* const key1 =
        command->add_option("KEY1", options.key1, "First key: four characters or a number")->required(required);
    command->add_option("KEY2", options.key2, "Second key")->required(required)->needs(key1);
    key1->needs(command->get_option("KEY2"));
}

} // namespace

CLI::App* AddPrefsCommand(CLI::App& app, PrefsOptions& options) {
    CLI::App* const prefs = app.add_subcommand("prefs", "Read and change preferences files");
    prefs->require_subcommand(1);
    CLI::App* const list = AddAction(*prefs, options, PrefsAction::List, "list", "List the records");
    CLI::App* const show = AddAction(*prefs, options, PrefsAction::Show, "show", "Print all values, or one record's");
    CLI::App* const get = AddAction(*prefs, options, PrefsAction::Get, "get", "Print one value");
    CLI::App* const set = AddAction(*prefs, options, PrefsAction::Set, "set", "Set one value");
    CLI::App* const unset = AddAction(*prefs, options, PrefsAction::Unset, "unset", "Remove a value, or a record");
    CLI::App* const diff = AddAction(*prefs, options, PrefsAction::Diff, "diff", "Compare two files");
    AddKeys(show, options, false);
    for (CLI::App* const command : {get, set, unset}) {
        AddKeys(command, options, true);
        command->add_option("ID", options.id, "The value's id: four characters or a number")
            ->required(command != unset);
    }
    set->add_option("VALUE", options.words, "The value; several words for a list of texts")->required();
    set->add_option("--type", options.type, "One of " + SettableTypes() + "; the value's own when it is there")
        ->option_text("TYPE");
    diff->add_option("OTHER", options.otherFile, "The file to compare with")->required();
    for (CLI::App* const command : {list, show, get, diff}) {
        command->add_flag("--json", options.json, "Print JSON");
    }
    return prefs;
}

} // namespace zel
