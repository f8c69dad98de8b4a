// SPDX-License-Identifier: MIT
// A text that is read from left to right and changed at the place of reading.
//
//     | done ...          |      gap      | rest ...              |
//      what was read       grows as needed  what is still to read
//
// Each change stands at the end of `done` or at the front of `rest`, so it costs no more than the characters that it
// adds; in one array without a gap each tag of a template would move everything that follows.

#pragma once

#include "zeltools/foundation/block_storage.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace detail {

/// One text in two parts. The rest's characters keep their distance to the end of the text, whatever is done in front
/// of them. A short text needs no memory beyond the object.
/// Threads: one at a time.
class TagTextBuffer {
public:
    /// Begins with everything still to read.
    TagTextBuffer(char16_t const* text, std::size_t length) {
        if (length > capacity)
            Allocate(length);
        restLength = length;
        std::copy_n(text, length, buffer + capacity - length);
    }
    ~TagTextBuffer() {
        if (buffer != inside)
            FreeBlock(buffer);
    }
    TagTextBuffer(TagTextBuffer const&) = delete;
    TagTextBuffer& operator=(TagTextBuffer const&) = delete;

    char16_t const* Rest() const { return buffer + capacity - restLength; }
    std::size_t RestLength() const { return restLength; }
    std::size_t DoneLength() const { return doneLength; }
    std::size_t Length() const { return doneLength + restLength; }

    /// The last character that was read; there must be one.
    char16_t LastDone() const { return buffer[doneLength - 1]; }

    /// Reads `count` characters.
    void Advance(std::size_t count) {
        Move(buffer + doneLength, Rest(), count);
        doneLength += count;
        restLength -= count;
    }

    /// Goes back to where only `length` characters were read.
    void Rewind(std::size_t length) {
        std::size_t const count = doneLength - length;
        doneLength = length;
        restLength += count;
        Move(buffer + capacity - restLength, buffer + length, count);
    }

    /// Takes out what was read last, down to `length` characters.
    void CutDone(std::size_t length) { doneLength = length; }

    /// Takes out the next `count` characters.
    void CutRest(std::size_t count) { restLength -= count; }

    /// Puts characters in front of the rest.
    /// Errors: CXMemoryException; the text is unchanged.
    void Insert(char16_t const* text, std::size_t count) {
        if (count > capacity - Length())
            Grow(count);
        restLength += count;
        Move(buffer + capacity - restLength, text, count);
    }

    /// Puts characters behind what was read.
    /// Errors: CXMemoryException; the text is unchanged.
    void AppendDone(char16_t const* text, std::size_t count) {
        if (count > capacity - Length())
            Grow(count);
        Move(buffer + doneLength, text, count);
        doneLength += count;
    }

    /// Brings the parts together and gives the whole text.
    char16_t const* Join() {
        Advance(restLength);
        return buffer;
    }

private:
    static void Move(char16_t* to, char16_t const* from, std::size_t count) {
        std::memmove(to, from, count * sizeof(char16_t));
    }

    void Allocate(std::size_t count) {
        buffer = static_cast<char16_t*>(AllocateBlock(count, sizeof(char16_t), alignof(char16_t)));
        capacity = count;
    }

    void Grow(std::size_t count) {
        char16_t* const old = buffer;
        char16_t const* const oldRest = Rest();
        Allocate(std::max(capacity * 2, Length() + count));
        Move(buffer, old, doneLength);
        Move(buffer + capacity - restLength, oldRest, restLength);
        if (old != inside)
            FreeBlock(old);
    }

    char16_t inside[500]; ///< most templates and what becomes of them
    char16_t* buffer = inside;
    std::size_t capacity = sizeof inside / sizeof *inside;
    std::size_t doneLength = 0;
    std::size_t restLength = 0;
};

} // namespace detail
