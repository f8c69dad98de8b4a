// SPDX-License-Identifier: MIT
#include "zeltools/foundation/format_string.h"

#include "tests/support/printers.h"
#include "zeltools/foundation/thread_language.h"

#include <gtest/gtest.h>

namespace {

TEST(FormatString, TakesTextsAndRows) {
    SetThreadLanguage(1036);
    EXPECT_EQ(FormatString(u"%s (%d)", u"oak", 2), u"oak (2)");
    EXPECT_EQ(FormatString(5313u, 1, 2, 3), u"1 2 3 (RVB)");
    EXPECT_EQ(FormatString(nullptr), u"");
    EXPECT_EQ(FormatString(4u), u""); // no such row
}

} // namespace
