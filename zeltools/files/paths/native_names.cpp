// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/native_names.h"

#include "zeltools/foundation/string_conversion.h"
#include "zeltools/platform/native_path.h"

CXTString<char16_t> fileFromNativeName(char const* nativeName) {
    if (!nativeName) {
        return {};
    }
    std::u16string const path = platform::FromNativePath(nativeName);
    return {path.c_str(), static_cast<int>(path.size())};
}

CXTString<char> fileGetNativeName(CXTString<char16_t> const& path) {
    std::string native;
    if (!path.IsEmpty() && platform::ToNativePath({path, static_cast<std::size_t>(path.GetLength())}, native)) {
        return {native.c_str(), static_cast<int>(native.size())};
    }
    CXTString<char> text;
    XFASTCW2A(text, path, xEncodingUtf8);
    return text;
}
