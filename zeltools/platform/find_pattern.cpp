// SPDX-License-Identifier: MIT
#include "zeltools/platform/find_pattern.h"

#include "zeltools/platform/character_case.h"

#include <vector>

namespace platform {

namespace {

// Units that stand for the wildcards among the tokens: ASCII characters that a name cannot hold as such.
constexpr char16_t AnyText = u'*';
constexpr char16_t TextToLastDot = u'<';     ///< Any text that does not take the last dot.
constexpr char16_t OptionalCharacter = u'>'; ///< One character but a dot; nothing in front of a dot and at the end.
constexpr char16_t OptionalDot = u'"';       ///< A dot; nothing at the end.

bool IsWildcard(char16_t unit) {
    return unit == u'*' || unit == u'?';
}

/// The set of positions among the tokens that the name read so far can have led to.
class Positions {
public:
    explicit Positions(std::size_t count) : marks(count + 1) {}

    void Clear() { marks.assign(marks.size(), false); }
    void Add(std::size_t position) { marks[position] = true; }
    bool Has(std::size_t position) const { return marks[position]; }
    void Swap(Positions& other) { marks.swap(other.marks); }

private:
    std::vector<bool> marks;
};

/// Adds what can be reached without reading anything: past wildcards that may stand for nothing here.
void AddFreeSteps(std::u16string_view tokens, bool atEnd, bool atDot, Positions& positions) {
    for (std::size_t p = 0; p < tokens.size(); ++p) {
        char16_t const token = tokens[p];
        bool const isFree = token == AnyText || token == TextToLastDot ||
                            (token == OptionalCharacter && (atEnd || atDot)) || (token == OptionalDot && atEnd);
        if (positions.Has(p) && isFree) {
            positions.Add(p + 1);
        }
    }
}

} // namespace

FindPattern::FindPattern(std::u16string_view pattern) : everything(pattern == u"*" || pattern == u"*.*") {
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        char16_t const unit = pattern[i];
        char16_t const next = i + 1 < pattern.size() ? pattern[i + 1] : u'\0';
        if (unit == u'*' && next == u'.') {
            tokens += TextToLastDot;
            i += i + 2 == pattern.size() ? 1 : 0; // "*." at the end: names without an extension
        } else if (unit == u'?') {
            tokens += OptionalCharacter;
        } else if (unit == u'.' && IsWildcard(next)) {
            tokens += OptionalDot;
        } else {
            tokens += unit == u'*' ? AnyText : CharUpperW(unit);
        }
    }
}

bool FindPattern::Matches(std::u16string_view name) const {
    if (everything) {
        return true;
    }
    std::size_t const lastDot = name.find_last_of(u'.');
    Positions now{tokens.size()};
    Positions next{tokens.size()};
    now.Add(0);
    for (std::size_t i = 0; i < name.size(); ++i) {
        char16_t const unit = CharUpperW(name[i]);
        bool const isDot = unit == u'.';
        AddFreeSteps(tokens, false, isDot, now);
        next.Clear();
        for (std::size_t p = 0; p < tokens.size(); ++p) {
            if (!now.Has(p)) {
                continue;
            }
            char16_t const token = tokens[p];
            if (token == AnyText || (token == TextToLastDot && i != lastDot)) {
                next.Add(p);
            } else if (token == unit || (token == OptionalCharacter && !isDot) || (token == OptionalDot && isDot)) {
                next.Add(p + 1);
            }
        }
        now.Swap(next);
    }
    AddFreeSteps(tokens, true, false, now);
    return now.Has(tokens.size());
}

bool FindPattern::HasWildcards(std::u16string_view text) {
    return text.find_first_of(u"*?") != text.npos;
}

} // namespace platform
