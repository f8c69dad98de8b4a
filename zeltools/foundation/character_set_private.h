// SPDX-License-Identifier: MIT
// A set of characters that is asked for many.

#pragma once

#include "zeltools/foundation/characters.h"

#include <bitset>

namespace detail {

/// The characters of a text up to its zero. The text must outlive the set; null makes the empty set.
template <class T>
class CharacterSet {
public:
    explicit CharacterSet(T const* characters) : m_characters(characters) {
        for (T const* next = characters; next && *next; ++next)
            if (IsLow(*next))
                m_low.set(Index(*next));
            else
                m_hasHigh = true;
    }

    bool Contains(T character) const {
        if (IsLow(character))
            return m_low.test(Index(character));
        return m_hasHigh && xStrChr(m_characters, character) != nullptr;
    }

private:
    static constexpr bool IsLow(T character) { return sizeof(T) == 1 || character < 0x100; }
    static constexpr std::size_t Index(T character) { return static_cast<unsigned char>(character); }

    T const* m_characters;
    std::bitset<0x100> m_low;
    bool m_hasHigh = false;
};

} // namespace detail
