// SPDX-License-Identifier: MIT
// The memory in which an IoFile keeps a whole file, with reading and writing that need no call for the few bytes that a
// parser takes at a time.

#pragma once

#include "zeltools/persistence/custom_mem_file.h"

#include <cstring>

namespace detail {

/// A memory file whose position may be moved by both its own operations and the ones here.
class IoMemoryFile final : public CCustomMemFile {
public:
    using CCustomMemFile::CCustomMemFile;

    /// Reads `count` bytes if all of them are there; otherwise nothing happens.
    bool TakeAll(void* data, unsigned int count) {
        // The position may lie behind the end.
        if (data == nullptr || position > length || count > length - position) [[unlikely]]
            return false;
        CopyBytes(data, buffer + position, count);
        position += count;
        return true;
    }

    /// Writes `count` bytes if the memory for them is there and they leave no gap; otherwise nothing happens.
    bool PutAll(void const* data, unsigned int count) {
        if (data == nullptr || position > length || count > capacity - position) [[unlikely]]
            return false;
        CopyBytes(buffer + position, data, count);
        position += count;
        length = position > length ? position : length;
        return true;
    }

private:
    /// The sizes of numbers are copied in place: a call of memcpy takes longer than they do.
    static void CopyBytes(void* target, void const* source, unsigned int count) {
        switch (count) {
        case 0: break; // an empty file has no buffer
        case 1: std::memcpy(target, source, 1); break;
        case 2: std::memcpy(target, source, 2); break;
        case 4: std::memcpy(target, source, 4); break;
        case 8: std::memcpy(target, source, 8); break;
        case 12: std::memcpy(target, source, 12); break;
        case 16: std::memcpy(target, source, 16); break;
        default: std::memcpy(target, source, count);
        }
    }
};

} // namespace detail
