// SPDX-License-Identifier: MIT
// The marks of a search expression, and the steps on its text that the top level and the groups have in common.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace detail {

inline constexpr char16_t SearchSpecialCharacters[] = {u'(', u')', u'"', u'&', u'^', u'!'};

inline bool IsSearchSpecial(char16_t unit) {
    return unit == u'(' || unit == u')' || unit == u'"' || unit == u'&' || unit == u'^' || unit == u'!';
}

/// Whether a `\` stands in front of a place.
inline bool IsEscaped(std::u16string_view text, std::size_t place) {
    return place > 0 && text[place - 1] == u'\\';
}

/// The first special character from a place on that is not escaped; npos for none.
std::size_t FindSearchMark(std::u16string_view text, std::size_t from);

/// Without the white space at both ends.
std::u16string_view TrimmedView(std::u16string_view text);

/// Writes the text with ASCII letters lowered to a place with room for as many units, which may be its own.
void LowerAsciiUnits(char16_t* target, std::u16string_view text);

/// How deep WithImpliedOperators looks.
enum class ImpliedIn {
    Text,      ///< Each word is seen behind what stands in front of it in the text.
    GroupsToo, ///< And in each group around it: what doing the same to each group once more would give.
};

/// Puts the operator in front of each word that follows a blank, unless an operator stands between it and the word
/// before, or the beginning; and a `\` in front of each special character inside quotes.
std::u16string WithImpliedOperators(std::u16string_view text, std::u16string_view impliedOperator,
                                    ImpliedIn where = ImpliedIn::Text);

/// The pattern of a word without marks: no `\` in front of special characters, and a `*` at each end where no wildcard
/// stands.
std::u16string PatternOfWord(std::u16string_view word);

} // namespace detail
