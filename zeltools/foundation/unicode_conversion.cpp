// SPDX-License-Identifier: MIT
#include "zeltools/foundation/unicode_conversion.h"

#include <climits>
#include <cstddef>

namespace {

constexpr bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

constexpr unsigned Bits(char byte, unsigned mask) {
    return static_cast<unsigned char>(byte) & mask;
}

} // namespace

int xUTF8ToUTF16(char const* source, char16_t* target) {
    if (!source)
        return 0;
    char const* next = source;
    std::size_t units = 0;
    auto const put = [&](unsigned unit) {
        if (target)
            target[units] = static_cast<char16_t>(unit);
        ++units;
    };
    // A sequence that is cut short ends at the terminator, which is no continuation, so nothing behind it is read.
    while (*next) {
        unsigned const lead = static_cast<unsigned char>(*next);
        if (lead < 0x80) {
            put(lead);
            next += 1;
        } else if ((lead & 0xE0) == 0xC0 && IsContinuation(next[1])) {
            put((lead & 0x1F) << 6 | Bits(next[1], 0x3F));
            next += 2;
        } else if ((lead & 0xF0) == 0xE0 && IsContinuation(next[1]) && IsContinuation(next[2])) {
            put((lead & 0x0F) << 12 | Bits(next[1], 0x3F) << 6 | Bits(next[2], 0x3F));
            next += 3;
        } else {
            break;
        }
    }
    bool const isWhole = *next == 0 && next - source < INT_MAX;
    if (!target)
        return isWhole ? static_cast<int>(next - source) : 0;
    put(0);
    return isWhole ? static_cast<int>(units) : 0;
}

int xUTF16ToUTF32(char16_t const* source, int count, char32_t* target) {
    if (!source || !target)
        return 0;
    int written = 0;
    for (int i = 0; i < count; ++i) {
        char32_t const unit = source[i];
        if ((unit & 0xFC00) != 0xD800) {
            target[written++] = unit;
            continue;
        }
        if (++i == count)
            break;
        char32_t const low = source[i];
        if ((low & 0xFC00) == 0xDC00)
            target[written++] = (unit & 0x3FF) << 10 | (low & 0x3FF);
    }
    return written;
}
