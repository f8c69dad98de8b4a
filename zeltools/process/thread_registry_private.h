// SPDX-License-Identifier: MIT
// What the close of the library does with the thread registry.

#pragma once

namespace detail {

/// Deletes the parent map, the cancelled set and the silent set, in this order. The next use makes them anew.
void DeleteThreadTables();

} // namespace detail
