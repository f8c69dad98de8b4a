// SPDX-License-Identifier: MIT
// The bijection between native names, which are bytes, and their toolkit form. See native_path.h for the table.

#include "zeltools/platform/native_path.h"

#include <array>
#include <cstdint>

namespace platform {

namespace {

constexpr char16_t EscapedCharacters = 0xF000; ///< Plus the code of a character with another meaning in the toolkit.
constexpr char16_t EscapedBytes = 0xDC00;      ///< Plus a byte of 0x80 or more.
constexpr std::string_view MeaningfulCharacters = "\\:*?\"<>|";

/// What each ASCII character of the toolkit's form is in a native name; 0 where it cannot stand in a name.
constexpr auto nativeOfAscii = [] {
    std::array<char, 128> table{};
    for (int c = 1; c < 128; ++c) {
        bool const hasMeaning = MeaningfulCharacters.find(static_cast<char>(c)) != std::string_view::npos;
        table[static_cast<std::size_t>(c)] = hasMeaning ? '\0' : static_cast<char>(c);
    }
    table['\\'] = '/';
    return table;
}();

/// The toolkit's form of each ASCII byte of a native name; 0 ends the name.
constexpr auto toolkitOfAscii = [] {
    std::array<char16_t, 128> table{};
    for (int c = 0; c < 128; ++c) {
        bool const hasMeaning = MeaningfulCharacters.find(static_cast<char>(c)) != std::string_view::npos;
        table[static_cast<std::size_t>(c)] = static_cast<char16_t>(hasMeaning ? EscapedCharacters + c : c);
    }
    table['/'] = u'\\';
    return table;
}();

bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool IsLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

void AppendUtf8(char32_t c, std::string& out) {
    if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
    } else {
        if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        }
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    }
    out += static_cast<char>(0x80 | (c & 0x3F));
}

/// Reads the character of two to four bytes at the head of `bytes`. 0 when they are not well-formed UTF-8: cut off,
/// longer than needed, a surrogate, or above U+10FFFF.
char32_t DecodeUtf8(std::string_view bytes, std::size_t& length) {
    auto const at = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    std::uint8_t const lead = at(0);
    length = lead >= 0xC2 && lead < 0xE0   ? 2U
             : lead >= 0xE0 && lead < 0xF0 ? 3U
             : lead >= 0xF0 && lead < 0xF5 ? 4U
                                           : 0U;
    if (length == 0 || length > bytes.size()) {
        return 0;
    }
    char32_t c = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0) != 0x80) {
            return 0;
        }
        c = (c << 6) | (at(i) & 0x3FU);
    }
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    bool const isSurrogate = c >= 0xD800 && c < 0xE000;
    return c < smallest[length] || isSurrogate || c > 0x10FFFF ? 0 : c;
}

/// Goes on where the ASCII run of ToNativeName ended.
bool AppendNonAscii(std::u16string_view name, std::size_t i, std::string& native) {
    bool hasEscapedBytes = false;
    for (; i < name.size(); ++i) {
        char16_t const unit = name[i];
        if (unit < 0x80) {
            if (nativeOfAscii[unit] == '\0') {
                return false;
            }
            native += nativeOfAscii[unit];
        } else if (IsHighSurrogate(unit)) {
            if (i + 1 == name.size() || !IsLowSurrogate(name[i + 1])) {
                return false;
            }
            AppendUtf8(0x10000U + ((unit & 0x3FFU) << 10) + (name[i + 1] & 0x3FFU), native);
            ++i;
        } else if (IsLowSurrogate(unit)) {
            if (unit < EscapedBytes + 0x80 || unit > EscapedBytes + 0xFF) {
                return false;
            }
            native += static_cast<char>(unit - EscapedBytes);
            hasEscapedBytes = true;
        } else if (unit >= EscapedCharacters && unit <= EscapedCharacters + 0xFF) {
            char const c = static_cast<char>(unit - EscapedCharacters);
            if (MeaningfulCharacters.find(c) == std::string_view::npos) {
                return false;
            }
            native += c;
        } else {
            AppendUtf8(unit, native);
        }
    }
    if (!hasEscapedBytes) {
        return true;
    }
    // Single bytes that add up to a character are no form that a name has: the character itself is.
    std::u16string form;
    AppendFromNativeName(native, form);
    std::u16string asked{name};
    for (char16_t& unit : asked) {
        unit = unit == u'/' ? u'\\' : unit;
    }
    return form == asked;
}

} // namespace

bool ToNativeName(std::u16string_view name, std::string& native) {
    native.resize(name.size());
    char* const out = native.data();
    for (std::size_t i = 0; i < name.size(); ++i) {
        char16_t const unit = name[i];
        if (unit >= 0x80) {
            native.resize(i);
            return AppendNonAscii(name, i, native);
        }
        if (nativeOfAscii[unit] == '\0') {
            return false;
        }
        out[i] = nativeOfAscii[unit];
    }
    return true;
}

void AppendFromNativeName(std::string_view native, std::u16string& name) {
    native = native.substr(0, native.find('\0'));
    name.reserve(name.size() + native.size());
    for (std::size_t i = 0; i < native.size();) {
        auto const byte = static_cast<std::uint8_t>(native[i]);
        if (byte < 0x80) {
            name += toolkitOfAscii[byte];
            ++i;
            continue;
        }
        std::size_t length = 0;
        char32_t const c = DecodeUtf8(native.substr(i), length);
        if (c >= 0x10000) {
            name += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            name += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else if (c != 0 && (c < EscapedCharacters || c > EscapedCharacters + 0xFF)) {
            name += static_cast<char16_t>(c);
        } else {
            length =
                c == 0 ? 1 : length; // a stray byte stands alone, a character in the escape range goes byte by byte
            for (std::size_t k = 0; k < length; ++k) {
                name += static_cast<char16_t>(EscapedBytes + static_cast<std::uint8_t>(native[i + k]));
            }
        }
        i += length;
    }
}

std::u16string FromNativePath(std::string_view native) {
    std::size_t const firstOther = native.find_first_not_of('/');
    std::size_t const slashes = firstOther == std::string_view::npos ? native.size() : firstOther;
    if (slashes > 1) {
        native.remove_prefix(slashes - 1);
    }
    std::u16string path;
    AppendFromNativeName(native, path);
    return path;
}

} // namespace platform
