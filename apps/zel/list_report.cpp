// SPDX-License-Identifier: MIT
#include "list_report.h"

#include <cstdio>

namespace zel {

void ListTotals::Add(FileFacts const& facts) {
    Kind& kind = kinds[facts.kind];
    ++kind.files;
    kind.sizeBytes += facts.isFolder ? 0 : facts.sizeBytes;
}

void ListReport::AddFailure(std::string const&, std::string const&) {
    Flush();
}

bool ListReport::Finish(ListTotals const&) {
    Flush();
    return !failed;
}

void ListReport::Write(std::string_view text) {
    if (beforeWriting) {
        beforeWriting();
    }
    failed |= std::fwrite(text.data(), 1, text.size(), stdout) != text.size();
}

void ListReport::Flush() {
    failed |= std::fflush(stdout) != 0;
}

} // namespace zel
