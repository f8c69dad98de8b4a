// SPDX-License-Identifier: MIT
#include "zeltools/foundation/log_file.h"

#include "tests/support/format_page.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/thrown.h"
#include "zeltools/foundation/application_path.h"
#include "zeltools/foundation/exit_callbacks.h"
#include "zeltools/foundation/log_file_private.h"
#include "zeltools/foundation/start_and_close.h"
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/worker_count.h"
#include "zeltools/process/xsingle_lock.h"

#include <csignal>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

struct Heard {
    unsigned int word;
    std::u16string text;
    bool filtered;
    bool operator==(Heard const&) const = default;
};

/// A log in a folder of its own; the test's thread is the main thread. Nothing stays open or set behind it.
class LogFile : public testing::Test {
protected:
    LogFile() {
        InitQuenbyApplication(nullptr, nullptr, 0, nullptr);
        SetLogLevel(0xF00FF);
    }
    ~LogFile() override {
        SetLogCallback(nullptr, nullptr);
        CloseLogFile();
        CloseQuenbyApplication(0xFFFFFFFF);
    }

    bool Open(unsigned int level = 0xFF, LogFileMode mode = LogFileModeReplace) {
        return SetLogFile(folder.Path("a.log").c_str(), mode, level);
    }

    /// What a log holds in UTF-8, without its mark.
    std::string Text(std::string const& name = "a.log") const {
        std::string text = folder.Read(name);
        EXPECT_EQ(text.substr(0, 2), "\xFF\xFE");
        text.erase(0, 2);
        std::erase(text, '\0'); // every character is of Latin-1
        return text;
    }

    /// What stands between the header and the line of the log's end.
    std::string Lines(std::string const& name = "a.log") const {
        std::string const text = Text(name);
        std::string const rule = "Release Mode\n*************************\n";
        std::size_t const header = text.find(rule);
        std::size_t const first = header == std::string::npos ? 0 : header + rule.size();
        return text.substr(first, text.find("Log time : ") - first);
    }

    void Listen() { SetLogCallback(&Keep, &heard); }

    static void Keep(unsigned int word, CXTString<char16_t> text, bool filtered, void* user) {
        static_cast<std::vector<Heard>*>(user)->push_back({word, text.GetConstBuffer(), filtered});
    }

    TemporaryFolder folder;
    std::vector<Heard> heard;
};

/// A log without what differs from one to the next: the time in its header and the duration at its end.
std::string WithoutTimes(std::string text) {
    std::size_t const time = text.find('(') + 1;
    text.erase(time, text.find(')', time) - time);
    std::size_t const duration = text.rfind(" : ") + 3;
    text.erase(duration, text.find_first_not_of("0123456789", duration) - duration);
    return text;
}

TEST_F(LogFile, IsWhatItsFormatPageShows) {
    SetApplicationPath((folder.Path() + u"viewer").c_str());
    ASSERT_TRUE(Open());
    WriteToLogFile(u"Loading %s\n", u"wood.png");
    LogFileAddTab(true);
    WriteToLogFile("%d textures\n", 3);
    EXPECT_EQ(LogFileAddTab(false), 0u);
    EXPECT_TRUE(CloseLogFile());
    EXPECT_FALSE(CloseLogFile());
    folder.Write("page.log", support::HexExample("log"));
    EXPECT_EQ(WithoutTimes(Text()), WithoutTimes(Text("page.log")));
}

TEST_F(LogFile, ModesReplaceAppendAndTakeAFreeName) {
    ASSERT_TRUE(Open());
    WriteToLogFile(u"first\n");
    EXPECT_FALSE(SetLogFile(folder.Path("b.log").c_str(), LogFileModeReplace, 3)); // one is open
    EXPECT_FALSE(folder.Exists("b.log"));
    EXPECT_EQ(SetLogLevel(0xF00FF), 0xFFu);
    CloseLogFile();
    std::string const before = folder.Read("a.log");
    ASSERT_TRUE(Open(0xFF, LogFileModeAppend));
    CloseLogFile();
    std::string const after = folder.Read("a.log");
    EXPECT_EQ(after.substr(0, before.size()), before);
    EXPECT_EQ(after.substr(before.size(), 6), std::string("\n\0\n\0*\0", 6)); // no second mark
    ASSERT_TRUE(Open(0xFF, LogFileModeNew));
    CloseLogFile();
    EXPECT_EQ(folder.Read("a.log"), after);
    EXPECT_EQ(Lines("a(1).log"), "");
    folder.Write("empty.log");
    ASSERT_TRUE(SetLogFile(folder.Path("empty.log").c_str(), LogFileModeAppend, 0xFF));
    CloseLogFile();
    EXPECT_EQ(folder.Read("empty.log").substr(0, 4), std::string("\xFF\xFE\n\0", 4));
    ASSERT_TRUE(Open());
    CloseLogFile();
    EXPECT_EQ(Lines(), "");

    EXPECT_FALSE(Open(0x42, static_cast<LogFileMode>(3)));
    EXPECT_EQ(SetLogLevel(0xF00FF), 0x42u); // the level is taken all the same
    EXPECT_FALSE(SetLogFile((folder.Path() + u"none\\a.log").c_str(), LogFileModeReplace, 0xFF));
    EXPECT_FALSE(CloseLogFile());
    EXPECT_TRUE(Open()); // and nothing is left of the failures
}

