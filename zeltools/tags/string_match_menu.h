// SPDX-License-Identifier: MIT
// The help menu of a box in which search expressions are typed: it names the operators and puts the chosen one in.

#pragma once

#include "zeltools/foundation/api.h"

class CEdit;

/// Shows the menu over an edit box, inserts the operator that the user chose in the place of the selection, as a change
/// that can be undone, and gives the box the focus back. The caret comes between the two marks of a pair.
/// @param edit  Null shows nothing.
/// @return whether there was a box; a menu that was cancelled is no fault.
/// Threads: the one that owns the box.
ZEL_API bool DisplayStringMatchMenu(CEdit* edit);
