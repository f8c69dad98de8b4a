// SPDX-License-Identifier: MIT
// Programs and shared libraries of the running process.
//
// Threads: any.

#pragma once

#include <string>

namespace platform {

/// A loaded shared library. Null stands for the running program.
using HMODULE = void*;

/// Which files of a folder are shared libraries, by their name.
inline constexpr char16_t const* LibraryPattern = u"*.so";

/// Gives the path of the program (null) or of a loaded library. Empty with the last error when it cannot be found out.
std::u16string GetModuleFileNameW(HMODULE module);

/// Gives the path of the library that this toolkit is: of the program, where it is linked into one.
std::u16string GetOwnModuleFileNameW();

/// Gives the library that this toolkit is; null, the program, where it is linked into one. Not to be freed.
HMODULE GetOwnModule();

/// Loads a library by its path and resolves all of it at once; its symbols stay its own. Loading what is loaded already
/// gives the same module and counts one use more.
///
/// @return null with the last error: ErrorModuleNotFound when the file or a library that it needs is missing,
///         ErrorBadExeFormat when it is no library for this machine, ErrorAccessDenied when it cannot be read,
///         ErrorProcedureNotFound when a symbol is missing.
HMODULE LoadLibraryExW(char16_t const* path);

/// Gives the address of an exported symbol; null with ErrorProcedureNotFound.
void* GetProcAddress(HMODULE module, char const* name);

/// Gives up one use of a library; the last one unloads it.
bool FreeLibrary(HMODULE module);

/// Gives the loader's own words on this thread's last failure of LoadLibraryExW or GetProcAddress; empty for none.
std::string GetModuleErrorText();

} // namespace platform
