// SPDX-License-Identifier: MIT
#include "commands.h"
#include "json_text.h"
#include "output.h"
#include "plugins_setup.h"
#include "terminal.h"
#include "utf8_text.h"
#include <zeltools/files/file_types.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/files/plugin_loader.h>
#include <zeltools/files/plugin_report.h>
#include <zeltools/files/plugins_directory.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <set>
#include <unistd.h>

namespace zel {

namespace {

namespace fs = std::filesystem;

struct PluginRow {
    std::string file; ///< Native name, without the folder.
    bool tried = false;
    bool loaded = false;
    unsigned int release = 0;
    std::string reason; ///< Why it is not in use.
    std::vector<unsigned int> classes;
};

std::string Native(CXTString<char16_t> const& path) {
    return static_cast<char const*>(fileGetNativeName(path));
}

/// A plug-in is asked for images and for scenes; what it was taken for counts, and otherwise the reason that says more
/// than that it has no entry for one of the two.
PluginRow MakeRow(std::string const& path) {
    PluginRow row;
    row.file = fs::path(path).filename();
    for (PluginReport const& report : GetPluginReports()) {
        if (Native(report.path) != path) {
            continue;
        }
        row.tried = true;
        row.release = std::max(row.release, report.release);
        if (report.outcome == PluginIsLoaded) {
            row.loaded = true;
            for (unsigned int const classId : report.classes) {
                row.classes.push_back(classId);
            }
        } else if (row.reason.empty() || report.outcome != PluginHasNoEntry) {
            row.reason = Utf8(GetPluginOutcomeText(report));
        }
    }
    if (row.loaded) {
        row.reason.clear();
    } else if (!row.tried) {
        row.reason = "Its name does not end in .so, so it was not tried.";
    }
    return row;
}

std::vector<PluginRow> MakeRows(std::string const& folder) {
    std::set<std::string> paths; // in their order
    for (PluginReport const& report : GetPluginReports()) {
        paths.insert(Native(report.path));
    }
    std::error_code error;
    for (fs::directory_iterator walk(folder, error); !error && walk != fs::directory_iterator();
         walk.increment(error)) {
        std::error_code unknown;
        if (!walk->is_directory(unknown)) { // a folder is for what a plug-in brings along
            paths.insert(walk->path());
        }
    }
    std::vector<PluginRow> rows;
    for (std::string const& path : paths) {
        rows.push_back(MakeRow(path));
    }
    return rows;
}

std::string ReleaseText(unsigned int release) {
    return release ? fmt::format("{}.{}", release >> 16, release & 0xFFFF) : std::string();
}

void PrintJson(std::string const& folder, std::vector<PluginRow> const& rows) {
    using Json = nlohmann::ordered_json;
    Json plugins = Json::array();
    for (PluginRow const& row : rows) {
        Json plugin;
        SetName(plugin, "file", row.file);
        plugin["loaded"] = row.loaded;
        plugin["release"] = row.release ? Json(ReleaseText(row.release)) : Json(nullptr);
        plugin["reason"] = row.loaded ? Json(nullptr) : Json(ShownUtf8(row.reason));
        plugin["types"] = Json::array();
        for (unsigned int const classId : row.classes) {
            CFileExt type;
            fileGetExtensionInfo(classId, type);
            plugin["types"].push_back({{"class", ClassText(classId)},
                                       {"description", Utf8(type.GetDescription())},
                                       {"extensions", Utf8(type.GetExtension())},
                                       {"loadable", (type.GetProperties() & FilePropertyAnyLoad) != 0},
                                       {"savable", (type.GetProperties() & FilePropertyAnySave) != 0}});
        }
        plugins.push_back(plugin);
    }
    Json object;
    SetName(object, "folder", folder);
    object["plugins"] = plugins;
    Print("{}\n", object.dump(2));
}

void PrintText(std::string const& folder, std::vector<PluginRow> const& rows) {
    bool const terminal = isatty(STDOUT_FILENO);
    Print("{}\n", ShownName(folder, terminal));
    for (PluginRow const& row : rows) {
        Print("{:<24}  {:>5}  {}\n", ShownName(row.file, terminal), ReleaseText(row.release),
              row.loaded ? fmt::format("{} types", row.classes.size()) : ShownName(row.reason, terminal));
        for (unsigned int const classId : row.classes) {
            CFileExt type;
            fileGetExtensionInfo(classId, type);
            Print("    {}  {:<4}  {:<4}  {}\n", ClassText(classId),
                  (type.GetProperties() & FilePropertyAnyLoad) != 0 ? "load" : "-",
                  (type.GetProperties() & FilePropertyAnySave) != 0 ? "save" : "-", Utf8(type.GetDescription()));
        }
    }
    if (rows.empty()) {
        Print("no plug-ins\n");
    }
}

} // namespace

int RunPlugins(bool json) {
    RegisterPlugins();
    std::string const folder = Native(GetPluginsDirectory());
    std::vector<PluginRow> const rows = MakeRows(folder);
    json ? PrintJson(folder, rows) : PrintText(folder, rows);
    bool const refused =
        std::any_of(rows.begin(), rows.end(), [](PluginRow const& row) { return row.tried && !row.loaded; });
    return EndOutput(refused ? ExitSomeFailed : ExitAllWell);
}

} // namespace zel
