// SPDX-License-Identifier: MIT
// The map from numbers to numbers, under a name of its own.

#pragma once

#include "zeltools/foundation/hash_map.h"

/// CHashMap of int to int, with nothing added.
using CIntMap = CHashMap<int, int, int, CHashMethods<int>>;
