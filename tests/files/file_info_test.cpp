// SPDX-License-Identifier: MIT
#include "zeltools/files/file_info.h"

#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace {

using Text = CXTString<char16_t>;

struct SplitRow {
    char const* name;
    char16_t const *text, *root, *path, *nameWithoutExtension, *extension, *query;
};

SplitRow const splitRows[] = {
    {"SlashesAndDots", u"C:/a/../b/./c.png", u"C:\\", u"C:\\b\\", u"c", u".png", u""},
    {"Server", u"\\\\server\\share\\x.y", u"\\\\server\\share\\", u"\\\\server\\share\\", u"x", u".y", u""},
    {"DotFile", u"C:\\.profile", u"C:\\", u"C:\\", u"", u".profile", u""},
    // The name of an address loses its query wherever it stands, and its dot is the last one before the question mark.
    {"Address", u"http://h/a/b.png?v=1.5", u"", u"http:\\\\h\\a\\", u"b", u".png", u"v=1.5"},
};

// Takes the steps of the splitting again, as a class does that tells its names apart by rules of its own.
class SteppingInfo : public CFileInfo {
public:
    void Repeat() {
        ExtractRoot();
        ExtractPath();
        ExtractQuery();
        ExtractName();
        ExtractExtension();
    }
};

TEST(FileInfo, ADerivedClassCanTakeTheStepsAgain) {
    for (SplitRow const& row : splitRows) {
        SteppingInfo info;
        info.Init(CFileNameSpec(row.text), FileNameTypeAuto, nullptr);
        SCOPED_TRACE(row.name);
        for (int pass = 0; pass < 2; ++pass) {
            EXPECT_EQ(info.GetRoot(), row.root);
            EXPECT_EQ(info.GetPath(), row.path);
            EXPECT_EQ(info.GetNameWithoutExt(), row.nameWithoutExtension);
            EXPECT_EQ(info.GetExtension(), row.extension);
            EXPECT_EQ(info.GetName(), Text(row.nameWithoutExtension) + row.extension);
            EXPECT_EQ(info.GetQuery(false), row.query);
            info.Repeat();
        }
    }
    // A found directory lost its text, and with it what the root was taken from.
    TemporaryFolder const folder;
    SteppingInfo lost;
    Text const withoutBackslash = (folder.Path() + u"sub").c_str();
    folder.Write("sub/file");
    lost.Init(CFileNameSpec(withoutBackslash), FileNameTypeAuto | CFileInfo::AskDisk, nullptr);
    EXPECT_EQ(lost.GetRoot(), u"\\");
    lost.Repeat();
    EXPECT_EQ(lost.GetRoot(), u"");
}

} // namespace
