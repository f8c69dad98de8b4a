// SPDX-License-Identifier: MIT
#include "zeltools/platform/system_string.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace platform {

namespace {

using ByteCount = std::uint32_t;

} // namespace

char16_t* SysAllocString(char16_t const* text) {
    if (!text)
        return nullptr;
    std::size_t const bytes = std::char_traits<char16_t>::length(text) * sizeof(char16_t);
    if (bytes > UINT32_MAX)
        return nullptr;
    auto* const block = static_cast<char*>(std::malloc(sizeof(ByteCount) + bytes + sizeof(char16_t)));
    if (!block)
        return nullptr;
    ByteCount const count = static_cast<ByteCount>(bytes);
    std::memcpy(block, &count, sizeof count);
    std::memcpy(block + sizeof count, text, bytes + sizeof(char16_t));
    return reinterpret_cast<char16_t*>(block + sizeof count);
}

void SysFreeString(char16_t* text) {
    if (text)
        std::free(reinterpret_cast<char*>(text) - sizeof(ByteCount));
}

unsigned SysStringLen(char16_t const* text) {
    if (!text)
        return 0;
    ByteCount bytes;
    std::memcpy(&bytes, reinterpret_cast<char const*>(text) - sizeof bytes, sizeof bytes);
    return static_cast<unsigned>(bytes / sizeof(char16_t));
}

} // namespace platform
