// SPDX-License-Identifier: MIT
#include "zeltools/foundation/log_file.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

struct Heard {
    unsigned int word;
    std::u16string text;
    bool filtered;
    bool operator==(Heard const&) const = default;
};

/// A callback that keeps what it hears.
class LogCallbackTest : public testing::Test {
protected:
    LogCallbackTest() {
        SetLogLevel(0xFF);
        SetLogCallback(&Keep, this);
    }
    ~LogCallbackTest() override {
        SetLogCallback(nullptr, nullptr);
        SetLogLevel(0xFF);
    }
    static void Keep(unsigned int word, CXTString<char16_t> text, bool filtered, void* user) {
        static_cast<LogCallbackTest*>(user)->heard.push_back({word, text.GetConstBuffer(), filtered});
    }
    std::vector<Heard> heard;
};

TEST_F(LogCallbackTest, HearsEveryMessageAndWhetherItIsFiltered) {
    EXPECT_TRUE(IsLogFileEnabled());
    SetLogLevel(5);
    WriteToLogFile(6, u"%s %d\n", u"six", 6);
    WriteToLogFile(5, "%s \xC3\xA9\n", "five");
    WriteToLogFile(u"wide");
    WriteToLogFile("narrow");
    WriteToLogFile(LogMessageIndented | 2, static_cast<char16_t const*>(nullptr));
    SetLogLevel(LogLevelOff | 5);
    WriteToLogFile(0, u"off");
    EXPECT_EQ(heard, (std::vector<Heard>{{6, u"six 6\n", true},
                                         {5, u"five \u00E9\n", false},
                                         {0x100, u"wide", false},
                                         {0x100, u"narrow", false},
                                         {0x102, u"", false},
                                         {0, u"off", true}}));
}

} // namespace
