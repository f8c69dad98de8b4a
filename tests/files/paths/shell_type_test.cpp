// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/shell_type.h"

#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/foundation/thread_language.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

TEST(ShellGetType, FallsBackToTheExtension) {
    SetThreadLanguage(1033);
    EXPECT_EQ(ShellGetType(u"\\no\\such\\a.NoSuchType"), u"NOSUCHTYPE");
    EXPECT_EQ(ShellGetType(u"http://host/a.nosuch?q=1.gif"), u"NOSUCH"); // the query says nothing
    EXPECT_EQ(ShellGetType(u"a."), u"File");
    EXPECT_EQ(ShellGetType(u""), u"File");
}

// The folders of types are settled at the first question of a process, so a new one asks.
TEST(ShellGetTypeDeathTest, AnswersWithoutADesktop) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const ask = [] {
        SetThreadLanguage(1033);
        setenv("XDG_DATA_DIRS", "/no/such", 1);
        setenv("XDG_DATA_HOME", "/no/such", 1);
        bool const isRight = ShellGetType(u"a.Jpg") == u"JPG" && ShellGetType(u"a.obj") == u"OBJ" &&
                             ShellGetType(u"\\") == u"Folder" && ShellGetType(u"\\tmp") == u"Folder";
        std::_Exit(isRight ? 0 : 1);
    };
    EXPECT_EXIT(ask(), testing::ExitedWithCode(0), "");
}

TEST(ShellGetType, AsksTheDesktop) {
    if (!std::filesystem::exists("/usr/share/mime/mime.cache"))
        GTEST_SKIP() << "this machine has no descriptions of types";
    CXTString<char16_t> const picture = ShellGetType(u"C:\\no\\such\\a.JPG");
    EXPECT_GE(picture.Find(u"JPEG"), 0);
    EXPECT_LT(ShellGetType(u"a.3DS").Find(u"Nintendo"), 0); // a name of two types
    TemporaryFolder const folder;
    folder.Write("a.jpg/inside");
    EXPECT_NE(ShellGetType(folder.Path("a.jpg").c_str()), picture); // a directory, whatever its name says

    std::vector<std::jthread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&picture] {
            for (int round = 0; round < 100; ++round)
                ASSERT_EQ(ShellGetType(u"b.jpg"), picture);
        });
}

} // namespace
