// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/directories.h"

#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/find_files.h"
#include "zeltools/platform/remove_tree.h"
#include "zeltools/platform/shell_path.h"

#include <climits>
#include <string_view>
#include <vector>

namespace {

bool MakeDirectory(CXTString<char16_t> const& path) {
    return platform::CreateDirectoryW(path) || platform::GetLastError() == platform::ErrorAlreadyExists;
}

/// Neither a server nor a share is made through a path.
bool IsServerOrShare(CXTString<char16_t> path) {
    fileRemoveSlashTermination(path);
    return platform::PathIsUNCServerW(detail::View(path)) || platform::PathIsUNCServerShareW(detail::View(path));
}

bool MakeDirectories(CXTString<char16_t> const& path) {
    CXArray<CXTString<char16_t>> way; // deepest first
    for (CXTString<char16_t> folder = path;;) {
        way.Add(folder);
        if (!fileGetParentDirectory(folder)) {
            break;
        }
    }
    CXArray<CXTString<char16_t>> made;
    for (int i = way.GetSize() - 1; i >= 0; --i) {
        if (fileExists(way[i]) || IsServerOrShare(way[i])) {
            continue;
        }
        if (platform::CreateDirectoryW(way[i])) {
            made.Add(way[i]);
            continue;
        }
        unsigned int const error = platform::GetLastError();
        if (error == platform::ErrorAlreadyExists && fileDirectoryExists(way[i])) { // somebody else was faster
            continue;
        }
        for (int k = made.GetSize() - 1; k >= 0; --k) {
            platform::RemoveDirectoryW(made[k]);
        }
        platform::SetLastError(error);
        return false;
    }
    return true;
}

bool IsDots(std::u16string_view name) {
    return name == u"." || name == u"..";
}

} // namespace

bool fileCreateDirectory(CXTString<char16_t> const& path, bool recursive) {
    if (path.IsEmpty()) {
        return false;
    }
    CXTString<char16_t> folder = path;
    fileSlashTerminate(folder);
    return fileDirectoryExists(folder) || (recursive ? MakeDirectories(folder) : MakeDirectory(folder));
}

bool fileRemoveDirectory(CXTString<char16_t> const& path, bool recursive, bool keepListed,
                         CXArray<CXTString<char16_t>>* keep) {
    if (!fileDirectoryExists(path)) {
        return false;
    }
    if (!recursive) {
        return platform::RemoveDirectoryW(path);
    }
    CHashTable<CXTString<char16_t>> extensions;
    for (int i = 0; keepListed && keep != nullptr && i < keep->GetSize(); ++i) {
        CXTString<char16_t> extension = (*keep)[i];
        extensions.Insert(extension.MakeLower());
    }
    return platform::RemoveTree(path, [&](std::u16string_view name) {
        CXTString<char16_t> extension = fileGetExtension(detail::Text(name));
        return extensions.Find(extension.MakeLower()) != nullptr;
    });
}

int fileGetFileCount(CXTString<char16_t> const& directory, bool recursive) {
    int count = 0;
    std::vector<CXTString<char16_t>> folders;
    if (fileIsSlashTerminated(directory)) {
        folders.push_back(directory);
    }
    while (!folders.empty()) {
        CXTString<char16_t> const folder = std::move(folders.back());
        folders.pop_back();
        platform::FindData entry;
        platform::HANDLE const search = platform::FindFirstFileW(folder + u"*", entry);
        bool hasEntry = search != platform::InvalidHandle;
        for (; hasEntry; hasEntry = platform::FindNextFileW(search, entry)) {
            if (IsDots(entry.name)) {
                continue;
            }
            count += count < INT_MAX ? 1 : 0;
            bool const isFolder = (entry.attributes & platform::FileAttributeDirectory) != 0;
            bool const isLink = (entry.attributes & platform::FileAttributeReparsePoint) != 0;
            if (recursive && isFolder && !isLink) {
                folders.push_back(detail::Join(detail::View(folder), entry.name, u"\\"));
            }
        }
        if (search != platform::InvalidHandle) {
            platform::FindClose(search);
        }
    }
    return count;
}
