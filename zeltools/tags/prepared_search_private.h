// SPDX-License-Identifier: MIT
// What a matcher keeps beside its list of operations: each operand ready to be held against words, and the texts of the
// match that is going on, as views of the caller's.

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
    void Clear() {
        operands.clear();
        isRefused = false;
    }

    void AddPattern(std::u16string_view pattern) { operands.emplace_back(WildcardPattern(pattern)); }
    void AddExpression(std::u16string_view expression) { operands.emplace_back(SearchProgram(expression)); }

    /// Begins a match without any text.
    void ForgetTexts() { texts.clear(); }

    /// Takes a text, or in GiveWords a word. The text must stay until the match is over.
    void AddText(std::u16string_view text) { texts.push_back(text); }

    /// The texts that were added are what people wrote: they are cut into words.
    void GiveTexts(bool isCaseSensitive, bool wholeToo) {
        given.words = wholeToo ? texts : std::span<std::u16string_view const>();
        given.texts = texts;
        given.textCase = isCaseSensitive ? TextCase::AsItStands : TextCase::Lowered;
        lowered = {{}, texts, TextCase::Lowered};
    }

    /// The texts that were added are words already, and taken as they stand.
    void GiveWords() {
        given = {texts, {}, TextCase::AsItStands};
        lowered = {{}, texts, TextCase::Lowered};
    }

    /// Whether the operand answers.
    bool Matches(std::size_t operand) {
        if (auto* const program = std::get_if<SearchProgram>(&operands[operand])) {
            return program->Matches(given, lowered);
        }
        return std::get<WildcardPattern>(operands[operand]).FitsAny(given);
    }

    bool isRefused = false; ///< The expression was: nothing matches.

private:
    std::vector<std::variant<WildcardPattern, SearchProgram>> operands;

    // Of one match.
    std::vector<std::u16string_view> texts;
    SearchedWords given;
    SearchedWords lowered; ///< The same texts, cut at blanks and lowered.
};

} // namespace detail
