// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_split.h"

#include "tests/support/printers.h"
#include "zeltools/files/paths/path_slashes.h"

#include <gtest/gtest.h>

namespace {

using Text = CXTString<char16_t>;

// Of an address the query stays in the name, and the dot in front of it makes the extension.
TEST(PathSplit, AnAddressKeepsItsQuery) {
    Text const address = u"http:\\\\h\\b.png?v=1.5";
    EXPECT_EQ(fileStripName(address), u"http:\\\\h\\");
    EXPECT_EQ(fileStripPath(address, false), u"b.png?v=1.5");
    EXPECT_EQ(fileStripPathAndExtension(address), u"b.png?v=1");
    EXPECT_EQ(fileGetExtension(address), u".png");
    EXPECT_EQ(fileRemoveExtension(u"C:\\dir.one\\name"), u"C:\\dir.one\\name");
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
