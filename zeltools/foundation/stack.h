// SPDX-License-Identifier: MIT
// A stack of values, behind an interface that says nothing of where they lie.
//
//     CStack<int> depths;
//     depths.Push(3);
//     int depth = 0;
//     depths.Pop(depth);     // depth is 3, and the stack is empty
//
// Popping an empty stack is a fault of the caller: it stops a debug build, and does nothing in a release build.

#pragma once

#include "zeltools/foundation/block_movable.h"
#include "zeltools/foundation/block_storage.h"
#include "zeltools/foundation/invalid_arg.h"

#include <cassert>
#include <memory>
#include <utility>

/// What a stack of T can do.
template <class T>
class AbsStack {
public:
    virtual ~AbsStack() = default;

    /// Puts a copy on top. `item` may be an element of the stack itself.
    virtual void Push(T const& item) = 0;

    /// Copies the top element out and takes it off. On an empty stack `item` is untouched.
    virtual void Pop(T& item) = 0;

    /// Takes the top element off. On an empty stack nothing happens.
    virtual void Drop() = 0;

    /// The top element, valid until the next push; null on an empty stack.
    virtual T* Top() = 0;

    /// Whether there is no element.
    virtual bool IsEmpty() const = 0;

    /// Whether no further element can be pushed.
    virtual bool IsFull() const = 0;

    /// Takes all elements off.
    virtual void Clear() = 0;
};

/// The stack in one growing array. Its elements live from the allocation to the end: what is taken off keeps what it
/// owns until a push overwrites it. T needs a default constructor and assignment.
///
/// Threads: one at a time.
/// Errors:  CXMemoryException, and CXInvalidArgException past 2^30 elements; the stack is then unchanged.
template <class T>
class CStack : public AbsStack<T> {
public:
    CStack() : capacity(5), items(detail::NewElements<T>(5)) {}
    CStack(CStack const& other);
    CStack(CStack&& other) noexcept { Swap(other); }
    CStack& operator=(CStack other) noexcept {
        Swap(other);
        return *this;
    }
    ~CStack() override { detail::DeleteElements(items, static_cast<std::size_t>(capacity)); }

    void Push(T const& item) override;
    void Pop(T& item) override;
    void Drop() override;
    T* Top() override;
    bool IsEmpty() const override { return top == -1; }
    /// Always false: it grows.
    bool IsFull() const override { return false; }
    void Clear() override { top = -1; }

protected:
    int capacity = 0;   ///< elements allocated
    int top = -1;       ///< index of the top element, -1 when empty
    T* items = nullptr; ///< null only in a stack that was moved from, which has a capacity of 0

private:
    void Swap(CStack& other) noexcept {
        std::swap(capacity, other.capacity);
        std::swap(top, other.top);
        std::swap(items, other.items);
    }
    void Grow();
};

// ---------------------------------------------------------------------------------------------------------------
// Bodies

template <class T>
CStack<T>::CStack(CStack const& other)
    : capacity(other.capacity), items(detail::NewElements<T>(static_cast<std::size_t>(other.capacity))) {
    try {
        for (; top < other.top; ++top)
            items[top + 1] = other.items[top + 1];
    } catch (...) {
        detail::DeleteElements(items, static_cast<std::size_t>(capacity));
        throw;
    }
}

template <class T>
void CStack<T>::Push(T const& item) {
    if (top + 1 == capacity) {
        T copy = item; // it may lie in the block that goes away
        Grow();
        detail::MoveValue(items[top + 1], copy);
    } else {
        items[top + 1] = item;
    }
    ++top;
}

template <class T>
void CStack<T>::Grow() {
    if (capacity > 0x7FFFFFFF / 2)
        detail::ThrowInvalidArg();
    int const newCapacity = capacity > 0 ? capacity * 2 : 5;
    T* const newItems = detail::NewElements<T>(static_cast<std::size_t>(newCapacity));
    try {
        for (int i = 0; i <= top; ++i)
            detail::MoveValue(newItems[i], items[i]);
    } catch (...) {
        detail::DeleteElements(newItems, static_cast<std::size_t>(newCapacity));
        throw;
    }
    detail::DeleteElements(std::exchange(items, newItems), static_cast<std::size_t>(capacity));
    capacity = newCapacity;
}

template <class T>
void CStack<T>::Pop(T& item) {
    assert(top >= 0 && "Pop of an empty stack");
    if (top >= 0)
        item = items[top--];
}

template <class T>
void CStack<T>::Drop() {
    assert(top >= 0 && "Drop of an empty stack");
    if (top >= 0)
        --top;
}

template <class T>
T* CStack<T>::Top() {
    assert(top >= 0 && "Top of an empty stack");
    return top >= 0 ? items + top : nullptr;
}
