// SPDX-License-Identifier: MIT
#include "commands.h"
#include "custom_values.h"
#include "output.h"
#include "prefs_file.h"
#include "terminal.h"
#include <zeltools/files/paths/native_names.h>
#include <zeltools/persistence/custom_data.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace zel {

namespace {

using Json = nlohmann::ordered_json;

int Fail(std::string const& reason, ExitStatus status = ExitSomeFailed) {
    Print(stderr, "zel: {}\n", reason);
    return status;
}

int Finish(int status) {
    return EndOutput(status);
}

std::string RecordName(unsigned int key1, unsigned int key2) {
    return fmt::format("{} {}", CodeText(key1), CodeText(key2));
}

Json RecordJson(PrefsRecord const& record) {
    return {{"key1", CodeText(record.key1)}, {"key2", CodeText(record.key2)}, {"generation", record.Generation()}};
}

/// What the options name in the file: a record, a value or both.
struct Target {
    unsigned int key1 = 0;
    unsigned int key2 = 0;
    std::optional<unsigned int> id;

    std::string Name() const { return RecordName(key1, key2) + (id ? " " + CodeText(*id) : ""); }
};

CustomPrivateData const* FindValue(CCustomData const& store, unsigned int id) {
    for (CustomPrivateData const* const value : ValuesOf(store)) {
        if (value->id == id) {
            return value;
        }
    }
    return nullptr;
}

/// Lines of values for a person; those of a nested store follow below its own line.
void PrintValues(Json const& values, int depth, bool toTerminal) {
    for (Json const& row : values) {
        std::string const id = ShownName(row.at("id").get<std::string>(), toTerminal);
        std::string const type = row.at("type");
        bool const isStore = row.at("value").is_array() && type.ends_with("store");
        Print("{:{}}{:<10}  {:<12}  {}\n", "", 2 * depth, id, type,
              isStore ? "" : ShownName(TextOf(row.at("value")), toTerminal));
        if (isStore) {
            PrintValues(row.at("value"), depth + 1, toTerminal);
        }
    }
}

int List(PrefsFile const& file, bool json) {
    Json rows = Json::array();
    for (PrefsRecord const& record : file.records) {
        Json row = RecordJson(record);
        row["values"] = record.store->GetIDCount();
        row["bytes"] = record.bytes.size();
        rows.push_back(row);
    }
    if (json) {
        Print("{}\n", Json{{"records", rows}}.dump(2));
        return ExitAllWell;
    }
    Print("{:<10}  {:<10}  {:>6}  {:>8}  {}\n", "KEY1", "KEY2", "VALUES", "BYTES", "GENERATION");
    for (Json const& row : rows) {
        Print("{:<10}  {:<10}  {:>6}  {:>8}  {}\n", row.at("key1").get<std::string>(),
              row.at("key2").get<std::string>(), row.at("values").get<unsigned int>(),
              row.at("bytes").get<std::size_t>(), row.at("generation").get<std::string>());
    }
    return ExitAllWell;
}

int Show(PrefsFile& file, std::optional<Target> const& target, bool json) {
    bool const toTerminal = isatty(STDOUT_FILENO) != 0;
    Json rows = Json::array();
    for (PrefsRecord& record : file.records) {
        if (!target || (record.key1 == target->key1 && record.key2 == target->key2)) {
            Json row = RecordJson(record);
            row["values"] = JsonOf(*record.store);
            rows.push_back(std::move(row));
        }
    }
    if (json) {
        Print("{}\n", Json{{"records", rows}}.dump(2));
    } else {
        for (Json const& row : rows) {
            Print("{} {}\n", row.at("key1").get<std::string>(), row.at("key2").get<std::string>());
            PrintValues(row.at("values"), 1, toTerminal);
        }
    }
    return rows.empty() && target ? Fail(fmt::format("there is no record {}", target->Name())) : ExitAllWell;
}

int Get(PrefsFile& file, Target const& target, bool json) {
    PrefsRecord* const record = file.Find(target.key1, target.key2);
    CustomPrivateData const* const value = record != nullptr ? FindValue(*record->store, *target.id) : nullptr;
    if (value == nullptr) {
        return Fail(fmt::format("there is no value {}", target.Name()));
    }
    Json const content = JsonOf(*record->store, *value);
    if (json) {
        Print("{}\n", Json{{"type", TypeOf(*value)}, {"value", content}}.dump(2));
    } else {
        std::string const text = TextOf(content);
        Print("{}\n", isatty(STDOUT_FILENO) != 0 ? ShownName(text, true) : text);
    }
    return ExitAllWell;
}

/// The toolkit's form of a path, with the folder without which preferences are not saved.
CXTString<char16_t> PathOf(std::string const& nativeName) {
    std::error_code error; // the current folder may have been removed
    std::filesystem::path const absolute = std::filesystem::absolute(nativeName, error);
    return fileFromNativeName(error ? ("./" + nativeName).c_str() : absolute.c_str());
}

int Save(PrefsOptions const& options, Target const& target, CCustomData const& store) {
    if (store.SaveToPrefs(PathOf(options.file), target.key1, target.key2)) {
        return ExitAllWell;
    }
    // The toolkit does not say why; the usual reasons can be asked for.
    std::filesystem::path const folder = std::filesystem::path(options.file).parent_path();
    bool const isRefused = access(folder.empty() ? "." : folder.c_str(), W_OK) != 0 ||
                           (access(options.file.c_str(), W_OK) != 0 && errno != ENOENT);
    return Fail(fmt::format("{}: could not be saved{}", ShownName(options.file, isatty(STDERR_FILENO) != 0),
                            isRefused ? ": " + std::string(std::strerror(errno)) : ""));
}

int Set(PrefsFile& file, Target const& target, PrefsOptions const& options) {
    PrefsRecord* const record = file.Find(target.key1, target.key2);
    CCustomData fresh;
    CCustomData& store = record != nullptr ? *record->store : fresh;
    std::string type = options.type;
    if (type.empty()) { // a value that is there keeps its type
        CustomPrivateData const* const value = FindValue(store, *target.id);
        type = value != nullptr ? TypeOf(*value) : options.words.size() == 1 ? "string" : "strings";
    }
    std::string const fault = SetValue(store, *target.id, type, options.words);
    return fault.empty() ? Save(options, target, store) : Fail(fault, ExitWrongUsage);
}

int Unset(PrefsFile& file, Target const& target, PrefsOptions const& options) {
    PrefsRecord* const record = file.Find(target.key1, target.key2);
    if (record == nullptr || (target.id && !record->store->RemoveCustom(*target.id))) {
        return Fail(fmt::format("there is no {} {}", target.id ? "value" : "record", target.Name()));
    }
    if (target.id) {
        return Save(options, target, *record->store);
    }
    std::string const failure = WritePrefsFileWithout(options.file, file, *record);
    return failure.empty() ? ExitAllWell : Fail(failure);
}

/// The values that differ between two files, each as it is in the first and as it is in the second.
class Difference {
public:
    Difference(PrefsFile& firstFile, PrefsFile& secondFile) : first(firstFile), second(secondFile) {
        for (PrefsRecord& record : first.records) {
            CompareRecord(record);
        }
        for (PrefsRecord& record : second.records) {
            if (first.Find(record.key1, record.key2) == nullptr && second.Find(record.key1, record.key2) == &record) {
                AddMissing(record, "second");
            }
        }
    }

