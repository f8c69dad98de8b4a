// SPDX-License-Identifier: MIT
#include "tests/support/printers.h"
#include "zeltools/foundation/format_string.h"
#include "zeltools/foundation/xload_string.h"
#include "zeltools/platform/language.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace {

class LoadString : public testing::Test {
protected:
    void SetUp() override { platform::SetThreadUILanguage(platform::LanguageEnglish); }
    void TearDown() override { platform::SetThreadUILanguage(0); }
};

TEST_F(LoadString, FollowsTheLanguageOfItsThread) {
    EXPECT_EQ(xLoadString(5362), u"True");
    platform::SetThreadUILanguage(platform::LanguageFrench);
    EXPECT_EQ(xLoadString(5362), u"Vrai");
    unsigned short other = 1;
    std::thread([&other] {
        platform::SetThreadUILanguage(platform::LanguageEnglish);
        other = xLoadString(5362) == u"True" ? platform::GetThreadUILanguage() : 0;
    }).join();
    EXPECT_EQ(other, platform::LanguageEnglish);
    EXPECT_EQ(xLoadString(5362), u"Vrai");
    EXPECT_EQ(FormatString(5313u, 1, 2, 3), u"1 2 3 (RVB)");
    EXPECT_EQ(FormatString(4u), u""); // no such row
    EXPECT_EQ(FormatString(nullptr), u"");
    platform::SetThreadUILanguage(0x0C0C); // French of Canada
    EXPECT_EQ(xLoadString(5342), u"Faux");
    platform::SetThreadUILanguage(1031); // German has no texts
    EXPECT_EQ(xLoadString(5342), u"False");
}

TEST(LanguageOfEnvironment, FollowsTheVariablesInTheirOrder) {
    struct {
        char const *language, *all, *messages, *lang;
        bool isFrench;
    } const rows[] = {
        {nullptr, nullptr, "fr_CA", "en_US.UTF-8", true},
        {nullptr, "en_GB", "fr_FR", "fr_FR", false},
        {nullptr, "", "", "fr", true},                 // empty counts as not set
        {"de:fr:en", nullptr, nullptr, "en_US", true}, // German has no texts, French comes next
        {"de", nullptr, nullptr, "fr_FR@euro", true},
        {"fr", "C", nullptr, "fr_FR", false},       // C asks for untranslated text
        {"frr", nullptr, nullptr, "fro_FR", false}, // other languages
    };
    for (auto const& row : rows)
        EXPECT_EQ(platform::LanguageOfEnvironment(row.language, {row.all, row.messages, row.lang}),
                  row.isFrench ? platform::LanguageFrench : platform::LanguageEnglish)
            << testing::PrintToString(row.language) << " " << testing::PrintToString(row.lang);
}

} // namespace
