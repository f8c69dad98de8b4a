// SPDX-License-Identifier: MIT
#include "zeltools/persistence/xfile_find.h"

#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/platform/errors.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

/// What a search shows: names, `/` behind directories, and how FindNextFileW answered.
std::string Listing(CXFileFind& find, char16_t const* pattern) {
    std::string text;
    for (bool hasMore = find.FindFile(pattern); hasMore;) {
        hasMore = find.FindNextFileW();
        if (!find.IsDots()) {
            CXTString<char> name;
            name = static_cast<char16_t const*>(find.GetFileName());
            text += std::string(name) + (find.IsDirectory() ? "/" : "") + (hasMore ? " " : ".");
        }
    }
    return text;
}

TEST(CXFileFind, ShowsTheLastEntryWithFalse) {
    TemporaryFolder const folder;
    folder.Write("b.txt", "12345");
    folder.Write("plain");
    folder.Write("sub/deep");
    folder.Write(".hidden");
    chmod((folder.Native() + "b.txt").c_str(), 0444);
    CXFileFind find;
    EXPECT_EQ(Listing(find, (folder.Path() + u"*").c_str()), ".hidden b.txt plain sub/.");
    EXPECT_FALSE(find.FindNextFileW()); // and the last one stays
    EXPECT_EQ(find.GetFilePath(), (folder.Path() + u"sub\\").c_str());
    EXPECT_EQ(Listing(find, (folder.Path() + u"B.*").c_str()), "b.txt.");
    EXPECT_EQ(find.GetFileLength(), 5U);
    EXPECT_TRUE(find.IsReadOnly());
    EXPECT_FALSE(find.IsNormal());
    EXPECT_TRUE(find.AreFileAttributesSet(XFILE_ATTRIBUTE_READONLY | XFILE_ATTRIBUTE_HIDDEN, false));
    EXPECT_FALSE(find.AreFileAttributesSet(XFILE_ATTRIBUTE_READONLY | XFILE_ATTRIBUTE_HIDDEN, true));
    EXPECT_EQ(Listing(find, (folder.Path() + u"pl*").c_str()), "plain.");
    EXPECT_TRUE(find.IsNormal());
    EXPECT_EQ(Listing(find, (folder.Path() + u".h*").c_str()), ".hidden.");
    EXPECT_TRUE(find.IsHidden());
    find.Close();
    EXPECT_FALSE(find.IsHidden());
    EXPECT_TRUE(find.GetFileName().IsEmpty());
    EXPECT_TRUE(find.GetFilePath().IsEmpty());
}

TEST(CXFileFind, RelativePatternsAndFailures) {
    TemporaryFolder const folder;
    folder.Write("sub/a.txt");
    std::filesystem::current_path(folder.Native());
    CXFileFind find;
    EXPECT_EQ(Listing(find, u"sub\\*.txt"), "a.txt.");
    EXPECT_EQ(find.GetFilePath(), (folder.Path() + u"sub\\a.txt").c_str());
    EXPECT_EQ(Listing(find, u"sub"), "sub/."); // the entry itself, not what is in it
    EXPECT_EQ(find.GetFilePath(), (folder.Path() + u"sub\\").c_str());
    EXPECT_EQ(Listing(find, nullptr), "sub/.");
    EXPECT_FALSE(find.FindFile(u"*.png"));
    EXPECT_EQ(platform::GetLastError(), platform::ErrorFileNotFound);
    EXPECT_FALSE(find.FindNextFileW());
    EXPECT_FALSE(find.FindFile(std::u16string(260, u'a').c_str()));
    EXPECT_EQ(platform::GetLastError(), platform::ErrorBadArguments);
    std::filesystem::current_path("/");
}

} // namespace
