// SPDX-License-Identifier: MIT
#include "zeltools/platform/registry_values.h"

#include "zeltools/platform/errors.h"
#include "zeltools/platform/registry.h"

#include <cstring>

namespace platform {

int ReadRegistryValue(HKEY key, char16_t const* name, unsigned int& type, std::string& bytes) {
    unsigned int size = 0;
    int status = RegQueryValueExW(key, name, &type, nullptr, &size);
    while (status == ErrorSuccess) {
        bytes.resize(size + std::size_t{1}); // never empty, so that there is an address to give
        status = RegQueryValueExW(key, name, &type, bytes.data(), &size);
        if (status == ErrorSuccess) {
            bytes.resize(size);
            break;
        }
        status = status == ErrorMoreData ? static_cast<int>(ErrorSuccess) : status;
    }
    return status;
}

std::u16string TextOfValue(std::string const& bytes, bool whole) {
    std::u16string text(bytes.size() / 2, u'\0');
    if (!text.empty()) {
        std::memcpy(text.data(), bytes.data(), text.size() * 2);
    }
    text.resize(whole ? text.find_last_not_of(u'\0') + 1 : std::u16string_view(text.c_str()).size());
    return text;
}

int WriteRegistryText(HKEY key, char16_t const* name, unsigned int type, std::u16string const& text) {
    if (text.size() > MaxValueBytes / sizeof(char16_t)) {
        return ErrorInvalidParameter;
    }
    return RegSetValueExW(key, name, type, text.c_str(),
                          static_cast<unsigned int>((text.size() + 1) * sizeof(char16_t)));
}

} // namespace platform
