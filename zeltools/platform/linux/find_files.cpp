// SPDX-License-Identifier: MIT
#include "zeltools/platform/find_files.h"

#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/find_pattern.h"
#include "zeltools/platform/linux/file_attributes.h"
#include "zeltools/platform/linux/system_errors.h"
#include "zeltools/platform/native_path.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace platform {

namespace {

/// An open search: the folder, and the names that are still to be given out.
struct Search {
    ~Search() {
        if (folder >= 0) {
            close(folder);
        }
    }

    int folder = -1;
    std::vector<char> names;              ///< Zero-terminated, one behind the other.
    std::vector<std::uint32_t> positions; ///< Of each name, in the order of the search.
    std::size_t next = 0;
    unsigned int endError = ErrorNoMoreFiles; ///< What the end of the names means.

    void Add(char const* name) {
        positions.push_back(static_cast<std::uint32_t>(names.size()));
        names.insert(names.end(), name, name + std::strlen(name) + 1);
    }
    char const* NameAt(std::size_t i) const { return names.data() + positions[i]; }
};

unsigned char OrderOf(char c) {
    auto const byte = static_cast<unsigned char>(c);
    return byte >= 'a' && byte <= 'z' ? static_cast<unsigned char>(byte - 'a' + 'A') : byte;
}

bool IsBefore(char const* a, char const* b) {
    char const* const startA = a;
    char const* const startB = b;
    while (*a != '\0' && OrderOf(*a) == OrderOf(*b)) {
        ++a;
        ++b;
    }
    return *a == *b ? std::strcmp(startA, startB) < 0 : OrderOf(*a) < OrderOf(*b);
}

bool IsDots(std::string_view name) {
    return name == "." || name == "..";
}

/// Reads the names of the open folder that match, `.` and `..` first, the others in order.
bool ReadNames(Search& search, FindPattern const& pattern, bool withDots) {
    int const copy = RetryInterrupted([&] { return openat(search.folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    std::unique_ptr<DIR, int (*)(DIR*)> const entries{copy < 0 ? nullptr : fdopendir(copy), closedir};
    if (entries == nullptr) {
        return FailWithErrno();
    }
    std::u16string wide;
    for (char const* const dots : {".", ".."}) {
        if (withDots && pattern.Matches(std::u16string(std::strlen(dots), u'.'))) {
            search.Add(dots);
        }
    }
    std::size_t const first = search.positions.size();
    for (;;) {
        errno = 0;
        dirent const* const entry = readdir(entries.get());
        if (entry == nullptr) {
            break;
        }
        if (IsDots(entry->d_name)) {
            continue;
        }
        wide.clear();
        AppendFromNativeName(entry->d_name, wide);
        if (pattern.Matches(wide)) {
            if (search.names.size() > UINT32_MAX - sizeof entry->d_name) {
                errno = EOVERFLOW;
                break;
            }
            search.Add(entry->d_name);
        }
    }
    if (errno != 0) { // what was read is given out first
        search.endError = ErrorFromErrno(errno);
    }
    std::sort(
        search.positions.begin() + static_cast<std::ptrdiff_t>(first), search.positions.end(),
        [&](std::uint32_t a, std::uint32_t b) { return IsBefore(search.names.data() + a, search.names.data() + b); });
    return true;
}

/// Gives the next entry that is still there. False at the end, with the last error.
bool GiveNext(Search& search, FindData& entry) {
    while (search.next < search.positions.size()) {
        char const* const name = search.NameAt(search.next++);
        FileAttributeData data;
        FindData given;
        if (!ReadFileAttributes(search.folder, name, DanglingLink::IsAnEntry, data)) {
            if (errno == ENOENT) { // deleted since the names were read
                continue;
            }
            given.error = ErrorFromErrno(errno);
            data.attributes = FileAttributeNormal;
        }
        AppendFromNativeName(name, given.name);
        given.attributes = data.attributes;
        given.creation = data.creation;
        given.lastAccess = data.lastAccess;
        given.lastWrite = data.lastWrite;
        given.sizeBytes = data.sizeBytes;
        entry = std::move(given);
        return true;
    }
    return FailWith(search.endError);
}

std::string NativeFolderOf(std::string const& native) {
    std::size_t const slash = native.find_last_of('/');
    return slash == std::string::npos ? "." : native.substr(0, slash + 1);
}

/// Opens a folder whose path may be longer than the 4,096 bytes that the system takes at once: such a path is walked
/// in pieces, each opened from the one before. -1 with errno.
int OpenFolder(std::string const& path, int flags) {
    int const whole = RetryInterrupted([&] { return open(path.c_str(), flags); });
    if (whole >= 0 || errno != ENAMETOOLONG) {
        return whole;
    }
    constexpr std::size_t pieceBytes = 2048; // any limit that holds several names of 255 bytes
    int folder = AT_FDCWD;
    for (std::size_t start = 0; start < path.size();) {
        bool const isLast = path.size() - start <= pieceBytes;
        std::size_t const end = isLast ? path.size() : path.rfind('/', start + pieceBytes) + 1;
        if (end <= start) { // one name is longer than a piece
            errno = ENAMETOOLONG;
        }
        std::string const piece = end <= start ? std::string() : path.substr(start, end - start);
        int const next = piece.empty() ? -1 : RetryInterrupted([&] {
            return openat(folder, piece.c_str(), isLast ? flags : O_PATH | O_DIRECTORY | O_CLOEXEC);
        });
        int const error = errno;
        if (folder != AT_FDCWD) {
            close(folder);
        }
        errno = error;
        if (next < 0) {
            return -1;
        }
        folder = next;
        start = path.find_first_not_of('/', end);
    }
    return folder;
}

/// Whether two paths that exist are the same folder: at a root, what is above it is itself.
bool IsRootFolder(int folder) {
    struct stat here {};
    struct stat above {};
    return fstat(folder, &here) == 0 && fstatat(folder, "..", &above, 0) == 0 && here.st_dev == above.st_dev &&
           here.st_ino == above.st_ino;
}

/// A drive or a share as such is a root too, wherever its folder lies.
bool IsRootText(std::u16string_view folder) {
    if (folder.size() >= 2 && folder[1] == u':') {
        return folder.find_first_not_of(u"\\/", 2) == folder.npos;
    }
    return folder.substr(0, 2) == u"\\\\" && std::count(folder.begin() + 2, folder.end(), u'\\') <= 2;
}

bool OpenSearch(std::u16string_view path, Search& search) {
    std::size_t const nameStart = path.find_last_of(u"\\/:") + 1; // npos + 1 is 0
    std::u16string_view const name = path.substr(nameStart);
    std::u16string_view const folder = path.substr(0, nameStart);
    bool const hasWildcards = FindPattern::HasWildcards(name);
    std::string native;
    if (name.empty()) {
        return FailWith(ErrorFileNotFound);
    }
    // A name without wildcards goes with its folder, since it may have to be found without its case.
    if (!ToNativePath(!hasWildcards ? path : folder.empty() ? std::u16string_view{u"."} : folder, native)) {
        return false;
    }
    std::string const nativeFolder = hasWildcards ? native : NativeFolderOf(native);
    search.folder = OpenFolder(nativeFolder, (hasWildcards ? O_RDONLY : O_PATH) | O_DIRECTORY | O_CLOEXEC);
    if (search.folder < 0) {
        return errno == ENOENT ? FailWith(ErrorPathNotFound) : FailWithErrno();
    }
    if (hasWildcards) {
        return ReadNames(search, FindPattern{name}, !IsRootText(folder) && !IsRootFolder(search.folder));
    }
    search.Add(native.c_str() + native.find_last_of('/') + 1);
    return true;
}

} // namespace

HANDLE FindFirstFileW(char16_t const* pattern, FindData& entry) {
    auto search = std::make_unique<Search>();
    if (!OpenSearch(pattern, *search)) {
        return InvalidHandle;
    }
    if (!GiveNext(*search, entry)) {
        if (search->endError == ErrorNoMoreFiles) {
            SetLastError(ErrorFileNotFound);
        }
        return InvalidHandle;
    }
    return search.release();
}

bool FindNextFileW(HANDLE search, FindData& entry) {
    if (search == nullptr || search == InvalidHandle) {
        return FailWith(ErrorInvalidHandle);
    }
    return GiveNext(*static_cast<Search*>(search), entry);
}

bool FindClose(HANDLE search) {
    if (search == nullptr || search == InvalidHandle) {
        return FailWith(ErrorInvalidHandle);
    }
    delete static_cast<Search*>(search);
    return true;
}

} // namespace platform
