// SPDX-License-Identifier: MIT
// What CHashTable and CHashMap have in common: the slot array, the probe, the counters and the growth. It is not used
// by itself; hash_table.h and hash_map.h add how elements go in and come out.
//
// All elements stand in one array of slots, and each slot carries its state:
//
//     slot     0          1          2          3          4               tableSize - 1
//          | key value | key value | key value | key value | ...         | key value |
//          |  Active   |  Empty    |  Deleted  |  Active   |             |  Empty    |
//
// A key's probe begins at hash % tableSize and goes on at the distances 1, 4, 9, ... from there, round the end of the
// array. It ends at an empty slot. Removing only marks a slot deleted, since an empty one in its place would cut off
// the keys behind it; an insert takes the first deleted slot that its probe has met. With a prime size the first half
// of the squares are all different, and never more than half of the slots are in use, so that a probe always ends.

#pragma once

#include "zeltools/foundation/block_movable.h"
#include "zeltools/foundation/block_storage.h"
#include "zeltools/foundation/hash_methods.h"
#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/foundation/next_prime.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <type_traits>
#include <utility>

/// The state of a slot.
enum HashSlotState : unsigned char {
    SlotActive = 0,  ///< holds an element
    SlotEmpty = 1,   ///< never used since the last rehash; it ends a probe
    SlotDeleted = 2, ///< held an element once; it does not end a probe
};

namespace detail {

/// The size of a table that was not told any.
inline constexpr unsigned int DefaultTableSize = 23;

/// No table is smaller: the smallest prime that takes two elements.
inline constexpr unsigned int SmallestTableSize = 5;

/// A hash container over `Slot`, which has a `key` first and a `state` last, begins its life empty, and has the three
/// operations on what stands between: CopyElement, MoveElement and ResetElement.
///
/// Fields:  as in memory, behind the table of virtual functions.
/// Threads: const calls from any thread while nobody changes the container; it has no lock of its own.
template <class Slot, class K, class M>
class OpenAddressing {
public:
    /// The position that is no slot: the end of a walk.
    static constexpr unsigned int NoPosition = 0xFFFFFFFF;

    /// Whether there is no element.
    bool IsEmpty() const { return activeCount == 0; }

    /// The number of elements.
    unsigned int GetCount() const { return activeCount; }

    /// The number of slots: a prime, at least twice the number of elements.
    unsigned int GetHashTableSize() const { return tableSize; }

    /// Whether the key is there.
    bool IsFound(K const& key) const { return Locate(key) != nullptr; }

    /// Prepares a table in use for `expectedCount` elements, in NextPrime(2 * expectedCount + 2) slots, at least 5.
    /// Where the table was set up for that size already nothing happens; otherwise the content is lost.
    /// Errors: CXInvalidArgException for a size that no 32-bit prime reaches; CXMemoryException. The content stays.
    void InitHashTable(unsigned int expectedCount);

    /// Removes every element and keeps the size. What class-type elements own is released.
    void Clear();

    /// Removes every element and goes back to the default size.
    /// Errors: CXMemoryException; the content stays.
    void Free();

    /// Makes the table as small as its content allows, which also sweeps out the deleted slots.
    /// @return whether the size changed.
    bool Minimize() { return ReHash(true); }

    /// The position of the first element, NoPosition when there is none. A walk goes
    ///
    ///     for (unsigned int position = map.GetFirst(); position != 0xFFFFFFFF;) {
    ///         map.GetNext(position, key);       // position is already that of the next element
    ///         ...                               // so `key` may be removed here, without shrinking
    ///     }
    ///
    /// in slot order, which is an accident of hash, history and size: nothing may depend on it.
    unsigned int GetFirst() const { return FindActiveElement(0); }

protected:
    explicit OpenAddressing(unsigned int size) {
        AllocateArray(TableSizeFor(size));
        initialSize = tableSize;
    }
    OpenAddressing(OpenAddressing const& other) : OpenAddressing(other.tableSize) { CopySlots(other); }
    OpenAddressing& operator=(OpenAddressing const& other);
    virtual ~OpenAddressing() { DeleteElements(slots, tableSize); }

    /// The slot that holds the key, or else the slot where it belongs: the first deleted one on its way, or the
    /// empty one that ends the probe.
    unsigned int FindPos(K const& key) const;

