// SPDX-License-Identifier: MIT
#include "zeltools/process/custom_thread.h"

#include "tests/support/wait_until.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/application_state_private.h"
#include "zeltools/process/thread_registry.h"
#include "zeltools/process/xsingle_lock.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

/// Works until it is told to stop.
class Worker : public CCustomThread {
public:
    explicit Worker(bool keep = true) : CCustomThread(keep) {}
    std::atomic<unsigned long long> turns{0};
    std::atomic<bool> sawCancel{false};

protected:
    bool Run() override {
        while (!MustTerminate()) {
            ++turns;
            SleepCurrentThread(0);
        }
        sawCancel = ShouldCancelThread();
        return true;
    }
};

/// Listens to nobody.
class Deaf : public CCustomThread {
public:
    Deaf() : CCustomThread(true) {}
    std::atomic<unsigned long long> turns{0};

protected:
    bool Run() override {
        for (;;) {
            ++turns;
            ShouldCancelThread(); // takes the application lock again and again, which its killer must not inherit
        }
    }
};

class CustomThreads : public testing::Test {
protected:
    ~CustomThreads() override { ApplicationCloseStarted = false; }
};

TEST_F(CustomThreads, EndIsAskedOfRunningSuspendedAndUnstartedOnes) {
    Worker running;
    Worker suspended;
    Worker unstarted;
    CXThread::BeginThread(&running);
    CXThread::BeginThread(&suspended, xThreadPriorityNormal, BeginThreadSuspended);
    CCustomThread::AskForThreadsEnd(false);
    WaitUntil([&] { return running.IsTerminated(); });
    EXPECT_TRUE(suspended.IsSuspended());
    EXPECT_TRUE(unstarted.MustTerminate());
    CCustomThread::AskForThreadsEnd(true);
    WaitUntil([&] { return suspended.IsTerminated(); });
    EXPECT_FALSE(suspended.IsSuspended());
    EXPECT_TRUE(suspended.sawCancel);
    EXPECT_TRUE(ShouldCancelThread(running.GetThreadID())); // it may have ended before it was marked
    EXPECT_TRUE(CCustomThread::ThreadsMustTerminate());
    EXPECT_FALSE(ShouldCancelThread()); // the thread without an id must not stand for the caller
}

TEST_F(CustomThreads, WaitEndsAndLeavesTheWordAsAsked) {
    for (int round = 0; round < 2; ++round) {
        CCustomThread::WaitEndOfThreads(false);
        EXPECT_FALSE(CCustomThread::ThreadsMustTerminate());
    }
    for (int number = 0; number < 8; ++number) {
        CXThread::BeginThread(new Worker(false), xThreadPriorityNormal, BeginThreadAutoDelete | (number & 1U));
    }
    CCustomThread::WaitEndOfThreads(true);
    EXPECT_EQ(CCustomThread::GetRunningThreadCount(), 0U);
    EXPECT_TRUE(CCustomThread::ThreadsMustTerminate());
    Worker const late;
    CCustomThread::WaitEndOfThreads(true); // the word is set: it must not wait for the late one
}

TEST_F(CustomThreads, NoFlagOutlivesTheWait) {
    for (int round = 0; round < 50; ++round) {
        std::vector<unsigned long long> ids;
        for (int number = 0; number < 4; ++number) {
            auto* const worker = new Worker(false);
            CXThread::BeginThread(worker, xThreadPriorityNormal, BeginThreadAutoDelete | BeginThreadSuspended);
            ids.push_back(worker->GetThreadID());
            SetSilentThread(true, ids.back());
            worker->ResumeThread();
        }
        CCustomThread::WaitEndOfThreads(false);
        for (unsigned long long const id : ids) {
            ASSERT_FALSE(ShouldCancelThread(id) || IsSilentThread(id));
        }
    }
}

