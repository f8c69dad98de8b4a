// SPDX-License-Identifier: MIT
// The processes that read and write scenes. assimp stops the whole process on input that one of its assertions does not
// expect, some of its readers overrun their memory on broken files, and none can be interrupted. So it never runs in
// the host: a worker that breaks down costs one file, and cancelling is killing.
//
//     SceneWorkers workers("scene_worker");
//     if (std::unique_ptr<SceneWorker> worker = workers.Borrow(error)) {
//         ... through worker->GetSocket() ...
//         workers.Return(std::move(worker));     // or, after a failure, let it go: its process is killed
//     }
//
// A worker ends by itself when its host does. Threads: any.

#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <sys/types.h>
#include <vector>

/// A process and the socket to it. Threads: one at a time.
class SceneWorker {
public:
    /// @param program  Native name. Null with the system's words in `error` when it cannot be started.
    static std::unique_ptr<SceneWorker> Start(std::string const& program, std::string& error);
    /// Kills the process.
    ~SceneWorker();
    SceneWorker(SceneWorker const&) = delete;
    SceneWorker& operator=(SceneWorker const&) = delete;

    int GetSocket() const { return socket; }
    /// Whether it has served nobody yet.
    bool IsFresh() const { return served == 0; }
    /// To be called when the socket is closed from the other side: the number of the signal that ended the process, 0
    /// when it ended by itself.
    int WaitForEnd();

private:
    friend class SceneWorkers;

    SceneWorker(pid_t id, int connection) : process(id), socket(connection) {}

    pid_t process; ///< 0 when it has ended and was waited for.
    int socket;
    unsigned int served = 0; ///< Files.
};

/// The workers that wait for work.
class SceneWorkers {
public:
    /// @param programName  A file of the plug-in's backends.
    explicit SceneWorkers(char const* programName) : name(programName) {}

    /// A waiting worker, or a new one. Null with the reason in `error` when none can be started.
    std::unique_ptr<SceneWorker> Borrow(std::string& error);
    /// A new one.
    std::unique_ptr<SceneWorker> Start(std::string& error) const;
    /// Takes back a worker that has served a file and is ready for the next.
    void Return(std::unique_ptr<SceneWorker> worker);

private:
    char const* name;
    std::mutex lock;
    std::vector<std::unique_ptr<SceneWorker>> waiting; ///< Guarded by lock.
};
