// SPDX-License-Identifier: MIT
#include "zeltools/platform/network_drives.h"

#include "zeltools/platform/drives.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/mount_table.h"
#include "zeltools/platform/linux/path_names.h"
#include "zeltools/platform/native_path.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ; // NOLINT: the process's environment, which the mount programs inherit

namespace platform {

namespace {

/// Where a native path lies on a server, and the mount that leads there.
struct RemotePlace {
    std::string server;
    std::vector<std::string> names;
    std::string mountPoint; ///< Empty where no table names one.
    std::string fileSystem;
    bool isConnected = false;
    bool isRemembered = false; ///< The system's table has an entry for it.
};

std::u16string ServerForm(RemotePlace const& place) {
    std::u16string text = u"\\\\";
    AppendFromNativeName(place.server, text);
    for (std::string const& name : place.names) {
        text += u'\\';
        AppendFromNativeName(name, text);
    }
    return text;
}

RemotePlace PlaceOnMount(Mount const& mount, std::string_view nativePath) {
    RemotePlace place{mount.server, mount.names, mount.mountPoint, mount.fileSystem, false, false};
    SplitNativeNames(nativePath.substr(std::min(mount.mountPoint.size(), nativePath.size())), place.names);
    return place;
}

/// Finds the server place of a native folder: on what is mounted there, else on what the system remembers.
std::optional<RemotePlace> FindPlaceOfFolder(std::string_view nativePath) {
    std::vector<Mount> const mounts = ReadMounts();
    Mount const* const mounted = FindMountOfPath(mounts, nativePath);
    std::vector<Mount> const remembered = ReadRememberedMounts();
    Mount const* const absent = FindMountOfPath(remembered, nativePath);
    if (mounted != nullptr && mounted->IsNetwork()) {
        RemotePlace place = PlaceOnMount(*mounted, nativePath);
        place.isConnected = true;
        return place;
    }
    if (absent == nullptr || !absent->IsNetwork() ||
        (mounted != nullptr && mounted->mountPoint.size() > absent->mountPoint.size())) {
        return std::nullopt;
    }
    RemotePlace place = PlaceOnMount(*absent, nativePath);
    place.isRemembered = true;
    return place;
}

/// Finds the mount of a share that a drive leads to by name.
RemotePlace FindPlaceOfShare(std::string_view share) {
    RemotePlace place;
    SplitNativeNames(share, place.names);
    if (place.names.empty()) {
        return place;
    }
    place.server = std::move(place.names.front());
    place.names.erase(place.names.begin());
    std::vector<Mount> const mounts = ReadMounts();
    std::vector<Mount> const remembered = ReadRememberedMounts();
    Mount const* const mounted = FindMountOfServer(mounts, place.server, place.names);
    Mount const* const absent = FindMountOfServer(remembered, place.server, place.names);
    if (Mount const* const mount = mounted != nullptr ? mounted : absent) {
        place.mountPoint = mount->mountPoint;
        place.fileSystem = mount->fileSystem;
    }
    place.isConnected = mounted != nullptr;
    place.isRemembered = absent != nullptr;
    return place;
}

bool IsSlash(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

/// `C:` or `C:\`.
bool IsDriveText(std::u16string_view drive) {
    return drive.size() >= 2 && drive.size() <= 3 && drive[1] == u':' && (drive.size() == 2 || IsSlash(drive[2]));
}

/// Looks up a drive. ErrorSuccess and ErrorConnectionUnavailable give a place.
unsigned int FindPlaceOfDrive(char16_t letter, RemotePlace& place) {
    std::string target;
    if (!GetDriveTarget(letter, target)) {
        return ErrorBadDevice;
    }
    if (target.rfind("//", 0) == 0) {
        place = FindPlaceOfShare(target);
    } else if (std::optional<RemotePlace> found = FindPlaceOfFolder(target)) {
        place = std::move(*found);
    } else {
        return ErrorNotConnected;
    }
    return place.isConnected ? ErrorSuccess : ErrorConnectionUnavailable;
}

/// Runs one of the system's mount programs, without a terminal unless it may ask.
unsigned int RunMountProgram(std::vector<std::string> arguments, bool mayAsk) {
    constexpr auto Limit = std::chrono::seconds{30};
    constexpr auto Pause = std::chrono::milliseconds{5};
    std::vector<char*> argumentPointers;
    for (std::string& argument : arguments) {
        argumentPointers.push_back(argument.data());
    }
    argumentPointers.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (!mayAsk) {
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t program = 0;
    int const failure =
        posix_spawnp(&program, argumentPointers[0], &actions, nullptr, argumentPointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) {
        return failure == ENOENT ? ErrorNoNetwork : ErrorFromErrno(failure);
    }
    int status = 0;
    auto const end = std::chrono::steady_clock::now() + Limit;
    for (;;) {
        pid_t const ended = waitpid(program, &status, WNOHANG);
        if (ended == program) {
            break;
        }
        if (ended < 0 && errno != EINTR) {
            return ErrorGenFailure; // somebody else has waited for it
        }
        if (std::chrono::steady_clock::now() >= end) {
            kill(program, SIGKILL);
            waitpid(program, &status, 0);
            return ErrorTimeout;
        }
        std::this_thread::sleep_for(Pause);
    }
    constexpr int NotFoundStatus = 127; // what a spawn that failed late reports
    bool const hasEnded = WIFEXITED(status);
    return hasEnded && WEXITSTATUS(status) == 0                ? ErrorSuccess
           : hasEnded && WEXITSTATUS(status) == NotFoundStatus ? ErrorNoNetwork
                                                               : ErrorNoNetOrBadPath;
}

} // namespace

unsigned int WNetGetConnectionW(std::u16string_view drive, std::u16string& remote) {
    RemotePlace place;
    unsigned int const error = IsDriveText(drive) ? FindPlaceOfDrive(drive[0], place) : ErrorBadDevice;
    if (error == ErrorSuccess || error == ErrorConnectionUnavailable) {
        remote = ServerForm(place);
    }
    return error;
}

unsigned int WNetGetUniversalNameW(std::u16string_view path, std::u16string& universal) {
    std::string native;
    RemotePlace place;
    std::u16string_view rest;
    if (path.size() >= 2 && path[1] == u':') {
        unsigned int const error = FindPlaceOfDrive(path[0], place);
        if (error != ErrorSuccess) {
            return error;
        }
        rest = path.substr(2);
    } else {
        bool const isRooted = !path.empty() && IsSlash(path[0]) && !(path.size() > 1 && IsSlash(path[1]));
        if (!isRooted || !ToNativeName(path, native)) {
            return ErrorBadDevice;
        }
        std::optional<RemotePlace> const found = FindPlaceOfFolder(native);
        if (!found.has_value()) {
            return ErrorNotConnected;
        }
        if (!found->isConnected) {
            return ErrorConnectionUnavailable;
        }
        place = *found;
        rest = IsSlash(path.back()) ? u"\\" : u"";
    }
    universal = ServerForm(place);
    if (!rest.empty() && !IsSlash(rest[0])) {
        universal += u'\\';
    }
    universal += rest;
    return ErrorSuccess;
}

unsigned int WNetCancelConnection2W(std::u16string_view drive, bool force) {
    RemotePlace place;
    unsigned int const error = IsDriveText(drive) ? FindPlaceOfDrive(drive[0], place) : ErrorNotConnected;
    if (error != ErrorSuccess) {
        return ErrorNotConnected;
    }
    std::vector<std::string> arguments;
    if (place.fileSystem == "fuse.gvfsd-fuse") {
        arguments = {"gio", "mount", "-u", force ? "-f" : "--", place.mountPoint};
    } else if (place.fileSystem == "fuse.sshfs") {
        arguments = {"fusermount3", force ? "-uz" : "-u", "--", place.mountPoint};
    } else {
        arguments = {"umount", force ? "-l" : "--", place.mountPoint};
    }
    unsigned int const result = RunMountProgram(std::move(arguments), false);
    return result == ErrorNoNetOrBadPath ? ErrorAccessDenied : result;
}

unsigned int WNetAddConnection3W(std::u16string_view drive, std::u16string_view remote, unsigned int flags) {
    RemotePlace place;
    unsigned int error = IsDriveText(drive) ? FindPlaceOfDrive(drive[0], place) : ErrorBadDevice;
    if (error != ErrorConnectionUnavailable) {
        return error == ErrorNotConnected ? ErrorDeviceAlreadyRemembered : error;
    }
    bool const mayAsk = (flags & ConnectInteractive) != 0;
    if (place.isRemembered) {
        error = RunMountProgram({"mount", place.mountPoint}, mayAsk);
    } else {
        std::vector<std::string> names;
        if (!SplitNames(remote, 0, names) || names.size() < 2) {
            return ErrorBadNetName;
        }
        error = RunMountProgram({"gio", "mount", "smb://" + names[0] + '/' + names[1]}, mayAsk);
    }
    if (error != ErrorSuccess) {
        return error;
    }
    // The programs' word is not enough: the table must lead there now.
    return FindPlaceOfDrive(drive[0], place) == ErrorSuccess ? ErrorSuccess : ErrorNoNetOrBadPath;
}

std::u16string GetComputerNameW() {
    std::array<char, HOST_NAME_MAX + 1> name{};
    if (gethostname(name.data(), name.size() - 1) != 0) {
        return {};
    }
    std::string_view const full{name.data()};
    std::u16string text;
    AppendFromNativeName(full.substr(0, full.find('.')), text);
    return text;
}

} // namespace platform
