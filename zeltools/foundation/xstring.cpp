// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xstring.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/copy_safe_private.h"
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/foundation/xstring_change_private.h"
#include "zeltools/foundation/xstring_format_private.h"
#include "zeltools/foundation/xstring_search_private.h"

#include <algorithm>

static_assert(sizeof(CXTString<char>) == 3 * sizeof(void*) && sizeof(CXTString<char16_t>) == 3 * sizeof(void*),
              "a string is buffer, length and capacity, and nothing else");

// ---- Making and assigning ----

template <class T>
CXTString<T>::CXTString(T character, int count) {
    if (count < 1)
        return;
    Base::Allocate(static_cast<std::size_t>(count));
    std::fill_n(buffer, length, character);
}

template <class T>
CXTString<T>::CXTString(Other const* text) {
    AssignOther(text);
}

template <class T>
CXTString<T>& CXTString<T>::operator=(T const* text) {
    Base::Assign(text, Measure(text));
    return *this;
}

template <class T>
CXTString<T>& CXTString<T>::operator=(T character) {
    Base::Assign(&character, 1);
    return *this;
}

template <class T>
CXTString<T>& CXTString<T>::operator=(unsigned char const* text) {
    return *this = reinterpret_cast<char const*>(text);
}

template <class T>
CXTString<T>& CXTString<T>::operator=(Other const* text) {
    AssignOther(text);
    return *this;
}

template <class T>
CXTString<T>& CXTString<T>::operator=(std::nullptr_t) {
    Empty();
    return *this;
}

template <class T>
CXTString<T>& CXTString<T>::Copy(T const* text, int count) {
    Base::Assign(text, text && count > 0 ? static_cast<std::size_t>(count) : 0);
    return *this;
}

template <class T>
std::size_t CXTString<T>::Measure(T const* text) noexcept {
    return xStrLen(text);
}

template <class T>
void CXTString<T>::AssignOther(Other const* text) {
    if constexpr (sizeof(T) == 1)
        XFASTCW2A(*this, text);
    else
        XFASTCA2W(*this, text);
}

// ---- Access to the buffer ----

template <class T>
T* CXTString<T>::GetBuffer(int minimum) {
    Base::SetLength(std::max(length, static_cast<std::size_t>(std::max(minimum, 0))));
    return buffer;
}

template <class T>
T const* CXTString<T>::GetConstBuffer(int minimum) {
    return GetBuffer(minimum);
}

template <class T>
T* CXTString<T>::GetBufferSetLength(int newLength) {
    assert(newLength >= 0);
    Base::SetLength(static_cast<std::size_t>(std::max(newLength, 0)));
    return buffer;
}

template <class T>
void CXTString<T>::ReleaseBuffer(int newLength) {
    assert(newLength >= -1);
    std::size_t released = newLength < 0 ? xStrNLen(buffer, capacity) : static_cast<std::size_t>(newLength);
    if (released > length)
        released = length != 0 ? length - 1 : 0;
    if (capacity != 0)
        Base::SetLength(released);
}

template <class T>
T* CXTString<T>::DetachBuffer() noexcept {
    T* const detached = buffer;
    buffer = nullptr;
    return detached;
}

template <class T>
void CXTString<T>::Empty() {
    if (length != 0)
        Base::SetLength(0);
}

// ---- Appending ----

template <class T>
CXTString<T>& CXTString<T>::operator+=(T const* text) {
    Base::Append(text, Measure(text));
    return *this;
}

template <class T>
CXTString<T>& CXTString<T>::operator+=(Other const* text) {
    return *this += CXTString(text);
}

template <class T>
CXTString<T> CXTString<T>::Join(T const* left, std::size_t leftLength, T const* right, std::size_t rightLength) {
    CXTString joined;
    if (leftLength + rightLength == 0)
        return joined;
    joined.Allocate(leftLength + rightLength);
    detail::CopySafe(joined.buffer, joined.length, left, leftLength);
    detail::CopySafe(joined.buffer + leftLength, rightLength, right, rightLength);
    return joined;
}

// ---- Comparing ----

template <class T>
int CXTString<T>::Compare(T const* other) const {
    return other ? xStrCmp(buffer, other) : !IsEmpty();
}

template <class T>
int CXTString<T>::CompareNoCase(T const* other) const {
    return other ? xStrICmp(buffer, other) : !IsEmpty();
}

template <class T>
int CXTString<T>::Collate(T const* other) const {
    return other ? xStrColl(buffer, other) : !IsEmpty();
}

template <class T>
int CXTString<T>::CollateNoCase(T const* other) const {
    return other ? xStrIColl(buffer, other) : !IsEmpty();
}

template class CXTString<char>;
template class CXTString<char16_t>;
