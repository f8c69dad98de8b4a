// SPDX-License-Identifier: MIT
// From `errno` to the thread's last error, with what the path adds to it.

#pragma once

#include <string>

namespace platform {

/// Sets the last error from `errno`. Always false, so that a failing call can return it.
bool FailWithErrno();

/// The same for a call on a path: what is "not found" is ErrorPathNotFound when a folder on the way is missing.
bool FailWithErrno(std::string const& nativePath);

/// Sets the last error. Always false.
bool FailWith(unsigned int error);

} // namespace platform
