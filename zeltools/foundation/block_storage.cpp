// SPDX-License-Identifier: MIT
#include "zeltools/foundation/block_storage.h"

#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/platform/huge_pages.h"

#include <cstdint>
#include <cstdlib>

namespace detail {
namespace {

/// The bytes of a block: at least one, so that a null result always means failure.
std::size_t BlockBytes(std::size_t count, std::size_t elementSize) {
    if (elementSize != 0 && count > PTRDIFF_MAX / elementSize)
        ThrowMemory();
    std::size_t const bytes = count * elementSize;
    return bytes != 0 ? bytes : 1;
}

std::size_t RoundUp(std::size_t bytes, std::size_t alignment) {
    return (bytes + alignment - 1) / alignment * alignment;
}

} // namespace

void* AllocateBlock(std::size_t count, std::size_t elementSize, std::size_t alignment) {
    std::size_t const bytes = BlockBytes(count, elementSize);
    void* block;
    if (bytes >= platform::HugePagesWorthwhile) {
        block = std::aligned_alloc(platform::HugePageSize, RoundUp(bytes, platform::HugePageSize));
        if (block)
            platform::PreferHugePages(block, bytes);
    } else if (alignment > alignof(std::max_align_t)) {
        block = std::aligned_alloc(alignment, RoundUp(bytes, alignment));
    } else {
        block = std::malloc(bytes);
    }
    if (!block)
        ThrowMemory();
    return block;
}

void* ReallocateBlock(void* block, std::size_t count, std::size_t elementSize) {
    void* moved = std::realloc(block, BlockBytes(count, elementSize));
    if (!moved)
        ThrowMemory();
    return moved;
}

void FreeBlock(void* block) noexcept {
    std::free(block);
}

} // namespace detail
