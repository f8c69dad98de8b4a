// SPDX-License-Identifier: MIT
#include "plugins/scene/wire.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <utility>

namespace {

constexpr std::size_t BufferSize = 1 << 16;
/// So much between two polls of a long transfer, which takes well below a millisecond.
constexpr std::size_t MostAtOnce = 1 << 20;
/// A fifth of the time within which a cancelled operation must end.
constexpr int PollMs = 20;

} // namespace

Wire::Wire(int descriptor, std::function<void()> whileWaiting) : socket(descriptor), poll(std::move(whileWaiting)) {
    outgoing.reserve(BufferSize);
}

void Wire::Wait(short events) const {
    pollfd waited{.fd = socket, .events = events, .revents = 0};
    while (::poll(&waited, 1, poll ? PollMs : -1) <= 0) {
        if (poll) {
            poll();
        }
    }
}

void Wire::Send(void const* data, std::size_t size) {
    auto const* const bytes = static_cast<char const*>(data);
    if (outgoing.size() + size > BufferSize) {
        Flush();
    }
    if (size > BufferSize) {
        SendNow(bytes, size);
    } else {
        outgoing.append(bytes, size);
    }
}

void Wire::Flush() {
    SendNow(outgoing.data(), outgoing.size());
    outgoing.clear();
}

void Wire::SendNow(char const* data, std::size_t size) {
    while (size > 0) {
        if (poll) {
            poll();
        }
        ssize_t const sent = send(socket, data, std::min(size, MostAtOnce), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent >= 0) {
            data += sent;
            size -= static_cast<std::size_t>(sent);
        } else if (errno == EAGAIN) {
            Wait(POLLOUT);
        } else if (errno != EINTR) {
            throw WireLost();
        }
    }
}

std::size_t Wire::ReceiveSome(char* data, std::size_t size) {
    for (;;) {
        if (poll) {
            poll();
        }
        ssize_t const got = recv(socket, data, std::min(size, MostAtOnce), MSG_DONTWAIT);
        if (got > 0) {
            return static_cast<std::size_t>(got);
        }
        if (got < 0 && errno == EAGAIN) {
            Wait(POLLIN);
        } else if (got == 0 || errno != EINTR) {
            throw WireLost();
        }
    }
}

void Wire::Receive(void* data, std::size_t size) {
    auto* bytes = static_cast<char*>(data);
    while (size > 0) {
        std::size_t const ready = std::min(size, incoming.size() - taken);
        if (ready > 0) {
            std::memcpy(bytes, incoming.data() + taken, ready);
            taken += ready;
            bytes += ready;
            size -= ready;
        } else if (size >= BufferSize) {
            std::size_t const got = ReceiveSome(bytes, size);
            bytes += got;
            size -= got;
        } else {
            incoming.resize(BufferSize);
            taken = 0;
            std::size_t got = 0;
            try {
                got = ReceiveSome(incoming.data(), BufferSize);
            } catch (...) {
                incoming.clear();
                throw;
            }
            incoming.resize(got);
        }
    }
}
