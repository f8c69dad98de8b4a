// SPDX-License-Identifier: MIT
// How misuse of a container or a string is reported. The declarations stand apart from the exception classes,
// which hold strings themselves, so that a string or container header can include them without a cycle.

#pragma once

#include "zeltools/foundation/api.h"

namespace detail {

/// Throws a new CXInvalidArgException, after entering it in the calling thread's table.
[[noreturn]] ZEL_API void ThrowInvalidArg();

/// Throws a new CXMemoryException, after entering it in the calling thread's table.
[[noreturn]] ZEL_API void ThrowMemory();

} // namespace detail
