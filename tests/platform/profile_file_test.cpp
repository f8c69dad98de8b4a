// SPDX-License-Identifier: MIT
#include "zeltools/platform/profile_file.h"

#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/platform/errors.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace platform;

namespace {

struct Row {
    char16_t const* section;
    char16_t const* entry;
    char16_t const* value;
};

class ProfileFile : public testing::Test {
protected:
    std::u16string Get(std::u16string_view section, std::u16string_view entry) const {
        std::u16string value = u"<none>";
        GetPrivateProfileStringW(section, entry, value, path.c_str());
        return value;
    }
    bool Set(char16_t const* section, char16_t const* entry, char16_t const* value) const {
        return WritePrivateProfileStringW(section, entry, value, path.c_str());
    }

    TemporaryFolder folder;
    std::u16string const path = folder.Path("a.ini");
};

TEST_F(ProfileFile, ReadsWhatPeopleWrite) {
    folder.Write("a.ini",
                 "lost=1\r\n; [comment]\r\n[ Wind\xC3\x96w ] tail\r\n Col = 3 = 4 \r\n;Col=5\r\ncol=6\r\n"
                 "Q=\" kept \"\r\nS='x'\r\nH=\"open\r\nnothing\r\n=noname\r\n[Empty\r\n\r\n[WIND\xC3\x96W]\r\nlate=1");
    Row const rows[] = {
        {u"windöw", u"COL", u"3 = 4"},   {u"WINDÖW", u"q", u" kept "}, {u"windöw", u"s", u"x"},
        {u"windöw", u"h", u"\"open"},    {u"windöw", u"", u"noname"},  {u"windöw", u"nothing", u"<none>"},
        {u"windöw", u"late", u"<none>"}, // the first section of the name counts
        {u"empty", u"a", u"<none>"},     {u"", u"lost", u"<none>"},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(Get(row.section, row.entry), row.value) << testing::PrintToString(row.entry);
    }
    // A change touches its own line only.
    std::string before = folder.Read("a.ini");
    std::filesystem::permissions(folder.Native() + "a.ini", std::filesystem::perms(0600));
    EXPECT_TRUE(Set(u"WINDÖW", u"s", u"y "));
    EXPECT_EQ(std::filesystem::status(folder.Native() + "a.ini").permissions(), std::filesystem::perms(0600));
    before.replace(before.find("S='x'"), 5, "s=\"y \"");
    EXPECT_EQ(folder.Read("a.ini"), before + "\r\n");
}

TEST_F(ProfileFile, WritesWhatItReads) {
    EXPECT_TRUE(Set(u"A", u"one", u"1"));
    EXPECT_TRUE(Set(u"B", u"two", u"\"2\""));
    EXPECT_TRUE(Set(u"a", u"three", u" blank "));
    EXPECT_EQ(folder.Read("a.ini"), "[A]\none=1\nthree=\" blank \"\n[B]\ntwo=\"\"2\"\"\n");
    EXPECT_EQ(Get(u"b", u"two"), u"\"2\"");
    EXPECT_EQ(Get(u"a", u"three"), u" blank ");
    EXPECT_TRUE(Set(u"A", u"ONE", nullptr));
    EXPECT_TRUE(Set(u"A", u"ONE", nullptr)); // gone already
    EXPECT_TRUE(Set(u"b", nullptr, nullptr));
    EXPECT_EQ(folder.Read("a.ini"), "[A]\nthree=\" blank \"\n");
    Row const refused[] = {{u"a]b", u"x", u""}, {u" ", u"x", u""},  {u"a", u"x=y", u""},     {u"a", u"", u""},
                           {u"a", u";x", u""},  {u"a", u"[x", u""}, {u"a", u"x", u"1\n[b]"}, {nullptr, u"x", u""}};
    for (Row const& row : refused) {
        SetLastError(0);
        EXPECT_FALSE(Set(row.section, row.entry, row.value));
        EXPECT_EQ(GetLastError(), ErrorInvalidParameter);
    }
    EXPECT_EQ(folder.Read("a.ini"), "[A]\nthree=\" blank \"\n");
    EXPECT_FALSE(WritePrivateProfileStringW(u"A", u"b", u"c", folder.Path("absent/b.ini").c_str()));
    EXPECT_EQ(GetLastError(), ErrorPathNotFound);
    EXPECT_FALSE(folder.Exists("a.ini.tmp"));
}

TEST_F(ProfileFile, KeepsUtf16AndBytesThatAreNoText) {
    folder.Write("a.ini", std::string("\xFF\xFE[\0A\0]\0\n\0b\0=\0\xE9\0\n\0", 18));
    EXPECT_EQ(Get(u"a", u"b"), u"é");
    EXPECT_TRUE(Set(u"a", u"c", u"d"));
    EXPECT_EQ(folder.Read("a.ini"), std::string("\xFF\xFE[\0A\0]\0\n\0b\0=\0\xE9\0\n\0c\0=\0d\0\n\0", 26));
    folder.Write("a.ini", "[A]\nlatin=\xE9\n");
    EXPECT_TRUE(Set(u"A", u"c", u"d"));
    EXPECT_EQ(folder.Read("a.ini"), "[A]\nlatin=\xE9\nc=d\n");
    folder.Write("a.ini", std::string(MaxProfileBytes + 1, ' '));
    EXPECT_FALSE(Set(u"A", u"c", u"d"));
    EXPECT_EQ(GetLastError(), ErrorFileTooLarge);
}

TEST_F(ProfileFile, WritersKeepEachOthersEntries) {
    for (int writer = 0; writer < 4; ++writer) {
        if (fork() == 0) {
            bool isWritten = true;
            for (int i = 0; i < 10; ++i) {
                char16_t const name[] = {static_cast<char16_t>(u'a' + writer), static_cast<char16_t>(u'0' + i), 0};
                isWritten = Set(u"S", name, name) && isWritten;
            }
            _exit(isWritten ? 0 : 1);
        }
    }
    for (int writer = 0; writer < 4; ++writer) {
        int status = -1;
        wait(&status);
        EXPECT_EQ(status, 0);
    }
    for (char16_t const* const name : {u"a0", u"a9", u"b0", u"b9", u"c5", u"d0", u"d9"}) {
        EXPECT_EQ(Get(u"S", name), name);
    }
}

TEST_F(ProfileFile, UsersOwnProfile) {
    ScopedVariable const configuration("XDG_CONFIG_HOME", folder.Native() + "config");
    std::u16string value;
    EXPECT_FALSE(GetProfileStringW(u"a", u"b", value));
    EXPECT_FALSE(folder.Exists("config"));
    EXPECT_TRUE(WriteProfileStringW(u"a", u"b", u"c"));
    EXPECT_TRUE(GetProfileStringW(u"a", u"b", value));
    EXPECT_EQ(value, u"c");
    EXPECT_TRUE(folder.Exists("config/zeltools/profile.ini"));
}

} // namespace
