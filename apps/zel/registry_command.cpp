// SPDX-License-Identifier: MIT
#include "registry_command.h"

#include "output.h"
#include "registry_difference.h"
#include "registry_keys.h"
#include "registry_values.h"
#include "terminal.h"
#include <zeltools/foundation/string_conversion.h>
#include <zeltools/persistence/reg_util.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace zel {

namespace {

using Json = nlohmann::ordered_json;
using WideString = CXTString<char16_t>;

constexpr char const* Roots[] = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER",   "HKEY_LOCAL_MACHINE",
                                 "HKEY_USERS",        "HKEY_CURRENT_CONFIG", "HKEY_DYN_DATA"};

int Fail(CRegUtil const& registry, std::string const& object) {
    std::string const reason = registry.GetExitCode() == 2 ? "no such key or value" : Utf8(registry.GetExitText());
    Print(stderr, "zel: {}: {}\n", ShownName(object, isatty(STDERR_FILENO)), reason);
    return ExitSomeFailed;
}

std::string ShownValue(RegistryOptions const& options) {
    return ShownKey(options.key) + ": " + (options.name.empty() ? "(default)" : options.name);
}

int Finish() {
    return EndOutput(ExitAllWell);
}

int List(RegistryOptions const& options) {
    CRegUtil registry(KeyRead);
    std::vector<std::string> names(std::begin(Roots), std::end(Roots));
    if (!options.key.empty()) {
        std::vector<Key> keys;
        if (!ReadKeys(registry, options.key, options.recursive ? MostKeysDeep : 0, keys)) {
            return Fail(registry, options.key);
        }
        names.clear();
        std::string const top = ShownKey(options.key);
        for (Key const& key : keys) {
            for (std::string const& name : key.subKeys) {
                names.push_back((ShownKey(key.path) + '/' + name).substr(top.size() + 1));
            }
        }
    }
    if (options.json) {
        Print("{}\n", Json({{"key", ShownKey(options.key)}, {"keys", names}}).dump(2));
    } else {
        for (std::string const& name : names) {
            Print("{}\n", ShownName(name, isatty(STDOUT_FILENO)));
        }
    }
    return Finish();
}

int Show(RegistryOptions const& options) {
    CRegUtil registry(KeyRead);
    std::vector<Key> keys;
    if (!ReadKeys(registry, options.key, options.recursive ? MostKeysDeep : 0, keys)) {
        return Fail(registry, options.key);
    }
    bool const terminal = isatty(STDOUT_FILENO);
    bool const colour = WantsColour(stdout);
    Json list = Json::array();
    for (Key const& key : keys) {
        Json values = Json::array();
        if (!options.json && options.recursive) {
            Print("{}\n", Coloured('[' + ShownName(ShownKey(key.path), terminal) + ']', Colour::Bold, colour));
        }
        for (RegistryValue const& value : key.values) {
            if (options.json) {
                values.push_back(ToJson(value));
                continue;
            }
            std::string const name = value.name.empty() ? "(default)" : ShownName(value.name, terminal);
            Print("{}  {}  {}\n", PadRight(name, 24), Coloured(PadRight(TypeName(value.type), 10), Colour::Dim, colour),
                  ShownName(OneLine(value), terminal));
        }
        list.push_back({{"key", ShownKey(key.path)}, {"values", values}});
    }
    if (options.json) {
        Print("{}\n", (options.recursive ? Json({{"keys", list}}) : list[0]).dump(2));
    }
    return Finish();
}

int Get(RegistryOptions const& options) {
    CRegUtil registry(KeyRead);
    RegistryValue value{options.name};
    if (!registry.SetPath(Wide(options.key), false) ||
        !registry.GetKeyValue(Wide(options.name), value.type, value.bytes)) {
        return Fail(registry, ShownValue(options));
    }
    Print("{}\n", options.json ? ToJson(value).dump(2) : PlainText(value));
    return Finish();
}

int Set(RegistryOptions const& options) {
    RegistryValue value{options.name};
    std::string reason;
    if (!FromTexts(options.type, options.values, value, reason)) {
        Print(stderr, "zel: {}\n", reason);
        return ExitWrongUsage;
    }
    CRegUtil registry(KeyAllAccess);
    if (!registry.SetPath(Wide(options.key), true) ||
        !registry.WriteKeyValue(Wide(options.name), value.type, value.bytes.GetData(),
                                static_cast<unsigned int>(value.bytes.GetSize()))) {
        return Fail(registry, ShownValue(options));
    }
    return ExitAllWell;
}

