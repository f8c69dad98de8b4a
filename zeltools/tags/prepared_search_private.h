// SPDX-License-Identifier: MIT
// What a matcher keeps beside its list of operations: each operand ready to be held against words, and the words of the
// texts that are being matched, as views into the caller's texts and into one buffer with all of them lowered.

#pragma once

#include "zeltools/tags/search_program_private.h"
#include "zeltools/tags/wildcard_pattern_private.h"

#include <string_view>
#include <variant>
#include <vector>

namespace detail {

class PreparedSearch {
public:
    /// Forgets all operands.
    void Clear();

    void AddPattern(std::u16string_view pattern) { operands.emplace_back(WildcardPattern(pattern)); }
    void AddExpression(std::u16string_view expression);

    /// Takes a text, or in GiveWords a word. The text must stay until the match is over.
    void AddText(std::u16string_view text) { texts.push_back(text); }

    /// The texts that were added are what people wrote: they are cut into words.
    void GiveTexts(bool isCaseSensitive, bool wholeToo);
    /// The texts that were added are words already, and taken as they stand.
    void GiveWords();

    /// Whether the operand answers.
    bool Matches(std::size_t operand);

    /// Begins a match without any text.
    void ForgetTexts();

    bool isRefused = false; ///< The expression was: nothing matches.

private:
    void LowerTexts();

    std::vector<std::variant<WildcardPattern, SearchProgram>> operands;
    bool hasExpressions = false;

    // Of one match; kept for their memory.
    std::vector<std::u16string_view> texts;
    std::vector<std::u16string_view> loweredTexts;
    std::vector<char16_t> loweredUnits;
    SearchedWords given;
    SearchedWords lowered;
};

} // namespace detail
