// SPDX-License-Identifier: MIT
// Tells the user, for as long as it lives, that the program is at work: the wait cursor of a desktop.

#pragma once

#include "zeltools/foundation/desktop_hooks_private.h"

namespace detail {

class BusyIndicator {
public:
    BusyIndicator() : desktop(GetDesktopHooks()) { desktop.ShowBusy(true); }
    ~BusyIndicator() { desktop.ShowBusy(false); }
    BusyIndicator(BusyIndicator const&) = delete;
    BusyIndicator& operator=(BusyIndicator const&) = delete;

private:
    DesktopHooks& desktop; ///< The one that was told of the beginning is told of the end.
};

} // namespace detail
