// SPDX-License-Identifier: MIT
// Names and their toolkit form lead to each other, from whichever side one starts.

#include "zeltools/platform/native_path.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const bytes(reinterpret_cast<char const*>(data), size);
    std::string const name = bytes.substr(0, bytes.find('\0'));
    std::u16string form;
    platform::AppendFromNativeName(name, form);
    std::string back;
    if (!platform::ToNativeName(form, back) || back != name) {
        std::abort();
    }

    std::u16string text(size / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
    std::string native;
    if (platform::ToNativeName(text, native)) {
        for (char16_t& unit : text) {
            unit = unit == u'/' ? u'\\' : unit;
        }
        std::u16string again;
        platform::AppendFromNativeName(native, again);
        if (again != text) {
            std::abort();
        }
    }
    if (platform::ToNativePath(text, native) && native.find('\0') != std::string::npos) {
        std::abort();
    }
    return 0;
}
