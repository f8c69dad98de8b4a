// SPDX-License-Identifier: MIT
#include "zeltools/files/io_options.h"

#include "tests/support/noting_desktop.h"
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/thrown.h"
#include "zeltools/foundation/application_preferences.h"
#include "zeltools/foundation/application_product_name.h"
#include "zeltools/foundation/start_and_close.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

using Wide = CXTString<char16_t>;

IoOptionsFlags Flag(unsigned int bits) {
    return static_cast<IoOptionsFlags>(bits);
}

TEST(IoOptions, LogKeepsWhatIsAddedWhileItIsOn) {
    EnablePreferencesSaving(false); // the user's own stay out of the test
    NotingDesktop const desktop;
    CIoOptions options(false);
    options.DisplayLog(0, nullptr);
    EXPECT_TRUE(desktop.boxes.empty()); // nothing to show
    options.AddLogInfo(IoLogInfo::Warning, u"one");
    options.SetFlag(IoOptionsNoLog, true);
    EXPECT_FALSE(options.IsLogEnabled());
    options.AddLogInfo(IoLogInfo::Warning, u"lost");
    options.AddLogInfo(static_cast<IoLogInfo::loglevel>(-1), u"lost, so its level matters to nobody");
    options.SetFlag(IoOptionsShowLog, true);
    EXPECT_TRUE(options.IsLogEnabled());
    options.AddLogInfo(IoLogInfo::Error, static_cast<unsigned int>(-1), u"C:\\a\\b.tga");
    EXPECT_EQ(support::Thrown([&] { options.AddLogInfo(static_cast<IoLogInfo::loglevel>(-1), u"two"); }), "argument");
    // Another thread can log after that, and many at once.
    std::vector<std::jthread> workers;
    for (int i = 0; i < 4; ++i) {
        workers.emplace_back([&] {
            for (int line = 0; line < 100; ++line)
                options.AddLogInfo(IoLogInfo::Plain, u"x");
        });
    }
    workers.clear(); // waits for each
    options.DisplayLog(0, nullptr);
    ASSERT_EQ(desktop.boxes.size(), 1u);
    Wide const& shown = desktop.boxes[0].text;
    EXPECT_EQ(shown.Find(u"one\nCan't open the file b.tga.\n"), 0);
    EXPECT_EQ(shown.Right(4), u"\nx\nx");
    EXPECT_EQ(shown.Find(u"lost"), -1);
}

/// The display options that a new operation starts from.
unsigned int StartingDisplay() {
    CIoOptions options(false);
    options.SetFlag(IoOptionsKeepDisplay, true);
    unsigned int bits = 0;
    for (unsigned int bit = 0x20000; bit != 0; bit <<= 1)
        bits |= options.IsFlagSet(Flag(bit)) ? bit : 0;
    return bits;
}

void UseDisplay(unsigned int bits) {
    CIoOptions options(false);
    options.SetFlag(IoOptionsKeepDisplay, true);
    options.SetFlag(Flag(0xFFFE0000), false); // what was remembered
    options.SetFlag(Flag(bits), true);
}

/// Runs in a process of its own, whose first operation reads the preferences.
[[noreturn]] void StartAndLeave(std::string const& folder, unsigned int expected, unsigned int next, bool closes) {
    setenv("XDG_DATA_HOME", folder.c_str(), 1);
    SetInternalProductName(u"Catalogue", 0, true);
    if (closes)
        InitQuenbyApplication(nullptr, nullptr, 0, nullptr);
    bool const isExpected = StartingDisplay() == expected;
    UseDisplay(next);
    { CIoOptions const without(false); } // no display option to remember
    bool const isKept = StartingDisplay() == next;
    if (closes) {
        CloseQuenbyApplication(AppCloseFreeTables);
        setenv("XDG_DATA_HOME", "/nowhere", 1); // what follows writes nothing more
    }
    std::exit(isExpected && isKept ? 0 : 1);
}

TEST(IoOptionsDeathTest, DisplayOptionsOutliveTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // A folder that each of the processes finds, since each runs this test from its beginning.
    static TemporaryFolder* const own = getenv("ZEL_TEST_FOLDER") ? nullptr : new TemporaryFolder;
    if (own != nullptr)
        setenv("ZEL_TEST_FOLDER", own->Native().c_str(), 1);
    std::string const folder = getenv("ZEL_TEST_FOLDER");
    EXPECT_EXIT(StartAndLeave(folder, 0, 0x60000, true), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(StartAndLeave(folder, 0x60000, 0x80000000, false), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(StartAndLeave(folder, 0x80000000, 0x80000000, false), testing::ExitedWithCode(0), "");
    if (own != nullptr) {
        int files = 0;
        for (auto const& entry : std::filesystem::recursive_directory_iterator(folder))
            files += entry.path().filename() == "Catalogueio.prefs" ? 1 : 0;
        EXPECT_EQ(files, 1);
        delete own;
    }
}

} // namespace
