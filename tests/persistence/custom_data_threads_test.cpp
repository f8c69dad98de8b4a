// SPDX-License-Identifier: MIT
// One store under many threads.
#include "zeltools/persistence/custom_data.h"
#include "zeltools/process/xsingle_lock.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

TEST(CustomDataThreads, SixteenShareAStore) {
    constexpr unsigned int threadCount = 16;
    constexpr int rounds = 300;
    CCustomData shared;
    std::atomic<int> torn{0};
    auto const work = [&](unsigned int own) {
        unsigned int const first = 100 * own;
        for (int round = 0; round < rounds; ++round) {
            // Two values that others see change: each alone is whole, and both agree under the lock.
            {
                CXSingleLock const hold(shared.GetThreadLock(), true);
                shared.SetInt(1, round);
                shared.SetLongInt(2, round);
            }
            {
                CXSingleLock const hold(shared.GetThreadLock(), true);
                int number = 0;
                long long sameNumber = 0;
                shared.GetInt(1, number);
                shared.GetLongInt(2, sameNumber);
                torn += number != sameNumber;
            }
            // Values of its own, which come and go while others move them about.
            shared.SetInt(first, round);
            shared.SetString(first + 1, CXTString<char16_t>(u'x', round % 7));
            CXTString<char16_t> text;
            torn += !shared.GetString(first + 1, text) || text.GetLength() != round % 7;
            int number = 0;
            torn += !shared.GetInt(first, number) || number != round;
            shared.RemoveCustom(first + 1);
            // Whole-store operations while the rest goes on.
            if (round % 16 == 0) {
                CCustomData copy(shared);
                torn += !copy.GetInt(first, number) || number != round;
                unsigned long long size = 0;
                void* const bytes = shared.SerializeToData(size);
                torn += !copy.SerializeFromData(bytes, size);
                CCustomData::Free(bytes);
                static_cast<void>(copy.IsEqual(shared));
                static_cast<void>(shared.DumpCustomData(false, 0));
            }
            static_cast<void>(shared.GetTimeStamp());
        }
    };
    std::vector<std::jthread> threads;
    for (unsigned int own = 1; own <= threadCount; ++own)
        threads.emplace_back(work, own);
    threads.clear(); // waits for each
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(shared.GetIDCount(), 2 + threadCount);
}

TEST(CustomDataThreads, StoresAreCopiedInOppositeDirections) {
    CCustomData stores[2];
    stores[0].SetInt(1, 1);
    stores[1].SetInt(1, 1);
    auto const copy = [&](int to) {
        for (int round = 0; round < 2000; ++round) {
            stores[to] = stores[1 - to];
            stores[to].IsEqual(stores[1 - to]);
            stores[to].SetCustomData(2, stores[1 - to]);
            stores[to].GetCustomData(2, stores[1 - to]);
        }
    };
    std::thread other(copy, 1);
    copy(0);
    other.join(); // neither waits for the other for ever
}

} // namespace
