// SPDX-License-Identifier: MIT
// The commands of zel. Each runs to its end and answers the exit status of the process.

#pragma once

#include "progress_report.h"

#include <string>
#include <vector>

namespace zel {

/// What the process answers: scripts rely on these numbers.
enum ExitStatus : int {
    ExitAllWell = 0,
    ExitSomeFailed = 1,
    ExitWrongUsage = 2,
    ExitInterrupted = 130, ///< The keyboard's interruption; main ends the process by its signal.
};

enum class SortBy {
    Walk,
    Name,
    Size,
    Date,
    Kind
};

struct ListOptions {
    std::vector<std::string> paths; ///< Native names of files and folders.
    bool recursive = false;
    bool json = false;
    SortBy sort = SortBy::Walk;
    ProgressStyle progress = ProgressStyle::Automatic;
};

/// Lists files and folders with what the toolkit knows of them by name, and totals by kind.
int RunList(ListOptions const& options);

/// Prints the values of a custom data stream, or of each record of a preferences file.
int RunDump(std::string const& nativePath);

/// Lists the registered file types.
int RunTypes(bool json);

/// Tells where the toolkit keeps its things for this program.
int RunWhere(bool json);

} // namespace zel
