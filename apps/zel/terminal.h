// SPDX-License-Identifier: MIT
// What the commands ask of the place they print to: whether it is a terminal, how wide a text is there, and how a
// name is shown so that it can do no harm.

#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace zel {

/// How a piece of text is coloured on a terminal.
enum class Colour {
    Plain,
    Dim,
    Bold,
    Blue,
    Cyan,
    Green,
    Magenta,
    Yellow,
    Red
};

/// What TakeCharacter gives for bytes that are not UTF-8.
constexpr char32_t NotUtf8 = 0xFFFFFFFF;

/// The character at the front of a text that is not empty, and its length in bytes. A maximal invalid part gives
/// NotUtf8 and its length.
char32_t TakeCharacter(std::string_view text, std::size_t& length);

/// Whether colours may be used on a stream: it is a terminal and NO_COLOR is unset or empty (https://no-color.org).
bool WantsColour(std::FILE* stream);

/// The text between the escape sequences of a colour, or the text alone when colours are off.
std::string Coloured(std::string_view text, Colour colour, bool enabled);

/// The columns that a UTF-8 text takes on a terminal. East Asian wide characters take two, combining ones none, and
/// a byte that is not UTF-8 one.
int DisplayWidth(std::string_view text);

/// The text filled up with blanks to a number of columns; a wider text stays as it is.
std::string PadRight(std::string_view text, int columns);

/// How a table tells an ability.
constexpr std::string_view YesOrDash(bool able) {
    return able ? "yes" : "-";
}

/// A name as it is shown to a person: control characters, which could command a terminal, come as `\xHH`. Bytes that
/// are not UTF-8 stay on a pipe, so that the name can be used again, and come as `\xHH` too on a terminal.
std::string ShownName(std::string_view nativeName, bool terminal);

/// A text that is UTF-8 for sure: each maximal invalid part becomes U+FFFD. `exact` tells whether nothing was changed.
std::string ValidUtf8(std::string_view text, bool& exact);

} // namespace zel
