// SPDX-License-Identifier: MIT
#include "plugins/scene/worker/texture_path.h"

#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/string_conversion.h>

#include <algorithm>
#include <cctype>
#include <string>

namespace {

int HexValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    char const lower = static_cast<char>(digit | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string DecodePercents(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        int const high = text[i] == '%' && i + 2 < text.size() ? HexValue(text[i + 1]) : -1;
        int const low = high >= 0 ? HexValue(text[i + 2]) : -1;
        if (low >= 0 && high * 16 + low != 0) {
            decoded += static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

std::string EncodePercents(std::string_view text) {
    std::string encoded;
    for (char const letter : text) {
        if (letter == ' ' || letter == '%' || letter == '#' || letter == '?') {
            constexpr char digits[] = "0123456789ABCDEF";
            encoded += {'%', digits[letter >> 4], digits[letter & 15]};
        } else {
            encoded += letter;
        }
    }
    return encoded;
}

bool HasDrive(std::string_view path) {
    return path.size() > 2 && std::isalpha(static_cast<unsigned char>(path[0])) && path[1] == ':' && path[2] == '/';
}

} // namespace

bool HasAddresses(std::string_view format) {
    return format == "gltf" || format == "gltf2" || format == "collada" || format == "x3d";
}

CXTString<char16_t> ToTexturePath(std::string_view path, bool isAddress) {
    std::string native = isAddress ? DecodePercents(path) : std::string(path);
    // Most of what writes scenes runs where the separator is a backslash.
    std::replace(native.begin(), native.end(), '\\', '/');
    if (native.starts_with("file:")) {
        native.erase(0, native.starts_with("file:///") ? 7 : 5);
        if (HasDrive(std::string_view(native).substr(1))) {
            native.erase(0, 1);
        }
    }
    if (HasDrive(native) || native.starts_with("//")) {
        CXTString<char16_t> text(XCA2W(native.c_str(), xEncodingUtf8));
        text.Replace(u"/", u"\\");
        return text;
    }
    return fileFromNativeName(native.c_str());
}

std::string FromTexturePath(CXTString<char16_t> const& path, bool isAddress) {
    std::u16string_view const units(static_cast<char16_t const*>(path));
    bool const isForeign = units.starts_with(u"\\\\") || (units.size() > 1 && units[1] == u':');
    std::string native = isForeign ? std::string(XCW2A(path, xEncodingUtf8)) : std::string(fileGetNativeName(path));
    if (isForeign) {
        std::replace(native.begin(), native.end(), '\\', '/');
    }
    return isAddress ? EncodePercents(native) : native;
}
