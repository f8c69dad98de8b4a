// SPDX-License-Identifier: MIT
#include "zeltools/foundation/characters.h"
#include "zeltools/tags/search_language_private.h"

#include <algorithm>

namespace detail {

namespace {

bool IsWildcard(char16_t unit) {
    return unit == u'?' || unit == u'*';
}

} // namespace

std::size_t FindSearchMark(std::u16string_view text, std::size_t from) {
    while (from < text.size() && (!IsSearchSpecial(text[from]) || IsEscaped(text, from))) {
        ++from;
    }
    return from < text.size() ? from : text.npos;
}

std::u16string_view TrimmedView(std::u16string_view text) {
    while (!text.empty() && xIsSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && xIsSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

void LowerAsciiUnits(char16_t* target, std::u16string_view text) {
    std::transform(text.begin(), text.end(), target, LowerAscii<char16_t>);
}

std::u16string WithImpliedOperators(std::u16string_view text, std::u16string_view impliedOperator) {
    std::u16string out;
    out.reserve(text.size() + text.size() / 4);
    bool inQuotes = false;
    bool sawWord = true;
    bool sawBlank = false;
    auto const beginWord = [&] {
        if (sawBlank && sawWord) {
            out += impliedOperator;
        }
        sawWord = true;
        sawBlank = false;
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
        char16_t const unit = text[at];
        bool const isPlain = IsEscaped(out, out.size()) || !IsSearchSpecial(unit);
        if (unit == u'"' && !isPlain) {
            if (!inQuotes) {
                beginWord(); // a quoted group is an operand like a word
            }
            inQuotes = !inQuotes;
        } else if (inQuotes) {
            out.append(isPlain ? 0 : 1, u'\\');
        } else if (unit == u' ') {
            sawBlank = true;
        } else if (unit == u'(') {
            // It begins no word, escaped or not, and the blanks behind it separate nothing.
            for (; at + 1 < text.size() && text[at + 1] == u' '; ++at) {
                out += text[at];
            }
        } else if (!isPlain && unit != u')') {
            sawWord = false;
        } else if (unit != u')') {
            beginWord();
        }
        out += text[at];
    }
    return out;
}

std::u16string PatternOfWord(std::u16string_view word) {
    std::u16string pattern;
    pattern.reserve(word.size() + 2);
    if (!word.empty() && !IsWildcard(word.front())) {
        pattern += u'*';
    }
    for (std::size_t at = 0; at < word.size(); ++at) {
        if (word[at] != u'\\' || at + 1 == word.size() || !IsSearchSpecial(word[at + 1])) {
            pattern += word[at];
        }
    }
    if (!word.empty() && !IsWildcard(word.back())) {
        pattern += u'*';
    }
    return pattern;
}

} // namespace detail
