// SPDX-License-Identifier: MIT
#include "commands.h"
#include "file_finder.h"
#include "interruption.h"
#include "json_text.h"
#include "media_facts.h"
#include "output.h"
#include "rename_moves.h"
#include "rename_plan.h"
#include "row_queue.h"
#include "sort_rows.h"
#include "template_options.h"
#include "terminal.h"
#include "utf8_text.h"
#include <zeltools/files/paths/native_names.h>
#include <zeltools/files/paths/path_split.h>
#include <zeltools/process/worker_count.h>

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <unistd.h>

namespace zel {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

/// The files of the command line with their facts.
class Collector : RowSink {
public:
    struct Failure {
        std::string name;
        std::string reason;
    };

    Collector(ListOptions const& listOptions, Interruption& interruptionOfUser)
        : options(listOptions), interruption(interruptionOfUser), queue(listOptions, *this),
          finder(listOptions, queue, [this] { return interruption.IsRequested(); }) {
        interruption.SetListener([this] { queue.Pool().Cancel(); });
    }
    ~Collector() override { interruption.SetListener(nullptr); }

    /// False when the user wants no more.
    bool Collect() {
        for (std::string const& path : options.paths) {
            finder.Find(path);
        }
        queue.Finish();
        if (interruption.IsRequested()) {
            interruption.Acknowledge();
            queue.Pool().Join(interruption.Deadline());
            return false;
        }
        SortRows(rows, options.sort);
        return true;
    }

    std::vector<FileFacts> rows;   ///< Files only.
    std::vector<Failure> failures; ///< What could not be found at all.

private:
    void TakeRow(FileFacts&& facts, CXTString<char16_t> const&) override {
        if (!facts.isFolder) {
            rows.push_back(std::move(facts));
        }
    }
    void TakeOpenFailure(std::string const&, std::string const&) override {} // the row's facts have it
    void TakeFailure(std::string const& nativeName, CXFileException::FileExceptionType cause,
                     CXTString<char16_t> const&) override {
        bool const isMissing = cause == CXFileException::fileNotFound || cause == CXFileException::badPath;
        failures.push_back({nativeName, isMissing ? "there is no such file or folder" : "it cannot be read"});
    }
    void TakeEndOfPath() override {}
    void TakePause() override {}

    ListOptions const& options;
    Interruption& interruption;
    RowQueue queue;
    FileFinder finder;
};

char const* StateWord(RenameState state) {
    switch (state) {
    case RenameState::Planned: return "planned";
    case RenameState::Unchanged: return "unchanged";
    case RenameState::Refused: return "refused";
    case RenameState::Renamed: return "renamed";
    case RenameState::Failed: return "failed";
    case RenameState::NotDone: break;
    }
    return "not done";
}

class Renamer {
public:
    explicit Renamer(RenameOptions const& renameOptions)
        : options(renameOptions), toTerminal(isatty(STDOUT_FILENO)), errorsToTerminal(isatty(STDERR_FILENO)) {}

    int Run() {
        std::unique_ptr<FileTemplate> const wording = PrepareTemplate(options.wording, false);
        if (!wording) {
            return ExitSomeFailed;
        }
        ListOptions found = options.files;
        found.open = wording->GetNeeds() != TagNeeds::Nothing;
        found.threads = found.threads ? found.threads : OMPGetMaxThreadCount(true);
        found.keepMetadata = wording->GetNeeds() == TagNeeds::Metadata;
        {
            Interruption interruption;
            Collector collector(found, interruption);
            if (!collector.Collect()) {
                Print(stderr, "zel: interrupted, nothing is renamed\n");
                return ExitInterrupted;
            }
            failures = std::move(collector.failures);
            plan = PlanRenames(Items(collector.rows, *wording), options.folders);
        }
        bool stopped = false;
        if (options.apply) {
            PatientStop const patience;
            CarryOut(plan, [] { return PatientStop::IsRequested(); });
            stopped = Count(RenameState::NotDone) != 0;
        }
        options.json ? PrintJson(stopped) : PrintText();
        bool const well = failures.empty() && Count(RenameState::Refused) + Count(RenameState::Failed) == 0;
        return EndOutput(stopped ? ExitInterrupted : well ? ExitAllWell : ExitSomeFailed);
    }

private:
    std::vector<RenameItem> Items(std::vector<FileFacts> const& rows, FileTemplate const& wording) {
        std::vector<RenameItem> items;
        std::set<std::string> taken;
        ExpansionPlace place;
        place.index = options.start;
        place.counterDigits =
            static_cast<unsigned int>(fmt::to_string(options.start + std::max<std::size_t>(rows.size(), 1) - 1).size());
        for (FileFacts const& facts : rows) {
            fs::path const path = static_cast<char const*>(fileGetNativeName(facts.path));
            RenameItem item;
            item.folder = RealFolder(path.parent_path());
            item.from = path.filename();
            item.shown = Shown(path);
            if (!taken.insert(item.Source()).second) {
                continue; // named twice
            }
            std::string const text = wording.Expand(facts, place);
            ++place.index;
            if (facts.media && !facts.media->answer.answered) {
                item.Refuse("it cannot be read: " + facts.media->answer.Reasons());
            } else {
                item.to = NewName(text, wording, facts);
            }
            items.push_back(std::move(item));
        }
        return items;
    }

