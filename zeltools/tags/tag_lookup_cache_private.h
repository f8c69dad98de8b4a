// SPDX-License-Identifier: MIT
// The tags that a thread met last in templates. A host expands one template for file after file, so nearly every tag
// was met before, and a look at what stands between its brackets spares lowering, hashing and copying it.

#pragma once

#include "zeltools/tags/tag_info.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace detail {

/// Tags without parameters by the token that named them, as it was written. Each has one place where it can stand, and
/// leaves it to the next one.
///
/// What is found is a copy, so that a host may change the registry while it evaluates the tag; it holds until the next
/// Enter. Who may be called while another uses what it found takes no part: that is up to the caller.
/// Threads: one at a time.
class TagLookupCache {
public:
    /// The tag of a registry in this state, or null. The state is a number that no two registries have, and no registry
    /// twice with other tags.
    CTagInfo const* Find(unsigned long long state, char16_t const* token, std::size_t length) const {
        if (length > LongestToken)
            return nullptr;
        Entry const& entry = entries[Place(token, length)];
        bool const isSame = entry.state == state && entry.length == length &&
                            std::memcmp(entry.token, token, length * sizeof *token) == 0;
        return isSame ? &entry.info : nullptr;
    }

    /// Notes a tag that was looked up; one with a long name is not worth it.
    void Enter(unsigned long long state, char16_t const* token, std::size_t length, CTagInfo const& info) {
        if (length > LongestToken)
            return;
        Entry& entry = entries[Place(token, length)];
        entry.state = 0; // a copy that fails leaves no tag
        entry.info = info;
        std::memcpy(entry.token, token, length * sizeof *token);
        entry.length = length;
        entry.state = state;
    }

private:
    static constexpr std::size_t LongestToken = 20;
    static constexpr unsigned int PlaceBits = 6; ///< several times the tags of a template, so that few share a place

    struct Entry {
        unsigned long long state = 0;
        std::size_t length = 0;
        char16_t token[LongestToken];
        CTagInfo info;
    };

    /// The place of a token, by a few of its characters: the golden ratio in 64 bits spreads them over the upper bits.
    /// @param length  Not 0.
    static std::size_t Place(char16_t const* token, std::size_t length) {
        std::uint64_t const characters = token[0] | static_cast<std::uint64_t>(token[length / 2]) << 16 |
                                         static_cast<std::uint64_t>(token[length - 1]) << 32 |
                                         static_cast<std::uint64_t>(length) << 48;
        return characters * 0x9E3779B97F4A7C15 >> (64 - PlaceBits);
    }

    std::array<Entry, 1 << PlaceBits> entries;
};

} // namespace detail
