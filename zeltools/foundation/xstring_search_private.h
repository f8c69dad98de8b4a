// SPDX-License-Identifier: MIT
// The members of CXTString that search and cut; xstring.cpp instantiates them.

#pragma once

#include "zeltools/foundation/character_set_private.h"
#include "zeltools/foundation/text_search_private.h"
#include "zeltools/foundation/xstring.h"

#include <algorithm>

namespace detail {

inline int Position(std::size_t found) {
    return found == NotFound ? -1 : static_cast<int>(found);
}

} // namespace detail

// ---- Searching ----

template <class T>
int CXTString<T>::Find(T character, int start) const {
    if (!IsInside(start))
        return -1;
    T const* const found = xMemChr(buffer + start, character, length - static_cast<std::size_t>(start));
    return found ? static_cast<int>(found - buffer) : -1;
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
    return found < 0 ? -1 : found + static_cast<int>(Measure(text));
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

template <class T>
CXTString<T> CXTString<T>::Left(int count) const {
    return CXTString(buffer, std::clamp(count, 0, Base::GetLength()));
}

template <class T>
CXTString<T> CXTString<T>::Right(int count) const {
    int const kept = std::clamp(count, 0, Base::GetLength());
    return CXTString(buffer + (length - static_cast<std::size_t>(kept)), kept);
}

template <class T>
CXTString<T> CXTString<T>::Mid(int first, int count) const {
    first = std::clamp(first, 0, Base::GetLength());
    int const rest = Base::GetLength() - first;
    return CXTString(buffer + first, count == -1 ? rest : std::clamp(count, 0, rest));
}

namespace detail {

/// The characters of `text` for which the set's answer is `isWanted`.
template <class T>
CXTString<T> Filtered(CXTString<T> const& text, T const* set, bool isWanted) {
    CXTString<T> kept;
    if (!set || text.IsEmpty())
        return kept;
    CharacterSet<T> const members(set);
    T* const target = kept.GetBufferSetLength(text.GetLength());
    T const* const source = text;
    int count = 0;
    for (int i = 0; i < text.GetLength(); ++i) {
        target[count] = source[i];
        count += members.Contains(source[i]) == isWanted;
    }
    kept.ReleaseBuffer(count);
    return kept;
}

} // namespace detail

template <class T>
CXTString<T> CXTString<T>::SpanIncluding(T const* set) const {
    return detail::Filtered(*this, set, true);
}

template <class T>
CXTString<T> CXTString<T>::SpanExcluding(T const* set) const {
    return detail::Filtered(*this, set, false);
}

template <class T>
CXTString<T> CXTString<T>::Tokenize(T const* delimiters, int& position) const {
    int const end = Base::GetLength();
    int first = position;
    position = -1;
    if (!IsInside(first) || !delimiters || !*delimiters)
        return CXTString();
    detail::CharacterSet<T> const set(delimiters);
    while (first < end && set.Contains(buffer[first]))
        ++first;
    int last = first;
    while (last < end && !set.Contains(buffer[last]))
        ++last;
    if (last < end)
        position = last + 1;
    return CXTString(buffer + first, last - first);
}
