// SPDX-License-Identifier: MIT
#include "zeltools/platform/remove_tree.h"

#include "zeltools/platform/errors.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/linux/share_modes.h"
#include "zeltools/platform/linux/system_errors.h"
#include "zeltools/platform/native_path.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr int OpenFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// A folder on the way from the top of the tree to where the removal is. Each one on the way holds a descriptor, so the
/// number that a process may have bounds the depth; below it, opening fails as any other failure does.
struct Level {
    explicit Level(DIR* opened, std::string itsName) : entries(opened), name(std::move(itsName)) {}
    ~Level() {
        if (entries != nullptr) {
            closedir(entries);
        }
    }
    Level(Level&& other) noexcept
        : entries(std::exchange(other.entries, nullptr)), name(std::move(other.name)),
          folders(std::move(other.folders)) {}
    Level& operator=(Level&&) = delete;

    int Descriptor() const { return dirfd(entries); }

    DIR* entries;
    std::string name;                 ///< In the folder above.
    std::vector<std::string> folders; ///< Found and not yet entered.
};

class TreeRemoval {
public:
    explicit TreeRemoval(std::function<bool(std::u16string_view)> const& keepFile) : keep(keepFile) {}

    /// Empties the folder that a descriptor stands for; the descriptor is closed.
    void Run(int descriptor) {
        Enter(descriptor, {});
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.folders.empty()) {
                Leave();
                continue;
            }
            std::string const name = std::move(level.folders.back());
            level.folders.pop_back();
            Enter(openat(level.Descriptor(), name.c_str(), OpenFolderFlags), name);
        }
    }

    unsigned int FirstError() const { return firstError; }

private:
    void Fail(unsigned int error) { firstError = firstError == ErrorSuccess ? error : firstError; }

    void Enter(int descriptor, std::string const& name) {
        DIR* const entries = descriptor < 0 ? nullptr : fdopendir(descriptor);
        if (entries == nullptr) {
            int const cause = errno;
            if (descriptor >= 0) {
                close(descriptor);
            }
            if (cause != ENOENT) {
                Fail(ErrorFromErrno(cause));
            }
            return;
        }
        levels.emplace_back(entries, name);
        RemoveFiles(levels.back());
    }

    void Leave() {
        std::string const name = levels.back().name;
        levels.pop_back();
        if (!levels.empty() && unlinkat(levels.back().Descriptor(), name.c_str(), AT_REMOVEDIR) != 0 &&
            errno != ENOENT) {
            Fail(errno == EEXIST ? ErrorDirectoryNotEmpty : ErrorFromErrno(errno));
        }
    }

    void RemoveFiles(Level& level) {
        for (;;) {
            errno = 0;
            dirent const* const entry = readdir(level.entries);
            if (entry == nullptr) {
                if (errno != 0) {
                    Fail(ErrorFromErrno(errno));
                }
                return;
            }
            if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
                RemoveEntry(level, entry->d_name);
            }
        }
    }

    void RemoveEntry(Level& level, char const* name) {
        struct stat status {};
        if (fstatat(level.Descriptor(), name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
            if (errno != ENOENT) {
                Fail(ErrorFromErrno(errno));
            }
            return;
        }
        if (S_ISDIR(status.st_mode)) {
            level.folders.emplace_back(name);
            return;
        }
        if (!S_ISLNK(status.st_mode) && IsSpared(name)) {
            return;
        }
        if (S_ISREG(status.st_mode) && IsUseDenied(level.Descriptor(), name, ShareDelete)) {
            Fail(ErrorSharingViolation);
        } else if (unlinkat(level.Descriptor(), name, 0) != 0 && errno != ENOENT) {
            Fail(ErrorFromErrno(errno));
        }
    }

    bool IsSpared(char const* name) {
        std::u16string text;
        AppendFromNativeName(name, text);
        return keep(text);
    }

    std::function<bool(std::u16string_view)> const& keep;
    std::vector<Level> levels; ///< From the top down.
    unsigned int firstError = ErrorSuccess;
};

} // namespace

bool RemoveTree(char16_t const* path, std::function<bool(std::u16string_view name)> const& keep) {
    std::string native;
    if (!ToNativePath(path, native)) {
        return false;
    }
    while (native.size() > 1 && native.back() == '/') { // with it, a link would mean what it leads to
        native.pop_back();
    }
    int const folder = open(native.c_str(), OpenFolderFlags);
    if (folder < 0) {
        // A link: RemoveDirectoryW takes it away alone, and says what is wrong with anything else.
        return errno == ELOOP || errno == ENOTDIR ? RemoveDirectoryW(path) : FailWithErrno(native);
    }
    TreeRemoval removal{keep};
    removal.Run(folder);
    bool const isGone = RemoveDirectoryW(path);
    if (removal.FirstError() != ErrorSuccess) {
        return FailWith(removal.FirstError());
    }
    return isGone;
}

} // namespace platform
