// SPDX-License-Identifier: MIT
// What the commands write into the toolkit's log, when there is one.

#pragma once

#include "output.h"
#include <zeltools/foundation/log_file.h>
#include <zeltools/foundation/xexception.h>

#include <cstdio>
#include <fmt/format.h>

namespace zel {

/// Levels of the log: failures and the frame of the work, and what can be many lines.
enum TraceLevel : unsigned int {
    TraceAlways = LogMessageIndented | 0,
    TraceFolders = LogMessageIndented | 1
};

/// Writes a line. A log that cannot be written is given up with one message; the command goes on.
template <class... Arguments>
void Trace(TraceLevel level, char const* format, Arguments const&... arguments) {
    try {
        WriteToLogFile(level, format, arguments...);
    } catch (CXException* failure) {
        CXException::Delete(failure);
        SetLogLevel(LogLevelOff);
        Print(stderr, "zel: the log could not be written any further\n");
    }
}

} // namespace zel
