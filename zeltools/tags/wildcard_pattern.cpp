// SPDX-License-Identifier: MIT
#include "zeltools/foundation/character_scan_private.h"
#include "zeltools/tags/wildcard_pattern_private.h"

#include <algorithm>

namespace detail {

namespace {

bool FitsHead(std::u16string_view head, char16_t const* word) {
    return std::equal(head.begin(), head.end(), word, [](char16_t wanted, char16_t unit) {
        return wanted == u'?' || UpperAscii(wanted) == UpperAscii(unit);
    });
}

bool FitsTail(std::u16string_view tail, char16_t const* word, TextCase wordCase) {
    return std::equal(tail.begin(), tail.end(), word, [wordCase](char16_t wanted, char16_t unit) {
        return wanted == u'?' || wanted == (wordCase == TextCase::Lowered ? LowerAscii(unit) : unit);
    });
}

/// What separates words.
struct Blank {
    static std::size_t FindFrom(std::u16string_view text, std::size_t from) {
        return ScanFor(text.data(), text.size(), from, ScanTarget<char16_t, ScanCase::Exact>(u' '));
    }
    static std::size_t FindBefore(std::u16string_view text, std::size_t end) {
        return ScanBackFor(text.data(), end, u' ');
    }
};

/// What separates the pieces of words. They are short.
struct BlankOrJoint {
    static bool Is(char16_t unit) { return unit == u' ' || unit == u'-' || unit == u'_'; }

    static std::size_t FindFrom(std::u16string_view text, std::size_t from) {
        while (from < text.size() && !Is(text[from])) {
            ++from;
        }
        return from < text.size() ? from : NotFound;
    }
    static std::size_t FindBefore(std::u16string_view text, std::size_t end) {
        while (end > 0 && !Is(text[end - 1])) {
            --end;
        }
        return end - 1; // below 0 it is NotFound
    }
};

/// Calls `test` with what stands between separators, from the stretch that holds `first` on, until it answers true.
template <class Separator, class Test>
bool AnyBetween(std::u16string_view text, std::size_t first, Test test) {
    std::size_t begin = Separator::FindBefore(text, first) + 1; // NotFound + 1 is 0
    for (std::size_t from = first; from < text.size(); from = begin) {
        std::size_t const end = std::min(Separator::FindFrom(text, from), text.size());
        if (end > begin && test(text.substr(begin, end - begin))) {
            return true;
        }
        begin = end + 1;
    }
    return false;
}

} // namespace

WildcardPattern::WildcardPattern(std::u16string_view pattern) : hasBlank(pattern.find(u' ') != pattern.npos) {
    std::size_t star = pattern.find(u'*');
    hasStar = star != pattern.npos;
    head = pattern.substr(0, star);
    while (hasStar) {
        std::size_t const next = pattern.find(u'*', star + 1);
        if (next == pattern.npos) {
            tail = pattern.substr(star + 1);
            if (!tail.empty()) {
                tailSearch.emplace(tail);
            }
            break;
        }
        if (next > star + 1) {
            pieces.emplace_back(pattern.substr(star + 1, next - star - 1));
        }
        star = next;
    }
    isAnchored = !hasStar || !head.empty() || !tail.empty();
    isContained = !isAnchored && pieces.size() == 1 && pieces[0].IsPlain();
}

bool WildcardPattern::Fits(std::u16string_view word, TextCase wordCase) const {
    if (word.size() < head.size() + tail.size() || (!hasStar && word.size() != head.size()) ||
        !FitsHead(head, word.data()) || !FitsTail(tail, word.data() + word.size() - tail.size(), wordCase)) {
        return false;
    }
    word.remove_suffix(tail.size());
    std::size_t from = head.size();
    for (PieceSearch const& piece : pieces) {
        from = piece.Find(word, from, wordCase);
        if (from == NotFound) {
            return false;
        }
        from += piece.Length();
    }
    return true;
}

bool WildcardPattern::FitsAny(SearchedWords const& searched) const {
    for (std::u16string_view const text : searched.texts) {
        if (FitsAnyWordOf(text, searched.textCase)) {
            return true;
        }
    }
    return std::any_of(searched.words.begin(), searched.words.end(),
                       [this](std::u16string_view word) { return Fits(word); });
}

bool WildcardPattern::FitsAnyWordOf(std::u16string_view text, TextCase textCase) const {
    if (hasBlank) {
        return false;
    }
    std::size_t first = 0;
    if (PieceSearch const* const needed = tailSearch ? &*tailSearch : pieces.empty() ? nullptr : &pieces[0]) {
        // Most texts are done with here: the piece is nowhere in them, or it is all that was asked for. What has no
        // blank lies inside one word.
        first = needed->Find(text, 0, textCase);
        if (first == NotFound || isContained) {
            return first != NotFound;
        }
    }
    auto const fits = [this, textCase](std::u16string_view word) { return Fits(word, textCase); };
    // What fits a piece of a word fits the word too, unless an end is held.
    return AnyBetween<Blank>(text, first, fits) || (isAnchored && AnyBetween<BlankOrJoint>(text, first, fits));
}

} // namespace detail
