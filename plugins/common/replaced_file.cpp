// SPDX-License-Identifier: MIT
#include "plugins/common/replaced_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// The file behind a link; the name itself when there is none.
std::string Resolve(std::string const& name) {
    std::unique_ptr<char, void (*)(void*)> const resolved(realpath(name.c_str(), nullptr), std::free);
    return resolved ? resolved.get() : name;
}

std::string FolderOf(std::string const& name) {
    std::size_t const slash = name.rfind('/');
    return slash == std::string::npos ? "./" : name.substr(0, slash + 1);
}

std::string ExtensionOf(std::string const& name) {
    std::size_t const dot = name.rfind('.');
    return dot == std::string::npos || name.find('/', dot) != std::string::npos ? "" : name.substr(dot);
}

/// A descriptor that is closed when it goes, and leaves errno alone then.
class Descriptor {
public:
    Descriptor(std::string const& name, int flags) : number(open(name.c_str(), flags | O_CLOEXEC, 0666)) {}
    ~Descriptor() {
        int const error = errno;
        if (number >= 0) {
            close(number);
        }
        errno = error;
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;

    int const number;
};

} // namespace

ReplacedFile::ReplacedFile(std::string const& nativeName) : targetName(Resolve(nativeName)) {}

ReplacedFile::~ReplacedFile() {
    if (!temporaryName.empty()) {
        unlink(temporaryName.c_str());
    }
}

bool ReplacedFile::Create() {
    // Renaming asks nothing of the old file, so that a write-protected one would be replaced too.
    if (access(targetName.c_str(), W_OK) != 0 && errno != ENOENT) {
        return false;
    }
    std::random_device random;
    // A name that is taken is another writer's; sixty-four bits do not meet twice.
    for (int attempt = 0; attempt < 8; ++attempt) {
        char digits[24];
        std::snprintf(digits, sizeof digits, ".zel-%08x%08x", random(), random());
        std::string const name = FolderOf(targetName) + digits + ExtensionOf(targetName);
        if (Descriptor(name, O_WRONLY | O_CREAT | O_EXCL).number >= 0) {
            temporaryName = name;
            return true;
        }
        if (errno != EEXIST) {
            return false;
        }
    }
    return false;
}

bool ReplacedFile::Commit() {
    struct stat old {};
    bool const replaces = stat(targetName.c_str(), &old) == 0;
    if (replaces && !S_ISREG(old.st_mode)) {
        errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
        return false;
    }
    {
        Descriptor const written(temporaryName, O_WRONLY);
        if (written.number < 0 || (replaces && fchmod(written.number, old.st_mode & 07777) != 0) ||
            fsync(written.number) != 0) {
            return false;
        }
    }
    if (rename(temporaryName.c_str(), targetName.c_str()) != 0) {
        return false;
    }
    temporaryName.clear();
    // The content is safe; where a folder cannot be flushed, the name follows when the system gets to it.
    fsync(Descriptor(FolderOf(targetName), O_RDONLY | O_DIRECTORY).number);
    return true;
}
