// SPDX-License-Identifier: MIT
#include "zeltools/process/xcritical_section.h"

#include "zeltools/process/xsingle_lock.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

TEST(CXCriticalSection, LetsOneThreadInAtATime) {
    CXCriticalSection lock;
    long long sum = 0; // not atomic: two threads inside would lose turns
    std::vector<std::jthread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&] {
            for (int turn = 0; turn < 20'000; ++turn) {
                lock.Lock();
                CXSingleLock const nested(&lock, true);
                ++sum;
                lock.Unlock();
            }
        });
    }
    threads.clear();
    EXPECT_EQ(sum, 80'000);
    EXPECT_FALSE(lock.IsLocked());
}

TEST(CXCriticalSection, LeavingWhatNobodyHoldsChangesNothing) {
    CXCriticalSection lock;
#ifdef NDEBUG
    EXPECT_TRUE(lock.Unlock());
    lock.Lock();
    EXPECT_TRUE(lock.IsLocked());
    lock.Unlock();
    std::thread([&] { lock.Lock(), lock.Unlock(); }).join(); // waits for ever where the first one never left
#else
    EXPECT_DEATH(lock.Unlock(), "nobody is inside");
#endif
}

TEST(CXSingleLock, HoldsOnceAndReleasesHoweverItIsLeft) {
    CXCriticalSection first;
    CXCriticalSection second;
    {
        CXSingleLock hold(&first);
        EXPECT_FALSE(first.IsLocked());
        EXPECT_FALSE(hold.Unlock()); // must not leave what it has not entered
        EXPECT_TRUE(hold.Lock());
        EXPECT_TRUE(hold.Lock());
        hold.Attach(&second);
        EXPECT_FALSE(first.IsLocked()); // once, although Lock was called twice
        EXPECT_FALSE(hold.IsLocked());
        EXPECT_TRUE(hold.Lock());
        EXPECT_TRUE(second.IsLocked());
    }
    EXPECT_FALSE(second.IsLocked());
    try {
        CXSingleLock const hold(&first, true);
        throw 1;
    } catch (int) {
        EXPECT_FALSE(first.IsLocked());
    }
}

} // namespace