TEST_F(LogFile, BareNameLiesInTheUsersDataFolder) {
    ScopedVariable const data("XDG_DATA_HOME", folder.Native());
    ASSERT_TRUE(SetLogFile(u"bare.log", LogFileModeReplace, 0xFF));
    CloseLogFile();
    std::string const name = std::string(XCW2A(GetApplicationName(true)));
    EXPECT_TRUE(folder.Exists("Quenby/" + name + "/bare.log"));
}

TEST_F(LogFile, LevelsFilter) {
    ASSERT_TRUE(Open(5));
    WriteToLogFile(5, u"five\n");
    WriteToLogFile(6, u"six\n");
    WriteToLogFile(0x100, static_cast<char16_t const*>(nullptr));
    WriteToLogFile("\xC3\xA9%S\n", u"");
    EXPECT_TRUE(IsLogFileEnabled());
    SetLogLevel(LogLevelNoFile | 0xF00FF);
    EXPECT_TRUE(IsLogFileEnabled()); // it counts as active all the same
    WriteToLogFile(u"no file\n");
    SetLogLevel(LogLevelOff | 0xF00FF);
    EXPECT_FALSE(IsLogFileEnabled());
    WriteToLogFile(u"off\n");
    SetLogLevel(0xF0000);
    WriteToLogFile(0, u"%s\n", std::u16string(5000, u'x').c_str());
    WriteToLogFile(0, "%s\n", std::string(600, 'y').c_str());
    WriteToLogFile(0, "");
    EXPECT_EQ(Lines(), "five\n\xE9\n" + std::string(5000, 'x') + "\n" + std::string(600, 'y') + "\n");
    CloseLogFile();
    EXPECT_FALSE(IsLogFileEnabled());
    SetLogLevel(LogLevelNoFile);
    EXPECT_TRUE(IsLogFileEnabled()); // even without a file
}

TEST_F(LogFile, IndentationIsTheThreadsUnlessTheMainThreadHasOne) {
    EXPECT_EQ(LogFileAddTab(true), 0u);
    ASSERT_TRUE(Open());
    auto const onOther = [](auto work) { std::thread(work).join(); };
    onOther([&] {
        LogFileAddTab(true);
        EXPECT_EQ(LogFileAddTab(true), 2u);
        WriteToLogFile(u"other\n");
        WriteToLogFile(0, u"not indented\n");
        EXPECT_EQ(LogFileAddTab(false), 1u);
        EXPECT_EQ(LogFileAddTab(false), 0u);
        EXPECT_EQ(LogFileAddTab(false), 0u);
    });
    WriteToLogFile(u"main\n");
    LogFileAddTab(true);
    onOther([] {
        WriteToLogFile(u"takes the main thread's\n");
        for (int i = 0; i < 4; ++i)
            LogFileAddTab(true);
        SetLogLevel(0x300FF);
        WriteToLogFile(u"its own is too deep\n");
        WriteToLogFile(0, u"deep\n");
        SetLogLevel(0xFF);
        LogFileAddTab(false);
    });
    WriteToLogFile(u"the limit is 0 now\n");
    LogFileAddTab(false);
    WriteToLogFile(u"and this has none\n");
    EXPECT_EQ(Lines(), "\t\tother\nnot indented\nmain\n\ttakes the main thread's\ndeep\nand this has none\n");
}

TEST_F(LogFile, CallbackHearsEveryMessageAndTakesThePlaceOfTheFile) {
    ASSERT_TRUE(Open(5));
    Listen();
    WriteToLogFile(6, u"%s %d\n", u"six", 6);
    WriteToLogFile(5, "%s \xC3\xA9\n", "five");
    WriteToLogFile(u"wide");
    WriteToLogFile("narrow");
    WriteToLogFile(LogMessageIndented | 2, static_cast<char const*>(nullptr));
    SetLogLevel(LogLevelOff | 0xF0005);
    WriteToLogFile(1, u"off");
    EXPECT_TRUE(IsLogFileEnabled());
    SetLogLevel(0xF0001);
    LogFileAddTab(true);
    LogFileAddTab(true); // deeper than 1: not active for this thread, so the file gets the line too
    WriteToLogFile(0, u"both\n");
    CloseLogFile();
    ASSERT_EQ(heard.size(), 8u);
    EXPECT_TRUE(heard.back().text.starts_with(u"Log time : "));
    heard.pop_back();
    EXPECT_EQ(heard, (std::vector<Heard>{{6, u"six 6\n", true},
                                         {5, u"five \u00E9\n", false},
                                         {0x100, u"wide", false},
                                         {0x100, u"narrow", false},
                                         {0x102, u"", false},
                                         {1, u"off", true},
                                         {0, u"both\n", false}}));
    EXPECT_EQ(Lines(), "both\n\t\t");
    heard.clear();
    ASSERT_TRUE(Open());
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_TRUE(heard[0].text.starts_with(u"\n\n*****"));
    logCallbackInfo const before = SetLogCallback(nullptr, nullptr);
    EXPECT_EQ(before.callback, &Keep);
    EXPECT_EQ(before.user, &heard);
    EXPECT_EQ(folder.Read("a.log"), "");
}

