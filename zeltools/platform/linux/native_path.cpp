// SPDX-License-Identifier: MIT
// The shapes of a path, and the search for a file whose name is known without its case. The names themselves are in
// native_names.cpp.

#include "zeltools/platform/native_path.h"

#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/drives.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/mount_table.h"
#include "zeltools/platform/linux/name_case.h"
#include "zeltools/platform/linux/path_names.h"
#include "zeltools/platform/linux/system_errors.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace platform {

namespace {

bool IsSlash(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

bool IsLetter(char16_t unit) {
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

bool IsDrive(std::u16string_view path) {
    return path.size() >= 2 && path[1] == u':' && IsLetter(path[0]);
}

bool IsThere(std::string const& path) {
    struct stat status {};
    return RetryInterrupted([&] { return lstat(path.c_str(), &status); }) == 0;
}

/// Finds the entry of `folder` that differs from `name` in case only; of several, the first in byte order.
bool FindNameWithoutCase(std::string const& folder, std::string const& name, std::string& found) {
    int const descriptor = RetryInterrupted(
        [&] { return open(folder.empty() ? "/" : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (descriptor < 0) {
        return false;
    }
    std::unique_ptr<DIR, int (*)(DIR*)> const entries{fdopendir(descriptor), closedir};
    bool isFound = false;
    while (dirent const* const entry = entries ? readdir(entries.get()) : nullptr) {
        if (IsSameNameWithoutCase(entry->d_name, name) && (!isFound || entry->d_name < found)) {
            found = entry->d_name;
            isFound = true;
        }
    }
    return isFound;
}

/// Appends names to a folder, each as the disk spells it; from the first that is missing in any case, as given.
bool AppendNamesWithoutCase(std::vector<std::string> const& names, std::string& native) {
    std::string exact = native;
    for (std::string const& name : names) {
        exact += '/';
        exact += name;
    }
    if (IsThere(exact) || (errno != ENOENT && errno != ENOTDIR)) {
        native = std::move(exact);
        return !IsCallCancelled() || FailWith(ErrorOperationAborted);
    }
    bool isMissing = false;
    for (std::string const& name : names) {
        std::string const folder = native;
        native += '/';
        native += name;
        std::string found;
        if (!isMissing && !IsThere(native)) {
            isMissing = !FindNameWithoutCase(folder, name, found);
            if (!isMissing) {
                native = folder + '/' + found;
            }
        }
        if (IsCallCancelled()) {
            return FailWith(ErrorOperationAborted);
        }
    }
    return true;
}

/// Builds the native path of what `rest` names below `folder`, which `rest` cannot leave.
bool ToNativePathBelow(std::vector<std::string> const& names, bool isDirectory, std::string folder,
                       std::string& native) {
    native = std::move(folder);
    if (!names.empty() && !AppendNamesWithoutCase(names, native)) {
        return false;
    }
    if (native.empty() || (isDirectory && native.back() != '/')) {
        native += '/';
    }
    return true;
}

bool ToNativeServerPath(std::vector<std::string> names, bool isDirectory, std::string& native) {
    if (names.empty()) {
        return FailWith(ErrorBadNetPath);
    }
    std::string const server = std::move(names.front());
    names.erase(names.begin());
    std::vector<Mount> const mounts = ReadMounts();
    Mount const* const mount = FindMountOfServer(mounts, server, names);
    if (mount == nullptr) {
        return FailWith(ErrorBadNetPath);
    }
    names.erase(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(mount->names.size()));
    return ToNativePathBelow(names, isDirectory, mount->mountPoint, native);
}

bool ToNativeDrivePath(std::u16string_view path, std::string& native) {
    std::string target;
    if (!GetDriveTarget(path[0], target)) {
        return FailWith(ErrorPathNotFound);
    }
    std::vector<std::string> names;
    std::u16string_view const rest = path.substr(2);
    bool const isDirectory = !rest.empty() && IsSlash(rest.back());
    if (target.rfind("//", 0) != 0) {
        return SplitNames(rest, 0, names) ? ToNativePathBelow(names, isDirectory, std::move(target), native)
                                          : FailWith(ErrorInvalidName);
    }
    SplitNativeNames(target, names);
    return SplitNames(rest, names.size(), names) ? ToNativeServerPath(std::move(names), isDirectory, native)
                                                 : FailWith(ErrorInvalidName);
}

} // namespace

bool ToNativePath(std::u16string_view path, std::string& native) {
    if (path.empty()) {
        return FailWith(ErrorPathNotFound);
    }
    bool const isServer = path.size() >= 2 && IsSlash(path[0]) && IsSlash(path[1]);
    if (!isServer) {
        if (IsDrive(path)) {
            return ToNativeDrivePath(path, native);
        }
        return ToNativeName(path, native) || FailWith(ErrorInvalidName);
    }
    path.remove_prefix(2);
    if (path.substr(0, 2) == u"?\\") { // the prefix that asks the original system not to touch a long path
        path.remove_prefix(2);
        if (IsDrive(path)) {
            return ToNativeDrivePath(path, native);
        }
        if (path.substr(0, 4) != u"UNC\\") {
            return FailWith(ErrorInvalidName);
        }
        path.remove_prefix(4);
    }
    std::vector<std::string> names;
    // The server and the share are no folders that `..` could leave.
    std::size_t const share = std::min(path.find_first_of(u"\\/"), path.size());
    std::size_t const below = std::min(path.find_first_of(u"\\/", share + 1), path.size());
    if (!SplitNames(path.substr(0, below), 0, names) || !SplitNames(path.substr(below), names.size(), names)) {
        return FailWith(ErrorInvalidName);
    }
    return ToNativeServerPath(std::move(names), !path.empty() && IsSlash(path.back()), native);
}

} // namespace platform
