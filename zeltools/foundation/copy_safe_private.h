// SPDX-License-Identifier: MIT
// Copying into a buffer: a copy that cannot run over its target, and the question whether two texts share theirs.

#pragma once

#include "zeltools/platform/invalid_parameter.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <functional>

namespace detail {

/// Copies `count` characters of `source`, which may overlap, into `target` with room for `room`; writes no terminator.
///
/// @return 0, or the number that errno is set to as well: EINVAL for a null pointer, ERANGE where they do not fit. The
///         target is zeroed then, so that no half-written text is taken for a whole one.
template <class T>
int CopySafe(T* target, std::size_t room, T const* source, std::size_t count) {
    if (count == 0)
        return 0;
    if (target && source && count <= room) [[likely]] {
        std::memmove(target, source, count * sizeof(T));
        return 0;
    }
    if (target)
        std::memset(target, 0, room * sizeof(T));
    errno = target && source ? ERANGE : EINVAL;
    platform::ReportInvalidParameter();
    return target && source ? ERANGE : EINVAL;
}

/// Whether `text` points into the `length` characters of a buffer or at their terminator.
template <class T>
bool PointsInto(T const* text, T const* buffer, std::size_t length) {
    std::less<T const*> const before;
    return !before(text, buffer) && !before(buffer + length, text);
}

} // namespace detail
