// SPDX-License-Identifier: MIT
// What the commands print. A stream that takes no more, such as a full disk, stops nobody's work and is told at the
// end.
//
//     Print("{} renamed\n", count);
//     Print(stderr, "zel: {}\n", reason);
//     return EndOutput(ExitAllWell);

#pragma once

#include <cstdio>
#include <fmt/format.h>
#include <string>
#include <utility>

namespace zel {

template <class... Arguments>
void Print(std::FILE* stream, fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    std::string const text = fmt::format(format, std::forward<Arguments>(arguments)...);
    std::fwrite(text.data(), 1, text.size(), stream);
}

/// To standard output.
template <class... Arguments>
void Print(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    Print(stdout, format, std::forward<Arguments>(arguments)...);
}

/// Says on standard error that standard output did not take everything.
void TellOutputIsCut();

/// Brings standard output to its end, and tells where it did not take everything.
/// @return the status of the process: the given one, or at least ExitSomeFailed.
[[nodiscard]] int EndOutput(int status);

} // namespace zel
