// SPDX-License-Identifier: MIT
#include "plugins/scene/scene_workers.h"

#include "plugins/common/backend_file.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// assimp loses a little memory with every file; a worker is replaced before that adds up.
constexpr unsigned int FilesPerWorker = 1000;

/// Starts a program with the socket as its standard input and none of the host's other files.
int Spawn(std::string const& program, int connection, pid_t& process) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, connection, STDIN_FILENO);
    // What assimp prints of a file is nobody's report.
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // A group of its own: Ctrl-C goes to the host, which then decides. And no signals of the host's are blocked in it.
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
    char* const arguments[] = {const_cast<char*>(program.c_str()), nullptr};
    int const error = posix_spawn(&process, program.c_str(), &files, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

std::mutex buryLock;
std::vector<pid_t> dying; ///< Killed, and not yet off the system's list. Guarded by buryLock.

/// Takes killed processes off the system's list. That can last for one that hangs in a dead mount, so nobody waits:
/// what is still dying gets another look when the next one is.
void Bury(pid_t process) {
    std::lock_guard const guard(buryLock);
    dying.push_back(process);
    std::erase_if(dying, [](pid_t other) { return waitpid(other, nullptr, WNOHANG) != 0; });
}

} // namespace

std::unique_ptr<SceneWorker> SceneWorker::Start(std::string const& program, std::string& error) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        error = std::strerror(errno);
        return nullptr;
    }
    pid_t process = 0;
    int const failure = Spawn(program, ends[1], process);
    close(ends[1]);
    if (failure != 0) {
        close(ends[0]);
        error = program + ": " + std::strerror(failure);
        return nullptr;
    }
    return std::unique_ptr<SceneWorker>(new SceneWorker(process, ends[0]));
}

SceneWorker::~SceneWorker() {
    close(socket);
    if (process != 0) {
        kill(process, SIGKILL);
        Bury(process);
    }
}

int SceneWorker::WaitForEnd() {
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) {
            status = 0; // a host that waits for all its children has seen it already
            break;
        }
    }
    process = 0;
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

std::unique_ptr<SceneWorker> SceneWorkers::Borrow(std::string& error) {
    {
        std::lock_guard const guard(lock);
        if (!waiting.empty()) {
            std::unique_ptr<SceneWorker> worker = std::move(waiting.back());
            waiting.pop_back();
            return worker;
        }
    }
    return Start(error);
}

std::unique_ptr<SceneWorker> SceneWorkers::Start(std::string& error) const {
    std::string const program = FindBackendFile(name, error);
    return program.empty() ? nullptr : SceneWorker::Start(program, error);
}

void SceneWorkers::Return(std::unique_ptr<SceneWorker> worker) {
    if (++worker->served < FilesPerWorker) {
        std::lock_guard const guard(lock);
        waiting.push_back(std::move(worker));
    }
}
