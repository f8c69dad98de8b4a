// SPDX-License-Identifier: MIT
#include "application_tags.h"
#include "commands.h"
#include "output.h"
#include "template_faults.h"
#include "terminal.h"
#include "utf8_text.h"

#include <cstdio>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <string_view>
#include <unistd.h>

namespace zel {

namespace {

using Json = nlohmann::ordered_json;

/// A tag as it is told of; the conditional ones come from the toolkit.
struct Row {
    std::string name;
    std::string type;
    std::string group;
    std::string friendly;
    std::string example;
    std::vector<std::string> parameters;
};

/// The names of the parameters for a type.
std::vector<std::string> ParameterNames(unsigned int type) {
    std::vector<std::string> names;
    for (_TagParametersList const* row : ParametersOf(type)) {
        names.push_back(Utf8(row->name));
    }
    return names;
}

std::vector<Row> CollectRows() {
    CApplicationTags const& tags = CApplicationTags::Get();
    std::vector<Row> rows;
    for (ApplicationTag const& tag : CApplicationTags::GetRows()) {
        rows.push_back({fmt::format("<{}>", tag.name), TypeWord(tag.type), tag.group, tag.friendly, tag.example,
                        ParameterNames(tag.type)});
    }
    for (char const* const name : {"<tagifexist>", "</tagifexist>"}) {
        CTagInfo info;
        if (tags.GetTagInfo(FromUtf8(name), info)) {
            rows.push_back({name,
                            TypeWord(info.GetTagDataType()),
                            Utf8(info.GetClassNameW()),
                            Utf8(info.GetTagFriendlyName()),
                            "",
                            {}});
        }
    }
    return rows;
}

std::string StringOf(unsigned int id) {
    CXTString<char16_t> text;
    return id && text.LoadStringW(id) ? Utf8(text) : std::string();
}

void PrintJson(std::vector<Row> const& rows) {
    Json tags = Json::array();
    for (Row const& row : rows) {
        tags.push_back({{"name", row.name},
                        {"type", row.type},
                        {"class", row.group},
                        {"description", row.friendly},
                        {"parameters", row.parameters},
                        {"example", row.example.empty() ? Json(nullptr) : Json(row.example)}});
    }
    Json parameters = Json::array();
    for (_TagParametersList const* row = GetTagParametersList(); row->name; ++row) {
        std::string const example = StringOf(row->exampleId);
        parameters.push_back({{"name", Utf8(row->name)},
                              {"input", TypeWord(row->inputType)},
                              {"output", TypeWord(row->outputTypeAndFlags)},
                              {"description", StringOf(row->friendlyId)},
                              {"parameters", ParameterNames(row->outputTypeAndFlags & TAGDATA_MASK)},
                              {"example", example.empty() ? Json(nullptr) : Json(example)}});
    }
    Print("{}\n", Json{{"tags", tags}, {"parameters", parameters}}.dump(2));
}

void PrintText(std::vector<Row> const& rows) {
    bool const colour = WantsColour(stdout);
    std::string_view group;
    for (Row const& row : rows) {
        if (row.group != group) {
            Print("{}{}\n", group.empty() ? "" : "\n", Coloured(row.group, Colour::Bold, colour));
            group = row.group;
        }
        Print("  {:<16} {:<11} {:<56} {}\n", row.name, row.type, row.friendly, row.example);
    }
    for (unsigned int const type : {TAGDATA_FILENAME, TAGDATA_DATE}) {
        Print("\n{}\n", Coloured(fmt::format("Parameters of a {}", TypeWord(type)), Colour::Bold, colour));
        for (_TagParametersList const* row : ParametersOf(type)) {
            Print("  {:<16} {:<11} {:<56} {}\n", "(" + Utf8(row->name) + ")", TypeWord(row->outputTypeAndFlags),
                  StringOf(row->friendlyId), StringOf(row->exampleId));
        }
    }
}

} // namespace

int RunTags(bool json) {
    std::vector<Row> const rows = CollectRows();
    if (json) {
        PrintJson(rows);
    } else {
        PrintText(rows);
    }
    return EndOutput(ExitAllWell);
}

} // namespace zel
