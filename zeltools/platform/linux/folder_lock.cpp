// SPDX-License-Identifier: MIT
#include "zeltools/platform/folder_lock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace platform {

FolderLock::FolderLock(std::string const& folder)
    : descriptor(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    int result = -1;
    do {
        result = descriptor < 0 ? -1 : flock(descriptor, LOCK_EX);
    } while (result != 0 && descriptor >= 0 && errno == EINTR);
    isHeld = result == 0;
}

FolderLock::~FolderLock() {
    if (descriptor >= 0) {
        close(descriptor);
    }
}

} // namespace platform
