// SPDX-License-Identifier: MIT
// Where the tags stand that a thread met last in templates. A host expands one template for file after file, so nearly
// every tag was met before, and a look at what stands between its brackets spares lowering and hashing it.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

class CTagInfo;

namespace detail {

/// Tags without parameters by the token that named them, as it was written. Each has one place where it can stand, and
/// leaves it to the next one.
///
/// An entry points into a registry and is never followed once that has changed or gone: it counts for one state alone,
/// a number that no two registries have, and no registry twice with other tags. So there is nothing to tell the cache
/// when a registry changes, and nothing to destroy when its thread ends.
/// Threads: one at a time.
class TagLookupCache {
public:
    /// The tag in the registry of this state, or null.
    /// @param length  Not 0.
    CTagInfo const* Find(unsigned long long state, char16_t const* token, std::size_t length) const {
        if (length > LongestToken)
            return nullptr;
        Entry const& entry = entries[Place(token, length)];
        bool const isSame = entry.state == state && entry.length == length &&
                            std::memcmp(entry.token, token, length * sizeof *token) == 0;
        return isSame ? entry.info : nullptr;
    }

    /// Notes where a tag was found; one with a long name is not worth it.
    void Enter(unsigned long long state, char16_t const* token, std::size_t length, CTagInfo const* info) {
        if (length > LongestToken)
            return;
        Entry& entry = entries[Place(token, length)];
        std::memcpy(entry.token, token, length * sizeof *token);
        entry.length = length;
        entry.info = info;
        entry.state = state;
    }

private:
    static constexpr std::size_t LongestToken = 20; ///< with it an entry takes 64 bytes
    static constexpr unsigned int PlaceBits = 6;    ///< several times the tags of a template, so that few share a place

    struct Entry {
        unsigned long long state = 0; ///< 0 is no registry's
        CTagInfo const* info = nullptr;
        std::size_t length = 0;
        char16_t token[LongestToken] = {};
    };

    /// The place of a token, by a few of its characters: the golden ratio in 64 bits spreads them over the upper bits.
    static std::size_t Place(char16_t const* token, std::size_t length) {
        std::uint64_t const characters = token[0] | static_cast<std::uint64_t>(token[length / 2]) << 16 |
                                         static_cast<std::uint64_t>(token[length - 1]) << 32 |
                                         static_cast<std::uint64_t>(length) << 48;
        return characters * 0x9E3779B97F4A7C15 >> (64 - PlaceBits);
    }

    Entry entries[1 << PlaceBits];
};

} // namespace detail