    void PrintRows(bool json) const {
        if (json) {
            Print("{}\n", Json{{"differences", rows}}.dump(2));
            return;
        }
        bool const toTerminal = isatty(STDOUT_FILENO) != 0;
        for (Json const& row : rows) {
            for (auto const& [side, sign] : {std::pair{"first", '-'}, std::pair{"second", '+'}}) {
                if (row.contains(side)) {
                    Print("{} {} {} {}  {}  {}\n", sign, row.at("key1").get<std::string>(),
                          row.at("key2").get<std::string>(), row.value("id", "(record)"),
                          row.at(side).at("type").get<std::string>(),
                          ShownName(TextOf(row.at(side).at("value")), toTerminal));
                }
            }
        }
    }

    bool IsEmpty() const { return rows.empty(); }

private:
    static Json SideOf(CCustomData& store, CustomPrivateData const& value) {
        return {{"type", TypeOf(value)}, {"value", JsonOf(store, value)}};
    }

    Json& AddRow(PrefsRecord const& record) {
        rows.push_back({{"key1", CodeText(record.key1)}, {"key2", CodeText(record.key2)}});
        return rows.back();
    }

    void AddMissing(PrefsRecord& record, char const* side) {
        if (ValuesOf(*record.store).empty()) {
            AddRow(record)[side] = {{"type", "record"}, {"value", "empty"}};
        }
        for (CustomPrivateData const* const value : ValuesOf(*record.store)) {
            Json& row = AddRow(record);
            row["id"] = CodeText(value->id);
            row[side] = SideOf(*record.store, *value);
        }
    }

