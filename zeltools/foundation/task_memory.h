// SPDX-License-Identifier: MIT
// The allocator for blocks that travel between modules: any module frees what another one made, and a block knows its
// own size.

#pragma once

#include "zeltools/foundation/api.h"

#include <cstddef>

/// Gives a block, aligned for every type; null when there is no memory. A size of 0 gives a block that can be freed.
/// Threads: any, here and below.
[[nodiscard]] ZEL_API void* xTaskMemAlloc(std::size_t sizeBytes);

/// The size that was asked for; 0 for null.
ZEL_API std::size_t xTaskMemSize(void const* block);

/// Gives a block back; null is ignored.
ZEL_API void xTaskMemFree(void* block);
