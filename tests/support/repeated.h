// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// A text so many times over.
inline std::u16string Repeated(std::size_t count, std::u16string const& text) {
    std::u16string all;
    for (; count > 0; --count)
        all += text;
    return all;
}
