// SPDX-License-Identifier: MIT
// How an array's elements lie in an archive. Not for hosts, which call CXArray::Serialize; it is installed because the
// array's template needs it, and stands apart so that the array does not know the archive.

#pragma once

#include "zeltools/foundation/api.h"

#include <cstddef>
#include <type_traits>

class CXArchive;
class CExLCString;
template <class T>
class CXTString;

namespace detail {

/// @name One element that is not just its bytes, in the direction of the archive
/// @{
ZEL_API void SerializeElement(CXArchive& archive, bool& element);
ZEL_API void SerializeElement(CXArchive& archive, CXTString<char>& element);
ZEL_API void SerializeElement(CXArchive& archive, CXTString<char16_t>& element);
ZEL_API void SerializeElement(CXArchive& archive, CExLCString& element);

template <class T>
auto SerializeElement(CXArchive& archive, T& element) -> decltype(element.Serialize(archive)) {
    return element.Serialize(archive);
}
/// @}

/// What SerializeArray has to know of an array.
struct ArrayAccess {
    void* array;
    void* data;              ///< the elements
    int size;                ///< their number
    std::size_t elementSize; ///< bytes

    /// Sets the number of elements and gives the first of them.
    void* (*setSize)(void* array, int newSize);

    /// Stores or loads one element; null for elements that are their bytes.
    void (*serializeElement)(CXArchive& archive, void* element);
};

/// Stores count and elements, or replaces the elements by those that a loading archive has.
ZEL_API void SerializeArray(CXArchive& archive, ArrayAccess const& access);

template <class T>
concept SerializableElement = requires(CXArchive& archive, T& element) {
    SerializeElement(archive, element);
};

/// Elements whose bytes say all, on any machine and in any process: a pointer's do not.
template <class T>
concept PlainElement = std::is_trivially_copyable_v<T> && !std::is_pointer_v<T> && !std::is_member_pointer_v<T>;

} // namespace detail
