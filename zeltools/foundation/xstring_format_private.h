// SPDX-License-Identifier: MIT
// The members of CXTString that format, scan and load; xstring.cpp instantiates them.

#pragma once

#include "zeltools/foundation/text_format.h"
#include "zeltools/foundation/text_scan.h"
#include "zeltools/foundation/xload_string.h"
#include "zeltools/foundation/xstring.h"

#include <utility>

// The result is written beside the string, since an argument may be the string's own buffer. Most texts fit the small
// room of the first pass, which then is the only one.
template <class T>
void CXTString<T>::FormatV(T const* format, std::va_list arguments) {
    if (!format)
        return;
    constexpr std::size_t Room = 256;
    T small[Room];
    std::va_list again;
    va_copy(again, arguments);
    int const count = xFormatV(small, Room, format, arguments);
    if (count < static_cast<int>(Room)) {
        Base::Assign(small, count < 0 ? 0 : static_cast<std::size_t>(count));
    } else {
        CXTString text;
        text.Allocate(static_cast<std::size_t>(count));
        xFormatV(text.buffer, text.capacity, format, again);
        std::swap(buffer, text.buffer);
        std::swap(length, text.length);
        std::swap(capacity, text.capacity);
    }
    va_end(again);
}

template <class T>
void CXTString<T>::Format(T const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    FormatV(format, arguments);
    va_end(arguments);
}

template <class T>
void CXTString<T>::Format(unsigned int id, ...) {
    CXTString format;
    if (!format.LoadStringW(id))
        return;
    std::va_list arguments;
    va_start(arguments, id);
    FormatV(format, arguments);
    va_end(arguments);
}

template <class T>
void CXTString<T>::AppendFormat(T const* format, ...) {
    CXTString text;
    std::va_list arguments;
    va_start(arguments, format);
    text.FormatV(format, arguments);
    va_end(arguments);
    *this += text;
}

template <class T>
void CXTString<T>::AppendFormat(unsigned int id, ...) {
    CXTString format;
    if (!format.LoadStringW(id))
        return;
    CXTString text;
    std::va_list arguments;
    va_start(arguments, id);
    text.FormatV(format, arguments);
    va_end(arguments);
    *this += text;
}

template <class T>
int CXTString<T>::ScanVS(T const* format, std::va_list arguments) const {
    return ScanVS(0, format, arguments);
}

template <class T>
int CXTString<T>::ScanVS(int start, T const* format, std::va_list arguments) const {
    if (!format || !IsInside(start))
        return 0;
    if (buffer[length] != T()) // after MakeReverse nothing ends the text; a copy does
        return CXTString(*this).ScanVS(start, format, arguments);
    return xScanV(buffer + start, format, arguments);
}

template <class T>
int CXTString<T>::ScanS(T const* format, ...) const {
    std::va_list arguments;
    va_start(arguments, format);
    int const count = ScanVS(format, arguments);
    va_end(arguments);
    return count;
}

template <class T>
int CXTString<T>::ScanS(int start, T const* format, ...) const {
    std::va_list arguments;
    va_start(arguments, format);
    int const count = ScanVS(start, format, arguments);
    va_end(arguments);
    return count;
}

template <class T>
bool CXTString<T>::LoadStringW(unsigned int id) {
    *this = static_cast<char16_t const*>(xLoadString(id));
    return !IsEmpty();
}
