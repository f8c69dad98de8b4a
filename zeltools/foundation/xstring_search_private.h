// SPDX-License-Identifier: MIT
// The members of CXTString that search and cut; xstring.cpp instantiates them.

#pragma once

#include "zeltools/foundation/character_set_private.h"
#include "zeltools/foundation/text_search_private.h"
#include "zeltools/foundation/xstring.h"

#include <algorithm>
#include <climits>

namespace detail {

/// A position as the members tell it; one that an int cannot hold counts as not found.
inline int Position(std::size_t found) {
    return found > INT_MAX ? -1 : static_cast<int>(found);
}

/// A count or a position where a negative number stands for none.
inline std::size_t Count(int number) {
    return number < 0 ? 0 : static_cast<std::size_t>(number);
}

} // namespace detail

// ---- Searching ----

template <class T>
int CXTString<T>::Find(T character, int start) const {
    if (!IsInside(start))
        return -1;
    T const* const found = xMemChr(buffer + start, character, length - static_cast<std::size_t>(start));
    return found ? detail::Position(static_cast<std::size_t>(found - buffer)) : -1;
}

template <class T>
int CXTString<T>::FindNoCase(T character, int start) const {
    T const wanted[] = {character, T()};
    if (!IsInside(start))
        return -1;
    return detail::Position(detail::FindText(buffer, length, wanted, 1, static_cast<std::size_t>(start), true));
}

template <class T>
int CXTString<T>::Find(T const* text, int start, bool noCase) const {
    std::size_t const partLength = Measure(text);
    if (partLength == 0 || !IsInside(start))
        return -1;
    return detail::Position(
        detail::FindText(buffer, length, text, partLength, static_cast<std::size_t>(start), noCase));
}

template <class T>
int CXTString<T>::FindEndPos(T const* text, int start, bool noCase) const {
    int const found = Find(text, start, noCase);
    return found < 0 ? -1 : detail::Position(static_cast<std::size_t>(found) + Measure(text));
}

template <class T>
int CXTString<T>::FindOneOf(T const* set) const {
    for (; set && *set; ++set) {
        if (int const found = Find(*set); found >= 0)
            return found;
    }
    return -1;
}

template <class T>
int CXTString<T>::ReverseFind(T character, int start) const {
    std::size_t const end = IsInside(start) ? static_cast<std::size_t>(start) + 1 : length;
    return detail::Position(detail::ScanBackFor(buffer, end, character));
}

template <class T>
int CXTString<T>::ReverseFind(T const* text, int start) const {
    std::size_t const partLength = Measure(text);
    if (partLength == 0)
        return -1;
    std::size_t const end = IsInside(start) ? static_cast<std::size_t>(start) + 1 : length;
    return detail::Position(detail::FindTextBackward(buffer, end, text, partLength));
}

// ---- Cutting ----

// Everything is reckoned in the stored length: the one that GetLength tells wraps around beyond 2^31 characters.

template <class T>
CXTString<T> CXTString<T>::Left(int count) const {
    return Join(buffer, std::min(length, detail::Count(count)), nullptr, 0);
}

template <class T>
CXTString<T> CXTString<T>::Right(int count) const {
    std::size_t const kept = std::min(length, detail::Count(count));
    return Join(buffer + (length - kept), kept, nullptr, 0);
}

template <class T>
CXTString<T> CXTString<T>::Mid(int first, int count) const {
    std::size_t const place = std::min(length, detail::Count(first));
    std::size_t const rest = length - place;
    return Join(buffer + place, count == -1 ? rest : std::min(rest, detail::Count(count)), nullptr, 0);
}

namespace detail {

/// The characters of `text` for which the set's answer is `isWanted`.
template <class T>
CXTString<T> Filtered(T const* text, std::size_t length, T const* set, bool isWanted) {
    CXTString<T> kept;
    if (!set || length == 0)
        return kept;
    CharacterSet<T> const members(set);
    kept.SetLength(length);
    T* const target = kept.GetText();
    std::size_t count = 0;
    for (std::size_t i = 0; i < length; ++i) {
        target[count] = text[i];
        count += members.Contains(text[i]) == isWanted;
    }
    kept.SetLength(count);
    return kept;
}

} // namespace detail

template <class T>
CXTString<T> CXTString<T>::SpanIncluding(T const* set) const {
    return detail::Filtered(buffer, length, set, true);
}

template <class T>
CXTString<T> CXTString<T>::SpanExcluding(T const* set) const {
    return detail::Filtered(buffer, length, set, false);
}

template <class T>
CXTString<T> CXTString<T>::Tokenize(T const* delimiters, int& position) const {
    int const start = position;
    position = -1;
    if (!IsInside(start) || !delimiters || !*delimiters)
        return CXTString();
    detail::CharacterSet<T> const set(delimiters);
    std::size_t first = static_cast<std::size_t>(start);
    while (first < length && set.Contains(buffer[first]))
        ++first;
    std::size_t last = first;
    while (last < length && !set.Contains(buffer[last]))
        ++last;
    if (last < length)
        position = detail::Position(last + 1);
    return Join(buffer + first, last - first, nullptr, 0);
}
