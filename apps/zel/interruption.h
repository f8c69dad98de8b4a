// SPDX-License-Identifier: MIT
// The keyboard's interruption: the first one asks the command to end in good order, and sees that it does so soon; a
// second one ends the program at once.
//
//     Interruption interruption;
//     interruption.SetListener([&] { pool.Cancel(); });
//     while (!interruption.IsRequested() && ...) { ... }
//     interruption.Acknowledge();
//     ... what was done so far is printed ...
//     interruption.SetListener(nullptr);
//
// A command that has not acknowledged in time hangs somewhere in the system, or writes to somebody who does not read;
// it is ended where it stands. A program that was started to ignore interruptions goes on ignoring them.
//
// Threads: one object in the process at a time, used by the thread that made it; IsRequested from any.

#pragma once

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <mutex>
#include <thread>

namespace zel {

class Interruption {
public:
    using Clock = std::chrono::steady_clock;

    Interruption();
    ~Interruption();
    Interruption(Interruption const&) = delete;
    Interruption& operator=(Interruption const&) = delete;

    /// What is called at the first interruption, on a thread of this object's own, or at once when there was one. No
    /// call is under way any more when this returns.
    void SetListener(std::function<void()> newListener);

    bool IsRequested() const;

    /// Tells that the command has seen the interruption and comes to its end by itself.
    void Acknowledge();

    /// Until when what was told to stop is waited for. To be asked after an interruption.
    Clock::time_point Deadline() const;

private:
    void Watch();
    void Tell(char word) const;

    int pipe[2] = {-1, -1}; ///< The handler and this object write, the watcher reads.
    struct sigaction former {};
    std::mutex lock;
    std::function<void()> listener; ///< Guarded by lock.
    bool told = false;              ///< That the listener's time has come. Guarded by lock.
    std::atomic<Clock::rep> deadline{0};
    std::thread watcher;
};

} // namespace zel
