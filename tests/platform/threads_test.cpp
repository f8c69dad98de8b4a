// SPDX-License-Identifier: MIT
// Real threads of the system: none of these tests waits for a time, they wait for what another thread does.

#include "zeltools/platform/threads.h"

#include "tests/support/wait_until.h"
#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/errors.h"

#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace platform;

#if defined(__SANITIZE_THREAD__)
constexpr bool signalsReachBlockedThreads = false; // that sanitizer delivers them at the next call that it watches
#else
constexpr bool signalsReachBlockedThreads = true;
#endif

/// What the bodies below share with their test.
struct Shared {
    std::atomic<unsigned long long> turns{0};
    std::atomic<bool> stop{false};
    std::atomic<unsigned long long> id{0};
    int pipeEnds[2] = {-1, -1};
};

unsigned int Spin(void* argument) {
    auto& shared = *static_cast<Shared*>(argument);
    shared.id = GetCurrentThreadId();
    while (!shared.stop) {
        ++shared.turns;
    }
    return 7;
}

unsigned int ReadPipe(void* argument) {
    auto& shared = *static_cast<Shared*>(argument);
    char byte = 0;
    ++shared.turns;
    return ::read(shared.pipeEnds[0], &byte, 1) == 1 ? 1 : 2;
}

/// Whether the spinning thread makes a turn while this thread gives up its time slice again and again.
bool Turns(Shared const& shared) {
    unsigned long long const before = shared.turns;
    for (int slice = 0; slice < 2000; ++slice) {
        Sleep(0);
    }
    return shared.turns != before;
}

TEST(BeginThreadEx, SuspendedBodyRunsAfterResumeOnly) {
    Shared shared;
    unsigned long long id = 0;
    HANDLE const thread = BeginThreadEx(0, &Spin, &shared, CreateSuspended, &id);
    ASSERT_NE(thread, nullptr);
    EXPECT_FALSE(Turns(shared));
    EXPECT_EQ(GetExitCodeThread(thread), StillActive);
    EXPECT_EQ(ResumeThread(thread), 1U);
    WaitUntil([&] { return shared.turns > 0; });
    EXPECT_EQ(shared.id, id);
    EXPECT_NE(id, GetCurrentThreadId());
    EXPECT_FALSE(WaitForThread(thread, 1));
    shared.stop = true;
    EXPECT_TRUE(WaitForThread(thread, WaitForever));
    EXPECT_EQ(GetExitCodeThread(thread), 7U);
    EXPECT_EQ(ResumeThread(thread), SuspendFailed);
    CloseThread(thread);
    WaitUntil([&] { // the system puts it away a little later
        HANDLE const opened = OpenThread(id);
        CloseThread(opened);
        return !opened;
    });
}

TEST(SuspendThread, StopsASpinningThreadUntilTheLastResume) {
    Shared shared;
    HANDLE const thread = BeginThreadEx(0, &Spin, &shared, 0, nullptr);
    WaitUntil([&] { return shared.turns > 0; });
    for (int round = 0; round < 100; ++round) {
        ASSERT_EQ(SuspendThread(thread), 0U);
        unsigned long long const turns = shared.turns;
        ASSERT_EQ(SuspendThread(thread), 1U);
        ASSERT_EQ(ResumeThread(thread), 2U);
        ASSERT_EQ(shared.turns, turns);
        ASSERT_EQ(ResumeThread(thread), 1U);
        WaitUntil([&] { return shared.turns > turns; });
    }
    EXPECT_EQ(ResumeThread(thread), 0U);
    EXPECT_EQ(SuspendThread(thread), 0U);
    EXPECT_FALSE(Turns(shared));
    ResumeThread(thread);
    shared.stop = true;
    EXPECT_TRUE(WaitForThread(thread, WaitForever));
    EXPECT_EQ(SuspendThread(thread), SuspendFailed);
    CloseThread(thread);
}

TEST(SuspendThread, ReadGoesOnAfterResume) {
    if (!signalsReachBlockedThreads) {
        GTEST_SKIP();
    }
    Shared shared;
    ASSERT_EQ(::pipe(shared.pipeEnds), 0);
    HANDLE const thread = BeginThreadEx(0, &ReadPipe, &shared, 0, nullptr);
    WaitUntil([&] { return shared.turns > 0; });
    EXPECT_EQ(SuspendThread(thread), 0U);
    EXPECT_EQ(ResumeThread(thread), 1U);
    EXPECT_EQ(::write(shared.pipeEnds[1], "x", 1), 1);
    EXPECT_TRUE(WaitForThread(thread, WaitForever));
    EXPECT_EQ(GetExitCodeThread(thread), 1U); // the byte, not an interruption
    CloseThread(thread);
    ::close(shared.pipeEnds[0]);
    ::close(shared.pipeEnds[1]);
}

