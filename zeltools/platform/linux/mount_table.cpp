// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/mount_table.h"

#include "zeltools/platform/linux/name_case.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace platform {

namespace {

std::string_view CutField(std::string_view& text, std::string_view separators) {
    text.remove_prefix(std::min(text.find_first_not_of(separators), text.size()));
    std::size_t const end = std::min(text.find_first_of(separators), text.size());
    std::string_view const field = text.substr(0, end);
    text.remove_prefix(end);
    return field;
}

std::string_view CutLine(std::string_view& text) {
    std::size_t const end = std::min(text.find('\n'), text.size());
    std::string_view const line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

bool IsDigit(char c, int base) {
    return base == 8 ? c >= '0' && c <= '7'
                     : (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Undoes escapes of one mark and a fixed number of digits: \040 of the mount tables, %20 of gvfs names.
std::string Unescape(std::string_view text, char mark, std::size_t digits, int base) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string const number{text.substr(i + 1, digits)};
        bool const isEscape = text[i] == mark && number.size() == digits &&
                              std::all_of(number.begin(), number.end(), [&](char c) { return IsDigit(c, base); });
        plain += isEscape ? static_cast<char>(std::strtol(number.c_str(), nullptr, base)) : text[i];
        i += isEscape ? digits : 0;
    }
    return plain;
}

std::string UnescapeTable(std::string_view field) {
    return Unescape(field, '\\', 3, 8);
}

std::string WithoutTrailingSlash(std::string path) {
    while (!path.empty() && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

void AppendNames(std::string_view path, std::vector<std::string>& names) {
    for (std::string_view name = CutField(path, "/"); !name.empty(); name = CutField(path, "/")) {
        names.emplace_back(name);
    }
}

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

/// Works out server and names of a network file system from its source.
void ReadServerForm(Mount& mount) {
    std::string source = mount.source;
    std::string server;
    std::string path;
    if (IsOneOf(mount.fileSystem, {"cifs", "smb3", "smbfs"})) {
        std::replace(source.begin(), source.end(), '\\', '/');
        if (source.rfind("//", 0) != 0) {
            return;
        }
        std::size_t const slash = std::min(source.find('/', 2), source.size());
        server = source.substr(2, slash - 2);
        path = source.substr(slash);
    } else if (IsOneOf(mount.fileSystem, {"nfs", "nfs4", "fuse.sshfs", "sshfs"})) {
        bool const hasBrackets = source.find("[") < source.find(":"); // an IPv6 address has colons of its own
        std::size_t const colon = source.find(':', hasBrackets ? std::min(source.find(']'), source.size()) : 0);
        if (colon == std::string::npos) {
            return;
        }
        server = source.substr(0, colon);
        path = source.substr(colon + 1);
        server.erase(0, server.find('@') + 1); // npos + 1 is 0: without a user nothing goes
        std::erase_if(server, [](char c) { return c == '[' || c == ']'; });
    }
    mount.server = std::move(server);
    mount.names.clear();
    AppendNames(path, mount.names);
}

/// The value of `key=` in a gvfs folder name such as "smb-share:server=nas,share=my%20pictures".
std::string GvfsValue(std::string_view mountName, std::string_view key) {
    mountName.remove_prefix(std::min(mountName.find(':') + 1, mountName.size()));
    for (std::string_view field = CutField(mountName, ","); !field.empty(); field = CutField(mountName, ",")) {
        if (field.substr(0, key.size()) == key && field.substr(key.size(), 1) == "=") {
            return Unescape(field.substr(key.size() + 1), '%', 2, 16);
        }
    }
    return {};
}

void AppendGvfsMounts(std::vector<Mount>& mounts) {
    char const* const runtimeFolder = std::getenv("XDG_RUNTIME_DIR");
    if (runtimeFolder == nullptr || runtimeFolder[0] != '/') {
        return;
    }
    std::string const folder = WithoutTrailingSlash(runtimeFolder) + "/gvfs";
    std::unique_ptr<DIR, int (*)(DIR*)> const entries{opendir(folder.c_str()), closedir};
    while (dirent const* const entry = entries ? readdir(entries.get()) : nullptr) {
        std::string_view const name = entry->d_name;
        Mount mount;
        if (name.rfind("smb-share:", 0) == 0) {
            mount.server = GvfsValue(name, "server");
            mount.names = {GvfsValue(name, "share")};
            if (mount.names.front().empty()) {
                continue;
            }
        } else if (name.rfind("sftp:", 0) == 0) {
            mount.server = GvfsValue(name, "host");
        }
        if (mount.IsNetwork()) {
            mount.mountPoint = folder + '/' + entry->d_name;
            mount.fileSystem = "fuse.gvfsd-fuse";
            mount.source = name;
            mounts.push_back(std::move(mount));
        }
    }
}

} // namespace

std::vector<Mount> ParseMountInfo(std::string_view text) {
    std::vector<Mount> mounts;
    while (!text.empty()) {
        // 36 35 98:0 /root /mount/point rw,noatime shared:1 - ext3 /dev/root rw
        std::string_view line = CutLine(text);
        std::array<std::string_view, 5> head; // identifier, parent, device, root, mount point
        std::generate(head.begin(), head.end(), [&] { return CutField(line, " "); });
        std::size_t const separator = line.find(" - ");
        if (separator == std::string_view::npos) {
            continue;
        }
        line.remove_prefix(separator + 3);
        Mount mount;
        mount.fileSystem = CutField(line, " ");
        mount.source = UnescapeTable(CutField(line, " "));
        if (head[4].empty() || head[4][0] != '/' || mount.source.empty()) {
            continue;
        }
        mount.device = head[2];
        mount.mountPoint = WithoutTrailingSlash(UnescapeTable(head[4]));
        ReadServerForm(mount);
        // A folder of the share may be what is mounted. Some kernels say so in the source as well.
        std::string const root = WithoutTrailingSlash(UnescapeTable(head[3]));
        bool const isInSource = mount.source.size() >= root.size() &&
                                mount.source.compare(mount.source.size() - root.size(), root.size(), root) == 0;
        if (mount.IsNetwork() && !isInSource) {
            AppendNames(root, mount.names);
        }
        mounts.push_back(std::move(mount));
    }
    return mounts;
}

std::vector<Mount> ParseFileSystemTable(std::string_view text) {
    std::vector<Mount> mounts;
    while (!text.empty()) {
        std::string_view line = CutLine(text);
        std::string_view const source = CutField(line, " \t");
        std::string_view const mountPoint = CutField(line, " \t");
        std::string_view const fileSystem = CutField(line, " \t");
        if (source.empty() || source[0] == '#' || mountPoint.empty() || mountPoint[0] != '/' || fileSystem.empty()) {
            continue;
        }
        Mount mount;
        mount.source = UnescapeTable(source);
        mount.mountPoint = WithoutTrailingSlash(UnescapeTable(mountPoint));
        mount.fileSystem = fileSystem;
        ReadServerForm(mount);
        mounts.push_back(std::move(mount));
    }
    return mounts;
}

std::vector<Mount> ReadMounts() {
    std::vector<Mount> mounts = ParseMountInfo(ReadSystemFile(GetMountTablePaths().mountInfo));
    AppendGvfsMounts(mounts);
    return mounts;
}

std::vector<Mount> ReadRememberedMounts() {
    return ParseFileSystemTable(ReadSystemFile(GetMountTablePaths().fileSystemTable));
}

Mount const* FindMountOfPath(std::vector<Mount> const& mounts, std::string_view nativePath) {
    Mount const* found = nullptr;
    for (Mount const& mount : mounts) {
        std::string const& point = mount.mountPoint;
        bool const isPrefix = nativePath.substr(0, point.size()) == point &&
                              (nativePath.size() == point.size() || nativePath[point.size()] == '/');
        if (isPrefix && (found == nullptr || point.size() >= found->mountPoint.size())) {
            found = &mount;
        }
    }
    return found;
}

Mount const* FindMountOfServer(std::vector<Mount> const& mounts, std::string_view server,
                               std::vector<std::string> const& names) {
    Mount const* found = nullptr;
    for (Mount const& mount : mounts) {
        if (!mount.IsNetwork() || mount.names.size() > names.size() || !IsSameNameWithoutCase(mount.server, server) ||
            !std::equal(mount.names.begin(), mount.names.end(), names.begin(), IsSameNameWithoutCase)) {
            continue;
        }
        if (found == nullptr || mount.names.size() >= found->names.size()) {
            found = &mount;
        }
    }
    return found;
}

MountTablePaths& GetMountTablePaths() {
    static MountTablePaths paths;
    return paths;
}

std::string ReadSystemFile(std::string const& path) {
    std::string text;
    int const file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file >= 0) {
        char block[16384];
        for (ssize_t got = read(file, block, sizeof block); got > 0; got = read(file, block, sizeof block)) {
            text.append(block, static_cast<std::size_t>(got));
        }
        close(file);
    }
    return text;
}

} // namespace platform
