// SPDX-License-Identifier: MIT
// The display options of operations' logs, as one word of the process that outlives it in the preferences.

#pragma once

namespace detail {

/// Reads the word from the preferences, the first time, and sees to it that it goes back there.
void ReadDisplayOptions();

/// The word; its low half is 0. Threads: any.
unsigned int GetDisplayOptions();
void SetDisplayOptions(unsigned int displayBits);

} // namespace detail
