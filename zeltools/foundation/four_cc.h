// SPDX-License-Identifier: MIT
// Four-character codes: the 32-bit ids of file types, classes, loaders, savers and chunks.
//
//     FourCC("BMP ")             // 0x424D5020: the first character is the highest byte
//     FourCCText(0x424D5020)     // "BMP "

#pragma once

#include <array>

/// The number that stands for four characters, first character in the highest byte. A text of another length does
/// not compile; shorter names are filled up with blanks.
constexpr unsigned int FourCC(char const (&code)[5]) {
    unsigned int value = 0;
    for (int i = 0; i < 4; ++i) {
        value = value << 8 | static_cast<unsigned char>(code[i]);
    }
    return value;
}

/// The four characters of a code and a terminating zero. Bytes outside printable ASCII come as `?`, so that a code
/// from outside can be shown as it is.
constexpr std::array<char, 5> FourCCText(unsigned int code) {
    std::array<char, 5> text{};
    for (unsigned int i = 0; i < 4; ++i) {
        unsigned int const byte = code >> (24 - 8 * i) & 0xFF;
        text[i] = byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '?';
    }
    return text;
}
