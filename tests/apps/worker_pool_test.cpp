// SPDX-License-Identifier: MIT
// The pool of zel without its parsers. What the works share has no lock of its own, so that a thread sanitizer sees
// whatever the pool does not keep apart.

#include "apps/zel/worker_pool.h"

#include "tests/support/wait_until.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using zel::WorkerPool;
using zel::WorkResult;

class Task : public zel::Work {
public:
    explicit Task(std::function<void()> job, bool runsAlone = false) : doJob(std::move(job)), alone(runsAlone) {}
    bool RunsAlone() override { return alone; }
    void Do() override { doJob(); }

private:
    std::function<void()> doJob;
    bool alone;
};

TEST(WorkerPool, KeepsLonelyWorkApartAndHandsOverResults) {
    constexpr int count = 2000;
    WorkerPool pool(8, 0ms);
    int doneAlone = 0; // by the lonely ones, one after the other
    std::atomic<int> together = 0;
    std::atomic<bool> metOthers = false;
    std::vector<int> results(count);
    std::vector<std::shared_ptr<Task>> tasks;
    for (int i = 0; i < count; ++i) {
        bool const alone = i % 16 == 0;
        tasks.push_back(std::make_shared<Task>(
            [&, i, alone] {
                together += alone ? 0 : 1;
                std::this_thread::yield(); // so that others come in where nothing holds them back
                metOthers = metOthers || (alone && together != 0);
                if (alone) {
                    ++doneAlone;
                }
                results[static_cast<std::size_t>(i)] = i;
                together -= alone ? 0 : 1;
            },
            alone));
        pool.Add(tasks.back());
    }
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(pool.Wait(*tasks[static_cast<std::size_t>(i)]), WorkResult::Done);
        EXPECT_EQ(results[static_cast<std::size_t>(i)], i);
    }
    EXPECT_EQ(doneAlone, count / 16);
    EXPECT_FALSE(metOthers);
    EXPECT_TRUE(pool.Join(WorkerPool::Clock::now() + 60s));
}

TEST(WorkerPool, IsCancelledFromAnyThreadWhileWorkIsAdded) {
    for (int round = 0; round < 30; ++round) {
        WorkerPool pool(8, 0ms);
        std::atomic<int> begun = 0;
        std::thread interruption([&] {
            WaitUntil([&] { return begun >= 1 + round; });
            pool.Cancel();
        });
        std::vector<std::shared_ptr<Task>> tasks;
        WorkResult last = WorkResult::Done;
        while (last == WorkResult::Done) {
            tasks.push_back(std::make_shared<Task>([&begun] { ++begun; }, tasks.size() % 5 == 0));
            pool.Add(tasks.back());
            last = tasks.size() % 3 == 0 ? pool.Wait(*tasks.back()) : last;
        }
        EXPECT_EQ(last, WorkResult::Cancelled);
        interruption.join();
        EXPECT_TRUE(pool.Join(WorkerPool::Clock::now() + 60s));
        EXPECT_LE(begun, static_cast<int>(tasks.size()));
    }
    EXPECT_FALSE(WorkerPool::HasLeftThreads());
}

TEST(WorkerPool, ReplacesAThreadThatIsLeftBehind) {
    // Shared, since what is left behind outlives this test.
    auto const released = std::make_shared<std::atomic<bool>>(false);
    auto const ended = std::make_shared<std::atomic<bool>>(false);
    WorkerPool pool(1, 1ms);
    auto const late = std::make_shared<Task>([released, ended] {
        WaitUntil([&] { return released->load(); });
        *ended = true;
    });
    int result = 0;
    auto const next = std::make_shared<Task>([&result] { result = 7; });
    auto const alone = std::make_shared<Task>([] {}, true);
    for (auto const& task : {late, next, alone}) {
        pool.Add(task);
    }
    EXPECT_EQ(pool.Wait(*late), WorkResult::Late);
    EXPECT_EQ(pool.Wait(*next), WorkResult::Done);
    EXPECT_EQ(result, 7);
    EXPECT_EQ(pool.Wait(*alone), WorkResult::Blocked);
    *released = true;
    EXPECT_TRUE(pool.Join(WorkerPool::Clock::now() + 60s));
    EXPECT_TRUE(*ended);
}

} // namespace
