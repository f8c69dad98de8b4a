// SPDX-License-Identifier: MIT
#include "zeltools/foundation/start_and_close.h"

#include "tests/support/printers.h"
#include "zeltools/files/plugins_directory.h"
#include "zeltools/foundation/application_path.h"
#include "zeltools/foundation/exit_callbacks.h"
#include "zeltools/process/custom_thread.h"

#include <csignal>
#include <gtest/gtest.h>
#include <vector>

namespace {

std::vector<int> calls;

/// Leaves nothing started behind, whatever a test did.
class StartAndClose : public testing::Test {
protected:
    StartAndClose() { calls.clear(); }
    ~StartAndClose() override { CloseQuenbyApplication(0xFFFFFFFF); }
};

TEST_F(StartAndClose, HandlersAreReplacedAndPutBackAsTheyWere) {
    static std::sig_atomic_t volatile caught;
    caught = 0;
    auto const mine = [](int signal) { caught = signal; };
    std::signal(SIGFPE, mine);
    std::signal(SIGILL, SIG_DFL);
    InitQuenbyApplication(nullptr, nullptr, AppInitSignals, nullptr);
    for (int const signal : {SIGSEGV, SIGFPE, SIGILL}) {
        struct sigaction installed {};
        sigaction(signal, nullptr, &installed);
        EXPECT_NE(installed.sa_handler, SIG_DFL);
        EXPECT_NE(installed.sa_handler, static_cast<void (*)(int)>(mine));
    }
    CloseQuenbyApplication(AppCloseSignals);
    EXPECT_EQ(std::signal(SIGILL, SIG_DFL), SIG_DFL);
    std::raise(SIGFPE);
    EXPECT_EQ(caught, SIGFPE);
    std::signal(SIGFPE, SIG_DFL);
}

TEST_F(StartAndClose, CountedStartsCloseWithTheLast) {
    InitZelTools(0);
    InitZelTools(ZelToolsChainResources);
    AddApplicationExitCallback([] { calls.push_back(1); }, 0);
    CloseZelTools(0);
    EXPECT_TRUE(calls.empty());
    CloseZelTools(0);
    EXPECT_EQ(calls, std::vector<int>{1});
    CloseZelTools(0); // one too many closes nothing
    InitZelTools(0);
    AddApplicationExitCallback([] { calls.push_back(2); }, 0);
    CloseZelTools(0);
    EXPECT_EQ(calls, (std::vector<int>{1, 2}));
}

TEST_F(StartAndClose, PluginsStandBesideTheApplicationThatWasStarted) {
    CXTString<char16_t> const own = GetApplicationPath(true) + u"Plugins\\";
    for (int start = 0; start < 2; ++start) { // the first close forgets the folder
        InitQuenbyApplication(nullptr, u"\\tmp\\host", 0, nullptr);
        SetApplicationPath(u"\\usr\\host");
        EXPECT_EQ(GetPluginsDirectory(), u"\\tmp\\Plugins\\");
        CloseQuenbyApplication(AppCloseFreeTables);
        EXPECT_EQ(GetPluginsDirectory(), own);
    }
}

using StartAndCloseDeath = StartAndClose;

// The word that a close has begun stays set for the process, so this runs in a process of its own.
TEST_F(StartAndCloseDeath, BeforeCloseWaitsForEveryCustomThread) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            class Worker : public CCustomThread {
            public:
                Worker() : CCustomThread(false) {}
                bool Run() override {
                    while (!MustTerminate())
                        SleepCurrentThread(1);
                    return true;
                }
            };
            InitQuenbyApplication(nullptr, nullptr, 0, nullptr);
            AddApplicationExitCallback(
                [] { std::fprintf(stderr, "before %d, ", CCustomThread::GetRunningThreadCount() == 0); }, 0xFFFFFFFF);
            for (int i = 0; i < 4; ++i) {
                CXThread::BeginThread(new Worker, xThreadPriority(3), i == 0 ? 0x1 | 0x2 : 0x2, 0); // one is suspended
            }
            BeforeCloseQuenbyApplication();
            BeforeCloseQuenbyApplication();
            CloseQuenbyApplication(AppCloseFreeTables);
            std::fprintf(stderr, "closed");
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^before 1, closed$");
}

} // namespace
