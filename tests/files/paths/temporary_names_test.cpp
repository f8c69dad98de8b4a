// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/temporary_names.h"

#include "tests/support/printers.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

using Text = CXTString<char16_t>;

// Lets the temporary folder of the process be one of the test's own.
class TemporaryNames : public testing::Test {
protected:
    Text At(char const* name) const { return disk.Path(name).c_str(); }

    TemporaryFolder disk;
    ScopedVariable const variable{"TMPDIR", disk.Native()};
};

TEST_F(TemporaryNames, AreReducedToLettersUnlessKept) {
    EXPECT_EQ(fileCreateTmpName(u"C:\\x\\My Photo-12.png", false, u""), At("MyPhoto.png"));
    EXPECT_EQ(fileCreateTmpName(u"C:\\x\\My Photo-12.png", true, u""), At("My Photo-12.png"));
    EXPECT_EQ(fileCreateTmpName(u"12.png", false, u""), At("tmp.png"));
    EXPECT_EQ(fileCreateTmpName(u"\u6F22\u5B57", false, u""), disk.Path().c_str());
    EXPECT_EQ(fileCreateTmpName(u"C:\\x\\", true, u""), disk.Path().c_str());
    // A folder is joined as it is given, and the name with it.
    EXPECT_EQ(fileCreateTmpName(u"C:\\x\\a 1.png", false, u"Q:\\y_"), u"Q:\\y_a 1.png");
}

TEST_F(TemporaryNames, AreNumberedUntilFree) {
    disk.Write("a.txt");
    disk.Write("a1.txt");
    EXPECT_EQ(fileCreateTmpName(u"a.txt", false, u""), At("a2.txt"));
    disk.Write("work");
    EXPECT_EQ(fileCreateTmpFolder(u"C:\\x\\work", false), At("work1/"));
    EXPECT_EQ(fileCreateTmpFolder(u"deep\\work\\", false), At("deep/work/"));
    EXPECT_FALSE(disk.Exists("work1"));
}

TEST_F(TemporaryNames, TwoThreadsNeverGetTheSameFolder) {
    std::vector<std::set<std::u16string>> made(4);
    std::vector<std::thread> threads;
    for (auto& mine : made) {
        threads.emplace_back([&mine] {
            for (int count = 0; count < 20; ++count)
                mine.insert(static_cast<char16_t const*>(fileCreateTmpFolder(u"job", true)));
        });
    }
    std::set<std::u16string> all;
    for (std::size_t index = 0; index < threads.size(); ++index) {
        threads[index].join();
        all.merge(made[index]);
    }
    EXPECT_EQ(all.size(), 80U);
    EXPECT_TRUE(disk.Exists("job"));
    EXPECT_TRUE(disk.Exists("job79"));
}

} // namespace
