// SPDX-License-Identifier: MIT
// A hash map without an allocation for each element: keys and values stand in one array. For lookups by a key that
// CHashMethods knows; not for an order, and not for pointers to values that outlive an insert.
//
//     CHashMap<int, int, double> widths;
//     widths.Insert(7, 1.5);                  // 1: a new key
//     widths.Insert(7, 2.5);                  // 0: the value is now 2.5
//     if (double* width = widths.Find(7))
//         *width *= 2;

#pragma once

#include "zeltools/foundation/hash_methods.h"
#include "zeltools/foundation/open_addressing.h"
#include "zeltools/foundation/xarray.h"

namespace detail {

/// A slot of a map. The state has 32 bits, the width in which it lies behind a 32-bit value anyhow.
template <class K, class V>
struct HashMapSlot {
    K key{};
    V value{};
    std::uint32_t state = SlotEmpty;

    void CopyElement(HashMapSlot const& other) {
        key = other.key;
        value = other.value;
    }
    void MoveElement(HashMapSlot& other) {
        // Both or none: a rehash that fails leaves the old slots as they were, and none of them without its key.
        if constexpr (MovesSurely<K> && MovesSurely<V>) {
            MoveValue(key, other.key);
            MoveValue(value, other.value);
        } else {
            CopyElement(other);
        }
    }
    void ResetElement() {
        key = K();
        value = V();
    }
};

} // namespace detail

/// Maps keys of type K, passed as KARG, to values of type V, with the hash and equality of M.
///
/// Owns its keys and values; what a pointer value points to stays with the host. K and V need a default constructor
/// and assignment: every slot holds one of each from the start, and a removed one stays until its slot is used again
/// or the map is cleared, rehashed or freed. A pointer to a value holds until the next insert, shrinking removal or
/// whole-map operation.
///
/// Threads: const calls from any thread while nobody changes the map; hosts that share one lock it.
/// Errors:  misuse is answered by result; CXMemoryException when memory runs out, CXInvalidArgException when no
///          larger size exists, and then the map is as it was before the call.
template <class K, class KARG, class V, class M = CHashMethods<K>>
class CHashMap : public detail::OpenAddressing<detail::HashMapSlot<K, V>, K, M> {
    using Base = detail::OpenAddressing<detail::HashMapSlot<K, V>, K, M>;
    using Slot = detail::HashMapSlot<K, V>;

public:
    /// Makes an empty map of NextPrime(size) slots, at least 5. It grows by itself, so this is only a hint.
    explicit CHashMap(unsigned int size = detail::DefaultTableSize) : Base(size) {}

    /// Enters a value under a key. Of a key that is there already, only the value changes.
    /// @return 1 for a new key, 0 for one that was there.
    int Insert(KARG key, V const& value) {
        return this->InsertWith(key, [&](Slot& slot, bool isNew) {
            if (isNew)
                slot.key = key;
            slot.value = value;
        });
    }

    /// The same with the value passed by value, for one that the caller has no more use for.
    int Insert2(KARG key, V value) {
        return this->InsertWith(key, [&](Slot& slot, bool isNew) {
            if (isNew)
                slot.key = key;
            slot.value = std::move(value);
        });
    }

    /// Removes a key. With `shrink` a map in which deleted slots have piled up is rehashed, which ends every walk.
    /// @return 1, or 0 for a key that is not there.
    int Remove(KARG key, bool shrink = false) { return this->RemoveKey(key, shrink); }

    /// Removes all keys of another map, whatever their values; without shrinking.
    void Remove(CHashMap const& other) {
        other.ForEachActive([&](Slot const& slot) { this->RemoveKey(slot.key, false); });
    }

    /// The value of a key, or null.
    V* Find(KARG key) {
        Slot* const slot = this->Locate(key);
        return slot ? &slot->value : nullptr;
    }
    V const* Find(KARG key) const { return const_cast<CHashMap*>(this)->Find(key); }

    /// The same as an output argument: untouched when the key is not there, and then the result is false.
    bool Find(KARG key, V*& value) {
        V* const found = Find(key);
        if (found)
            value = found;
        return found != nullptr;
    }

    /// Copies the value out: untouched when the key is not there, and then the result is false.
    bool Find(KARG key, V& value) const {
        V const* const found = Find(key);
        if (found)
            value = *found;
        return found != nullptr;
    }

    /// @name A step of a walk
    /// Each gives the element at `position`, which GetFirst or an earlier step set, and moves `position` on to the
    /// next one, 0xFFFFFFFF at the end. At the end already they give false or null and touch nothing. An element
    /// that was removed in the meantime is skipped.
    /// @{

    /// Copies the key.
    bool GetNext(unsigned int& position, K& key) const {
        Slot const* const slot = this->TakeNext(position);
        if (slot)
            key = slot->key;
        return slot != nullptr;
    }

    /// Copies key and value.
    bool GetNext(unsigned int& position, K& key, V& value) const {
        Slot const* const slot = this->TakeNext(position);
        if (slot) {
            key = slot->key;
            value = slot->value;
        }
        return slot != nullptr;
    }

    /// Copies the key and points to the value.
    bool GetNext(unsigned int& position, K& key, V*& value) {
        Slot* const slot = this->TakeNext(position);
        if (slot) {
            key = slot->key;
            value = &slot->value;
        }
        return slot != nullptr;
    }

    /// Points to key and value.
    bool GetNext(unsigned int& position, K const*& key, V*& value) {
        Slot* const slot = this->TakeNext(position);
        if (slot) {
            key = &slot->key;
            value = &slot->value;
        }
        return slot != nullptr;
    }

    /// Gives the value only.
    V* GetNext(unsigned int& position) {
        Slot* const slot = this->TakeNext(position);
        return slot ? &slot->value : nullptr;
    }
    V const* GetNext(unsigned int& position) const { return const_cast<CHashMap*>(this)->GetNext(position); }
    /// @}

    /// Enters all elements of another map; where both have a key, the other's value wins.
    void Merge(CHashMap const& other) {
        if (this != &other)
            other.ForEachActive([&](Slot const& slot) { Insert(slot.key, slot.value); });
    }

    /// Makes the array the list of the keys, in slot order.
    /// @return their number.
    /// Errors: CXInvalidArgException for more keys than an array can hold; CXMemoryException.
    template <class ARG>
    unsigned int CopyTo(CXArray<K, ARG>& keys) const {
        return this->CopyKeys(keys);
    }
};
