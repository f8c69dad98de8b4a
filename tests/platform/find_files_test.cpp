// SPDX-License-Identifier: MIT
#include "zeltools/platform/find_files.h"

#include "tests/support/temporary_folder.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/find_pattern.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <vector>

using namespace platform;

namespace {

// The name expressions of the original file system: what each combination of wildcard and dot comes down to.
TEST(FindPattern, Matches) {
    struct {
        char16_t const* pattern;
        char16_t const* name;
        bool matches;
    } const rows[] = {{u"*", u"README", true},
                      {u"*.*", u"README", true},
                      {u"*.png", u"A.PNG", true},
                      {u"*.png", u"a.png.bak", false},
                      {u"*.", u"README", true},
                      {u"*.", u"a.txt", false},
                      {u"a.*", u"a", true},
                      {u"a.*", u"ab", false},
                      {u"a?.txt", u"a.txt", true},
                      {u"?", u"", true},
                      {u"a?b", u"ab", false},
                      {u"*a*b", u"xxaxxbc", false},
                      {u"\u00C9*", u"\u00E9t\u00E9", true},
                      {u"", u"a", false}};
    for (auto const& row : rows) {
        EXPECT_EQ(FindPattern(row.pattern).Matches(row.name), row.matches)
            << testing::PrintToString(row.pattern) << ' ' << testing::PrintToString(row.name);
    }
}

TEST(FindPattern, ManyStarsTakeNoLongTime) {
    std::u16string pattern;
    for (int i = 0; i < 60; ++i) {
        pattern += u"*a";
    }
    EXPECT_FALSE(FindPattern(pattern + u"b").Matches(std::u16string(250, u'a')));
}

std::vector<std::u16string> Find(std::u16string const& pattern) {
    std::vector<std::u16string> names;
    FindData entry;
    HANDLE const search = FindFirstFileW(pattern.c_str(), entry);
    if (search == InvalidHandle) {
        return names;
    }
    do {
        names.push_back(entry.name);
    } while (FindNextFileW(search, entry));
    EXPECT_EQ(GetLastError(), ErrorNoMoreFiles);
    EXPECT_TRUE(FindClose(search));
    return names;
}

using Names = std::vector<std::u16string>;

TEST(FindFiles, GivesEveryNameInOrder) {
    TemporaryFolder const folder;
    for (char const* const name : {"b.TXT", "a.txt", "B.txt", "no extension", ".hidden", "c:d", "Zeta/x"}) {
        folder.Write(name, "12345");
    }
    EXPECT_EQ(Find(folder.Path() + u"*"),
              (Names{u".", u"..", u".hidden", u"a.txt", u"B.txt", u"b.TXT", u"c\uF03Ad", u"no extension", u"Zeta"}));
    EXPECT_EQ(Find(folder.Path() + u"*.txt"), (Names{u"a.txt", u"B.txt", u"b.TXT"}));
    EXPECT_EQ(Find(folder.Path() + u"a.txt"), (Names{u"a.txt"}));
    EXPECT_EQ(Find(u"\\*").front().front() == u'.' && Find(u"\\*").front().size() < 3, false); // no dots at the root
}

TEST(FindFiles, FailuresAndDeletedEntries) {
    TemporaryFolder const folder;
    FindData entry;
    entry.name = u"untouched";
    EXPECT_EQ(FindFirstFileW(folder.Path().c_str(), entry), InvalidHandle); // no pattern behind the backslash
    EXPECT_EQ(GetLastError(), ErrorFileNotFound);
    EXPECT_EQ(FindFirstFileW(u"Q:\\*", entry), InvalidHandle);
    EXPECT_EQ(GetLastError(), ErrorPathNotFound);
    EXPECT_EQ(entry.name, u"untouched");
    EXPECT_FALSE(FindClose(InvalidHandle));

    for (char const* const name : {"1", "2", "3"}) {
        folder.Write(name);
    }
    HANDLE const search = FindFirstFileW((folder.Path() + u"?").c_str(), entry);
    while (entry.name != u"1" && FindNextFileW(search, entry)) {
    }
    unlink((folder.Native() + "2").c_str());
    EXPECT_TRUE(FindNextFileW(search, entry));
    EXPECT_EQ(entry.name, u"3");
    EXPECT_FALSE(FindNextFileW(search, entry));
    FindClose(search);
}

} // namespace
