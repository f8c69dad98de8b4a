// SPDX-License-Identifier: MIT
// What a file handle is on this system: descriptor + 1, shifted over a few bits that say what it may do.

#pragma once

#include "zeltools/platform/files.h"

#include <cstdint>
#include <string>

namespace platform {

enum FileHandleBit : unsigned int {
    HandleReads = 1,
    HandleWrites = 2,
    HandleWritesAttributes = 4,
    HandleDeletesOnClose = 8,
    HandleIsRegular = 16, ///< Of a regular file, which reads in full and never breaks like a pipe.
};
inline constexpr int FileHandleShift = 5;

inline HANDLE MakeFileHandle(int descriptor, unsigned int bits) {
    auto const value = ((static_cast<std::uintptr_t>(descriptor) + 1) << FileHandleShift) | bits;
    return reinterpret_cast<HANDLE>(value);
}

inline unsigned int FileHandleBits(HANDLE file) {
    return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(file) & ((1U << FileHandleShift) - 1));
}

/// -1 for null and InvalidHandle.
inline int DescriptorOf(HANDLE file) {
    return file == InvalidHandle ? -1 : static_cast<int>(reinterpret_cast<std::uintptr_t>(file) >> FileHandleShift) - 1;
}

/// CreateFileW on a native path.
///
/// @param mayBlock  False opens a pipe or a device without waiting for its other end.
HANDLE OpenNativeFile(std::string const& native, unsigned int access, unsigned int share, unsigned int disposition,
                      unsigned int flags, bool mayBlock);

} // namespace platform
