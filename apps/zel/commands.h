// SPDX-License-Identifier: MIT
// The commands of zel. Each runs to its end and answers the exit status of the process.

#pragma once

#include "media/media_limits.h"
#include "progress_report.h"
#include "search_options.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zel {

/// What the process answers: scripts rely on these numbers.
enum ExitStatus : int {
    ExitAllWell = 0,
    ExitSomeFailed = 1,
    ExitWrongUsage = 2,
    ExitInterrupted = 130, ///< The keyboard's interruption.
};

/// Where a command's template is; at most one of the two.
struct TemplateOptions {
    std::optional<std::string> text; ///< As it was typed.
    std::optional<std::string> file; ///< Native name.
    bool strict = false;             ///< Whether faults of the template are errors.

    bool IsGiven() const { return text || file; }
};

enum class SortBy {
    Walk,
    Name,
    Size,
    Date,
    Kind
};

/// More workers than any machine has processors are a slip of the finger.
constexpr unsigned int MaxThreads = 1024;

struct ListOptions {
    std::vector<std::string> paths; ///< Native names of files and folders.
    bool recursive = false;
    bool json = false;
    SortBy sort = SortBy::Walk;
    TemplateOptions wording; ///< What a file comes as; columns or JSON members where it is not given.
    SearchOptions search;    ///< Which files are wanted; all where there is no expression.
    bool namesOnly = false;  ///< Whether nothing is printed but the paths.
    ProgressStyle progress = ProgressStyle::Automatic;
    bool open = true;          ///< Whether images and scenes are opened, for what their headers tell.
    bool keepMetadata = false; ///< Whether the rows' facts come with the metadata.
    unsigned int threads = 1;
    MediaLimits limits;
};

/// Which files are shown.
struct ShowOptions {
    std::vector<std::string> files; ///< Native names.
    bool json = false;
    MediaLimits limits;
};

struct ConvertOptions {
    std::string from; ///< Native names.
    std::string to;
    std::vector<std::string> options; ///< "name=value".
    bool overwrite = false;
    bool preferences = true; ///< Whether the options are remembered for their format.
    MediaLimits limits;
};

/// New names for files.
struct RenameOptions {
    ListOptions files; ///< Which files, in which order, and how they are opened.
    TemplateOptions wording;
    bool apply = false;           ///< Otherwise it is only told what would be done.
    bool folders = false;         ///< Whether slashes in a new name lead into folders.
    bool wholeName = false;       ///< Whether the template gives the extension too, whatever it looks like.
    unsigned long long start = 1; ///< The first file's number.
    bool json = false;
};

/// What is asked about templates.
struct TemplateCheckOptions {
    TemplateOptions wording;
    bool json = false;
};

struct ListChoices;

/// Adds `zel find`, which is run as a list.
CLI::App* AddFindCommand(CLI::App& app, ListOptions& options, ListChoices& choices);

/// Lists files and folders with what the toolkit knows of them by name, and totals by kind.
int RunList(ListOptions const& options);

/// Adds `zel rename` to the command line.
CLI::App* AddRenameCommand(CLI::App& app, RenameOptions& options);

/// Renames files by a template, or tells what it would do.
int RunRename(RenameOptions const& options);

/// Lists the tags and parameters of templates.
int RunTags(bool json);

/// Adds `zel template` with its actions to the command line.
CLI::App* AddTemplateCommand(CLI::App& app, TemplateCheckOptions& options);

/// Names the faults of a template.
int RunTemplateCheck(TemplateCheckOptions const& options);

/// Prints all that is known of files.
int RunShow(ShowOptions const& options);

/// Reads an image or a scene and writes it as another file.
int RunConvert(ConvertOptions const& options);

/// Prints what is in the folder of the plug-ins, and why a file of it was refused.
int RunPlugins(bool json);

/// Prints the values of a custom data stream, or of each record of a preferences file.
int RunDump(std::string const& nativePath);

/// What is done with a preferences file.
enum class PrefsAction {
    List,
    Show,
    Get,
    Set,
    Unset,
    Diff
};

struct PrefsOptions {
    PrefsAction action = PrefsAction::List;
    std::string file; ///< Native name.
    std::string otherFile;
    std::string key1; ///< Empty where no record is named.
    std::string key2;
    std::string id;                 ///< Empty where no value is named.
    std::vector<std::string> words; ///< The value to set.
    std::string type;               ///< Its type; empty for the one that it has.
    bool json = false;
};

/// Adds `zel prefs` with its actions to the command line.
CLI::App* AddPrefsCommand(CLI::App& app, PrefsOptions& options);

/// Reads or changes a preferences file. Comparing two that differ answers ExitSomeFailed.
int RunPrefs(PrefsOptions const& options);

/// Lists the registered file types.
int RunTypes(bool json);

/// Tells where the toolkit keeps its things for this program.
int RunWhere(bool json);

} // namespace zel
