// SPDX-License-Identifier: MIT
// A terminal of the test's own, to run a program on.

#pragma once

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

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

    /// Some of what was written, or nothing when nobody has the terminal any more.
    std::string ReadSome() const {
        char buffer[4096];
        ssize_t const count = read(master, buffer, sizeof buffer);
        return {buffer, static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
    }

    std::string ReadAll() const {
        std::string all;
        for (std::string some = ReadSome(); !some.empty(); some = ReadSome()) {
            all += some;
        }
        return all;
    }

private:
    int master;
};
