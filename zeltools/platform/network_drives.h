// SPDX-License-Identifier: MIT
// What the toolkit asks about network drives and about the shares of this machine.
//
// A drive is a network drive when it leads to a share (`S=//server/share` in the drive table), to a folder of a mounted
// network file system, or to a folder that the system's file system table says belongs to one. It is connected
// when the mount is there. The functions return their error number, as the original ones do, and leave the
// thread's last error alone.
//
// Threads: any.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Gives the share behind a drive.
///
/// @param drive   `C:`, with or without a backslash.
/// @param remote  Receives `\\server\share` when the result is ErrorSuccess or ErrorConnectionUnavailable.
/// @return ErrorSuccess, connected; ErrorConnectionUnavailable, a network drive whose mount is absent;
///         ErrorNotConnected, a local drive; ErrorBadDevice, no drive of the table.
unsigned int WNetGetConnectionW(std::u16string_view drive, std::u16string& remote);

/// Gives the server form of a path on a drive, or of a rooted path on a network mount.
///
/// @return ErrorSuccess; ErrorConnectionUnavailable when the drive's mount is absent; ErrorNotConnected when the path
///         is local; ErrorBadDevice when the drive is not in the table.
unsigned int WNetGetUniversalNameW(std::u16string_view path, std::u16string& universal);

/// Unmounts a network drive's share, through `umount` or, for the user's virtual file systems, `gio mount -u`.
///
/// @param force  Also where files are open (a lazy unmount).
/// @return ErrorSuccess; ErrorNotConnected when there is no such connection; ErrorAccessDenied when the system refused;
///         ErrorNoNetwork when this machine has no such program.
unsigned int WNetCancelConnection2W(std::u16string_view drive, bool force);

inline constexpr unsigned int ConnectInteractive = 8; ///< The mount program may ask on the terminal.

/// Mounts the share that a drive leads to: by the system's file system table with `mount` where the share has an entry
/// there, else with `gio mount`. Waits at most 30 seconds.
///
/// @param drive   `S:`.
/// @param remote  `\\server\share`.
/// @param flags   ConnectInteractive or 0; other bits mean nothing here, since the drive table stays as it is.
/// @return ErrorSuccess when the share can be reached afterwards; ErrorNoNetOrBadPath when the program failed;
///         ErrorTimeout when it did not end; ErrorNoNetwork when this machine has no such program.
unsigned int WNetAddConnection3W(std::u16string_view drive, std::u16string_view remote, unsigned int flags);

/// A share that this machine offers to others.
struct ShareInfo {
    std::u16string name;
    std::u16string path; ///< Rooted toolkit form, without trailing backslash.
};

/// Lists the disk shares of this machine that its Samba configuration and its users' own shares state. Printers, the
/// per-user `homes` and paths made with substitutions are left out. No server, no shares.
std::vector<ShareInfo> NetShareEnum();

/// Gives the name of this machine in the network, without domain.
std::u16string GetComputerNameW();

} // namespace platform
