// SPDX-License-Identifier: MIT
#include "zeltools/tags/prepared_search_private.h"
#include "zeltools/tags/search_language_private.h"

namespace detail {

namespace {

/// More memory than this is given back before the next match.
constexpr std::size_t KeptUnits = std::size_t(1) << 20;

} // namespace

void PreparedSearch::Clear() {
    operands.clear();
    hasExpressions = false;
    isRefused = false;
}

void PreparedSearch::AddExpression(std::u16string_view expression) {
    operands.emplace_back(SearchProgram(expression));
    hasExpressions = true;
}

void PreparedSearch::GiveTexts(bool isCaseSensitive, bool wholeToo) {
    if (!isCaseSensitive || hasExpressions) {
        LowerTexts();
    }
    if (wholeToo) {
        given.words = texts;
    }
    given.texts = isCaseSensitive ? texts : loweredTexts;
    lowered.texts = loweredTexts;
}

void PreparedSearch::GiveWords() {
    if (hasExpressions) {
        LowerTexts();
    }
    given.words = texts;
    lowered.texts = loweredTexts;
}

void PreparedSearch::LowerTexts() {
    std::size_t length = 0;
    for (std::u16string_view const text : texts) {
        length += text.size();
    }
    if (loweredUnits.size() < length) {
        loweredUnits.resize(length);
    }
    char16_t* target = loweredUnits.data();
    for (std::u16string_view const text : texts) {
        LowerAsciiUnits(target, text);
        loweredTexts.emplace_back(target, text.size());
        target += text.size();
    }
}

bool PreparedSearch::Matches(std::size_t operand) {
    if (auto* const program = std::get_if<SearchProgram>(&operands[operand])) {
        return program->Matches(given, lowered);
    }
    return std::get<WildcardPattern>(operands[operand]).FitsAny(given);
}

void PreparedSearch::ForgetTexts() {
    texts.clear();
    loweredTexts.clear();
    given = SearchedWords();
    lowered = SearchedWords();
    if (loweredUnits.size() > KeptUnits) {
        loweredUnits = std::vector<char16_t>();
    }
}

} // namespace detail
