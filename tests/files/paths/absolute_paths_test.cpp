// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/absolute_paths.h"

#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/files/paths/directory_compare.h"

#include <gtest/gtest.h>

namespace {

using Text = CXTString<char16_t>;

TEST(AbsolutePaths, RelativeToABase) {
    struct {
        char16_t const *base, *path;
        bool removeDotSlash;
        FILENAME_TYPE type;
        char16_t const* relative;
    } const rows[] = {
        {u"C:\\a\\b\\", u"C:\\a\\b\\c.txt", false, FileNameTypeAuto, u".\\c.txt"}, // the main case
        {u"C:\\a\\b\\", u"C:\\a\\b\\c.txt", false, FileNameTypeFile, u"c.txt"},
        {u"C:\\a\\b\\", u"C:\\a\\c.txt", true, FileNameTypeFile, u"..\\c.txt"},
        {u"C:\\a\\b\\", u"C:\\a\\b", false, FileNameTypeDirectory, u"."}, // as a file it would be a sibling of b
        {u"C:\\a\\b\\", u"C:\\a\\b", false, FileNameTypeAuto, u"..\\b"},
        {u"C:\\a\\b", u"C:\\a\\c.txt", true, FileNameTypeFile, u"C:\\a\\c.txt"},      // the base lacks its backslash
        {u"\\home\\ana\\", u"\\var\\x.png", true, FileNameTypeFile, u"\\var\\x.png"}, // a lone root is nothing shared
    };
    for (auto const& row : rows)
        EXPECT_EQ(fileMakeRelativePath(row.base, row.path, row.removeDotSlash, row.type), row.relative);
}

TEST(AbsolutePaths, FromABase) {
    struct {
        char16_t const *base, *path;
        bool terminate;
        char16_t const* absolute;
    } const rows[] = {
        {u"C:\\a\\b", u"..\\c.txt", false, u"C:\\a\\c.txt"},
        {u"C:\\a\\b\\", u"c\\.\\d", true, u"C:\\a\\b\\c\\d\\"},
        {u"C:\\a", u"D:\\x\\..\\y", false, u"D:\\x\\..\\y"}, // an absolute path is not touched
        {u"", u"", true, u"\\"},
        {u"", u"no such name", false, u"\\no such name"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(fileMakeAbsolutePath(row.base, row.path, row.terminate), row.absolute);
    TemporaryFolder const folder;
    folder.Write("sub/a.txt");
    EXPECT_EQ(fileMakeAbsolutePath(folder.Path().c_str(), u"sub", false), (folder.Path("sub") + u"\\").c_str());
    EXPECT_EQ(fileMakeAbsolutePath(folder.Path().c_str(), u"sub\\a.txt", false), folder.Path("sub/a.txt").c_str());
}

TEST(DirectoryCompare, TellsWhichIsInside) {
    struct {
        char16_t const *a, *b;
        DirCompare result;
    } const rows[] = {
        {u"C:\\A\\b", u"c:\\a\\B\\", DirSame},
        {u"C:\\a\\b\\c", u"C:\\a\\b", DirFirstInSecond},
        {u"C:\\a", u"C:\\a\\b\\", DirSecondInFirst},
        {u"C:\\a\\b", u"a\\", DirDifferent}, // relative, although the text is contained
        {u"C:\\a\\bc", u"C:\\a\\b", DirDifferent},
        {u"\\x\\a\\b\\y", u"\\a\\b", DirFirstInSecond}, // anywhere in the text
    };
    for (auto const& row : rows)
        EXPECT_EQ(fileCompareDirectory(row.a, row.b), row.result) << testing::PrintToString(Text(row.a));
    EXPECT_TRUE(fileIsSameFile(u"C:/a/./B.txt", u"c:\\A\\b.TXT"));
    EXPECT_FALSE(fileIsSameFile(u"", u"C:\\a"));
    EXPECT_TRUE(fileIsSameDir(u"C:\\a\\x.y", u"c:\\A\\other"));
}

} // namespace