TEST(SuspendThread, ForeignThreadById) {
    Shared shared;
    std::thread foreign(&Spin, &shared);
    WaitUntil([&] { return shared.turns > 0; });
    HANDLE const thread = OpenThread(shared.id);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(SuspendThread(thread), 0U);
    EXPECT_FALSE(Turns(shared));
    EXPECT_EQ(ResumeThread(thread), 1U);
    shared.stop = true;
    foreign.join();
    EXPECT_TRUE(WaitForThread(thread, WaitForever));
    CloseThread(thread);
}

struct TerminateRow {
    char const* name;
    ThreadBody body;
    unsigned int flags;
    bool suspend;
    bool blocks;
};

TerminateRow const terminateRows[] = {
    {"Spinning", &Spin, 0, false, false},
    {"BlockedInRead", &ReadPipe, 0, false, true},
    {"Suspended", &Spin, 0, true, false},
    {"NeverResumed", &Spin, CreateSuspended, false, false},
};

class TerminateThread : public testing::TestWithParam<TerminateRow> {};

TEST_P(TerminateThread, StopsForGood) {
    if (GetParam().blocks && !signalsReachBlockedThreads) {
        GTEST_SKIP();
    }
    auto& shared = *new Shared; // the thread stands on it for ever
    ASSERT_EQ(::pipe(shared.pipeEnds), 0);
    unsigned long long id = 0;
    HANDLE const thread = BeginThreadEx(0, GetParam().body, &shared, GetParam().flags, &id);
    if (GetParam().flags == 0) {
        WaitUntil([&] { return shared.turns > 0; });
    }
    if (GetParam().suspend) {
        EXPECT_EQ(SuspendThread(thread), 0U);
    }
    EXPECT_TRUE(platform::TerminateThread(thread, 77));
    EXPECT_TRUE(WaitForThread(thread, 0));
    EXPECT_EQ(GetExitCodeThread(thread), 77U);
    EXPECT_FALSE(Turns(shared));
    EXPECT_EQ(ResumeThread(thread), SuspendFailed);
    EXPECT_TRUE(platform::TerminateThread(thread, 78));
    EXPECT_EQ(GetExitCodeThread(thread), 77U);
    CloseThread(thread);
}

INSTANTIATE_TEST_SUITE_P(Table, TerminateThread, testing::ValuesIn(terminateRows),
                         [](auto const& row) { return row.param.name; });

TEST(SetThreadPriority, LowersAndReportsARefusal) {
    Shared shared;
    unsigned long long id = 0;
    HANDLE const thread = BeginThreadEx(0, &Spin, &shared, 0, &id);
    int const base = ::getpriority(PRIO_PROCESS, static_cast<id_t>(::getpid()));
    EXPECT_TRUE(SetThreadPriority(thread, -1));
    EXPECT_EQ(::getpriority(PRIO_PROCESS, static_cast<id_t>(id)), base + 5);
    EXPECT_TRUE(SetThreadPriority(thread, -2));
    EXPECT_EQ(::getpriority(PRIO_PROCESS, static_cast<id_t>(id)), base + 10);
    EXPECT_EQ(::getpriority(PRIO_PROCESS, static_cast<id_t>(::getpid())), base); // of the thread alone
    bool const raised = SetThreadPriority(thread, 2);
    EXPECT_EQ(::getpriority(PRIO_PROCESS, static_cast<id_t>(id)), raised ? base - 10 : base + 10);
    if (!raised) {
        EXPECT_EQ(GetLastError(), ErrorAccessDenied);
    }
    EXPECT_FALSE(SetThreadPriority(thread, 3));
    shared.stop = true;
    EXPECT_TRUE(WaitForThread(thread, WaitForever));
    EXPECT_FALSE(SetThreadPriority(thread, 0));
    CloseThread(thread);
}

TEST(CancelSynchronousIo, EndsAHangingOpenWhereItMay) {
    std::string const fifo = testing::TempDir() + "zel_cancel_" + std::to_string(::getpid());
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    auto const open = [&] { return RetryInterrupted([&] { return ::open(fifo.c_str(), O_RDONLY | O_CLOEXEC); }); };
    int answered = -1;
    std::atomic<bool> isInside{true};
    std::atomic<HANDLE> handle{nullptr};
    std::thread opener([&] {
        BeginCancellableCalls();
        handle = DuplicateCurrentThread();
        EXPECT_EQ(open(), -1);
        EXPECT_EQ(errno, EINTR);
        EXPECT_TRUE(IsCallCancelled());
        EndCancellableCalls();
        EXPECT_FALSE(IsCallCancelled());
        isInside = false;
        answered = open();
    });
    WaitUntil([&] { return handle != nullptr; });
    while (isInside) {
        CancelSynchronousIo(handle);
        Sleep(1);
    }
    for (int signal = 0; signal < 20; ++signal) { // outside, an interruption is repeated
        CancelSynchronousIo(handle);
    }
    int const writer = ::open(fifo.c_str(), O_WRONLY | O_CLOEXEC); // lets the reader in
    opener.join();
    EXPECT_GE(answered, 0);
    ::close(answered);
    ::close(writer);
    CloseThread(handle);
    ::unlink(fifo.c_str());
}

} // namespace
