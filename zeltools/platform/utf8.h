// SPDX-License-Identifier: MIT
// UTF-8 to UTF-16 and back, fast where text is mostly ASCII. Any thread may call any of it.
//
//     std::u16string text(Utf16Room(length), u'\0');
//     text.resize(Utf8ToUtf16(bytes, length, text.data()));
//
// Invalid bytes become U+FFFD, one for each maximal part that could have begun a character (Unicode, chapter 3.9);
// a lone surrogate becomes the three bytes of U+FFFD.

#pragma once

#include <cstddef>

namespace platform {

/// Units that UTF-8 of a length can take at most.
[[nodiscard]] constexpr std::size_t Utf16Room(std::size_t bytes) {
    return bytes;
}

/// Bytes that UTF-16 of a length can take at most in UTF-8.
[[nodiscard]] constexpr std::size_t Utf8Room(std::size_t units) {
    return units * 3;
}

/// Converts in one pass; the target has room for Utf16Room(length) units. Returns the units written; adds no
/// terminator. What lies behind them, within the room, may have been written over.
std::size_t Utf8ToUtf16(char const* source, std::size_t length, char16_t* target);

/// Converts in one pass; the target has room for Utf8Room(length) bytes. Otherwise as Utf8ToUtf16.
std::size_t Utf16ToUtf8(char16_t const* source, std::size_t length, char* target);

/// The exact count of bytes that Utf16ToUtf8 writes; several times faster than writing them.
[[nodiscard]] std::size_t Utf8Length(char16_t const* source, std::size_t length);

/// What a conversion into a bounded target came to.
struct TextConversion {
    std::size_t length = 0; ///< Units or bytes written, or needed when there was no target.
    bool fitted = true;     ///< False: the target is full before the source's end.
    bool invalid = false;   ///< Something had to be replaced.
};

/// Converts into a target of `room` units, which a null target measures without limit.
TextConversion DecodeUtf8(char const* source, std::size_t length, char16_t* target, std::size_t room);

/// Converts into a target of `room` bytes, which a null target measures without limit.
TextConversion EncodeUtf8(char16_t const* source, std::size_t length, char* target, std::size_t room);

} // namespace platform
