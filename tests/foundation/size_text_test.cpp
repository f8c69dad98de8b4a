// SPDX-License-Identifier: MIT
#include "zeltools/foundation/size_text.h"

#include "tests/support/printers.h"
#include "zeltools/foundation/thread_language.h"

#include <gtest/gtest.h>
#include <utility>

namespace {

TEST(GetFileSizeString, TakesTheLargestUnitThatIsFilled) {
    std::pair<unsigned long long, char16_t const*> const rows[] = {
        {0, u"0 bytes"},
        {1, u"1 byte"},
        {1023, u"1023 bytes"},
        {1024, u"1.00 KB"},
        {1024 * 1024 - 1, u"1023.99 KB"}, // not 1024.00: that is no MB yet
        {1'059'061, u"1.00 MB"},          // a hundredth of a MB is 10485.76 bytes
        {1'059'062, u"1.01 MB"},
        {5'368'709'120, u"5.00 GB"},
        {~0ULL, u"15.99 EB"},
    };
    SetThreadLanguage(1033);
    for (auto const& [size, text] : rows)
        EXPECT_EQ(GetFileSizeString(size), text);
    SetThreadLanguage(1036);
    EXPECT_EQ(GetFileSizeString(0), u"0 octet"); // singular
    EXPECT_EQ(GetFileSizeString(2048), u"2.00 Ko");
}

} // namespace
