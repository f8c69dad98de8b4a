// SPDX-License-Identifier: MIT
#include "zeltools/foundation/character_scan_private.h"
#include "zeltools/tags/piece_search_private.h"

#include <algorithm>

namespace detail {

namespace {

/// A shorter piece is compared at most so often at each place: no second search is worth its tables.
constexpr std::size_t ShortPiece = 16;

/// So many comparisons for each unit passed are nothing out of the ordinary.
constexpr std::size_t ComparisonsPerUnit = 4;
constexpr std::size_t FreeComparisons = 256;

constexpr std::size_t PlacesPerChunk = 64;

bool IsPlainUnit(char16_t unit) {
    return unit != u'?';
}

template <TextCase Case>
char16_t UnitAs(char16_t unit) {
    return Case == TextCase::Lowered ? LowerAscii(unit) : unit;
}

/// The bit in which a small letter differs from its capital, where the text may have either; no bit for other units.
template <TextCase Case>
char16_t CaseBit(char16_t wanted) {
    return Case == TextCase::Lowered && wanted >= u'a' && wanted <= u'z' ? u'a' - u'A' : 0;
}

} // namespace

PieceSearch::Chunk::Chunk(std::u16string_view text) : last(std::uint64_t(1) << (text.size() - 1)) {
    for (std::size_t place = 0; place < text.size(); ++place) {
        std::uint64_t const bit = std::uint64_t(1) << place;
        if (!IsPlainUnit(text[place])) {
            any |= bit;
            continue;
        }
        std::size_t slot = text[place] % Slots;
        while (places[slot] != 0 && units[slot] != text[place]) {
            slot = (slot + 1) % Slots;
        }
        units[slot] = text[place];
        places[slot] |= bit;
    }
}

std::uint64_t PieceSearch::Chunk::PlacesOf(char16_t unit) const {
    for (std::size_t slot = unit % Slots; places[slot] != 0; slot = (slot + 1) % Slots) {
        if (units[slot] == unit) {
            return places[slot] | any;
        }
    }
    return any;
}

PieceSearch::PieceSearch(std::u16string_view text)
    : piece(text), isPlain(std::all_of(text.begin(), text.end(), IsPlainUnit)), anchor(NotFound) {
    ChooseAnchor();
    if (piece.size() <= ShortPiece) {
        return;
    }
    if (!isPlain) {
        for (std::size_t place = 0; place < piece.size(); place += PlacesPerChunk) {
            chunks.emplace_back(std::u16string_view(piece).substr(place, PlacesPerChunk));
        }
        return;
    }
    borders.resize(piece.size());
    for (unsigned int place = 1, border = 0; place < piece.size(); ++place) {
        while (border != 0 && piece[place] != piece[border]) {
            border = borders[border - 1];
        }
        border += piece[place] == piece[border] ? 1 : 0;
        borders[place] = border;
    }
}

// What is rare in the piece may be rare in the text. Two neighbours are better than one.
void PieceSearch::ChooseAnchor() {
    std::array<unsigned int, 256> counts{}; // by the low byte, which is good enough
    for (char16_t const unit : piece) {
        ++counts[unit & 0xFF];
    }
    unsigned int least = 0;
    for (std::size_t place = 0; place < piece.size(); ++place) {
        if (!IsPlainUnit(piece[place])) {
            continue;
        }
        bool const isPair = place + 1 < piece.size() && IsPlainUnit(piece[place + 1]);
        unsigned int const count = counts[piece[place] & 0xFF] + (isPair ? counts[piece[place + 1] & 0xFF] : 0);
        if (anchor == NotFound || isPair > anchorIsPair || (isPair == anchorIsPair && count < least)) {
            anchor = place;
            anchorIsPair = isPair;
            least = count;
        }
    }
}

std::size_t PieceSearch::Find(std::u16string_view text, std::size_t from, TextCase textCase) const {
    return textCase == TextCase::Lowered ? FindAs<TextCase::Lowered>(text, from)
                                         : FindAs<TextCase::AsItStands>(text, from);
}

template <TextCase Case>
std::size_t PieceSearch::FindAs(std::u16string_view text, std::size_t from) const {
    if (text.size() < piece.size() || from > text.size() - piece.size()) {
        return NotFound;
    }
    if (anchor == NotFound) {
        return from;
    }
    // Only where the whole piece has room is its anchor of any use.
    std::u16string_view const anchors = text.substr(0, text.size() - piece.size() + anchor + (anchorIsPair ? 2 : 1));
    std::size_t const begin = from;
    for (std::size_t comparisons = 0;;) {
        std::size_t const found = ScanForAnchor<Case>(anchors, from + anchor);
        if (found == NotFound) {
            return NotFound;
        }
        std::size_t const start = found - anchor;
        std::size_t const fitting = CountFitting<Case>(text.data() + start);
        if (fitting == piece.size()) {
            return start;
        }
        from = start + 1;
        comparisons += fitting;
        if (piece.size() > ShortPiece && comparisons > FreeComparisons + ComparisonsPerUnit * (from - begin)) {
            return isPlain ? FindByPrefixes<Case>(text, from) : FindByBits<Case>(text, from);
        }
        if (from > text.size() - piece.size()) {
            return NotFound;
        }
    }
}

/// The anchor's first place from `from` on, or a place that is none, of a capital that is no letter of a lowered text.
template <TextCase Case>
std::size_t PieceSearch::ScanForAnchor(std::u16string_view text, std::size_t from) const {
    std::size_t const second = anchorIsPair ? 1 : 0;
    char16_t const firstUnit = piece[anchor];
    char16_t const secondUnit = piece[anchor + second];
    char16_t const firstBit = CaseBit<Case>(firstUnit);
    char16_t const secondBit = CaseBit<Case>(secondUnit);
#if defined(__SSE2__)
    using Units = Block<char16_t>;
    __m128i const firstUnits = Units::All(firstUnit);
    __m128i const secondUnits = Units::All(secondUnit);
    __m128i const firstBits = Units::All(firstBit);
    __m128i const secondBits = Units::All(secondBit);
    auto const anchorsAt = [&](std::size_t at) {
        __m128i const firsts = _mm_or_si128(Units::Load(text.data() + at), firstBits);
        __m128i const seconds = _mm_or_si128(Units::Load(text.data() + at + second), secondBits);
        return Units::Bits(_mm_and_si128(Units::Equal(firsts, firstUnits), Units::Equal(seconds, secondUnits)));
    };
    for (; from + second + Units::Size <= text.size(); from += Units::Size) {
        if (unsigned const bits = anchorsAt(from)) {
            return from + Units::First(bits);
        }
    }
    if (text.size() >= second + Units::Size) {
        // The rest is seen in the last block, without what was seen before.
        std::size_t const last = text.size() - second - Units::Size;
        unsigned const bits = from < last + Units::Size ? anchorsAt(last) & ~0U << (from - last) * sizeof(char16_t) : 0;
        return bits != 0 ? last + Units::First(bits) : NotFound;
    }
#endif
    for (; from + second < text.size(); ++from) {
        if ((text[from] | firstBit) == firstUnit && (text[from + second] | secondBit) == secondUnit) {
            return from;
        }
    }
    return NotFound;
}

template <TextCase Case>
std::size_t PieceSearch::CountFitting(char16_t const* text) const {
    std::size_t place = 0;
    while (place < piece.size() && (piece[place] == UnitAs<Case>(text[place]) || !IsPlainUnit(piece[place]))) {
        ++place;
    }
    return place;
}

template <TextCase Case>
std::size_t PieceSearch::FindByPrefixes(std::u16string_view text, std::size_t from) const {
    std::size_t fitting = 0;
    for (std::size_t at = from; at < text.size(); ++at) {
        char16_t const unit = UnitAs<Case>(text[at]);
        while (fitting != 0 && piece[fitting] != unit) {
            fitting = borders[fitting - 1];
        }
        fitting += piece[fitting] == unit ? 1 : 0;
        if (fitting == piece.size()) {
            return at + 1 - piece.size();
        }
    }
    return NotFound;
}

template <TextCase Case>
std::size_t PieceSearch::FindByBits(std::u16string_view text, std::size_t from) const {
    // A bit of reached[i] says that the piece up to this place of chunk i fits and ends at the unit just passed.
    std::vector<std::uint64_t> reached(chunks.size());
    for (std::size_t at = from; at < text.size(); ++at) {
        char16_t const unit = UnitAs<Case>(text[at]);
        std::uint64_t enter = 1; // an attempt may begin at every unit
        for (std::size_t chunk = 0; chunk < chunks.size(); ++chunk) {
            std::uint64_t const leave = (reached[chunk] & chunks[chunk].last) != 0 ? 1 : 0;
            std::uint64_t const next = reached[chunk] << 1 | enter;
            reached[chunk] = next != 0 ? next & chunks[chunk].PlacesOf(unit) : 0;
            enter = leave;
        }
        if ((reached.back() & chunks.back().last) != 0) {
            return at + 1 - piece.size();
        }
    }
    return NotFound;
}

} // namespace detail
