// SPDX-License-Identifier: MIT
#include "zeltools/platform/environment.h"

#include "tests/support/vectors.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace platform {
namespace {

TEST(Environment, ExpandsAsRecorded) {
    for (vectors::Row const& row : vectors::ReadTable("environment")) {
        using Utf8 = std::filesystem::path;
        setenv(Utf8(row.Wide("name")).c_str(), Utf8(row.Wide("value")).c_str(), 1);
    }
    for (vectors::Row const& row : vectors::ReadTable("expand_environment_strings")) {
        auto const size = static_cast<unsigned int>(row.Number("size"));
        std::u16string out(size + 1, u'\uFFFF');
        unsigned int const needed = ExpandEnvironmentStringsW(row.Wide("text"), size > 0 ? out.data() : nullptr, size);
        EXPECT_EQ(needed, row.Number("returned")) << row;
        if (row.Missing("result")) {
            EXPECT_EQ(out[0], u'\uFFFF') << row; // a buffer that is too small is left alone
        } else {
            EXPECT_EQ(out.c_str(), row.Wide("result")) << row;
            EXPECT_EQ(out[size], u'\uFFFF') << row;
        }
    }
}

TEST(Environment, ExactSpellingWins) {
    setenv("zt_twice", "lower", 1);
    setenv("ZT_TWICE", "upper", 1);
    std::u16string value = u"before";
    EXPECT_TRUE(GetEnvironmentVariableW(u"ZT_TWICE", value));
    EXPECT_EQ(value, u"upper");
    EXPECT_TRUE(GetEnvironmentVariableW(u"zt_twice", value));
    EXPECT_EQ(value, u"lower");
    EXPECT_FALSE(GetEnvironmentVariableW(u"ZT_NONE", value));
    EXPECT_EQ(value, u"lower");
}

} // namespace
} // namespace platform
