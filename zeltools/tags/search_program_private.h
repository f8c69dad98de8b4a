// SPDX-License-Identifier: MIT
// A sub-expression, prepared once: `leg ^ (drawer !chair)` as a row of steps.
//
//     word leg  | begin ^ | word drawer | word !chair | end
//
// By the rules of the language a sub-expression is taken apart and evaluated by a matcher of its own, which never
// regards case and sees the words cut at blanks and lowered once more, and so for each group inside it. Words that are
// lowered stay so, and one pass over the text puts in the operators that each of the matchers would. So two lists of
// words are enough for groups of any depth: those that the sub-expression was given, and the same cut and lowered. A
// group sees the given ones only where it has a quote in its text.

#pragma once

#include "zeltools/tags/wildcard_pattern_private.h"
#include "zeltools/tags/xstring_match.h"

#include <string_view>
#include <vector>

namespace detail {

class SearchProgram {
public:
    /// @param expression  What was between the parentheses.
    explicit SearchProgram(std::u16string_view expression);

    /// @param given    The words of the matcher that the sub-expression belongs to.
    /// @param lowered  The same, cut at blanks and lowered.
    bool Matches(SearchedWords const& given, SearchedWords const& lowered);

    /// A result with one more operand.
    static bool Combine(bool result, CXStringMatch::_Operator with, bool operand);

private:
    using Operator = CXStringMatch::_Operator;

    enum class StepKind : unsigned char {
        Word,
        Begin,
        End
    };
    struct Step {
        StepKind kind;
        bool seesGiven = false; ///< Of a word: whether it looks at the given words too.
        Operator stepOperator = Operator::OperatorAnd;
        std::size_t index = 0; ///< Of a word, its pattern; of a beginning, the step behind its end.
    };
    /// A group that is being evaluated.
    struct Level {
        bool result;
        Operator levelOperator;
    };

    class Compiler;

    std::vector<Step> steps;
    std::vector<WildcardPattern> patterns;
    std::vector<Level> levels; ///< Kept from one match to the next for its memory.
};

} // namespace detail
