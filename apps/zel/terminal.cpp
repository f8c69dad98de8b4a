// SPDX-License-Identifier: MIT
#include "terminal.h"

#include <array>
#include <cstdlib>
#include <cwchar>
#include <unistd.h>

namespace zel {

namespace {

void AppendEscaped(std::string& shown, std::string_view bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    for (char const c : bytes) {
        auto const value = static_cast<unsigned char>(c);
        shown += {'\\', 'x', digits[value >> 4], digits[value & 0xF]};
    }
}

bool IsControl(char32_t character) {
    // Beside the two control blocks: the marks that turn the direction of what follows.
    return character < 0x20 || (character >= 0x7F && character < 0xA0) ||
           (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

} // namespace

char32_t TakeCharacter(std::string_view text, std::size_t& length) {
    auto const byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char const lead = byte(0);
    length = 1;
    if (lead < 0x80) {
        return lead;
    }
    // Limits of the second byte keep out overlong forms, surrogates and what lies beyond U+10FFFF (Unicode 15,
    // table 3-7).
    std::size_t const count = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4) {
        return NotUtf8;
    }
    unsigned char const low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned char const high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    char32_t character = lead & (0x7Fu >> count);
    for (std::size_t i = 1; i < count; ++i) {
        if (i >= text.size() || byte(i) < (i == 1 ? low : 0x80) || byte(i) > (i == 1 ? high : 0xBF)) {
            return NotUtf8;
        }
        character = character << 6 | (byte(i) & 0x3F);
        length = i + 1;
    }
    return character;
}

bool WantsColour(std::FILE* stream) {
    char const* const noColour = std::getenv("NO_COLOR");
    char const* const terminal = std::getenv("TERM");
    bool const refused = (noColour && *noColour) || (terminal && std::string_view(terminal) == "dumb");
    return !refused && isatty(fileno(stream));
}

std::string Coloured(std::string_view text, Colour colour, bool enabled) {
    constexpr std::array<char const*, 9> codes = {"", "2", "1", "34", "36", "32", "35", "33", "31"};
    char const* const code = codes[static_cast<std::size_t>(colour)];
    if (!enabled || !*code) {
        return std::string(text);
    }
    return std::string("\033[") + code + 'm' + std::string(text) + "\033[0m";
}

int DisplayWidth(std::string_view text) {
    int columns = 0;
    while (!text.empty()) {
        std::size_t length = 0;
        char32_t const character = TakeCharacter(text, length);
        int const width = character < 0x7F ? 1 : character == NotUtf8 ? 1 : wcwidth(static_cast<wchar_t>(character));
        columns += width < 0 ? 1 : width;
        text.remove_prefix(length);
    }
    return columns;
}

std::string PadRight(std::string_view text, int columns) {
    std::string padded(text);
    int const missing = columns - DisplayWidth(text);
    if (missing > 0) {
        padded.append(static_cast<std::size_t>(missing), ' ');
    }
    return padded;
}

std::string ShownName(std::string_view nativeName, bool terminal) {
    std::string shown;
    shown.reserve(nativeName.size());
    while (!nativeName.empty()) {
        std::size_t length = 0;
        char32_t const character = TakeCharacter(nativeName, length);
        std::string_view const bytes = nativeName.substr(0, length);
        if (character == NotUtf8 ? terminal : IsControl(character)) {
            AppendEscaped(shown, bytes);
        } else {
            shown += bytes;
        }
        nativeName.remove_prefix(length);
    }
    return shown;
}

std::string ValidUtf8(std::string_view text, bool& exact) {
    std::string valid;
    valid.reserve(text.size());
    exact = true;
    while (!text.empty()) {
        std::size_t length = 0;
        if (TakeCharacter(text, length) == NotUtf8) {
            valid += "\xEF\xBF\xBD";
            exact = false;
        } else {
            valid += text.substr(0, length);
        }
        text.remove_prefix(length);
    }
    return valid;
}

} // namespace zel
