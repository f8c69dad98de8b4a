// SPDX-License-Identifier: MIT
#include "list_settings.h"

#include "output.h"
#include "sort_rows.h"
#include <zeltools/foundation/application_preferences.h>
#include <zeltools/foundation/four_cc.h>
#include <zeltools/persistence/custom_data.h>
#include <zeltools/process/worker_count.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <fmt/format.h>
#include <map>
#include <unistd.h>

namespace zel {

namespace {

// The record of `zel list` in the program's preferences, and its values.
constexpr unsigned int CommandKey = FourCC("LIST");
constexpr unsigned int OptionsKey = FourCC("OPTS");
constexpr unsigned int RecursiveId = FourCC("RECU");
constexpr unsigned int JsonId = FourCC("JSON");
constexpr unsigned int SortId = FourCC("SORT");
constexpr unsigned int ProgressId = FourCC("PROG");

// The words of the command line are also what is stored, so that a file outlives a change of the enumerations.
std::map<std::string, ProgressStyle> const ProgressWords = {{"auto", ProgressStyle::Automatic},
                                                            {"bar", ProgressStyle::Bar},
                                                            {"lines", ProgressStyle::Lines},
                                                            {"json", ProgressStyle::Json},
                                                            {"none", ProgressStyle::None}};

/// Gives a choice that was made to the store, or takes one that was not from it.
void Exchange(CCustomData& store, unsigned int id, std::optional<bool>& choice) {
    bool remembered = false;
    if (choice) {
        store.SetBool(id, *choice);
    } else if (store.GetBool(id, remembered)) {
        choice = remembered;
    }
}

template <class Value>
void Exchange(CCustomData& store, unsigned int id, std::map<std::string, Value> const& words,
              std::optional<Value>& choice) {
    CXTString<char> remembered;
    store.GetStringA(id, remembered);
    for (auto const& [word, value] : words) {
        if (choice && *choice == value) {
            store.SetString(id, CXTString<char16_t>(word.c_str()));
            return;
        }
        if (!choice && remembered == word.c_str()) {
            choice = value;
            return;
        }
    }
}

/// Adds a flag and its opposite; the choice stays open where neither is given.
void AddChoice(CLI::App& command, char const* names, std::optional<bool>& choice, char const* help) {
    command.add_flag_function(
        names, [&choice](std::int64_t count) { choice = count > 0; }, help);
}

/// @param hasTemplate  It says how the list looks, so JSON that was wanted last is not wanted now.
void Remember(ListChoices& choices, bool hasTemplate) {
    CXTString<char16_t> const path = GetPreferencesFile();
    CCustomData store;
    store.LoadFromPrefs(path, CommandKey, OptionsKey, true);
    CCustomData const before = store;
    Exchange(store, RecursiveId, choices.recursive);
    if (choices.json || !hasTemplate) {
        Exchange(store, JsonId, choices.json);
    }
    Exchange(store, SortId, SortWords(), choices.sort);
    Exchange(store, ProgressId, ProgressWords, choices.progress);
    if (!store.IsEqual(before) && !store.SaveToPrefs(path, CommandKey, OptionsKey)) {
        Print(stderr, "zel: the options could not be remembered\n"); // the list itself is none the worse for it
    }
}

} // namespace

void AddRecursiveChoice(CLI::App& command, ListChoices& choices) {
    AddChoice(command, "-r,--recursive,!--no-recursive", choices.recursive,
              "Enter the folders below too; links are not followed");
}

void AddWorkChoices(CLI::App& command, ListChoices& choices) {
    command
        .add_option("--progress", choices.progress,
                    "Show progress on standard error: bar, lines, json or none; auto for a bar on a terminal")
        ->transform(CLI::CheckedTransformer(ProgressWords))
        ->option_text("STYLE");
    command.add_flag("--open,!--no-open", choices.open,
                     "Open images and scenes for what their headers say; --no-open for what the names tell");
    command.add_option("--threads", choices.threads, "Open so many files at once; by default one a free processor")
        ->check(CLI::Range(1U, MaxThreads))
        ->option_text("N");
}

void AddListChoices(CLI::App& command, ListChoices& choices) {
    AddRecursiveChoice(command, choices);
    AddChoice(command, "--json,!--no-json", choices.json, "Print JSON");
    command.add_option("--sort", choices.sort, "Sort all rows by name, size, date or kind; walk for the walk's order")
        ->transform(CLI::CheckedTransformer(SortWords()))
        ->option_text("KEY");
    AddWorkChoices(command, choices);
    AddChoice(command, "--preferences,!--no-preferences", choices.preferences,
              "Start from the options used last and remember these: where standard output is a terminal, "
              "unless one of the two says otherwise");
}

void ApplyListChoices(ListChoices choices, ListOptions& options) {
    if (choices.preferences.value_or(isatty(STDOUT_FILENO) != 0)) {
        Remember(choices, options.wording.IsGiven());
    } else {
        EnablePreferencesSaving(false);
    }
    options.recursive = choices.recursive.value_or(options.recursive);
    options.json = choices.json.value_or(options.json);
    options.sort = choices.sort.value_or(options.sort);
    options.progress = choices.progress.value_or(options.progress);
    options.open = choices.open;
    options.threads = choices.threads ? choices.threads : OMPGetMaxThreadCount(true);
}

} // namespace zel
