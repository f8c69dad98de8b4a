// SPDX-License-Identifier: MIT
#include "zeltools/platform/environment.h"

#include "zeltools/platform/character_case.h"
#include "zeltools/platform/code_pages.h"

#include <algorithm>
#include <unistd.h>

namespace platform {

namespace {

std::u16string FromUtf8(std::string_view bytes) {
    // No sequence of bytes gives more units than it has bytes.
    std::u16string text(bytes.size(), u'\0');
    int const size = static_cast<int>(bytes.size());
    int const length = MultiByteToWideChar(CodePageUtf8, 0, bytes.data(), size, text.data(), size);
    text.resize(static_cast<std::size_t>(std::max(length, 0)));
    return text;
}

bool IsSameName(std::u16string_view left, std::u16string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char16_t a, char16_t b) { return a == b || CharUpperW(a) == CharUpperW(b); });
}

} // namespace

bool GetEnvironmentVariableW(std::u16string_view name, std::u16string& value) {
    char const* found = nullptr;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        std::string_view const assignment = *entry;
        std::size_t const equals = assignment.find('=');
        if (equals == assignment.npos || equals == 0) {
            continue;
        }
        std::u16string const entryName = FromUtf8(assignment.substr(0, equals));
        if (entryName == name || (found == nullptr && IsSameName(entryName, name))) {
            found = *entry + equals + 1;
            if (entryName == name) {
                break;
            }
        }
    }
    if (found != nullptr) {
        value = FromUtf8(found);
    }
    return found != nullptr;
}

std::u16string ExpandEnvironmentStrings(std::u16string_view text) {
    std::u16string result;
    std::u16string value;
    while (!text.empty()) {
        std::size_t const begin = text.find(u'%');
        std::size_t const end = begin == text.npos ? begin : text.find(u'%', begin + 1);
        if (end == text.npos) {
            break;
        }
        result += text.substr(0, begin);
        if (GetEnvironmentVariableW(text.substr(begin + 1, end - begin - 1), value)) {
            result += value;
        } else {
            result += text.substr(begin, end - begin + 1);
        }
        text.remove_prefix(end + 1);
    }
    return result += text;
}

unsigned int ExpandEnvironmentStringsW(std::u16string_view text, char16_t* out, unsigned int size) {
    std::u16string const result = ExpandEnvironmentStrings(text);
    if (out != nullptr && result.size() < size) {
        out[result.copy(out, result.size())] = 0;
    }
    return static_cast<unsigned int>(result.size() + 1);
}

} // namespace platform
