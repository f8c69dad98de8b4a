// SPDX-License-Identifier: MIT
// Who wants to know of the submenus that the toolkit makes while it builds a popup menu: what draws or manages the
// application's menus puts a listener here.

#pragma once

#include "zeltools/foundation/api.h"

class CCustomMenu;

/// A listener. It is called on the thread that shows the menu, throws nothing, and neither adds nor removes listeners
/// while it is called.
class ZEL_API CMenuListener {
public:
    virtual ~CMenuListener() = default;

    /// A submenu was made, empty as yet. The pointer holds until the next OnSubMenusGone.
    virtual void OnSubMenuCreated(CCustomMenu* menu) = 0;

    /// All submenus that were told of since the last call are destroyed: to be taken from every list.
    virtual void OnSubMenusGone() = 0;
};

/// Adds a listener, which stays the caller's and must be removed before it goes. One that is there already is not
/// added again. Threads: the one that shows menus, as for the rest of this file.
ZEL_API void AddMenuListener(CMenuListener* listener);

/// Removes a listener; one that is not there is no fault.
ZEL_API void RemoveMenuListener(CMenuListener* listener);

namespace detail {

void TellSubMenuCreated(CCustomMenu* menu);
void TellSubMenusGone();

} // namespace detail
