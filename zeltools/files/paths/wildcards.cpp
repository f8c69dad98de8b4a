// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/wildcards.h"

#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/character_scan_private.h"

namespace {

char16_t UpperOfLowByte(char16_t unit) {
    char16_t const low = unit & 0xFF;
    return low >= u'a' && low <= u'z' ? static_cast<char16_t>(low - (u'a' - u'A')) : low;
}

bool IsLiteral(char16_t pattern) {
    return pattern != u'*' && pattern != u'?';
}

// Most names differ from the pattern in their first units. The searches behind a star stay out of line, so that such a
// name is refused without a stack frame for their sake.

using Target = detail::ScanTarget<char16_t, detail::ScanCase::Exact>;

[[gnu::noinline]] std::size_t FindPair(char16_t const* name, std::size_t length, char16_t const* pair) {
    return detail::ScanForPair(name, length, 0, Target(pair[0]), Target(pair[1]));
}

// Finds the next place at or behind `name` where the text behind a star can begin. `pattern` is not the last star.
inline char16_t const* FindStart(char16_t const* name, char16_t const* nameEnd, char16_t const* pattern) {
    if (!IsLiteral(pattern[0]) || name >= nameEnd) {
        return name;
    }
    auto const length = static_cast<std::size_t>(nameEnd - name);
    std::size_t const position =
        IsLiteral(pattern[1]) ? FindPair(name, length, pattern) : detail::ScanFor(name, length, 0, Target(pattern[0]));
    return position == detail::NotFound ? nameEnd : name + position;
}

// Matches a pattern that begins and ends in a star. Each star fixes all that was matched before it: a mismatch goes
// back to the last one and lets it take some characters more.
[[gnu::noinline]] bool MatchBetweenStars(char16_t const* name, char16_t const* nameEnd, char16_t const* pattern,
                                         char16_t const* patternEnd) {
    char16_t const* resumePattern = pattern;
    char16_t const* resumeName = name;
    for (;;) {
        if (*pattern == u'*') {
            if (++pattern == patternEnd) {
                return true;
            }
            resumePattern = pattern;
            name = resumeName = FindStart(name, nameEnd, pattern);
        } else if (name == nameEnd) {
            return false;
        } else if (*pattern == *name || *pattern == u'?') {
            ++pattern;
            ++name;
        } else {
            pattern = resumePattern;
            name = resumeName = FindStart(resumeName + 1, nameEnd, pattern);
        }
    }
}

bool Match(std::u16string_view nameText, std::u16string_view patternText, bool caseSensitive) {
    char16_t const* name = nameText.data();
    char16_t const* nameEnd = name + nameText.size();
    char16_t const* pattern = patternText.data();
    char16_t const* patternEnd = pattern + patternText.size();

#if defined(__SSE2__)
    // The same as the loop below, a block of units at a step. What stands behind the first star does not count.
    using Units = detail::Block<char16_t>;
    constexpr std::ptrdiff_t blockSize = Units::Size;
    while (caseSensitive && nameEnd - name >= blockSize && patternEnd - pattern >= blockSize) {
        __m128i const wanted = Units::Load(pattern);
        __m128i const equal = Units::Equal(wanted, Units::Load(name));
        unsigned const fitting = Units::Bits(_mm_or_si128(equal, Units::Equal(wanted, Units::All(u'?'))));
        unsigned const stars = Units::Bits(Units::Equal(wanted, Units::All(u'*')));
        if ((~fitting & ~stars & (stars - 1) & 0xFFFF) != 0) {
            return false;
        }
        std::size_t const matched = stars != 0 ? Units::First(stars) : Units::Size;
        name += matched;
        pattern += matched;
        if (stars != 0) {
            break;
        }
    }
#endif
    for (; pattern != patternEnd && *pattern != u'*'; ++pattern, ++name) {
        if (name == nameEnd) {
            return false;
        }
        bool const isEqual = caseSensitive ? *pattern == *name : UpperOfLowByte(*pattern) == UpperOfLowByte(*name);
        if (!isEqual && *pattern != u'?') {
            return false;
        }
    }
    if (pattern == patternEnd) {
        return name == nameEnd;
    }
    // What follows the last star can only stand at the end of the name.
    while (patternEnd[-1] != u'*') {
        --patternEnd;
        if (name == nameEnd || (*--nameEnd != *patternEnd && *patternEnd != u'?')) {
            return false;
        }
    }
    return MatchBetweenStars(name, nameEnd, pattern, patternEnd);
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
