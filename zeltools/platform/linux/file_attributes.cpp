// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/file_attributes.h"

#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/linux/file_times.h"
#include "zeltools/platform/linux/system_errors.h"
#include "zeltools/platform/native_path.h"

#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>

namespace platform {

namespace {

constexpr unsigned int WriteBits = 0222;
constexpr unsigned int AskedFields = STATX_BASIC_STATS | STATX_BTIME;

FILETIME TimeOf(statx_timestamp const& time) {
    return ToFileTime(time.tv_sec, time.tv_nsec);
}

bool IsHiddenName(std::string_view path) {
    path = path.substr(0, path.find_last_not_of('/') + 1);
    std::string_view const name = path.substr(path.find_last_of('/') + 1);
    return name.size() > 1 && name[0] == '.' && name != "..";
}

int AskStatus(int folder, char const* name, int flags, struct statx& status) {
    return RetryInterrupted([&] { return statx(folder, name, flags | AT_NO_AUTOMOUNT, AskedFields, &status); });
}

} // namespace

bool ReadFileAttributes(int folder, char const* name, DanglingLink dangling, FileAttributeData& data) {
    struct statx status {};
    if (AskStatus(folder, name, AT_SYMLINK_NOFOLLOW, status) != 0) {
        return false;
    }
    unsigned int attributes = 0;
    if (S_ISLNK(status.stx_mode)) {
        attributes = FileAttributeReparsePoint;
        struct statx target {};
        if (AskStatus(folder, name, 0, target) == 0) {
            status = target;
        } else if (dangling == DanglingLink::IsMissing || (errno != ENOENT && errno != ELOOP && errno != ENOTDIR)) {
            return false;
        }
    }
    bool const isDirectory = S_ISDIR(status.stx_mode);
    attributes |= isDirectory ? FileAttributeDirectory : 0U;
    attributes |= S_ISREG(status.stx_mode) && (status.stx_mode & WriteBits) == 0 ? FileAttributeReadOnly : 0U;
    attributes |= IsHiddenName(name) ? FileAttributeHidden : 0U;
    data.attributes = attributes == 0 ? FileAttributeNormal : attributes;
    data.creation = TimeOf((status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime : status.stx_ctime);
    data.lastAccess = TimeOf(status.stx_atime);
    data.lastWrite = TimeOf(status.stx_mtime);
    data.sizeBytes = isDirectory ? 0 : status.stx_size;
    return true;
}

bool GetFileAttributesExW(char16_t const* path, FileAttributeData& data) {
    std::string native;
    if (!ToNativePath(path, native)) {
        return false;
    }
    return ReadFileAttributes(AT_FDCWD, native.c_str(), DanglingLink::IsMissing, data) || FailWithErrno(native);
}

unsigned int GetFileAttributesW(char16_t const* path) {
    FileAttributeData data;
    return GetFileAttributesExW(path, data) ? data.attributes : InvalidFileAttributes;
}

} // namespace platform
