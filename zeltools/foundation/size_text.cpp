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
    // Cut in whole numbers, a digit at a time as on paper: a hundredfold remainder of exabytes passes 64 bits.
    unsigned long long const tenths = size % one * 10;
    unsigned long long const hundredths = size / one * 100 + tenths / one * 10 + tenths % one * 10 / one;
    return FormatString(inBytes + unit, static_cast<double>(hundredths) / 100);
}
