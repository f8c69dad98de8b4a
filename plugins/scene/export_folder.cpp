// SPDX-License-Identifier: MIT
#include "plugins/scene/export_folder.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

ExportFolder::ExportFolder(std::string const& nativeName) {
    std::error_code missing;
    std::filesystem::path const resolved = std::filesystem::canonical(nativeName, missing);
    std::filesystem::path const file = missing ? std::filesystem::path(nativeName) : resolved;
    target = file.parent_path().native() + '/';
    name = file.filename().native();
}

ExportFolder::~ExportFolder() {
    if (!folder.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
}

bool ExportFolder::FailBySystem(int number) {
    switch (number) {
    case ENOSPC:
    case EDQUOT: error = IoDiskFull; break;
    case EACCES:
    case EPERM:
    case EROFS: error = IoUnauthorized; break;
    default: error = IoCannotOpen; break;
    }
    return false;
}

bool ExportFolder::Create() {
    struct stat old {};
    bool const replaces = stat((target + name).c_str(), &old) == 0;
    if (replaces && !S_ISREG(old.st_mode)) {
        return FailBySystem(EISDIR);
    }
    // Renaming asks nothing of the old file, so that a write-protected one would be replaced too.
    if (replaces && access((target + name).c_str(), W_OK) != 0) {
        return FailBySystem(errno);
    }
    std::string pattern = target + ".zel-XXXXXX";
    if (!mkdtemp(pattern.data())) {
        return FailBySystem(errno);
    }
    folder = pattern;
    return true;
}

bool ExportFolder::Place(std::string const& file) {
    std::string const written = folder + '/' + file;
    int const descriptor = open(written.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW);
    if (descriptor < 0) {
        return FailBySystem(errno);
    }
    struct stat old {};
    bool const keepsMode = stat((target + file).c_str(), &old) == 0 && S_ISREG(old.st_mode);
    bool const flushed = (!keepsMode || fchmod(descriptor, old.st_mode & 07777) == 0) && fsync(descriptor) == 0;
    int const failure = errno;
    close(descriptor);
    if (!flushed) {
        return FailBySystem(failure);
    }
    return rename(written.c_str(), (target + file).c_str()) == 0 || FailBySystem(errno);
}

bool ExportFolder::Commit() {
    std::vector<std::string> files;
    std::error_code failure;
    for (auto const& entry : std::filesystem::directory_iterator(folder, failure)) {
        if (entry.path().filename() != name) {
            files.push_back(entry.path().filename().native());
        }
    }
    files.push_back(name);
    for (std::string const& file : files) {
        if (!Place(file)) {
            return false;
        }
    }
    // The content is safe; where a folder cannot be flushed, the names follow when the system gets to it.
    int const descriptor = open(target.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
    return true;
}
