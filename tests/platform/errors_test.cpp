// SPDX-License-Identifier: MIT
#include "zeltools/platform/errors.h"

#include "zeltools/platform/language.h"

#include <gtest/gtest.h>

using namespace platform;

namespace {

TEST(Errors, EveryNumberOfErrnoHasATextInBothLanguages) {
    unsigned short const before = GetThreadUILanguage();
    for (int value = 0; value < 134; ++value) {
        unsigned int const error = ErrorFromErrno(value);
        SetThreadUILanguage(0x409);
        std::u16string const english = FormatMessageW(error);
        SetThreadUILanguage(0x40C);
        EXPECT_FALSE(english.empty()) << error;
        EXPECT_NE(FormatMessageW(error), english) << error;
    }
    EXPECT_EQ(FormatMessageW(424242), u"");
    SetThreadUILanguage(before);
}

} // namespace
