// SPDX-License-Identifier: MIT
// The members of CXTString that change the text in place; xstring.cpp instantiates them.

#pragma once

#include "zeltools/foundation/character_set_private.h"
#include "zeltools/foundation/copy_safe_private.h"
#include "zeltools/foundation/text_search_private.h"
#include "zeltools/foundation/xstring.h"

#include <algorithm>
#include <utility>

namespace detail {

/// A count or an end where -1, and any other negative number, stands for no limit.
inline std::size_t Limit(int number) {
    return number < 0 ? NotFound : static_cast<std::size_t>(number);
}

} // namespace detail

// ---- Insertion and deletion ----

// `text` does not lie in this string.
template <class T>
int CXTString<T>::InsertAt(int position, T const* text, std::size_t count) {
    std::size_t const place = static_cast<std::size_t>(position);
    if (position < 0 || place > length || count == 0)
        return Base::GetLength();
    std::size_t const tail = length - place;
    Base::SetLength(length + count);
    detail::CopySafe(buffer + place + count, capacity - place - count, buffer + place, tail);
    detail::CopySafe(buffer + place, capacity - place, text, count);
    return Base::GetLength();
}

template <class T>
int CXTString<T>::Insert(int position, T character) {
    return InsertAt(position, &character, 1);
}

template <class T>
int CXTString<T>::Insert(int position, CXTString const& text) {
    if (&text == this)
        return Insert(position, CXTString(text));
    return InsertAt(position, text.buffer, Measure(text.buffer));
}

template <class T>
int CXTString<T>::Delete(int position, int count) {
    if (!IsInside(position) || count < 1)
        return Base::GetLength();
    std::size_t const place = static_cast<std::size_t>(position);
    std::size_t const removed = std::min(static_cast<std::size_t>(count), length - place);
    std::size_t const tail = length - place - removed;
    detail::CopySafe(buffer + place, capacity - place, buffer + place + removed, tail);
    Base::SetLength(place + tail);
    return Base::GetLength();
}

template <class T>
int CXTString<T>::Remove(T character, int maxCount) {
    std::size_t const limit = detail::Limit(maxCount);
    std::size_t kept = 0;
    std::size_t removed = 0;
    for (std::size_t i = 0; i < length; ++i) {
        if (buffer[i] == character && removed < limit)
            ++removed;
        else if (removed != 0)
            buffer[kept++] = buffer[i];
        else
            ++kept;
    }
    if (removed != 0)
        Base::SetLength(kept);
    return static_cast<int>(removed);
}

template <class T>
int CXTString<T>::Remove(T const* text, bool noCase, int maxCount) {
    std::size_t const partLength = Measure(text);
    if (partLength == 0)
        return 0;
    if (detail::PointsInto(text, buffer, length))
        return Remove(static_cast<T const*>(CXTString(text)), noCase, maxCount);
    std::size_t const limit = detail::Limit(maxCount);
    std::size_t kept = 0; // where the next stretch that stays goes
    std::size_t from = 0; // where it begins now
    int removed = 0;
    while (static_cast<std::size_t>(removed) < limit) {
        std::size_t const found = detail::FindText(buffer, length, text, partLength, from, noCase);
        if (found == detail::NotFound)
            break;
        detail::CopySafe(buffer + kept, capacity - kept, buffer + from, found - from);
        kept += found - from;
        from = found + partLength;
        ++removed;
    }
    if (removed != 0) {
        detail::CopySafe(buffer + kept, capacity - kept, buffer + from, length - from);
        Base::SetLength(kept + (length - from));
    }
    return removed;
}

// ---- Replacement ----

template <class T>
int CXTString<T>::Replace(T from, T to, int maxCount, int endPosition, int startPosition) {
    assert(startPosition >= 0);
    std::size_t const limit = detail::Limit(maxCount);
    std::size_t const start = static_cast<std::size_t>(std::max(startPosition, 0));
    std::size_t const end = std::min(length, detail::Limit(endPosition));
    std::size_t replaced = 0;
    for (std::size_t counter = start; counter < end && replaced < limit; ++counter) {
        if (buffer[counter - start] == from) {
            buffer[counter - start] = to;
            ++replaced;
        }
    }
    return static_cast<int>(replaced);
}