TEST_F(CustomThreads, EndingThreadDoesNotBlockTheRegistryWhileAnExitCallbackRuns) {
    static std::atomic<bool> leaving;
    leaving = false;
    class Leaver : public CCustomThread {
    public:
        ~Leaver() override { leaving = true; }
    };
    auto* const leaver = new Leaver;
    CXThread::BeginThread(leaver, xThreadPriorityNormal, BeginThreadAutoDelete | BeginThreadSuspended);
    CXSingleLock hold(&ApplicationLock(), true); // as the close does around the callbacks
    leaver->ResumeThread();
    WaitUntil([] { return leaving.load(); });
    std::future<unsigned int> count = std::async(std::launch::async, [] {
        unsigned int lowest = 1;
        for (int turn = 0; turn < 1000; ++turn) { // enough for the destructor to come to its flags
            lowest = std::min(lowest, CCustomThread::GetRunningThreadCount());
            CXThread::SleepCurrentThread(0);
        }
        return lowest;
    });
    EXPECT_EQ(count.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    hold.Unlock();
    EXPECT_EQ(count.get(), 1U); // the flags were not cleared yet, so the close had to wait
    WaitUntil([] { return CCustomThread::GetRunningThreadCount() == 0; });
}

// Killed threads stand for ever on their objects, which therefore are never deleted.
TEST_F(CustomThreads, HardTerminationKillsTheKillableAndTheirChildren) {
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "that sanitizer delivers a signal behind the lock which the thread was waiting for";
#endif
    EXPECT_FALSE(CCustomThread::HardThreadsTermination(false));
    SetCancelThread(true, 4'000'000'000ULL); // from now on each question takes the lock
    auto* const killable = new Deaf;
    Worker spared;
    static std::atomic<unsigned long long> childTurns;
    static std::atomic<unsigned long long> childId;
    std::thread child([] {
        childId = CXThread::GetCurrentThreadID();
        for (;;) {
            ++childTurns;
        }
    });
    child.detach();
    killable->SetFlag(ThreadKillable);
    CXThread::BeginThread(killable);
    CXThread::BeginThread(&spared);
    WaitUntil([&] { return killable->turns > 0 && spared.turns > 0 && childTurns > 0; });
    AttachThread(childId, killable->GetThreadID());

    EXPECT_TRUE(CCustomThread::HardThreadsTermination(true));
    EXPECT_TRUE(killable->IsTerminated());
    EXPECT_FALSE(spared.IsTerminated());
    EXPECT_EQ(CCustomThread::GetRunningThreadCount(), 1U);
    unsigned long long const turns = killable->turns + childTurns;
    unsigned long long const sparedTurns = spared.turns;
    WaitUntil([&] { return spared.turns > sparedTurns + 1000; });
    EXPECT_EQ(killable->turns + childTurns, turns);
    CXArray<unsigned long long> children;
    EXPECT_EQ(GetChildThreads(killable->GetThreadID(), children), 0); // and the application lock is free
    EXPECT_FALSE(CCustomThread::HardThreadsTermination(true));        // nothing killable is left
    SetCancelThread(false, 4'000'000'000ULL);
    spared.StopThread();
    WaitUntil([&] { return spared.IsTerminated(); });
}

TEST_F(CustomThreads, ThreadThatCannotBeKilledIsNotTerminated) {
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "that sanitizer delivers a signal behind the lock which the thread was waiting for";
#endif
    static std::atomic<bool> unreachable;
    static std::atomic<bool> letGo;
    unreachable = letGo = false;
    auto* const thread = new CCustomThread( // stands for ever once it is let go
        [](void*) {
            sigset_t all;
            sigset_t former;
            sigfillset(&all);
            pthread_sigmask(SIG_SETMASK, &all, &former);
            unreachable = true;
            WaitUntil([] { return letGo.load(); });
            pthread_sigmask(SIG_SETMASK, &former, nullptr);
            return true;
        },
        nullptr);
    CXThread::BeginThread(thread);
    WaitUntil([] { return unreachable.load(); });
    EXPECT_FALSE(CCustomThread::HardThreadsTermination(false));
    EXPECT_FALSE(thread->IsTerminated());
    EXPECT_EQ(CCustomThread::GetRunningThreadCount(), 0U); // nothing waits for it any more
    letGo = true;
}

} // namespace
