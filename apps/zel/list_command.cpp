// SPDX-License-Identifier: MIT
#include "commands.h"
#include "file_facts.h"
#include "file_finder.h"
#include "file_search.h"
#include "interruption.h"
#include "list_report.h"
#include "output.h"
#include "row_queue.h"
#include "sort_rows.h"
#include "template_options.h"
#include "terminal.h"
#include "trace.h"
#include "walk_progress.h"
#include <zeltools/foundation/string_conversion.h>
#include <zeltools/foundation/xfile_exception.h>

#include <cstdio>
#include <filesystem>
#include <fmt/format.h>
#include <unistd.h>

namespace zel {

namespace {

/// The reason of a failure in the reader's language, which the message of a file exception gives with the name in it.
std::string Reason(CXFileException::FileExceptionType cause, std::string const& shownName) {
    CXFileException const failure(cause, static_cast<char16_t const*>(XCA2W(shownName.c_str(), xEncodingUtf8)));
    return static_cast<char const*>(XCW2A(failure.GetErrorMessage(), xEncodingUtf8));
}

/// How many rows a path gives, as far as can be told; for a progress that tells of how many.
std::size_t CountRows(std::string const& nativePath, bool recursive, Interruption const& interruption) {
    namespace fs = std::filesystem;
    std::size_t count = 0;
    std::error_code error;
    fs::recursive_directory_iterator walk(nativePath, fs::directory_options::skip_permission_denied, error);
    if (error) {
        return 1;
    }
    for (; !error && walk != fs::recursive_directory_iterator(); walk.increment(error)) {
        if (!recursive) {
            walk.disable_recursion_pending();
        }
        if (++count % 1024 == 0 && interruption.IsRequested()) {
            break;
        }
    }
    return count;
}

/// @param wording  Null for none.
std::unique_ptr<ListReport> MakeReport(ListOptions const& options, FileTemplate const* wording) {
    return options.namesOnly ? MakeFindReport(options.search)
           : options.json    ? MakeJsonReport(wording)
           : wording         ? MakeTemplateReport(*wording)
                             : MakeTextReport();
}

class Lister : RowSink {
public:
    Lister(ListOptions const& listOptions, FileTemplate const* wording, FileSearch* fileSearch,
           Interruption& interruptionOfUser)
        : options(listOptions), search(fileSearch), interruption(interruptionOfUser),
          report(MakeReport(listOptions, wording)), errorsToTerminal(isatty(STDERR_FILENO)),
          progressReport(listOptions.progress, interruptionOfUser),
          progress(progressReport.IsShown(), listOptions.paths.size()), queue(listOptions, *this),
          finder(listOptions, queue, [this] { return MustStop(); }) {
        if (isatty(STDOUT_FILENO)) { // then it is the terminal that has the bar
            report->beforeWriting = [this] { progressReport.Clear(); };
        }
        if (search && options.namesOnly && !options.search.explain) { // a list tells what the headers say
            finder.mustOpen = [this](FileFacts const& facts) { return !search->IsSettled(facts); };
        }
        interruption.SetListener([this] { queue.Pool().Cancel(); });
    }
    ~Lister() override { interruption.SetListener(nullptr); }

    int Run() {
        if (progressReport.IsShown()) {
            for (std::string const& path : options.paths) {
                progressReport.AddToTotal(CountRows(path, options.recursive, interruption));
            }
        }
        for (std::string const& path : options.paths) {
            finder.Find(path);
            if (MustStop()) {
                break;
            }
        }
        queue.Finish();
        return End();
    }

private:
    bool MustStop() const { return interruption.IsRequested() || report->HasFailed(); }

    int End() {
        totals.interrupted = interruption.IsRequested();
        if (totals.interrupted) {
            interruption.Acknowledge();
            progressReport.Clear();
            Trace(TraceAlways, "zel list: interrupted\n");
        } else {
            progressReport.Finish();
        }
        TraceTotals();
        SortRows(rows, options.sort);
        for (FileFacts const& facts : rows) {
            report->AddRow(facts);
        }
        bool const written = report->Finish(totals);
        if (totals.interrupted) {
            queue.Pool().Join(interruption.Deadline());
            return ExitInterrupted;
        }
        if (!written) {
            TellOutputIsCut();
            return ExitSomeFailed;
        }
        return totals.failures ? ExitSomeFailed : ExitAllWell;
    }

    void TraceTotals() const {
        unsigned long long files = 0;
        unsigned long long bytes = 0;
        for (auto const& [kind, total] : totals.kinds) {
            files += total.files;
            bytes += total.sizeBytes;
        }
        Trace(TraceAlways, "zel list: %I64u files, %I64u bytes, %I64u failures\n", files, bytes, totals.failures);
    }

    // What the queue lets out

    void TakeRow(FileFacts&& facts, CXTString<char16_t> const& folder) override {
        TakeProgress(folder);
        progressReport.CountFile();
        if (search && !search->Answers(facts)) {
            return;
        }
        totals.Add(facts);
        if (options.sort == SortBy::Walk) {
            report->AddRow(facts);
        } else {
            rows.push_back(std::move(facts));
        }
    }

    void TakeOpenFailure(std::string const& nativeName, std::string const& reason) override {
        Fail(nativeName, ShownName(nativeName + ": " + reason, errorsToTerminal));
    }

    void TakeFailure(std::string const& nativeName, CXFileException::FileExceptionType cause,
                     CXTString<char16_t> const& folder) override {
        TakeProgress(folder);
        Fail(nativeName, Reason(cause, ShownName(nativeName, errorsToTerminal)));
    }

    void TakeEndOfPath() override { progress.EndPath(); }

    void TakePause() override { report->Pause(); }

    void TakeProgress(CXTString<char16_t> const& folder) {
        if (!folder.IsEmpty()) {
            progress.TakeEntry(folder);
        }
    }

    void Fail(std::string const& nativeName, std::string const& reason) {
        ++totals.failures;
        report->AddFailure(nativeName, reason);
        Trace(TraceAlways, "%s\n", reason.c_str());
        progressReport.Clear();
        Print(stderr, "zel: {}\n", reason);
    }

    ListOptions const& options;
    FileSearch* search; ///< Null where every file is wanted.
    Interruption& interruption;
    std::unique_ptr<ListReport> report;
    ListTotals totals;
    std::vector<FileFacts> rows; ///< Held back to be sorted; empty in the walk's own order.
    bool errorsToTerminal;
    ProgressReport progressReport; ///< Shows what `progress` reports.
    WalkProgress progress;
    RowQueue queue;
    FileFinder finder;
};

} // namespace

int RunList(ListOptions const& options) {
    ListOptions needed = options;
    std::unique_ptr<FileTemplate> wording;
    if (options.wording.IsGiven()) {
        wording = PrepareTemplate(options.wording, !options.wording.strict);
        if (!wording) {
            return ExitSomeFailed;
        }
        needed.open &= options.json || options.search.expression || wording->GetNeeds() != TagNeeds::Nothing;
        needed.keepMetadata |= wording->GetNeeds() == TagNeeds::Metadata;
    }
    std::unique_ptr<FileSearch> search;
    if (options.search.expression) {
        search = FileSearch::Prepare(options.search);
        if (!search) {
            return ExitWrongUsage;
        }
        needed.keepMetadata = true;
    }
    Interruption interruption;
    return Lister(needed, wording.get(), search.get(), interruption).Run();
}

} // namespace zel
