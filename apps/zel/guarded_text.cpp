// SPDX-License-Identifier: MIT
#include "guarded_text.h"

#include "terminal.h"

namespace zel {

namespace {

/// The block of a private area in which path strings keep characters that have a meaning there.
constexpr char32_t Guarded = 0xF000;
constexpr char32_t LoneByte = 0xDC00;

constexpr bool IsGuarded(char32_t character) {
    return character >= Guarded && character <= Guarded + 0xFF;
}

void AppendUtf8(std::string& bytes, char32_t character) {
    auto const add = [&](char32_t value) { bytes += static_cast<char>(static_cast<unsigned char>(value)); };
    if (character < 0x80) {
        add(character);
        return;
    }
    if (character < 0x800) {
        add(0xC0 | character >> 6);
    } else {
        if (character < 0x10000) {
            add(0xE0 | character >> 12);
        } else {
            add(0xF0 | character >> 18);
            add(0x80 | (character >> 12 & 0x3F));
        }
        add(0x80 | (character >> 6 & 0x3F));
    }
    add(0x80 | (character & 0x3F));
}

} // namespace

CXTString<char16_t> GuardText(std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        std::size_t length = 0;
        char32_t const character = TakeCharacter(bytes, length);
        if (character == NotUtf8 || IsGuarded(character)) {
            for (char const byte : bytes.substr(0, length)) {
                text += static_cast<char16_t>(LoneByte + static_cast<unsigned char>(byte));
            }
        } else if (character == '<' || character == '>' || character == 0) {
            text += static_cast<char16_t>(Guarded + character);
        } else if (character < 0x10000) {
            text += static_cast<char16_t>(character);
        } else {
            text += static_cast<char16_t>(0xD7C0 + (character >> 10));
            text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        }
        bytes.remove_prefix(length);
    }
    return {text.data(), static_cast<int>(text.size())};
}

std::string UnguardText(CXTString<char16_t> const& text) {
    std::string bytes;
    std::u16string_view const units(text.GetConstBuffer(), static_cast<std::size_t>(text.GetLength()));
    bytes.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t const unit = units[i];
        bool const leads =
            unit >= 0xD800 && unit < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
        if (leads) {
            AppendUtf8(bytes, ((unit - 0xD7C0) << 10) + (units[++i] - 0xDC00));
        } else if (unit >= LoneByte + 0x80 && unit <= LoneByte + 0xFF) {
            bytes += static_cast<char>(static_cast<unsigned char>(unit));
        } else if (IsGuarded(unit)) {
            AppendUtf8(bytes, unit - Guarded);
        } else {
            AppendUtf8(bytes, unit);
        }
    }
    return bytes;
}

} // namespace zel
