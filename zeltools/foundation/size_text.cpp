// SPDX-License-Identifier: MIT
#include "zeltools/foundation/size_text.h"

#include "zeltools/foundation/format_string.h"
#include "zeltools/platform/language.h"

#include <bit>

namespace {

constexpr unsigned int inBytes = 5700; // and the units of 1024 behind it
constexpr unsigned int inOneByte = 5707;

} // namespace

CXTString<char16_t> GetFileSizeString(unsigned long long size) {
    constexpr int bitsPerUnit = 10;
    if (size < 1ULL << bitsPerUnit) {
        bool const isSingular = size == 1 || (size == 0 && platform::IsFrench(platform::GetThreadUILanguage()));
        return FormatString(isSingular ? inOneByte : inBytes, static_cast<unsigned int>(size));
    }
    auto const unit = static_cast<unsigned int>((std::bit_width(size) - 1) / bitsPerUnit);
    unsigned long long const one = 1ULL << unit * bitsPerUnit;
    // Cut to hundredths in whole numbers; the quotient is below 1024, so the real holds it without a doubt.
    auto const hundredths =
        static_cast<double>(size / one * 100 + ((size % one) >> (unit - 1) * bitsPerUnit) * 100 / 1024);
    return FormatString(inBytes + unit, hundredths / 100);
}
