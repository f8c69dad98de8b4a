// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/system_errors.h"

#include "zeltools/platform/errors.h"

#include <cerrno>
#include <sys/stat.h>

namespace platform {

namespace {

/// Whether the folder that would hold the path's last component is there.
bool IsParentThere(std::string const& path) {
    std::size_t const lastOfName = path.find_last_not_of('/');
    if (lastOfName == std::string::npos) {
        return true;
    }
    std::size_t const slash = path.find_last_of('/', lastOfName);
    std::string const parent = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    struct stat status {};
    return stat(parent.c_str(), &status) == 0;
}

} // namespace

bool FailWithErrno() {
    SetLastError(ErrorFromErrno(errno));
    return false;
}

bool FailWithErrno(std::string const& nativePath) {
    int const cause = errno; // looking for the folder changes it
    bool const isFolderMissing = cause == ENOENT && !IsParentThere(nativePath);
    return FailWith(isFolderMissing ? ErrorPathNotFound : ErrorFromErrno(cause));
}

bool FailWith(unsigned int error) {
    SetLastError(error);
    return false;
}

} // namespace platform
