// SPDX-License-Identifier: MIT
// Worker threads for pieces of work that may never end: parsers are other people's code, and a file may be a pipe that
// nobody writes to.
//
//     WorkerPool pool(4, 60s);
//     auto const work = std::make_shared<MyWork>();
//     pool.Add(work);
//     if (pool.Wait(*work) == WorkResult::Done) { ... }
//     pool.Join(now + 80ms);
//
// Work that asks to run alone runs while no other does. Work that takes too long is given up: its thread is left
// behind, and another one takes its place. What cannot run beside a thread that was left behind is not done at all.
//
// Threads: one thread adds and waits; Cancel from any.

#pragma once

#include <chrono>
#include <memory>

namespace zel {

/// Something to do on a worker. Who added it looks at its results after Wait has answered Done, and never otherwise: a
/// thread that was left behind may still be at it.
class Work {
public:
    virtual ~Work() = default;
    /// Whether it must run while no other does. Asked on the worker, just before Do.
    virtual bool RunsAlone() { return false; }
    /// Does the work; asks ShouldCancelThread where it can. May throw nothing.
    virtual void Do() = 0;

private:
    friend class WorkerPool;
    enum class State {
        Waiting,
        Done,
        Late,
        Blocked
    };
    State state = State::Waiting; ///< Guarded by the pool's lock.
};

enum class WorkResult {
    Done,
    Late,      ///< Given up after the pool's limit.
    Blocked,   ///< Not begun, since it could not run beside work that was given up.
    Cancelled, ///< The pool was cancelled before it was done.
};

class WorkerPool {
public:
    using Clock = std::chrono::steady_clock;

    /// Starts no thread yet: each is started when there is work for it.
    /// @param limit  What one piece of work may take; zero for any time.
    WorkerPool(unsigned int threads, std::chrono::milliseconds limit);
    /// Cancels, and leaves behind what does not end at once.
    ~WorkerPool();
    WorkerPool(WorkerPool const&) = delete;
    WorkerPool& operator=(WorkerPool const&) = delete;

    void Add(std::shared_ptr<Work> work);

    /// Waits for work that was added.
    WorkResult Wait(Work const& work);

    /// How work stands, without waiting: Done, or Cancelled for work that goes on or never began.
    WorkResult Look(Work const& work) const;

    /// Tells all workers to stop by their cancel flags, and forgets the work that nobody has begun. Wait answers at
    /// once from now on. Threads: any.
    void Cancel();

    /// Waits for the end of all threads, which do nothing more than what they are at.
    /// @return false when some are still running at that time; they are left behind.
    bool Join(Clock::time_point until);

    /// Whether a pool of this process left a thread behind. The toolkit's close would wait for it for ever.
    static bool HasLeftThreads();

private:
    class Worker;
    struct Shared;

    /// Gives up what has taken too long. To be called under the lock.
    /// @return when the next work will be too late.
    Clock::time_point GiveUpLateWork(Clock::time_point now);
    void StartWorkers();

    std::shared_ptr<Shared> shared; ///< The workers' too, since some may outlive the pool.
};

} // namespace zel
