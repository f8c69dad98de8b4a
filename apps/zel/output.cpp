// SPDX-License-Identifier: MIT
#include "output.h"

#include "commands.h"

#include <algorithm>

namespace zel {

void TellOutputIsCut() {
    Print(stderr, "zel: standard output: not everything could be written\n");
}

int EndOutput(int status) {
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) {
        return status;
    }
    TellOutputIsCut();
    return std::max<int>(status, ExitSomeFailed);
}

} // namespace zel
