// SPDX-License-Identifier: MIT
// Decides whether a text answers a search expression that a person typed.
//
//     CXStringMatch match;
//     match.PrepareMatch(u"table (leg ^ drawer) !chair");
//     match.Match(u"Round table, one drawer");               // true
//     match.Match(u"Round table with a chair and a leg");    // false
//
// The marks: `&` and, `^` or, `!` and not, `(` `)` a group, a pair of `"` a group of words taken as it stands, `*` any
// characters, `?` any one character, `\` in front of a mark makes it a plain character. Operators are taken strictly
// from left to right. docs/search-language.md tells it to those who type it, odd corners included.
//
// An expression is prepared once. A match then takes time in proportion to the text, whatever the patterns are, and
// copies nothing of it. Nothing recurses, so that parentheses may nest as deep as an expression is long.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/block_movable.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xstring.h"

#include <memory>

namespace detail {
class PreparedSearch;
}

/// A search expression, and the texts that it is held against.
///
/// A text is seen as a list of words: what stands between its blanks, and the pieces of each word between `-` and `_`.
/// Where the expression has a `"`, the whole text is one word more, with its case as it stands.
///
/// Threads: one object, one thread at a time; different objects from any.
/// Errors:  only what running out of memory throws.
class ZEL_API CXStringMatch {
public:
    /// How an operand joins what the operands before it gave.
    enum _Operator : unsigned int {
        OperatorOr = 1,  ///< The result becomes: result or operand.
        OperatorAnd = 2, ///< The result becomes: result and operand.
        OperatorNot = 3, ///< The result becomes: result and not operand.
    };

    /// What the marks mean, and what joins words that stand side by side. 0 is taken for ModeExpression.
    enum Mode : unsigned int {
        ModeExpression = 1, ///< The whole language; `&` between words.
        ModeAnyWord = 2,    ///< Marks other than `"` are blanks; `^` between words.
        ModeAllWords = 3,   ///< Marks other than `"` are blanks; `&` between words.
    };

    /// One operand of an expression.
    struct WordOperation {
        /// A pattern with its wildcards, "*wood*", or a sub-expression with its marks.
        CXTString<char16_t> expression;
        _Operator wordOperator = OperatorAnd;
        bool result = false; ///< What the latest match gave.
        /// Whether it is a sub-expression. Decided when it is added: a `(` of a pattern that `\` has freed is no mark.
        bool isExpression = false;
    };

    using Texts = CXArray<CXTString<char16_t>, CXTString<char16_t> const&>;

    /// The six special characters `(` `)` `"` `&` `^` `!`. Filled by the first object, and never changed again.
    static CHashTable<char16_t, CHashMethods<char16_t>> hashChar;

    /// No expression is longer than this, so that no position in a prepared one, which takes a few units for each,
    /// comes near the end of an int.
    static constexpr int MaxExpressionLength = 1 << 20;

    /// An empty matcher, which matches everything.
    CXStringMatch();
    CXStringMatch(CXStringMatch const& other);
    /// `other` is an empty matcher afterwards.
    CXStringMatch(CXStringMatch&& other);
    CXStringMatch& operator=(CXStringMatch const& other);
    CXStringMatch& operator=(CXStringMatch&& other);
    virtual ~CXStringMatch();

    /// Takes an expression. None is malformed: a group without an end goes to the end of the text, an end without a
    /// group is dropped. The empty expression matches everything.
    /// @param caseSensitive  false lowers the expression and the words, ASCII letters only. A sub-expression in
    ///                       parentheses never regards case.
    /// @return false for an expression longer than MaxExpressionLength, with a line in the log; then nothing matches.
    bool PrepareMatch(CXTString<char16_t> const& expression, Mode mode = ModeExpression, bool caseSensitive = false);

    /// Whether a text answers.
    bool Match(CXTString<char16_t> const& text);
    /// Whether several texts together answer: their words make one list.
    bool Match(Texts const& texts);

    /// Prepares and matches in one; false for an expression that was refused.
    bool Match(CXTString<char16_t> const& expression, CXTString<char16_t> const& text, Mode mode = ModeExpression,
               bool caseSensitive = false);
    bool Match(CXTString<char16_t> const& expression, Texts const& texts, Mode mode = ModeExpression,
               bool caseSensitive = false);

    /// The operands of the prepared expression, in the order in which they are taken, with their latest results.
    CXArray<WordOperation> const& GetOperations() const { return operations; }

protected:
    /// Puts in the operators that the mode implies, marks the special characters inside quotes as plain ones, and cuts
    /// the result into operations, in place of those that were there.
    /// @return false for a text that is too long, with a line in the log; then nothing matches.
    bool InitExpression(CXTString<char16_t> const& text, Mode newMode);

    /// Adds the operations of a text that InitExpression has put in order, and takes off it what it has cut.
    /// @return true.
    bool ExtractWords(CXTString<char16_t>& text);

    /// Adds one operation: a sub-expression where the text holds an unescaped special character, otherwise a pattern,
    /// with `*` put in front and behind unless a wildcard stands there.
    /// @return false for a text without anything but white space, which adds nothing.
    bool AddExpression(CXTString<char16_t> const& text, _Operator wordOperator);

    /// Whether the index lies inside the text and holds that character.
    bool IsChar(CXTString<char16_t> const& text, char character, int index);

    /// Makes a blank of each unescaped special character other than `kept`. The last character of the text stays.
    void RemoveSpecialChar(CXTString<char16_t>& text, char16_t kept);

    /// Whether a text holds an unescaped special character.
    bool ShouldRecurse(CXTString<char16_t> const& text);

    /// Makes the list of words that Match looks at: of each text, itself where the expression has a `"`, then each word
    /// with its pieces behind it.
    void ExtractTextWords(Texts const& texts, Texts& words) const;

    /// Whether a pattern fits any of the words. In front of its first `*` ASCII letters are equal in either case,
    /// behind it they are not.
    bool MatchWord(CXTString<char16_t> const& pattern, Texts const& words);

    /// Holds the operations against a list of words. The mode makes no difference here.
    bool InternalMatch(Texts const& words, Mode newMode);

private:
    bool Refuse(int length);
    bool Evaluate();

    CXArray<WordOperation> operations;
    unsigned int mode = ModeExpression;
    bool isCaseSensitive = false;
    bool hasQuotes = false;                           ///< Whether the expression has a `"`.
    std::unique_ptr<detail::PreparedSearch> prepared; ///< What is matched: one operand for each operation.
};

template <>
inline constexpr bool xIsBlockMovable<CXStringMatch::WordOperation> = true;
