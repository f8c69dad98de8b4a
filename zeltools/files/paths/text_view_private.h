// SPDX-License-Identifier: MIT
// The step between the toolkit's string and a view of its units. Positions of the path code are sizes; the string's
// are ints.

#pragma once

#include "zeltools/foundation/xstring.h"

#include <cstddef>
#include <string_view>

namespace detail {

/// A view of the text, valid until it changes.
inline std::u16string_view View(CXTString<char16_t> const& text) {
    return {static_cast<char16_t const*>(text), static_cast<std::size_t>(text.GetLength())};
}

inline CXTString<char16_t> Text(std::u16string_view view) {
    return CXTString<char16_t>(view.data(), static_cast<int>(view.size()));
}

/// Joins views in one allocation.
template <typename... Views>
CXTString<char16_t> Join(Views... views) {
    CXTString<char16_t> text;
    char16_t* out = text.GetBufferSetLength(static_cast<int>((std::u16string_view(views).size() + ... + 0)));
    ((out += std::u16string_view(views).copy(out, std::u16string_view::npos)), ...);
    return text;
}

} // namespace detail
