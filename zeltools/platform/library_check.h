// SPDX-License-Identifier: MIT
// What stands against loading a file as a library. Asked before the system's loader sees the file: the loader runs
// whatever it is given, and it trusts the numbers in a library's head, so that one that was cut short faults in it.
//
// Threads: any.

#pragma once

namespace platform {

enum class LibraryDefect {
    None,
    Missing,            ///< No such file, or a link to nowhere.
    Unreadable,         ///< This user may not read it.
    NotALibrary,        ///< A folder, a text, a program, a library for another machine.
    CutShort,           ///< A library whose parts reach behind the end of the file.
    WritableByOthers,   ///< Another user than this one and the administrator may change the file.
    InWritableDirectory ///< The same for the folder in which it stands; where both are so, this is told.
};

/// Looks at a library file, without loading anything, and at its folder; where the name is a link, at both folders.
/// @param path  The toolkit's form (native_path.h).
LibraryDefect CheckLibraryFile(char16_t const* path);

} // namespace platform
