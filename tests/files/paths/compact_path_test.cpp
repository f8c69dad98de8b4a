// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/compact_path.h"

#include "tests/support/noting_desktop.h"
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/files/paths/valid_names.h"
#include "zeltools/foundation/xload_string.h"

#include <gtest/gtest.h>

namespace {

using Text = CXTString<char16_t>;

int windowStandIn = 0;
CWnd* const window = reinterpret_cast<CWnd*>(&windowStandIn); // only handed on

TEST(CompactPath, ByCharactersAndByTheWindowsFont) {
    EXPECT_EQ(fileCompactPath(u"C:\\a\\long\\way\\name.txt", 14), u"C:\\...ay\\name.txt");
    EXPECT_EQ(fileCompactPath(u"C:\\a\\long\\way\\name.txt", 3), u"C:\\...ame.txt"); // as 10
    Text const path = u"C:\\path1\\path2\\sample";
    EXPECT_EQ(fileCompactPath(path, window, 160), path); // the headless desktop measures nothing
    NotingDesktop const desktop;
    EXPECT_EQ(fileCompactPath(path, window, 160), u"C:\\pat...\\sample");
    EXPECT_EQ(fileCompactPath(path, window, 0), u"C:\\path1\\...\\sample"); // 200 less 10
}

TEST(ValidNames, ChecksWhatIsAskedForAndSaysWhy) {
    TemporaryFolder const folder;
    Text const inFolder = folder.Path("new.txt").c_str();
    Text const inMissingFolder = folder.Path("none/new.txt").c_str();
    struct {
        Text name;
        unsigned int flags;
        bool isValid;
        std::vector<unsigned int> messages;
    } const rows[] = {
        {u"", 0, false, {5224}},
        {u"", FileNameAcceptEmpty, true, {}},
        {u"a\\b?c", FileNameCheckName, false, {5225, 5226}},
        {u"a\\b", FileNameCheckWhole, false, {5225, 5226}},
        {u"C:\\a?\\b", FileNameCheckPath, false, {5225}},
        {u"a\\b", FileNameCheckPath, false, {5227}},
        {u"a\\b", FileNameCheckPath | FileNameAcceptRelative, true, {}},
        {inFolder, FileNameCheckName | FileNameCheckPath, true, {}},
        {inMissingFolder, FileNameCheckName | FileNameCheckPath, false, {5215}},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.name));
        NotingDesktop const desktop;
        Text expected;
        for (unsigned int const message : row.messages) {
            ASSERT_FALSE(xLoadString(message).IsEmpty()) << message;
            expected += xLoadString(message);
        }
        EXPECT_EQ(fileIsValidFileName(row.name, row.flags), row.isValid);
        EXPECT_EQ(desktop.boxes.empty() ? Text() : desktop.boxes.back().text, expected);
    }
}

} // namespace
