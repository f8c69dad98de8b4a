// SPDX-License-Identifier: MIT
// A lock among processes that rewrite a file of a folder: who reads, changes and replaces a file holds it meanwhile, so
// that no change of another is lost.

#pragma once

#include <string>

namespace platform {

/// Held for as long as the object lives, and dropped by the kernel with the process. It leaves nothing on the disk.
/// Threads: any. It excludes other objects of this process too, so a thread must not take the same folder twice.
class [[nodiscard]] FolderLock {
public:
    /// Waits for the lock. @param folder  Native; empty for the current folder.
    explicit FolderLock(std::string const& folder);
    ~FolderLock();
    FolderLock(FolderLock const&) = delete;
    FolderLock& operator=(FolderLock const&) = delete;

    /// False when the folder is missing, may not be read, or lies on a file system without locks.
    bool IsHeld() const { return isHeld; }

private:
    int descriptor;
    bool isHeld = false;
};

} // namespace platform
