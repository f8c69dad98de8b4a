// SPDX-License-Identifier: MIT
// How the file classes throw.

#pragma once

#include "zeltools/foundation/thread_exceptions.h"
#include "zeltools/foundation/xfile_exception.h"

#include <utility>

namespace detail {

/// Throws a new CXFileException, made of these arguments, after entering it in the calling thread's table.
template <class... Arguments>
[[noreturn]] void ThrowFile(Arguments&&... arguments) {
    auto* const exception = new CXFileException(std::forward<Arguments>(arguments)...);
    XSetThreadException(exception);
    throw exception;
}

} // namespace detail
