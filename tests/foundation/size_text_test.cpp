// SPDX-License-Identifier: MIT
#include "zeltools/foundation/size_text.h"

#include "tests/support/printers.h"
#include "zeltools/foundation/thread_language.h"

#include <gtest/gtest.h>

namespace {

TEST(GetFileSizeString, TakesTheLargestUnitThatIsFilled) {
    struct Row {
        unsigned long long size;
        char16_t const* english;
        char16_t const* french;
    };
    Row const rows[] = {
        {0, u"0 bytes", u"0 octet"},
        {1, u"1 byte", u"1 octet"},
        {1023, u"1023 bytes", u"1023 octets"},
        {1024, u"1.00 KB", u"1.00 Ko"},
        {1024 * 1024 - 1, u"1023.99 KB", u"1023.99 Ko"}, // not 1024.00: that is no MB yet
        {1'059'061, u"1.00 MB", u"1.00 Mo"},
        {1'059'062, u"1.01 MB", u"1.01 Mo"}, // a hundredth of a MB is 10485.76 bytes
        {5'368'709'120, u"5.00 GB", u"5.00 Go"},
        {~0ULL, u"15.99 EB", u"15.99 Eo"},
    };
    for (Row const& row : rows) {
        SetThreadLanguage(1033);
        EXPECT_EQ(GetFileSizeString(row.size), row.english);
        SetThreadLanguage(1036);
        EXPECT_EQ(GetFileSizeString(row.size), row.french);
    }
}

} // namespace
