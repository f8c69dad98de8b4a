// SPDX-License-Identifier: MIT
// What system this is.
//
// Threads: any.

#pragma once

#include <string>

namespace platform {

/// What the toolkit calls its systems by. Codes grow with the age of the original platform; 110 is its newest, and
/// this system offers whatever that one does.
struct SystemVersion {
    unsigned int code = 110;
    std::u16string name; ///< As the system names itself: u"Debian GNU/Linux 12 (bookworm)".
    unsigned int servicePackMajor = 0;
    unsigned int servicePackMinor = 0;
};

/// Asked once for the process.
SystemVersion const& GetWinVer();

} // namespace platform
