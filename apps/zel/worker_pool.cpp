// SPDX-License-Identifier: MIT
#include "worker_pool.h"

#include <zeltools/process/custom_thread.h>
#include <zeltools/process/thread_registry.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <iterator>
#include <mutex>
#include <utility>
#include <vector>

namespace zel {

namespace {

using Clock = WorkerPool::Clock;

/// What a parser that keeps to the limit by itself has to end in good order.
constexpr std::chrono::milliseconds Grace{500};
constexpr std::chrono::milliseconds JoinPause{1};
constexpr std::chrono::milliseconds LastPatience{20};

std::atomic<bool> threadsLeft{false};

} // namespace

/// All fields are guarded by `lock`.
struct WorkerPool::Shared {
    std::mutex lock;
    std::condition_variable workCame;  ///< Also: the gate may have opened, or all is over.
    std::condition_variable workEnded; ///< What Wait waits for.
    std::deque<std::shared_ptr<Work>> queue;
    std::vector<std::unique_ptr<Worker>> workers;
    std::vector<std::unique_ptr<Worker>> left; ///< Those that were given up.
    unsigned int maxWorkers = 1;
    unsigned int idle = 0;
    std::chrono::milliseconds limit{0};
    bool ending = false;
    bool cancelled = false;

    // The gate: many at once, or one alone. Who wants to be alone goes before those who come later.
    unsigned int inside = 0;
    bool insideAlone = false;
    unsigned int waitingForAlone = 0;
    unsigned int leftInside = 0; ///< Of those that were given up.
    unsigned int leftInsideAlone = 0;

    bool IsOpen(bool alone) const { return alone ? inside == 0 && !insideAlone : !insideAlone && waitingForAlone == 0; }
    bool IsBlockedForGood(bool alone) const { return leftInsideAlone != 0 || (alone && leftInside != 0); }
};

class WorkerPool::Worker : public CCustomThread {
public:
    explicit Worker(std::shared_ptr<Shared> pool) : CCustomThread(true), shared(std::move(pool)) {}

    void Stop() {
        StopThread();
        if (unsigned long long const id = GetThreadID()) { // 0, not started yet, would be the caller
            SetCancelThread(true, id);
        }
    }

    // Guarded by the pool's lock.
    std::shared_ptr<Work> work;
    Clock::time_point began = Clock::time_point::max(); ///< While it waits at the gate: never.
    bool isInside = false;
    bool isAlone = false;
    bool isLeft = false;

protected:
    bool Run() override {
        std::unique_lock hold(shared->lock);
        for (;;) {
            ++shared->idle;
            shared->workCame.wait(hold, [&] { return shared->ending || !shared->queue.empty(); });
            --shared->idle;
            if (shared->queue.empty() || shared->cancelled) {
                return true;
            }
            work = std::move(shared->queue.front());
            shared->queue.pop_front();
            DoWork(hold);
            if (isLeft) {
                return true; // another one has its place
            }
        }
    }

private:
    void DoWork(std::unique_lock<std::mutex>& hold) {
        std::shared_ptr<Work> const mine = work; // stays after the pool has given it up
        began = Clock::now();
        hold.unlock();
        bool const alone = mine->RunsAlone();
        hold.lock();
        if (!isLeft && Enter(hold, alone)) {
            began = Clock::now();
            hold.unlock();
            mine->Do();
            hold.lock();
            Leave();
            if (!isLeft) {
                mine->state = Work::State::Done;
            }
        } else if (!isLeft && !shared->cancelled) {
            mine->state = Work::State::Blocked;
        }
        work.reset();
        began = Clock::time_point::max();
        shared->workEnded.notify_all();
    }

    /// False when the gate will never open, or all is over.
    bool Enter(std::unique_lock<std::mutex>& hold, bool alone) {
        Shared& pool = *shared;
        began = Clock::time_point::max();
        pool.waitingForAlone += alone ? 1 : 0;
        pool.workCame.wait(hold, [&] { return pool.cancelled || pool.IsBlockedForGood(alone) || pool.IsOpen(alone); });
        pool.waitingForAlone -= alone ? 1 : 0;
        if (pool.cancelled || pool.IsBlockedForGood(alone)) {
            pool.workCame.notify_all();
            return false;
        }
        isInside = true;
        isAlone = alone;
        if (alone) {
            pool.insideAlone = true;
        } else {
            ++pool.inside;
        }
        return true;
    }

    void Leave() {
        Shared& pool = *shared;
        isInside = false;
        if (isLeft) {
            --(isAlone ? pool.leftInsideAlone : pool.leftInside);
        } else if (isAlone) {
            pool.insideAlone = false;
        } else {
            --pool.inside;
        }
        pool.workCame.notify_all();
    }

