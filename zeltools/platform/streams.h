// SPDX-License-Identifier: MIT
// The C library's streams over the toolkit's file handles.
//
//     FILE* stream = OpenStream(handle, "r", StreamLines::Narrow);
//     std::string_view const bytes = PeekStream(stream);     // what is buffered, "one\ntwo\n" of a file with CR LF
//     SkipStream(stream, 4);                                 // "two\n" is next
//     TellStream(stream);                                    // 5, the place in the file
//
// A stream that translates lines gives LF for each CR LF of the file and writes CR LF for each LF, for every call of
// the C library too; its positions are those of the file. The stream itself should be sought only by `rewind` and to
// its end: SeekStream goes anywhere.
//
// The calls below work on any stream, and set errno when they fail.
//
// Threads: one thread at a time for each stream.

#pragma once

#include "zeltools/platform/files.h"

#include <cstdio>
#include <string_view>

namespace platform {

enum class StreamLines {
    Binary, ///< Bytes as they are.
    Narrow, ///< CR LF in the file, LF in the stream, of one byte each.
    Wide    ///< The same in little-endian units of two bytes.
};

/// Makes a stream that owns the handle and closes it with itself. Its `fileno` is -1.
///
/// @param mode  As fopen takes it. `a` writes at the end, and starts there unless it also reads (`a+`). The handle
///              decides what works: reading beyond its access fails at the read.
/// @return null when memory is short; the handle is the caller's still.
FILE* OpenStream(HANDLE file, char const* mode, StreamLines lines);

/// The handle of a stream that has a descriptor, which goes on owning it; null for any other.
HANDLE HandleFromStream(FILE* stream);

/// The place in the file that is read or written next; -1 on failure.
long long TellStream(FILE* stream);

/// Goes to a place in the file; what was written goes to the file first.
bool SeekStream(FILE* stream, long long distance, SeekOrigin origin);

/// Gives what is buffered, reading more when that is nothing: empty at the end and on an error. Valid until the next
/// call that reads, writes or seeks.
std::string_view PeekStream(FILE* stream);

/// Takes the first bytes of what PeekStream gave.
void SkipStream(FILE* stream, std::size_t count);

/// Makes a stream that was read ready to be written at the same place. The C library asks for a seek there.
bool PrepareStreamWrite(FILE* stream);

} // namespace platform
