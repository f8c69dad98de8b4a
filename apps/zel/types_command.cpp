// SPDX-License-Identifier: MIT
#include "commands.h"
#include "file_facts.h"
#include "output.h"
#include "plugins_setup.h"
#include "terminal.h"
#include <zeltools/files/file_types.h>
#include <zeltools/foundation/string_conversion.h>

#include <cstdio>
#include <fmt/format.h>
#include <memory>
#include <nlohmann/json.hpp>

namespace zel {

namespace {

std::string Utf8(CXTString<char16_t> const& text) {
    return static_cast<char const*>(XCW2A(text, xEncodingUtf8));
}

struct TypeRow {
    std::string classCode;
    char const* kind;
    bool loadable;
    bool savable;
    std::vector<std::string> extensions;
    std::string description;
};

TypeRow MakeRow(CFileExt const& type) {
    TypeRow row{FourCCText(type.GetClass()).data(),
                KindName(type.GetProperties()),
                (type.GetProperties() & FilePropertyAnyLoad) != 0,
                (type.GetProperties() & FilePropertyAnySave) != 0,
                {},
                Utf8(type.GetDescription())};
    CXArray<CXTString<char16_t>> extensions(false);
    fileGetExtensionArray(type.GetClass(), extensions, false);
    for (int i = 0; i < extensions.GetSize(); ++i) {
        row.extensions.push_back(Utf8(extensions[i]));
    }
    return row;
}

void PrintJson(std::vector<TypeRow> const& rows) {
    nlohmann::ordered_json types = nlohmann::ordered_json::array();
    for (TypeRow const& row : rows) {
        types.push_back({{"class", row.classCode},
                         {"kind", row.kind},
                         {"loadable", row.loadable},
                         {"savable", row.savable},
                         {"extensions", row.extensions},
                         {"description", row.description}});
    }
    Print("{}\n", types.dump(2));
}

void PrintTable(std::vector<TypeRow> const& rows) {
    bool const colour = WantsColour(stdout);
    Print("{}\n", Coloured(fmt::format("{:<4}  {:<7}  {:<4}  {:<4}  {:<46}  {}", "TYPE", "KIND", "LOAD", "SAVE",
                                       "EXTENSIONS", "DESCRIPTION"),
                           Colour::Dim, colour));
    for (TypeRow const& row : rows) {
        Print("{:<4}  {:<7}  {:<4}  {:<4}  {:<46}  {}\n", row.classCode, row.kind, YesOrDash(row.loadable),
              YesOrDash(row.savable), fmt::format("{}", fmt::join(row.extensions, " ")), row.description);
    }
    Print("\n{} types\n", rows.size());
}

} // namespace

int RunTypes(bool json) {
    RegisterPlugins();
    unsigned int count = 0;
    auto const free = [&](CFileExt* types) { fileFreeRegisteredFiles(types, count); };
    std::unique_ptr<CFileExt[], decltype(free)> const types(fileGetRegisteredFiles(count, 0), free);
    std::vector<TypeRow> rows;
    for (unsigned int i = 0; i < count; ++i) {
        rows.push_back(MakeRow(types[i]));
    }
    json ? PrintJson(rows) : PrintTable(rows);
    return EndOutput(ExitAllWell);
}

} // namespace zel
