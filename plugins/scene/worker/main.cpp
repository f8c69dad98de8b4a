// SPDX-License-Identifier: MIT
// A scene worker: it takes requests from its standard input, a socket to the host, until the host goes.
#include "plugins/scene/scene_wire.h"
#include "plugins/scene/worker/scene_reader.h"
#include "plugins/scene/worker/scene_writer.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <poll.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace {

/// Ends the process in the middle of whatever it does when the host is gone.
void EndWithHost() {
    std::thread([] {
        pollfd host{.fd = STDIN_FILENO, .events = POLLRDHUP, .revents = 0};
        while (poll(&host, 1, -1) <= 0) {
        }
        _exit(0);
    }).detach();
}

void Limit(int resource, rlim_t amount) {
    rlimit limit{};
    getrlimit(static_cast<__rlimit_resource>(resource), &limit);
    limit.rlim_cur = std::min(limit.rlim_max, amount);
    setrlimit(static_cast<__rlimit_resource>(resource), &limit);
}

/// A file that makes its reader ask for endless memory must not make the system look for a victim.
void LimitResources() {
    Limit(RLIMIT_CORE, 0);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which reserve terabytes and use little
    rlim_t const memory = static_cast<rlim_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
    Limit(RLIMIT_AS, memory / 4 * 3);
#endif
}

void Serve(Wire& wire) {
    WireReader in(wire);
    WireWriter out(wire);
    SceneRequest request;
    TransferRequest(in, request);
    CSceneDocument scene;
    SceneReply reply;
    if (request.task == SceneTask::Write) {
        TransferScene(in, scene);
        reply = WriteScene(request, scene);
    } else {
        reply = ReadScene(request, scene);
    }
    TransferReply(out, reply);
    if (request.task != SceneTask::Write && reply.code == IoSuccess) {
        TransferScene(out, scene);
    }
    wire.Flush();
}

} // namespace

int main() {
    std::signal(SIGPIPE, SIG_IGN);
    LimitResources();
    EndWithHost();
    Wire wire(STDIN_FILENO);
    try {
        for (;;) {
            Serve(wire);
        }
    } catch (WireLost const&) {
        // The host is gone.
    }
    std::fflush(nullptr);
    _exit(0); // past the watching thread
}
