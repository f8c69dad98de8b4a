// SPDX-License-Identifier: MIT
#include "commands.h"
#include "file_facts.h"
#include "list_report.h"
#include "terminal.h"
#include "trace.h"
#include "walk_progress.h"
#include <zeltools/files/paths/file_dates.h>
#include <zeltools/files/paths/folder_walk.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/files/paths/path_queries.h>
#include <zeltools/files/paths/path_slashes.h>
#include <zeltools/foundation/string_conversion.h>
#include <zeltools/foundation/xfile_exception.h>

#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <string_view>
#include <unistd.h>

namespace zel {

namespace {

/// The reason of a failure in the reader's language, which the message of a file exception gives with the name in it.
std::string Reason(CXFileException::FileExceptionType cause, std::string const& shownName) {
    CXFileException const failure(cause, static_cast<char16_t const*>(XCA2W(shownName.c_str(), xEncodingUtf8)));
    return static_cast<char const*>(XCW2A(failure.GetErrorMessage(), xEncodingUtf8));
}

class Lister {
public:
    explicit Lister(ListOptions const& listOptions)
        : options(listOptions), report(listOptions.json ? MakeJsonReport() : MakeTextReport()),
          errorsToTerminal(isatty(STDERR_FILENO)), progressReport(listOptions.progress),
          progress(progressReport.IsShown(), listOptions.paths.size()) {
        if (isatty(STDOUT_FILENO)) { // then it is the terminal that has the bar
            report->beforeWriting = [this] { progressReport.Clear(); };
        }
    }

    int Run() {
        for (std::string const& path : options.paths) {
            ListPath(path);
            progress.EndPath();
            if (progress.IsCancelled()) {
                Trace(TraceAlways, "zel list: interrupted\n");
                return ExitInterrupted;
            }
        }
        progressReport.Finish();
        TraceTotals();
        for (FileFacts const& facts : Sorted()) {
            report->AddRow(facts);
        }
        if (!report->Finish(totals)) {
            fmt::print(stderr, "zel: standard output: not everything could be written\n");
            return ExitSomeFailed;
        }
        return totals.failures ? ExitSomeFailed : ExitAllWell;
    }

private:
    void ListPath(std::string const& nativePath) {
        Trace(TraceAlways, "zel list: %s\n", ShownName(nativePath, true).c_str());
        CXTString<char16_t> path = fileFromNativeName(nativePath.c_str());
        if (fileIsDirectory(path, true, nullptr)) {
            fileSlashTerminate(path);
            ListFolder(path, nativePath);
        } else {
            ListFile(path, nativePath);
        }
    }

    void ListFile(CXTString<char16_t> const& path, std::string const& nativePath) {
        FileFacts facts;
        unsigned long long const size = fileGetSize(path);
        if (size == ~0ULL || !fileGetLastWriteDate(path, facts.lastWrite)) {
            CXFileException failure;
            CXFileException::ThrowOsError(CXFileException::fileNotFound, path, &failure);
            Fail(nativePath, failure.cause);
            return;
        }
        facts.name = nativePath;
        facts.sizeBytes = size;
        AddTypeFacts(path, false, facts);
        AddRow(std::move(facts));
    }

    void ListFolder(CXTString<char16_t> const& folder, std::string const& nativeFolder) {
        CFolderWalk walk(folder, options.recursive ? CFolderWalk::BelowToo : CFolderWalk::ThisFolder);
        CXTString<char16_t> traced;
        for (CFolderWalk::Entry entry; !progress.IsCancelled() && walk.Next(entry);) {
            progress.TakeEntry(walk.GetFolder());
            TraceFolder(walk.GetFolder(), traced);
            std::string const below = NativeBelow(walk.GetFolder(), folder.GetLength(), entry.name);
            if (entry.error != CXFileException::none) {
                Fail(nativeFolder + (nativeFolder.ends_with('/') || below.empty() ? "" : "/") + below, entry.error);
                continue;
            }
            FileFacts facts;
            facts.name = below;
            facts.sizeBytes = entry.sizeBytes;
            facts.lastWrite = entry.lastWrite;
            AddTypeFacts(walk.GetFolder() + entry.name + (entry.isDirectory ? u"\\" : u""), entry.isDirectory, facts);
            AddRow(std::move(facts));
        }
    }

    /// The native name of an entry, seen from the folder that was asked for.
    static std::string NativeBelow(CXTString<char16_t> const& folder, int rootLength, CXTString<char16_t> const& name) {
        return static_cast<char const*>(fileGetNativeName(folder.Mid(rootLength, -1) + name));
    }

    /// A line for each folder that is entered. `traced` is the one before.
    static void TraceFolder(CXTString<char16_t> const& folder, CXTString<char16_t>& traced) {
        if (IsLogFileEnabled() && !(folder == traced)) {
            traced = folder;
            std::string const native = static_cast<char const*>(fileGetNativeName(folder));
            Trace(TraceFolders, "\t%s\n", ShownName(native, true).c_str());
        }
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

    void AddRow(FileFacts&& facts) {
        progressReport.CountFile();
        totals.Add(facts);
        if (options.sort == SortBy::Walk) {
            report->AddRow(facts);
        } else {
            rows.push_back(std::move(facts));
        }
    }

    void Fail(std::string const& nativeName, CXFileException::FileExceptionType cause) {
        ++totals.failures;
        std::string const reason = Reason(cause, ShownName(nativeName, errorsToTerminal));
        report->AddFailure(nativeName, reason);
        Trace(TraceAlways, "%s\n", reason.c_str());
        progressReport.Clear();
        fmt::print(stderr, "zel: {}\n", reason);
    }

    std::vector<FileFacts>& Sorted() {
        auto const by = [this](auto key) {
            std::stable_sort(rows.begin(), rows.end(),
                             [key](FileFacts const& a, FileFacts const& b) { return key(a) < key(b); });
        };
        switch (options.sort) {
        case SortBy::Walk: break;
        case SortBy::Name: by([](FileFacts const& f) { return std::string_view(f.name); }); break;
        case SortBy::Size: by([](FileFacts const& f) { return f.sizeBytes; }); break;
        case SortBy::Date: by([](FileFacts const& f) { return f.lastWrite.GetTime(); }); break;
        case SortBy::Kind: by([](FileFacts const& f) { return std::string_view(f.kind); }); break;
        }
        return rows;
    }

    ListOptions const& options;
    std::unique_ptr<ListReport> report;
    ListTotals totals;
    std::vector<FileFacts> rows; ///< Held back to be sorted; empty in the walk's own order.
    bool errorsToTerminal;
    ProgressReport progressReport; ///< Shows what `progress` reports.
    WalkProgress progress;
};

} // namespace

int RunList(ListOptions const& options) {
    return Lister(options).Run();
}

} // namespace zel