    /// The expansion with the file's own extension, unless the template says which.
    std::string NewName(std::string text, FileTemplate const& wording, FileFacts const& facts) const {
        std::string const& ending = wording.GetEnding(); // not there where it stood in a block that went
        bool const says = options.wholeName || (ending.find('.') != std::string::npos && text.ends_with(ending));
        if (wording.EndsLine() && text.ends_with('\n')) {
            text.pop_back(); // a template file ends so
        }
        if (!options.wholeName) { // blanks beside a tag that gave nothing
            text.erase(text.find_last_not_of(' ') + 1);
            text.erase(0, text.find_first_not_of(' '));
        }
        std::string const extension = static_cast<char const*>(fileGetNativeName(fileGetExtension(facts.path)));
        bool const has = text.size() >= extension.size() &&
                         strcasecmp(text.c_str() + text.size() - extension.size(), extension.c_str()) == 0;
        return says || has || text.empty() ? text : text + extension;
    }

    /// One name for a folder, whatever links lead to it, so that two ways to one file are seen to be one.
    std::string RealFolder(fs::path const& folder) {
        auto const [known, isNew] = realFolders.try_emplace(folder.string());
        if (isNew) {
            std::error_code error;
            fs::path const real = fs::canonical(folder, error);
            known->second = (error ? folder : real).string();
            known->second += known->second.ends_with('/') ? "" : "/";
        }
        return known->second;
    }

    /// A path below the current folder without that in front.
    static std::string Shown(fs::path const& path) {
        std::error_code error;
        std::string const here = fs::current_path(error).string() + "/";
        return path.string().starts_with(here) ? path.string().substr(here.size()) : path.string();
    }

    std::size_t Count(RenameState state) const {
        return static_cast<std::size_t>(std::count_if(plan.items.begin(), plan.items.end(),
                                                      [&](RenameItem const& item) { return item.state == state; }));
    }

    void PrintText() const {
        for (Collector::Failure const& failure : failures) {
            Print(stderr, "zel: {}\n", ShownName(failure.name + ": " + failure.reason, errorsToTerminal));
        }
        for (RenameItem const& item : plan.items) {
            switch (item.state) {
            case RenameState::Planned:
            case RenameState::Renamed:
                Print("{} -> {}\n", ShownName(item.shown, toTerminal), ShownName(item.to, toTerminal));
                break;
            case RenameState::Refused:
            case RenameState::Failed: {
                std::string const wanted = item.to.empty() ? "" : " to " + item.to;
                std::fflush(stdout); // the lines of both streams in their order
                Print(
                    stderr, "zel: {}\n",
                    ShownName(fmt::format("{}: not renamed{}: {}", item.shown, wanted, item.reason), errorsToTerminal));
                break;
            }
            case RenameState::Unchanged:
            case RenameState::NotDone: break;
            }
        }
        PrintSummary();
    }

    void PrintSummary() const {
        std::size_t const refused = Count(RenameState::Refused) + Count(RenameState::Failed) + failures.size();
        std::size_t const done = Count(options.apply ? RenameState::Renamed : RenameState::Planned);
        std::string text = fmt::format("{} {}", done, options.apply ? "renamed" : "to rename");
        auto const add = [&](std::size_t count, char const* word) {
            text += count ? fmt::format(", {} {}", count, word) : std::string();
        };
        add(Count(RenameState::Unchanged), "as they are");
        add(refused, "not");
        add(Count(RenameState::NotDone), "not any more: interrupted");
        Print("\n{}{}\n", text, options.apply || done == 0 ? "" : "; --apply does it");
    }

    void PrintJson(bool stopped) const {
        Json files = Json::array();
        for (RenameItem const& item : plan.items) {
            Json file;
            SetName(file, "from", item.folder + item.from);
            SetName(file, "to", item.to.empty() ? "" : item.folder + item.to);
            file["state"] = StateWord(item.state);
            if (!item.reason.empty()) {
                file["reason"] = ShownUtf8(item.reason);
            }
            files.push_back(std::move(file));
        }
        Json failed = Json::array();
        for (Collector::Failure const& failure : failures) {
            Json entry;
            SetName(entry, "name", failure.name);
            entry["reason"] = failure.reason;
            failed.push_back(std::move(entry));
        }
        Json all;
        all["applied"] = options.apply;
        all["files"] = files;
        all["failures"] = failed;
        if (stopped) {
            all["interrupted"] = true;
        }
        Print("{}\n", all.dump(2));
    }

    RenameOptions const& options;
    bool toTerminal;
    bool errorsToTerminal;
    std::map<std::string, std::string> realFolders;
    std::vector<Collector::Failure> failures;
    RenamePlan plan;
};

} // namespace

int RunRename(RenameOptions const& options) {
    return Renamer(options).Run();
}

} // namespace zel
