// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/wildcards.h"

#include "zeltools/files/paths/text_view_private.h"

#include <algorithm>

namespace {

char16_t UpperOfLowByte(char16_t unit) {
    char16_t const low = unit & 0xFF;
    return low >= u'a' && low <= u'z' ? static_cast<char16_t>(low - (u'a' - u'A')) : low;
}

// Finds the next place at or behind `name` where the text behind a star can begin.
char16_t const* FindStart(char16_t const* name, char16_t const* nameEnd, char16_t pattern) {
    return pattern == u'*' || pattern == u'?' ? name : std::find(name, nameEnd, pattern);
}

// Matches from a pattern's first `*` on. Each `*` fixes all that was matched before it: a mismatch goes back to the
// last one and lets it take some characters more.
bool MatchFromStar(char16_t const* name, char16_t const* nameEnd, char16_t const* pattern, char16_t const* patternEnd) {
    char16_t const* resumePattern = pattern;
    char16_t const* resumeName = name;
    while (name != nameEnd) {
        if (pattern != patternEnd && *pattern == u'*') {
            if (++pattern == patternEnd) {
                return true;
            }
            resumePattern = pattern;
            name = resumeName = FindStart(name, nameEnd, *pattern);
        } else if (pattern != patternEnd && (*pattern == *name || *pattern == u'?')) {
            ++pattern;
            ++name;
        } else {
            pattern = resumePattern;
            name = resumeName = FindStart(resumeName + 1, nameEnd, *pattern);
        }
    }
    return std::all_of(pattern, patternEnd, [](char16_t c) { return c == u'*'; });
}

bool Match(std::u16string_view name, std::u16string_view pattern, bool caseSensitive) {
    std::size_t const head = std::min(pattern.find(u'*'), pattern.size());
    if (name.size() < head || (head == pattern.size() && name.size() != head)) {
        return false;
    }
    for (std::size_t index = 0; index < head; ++index) {
        char16_t const wanted = pattern[index];
        bool const isEqual =
            caseSensitive ? wanted == name[index] : UpperOfLowByte(wanted) == UpperOfLowByte(name[index]);
        if (!isEqual && wanted != u'?') {
            return false;
        }
    }
    return MatchFromStar(name.data() + head, name.data() + name.size(), pattern.data() + head,
                         pattern.data() + pattern.size());
}

} // namespace

bool fileMatchWilcards(CXTString<char16_t> const& name, CXTString<char16_t> const& pattern, bool caseSensitive) {
    return Match(detail::View(name), detail::View(pattern), caseSensitive);
}

bool fileMatchWilcards(CXTString<char16_t> const& name, CHashTable<CXTString<char16_t>> const& table) {
    CXTString<char16_t> lower = name;
    lower.MakeLower();
    for (unsigned int position = table.GetFirst(); CXTString<char16_t> const* pattern = table.GetNext(position);) {
        if (Match(detail::View(lower), detail::View(*pattern), true)) {
            return true;
        }
    }
    return false;
}
