// SPDX-License-Identifier: MIT
#include "zeltools/platform/url.h"

#include "tests/support/vectors.h"

#include <gtest/gtest.h>
#include <string>

namespace platform {
namespace {

TEST(Url, IsAndDirectoryAsRecorded) {
    for (vectors::Row const& row : vectors::ReadTable("url_is")) {
        EXPECT_EQ(UrlIsW(row.Wide("url"), UrlIsUrl), row.Truth("is_url")) << row;
        EXPECT_EQ(UrlIsW(row.Wide("url"), UrlIsDirectory), row.Truth("is_directory")) << row;
    }
    EXPECT_FALSE(UrlIsW(u"http:\\\\h\\a?q\\", UrlIsDirectory)); // the query's separator is not the path's
    EXPECT_TRUE(UrlIsW(u"http:\\\\h\\a\\?q#f", UrlIsDirectory));
}

TEST(Url, QueryAsRecorded) {
    for (vectors::Row const& row : vectors::ReadTable("url_get_query")) {
        for (unsigned int const size : {4096U, 256U}) {
            std::u16string out(size, u'\0');
            unsigned int length = size;
            int const result = UrlGetPartW(row.Wide("url"), out.data(), &length, UrlPartQuery, 1);
            EXPECT_EQ(static_cast<unsigned int>(result), row.Hex(size == 256 ? "hresult_256" : "hresult")) << row;
            EXPECT_EQ(length, row.Number(size == 256 ? "length_256" : "length")) << row;
            if (size == 4096) {
                EXPECT_EQ(out.c_str(), row.Wide("result")) << row;
            }
        }
    }
    EXPECT_EQ(UrlQuery(u"http:\\\\h\\a?q=1#part?x"), u"q=1");
}

} // namespace
} // namespace platform
