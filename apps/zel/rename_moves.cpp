// SPDX-License-Identifier: MIT
#include "rename_moves.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <unistd.h>

namespace zel {

namespace {

namespace fs = std::filesystem;

volatile std::sig_atomic_t stopRequested = 0;

constexpr std::array<int, 3> StopSignals = {SIGINT, SIGTERM, SIGHUP};
std::array<struct sigaction, StopSignals.size()> formerActions;

void RequestStop(int) {
    stopRequested = 1;
}

std::string Reason(int error) {
    return error == EEXIST ? "there is a file of that name" : std::strerror(error);
}

/// For file systems that cannot rename with a condition: a second name is made, which fails where there is one, and the
/// first is taken away.
std::string MoveByLink(std::string const& from, std::string const& to) {
    if (linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), 0) != 0) {
        int const error = errno;
        return error == EPERM || error == EOPNOTSUPP
                   ? "this file system cannot rename without the danger of replacing a file"
                   : Reason(error);
    }
    if (unlink(from.c_str()) != 0) {
        int const error = errno;
        unlink(to.c_str());
        return Reason(error);
    }
    return {};
}

/// Makes the folders of a path that are missing.
std::string MakeFolders(std::string const& path) {
    std::error_code error;
    fs::create_directories(fs::path(path).parent_path(), error);
    return error ? error.message() : std::string();
}

/// A name beside a file that nobody has.
std::string NameForAWhile(std::string const& folder) {
    for (unsigned int i = 0;; ++i) {
        std::string name = fmt::format("{}.zel-rename-{}-{}", folder, getpid(), i);
        std::error_code unknown;
        if (!fs::exists(fs::symlink_status(name, unknown))) {
            return name;
        }
    }
}

class Carrier {
public:
    Carrier(RenamePlan& renamePlan, std::function<bool()> const& mustStopNow)
        : plan(renamePlan), mustStop(mustStopNow) {}

    /// Each for itself: what has its new name keeps it, and what follows a failure finds its name taken.
    void CarryRow(RenameChain const& chain) {
        for (std::size_t const i : chain.items) {
            RenameItem& item = plan.items[i];
            if (IsStopped()) {
                item.state = RenameState::NotDone;
                continue;
            }
            item.reason = Move(item.Source(), item.Target());
            item.state = item.reason.empty() ? RenameState::Renamed : RenameState::Failed;
        }
    }

    /// All or none: the first one waits until the last one has left its name.
    void CarryRing(RenameChain const& chain) {
        if (IsStopped()) {
            for (std::size_t const i : chain.items) {
                plan.items[i].state = RenameState::NotDone;
            }
            return;
        }
        RenameItem const& first = plan.items[chain.items.front()];
        std::string const waiting = NameForAWhile(first.folder);
        std::vector<std::pair<std::string, std::string>> moves = {{first.Source(), waiting}};
        for (std::size_t k = 1; k < chain.items.size(); ++k) {
            RenameItem const& item = plan.items[chain.items[k]];
            moves.emplace_back(item.Source(), item.Target());
        }
        moves.emplace_back(waiting, first.Target());
        std::string reason;
        std::size_t done = 0;
        while (done < moves.size() && reason.empty()) {
            reason = Move(moves[done].first, moves[done].second);
            done += reason.empty() ? 1 : 0;
        }
        bool const whole = done == moves.size();
        while (!whole && done-- > 0) {
            std::string const stuck = Move(moves[done].second, moves[done].first);
            if (!stuck.empty()) {
                reason += fmt::format("; {} is left there: {}", moves[done].second, stuck);
            }
        }
        for (std::size_t const i : chain.items) {
            plan.items[i].state = whole ? RenameState::Renamed : RenameState::Failed;
            plan.items[i].reason = reason;
        }
    }

private:
    static std::string Move(std::string const& from, std::string const& to) {
        std::string reason = MakeFolders(to);
        return reason.empty() ? MoveWithoutReplacing(from, to) : reason;
    }

    /// Asks until it is told once.
    bool IsStopped() {
        stopped = stopped || mustStop();
        return stopped;
    }

    RenamePlan& plan;
    std::function<bool()> const& mustStop;
    bool stopped = false;
};

} // namespace

std::string MoveWithoutReplacing(std::string const& from, std::string const& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    int const error = errno;
    return error == EINVAL || error == ENOSYS ? MoveByLink(from, to) : Reason(error);
}

void CarryOut(RenamePlan& plan, std::function<bool()> const& mustStop) {
    Carrier carrier(plan, mustStop);
    for (RenameChain const& chain : plan.chains) {
        chain.isRing ? carrier.CarryRing(chain) : carrier.CarryRow(chain);
    }
}

PatientStop::PatientStop() {
    stopRequested = 0;
    struct sigaction action {};
    action.sa_handler = &RequestStop;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < StopSignals.size(); ++i) {
        sigaction(StopSignals[i], &action, &formerActions[i]);
        if (formerActions[i].sa_handler == SIG_IGN) {
            sigaction(StopSignals[i], &formerActions[i], nullptr);
        }
    }
}

PatientStop::~PatientStop() {
    for (std::size_t i = 0; i < StopSignals.size(); ++i) {
        sigaction(StopSignals[i], &formerActions[i], nullptr);
    }
}

bool PatientStop::IsRequested() {
    return stopRequested != 0;
}

} // namespace zel
