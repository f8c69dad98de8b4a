// SPDX-License-Identifier: MIT
// Finds one piece of a wildcard pattern in a text: units that must be equal, and `?` for any one of them.
//
// The search looks for two neighbouring units of the piece, a block of the text at a step, and compares the rest where
// it meets them. Texts exist in which that compares the same units again and again (a long a...ab in a row of a). A
// piece that is long enough for this to hurt therefore has a second search ready, which never looks back, and which
// takes over as soon as the comparisons outnumber the units that were passed: prefix by prefix (Knuth, Morris and
// Pratt) for plain units, and with `?` a bit for each place of the piece (shift-and), 64 places in a word.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace detail {

/// How the units of a text count.
enum class TextCase {
    AsItStands,
    Lowered ///< As if their ASCII letters were lowered.
};

class PieceSearch {
public:
    /// @param text  At least one unit, none of them a `*`.
    explicit PieceSearch(std::u16string_view text);

    std::size_t Length() const { return piece.size(); }
    std::u16string_view Text() const { return piece; }

    /// Whether no unit is a `?`.
    bool IsPlain() const { return isPlain; }

    /// The first position from `from` on where the piece stands; NotFound otherwise.
    /// Time: in proportion to the text; with `?`, times one for each 64 units of the piece.
    std::size_t Find(std::u16string_view text, std::size_t from, TextCase textCase = TextCase::AsItStands) const;

private:
    /// Up to 64 places of a piece: for each unit that stands there, the places that it fits.
    class Chunk {
    public:
        explicit Chunk(std::u16string_view places);
        std::uint64_t PlacesOf(char16_t unit) const;

        std::uint64_t last; ///< The bit of the last place.

    private:
        static constexpr std::size_t Slots = 128; // never more than half of them in use

        std::uint64_t any = 0; ///< The places of `?`.
        std::array<std::uint64_t, Slots> places{};
        std::array<char16_t, Slots> units{};
    };

    void ChooseAnchor();
    template <TextCase Case>
    std::size_t FindAs(std::u16string_view text, std::size_t from) const;
    template <TextCase Case>
    std::size_t ScanForAnchor(std::u16string_view text, std::size_t from) const;
    template <TextCase Case>
    std::size_t CountFitting(char16_t const* text) const;
    template <TextCase Case>
    std::size_t FindByPrefixes(std::u16string_view text, std::size_t from) const;
    template <TextCase Case>
    std::size_t FindByBits(std::u16string_view text, std::size_t from) const;

    std::u16string piece;
    bool isPlain;
    std::size_t anchor; ///< The first plain unit with another behind it, or else the first one; NotFound for none.
    bool anchorIsPair = false;
    std::vector<unsigned int> borders; ///< For plain pieces: how long a prefix also ends at each place.
    std::vector<Chunk> chunks;         ///< For pieces with `?`.
};

} // namespace detail
