// SPDX-License-Identifier: MIT
// The opaque handle of the platform seam. Each family that gives out handles says what closes them.

#pragma once

#include <cstdint>

namespace platform {

using HANDLE = void*;

/// What a file or search call answers when it could not open.
inline HANDLE const InvalidHandle = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1));

} // namespace platform
