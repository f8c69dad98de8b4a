// SPDX-License-Identifier: MIT
// Texts inside a template while it is expanded: what has angle brackets there and is no tag is guarded, so that no name
// of a file and no line of its metadata is ever taken for one.
//
//     GuardText("a<b>.png")                 // u"a\uF03Cb\uF03E.png"
//     UnguardText(u"a\uF03Cb\uF03E.png")    // "a<b>.png"
//
// Any bytes make the round trip: one that is no part of UTF-8 becomes U+DC00 plus the byte, a lone surrogate, and so
// does each byte of a character that is a guarded one already. These are the rules of path strings.

#pragma once

#include <zeltools/foundation/xstring.h>

#include <string>
#include <string_view>

namespace zel {

CXTString<char16_t> GuardText(std::string_view bytes);

/// The bytes of guarded text; unguarded brackets stay.
std::string UnguardText(CXTString<char16_t> const& text);

} // namespace zel
