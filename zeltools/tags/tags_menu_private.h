// SPDX-License-Identifier: MIT
// The submenus that group the tags of a menu by the labels of their classes.

#pragma once

#include "zeltools/foundation/xstring.h"

class CCustomMenu;

namespace detail {

/// The menu for a class label, as "Picture//Camera": "//" parts the levels, and those without a name are passed over.
/// A submenu that is missing is inserted at its place in the alphabet, and the menu listeners are told of it.
/// @param created  Becomes true where a submenu was made.
/// @return the innermost one; `root` for an empty label.
CCustomMenu& MenuOfClassLabel(CCustomMenu& root, CXTString<char16_t> const& label, bool& created);

} // namespace detail
