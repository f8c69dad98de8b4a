// SPDX-License-Identifier: MIT
#include "zeltools/platform/drives.h"

#include "zeltools/platform/current_directory.h"
#include "zeltools/platform/environment.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/mount_table.h"
#include "zeltools/platform/linux/path_names.h"
#include "zeltools/platform/native_path.h"
#include "zeltools/platform/network_drives.h"
#include "zeltools/platform/registry.h"
#include "zeltools/platform/registry_values.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <mutex>
#include <vector>

namespace platform {

namespace {

constexpr std::size_t LetterCount = 26;
using DriveTable = std::array<std::string, LetterCount>; // "/mnt/c", "//server/share", "/" for the root; empty: none

/// Enters a drive, unless the letter is none or the target no absolute folder.
void AddDrive(DriveTable& table, char16_t driveLetter, std::string target) {
    char16_t const letter = driveLetter & ~0x20;
    if (letter < u'A' || letter > u'Z' || target.empty() || target[0] != '/') {
        return;
    }
    while (target.size() > 1 && target.back() == '/') {
        target.pop_back();
    }
    table[static_cast<std::size_t>(letter - u'A')] = std::move(target);
}

DriveTable ParseDrives(std::string_view text) {
    DriveTable table;
    while (!text.empty()) {
        std::size_t const end = std::min(text.find(';'), text.size());
        std::string_view const entry = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (entry.size() >= 3 && entry[1] == '=') {
            AddDrive(table, static_cast<unsigned char>(entry[0]), std::string{entry.substr(2)});
        }
    }
    return table;
}

DriveTable ReadDrivesFromRegistry() {
    DriveTable table;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, u"Software\\ZelTools\\Drives", KeyQueryValue, &key) != ErrorSuccess) {
        return table;
    }
    std::u16string name(MaxValueName + 1, u'\0');
    auto length = static_cast<unsigned int>(name.size());
    for (unsigned int index = 0;
         RegEnumValueW(key, index, name.data(), &length, nullptr, nullptr, nullptr) == ErrorSuccess; ++index) {
        unsigned int type = 0;
        std::string bytes;
        std::string target;
        if (length == 1 && ReadRegistryValue(key, name.c_str(), type, bytes) == ErrorSuccess &&
            (type == RegString || type == RegExpandString)) {
            std::u16string const text = TextOfValue(bytes, false);
            if (ToNativeName(type == RegExpandString ? ExpandEnvironmentStrings(text) : text, target)) {
                AddDrive(table, name[0], std::move(target));
            }
        }
        length = static_cast<unsigned int>(name.size());
    }
    RegCloseKey(key);
    return table;
}

/// The table of the environment's present text, or without one of the registry; read anew when either has changed.
DriveTable GetDriveTable() {
    static std::mutex mutex; // guards the three below; nothing is taken under it
    static std::string parsedText;
    static unsigned long long readVersion = 0; // of the registry; 0 for the table of `parsedText`
    static DriveTable table;

    char const* const variable = std::getenv("ZELTOOLS_DRIVES");
    std::string_view const text = variable == nullptr ? "" : variable;
    unsigned long long const version = variable == nullptr ? GetRegistryVersion() : 0;
    {
        std::lock_guard const lock{mutex};
        if (version == readVersion && version != ~0ULL && (version != 0 || text == parsedText)) {
            return table;
        }
    }
    DriveTable fresh = version == 0 ? ParseDrives(text) : ReadDrivesFromRegistry();
    std::lock_guard const lock{mutex};
    readVersion = version;
    parsedText = text;
    table = fresh;
    return fresh;
}

bool IsDriveLetter(char16_t letter) {
    return (letter >= u'A' && letter <= u'Z') || (letter >= u'a' && letter <= u'z');
}

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

/// Whether the kernel calls the disk behind a device removable; a partition answers for its disk.
bool IsRemovable(std::string const& device) {
    std::string const folder = "/sys/dev/block/" + device;
    std::string answer = ReadSystemFile(folder + "/removable");
    if (answer.empty()) {
        answer = ReadSystemFile(folder + "/../removable");
    }
    return answer.substr(0, 1) == "1";
}

DriveType TypeOfMount(Mount const& mount) {
    std::string const& fileSystem = mount.fileSystem;
    if (mount.IsNetwork() || IsOneOf(fileSystem, {"cifs", "smb3", "smbfs", "nfs", "nfs4", "9p", "afs", "ceph", "davfs",
                                                  "fuse.davfs", "fuse.sshfs", "fuse.gvfsd-fuse", "fuse.rclone",
                                                  "fuse.glusterfs", "fuse.curlftpfs", "ncpfs", "lustre"})) {
        return DriveRemote;
    }
    if (IsOneOf(fileSystem, {"iso9660", "udf"})) {
        return DriveCDRom;
    }
    if (IsOneOf(fileSystem, {"tmpfs", "ramfs"})) {
        return DriveRamDisk;
    }
    return IsRemovable(mount.device) ? DriveRemovable : DriveFixed;
}

DriveType TypeOfServerPath(std::vector<Mount> const& mounts, std::vector<std::string> names) {
    if (names.empty()) {
        return DriveNoRootDir;
    }
    std::string const server = std::move(names.front());
    names.erase(names.begin());
    return FindMountOfServer(mounts, server, names) == nullptr ? DriveNoRootDir : DriveRemote;
}

} // namespace

bool GetDriveTarget(char16_t letter, std::string& target) {
    if (!IsDriveLetter(letter)) {
        return false;
    }
    std::string found = GetDriveTable()[static_cast<std::size_t>((letter & ~0x20) - u'A')];
    if (found.empty()) {
        return false;
    }
    target = found == "/" ? std::string{} : std::move(found);
    return true;
}

std::u16string GetDriveLetters() {
    DriveTable const table = GetDriveTable();
    std::u16string letters;
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (!table[i].empty()) {
            letters += static_cast<char16_t>(u'A' + i);
        }
    }
    return letters;
}

DriveType GetDriveTypeW(char16_t const* path) {
    std::u16string currentDirectory;
    if (path == nullptr) {
        if (!GetCurrentDirectoryW(currentDirectory)) {
            return DriveUnknown;
        }
        path = currentDirectory.c_str();
    }
    std::u16string_view const text{path};
    std::vector<Mount> const mounts = ReadMounts();
    std::string native;
    if (text.size() >= 2 && text[1] == u':') {
        if (!GetDriveTarget(text[0], native)) {
            return DriveNoRootDir;
        }
        if (native.rfind("//", 0) == 0) {
            std::vector<std::string> names;
            SplitNativeNames(native, names);
            return TypeOfServerPath(mounts, std::move(names));
        }
    } else if (text.substr(0, 2) == u"\\\\") {
        std::vector<std::string> names;
        return SplitNames(text, 0, names) ? TypeOfServerPath(mounts, std::move(names)) : DriveNoRootDir;
    } else if (text.empty() || (text[0] != u'\\' && text[0] != u'/') || !ToNativeName(text, native)) {
        return DriveNoRootDir;
    }
    while (!native.empty() && native.back() == '/') {
        native.pop_back();
    }
    Mount const* const mount = FindMountOfPath(mounts, native);
    return mount == nullptr ? DriveUnknown : TypeOfMount(*mount);
}

bool IsNetworkDrive(char16_t letter) {
    char16_t const drive[] = {letter, u':', u'\0'};
    std::u16string remote;
    return GetDriveTypeW(drive) == DriveRemote || WNetGetConnectionW(drive, remote) == ErrorConnectionUnavailable;
}

} // namespace platform
