// SPDX-License-Identifier: MIT
#include "interruption.h"

#include "commands.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace zel {

namespace {

/// A person takes an answer within a tenth of a second for an immediate one; the rest of it is for printing.
constexpr std::chrono::milliseconds Patience{70};

constexpr char Interrupted = 'i';
constexpr char Acknowledged = 'a';
constexpr char Finished = 'f';

std::atomic<int> requests{0};
static_assert(std::atomic<int>::is_always_lock_free, "the handler uses it");
std::atomic<int> handlerPipe{-1};

void Handle(int) {
    if (requests.fetch_add(1) != 0) {
        _exit(ExitInterrupted);
    }
    int const kept = errno;
    [[maybe_unused]] ssize_t const written = write(handlerPipe.load(), &Interrupted, 1);
    errno = kept;
}

} // namespace

Interruption::Interruption() {
    if (pipe2(pipe, O_CLOEXEC) != 0) {
        return; // without a pipe the system's own answer to an interruption stays
    }
    requests = 0;
    handlerPipe = pipe[1];
    watcher = std::thread([this] { Watch(); });
    struct sigaction action {};
    action.sa_handler = &Handle;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, &former);
    if (former.sa_handler == SIG_IGN) {
        sigaction(SIGINT, &former, nullptr);
    }
}

Interruption::~Interruption() {
    if (!watcher.joinable()) {
        return;
    }
    sigaction(SIGINT, &former, nullptr);
    Tell(Finished);
    watcher.join();
    handlerPipe = -1;
    close(pipe[0]);
    close(pipe[1]);
}

void Interruption::SetListener(std::function<void()> newListener) {
    std::lock_guard const hold(lock);
    listener = std::move(newListener);
    if (told && listener) {
        listener();
    }
}

bool Interruption::IsRequested() const {
    return requests.load(std::memory_order_relaxed) != 0;
}

void Interruption::Acknowledge() {
    Tell(Acknowledged);
}

Interruption::Clock::time_point Interruption::Deadline() const {
    Clock::rep const set = deadline.load();
    // The watcher may not have come to set it yet.
    return set ? Clock::time_point(Clock::duration(set)) : Clock::now() + Patience;
}

void Interruption::Tell(char word) const {
    [[maybe_unused]] ssize_t const written = write(pipe[1], &word, 1);
}

void Interruption::Watch() {
    char word = 0;
    bool watching = false;
    for (;;) {
        if (watching) {
            auto const left = std::chrono::ceil<std::chrono::milliseconds>(Deadline() - Clock::now()).count();
            pollfd readable{pipe[0], POLLIN, 0};
            if (left <= 0 || poll(&readable, 1, static_cast<int>(left)) == 0) {
                _exit(ExitInterrupted);
            }
        }
        ssize_t const count = read(pipe[0], &word, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0 || word == Finished) {
            return;
        }
        watching = word == Interrupted;
        if (watching) {
            deadline = (Clock::now() + Patience).time_since_epoch().count();
            std::lock_guard const hold(lock);
            told = true;
            if (listener) {
                listener();
            }
        }
    }
}

} // namespace zel
