// SPDX-License-Identifier: MIT
// What is mounted where: the kernel's table, the user's virtual file systems (gvfs), and the table of the mounts that
// the system remembers.
//
// A mount of a network file system is known by the server form of its source: `//server/share/sub` (cifs, smb3),
// `server:/export` (nfs), `user@server:/folder` (sshfs) all become the server and the names below it.
//
// Threads: any. Each question reads the tables anew, since mounts come and go; that costs less than any file call on
// a network.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct Mount {
    std::string mountPoint;         ///< Absolute, without trailing slash; "" for the root.
    std::string fileSystem;         ///< "ext4", "cifs", "fuse.sshfs", ...
    std::string source;             ///< As the table has it: "/dev/sda1", "//server/share", ...
    std::string device;             ///< "8:1"; empty in the remembered table.
    std::string server;             ///< Empty for what is no network file system.
    std::vector<std::string> names; ///< Share and folders on the server, native.

    bool IsNetwork() const { return !server.empty(); }
};

/// Reads the kernel's form (/proc/self/mountinfo). Lines that are cut off or malformed are left out.
std::vector<Mount> ParseMountInfo(std::string_view text);

/// Reads the file system table's form (/etc/fstab).
std::vector<Mount> ParseFileSystemTable(std::string_view text);

/// Gives the mounts of this process, a later one covering an earlier one, and the user's gvfs mounts at the end.
std::vector<Mount> ReadMounts();

/// Gives the mounts that the system's table remembers.
std::vector<Mount> ReadRememberedMounts();

/// Finds the mount that a native absolute path lies on: the longest mount point that is a prefix, the last of equals.
/// Null when there is none.
Mount const* FindMountOfPath(std::vector<Mount> const& mounts, std::string_view nativePath);

/// Finds the network mount that leads to a server's names: the one that has most of them in front, without regard to
/// case. Null when there is none.
Mount const* FindMountOfServer(std::vector<Mount> const& mounts, std::string_view server,
                               std::vector<std::string> const& names);

/// Where the tables are; tests point them at files of their own.
struct MountTablePaths {
    std::string mountInfo = "/proc/self/mountinfo";
    std::string fileSystemTable = "/etc/fstab";
};
MountTablePaths& GetMountTablePaths();

/// Reads a small file of the system whole; empty when it cannot be read.
std::string ReadSystemFile(std::string const& path);

} // namespace platform
