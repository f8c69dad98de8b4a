// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_split.h"

#include "tests/support/printers.h"
#include "zeltools/files/paths/path_slashes.h"

#include <gtest/gtest.h>

namespace {

using Text = CXTString<char16_t>;

TEST(PathSplit, TakesPathsApart) {
    struct {
        char16_t const* path;
        char16_t const* root;
        char16_t const* directory;
        char16_t const* name;
        char16_t const* bareName;
        char16_t const* extension;
    } const rows[] = {
        {u"C:\\a\\b.tar.gz", u"C:\\", u"C:\\a\\", u"b.tar.gz", u"b.tar", u".gz"},
        {u"\\\\srv\\share\\a\\", u"\\\\srv\\share\\", u"\\\\srv\\share\\a\\", u"", u"", u""},
        {u"\\home\\.profile", u"\\", u"\\home\\", u".profile", u"", u".profile"},
        {u"a\\b.c d", u"", u"a\\", u"b.c d", u"b.c d", u""}, // a blank behind the dot
        {u"C:name", u"C:\\", u"C:\\", u"name", u"name", u""},
        {u"http:\\\\h\\b.png?v=1.5", u"", u"http:\\\\h\\", u"b.png?v=1.5", u"b.png?v=1", u".png"},
        {u"http:\\\\h\\b?v=1.5", u"", u"http:\\\\h\\", u"b?v=1.5", u"b?v=1", u""},
        {u"", u"", u"", u"", u"", u""},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(Text(row.path)));
        EXPECT_EQ(fileGetRoot(row.path), row.root);
        EXPECT_EQ(fileStripName(row.path), row.directory);
        EXPECT_EQ(fileStripPath(row.path, false), row.name);
        EXPECT_EQ(fileStripPathAndExtension(row.path), row.bareName);
        EXPECT_EQ(fileGetExtension(row.path), row.extension);
    }
    EXPECT_EQ(fileRemoveExtension(u"C:\\dir.one\\name"), u"C:\\dir.one\\name");
}

TEST(PathSplit, RemovesTheTopDirectory) {
    struct {
        char16_t const* path;
        bool withName;
        char16_t const* cut;
        char16_t const* rest;
    } const rows[] = {
        {u"C:\\a\\b\\", false, u"b\\", u"C:\\a\\"},
        {u"C:\\a\\b\\c.txt", true, u"b\\c.txt", u"C:\\a\\"},
        {u"C:\\a\\b\\c.txt", false, u"b\\", u"C:\\a\\"},
        {u"C:\\b\\ab\\", false, u"ab\\", u"C:\\b\\"},
        {u"C:/xx/b/c.txt", true, u"b\\c.txt", u"C:/xx//"}, // written with slashes, the cut text does not occur
        {u"name", false, u"", u"name"},
        {u"", true, u"", u""},
    };
    for (auto const& row : rows) {
        Text path = row.path;
        EXPECT_EQ(fileRemoveTopDirectory(path, row.withName), row.cut);
        EXPECT_EQ(path, row.rest);
    }
    EXPECT_EQ(fileGetTopDirectory(u"C:\\a\\b\\c", true), u"b\\");
}

TEST(PathSplit, ClimbsToTheParentUntilThereIsNone) {
    Text path = u"\\\\srv\\share\\a\\b.c";
    ASSERT_TRUE(fileGetParentDirectory(path));
    EXPECT_EQ(path, u"\\\\srv\\share\\");
    ASSERT_TRUE(fileGetParentDirectory(path));
    EXPECT_EQ(path, u"\\\\srv\\");
    EXPECT_FALSE(fileGetParentDirectory(path));
    EXPECT_EQ(path, u"\\\\srv\\");
}

TEST(PathSlashes, AreConvertedJoinedAndCounted) {
    Text mixed = u"a/b\\c/";
    EXPECT_TRUE(fileConvertSlash(mixed));
    EXPECT_EQ(mixed, u"a\\b\\c\\");
    EXPECT_FALSE(fileConvertSlash(mixed));

    char16_t const* const doubled[][2] = {
        {u"\\\\srv\\\\x\\\\\\", u"\\\\srv\\x\\"},
        {u"C:\\\\\\\\a", u"C:\\a"},
        {u"\\\\\\srv", u"\\\\\\srv"}, // the third one is single behind the leading pair
        {u"", u""},
    };
    for (auto const& row : doubled) {
        Text path = row[0];
        fileRemoveDuplicatedSlash(path);
        EXPECT_EQ(path, row[1]);
    }

    Text path;
    EXPECT_FALSE(fileIsSlashTerminated(path));
    fileSlashTerminate(path);
    fileSlashTerminate(path);
    EXPECT_EQ(path, u"\\");
    path = u"a\\\\";
    fileRemoveSlashTermination(path);
    EXPECT_EQ(path, u"a\\");
}

TEST(PathSlashes, InvalidCharactersGoAndBlanksAreReplaced) {
    Text name = u"a<b>:\"/\\|?*. c.d";
    fileRemoveInvalidChar(name, u'_');
    EXPECT_EQ(name, u"ab_cd");
    name = u"a b.";
    fileRemoveInvalidChar(name, u' ');
    EXPECT_EQ(name, u"a b");
}

} // namespace
