// SPDX-License-Identifier: MIT
// A pattern with `*` (any characters, also none) and `?` (any one character), taken apart once and held against many
// words.
//
//     head    * piece * piece * tail        The head fits the beginning of a word, ASCII letters in either case; the
//     ^^^^      ^^^^^   ^^^^^   ^^^^        tail fits its end. Each piece is taken at its first place behind the one
//                                           before it: a later place would leave less room for what follows.

#pragma once

#include "zeltools/tags/piece_search_private.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace detail {

/// What a pattern is held against.
struct SearchedWords {
    std::span<std::u16string_view const> words; ///< Each as a whole.
    std::span<std::u16string_view const> texts; ///< Each for the words between its blanks, and their pieces.
    TextCase textCase = TextCase::AsItStands;   ///< How the texts count; the words do as they stand.
};

class WildcardPattern {
public:
    explicit WildcardPattern(std::u16string_view pattern);

    /// Whether the pattern fits the whole word.
    bool Fits(std::u16string_view word, TextCase wordCase = TextCase::AsItStands) const;

    /// Whether the pattern fits any of the words.
    bool FitsAny(SearchedWords const& searched) const;

private:
    bool FitsAnyWordOf(std::u16string_view text, TextCase textCase) const;

    std::u16string head;
    std::u16string tail; ///< Empty for a pattern without a star, which is all head.
    std::vector<PieceSearch> pieces;
    std::optional<PieceSearch> tailSearch; ///< Tells of texts that have no such tail anywhere.
    bool hasStar = false;
    bool isAnchored = false;  ///< Whether head or tail hold it to an end of the word.
    bool isContained = false; ///< Whether it fits each word that has its one piece, a plain one, anywhere.
    bool hasBlank = false;    ///< Whether it asks for a blank, which no word between blanks has.
};

} // namespace detail
