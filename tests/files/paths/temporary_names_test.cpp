// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/temporary_names.h"

#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"

#include <cstdlib>
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
    TemporaryNames() { setenv("TMPDIR", m_folder.Native().c_str(), 1); }
    ~TemporaryNames() override { m_before != nullptr ? setenv("TMPDIR", m_saved.c_str(), 1) : unsetenv("TMPDIR"); }

    Text At(char const* name) const { return m_folder.Path(name).c_str(); }
    Text Folder() const { return m_folder.Path().c_str(); }
    TemporaryFolder const& Disk() const { return m_folder; }

private:
    char const* m_before = std::getenv("TMPDIR");
    std::string m_saved = m_before != nullptr ? m_before : "";
    TemporaryFolder m_folder;
};

TEST_F(TemporaryNames, AreReducedToLettersUnlessKept) {
    EXPECT_EQ(fileCreateTmpName(u"C:\\x\\My Photo-12.png", false, u""), At("MyPhoto.png"));
    EXPECT_EQ(fileCreateTmpName(u"C:\\x\\My Photo-12.png", true, u""), At("My Photo-12.png"));
    EXPECT_EQ(fileCreateTmpName(u"12.png", false, u""), At("tmp.png"));
    EXPECT_EQ(fileCreateTmpName(u"\u6F22\u5B57", false, u""), Folder());
    EXPECT_EQ(fileCreateTmpName(u"C:\\x\\", true, u""), Folder());
    // A folder is joined as it is given, and the name with it.
    EXPECT_EQ(fileCreateTmpName(u"C:\\x\\a 1.png", false, u"Q:\\y_"), u"Q:\\y_a 1.png");
}

TEST_F(TemporaryNames, AreNumberedUntilFree) {
    Disk().Write("a.txt");
    Disk().Write("a1.txt");
    EXPECT_EQ(fileCreateTmpName(u"a.txt", false, u""), At("a2.txt"));
    Disk().Write("work");
    EXPECT_EQ(fileCreateTmpFolder(u"C:\\x\\work", false), At("work1/"));
    EXPECT_EQ(fileCreateTmpFolder(u"deep\\work\\", false), At("deep/work/"));
    EXPECT_FALSE(Disk().Exists("work1"));
}

TEST_F(TemporaryNames, TwoThreadsNeverGetTheSameFolder) {
    std::vector<std::set<std::u16string>> made(4);
    std::vector<std::thread> threads;
    for (auto& mine : made) {
        threads.emplace_back([&mine] {
            for (int count = 0; count < 20; ++count) {
                mine.insert(static_cast<char16_t const*>(fileCreateTmpFolder(u"job", true)));
            }
        });
    }
    std::set<std::u16string> all;
    for (std::size_t index = 0; index < threads.size(); ++index) {
        threads[index].join();
        all.merge(made[index]);
    }
    EXPECT_EQ(all.size(), 80U);
    EXPECT_TRUE(Disk().Exists("job"));
    EXPECT_TRUE(Disk().Exists("job79"));
}

} // namespace
