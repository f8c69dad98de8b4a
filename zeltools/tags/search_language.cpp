// SPDX-License-Identifier: MIT
#include "zeltools/foundation/characters.h"
#include "zeltools/tags/search_language_private.h"

#include <algorithm>

namespace detail {

namespace {

bool IsWildcard(char16_t unit) {
    return unit == u'?' || unit == u'*';
}

/// What was seen since the last word, or since the beginning of the text, which counts as one.
class WordGap {
public:
    explicit WordGap(ImpliedIn where) : inGroups(where == ImpliedIn::GroupsToo) {}

    void SeeBlank() { sawBlank = true; }

    void SeeOperator() {
        sawOperator = true;
        fresh = 0;
    }

    /// In a group, the operator in front of it is forgotten: read once more, it is a text of its own.
    void BeginGroup() {
        ++depth;
        if (inGroups && sawOperator) {
            sawOperator = false;
            sawBlank = false;
            fresh = depth;
        }
    }

    /// Behind a group without a word, the operator in front of it is still the last thing.
    void EndGroup() {
        if (fresh != 0 && fresh == depth) {
            SeeOperator();
        }
        depth -= depth > 0 ? 1 : 0;
    }

    /// @return whether an operator is missing in front of the word.
    bool EndAtWord() {
        bool const isMissing = sawBlank && !sawOperator;
        sawBlank = false;
        sawOperator = false;
        fresh = 0;
        return isMissing;
    }

private:
    bool inGroups;
    bool sawBlank = false;
    bool sawOperator = false;
    std::size_t depth = 0;
    std::size_t fresh = 0; ///< The depth of the group whose beginning has made an operator forgotten; 0 for none.
};

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

std::u16string WithImpliedOperators(std::u16string_view text, std::u16string_view impliedOperator, ImpliedIn where) {
    std::u16string out;
    out.reserve(text.size() + text.size() / 4);
    WordGap gap(where);
    bool inQuotes = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        char16_t const unit = text[at];
        bool const isPlain = IsEscaped(out, out.size()) || !IsSearchSpecial(unit);
        if (unit == u'"' && !isPlain) {
            if (!inQuotes && gap.EndAtWord()) { // a quoted group is an operand like a word
                out += impliedOperator;
            }
            inQuotes = !inQuotes;
        } else if (inQuotes) {
            out.append(isPlain ? 0 : 1, u'\\');
        } else if (unit == u' ') {
            gap.SeeBlank();
        } else if (unit == u'(') {
            if (!isPlain) {
                gap.BeginGroup();
            }
            // It begins no word, escaped or not, and the blanks behind it separate nothing.
            for (; at + 1 < text.size() && text[at + 1] == u' '; ++at) {
                out += text[at];
            }
        } else if (unit == u')') {
            if (!isPlain) {
                gap.EndGroup();
            }
        } else if (!isPlain) {
            gap.SeeOperator();
        } else if (gap.EndAtWord()) {
            out += impliedOperator;
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
