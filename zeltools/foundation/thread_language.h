// SPDX-License-Identifier: MIT
// The language in which the library's messages reach a thread.
//
//     SetThreadLanguage(1036);         // French, for the calling thread

#pragma once

#include "zeltools/foundation/api.h"

/// Sets the calling thread's language.
/// @param language  A 16-bit language id: 1036 and its like for French; any other gives English. 0 goes back to what
///                  the user's environment asks for.
/// Threads: any; changes the calling thread only.
ZEL_API void SetThreadLanguage(unsigned short language);

/// The calling thread's language: what was set, or else 1033 or 1036 as the user's environment asks.
/// Threads: any.
ZEL_API unsigned short GetThreadLanguage();
