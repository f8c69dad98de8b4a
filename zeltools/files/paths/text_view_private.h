// SPDX-License-Identifier: MIT
// The step between the toolkit's string and a view of its units. Positions of the path code are sizes; the string's
// are ints.

#pragma once

#include "zeltools/foundation/xstring.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace detail {

/// A view of the text, valid until it changes. A text of more units than an int counts is taken for the empty one.
inline std::u16string_view View(CXTString<char16_t> const& text) {
    return {static_cast<char16_t const*>(text), static_cast<std::size_t>(std::max(text.GetLength(), 0))};
}

inline CXTString<char16_t> Text(std::u16string_view view) {
    return CXTString<char16_t>(view.data(), static_cast<int>(view.size()));
}

/// Joins views in one allocation.
template <typename... Views>
CXTString<char16_t> Join(Views... views) {
    CXTString<char16_t> text;
    text.SetLength((std::u16string_view(views).size() + ... + 0)); // can be more than an int holds
    char16_t* out = text.GetText();
    ((out += std::u16string_view(views).copy(out, std::u16string_view::npos)), ...);
    return text;
}

} // namespace detail
