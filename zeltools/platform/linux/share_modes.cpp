// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/share_modes.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace platform {

namespace {

constexpr off_t FirstByte = off_t{1} << 62;
constexpr off_t SlotsOffset = 16; ///< Of the bytes for members that can only write, from FirstByte.
constexpr off_t SlotsOfGroup = 256;
constexpr unsigned int GroupCount = 6;

enum Group : unsigned int {
    UsesRead = 1U << 0,
    DeniesWrite = 1U << 1,
    DeniesDelete = 1U << 2,
    DeniesRead = 1U << 3,
    UsesWrite = 1U << 4,
    UsesDelete = 1U << 5,
};

unsigned int UserGroups(unsigned int rights) {
    return ((rights & ShareRead) != 0 ? UsesRead : 0U) | ((rights & ShareWrite) != 0 ? UsesWrite : 0U) |
           ((rights & ShareDelete) != 0 ? UsesDelete : 0U);
}

unsigned int DenierGroups(unsigned int rights) {
    return ((rights & ShareRead) != 0 ? DeniesRead : 0U) | ((rights & ShareWrite) != 0 ? DeniesWrite : 0U) |
           ((rights & ShareDelete) != 0 ? DeniesDelete : 0U);
}

constexpr unsigned int AllRights = ShareRead | ShareWrite | ShareDelete;

bool IsSomebodyElse(int error) {
    return error == EAGAIN || error == EACCES;
}

int SetLock(int descriptor, short type, off_t start, off_t length) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = FirstByte + start;
    lock.l_len = length;
    return fcntl(descriptor, F_OFD_SETLK, &lock);
}

/// Whether another open file holds a lock on these bytes. Asking needs no right to lock them.
bool IsLocked(int descriptor, off_t start, off_t length) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = FirstByte + start;
    lock.l_len = length;
    return fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

/// Calls `visit(first, count)` for each run of neighbouring groups until it answers false.
template <class Visit>
bool VisitRuns(unsigned int groups, Visit visit) {
    for (unsigned int first = 0; first < GroupCount; ++first) {
        unsigned int count = 0;
        while ((groups >> (first + count) & 1U) != 0) {
            ++count;
        }
        if (count > 0 && !visit(static_cast<off_t>(first), static_cast<off_t>(count))) {
            return false;
        }
        first += count;
    }
    return true;
}

bool IsAnybodyIn(int descriptor, unsigned int groups) {
    return !VisitRuns(groups, [&](off_t first, off_t count) {
        return !IsLocked(descriptor, first, count) &&
               !IsLocked(descriptor, SlotsOffset + first * SlotsOfGroup, count * SlotsOfGroup);
    });
}

std::minstd_rand& Random() {
    thread_local std::minstd_rand random{std::random_device{}()};
    return random;
}

/// Joins groups with a descriptor that can only write: a byte of its own in each. False with errno.
bool TakeSlots(int descriptor, unsigned int groups) {
    auto const start = static_cast<off_t>(Random()() % SlotsOfGroup);
    for (unsigned int group = 0; group < GroupCount; ++group) {
        if ((groups >> group & 1U) == 0) {
            continue;
        }
        off_t const slots = SlotsOffset + static_cast<off_t>(group) * SlotsOfGroup;
        off_t tried = 0;
        while (SetLock(descriptor, F_WRLCK, slots + (start + tried) % SlotsOfGroup, 1) != 0) {
            if (!IsSomebodyElse(errno) || ++tried == SlotsOfGroup) {
                return false;
            }
        }
    }
    return true;
}

enum class Attempt {
    Joined,
    Refused,
    NoLocks
};

Attempt Join(int descriptor, bool canRead, unsigned int groups, unsigned int opposites) {
    bool const hasJoined =
        canRead ? VisitRuns(groups,
                            [&](off_t first, off_t count) { return SetLock(descriptor, F_RDLCK, first, count) == 0; })
                : TakeSlots(descriptor, groups);
    if (!hasJoined && !IsSomebodyElse(errno)) {
        return Attempt::NoLocks;
    }
    if (hasJoined && !IsAnybodyIn(descriptor, opposites)) {
        return Attempt::Joined;
    }
    SetLock(descriptor, F_UNLCK, 0, SlotsOffset + static_cast<off_t>(GroupCount) * SlotsOfGroup);
    return Attempt::Refused;
}

} // namespace

bool TakeShareModes(int descriptor, unsigned int uses, unsigned int shares) {
    constexpr int Attempts = 4;
    constexpr unsigned int LongestPauseUs = 100;
    unsigned int const denied = AllRights & ~shares;
    unsigned int const groups = UserGroups(uses) | DenierGroups(denied);
    unsigned int const opposites = DenierGroups(uses) | UserGroups(denied);
    bool const canRead = (fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_WRONLY;
    for (int attempt = 1;; ++attempt) {
        Attempt const result = Join(descriptor, canRead, groups, opposites);
        if (result != Attempt::Refused || attempt == Attempts) {
            return result != Attempt::Refused;
        }
        std::this_thread::sleep_for(std::chrono::microseconds{Random()() % LongestPauseUs});
    }
}

bool IsUseDenied(std::string const& nativePath, unsigned int uses) {
    return IsUseDenied(AT_FDCWD, nativePath.c_str(), uses);
}

bool IsUseDenied(int folder, char const* name, unsigned int uses) {
    int const descriptor = openat(folder, name, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    bool const isDenied = IsAnybodyIn(descriptor, DenierGroups(uses));
    close(descriptor);
    return isDenied;
}

} // namespace platform
