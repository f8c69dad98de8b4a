// SPDX-License-Identifier: MIT
// The one lock over the process-wide state of the application: its paths and names, the exit callbacks, and the
// thread registry. What is taken before and after it stands in docs/locks.md.

#pragma once

#include "zeltools/process/xcritical_section.h"

/// The application lock. It outlives every static object, so that code that runs at exit may take it.
CXCriticalSection& ApplicationLock();
