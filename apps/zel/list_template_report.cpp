// SPDX-License-Identifier: MIT
#include "file_template.h"
#include "list_report.h"

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
        Write(text);
    }

private:
    FileTemplate const& expansion;
    ExpansionPlace place;
};

} // namespace

std::unique_ptr<ListReport> MakeTemplateReport(FileTemplate const& fileTemplate) {
    return std::make_unique<TemplateReport>(fileTemplate);
}

} // namespace zel
