// SPDX-License-Identifier: MIT
#include "zeltools/process/thread_registry.h"

#include "zeltools/process/thread_registry_private.h"
#include "zeltools/process/xthread.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

struct FlagFunctions {
    char const* name;
    void (*set)(bool, unsigned long long);
    bool (*ask)(unsigned long long);
};

FlagFunctions const flagFunctions[] = {
    {"Cancel", &SetCancelThread, &ShouldCancelThread},
    {"Silent", &SetSilentThread, &IsSilentThread},
};

// The ids below belong to no thread; the registry never asks the system about them.
class ThreadFlag : public testing::TestWithParam<FlagFunctions> {
protected:
    ~ThreadFlag() override { detail::DeleteThreadTables(); }
    void Set(bool on, unsigned long long thread) { GetParam().set(on, thread); }
    bool Ask(unsigned long long thread) { return GetParam().ask(thread); }
};

TEST_P(ThreadFlag, CoversDescendantsUntilCleared) {
    AttachThread(1002, 1001);
    AttachThread(1003, 1002);
    Set(true, 1001);
    EXPECT_TRUE(Ask(1003));
    Set(false, 1003); // was never set there, and does not hide the ancestor's
    EXPECT_TRUE(Ask(1003));
    DetachThread(1002);
    EXPECT_FALSE(Ask(1003));
    EXPECT_TRUE(Ask(1001));
    AttachThread(1002, 1001);
    Set(false, 1001);
    EXPECT_FALSE(Ask(1003));
    EXPECT_FALSE(Ask(1001));
}

TEST_P(ThreadFlag, ZeroIsTheCaller) {
    Set(true, 0);
    EXPECT_TRUE(Ask(0));
    EXPECT_TRUE(Ask(CXThread::GetCurrentThreadID()));
    std::thread([&] {
        EXPECT_FALSE(Ask(0));
        AttachThread(0, GetApplicationMainThreadID() + 1'000'000);
    }).join();
    Set(false, CXThread::GetCurrentThreadID());
    EXPECT_FALSE(Ask(0));
}

TEST_P(ThreadFlag, AskingEndsOnACircle) {
    for (unsigned long long id = 1000; id < 1003; ++id) {
        AttachThread(id, id + 1);
    }
    AttachThread(1003, 1001);
    Set(true, 5);
    EXPECT_FALSE(Ask(1000));
    Set(true, 1003);
    EXPECT_TRUE(Ask(1000));
}

TEST_P(ThreadFlag, LongChainIsWalkedToItsEnd) {
    for (unsigned long long id = 1001; id < 101'000; ++id) {
        AttachThread(id, id + 1);
    }
    Set(true, 101'000);
    EXPECT_TRUE(Ask(1001));
}

INSTANTIATE_TEST_SUITE_P(Each, ThreadFlag, testing::ValuesIn(flagFunctions),
                         [](auto const& row) { return row.param.name; });

TEST(ThreadRegistry, ManyThreadsSetAskAndDeleteAtOnce) {
    std::atomic<bool> stop{false};
    std::vector<std::jthread> threads;
    for (unsigned long long number = 1; number <= 3; ++number) {
        threads.emplace_back([&stop, number] {
            unsigned long long const child = number * 10 + 1;
            while (!stop) {
                AttachThread(child, number);
                SetCancelThread(true, number);
                SetCancelThread(false, number);
                DetachThread(child);
                EXPECT_FALSE(ShouldCancelThread(child));
            }
        });
    }
    for (int round = 0; round < 300; ++round) {
        detail::DeleteThreadTables();
        CXArray<unsigned long long> children;
        GetChildThreads(1, children);
        ShouldCancelThread(0);
    }
    stop = true;
    threads.clear();
    detail::DeleteThreadTables();
}

} // namespace