TEST_F(LogFile, LinesOfSixteenThreadsDoNotMix) {
    ASSERT_TRUE(Open());
    constexpr int threads = 16;
    constexpr int rounds = 100;
    std::vector<std::jthread> writers;
    for (int id = 0; id < threads; ++id) {
        writers.emplace_back([id] {
            std::string const text(static_cast<std::size_t>(20 + id * 5), static_cast<char>('a' + id));
            for (int i = 0; i < rounds; ++i) {
                LogFileAddTab(true);
                WriteToLogFile("%s %d\n", text.c_str(), i);
                LogFileAddTab(false);
                LogLock(true);
                WriteToLogFile(0, "%s ", text.c_str());
                WriteToLogFile(0, u"both\n");
                LogLock(false);
            }
        });
    }
    writers.clear(); // waits for each
    std::map<std::string, int> lines;
    std::istringstream all(Lines());
    for (std::string line; std::getline(all, line);)
        ++lines[line];
    EXPECT_EQ(lines.size(), std::size_t(threads * (rounds + 1)));
    EXPECT_EQ(lines["\t" + std::string(20, 'a') + " 99"], 1);
    EXPECT_EQ(lines[std::string(95, 'p') + " both"], rounds);
}

TEST_F(LogFile, LastLineBeforeAKillIsInTheFile) {
    pid_t const child = fork();
    if (child == 0) {
        Open();
        for (int i = 0; i < 500; ++i)
            WriteToLogFile(u"line %d\n", i);
        kill(getpid(), SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_TRUE(Text().ends_with("line 498\nline 499\n"));
    EXPECT_TRUE(Open()); // whoever was killed holds nothing
}

TEST_F(LogFile, FullDiskThrowsAndLeavesNothingHeld) {
    EXPECT_FALSE(SetLogFile(u"\\dev\\full", LogFileModeReplace, 0xFF)); // the header already finds no room
    ASSERT_TRUE(Open());
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit unlimited{};
    getrlimit(RLIMIT_FSIZE, &unlimited);
    rlimit const small{4096, unlimited.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    auto const fill = [] {
        for (int i = 0; i < 1000; ++i)
            WriteToLogFile(u"%s\n", std::u16string(100, u'x').c_str());
    };
    EXPECT_NE(support::Thrown(fill), "nothing");
    detail::TraceToLog(u"the library's own lines are lost quietly\n");
    std::thread([] {
        LogLock(true);
        LogLock(false);
    }).join();
    EXPECT_TRUE(CloseLogFile());
    setrlimit(RLIMIT_FSIZE, &unlimited);
    EXPECT_TRUE(Open());
}

TEST_F(LogFile, OpensAndClosesWhileOthersLogUnderTheApplicationLock) {
    std::atomic<bool> end{false};
    std::thread underLock([&] {
        while (!end) {
            CXSingleLock const hold(&ApplicationLock(), true);
            WriteToLogFile(u"traced by a close callback\n");
            IsLogFileEnabled();
        }
    });
    int closed = 0;
    for (int i = 0; i < 100; ++i) {
        Open(3); // asks for the application's name, which that lock guards
        LogFileAddTab(true);
        closed += CloseLogFile();
    }
    end = true;
    underLock.join();
    EXPECT_EQ(closed, 100);
}

TEST_F(LogFile, StartOpensItAndCloseEndsItBeforeTheExitCallbacks) {
    CloseQuenbyApplication(0xFFFFFFFF);
    InitQuenbyApplication(nullptr, nullptr, 0, folder.Path("a.log").c_str());
    InitQuenbyApplication(nullptr, nullptr, 0, folder.Path("second.log").c_str());
    AddApplicationExitCallback([] { WriteToLogFile(u"too late\n"); }, 0);
    CloseQuenbyApplication(0xFFFFFFFF);
    EXPECT_EQ(Lines(), "InitQuenbyApplication\n" + std::to_string(OMPGetMaxThreadCount(true)) +
                           " core will be used by default (use OMPSetMaxThreadCount, or define OMP_NUM_THREADS under "
                           "linux, to change the behavior)\n");
    EXPECT_TRUE(WithoutTimes(Text()).ends_with(")\nLog time :  ms\n"));
    EXPECT_FALSE(folder.Exists("second.log"));
    Listen();
    InitZelTools(0);
    ASSERT_EQ(heard.size(), 1u);
    AddApplicationExitCallback([] { WriteToLogFile(u"heard\n"); }, 0);
    CloseZelTools(0);
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[1].text, u"heard\n");
}

} // namespace
