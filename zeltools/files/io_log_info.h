// SPDX-License-Identifier: MIT
// One line of the log that a load or save keeps (io_options.h).

#pragma once

#include "zeltools/foundation/xstring.h"

/// A plain value.
struct IoLogInfo {
    /// How much a line matters. Any number from 0 on is a level; these are the ones that a log window colours.
    enum loglevel : int {
        Plain = 0,
        Information = 1,
        Warning = 2,
        Error = 4,
    };

    loglevel level = Plain;
    CXTString<char16_t> text;
};
