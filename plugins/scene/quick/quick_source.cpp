// SPDX-License-Identifier: MIT
#include "plugins/scene/quick/quick_source.h"

#include <algorithm>
#include <cstring>

namespace {

/// Between two questions whether to stop: far below a millisecond of work.
constexpr std::size_t BufferSize = 1 << 18;
constexpr std::size_t LongestLine = 1 << 12;

} // namespace

std::size_t QuickBytes::Fill(std::size_t wanted) {
    if (last - first < wanted && !ended) {
        buffer.resize(BufferSize);
        std::copy(buffer.data() + first, buffer.data() + last, buffer.data());
        last -= first;
        first = 0;
        while (last < wanted) {
            std::size_t const got = source.Read(buffer.data() + last, buffer.size() - last);
            if (got == 0) {
                ended = true;
                break;
            }
            last += got;
        }
    }
    return last - first;
}

char const* QuickBytes::Take(std::size_t size) {
    if (size > BufferSize || Fill(size) < size) {
        return nullptr;
    }
    first += size;
    return buffer.data() + first - size;
}

bool QuickBytes::Line(std::string_view& line) {
    std::size_t const there = std::min(Fill(LongestLine), LongestLine);
    char const* const start = buffer.data() + first;
    auto const* const end = there == 0 ? nullptr : static_cast<char const*>(std::memchr(start, '\n', there));
    if (!end) {
        return false;
    }
    auto const length = static_cast<std::size_t>(end - start);
    if (std::memchr(start, '\0', length)) {
        return false;
    }
    line = {start, length};
    first += length + 1;
    return true;
}

bool QuickBytes::IsAtEnd() {
    return Fill(1) == 0;
}
