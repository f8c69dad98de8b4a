// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_numbering.h"

#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace {

using Text = CXTString<char16_t>;

TEST(PathNumbering, CutsNamesButNotBelowEightNorTheExtension) {
    EXPECT_EQ(fileCutName(u"C:\\a\\abcdefghijkl.txt", 10), u"C:\\a\\abcdefgh.txt");
    EXPECT_EQ(fileCutName(u"C:\\a\\abcdefghijkl.txt", 13), u"C:\\a\\abcdefghi.txt");
    EXPECT_EQ(fileCutName(u"abc.verylongextension", 5), u"abc.verylongextension");
}

TEST(PathNumbering, RaisesTheNumber) {
    struct {
        char16_t const* path;
        bool parenthesis;
        int maxName;
        char16_t const* next;
    } const rows[] = {
        {u"a.txt", true, 0, u"a(1).txt"},
        {u"ab.txt", true, 0, u"ab (1).txt"},
        {u"abcdef99.txt", false, 5, u"ab100.txt"},
        {u"abc.txt", false, 1, u"1.txt"},
        {u"abc.txt", true, 2, u" (1).txt"}, // the number is never cut
        {u"C:\\x\\img2147483647.tif", false, 0, u"C:\\x\\img-2147483648.tif"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(fileNextNumberedName(row.path, row.parenthesis, row.maxName), row.next);
}

TEST(PathNumbering, UniqueNameIsTheFirstThatIsFree) {
    TemporaryFolder const folder;
    auto const at = [&](char const* name) { return Text(folder.Path(name).c_str()); };
    EXPECT_EQ(fileCreateUniqueName(at("shot.png"), false, 0, false), at("shot.png"));
    EXPECT_EQ(fileCreateUniqueName(at("shot.png"), false, 0, true), at("shot1.png"));
    for (char const* taken : {"shot.png", "shot (1).png", "shot (2).png"})
        folder.Write(taken);
    EXPECT_EQ(fileCreateUniqueName(at("shot.png"), true, 0, false), at("shot (3).png"));
    EXPECT_EQ(fileCreateUniqueName(at("shot (1).png"), true, 0, true), at("shot (3).png"));
}

} // namespace
