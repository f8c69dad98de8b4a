// SPDX-License-Identifier: MIT
// Any bytes as a shell link.
#include "zeltools/platform/shell_link.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    platform::ShellLink link;
    if (platform::ParseShellLink(std::as_bytes(std::span(data, size)), link)) {
        // Each text lies in the file, at most twice over: a path and the suffix that may follow two of them.
        std::size_t const units = link.localPath.size() + link.networkPath.size() + link.environmentPath.size() +
                                  link.relativePath.size() + link.workingDirectory.size();
        if (units > 8 * size) {
            std::abort();
        }
    }
    return 0;
}
