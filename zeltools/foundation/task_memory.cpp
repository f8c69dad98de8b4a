// SPDX-License-Identifier: MIT
#include "zeltools/foundation/task_memory.h"

#include <cstdlib>
#include <limits>

namespace {

/// Stands before each block and keeps the alignment of what follows.
struct alignas(std::max_align_t) Header {
    std::size_t sizeBytes;
};

} // namespace

void* xTaskMemAlloc(std::size_t sizeBytes) {
    if (sizeBytes > std::numeric_limits<std::size_t>::max() - sizeof(Header))
        return nullptr;
    auto* const header = static_cast<Header*>(std::malloc(sizeof(Header) + sizeBytes));
    if (!header)
        return nullptr;
    header->sizeBytes = sizeBytes;
    return header + 1;
}

std::size_t xTaskMemSize(void const* block) {
    return block ? (static_cast<Header const*>(block) - 1)->sizeBytes : 0;
}

void xTaskMemFree(void* block) {
    if (block)
        std::free(static_cast<Header*>(block) - 1);
}