    /// The slot that holds the key, or null.
    Slot* Locate(K const& key) const;

    /// The first active slot from `index` on, NoPosition when there is none.
    unsigned int FindActiveElement(unsigned int index) const;

    /// Gives the element at a position of a walk and moves the position on, before anybody looks at the element.
    /// @return null at the end, for a position outside the table, or where no element follows.
    Slot* TakeNext(unsigned int& position) const;

    /// Enters a key. `store(slot)` writes what belongs to it: `isNew` tells whether the key has to be written too.
    /// @return 1 for a new key, 0 for one that was there.
    template <class Store>
    int InsertWith(K const& key, Store const& store);

    /// Marks a key's slot deleted; with `shrink` a table of 24 elements or more may become smaller.
    /// @return 1, or 0 for a key that is not there.
    int RemoveKey(K const& key, bool shrink);

    /// Calls `visit(slot)` for each active slot, in order.
    template <class Visit>
    void ForEachActive(Visit const& visit) const;

    /// Makes `keys`, any CXArray, the list of the keys in slot order.
    template <class Array>
    unsigned int CopyKeys(Array& keys) const {
        if (activeCount > 0x7FFFFFFF)
            ThrowInvalidArg();
        keys.SetSize(static_cast<int>(activeCount), -1);
        auto* key = keys.GetData();
        ForEachActive([&](Slot const& slot) { *key++ = slot.key; });
        return activeCount;
    }

    /// Replaces the array by an empty one of `size` slots and sets both counters to 0.
    void AllocateArray(unsigned int size);

    /// Moves the content into an array of the size that suits it: see the steps at its body.
    /// @return whether it did.
    /// Errors: CXInvalidArgException when no larger table is possible; CXMemoryException. The table stays as it was.
    bool ReHash(bool minimize);

    unsigned int initialSize = 0; ///< the size that construction or InitHashTable chose
    unsigned int tableSize = 0;   ///< slots allocated
    unsigned int usedSlots = 0;   ///< slots that are not empty
    unsigned int activeCount = 0; ///< slots that hold an element
    Slot* slots = nullptr;

private:
    /// Slots that are cheap to make and to copy are never destroyed, and all of their bytes are always defined.
    static constexpr bool PlainSlots = std::is_trivially_copyable_v<Slot>;

    /// Keys that can be compared without branches, also in slots that are not active. The methods of a host may follow
    /// a pointer or an index, and are only asked about keys that are there.
    static constexpr bool PlainKeys = std::is_same_v<M, CHashMethods<K>> && requires { M::LooksAtKeysOnly; };

    /// ceil(2^64 / tableSize), by which a remainder takes two multiplications and no division: Lemire, Kaser and
    /// Kurz, "Faster remainder by direct computation", 2019, https://arxiv.org/abs/1902.01655. Exact for 32 bits.
    std::uint64_t reciprocal = 0;

    static unsigned int TableSizeFor(std::uint64_t number);

    unsigned int StartSlot(K const& key) const {
        __extension__ using uint128 = unsigned __int128;
        std::uint64_t const fraction = reciprocal * M::Hash(key);
        return static_cast<unsigned int>((static_cast<uint128>(fraction) * tableSize) >> 64);
    }

    // Nearly every probe is over after three slots, but which of them ends it is a toss that no processor can foresee.
    // So all three are read at once, and only whether they decide is a branch, which nearly always goes one way.

    /// Whether the slots at 0 to 5 from a start do not go round the end: the first three of the probe, at 0, 1 and 4,
    /// and what LaterWithKey may give.
    bool ThreeFollow(unsigned int start) const { return std::uint64_t{start} + 5 < tableSize; }

    /// The distance of the later one of three with this key; 0 for none, and 5 for both. A key stands in the table
    /// once, but a slot that is empty or deleted has one too: the key 0, or its last. So this is where to look first,
    /// and only 0 is proof, that neither of the two holds the key.
    static std::size_t LaterWithKey(Slot const* three, K const& key) {
        return static_cast<std::size_t>(M::IsEqual(three[1].key, key)) |
               static_cast<std::size_t>(M::IsEqual(three[4].key, key)) << 2;
    }

