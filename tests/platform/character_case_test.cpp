// SPDX-License-Identifier: MIT
#include "zeltools/platform/character_case.h"

#include "tests/support/vectors.h"

#include <gtest/gtest.h>
#include <wctype.h>

using platform::CharLowerW;
using platform::CharUpperW;

namespace {

TEST(CharacterCase, GivesTheRecordedAnswers) {
    for (vectors::Row const& row : vectors::ReadTable("characters")) {
        auto const unit = static_cast<char16_t>(row.Hex("unit"));
        EXPECT_EQ(CharLowerW(unit), row.Hex("char_lower")) << row;
        EXPECT_EQ(CharUpperW(unit), row.Hex("char_upper")) << row;
    }
    for (vectors::Row const& row : vectors::ReadTable("case")) {
        std::u16string lower = row.Wide("text");
        std::u16string upper = lower;
        for (char16_t& unit : lower)
            unit = CharLowerW(unit);
        for (char16_t& unit : upper)
            unit = CharUpperW(unit);
        EXPECT_EQ(lower, row.Wide("char_lower")) << row;
        EXPECT_EQ(upper, row.Wide("char_upper")) << row;
    }
}

// The C library's Unicode locale knows the same pairs. It may be of a later Unicode, so a pair that only it knows is
// counted and few are allowed; one that only we know is a fault.
TEST(CharacterCase, AgreesWithTheSystemsUnicodeLocale) {
    locale_t const unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    ASSERT_NE(unicode, nullptr);
    int unknown = 0;
    for (unsigned unit = 0x80; unit < 0x10000; ++unit) {
        wint_t const lower = towlower_l(unit, unicode);
        bool const isPair = lower != unit && lower >= 0x80 && lower < 0x10000 && towupper_l(lower, unicode) == unit;
        char16_t const ours = CharLowerW(static_cast<char16_t>(unit));
        if (ours != unit) {
            EXPECT_TRUE(isPair && ours == lower) << std::hex << unit;
            EXPECT_EQ(CharUpperW(ours), unit) << std::hex << unit;
        } else if (isPair) {
            ++unknown;
        }
    }
    freelocale(unicode);
    EXPECT_LE(unknown, 16);
}

} // namespace
