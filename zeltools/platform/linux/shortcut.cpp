// SPDX-License-Identifier: MIT
#include "zeltools/platform/shortcut.h"

#include "zeltools/platform/environment.h"
#include "zeltools/platform/native_path.h"
#include "zeltools/platform/shell_link.h"
#include "zeltools/platform/shell_path.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace platform {

namespace {

// Far above what the format's parts can hold together in a link that a shell has written.
constexpr std::size_t LargestLinkBytes = 1 << 20;

bool ReadWholeFile(std::string const& native, std::vector<std::byte>& content) {
    // Without O_NONBLOCK a FIFO that has the name of a link would hang the caller.
    int const descriptor = open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return false;
    }
    std::array<std::byte, 4096> chunk;
    ssize_t size = 0;
    while (content.size() <= LargestLinkBytes &&
           ((size = read(descriptor, chunk.data(), chunk.size())) > 0 || (size < 0 && errno == EINTR))) {
        content.insert(content.end(), chunk.begin(), chunk.begin() + std::max<ssize_t>(size, 0));
    }
    close(descriptor);
    return size == 0;
}

bool ReadSymbolicLink(std::string const& native, std::string& target) {
    for (std::size_t size = 256; size <= LargestLinkBytes; size *= 2) {
        target.resize(size);
        ssize_t const length = readlink(native.c_str(), target.data(), size);
        if (length < 0) {
            return false;
        }
        if (static_cast<std::size_t>(length) < size) {
            target.resize(static_cast<std::size_t>(length));
            return true;
        }
    }
    return false;
}

// Joins a relative target to the folder that the link lies in.
std::u16string FromFolderOf(std::u16string_view path, std::u16string_view target) {
    if (!PathIsRelativeW(target)) {
        return std::u16string(target);
    }
    std::u16string joined(path.substr(0, PathDirectoryLength(path)));
    if (!joined.empty() && joined.back() != u'\\') {
        joined += u'\\';
    }
    joined += target;
    joined.push_back(u'\0'); // the canonical form can be one unit longer
    joined.resize(PathCanonicalize({joined.data(), joined.size() - 1}, joined.data()));
    return joined;
}

} // namespace

bool ReadShortcut(std::u16string_view path, std::u16string& target) {
    std::string native;
    if (!ToNativePath(path, native)) {
        return false;
    }
    std::string nativeTarget;
    if (ReadSymbolicLink(native, nativeTarget)) {
        target = FromFolderOf(path, FromNativePath(nativeTarget));
        return true;
    }
    std::vector<std::byte> content;
    ShellLink link;
    if (!ReadWholeFile(native, content) || !ParseShellLink(content, link)) {
        return false;
    }
    std::u16string found;
    if (!link.networkPath.empty()) {
        found = std::move(link.networkPath);
    } else if (!link.localPath.empty()) {
        found = std::move(link.localPath);
    } else if (!link.environmentPath.empty()) {
        found = ExpandEnvironmentStrings(link.environmentPath);
    } else if (!link.relativePath.empty()) {
        found = FromFolderOf(path, link.relativePath);
    } else {
        return false;
    }
    target = std::move(found);
    return true;
}

} // namespace platform
