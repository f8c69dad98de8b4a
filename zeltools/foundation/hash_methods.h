// SPDX-License-Identifier: MIT
// What a hash container asks of its keys: a 32-bit hash and equality. Integers, enumerations, pointers, function
// pointers and the strings have it here. Another key type specialises CHashMethods beside its own declaration:
//
//     template <>
//     struct CHashMethods<Version> {
//         static unsigned int Hash(Version const& key) { return HashInteger64(key.packed); }
//         static bool IsEqual(Version const& a, Version const& b) { return a.packed == b.packed; }
//     };
//
// The hashes are fixed for ever: with the insert history they decide the order in which a table is walked.

#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

class CExLCString;
template <class T>
class CXTString;

/// Mixes a 32-bit key. Thomas Wang's integer hash with the steps 18, 31, 21, 11, 65, 22, in 32 bits and with
/// logical shifts.
constexpr unsigned int HashInteger32(std::uint32_t key) {
    std::uint32_t h = (key << 18) + ~key;
    h ^= h >> 31;
    h *= 21;
    h ^= h >> 11;
    h *= 65;
    h ^= h >> 22;
    return h;
}

/// Mixes a 64-bit key by the same steps in 64 bits, and keeps the low half.
constexpr unsigned int HashInteger64(std::uint64_t key) {
    std::uint64_t h = (key << 18) + ~key;
    h ^= h >> 31;
    h *= 21;
    h ^= h >> 11;
    h *= 65;
    h ^= h >> 22;
    return static_cast<unsigned int>(h);
}

/// The hash of no text at all, and the start of HashText.
inline constexpr unsigned int HashTextStart = 0x811C9DC5;

/// 32-bit FNV-1a (http://www.isthe.com/chongo/tech/comp/fnv/) over whole units, narrow ones taken unsigned, from
/// the last unit to the first.
/// @param start  The hash of what follows the text, where several texts are hashed as one.
template <class T>
constexpr unsigned int HashText(T const* text, std::size_t length, unsigned int start = HashTextStart) {
    unsigned int h = start;
    while (length != 0)
        h = (h ^ static_cast<std::make_unsigned_t<T>>(text[--length])) * 16777619u;
    return h;
}

/// The hash and the equality of a key type. Both are pure, so any thread may call them.
template <class K>
struct CHashMethods;

/// Integers and enumerations: up to 32 bits by the narrow mix, above by the wide one.
template <class K>
requires(std::integral<K> || std::is_enum_v<K>) struct CHashMethods<K> {
    static constexpr unsigned int Hash(K key) {
        if constexpr (sizeof(K) <= 4)
            return HashInteger32(static_cast<std::uint32_t>(key));
        else
            return HashInteger64(static_cast<std::uint64_t>(key));
    }
    static constexpr bool IsEqual(K a, K b) { return a == b; }

    /// IsEqual looks at nothing but the two keys, so it may also be asked about one that was never entered.
    static constexpr bool LooksAtKeysOnly = true;
};

/// Pointers, also to functions: by address, whatever they point to.
template <class T>
struct CHashMethods<T*> {
    static unsigned int Hash(T* key) { return HashInteger64(reinterpret_cast<std::uintptr_t>(key)); }
    static bool IsEqual(T* a, T* b) { return a == b; }
    static constexpr bool LooksAtKeysOnly = true;
};

/// Strings: equal up to their first zero. The hash takes in the whole length, so two strings with an embedded zero
/// can be equal and still stand in a table side by side.
template <class T>
struct CHashMethods<CXTString<T>> {
    static unsigned int Hash(CXTString<T> const& key) {
        T const* text = static_cast<T const*>(key);
        return HashText(text, text ? LengthOf(key) : 0);
    }

    static bool IsEqual(CXTString<T> const& a, CXTString<T> const& b) {
        T const* x = static_cast<T const*>(a);
        T const* y = static_cast<T const*>(b);
        bool const sameLength = LengthOf(a) == LengthOf(b);
        // A detached string has a null buffer and may still have a length.
        if (!x || !y)
            return sameLength;
        // Equal content is equal text, and this is the fast answer to nearly every hit.
        if (sameLength && std::memcmp(x, y, LengthOf(a) * sizeof(T)) == 0)
            return true;
        for (; *x == *y; ++x, ++y)
            if (*x == T())
                return true;
        return false;
    }

private:
    /// GetLength is negative beyond an int. Taken unsigned it never tells of more characters than there are.
    static std::size_t LengthOf(CXTString<T> const& key) { return static_cast<unsigned int>(key.GetLength()); }
};

/// The lower-cased string hashes and compares as the wide string that it is.
template <>
struct CHashMethods<CExLCString> : CHashMethods<CXTString<char16_t>> {};
