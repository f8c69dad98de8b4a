// SPDX-License-Identifier: MIT
// The registry's file: where it lies, how a transaction on it is run, and what happens when it is damaged.
//
//   key    id, parent, name, folded       ids 1 to 6 are the roots and have no row; ids are never used again
//   value  id, key, name, folded, type, data
//
// Names are blobs of UTF-16, `name` as it was spelled and `folded` in upper case, which is unique under its parent.
//
// The connection is one for the process, under one lock, and is opened anew when the file behind its name is another
// one, when the name itself changes, and in the child of a fork. It keeps a rollback journal and no write-ahead
// log: that works on network homes, lets a read-only folder be read, and leaves one file when nobody is at work.

#pragma once

#include "zeltools/platform/linux/sqlite_database.h"

#include <functional>
#include <string>

namespace platform {

enum class StoreUse {
    Read,   ///< A store that is missing stays so.
    Change, ///< The same, and what is there may be changed.
    Create, ///< A store that is missing is made.
};

/// Runs a transaction on the store and answers its status; whatever is not ErrorSuccess undoes it. The work is run anew
/// when the file turns out to be damaged and could be set aside, so it starts from nothing each time.
/// @param work  Given the connection; null, but for StoreUse::Create, when there is no store.
int RunRegistryTransaction(StoreUse use, std::function<int(Database*)> const& work);

} // namespace platform
