// SPDX-License-Identifier: MIT
// How the library's own code traces. Its work must not fail because the log's disk is full.

#pragma once

#include "zeltools/foundation/log_file.h"
#include "zeltools/foundation/xexception.h"

namespace detail {

/// Writes a message of level 0, indented, if anybody listens; one that cannot be written is dropped.
template <class Character, class... Arguments>
void TraceToLog(Character const* format, Arguments const&... arguments) {
    if (!IsLogFileEnabled()) {
        return;
    }
    try {
        WriteToLogFile(format, arguments...);
    } catch (CXException* failure) {
        CXException::Delete(failure);
    }
}

} // namespace detail
