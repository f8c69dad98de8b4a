// SPDX-License-Identifier: MIT
// The one lock over what the path functions do to the process as a whole: the current directory with its stack, and
// the creation of temporary folders.

#pragma once

#include "zeltools/process/xcritical_section.h"

namespace detail {

/// The file lock. It outlives every static object, so that code that runs at exit may take it.
CXCriticalSection& FileLock();

} // namespace detail
