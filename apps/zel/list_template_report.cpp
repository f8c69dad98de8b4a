// SPDX-License-Identifier: MIT
#include "file_template.h"
#include "list_report.h"

#include <cstdio>
#include <unistd.h>

namespace zel {

namespace {

class TemplateReport : public ListReport {
public:
    explicit TemplateReport(FileTemplate const& fileTemplate) : expansion(fileTemplate) {
        place.index = 0;
        place.style = isatty(STDOUT_FILENO) ? ValueStyle::Terminal : ValueStyle::Pipe;
    }

    void AddRow(FileFacts const& facts) override {
        if (facts.isFolder) {
            return;
        }
        ++place.index;
        std::string text = expansion.Expand(facts, place);
        if (!expansion.EndsLine()) {
            text += '\n';
        }
        if (beforeWriting) {
            beforeWriting();
        }
        failed |= std::fwrite(text.data(), 1, text.size(), stdout) != text.size();
    }

    void AddFailure(std::string const&, std::string const&) override { Pause(); }

    void Pause() override { failed |= std::fflush(stdout) != 0; }

    bool HasFailed() const override { return failed; }

    bool Finish(ListTotals const&) override {
        Pause();
        return !failed;
    }

private:
    FileTemplate const& expansion;
    ExpansionPlace place;
    bool failed = false;
};

} // namespace

std::unique_ptr<ListReport> MakeTemplateReport(FileTemplate const& fileTemplate) {
    return std::make_unique<TemplateReport>(fileTemplate);
}

} // namespace zel