    void CompareRecord(PrefsRecord& record) {
        if (first.Find(record.key1, record.key2) != &record) {
            return; // a later record of the pair counts for nobody
        }
        PrefsRecord* const other = second.Find(record.key1, record.key2);
        if (other == nullptr) {
            AddMissing(record, "first");
            return;
        }
        for (CustomPrivateData const* const value : ValuesOf(*record.store)) {
            CustomPrivateData const* const otherValue = FindValue(*other->store, value->id);
            if (otherValue == nullptr || !IsSame(*value, *otherValue)) {
                Json& row = AddRow(record);
                row["id"] = CodeText(value->id);
                row["first"] = SideOf(*record.store, *value);
                if (otherValue != nullptr) {
                    row["second"] = SideOf(*other->store, *otherValue);
                }
            }
        }
        for (CustomPrivateData const* const value : ValuesOf(*other->store)) {
            if (FindValue(*record.store, value->id) == nullptr) {
                Json& row = AddRow(record);
                row["id"] = CodeText(value->id);
                row["second"] = SideOf(*other->store, *value);
            }
        }
    }

    static bool IsSame(CustomPrivateData const& a, CustomPrivateData const& b) {
        return a.kind == b.kind && a.size == b.size && std::equal(a.Data(), a.Data() + a.size, b.Data());
    }

    PrefsFile& first;
    PrefsFile& second;
    Json rows = Json::array();
};

int Diff(PrefsFile& file, PrefsOptions const& options) {
    PrefsFile other;
    std::string const failure = ReadPrefsFile(options.otherFile, other);
    if (!failure.empty()) {
        return Fail(failure);
    }
    Difference const difference(file, other);
    difference.PrintRows(options.json);
    return difference.IsEmpty() ? ExitAllWell : ExitSomeFailed;
}

/// Reads the keys and the id of the command line; a message says which of them is none.
std::string ReadTarget(PrefsOptions const& options, std::optional<Target>& target) {
    if (options.key1.empty()) {
        return {};
    }
    Target read;
    for (auto const& [text, code] : {std::pair{&options.key1, &read.key1}, std::pair{&options.key2, &read.key2}}) {
        auto const parsed = ParseCode(*text);
        if (!parsed) {
            return fmt::format("'{}' is no key: four characters or a number", ShownName(*text, true));
        }
        *code = *parsed;
    }
    if (!options.id.empty()) {
        read.id = ParseCode(options.id);
        if (!read.id) {
            return fmt::format("'{}' is no id: four characters or a number", ShownName(options.id, true));
        }
    }
    target = read;
    return {};
}

int Run(PrefsOptions const& options) {
    std::optional<Target> target;
    std::string const fault = ReadTarget(options, target);
    if (!fault.empty()) {
        return Fail(fault, ExitWrongUsage);
    }
    if (options.file.empty()) {
        return Fail("an empty FILE names no file", ExitWrongUsage);
    }
    PrefsFile file;
    bool const isNew = options.action == PrefsAction::Set && access(options.file.c_str(), F_OK) != 0;
    std::string const failure = isNew ? std::string() : ReadPrefsFile(options.file, file);
    bool const printsGoodOnes = options.action == PrefsAction::List || options.action == PrefsAction::Show;
    if (!failure.empty() && (!printsGoodOnes || file.records.empty())) {
        return Fail(failure);
    }
    int status = ExitWrongUsage;
    switch (options.action) {
    case PrefsAction::List: status = List(file, options.json); break;
    case PrefsAction::Show: status = Show(file, target, options.json); break;
    case PrefsAction::Get: status = Get(file, *target, options.json); break;
    case PrefsAction::Set: status = Set(file, *target, options); break;
    case PrefsAction::Unset: status = Unset(file, *target, options); break;
    case PrefsAction::Diff: status = Diff(file, options); break;
    }
    return failure.empty() ? status : Fail(failure);
}

} // namespace

int RunPrefs(PrefsOptions const& options) {
    return Finish(Run(options));
}

} // namespace zel
