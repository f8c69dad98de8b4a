// SPDX-License-Identifier: MIT
// How a search expression was understood, and which word of a file answered which operand.

#pragma once

#include "file_search.h"

#include <memory>
#include <string>
#include <vector>

namespace zel {

/// An expression with the groups inside it, each a matcher of its own, as the language has it. Groups that are nested
/// deeper than any person reads are told as they stand, without their words.
class SearchExplanation {
public:
    SearchExplanation(SearchOptions const& options, bool toTerminal);

    /// The operands in their order, one a line, with their operators; those of a group below it, further to the right.
    std::string Understood() const;

    /// Behind each operand the word that answered and where it stands, or that none did.
    std::string Answers(SearchedTexts const& searched);

private:
    class Matcher : public CXStringMatch {
    public:
        using CXStringMatch::ExtractTextWords;
        using CXStringMatch::MatchWord;
    };
    struct Level {
        Matcher matcher;
        std::vector<std::unique_ptr<Level>> groups; ///< One for each operand; null for a word.
    };
    /// The words that a level sees of each text.
    using Words = std::vector<CXStringMatch::Texts>;

    static std::unique_ptr<Level> MakeLevel(CXTString<char16_t> const& expression, CXStringMatch::Mode mode,
                                            bool caseSensitive, int depth);
    void TellOperands(Level const& level, int depth, std::string& text) const;
    void TellAnswers(Level& level, Words const& words, std::vector<std::string> const& sources, int depth,
                     std::string& text) const;
    std::string AnswerOf(Level& level, CXTString<char16_t> const& pattern, Words const& words,
                         std::vector<std::string> const& sources) const;
    std::string Shown(CXTString<char16_t> const& text) const;

    std::unique_ptr<Level> top;
    bool terminal;
};

} // namespace zel
