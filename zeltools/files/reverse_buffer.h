// SPDX-License-Identifier: MIT
// Bytes in the opposite order, for files of the other byte order.
//
//     unsigned char bytes[] = {1, 2, 3};
//     ReverseBuffer(bytes, 3);              // 3 2 1

#pragma once

#include "zeltools/foundation/api.h"

/// Reverses `size` bytes in place; the middle one of an odd number stays. Null, or a size below 2: nothing is done.
ZEL_API void ReverseBuffer(void* data, int size);

// End of the public section ----------------------------------------------------------------------------------------

namespace detail {

/// Reverses each of `count` items of `itemSize` bytes that follow one another.
void ReverseItems(void* data, unsigned long long count, unsigned int itemSize);

} // namespace detail
