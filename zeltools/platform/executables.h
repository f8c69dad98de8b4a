// SPDX-License-Identifier: MIT
// Tells by its content whether a file is a program.
//
// Threads: any.

#pragma once

namespace platform {

enum ExecutableType : unsigned int {
    ExecutableNone = 0,
    ExecutableScript = 0x2123, ///< `#!`, and somebody may execute it.
    ExecutablePE = 0x4550,     ///< A program for the original system (a library is none).
    ExecutableMZ = 0x5A4D,     ///< A program for that system's ancestor.
    ExecutableElf = 0x457F,    ///< A program for this system that somebody may execute (a library is none).
};

/// Answers SHGetFileInfoW's question for the type of a program. Reads at most some kilobytes, and only from a regular
/// file; ExecutableNone when it cannot be read, and the last error says why.
ExecutableType SHGetExecutableType(char16_t const* path);

} // namespace platform