    std::shared_ptr<Shared> shared;
};

WorkerPool::WorkerPool(unsigned int threads, std::chrono::milliseconds limit) : shared(std::make_shared<Shared>()) {
    shared->maxWorkers = std::max(threads, 1U);
    shared->limit = limit;
}

WorkerPool::~WorkerPool() {
    Cancel();
    Join(Clock::now() + LastPatience);
}

void WorkerPool::Add(std::shared_ptr<Work> work) {
    std::unique_lock hold(shared->lock);
    if (shared->cancelled) {
        return;
    }
    shared->queue.push_back(work);
    StartWorkers();
    if (!shared->workers.empty()) {
        shared->workCame.notify_one();
        return;
    }
    shared->queue.clear(); // the system gives no thread at all
    hold.unlock();
    work->Do();
    hold.lock();
    work->state = Work::State::Done;
}

void WorkerPool::StartWorkers() {
    unsigned int coming = shared->idle;
    while (coming++ < shared->queue.size() && shared->workers.size() < shared->maxWorkers) {
        auto worker = std::make_unique<Worker>(shared);
        if (!CXThread::BeginThread(worker.get())) {
            return;
        }
        shared->workers.push_back(std::move(worker));
    }
}

WorkResult WorkerPool::Look(Work const& work) const {
    std::lock_guard const hold(shared->lock);
    return work.state == Work::State::Done ? WorkResult::Done : WorkResult::Cancelled;
}

WorkResult WorkerPool::Wait(Work const& work) {
    std::unique_lock hold(shared->lock);
    for (;;) {
        switch (work.state) {
        case Work::State::Done: return WorkResult::Done;
        case Work::State::Late: return WorkResult::Late;
        case Work::State::Blocked: return WorkResult::Blocked;
        case Work::State::Waiting: break;
        }
        if (shared->cancelled) {
            return WorkResult::Cancelled;
        }
        Clock::time_point const next = GiveUpLateWork(Clock::now());
        if (work.state == Work::State::Waiting) {
            if (next == Clock::time_point::max()) {
                shared->workEnded.wait_for(hold, Grace); // work that is begun meanwhile has a limit
            } else {
                shared->workEnded.wait_until(hold, next);
            }
        }
    }
}

Clock::time_point WorkerPool::GiveUpLateWork(Clock::time_point now) {
    Clock::time_point next = Clock::time_point::max();
    if (shared->limit.count() == 0) {
        return next;
    }
    for (std::unique_ptr<Worker>& worker : shared->workers) {
        if (!worker->work || worker->began == Clock::time_point::max()) {
            continue;
        }
        Clock::time_point const late = worker->began + shared->limit + Grace;
        if (late > now) {
            next = std::min(next, late);
            continue;
        }
        worker->work->state = Work::State::Late;
        worker->isLeft = true;
        worker->Stop();
        if (worker->isInside && worker->isAlone) {
            shared->insideAlone = false;
            ++shared->leftInsideAlone;
        } else if (worker->isInside) {
            --shared->inside;
            ++shared->leftInside;
        }
        shared->left.push_back(std::move(worker));
    }
    std::erase(shared->workers, nullptr);
    StartWorkers();
    shared->workCame.notify_all();
    return next;
}

void WorkerPool::Cancel() {
    std::lock_guard const hold(shared->lock);
    shared->cancelled = true;
    shared->ending = true;
    shared->queue.clear();
    for (std::unique_ptr<Worker> const& worker : shared->workers) {
        worker->Stop();
    }
    shared->workCame.notify_all();
    shared->workEnded.notify_all();
}

bool WorkerPool::Join(Clock::time_point until) {
    std::vector<std::unique_ptr<Worker>> all;
    {
        std::lock_guard const hold(shared->lock);
        shared->ending = true;
        shared->queue.clear();
        shared->workCame.notify_all();
        all.swap(shared->workers);
        std::move(shared->left.begin(), shared->left.end(), std::back_inserter(all));
        shared->left.clear();
    }
    bool joined = true;
    for (std::unique_ptr<Worker>& worker : all) {
        while (!worker->IsTerminated() && Clock::now() < until) {
            CXThread::SleepCurrentThread(static_cast<unsigned int>(JoinPause.count()));
        }
        if (!worker->IsTerminated()) {
            static_cast<void>(worker.release()); // its thread still uses it
            threadsLeft = true;
            joined = false;
        }
    }
    return joined;
}

bool WorkerPool::HasLeftThreads() {
    return threadsLeft;
}

} // namespace zel
