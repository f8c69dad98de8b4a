// SPDX-License-Identifier: MIT
// What a test reads a running program by: a terminal of its own, and a pipe.

#pragma once

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

/// Some of what was written, or nothing when nobody has the other end any more.
inline std::string ReadSome(int descriptor) {
    char buffer[4096];
    ssize_t const count = read(descriptor, buffer, sizeof buffer);
    return {buffer, static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
}

inline std::string ReadToEnd(int descriptor) {
    std::string all;
    for (std::string some = ReadSome(descriptor); !some.empty(); some = ReadSome(descriptor)) {
        all += some;
    }
    return all;
}

/// The master's side of a terminal of its own.
class Terminal {
public:
    explicit Terminal(int columns) : master(posix_openpt(O_RDWR | O_NOCTTY)) {
        grantpt(master);
        unlockpt(master);
        winsize const size{24, static_cast<unsigned short>(columns), 0, 0};
        ioctl(master, TIOCSWINSZ, &size);
    }
    ~Terminal() { close(master); }
    Terminal(Terminal const&) = delete;
    Terminal& operator=(Terminal const&) = delete;

    std::string Name() const { return ptsname(master); }

    std::string ReadSome() const { return ::ReadSome(master); }
    std::string ReadAll() const { return ReadToEnd(master); }

private:
    int master;
};

/// A named pipe, in which a program stops where it is full.
class Pipe {
public:
    explicit Pipe(std::filesystem::path const& path) {
        mkfifo(path.c_str(), 0600);
        reader = open(path.c_str(), O_RDONLY | O_NONBLOCK); // without waiting for who writes
        fcntl(reader, F_SETFL, 0);
    }
    ~Pipe() { close(reader); }
    Pipe(Pipe const&) = delete;
    Pipe& operator=(Pipe const&) = delete;

    /// Waits for something to be read.
    bool HasSome() const {
        pollfd readable{reader, POLLIN, 0};
        return poll(&readable, 1, 60'000) == 1;
    }

    /// Everything until nobody has the other end any more.
    std::string ReadAll() const { return ReadToEnd(reader); }

private:
    int reader = -1;
};