    static bool Holds(Slot const& slot, K const& key) { return M::IsEqual(slot.key, key) && slot.state == SlotActive; }

    /// The bits of all three states.
    static unsigned int States(Slot const* three) { return three[0].state | three[1].state | three[4].state; }

    /// The distance of the first empty one of three, where States gives SlotEmpty.
    static unsigned int FirstEmpty(Slot const* three) {
        unsigned int const i =
            static_cast<unsigned int>(std::countr_zero(three[0].state | static_cast<unsigned int>(three[1].state) << 1 |
                                                       static_cast<unsigned int>(three[4].state) << 2));
        return i * i;
    }

    /// Walks a probe from `start` to the slot that `isThere` accepts, or to the empty slot that ends it.
    /// `passDeleted(p)` hears of each deleted slot on the way.
    template <class IsThere, class PassDeleted>
    unsigned int Probe(unsigned int start, IsThere const& isThere, PassDeleted const& passDeleted) const;

    void CopySlots(OpenAddressing const& other);
    void MoveInto(Slot* oldSlots, unsigned int oldSize);
};

// ---------------------------------------------------------------------------------------------------------------
// Bodies

template <class Slot, class K, class M>
unsigned int OpenAddressing<Slot, K, M>::TableSizeFor(std::uint64_t number) {
    unsigned int const size = number <= 0xFFFFFFFF ? NextPrime(static_cast<unsigned int>(number)) : 0;
    if (size == 0)
        ThrowInvalidArg();
    return std::max(size, SmallestTableSize);
}

template <class Slot, class K, class M>
template <class IsThere, class PassDeleted>
unsigned int OpenAddressing<Slot, K, M>::Probe(unsigned int start, IsThere const& isThere,
                                               PassDeleted const& passDeleted) const {
    // The differences of the squares are the odd numbers. 64 bits, since p and the step together can pass 2^32.
    std::uint64_t p = start;
    for (std::uint64_t step = 1;; step += 2) {
        Slot const& slot = slots[p];
        if (slot.state == SlotEmpty || isThere(slot))
            return static_cast<unsigned int>(p);
        if (slot.state == SlotDeleted)
            passDeleted(static_cast<unsigned int>(p));
        p += step;
        if (p >= tableSize)
            p -= tableSize;
    }
}

template <class Slot, class K, class M>
unsigned int OpenAddressing<Slot, K, M>::FindPos(K const& key) const {
    unsigned int const start = StartSlot(key);
    if constexpr (PlainKeys) {
        if (ThreeFollow(start)) [[likely]] {
            Slot const* const three = slots + start;
            std::size_t const later = LaterWithKey(three, key);
            if (Holds(three[later], key))
                return start + static_cast<unsigned int>(later);
            if (later == 0 && States(three) == SlotEmpty) [[likely]]
                return start + FirstEmpty(three);
        }
    }
    unsigned int tombstone = NoPosition;
    unsigned int const p = Probe(
        start, [&](Slot const& slot) { return slot.state == SlotActive && M::IsEqual(slot.key, key); },
        [&](unsigned int deleted) {
            if (tombstone == NoPosition)
                tombstone = deleted;
        });
    return tombstone != NoPosition && slots[p].state == SlotEmpty ? tombstone : p;
}

template <class Slot, class K, class M>
Slot* OpenAddressing<Slot, K, M>::Locate(K const& key) const {
    unsigned int const start = StartSlot(key);
    if constexpr (PlainKeys) {
        if (ThreeFollow(start)) [[likely]] {
            Slot* const three = slots + start;
            std::size_t const later = LaterWithKey(three, key);
            if (Holds(three[later], key))
                return three + later;
            // A key that is not there belongs nowhere yet, so it is enough that the probe ends: SlotEmpty is the one
            // odd state.
            if (later == 0 && (States(three) & SlotEmpty) != 0) [[likely]]
                return nullptr;
        }
    }
    unsigned int const p = Probe(
        start, [&](Slot const& slot) { return slot.state == SlotActive && M::IsEqual(slot.key, key); },
        [](unsigned int) {});
    return slots[p].state == SlotActive ? slots + p : nullptr;
}

template <class Slot, class K, class M>
unsigned int OpenAddressing<Slot, K, M>::FindActiveElement(unsigned int index) const {
    // Whether the next slot is active is a toss. In a small table that is walked again and again the processor learns
    // the tosses by heart, and testing slot after slot is fastest; in a large one each wrong guess costs more than
    // looking at four slots at once. The bound lies where the measured times cross.
    constexpr unsigned int largeTable = 1u << 15;
    constexpr unsigned int group = 4;
    if (tableSize >= largeTable)
        for (; index < tableSize && tableSize - index >= group; index += group) {
            Slot const* const slot = slots + index;
            unsigned int active = 0;
            for (unsigned int i = 0; i < group; ++i)
                active |= static_cast<unsigned int>(slot[i].state == SlotActive) << i;
            if (active != 0)
                return index + static_cast<unsigned int>(std::countr_zero(active));
        }
    for (; index < tableSize; ++index)
        if (slots[index].state == SlotActive)
            return index;
    return NoPosition;
}

template <class Slot, class K, class M>
Slot* OpenAddressing<Slot, K, M>::TakeNext(unsigned int& position) const {
    // Only a position whose element went away in the meantime is not active.
    if (position >= tableSize || slots[position].state != SlotActive) [[unlikely]]
        position = FindActiveElement(position);
    if (position == NoPosition)
        return nullptr;
    Slot* const slot = slots + position;
    position = FindActiveElement(position + 1);
    return slot;
}

template <class Slot, class K, class M>
template <class Visit>
void OpenAddressing<Slot, K, M>::ForEachActive(Visit const& visit) const {
    for (unsigned int p = GetFirst(); p != NoPosition; p = FindActiveElement(p + 1))
        visit(slots[p]);
}

template <class Slot, class K, class M>
template <class Store>
int OpenAddressing<Slot, K, M>::InsertWith(K const& key, Store const& store) {
    Slot& slot = slots[FindPos(key)];
    if (slot.state == SlotActive) {
        store(slot, false);
        return 0;
    }
    store(slot, true);
    // Counted and marked only now, so that an exception out of `store` leaves the table as it was.
    bool const wasEmpty = slot.state == SlotEmpty;
    usedSlots += wasEmpty;
    ++activeCount;
    slot.state = SlotActive;
    if (usedSlots > tableSize / 2) {
        try {
            ReHash(false);
        } catch (...) {
            // A table that fills up because it cannot grow would one day have no empty slot to end a probe.
            usedSlots -= wasEmpty;
            --activeCount;
            slot.state = wasEmpty ? SlotEmpty : SlotDeleted;
            throw;
        }
    }
    return 1;
}

template <class Slot, class K, class M>
int OpenAddressing<Slot, K, M>::RemoveKey(K const& key, bool shrink) {
    Slot* const slot = Locate(key);
    if (!slot)
        return 0;
    slot->state = SlotDeleted;
    --activeCount;
    constexpr unsigned int worthShrinking = 24;
    if (shrink && activeCount >= worthShrinking)
        ReHash(false);
    return 1;
}

template <class Slot, class K, class M>
void OpenAddressing<Slot, K, M>::InitHashTable(unsigned int expectedCount) {
    unsigned int const size = TableSizeFor(std::uint64_t{expectedCount} * 2 + 2);
    if (size == initialSize)
        return;
    AllocateArray(size);
    initialSize = size;
}

template <class Slot, class K, class M>
void OpenAddressing<Slot, K, M>::Clear() {
    for (unsigned int p = 0; p < tableSize; ++p) {
        if constexpr (!PlainSlots)
            if (slots[p].state != SlotEmpty)
                slots[p].ResetElement();
        slots[p].state = SlotEmpty;
    }
    usedSlots = activeCount = 0;
}

template <class Slot, class K, class M>
void OpenAddressing<Slot, K, M>::Free() {
    AllocateArray(DefaultTableSize);
    initialSize = DefaultTableSize;
}

template <class Slot, class K, class M>
void OpenAddressing<Slot, K, M>::AllocateArray(unsigned int size) {
    Slot* const fresh = NewElements<Slot>(size); // a new slot is empty
    DeleteElements(slots, tableSize);
    slots = fresh;
    tableSize = size;
    reciprocal = ~std::uint64_t{0} / size + 1;
    usedSlots = activeCount = 0;
}

template <class Slot, class K, class M>
bool OpenAddressing<Slot, K, M>::ReHash(bool minimize) {
    std::uint64_t wanted;
    if (minimize) {
        wanted = std::max<std::uint64_t>(std::uint64_t{activeCount} * 2 + 2, SmallestTableSize) | 1;
    } else {
        if (usedSlots < tableSize / 2)
            return false;
        // Either the slots are full of deleted elements, and one sweeps, or of active ones, and one grows: fast
        // while the table is small.
        constexpr double worthSweeping = 0.65;
        float const ratio = static_cast<float>(activeCount) / static_cast<float>(usedSlots);
        if (ratio <= static_cast<float>(worthSweeping))
            wanted = std::max(std::uint64_t{DefaultTableSize},
                              static_cast<std::uint64_t>((2.0 * activeCount + 2.0) / worthSweeping));
        else
            wanted = std::uint64_t{tableSize} * (tableSize < 251 ? 4 : 2);
    }
    unsigned int const size = TableSizeFor(wanted);
    if (minimize && size == tableSize)
        return false;

    Slot* const fresh = NewElements<Slot>(size);
    Slot* const oldSlots = std::exchange(slots, fresh);
    unsigned int const oldSize = std::exchange(tableSize, size);
    unsigned int const oldUsed = std::exchange(usedSlots, 0);
    std::uint64_t const oldReciprocal = std::exchange(reciprocal, ~std::uint64_t{0} / size + 1);
    try {
        MoveInto(oldSlots, oldSize);
    } catch (...) {
        DeleteElements(std::exchange(slots, oldSlots), std::exchange(tableSize, oldSize));
        usedSlots = oldUsed;
        reciprocal = oldReciprocal;
        throw;
    }
    usedSlots = activeCount;
    DeleteElements(oldSlots, oldSize);
    return true;
}

/// Enters the active elements of an old array, in its order, into the present one, which is empty.
template <class Slot, class K, class M>
void OpenAddressing<Slot, K, M>::MoveInto(Slot* oldSlots, unsigned int oldSize) {
    // Each element goes to a place all of its own, and in a large table each is a miss. So the places of a batch are
    // asked for together and filled when they have come.
    constexpr unsigned int batch = 32;
    struct {
        Slot* from;
        unsigned int start;
    } waiting[batch];
    unsigned int count = 0;
    auto const settle = [&] {
        for (unsigned int i = 0; i < count; ++i) {
            // All keys differ, so the first free slot of the probe is the right one and nothing need be compared.
            unsigned int p = waiting[i].start;
            if (ThreeFollow(p) && States(slots + p) == SlotEmpty) [[likely]]
                p += FirstEmpty(slots + p);
            else
                p = Probe(
                    p, [](Slot const&) { return false; }, [](unsigned int) {});
            slots[p].MoveElement(*waiting[i].from);
            slots[p].state = SlotActive;
        }
        count = 0;
    };
    for (unsigned int p = 0; p < oldSize; ++p) {
        if (oldSlots[p].state != SlotActive)
            continue;
        unsigned int const start = StartSlot(oldSlots[p].key);
        __builtin_prefetch(slots + start, 1);
        waiting[count++] = {oldSlots + p, start};
        if (count == batch)
            settle();
    }
    settle();
}

template <class Slot, class K, class M>
auto OpenAddressing<Slot, K, M>::operator=(OpenAddressing const& other) -> OpenAddressing& {
    if (this == &other)
        return *this;
    if (tableSize != other.tableSize)
        AllocateArray(other.tableSize);
    else
        Clear();
    CopySlots(other);
    return *this;
}

/// Copies the states and the active elements, slot by slot, into an empty array of the same size.
template <class Slot, class K, class M>
void OpenAddressing<Slot, K, M>::CopySlots(OpenAddressing const& other) {
    try {
        for (unsigned int p = 0; p < tableSize; ++p) {
            if (other.slots[p].state == SlotActive)
                slots[p].CopyElement(other.slots[p]);
            slots[p].state = other.slots[p].state;
        }
    } catch (...) {
        Clear(); // half of the probes would be cut off
        throw;
    }
    initialSize = other.initialSize;
    usedSlots = other.usedSlots;
    activeCount = other.activeCount;
}

} // namespace detail
