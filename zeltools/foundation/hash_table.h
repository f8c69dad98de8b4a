// SPDX-License-Identifier: MIT
// A hash set without an allocation for each element, the sibling of CHashMap. For membership by a key that
// CHashMethods knows; a record whose methods look at some of its fields only can be looked up by those.
//
//     CHashTable<unsigned int> classes;
//     classes.Insert(FourCC("BMP "));         // 1: new
//     classes.Insert(FourCC("BMP "));         // 0: it was there
//     classes.IsFound(FourCC("TIF "));        // false

#pragma once

#include "zeltools/foundation/hash_methods.h"
#include "zeltools/foundation/open_addressing.h"
#include "zeltools/foundation/xarray.h"

namespace detail {

/// A slot of a set.
template <class T>
struct HashTableSlot {
    T key{};
    HashSlotState state = SlotEmpty;

    void CopyElement(HashTableSlot const& other) { key = other.key; }
    void MoveElement(HashTableSlot& other) { MoveValue(key, other.key); }
    void ResetElement() { key = T(); }
};

} // namespace detail

/// A set of keys of type T, with the hash and equality of M.
///
/// Owns its keys. T needs a default constructor and assignment: every slot holds one from the start, and a removed
/// one stays until its slot is used again or the set is cleared, rehashed or freed. A pointer to a key holds until
/// the next insert, shrinking removal or whole-set operation.
///
/// Threads: const calls from any thread while nobody changes the set; hosts that share one lock it.
/// Errors:  misuse is answered by result; CXMemoryException when memory runs out, CXInvalidArgException when no
///          larger size exists, and then the set is as it was before the call.
template <class T, class M = CHashMethods<T>>
class CHashTable : public detail::OpenAddressing<detail::HashTableSlot<T>, T, M> {
    using Base = detail::OpenAddressing<detail::HashTableSlot<T>, T, M>;
    using Slot = detail::HashTableSlot<T>;

public:
    /// Makes an empty set of NextPrime(size) slots, at least 5. It grows by itself, so this is only a hint.
    explicit CHashTable(unsigned int size = detail::DefaultTableSize) : Base(size) {}

    /// Enters a key. One that is there already stays as it is.
    /// @return 1 for a new key, 0 for one that was there.
    int Insert(T const& key) {
        return this->InsertWith(key, [&](Slot& slot, bool isNew) {
            if (isNew)
                slot.key = key;
        });
    }

    /// The same with the key passed by value, for one that the caller has no more use for.
    int Insert2(T key) {
        return this->InsertWith(key, [&](Slot& slot, bool isNew) {
            if (isNew)
                slot.key = std::move(key);
        });
    }

    /// Removes a key. With `shrink` a set in which deleted slots have piled up is rehashed, which ends every walk.
    /// @return 1, or 0 for a key that is not there.
    int Remove(T const& key, bool shrink = false) { return this->RemoveKey(key, shrink); }

    /// Removes all keys of another set; without shrinking.
    void Remove(CHashTable const& other) {
        other.ForEachActive([&](Slot const& slot) { this->RemoveKey(slot.key, false); });
    }

    /// The stored key that is equal to this one, or null.
    T const* Find(T const& key) const {
        Slot const* const slot = this->Locate(key);
        return slot ? &slot->key : nullptr;
    }

    /// Copies the stored key out: untouched when there is none, and then the result is false.
    bool Find(T const& key, T& stored) const {
        T const* const found = Find(key);
        if (found)
            stored = *found;
        return found != nullptr;
    }

    /// Copies the key at `position`, which GetFirst or an earlier step set, and moves `position` on to the next one,
    /// 0xFFFFFFFF at the end. A key that was removed in the meantime is skipped.
    /// @return false at the end already, and then nothing is touched.
    bool GetNext(unsigned int& position, T& key) const {
        T const* const next = GetNext(position);
        if (next)
            key = *next;
        return next != nullptr;
    }

    /// The same by pointer: null at the end.
    T const* GetNext(unsigned int& position) const {
        Slot const* const slot = this->TakeNext(position);
        return slot ? &slot->key : nullptr;
    }

    /// Enters all keys of another set.
    void Merge(CHashTable const& other) {
        if (this != &other)
            other.ForEachActive([&](Slot const& slot) { Insert(slot.key); });
    }

    /// Makes the array the list of the keys, in slot order.
    /// @return their number.
    /// Errors: CXInvalidArgException for more keys than an array can hold; CXMemoryException.
    template <class ARG>
    unsigned int CopyTo(CXArray<T, ARG>& keys) const {
        return this->CopyKeys(keys);
    }
};
