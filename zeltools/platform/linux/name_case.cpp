// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/name_case.h"

#include "zeltools/platform/character_case.h"
#include "zeltools/platform/native_path.h"

#include <algorithm>

namespace platform {

namespace {

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

char AsciiUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

} // namespace

bool IsSameNameWithoutCase(std::string_view a, std::string_view b) {
    bool const isAscii = IsAscii(a);
    if (isAscii != IsAscii(b)) { // no pair of letters has one inside ASCII and one outside
        return false;
    }
    if (isAscii) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                          [](char x, char y) { return AsciiUpper(x) == AsciiUpper(y); });
    }
    std::u16string wideA;
    std::u16string wideB;
    AppendFromNativeName(a, wideA);
    AppendFromNativeName(b, wideB);
    return std::equal(wideA.begin(), wideA.end(), wideB.begin(), wideB.end(),
                      [](char16_t x, char16_t y) { return CharUpperW(x) == CharUpperW(y); });
}

} // namespace platform
