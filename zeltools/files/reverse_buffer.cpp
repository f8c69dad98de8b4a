// SPDX-License-Identifier: MIT
#include "zeltools/files/reverse_buffer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

template <class Word>
void SwapWords(unsigned char* bytes, unsigned long long count, Word (*swap)(Word)) {
    for (unsigned long long i = 0; i < count; ++i, bytes += sizeof(Word)) {
        Word word; // items need not be aligned
        std::memcpy(&word, bytes, sizeof(word));
        word = swap(word);
        std::memcpy(bytes, &word, sizeof(word));
    }
}

} // namespace

void ReverseBuffer(void* data, int size) {
    if (data != nullptr && size > 1) {
        auto* const bytes = static_cast<unsigned char*>(data);
        std::reverse(bytes, bytes + size);
    }
}

namespace detail {

void ReverseItems(void* data, unsigned long long count, unsigned int itemSize) {
    auto* bytes = static_cast<unsigned char*>(data);
    switch (itemSize) {
    case 0:
    case 1: return;
    case 2: return SwapWords<std::uint16_t>(bytes, count, [](std::uint16_t word) { return __builtin_bswap16(word); });
    case 4: return SwapWords<std::uint32_t>(bytes, count, [](std::uint32_t word) { return __builtin_bswap32(word); });
    case 8: return SwapWords<std::uint64_t>(bytes, count, [](std::uint64_t word) { return __builtin_bswap64(word); });
    default:
        for (; count > 0; --count, bytes += itemSize) {
            std::reverse(bytes, bytes + itemSize);
        }
    }
}

} // namespace detail
