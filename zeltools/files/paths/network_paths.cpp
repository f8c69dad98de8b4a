// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/network_paths.h"

#include "zeltools/files/paths/path_parts.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/platform/drives.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/native_path.h"
#include "zeltools/platform/network_drives.h"
#include "zeltools/platform/shell_path.h"

namespace {

constexpr std::size_t MaxComputerName = 32;
constexpr unsigned int RemoteDriveBit = 4;

/// A name as the server's own program, which knows it in the ANSI code page, would give it back.
CXTString<char16_t> ThroughAnsi(std::u16string const& text) {
    return static_cast<char16_t const*>(XCA2W(XCW2A(text.c_str())));
}

/// The rooted form of a directory, with its trailing backslash: what shares are stated in.
CXTString<char16_t> RootedDirectory(std::u16string_view directory) {
    std::string native;
    bool const isOnDrive = directory.size() >= 2 && directory[1] == u':';
    if (!isOnDrive || !platform::ToNativePath(directory, native)) {
        return detail::Text(directory);
    }
    CXTString<char16_t> rooted = detail::Text(platform::FromNativePath(native));
    fileSlashTerminate(rooted);
    return rooted;
}

/// Finds the share of this machine that holds a directory, the deepest if there are several.
bool FindShareOf(CXTString<char16_t> const& directory, CXTString<char16_t>& name, int& prefixLength) {
    CXTString<char16_t> lowDirectory = directory;
    lowDirectory.MakeLower();
    prefixLength = 0;
    for (platform::ShareInfo const& share : platform::NetShareEnum()) {
        CXTString<char16_t> prefix = ThroughAnsi(share.path);
        prefix.MakeLower();
        fileSlashTerminate(prefix);
        if (prefix.GetLength() > prefixLength && detail::View(lowDirectory).starts_with(detail::View(prefix))) {
            prefixLength = prefix.GetLength();
            name = ThroughAnsi(share.name);
        }
    }
    return prefixLength > 0;
}

} // namespace

bool fileConvertToUNCPath(CXTString<char16_t> const& path, CXTString<char16_t>& out) {
    CXTString<char16_t> const original = path; // `out` may be `path`
    out = original;
    if (platform::PathIsUNCW(detail::View(original))) {
        return true;
    }
    detail::PathParts const parts(original);
    if (parts.GetRoot().empty()) {
        return false;
    }
    CXTString<char16_t> const fileName = detail::Join(parts.GetName(), parts.GetExtension());
    // A rooted path's root is every disk's at once: there the mount that the directory lies on is what a drive is.
    bool const isDrive = parts.GetRoot().size() > 1;
    CXTString<char16_t> const root = detail::Text(isDrive ? parts.GetRoot() : parts.GetPath());
    if ((platform::GetDriveTypeW(root) & RemoteDriveBit) != 0) {
        std::u16string universal;
        if (platform::WNetGetUniversalNameW(detail::View(root), universal) == platform::ErrorSuccess) {
            CXTString<char16_t> share = detail::Text(universal);
            fileSlashTerminate(share);
            out = share + detail::Join(isDrive ? parts.GetPathWithoutRoot() : std::u16string_view{}) + fileName;
            return true;
        }
    }
    CXTString<char16_t> const directory = RootedDirectory(parts.GetPath());
    CXTString<char16_t> shareName;
    int prefixLength = 0;
    std::u16string const computer = platform::GetComputerNameW();
    if (!computer.empty() && computer.size() < MaxComputerName && FindShareOf(directory, shareName, prefixLength)) {
        // The remainder keeps the backslash that ended the share's own path.
        out.Format(u"\\\\%s\\%s%s%s", computer.c_str(), static_cast<char16_t const*>(shareName),
                   static_cast<char16_t const*>(directory.Mid(prefixLength - 1)),
                   static_cast<char16_t const*>(fileName));
    }
    return platform::PathIsUNCW(detail::View(out));
}

MappedDriveInfo fileIsOnMappedDrive(CXTString<char16_t> const& path, bool reconnect, bool silent, HWND /*owner*/) {
    if (path.Find(u':') < 0) {
        return MappedDriveNone;
    }
    CXTString<char16_t> drive = fileGetRoot(path);
    fileRemoveSlashTermination(drive);
    std::u16string remote;
    unsigned int error = platform::WNetGetConnectionW(detail::View(drive), remote);
    if (error == platform::ErrorSuccess) {
        return MappedDriveConnected;
    }
    if (error != platform::ErrorConnectionUnavailable) {
        return MappedDriveNone;
    }
    if (!reconnect) {
        return MappedDriveUnavailable;
    }
    error = platform::WNetCancelConnection2W(detail::View(drive), true);
    if (error != platform::ErrorSuccess && error != platform::ErrorNotConnected) {
        return MappedDriveUnavailable;
    }
    unsigned int const flags = silent ? 0U : platform::ConnectInteractive;
    error = platform::WNetAddConnection3W(detail::View(drive), remote, flags);
    return error == platform::ErrorSuccess ? MappedDriveConnected : MappedDriveUnavailable;
}