template <class T>
int CXTString<T>::Replace(T const* from, T const* to, int maxCount, int endPosition, int startPosition) {
    std::size_t const fromLength = Measure(from);
    if (fromLength == 0 || !to || maxCount == 0 || endPosition == 0 || !IsInside(startPosition))
        return 0;
    if (detail::PointsInto(from, buffer, length) || detail::PointsInto(to, buffer, length)) {
        CXTString const ownFrom(from);
        CXTString const ownTo(to);
        return Replace(ownFrom.buffer, ownTo.buffer, maxCount, endPosition, startPosition);
    }
    std::size_t const toLength = Measure(to);
    std::size_t const limit = detail::Limit(maxCount);
    std::size_t const end = detail::Limit(endPosition);

    // One pass over the old text. A text that does not grow is written over itself, another into a new string.
    CXTString grown;
    bool const inPlace = toLength <= fromLength;
    T* target = buffer;
    std::size_t written = 0;                                      // characters of the new text so far
    std::size_t taken = 0;                                        // characters of the old text they stand for
    std::size_t search = static_cast<std::size_t>(startPosition); // where the search goes on in the old text
    int replaced = 0;
    auto const reserve = [&](std::size_t needed) {
        if (!inPlace) {
            grown.SetLength(needed);
            target = grown.buffer;
        }
    };
    while (static_cast<std::size_t>(replaced) < limit) {
        std::size_t const found = detail::FindText(buffer, length, from, fromLength, search, false);
        if (found == detail::NotFound)
            break;
        std::size_t const gap = found - taken;
        if (written + gap >= end)
            break;
        reserve(written + gap + toLength + (length - found));
        detail::CopySafe(target + written, gap, buffer + taken, gap);
        detail::CopySafe(target + written + gap, toLength, to, toLength);
        written += gap + toLength;
        search = taken = found + fromLength;
        ++replaced;
    }
    if (replaced == 0)
        return 0;
    std::size_t const rest = length - taken;
    detail::CopySafe(target + written, rest, buffer + taken, rest);
    if (!inPlace) {
        std::swap(buffer, grown.buffer);
        std::swap(capacity, grown.capacity);
        std::swap(length, grown.length);
    }
    Base::SetLength(written + rest);
    return replaced;
}

// ---- Case and order ----

template <class T>
CXTString<T>& CXTString<T>::MakeLower(int count) {
    std::transform(buffer, buffer + std::min(length, detail::Limit(count)), buffer, [](T c) { return xToLower(c); });
    return *this;
}

template <class T>
CXTString<T>& CXTString<T>::MakeUpper(int count) {
    std::transform(buffer, buffer + std::min(length, detail::Limit(count)), buffer, [](T c) { return xToUpper(c); });
    return *this;
}

template <class T>
CXTString<T>& CXTString<T>::MakeReverse() {
    for (std::size_t low = 0, high = length; low < high; ++low, --high)
        std::swap(buffer[low], buffer[high]);
    return *this;
}

// ---- Trimming ----

template <class T>
template <class IsStripped>
CXTString<T>& CXTString<T>::Strip(IsStripped isStripped, bool left, bool right) {
    std::size_t first = 0;
    std::size_t end = length;
    while (left && first < end && isStripped(buffer[first]))
        ++first;
    while (right && end > first && isStripped(buffer[end - 1]))
        --end;
    if (end - first != length)
        Base::Assign(buffer + first, end - first);
    return *this;
}

template <class T>
CXTString<T>& CXTString<T>::Trim() {
    return Strip([](T c) { return xIsSpace(c); }, true, true);
}

template <class T>
CXTString<T>& CXTString<T>::Trim(T character) {
    return Strip([character](T c) { return c == character; }, true, true);
}

template <class T>
CXTString<T>& CXTString<T>::Trim(T const* set) {
    return Strip([members = detail::CharacterSet<T>(set)](T c) { return members.Contains(c); }, true, true);
}

template <class T>
CXTString<T>& CXTString<T>::TrimLeft() {
    return Strip([](T c) { return xIsSpace(c); }, true, false);
}

template <class T>
CXTString<T>& CXTString<T>::TrimLeft(T character) {
    return Strip([character](T c) { return c == character; }, true, false);
}

template <class T>
CXTString<T>& CXTString<T>::TrimLeft(T const* set) {
    return Strip([members = detail::CharacterSet<T>(set)](T c) { return members.Contains(c); }, true, false);
}

template <class T>
CXTString<T>& CXTString<T>::TrimRight() {
    return Strip([](T c) { return xIsSpace(c); }, false, true);
}

template <class T>
CXTString<T>& CXTString<T>::TrimRight(T character) {
    return Strip([character](T c) { return c == character; }, false, true);
}

template <class T>
CXTString<T>& CXTString<T>::TrimRight(T const* set) {
    return Strip([members = detail::CharacterSet<T>(set)](T c) { return members.Contains(c); }, false, true);
}
