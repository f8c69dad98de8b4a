// SPDX-License-Identifier: MIT
// How a list is printed: as columns for a person, as JSON for a program, as the texts of a template, or as paths alone.
// Each prints a row as it comes.

#pragma once

#include "file_facts.h"
#include "search_options.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace zel {

class FileTemplate;

/// What a list adds up to.
struct ListTotals {
    struct Kind {
        unsigned long long files = 0;
        unsigned long long sizeBytes = 0;
    };
    std::map<std::string, Kind> kinds; ///< By the kind's word.
    unsigned long long failures = 0;   ///< Files and folders that could not be read.
    bool interrupted = false;          ///< The user wanted no more.

    void Add(FileFacts const& facts);
};

class ListReport {
public:
    virtual ~ListReport() = default;

    virtual void AddRow(FileFacts const& facts) = 0;
    /// A file or folder that could not be read, of which standard error tells next: shows what has come.
    virtual void AddFailure(std::string const& nativeName, std::string const& reason);
    /// Nothing may come for a while: shows what has come.
    virtual void Pause() { Flush(); }
    /// Whether nobody takes what is written.
    bool HasFailed() const { return failed; }
    /// The end of the list; false when not everything could be written.
    [[nodiscard]] virtual bool Finish(ListTotals const& totals);

    /// Called before each piece that goes to standard output, where that shows something else too; may be empty.
    std::function<void()> beforeWriting;

protected:
    void Write(std::string_view text);
    void Flush();

private:
    bool failed = false;
};

/// Columns on standard output, in colours where it is a terminal that wants them.
std::unique_ptr<ListReport> MakeTextReport();

/// One object on standard output: "files", "failures", "totals". Each row is written as it comes.
/// @param fileTemplate  Each file's row has its expansion as "text"; null for none.
std::unique_ptr<ListReport> MakeJsonReport(FileTemplate const* fileTemplate);

/// The expansion of a template for each file, on standard output and each with an end of line. Folders and totals are
/// left out.
std::unique_ptr<ListReport> MakeTemplateReport(FileTemplate const& fileTemplate);

/// The paths alone, on standard output; with what the search explains of each, if it does.
std::unique_ptr<ListReport> MakeFindReport(SearchOptions const& options);

} // namespace zel