int Unset(RegistryOptions const& options) {
    CRegUtil registry(KeyAllAccess);
    if (!options.wholeKey) {
        bool const isGone = registry.SetPath(Wide(options.key), false) && registry.DeleteValue(Wide(options.name));
        return isGone ? ExitAllWell : Fail(registry, ShownValue(options));
    }
    std::string const key = ShownKey(options.key);
    std::size_t const nameBegin = key.rfind('/') + 1; // 0 for a key that stands right below HKEY_CURRENT_USER
    WideString const name = Wide(key.substr(nameBegin));
    if (name.IsEmpty() || (nameBegin <= 1 && CRegUtil::StrToRootKey(name) != nullptr)) {
        Print(stderr, "zel: {}: a root cannot be deleted\n", key.empty() ? options.key : key);
        return ExitWrongUsage;
    }
    if (!registry.SetPath(Wide(key.substr(0, nameBegin)), false) || !registry.DeleteKey(name, options.recursive)) {
        if (registry.GetExitCode() == 5 && !options.recursive && registry.KeyExists(name)) {
            Print(stderr, "zel: {}: there may be keys below; --recursive deletes them too\n",
                  ShownName(key, isatty(STDERR_FILENO)));
            return ExitSomeFailed;
        }
        return Fail(registry, key);
    }
    return ExitAllWell;
}

int Diff(RegistryOptions const& options) {
    CRegUtil registry(KeyRead);
    std::vector<Key> sides[2];
    std::string const* const paths[2] = {&options.key, &options.otherKey};
    for (int side = 0; side < 2; ++side) {
        std::string const path = "HKEY_CURRENT_USER/" + *paths[side]; // not the root of the side before
        std::string const key = ShownKey(*paths[side]);
        bool const hasRoot = CRegUtil::StrToRootKey(Wide(key.substr(0, key.find('/')))) != nullptr;
        if (!ReadKeys(registry, hasRoot ? key : path, options.recursive ? MostKeysDeep : 0, sides[side])) {
            return Fail(registry, *paths[side]);
        }
    }
    Json const difference = DifferenceOf(sides[0], sides[1]);
    if (options.json) {
        Print("{}\n", Json({{"differences", difference}}).dump(2));
    } else {
        PrintDifference(difference);
    }
    return Finish() == ExitAllWell && difference.empty() ? ExitAllWell : ExitSomeFailed;
}

} // namespace

CLI::App* AddRegistryCommand(CLI::App& app, RegistryOptions& options) {
    CLI::App* const command = app.add_subcommand("registry", "Read and change the settings in the registry");
    command->require_subcommand(1);
    command->footer("A KEY is a path such as HKEY_CURRENT_USER/Software/Catalogue, with either slash; without the name "
                    "of a root it lies in HKEY_CURRENT_USER. Names ignore case.");
    auto const add = [&](char const* name, char const* text, int (*run)(RegistryOptions const&)) {
        CLI::App* const sub = command->add_subcommand(name, text);
        sub->callback([&options, run] { options.run = run; });
        return sub;
    };
    CLI::App* const list = add("list", "List the keys below a key, or the roots", &List);
    list->add_option("KEY", options.key, "The key");
    CLI::App* const show = add("show", "Show the values of a key", &Show);
    show->add_option("KEY", options.key, "The key")->required();
    CLI::App* const get = add("get", "Print one value", &Get);
    CLI::App* const set = add("set", "Write a value; keys that are missing are made", &Set);
    CLI::App* const unset = add("unset", "Delete a value, or with --key the key itself", &Unset);
    for (CLI::App* const sub : {get, set, unset}) {
        sub->add_option("KEY", options.key, "The key")->required();
    }
    get->add_option("NAME", options.name, "The value's name; without one the key's default value");
    set->add_option("NAME", options.name, "The value's name; empty for the key's default value")->required();
    set->add_option("VALUE", options.values, "Text, number, hexadecimal bytes, or several texts for multi");
    set->add_option("--type", options.type, "string (the default), expand, multi, int, int64, binary or none")
        ->check(CLI::IsMember(TypeNames()))
        ->option_text("TYPE");
    CLI::Option* const name =
        unset->add_option("NAME", options.name, "The value's name; without one the default value");
    unset->add_flag("--key", options.wholeKey, "Delete the key with its values")->excludes(name);
    unset->add_flag("-r,--recursive", options.recursive, "With --key: also the keys below")->needs("--key");
    CLI::App* const diff = add("diff", "Compare the values of two keys", &Diff);
    diff->add_option("KEY", options.key, "The key")->required();
    diff->add_option("OTHER", options.otherKey, "The key to compare with")->required();
    for (CLI::App* const sub : {list, show, diff}) {
        sub->add_flag("-r,--recursive", options.recursive, "Go down into the keys below");
    }
    for (CLI::App* const sub : {list, show, get, diff}) {
        sub->add_flag("--json", options.json, "Print JSON");
    }
    return command;
}

int RunRegistry(RegistryOptions const& options) {
    for (std::string const& name : {options.key, options.otherKey, options.name}) {
        bool exact = false;
        ValidUtf8(name, exact);
        if (!exact) { // it would name another key or value
            Print(stderr, "zel: '{}' is no UTF-8\n", ShownName(name, true));
            return ExitWrongUsage;
        }
    }
    return options.run(options);
}

} // namespace zel
