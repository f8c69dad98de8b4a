// SPDX-License-Identifier: MIT
#include "list_report.h"
#include "search_explanation.h"
#include "terminal.h"

#include <fmt/format.h>
#include <optional>
#include <unistd.h>

namespace zel {

namespace {

/// One path a line; folders end in a slash.
class FindReport : public ListReport {
public:
    explicit FindReport(SearchOptions const& options) : terminal(isatty(STDOUT_FILENO)) {
        if (options.explain) {
            explanation.emplace(options, terminal);
            Write(explanation->Understood() + "\n");
        }
    }

    void AddRow(FileFacts const& facts) override {
        std::string text = ShownName(facts.nativePath, terminal);
        text += facts.isFolder && !text.ends_with('/') ? "/\n" : "\n";
        if (explanation) {
            text += explanation->Answers(TextsOf(facts));
        }
        Write(text);
    }

private:
    bool terminal;
    std::optional<SearchExplanation> explanation;
};

} // namespace

std::unique_ptr<ListReport> MakeFindReport(SearchOptions const& options) {
    return std::make_unique<FindReport>(options);
}

} // namespace zel
