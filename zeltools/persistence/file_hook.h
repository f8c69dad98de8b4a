// SPDX-License-Identifier: MIT
// A hook by which a host keeps track of the files that the toolkit holds open.

#pragma once

#include "zeltools/foundation/api.h"

/// Called with the handle, or the stream of a CXStdioFile, and the value 1 after each successful opening and closing.
/// The first call with an address is its opening, the next its closing. A stream that a host opened is heard of when it
/// is closed. Must not throw.
using XFileHook = void (*)(void* handleOrStream, int value);

/// Sets the hook of the process; null clears it.
/// @return the hook that was set before; null for none.
/// Threads: any. A call of the old hook that is under way goes on.
ZEL_API XFileHook xSetFileHook(XFileHook hook);
