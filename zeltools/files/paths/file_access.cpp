// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/file_access.h"

#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/executables.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/shell_path.h"
#include "zeltools/platform/shortcut.h"

bool fileCheckAccess(CXTString<char16_t> const& path, unsigned int flags) {
    bool create = (flags & FileAccessCreate) != 0;
    if (create && fileExists(path)) {
        create = false;
        flags |= FileAccessRead | FileAccessWrite;
    } else if (create) {
        flags |= FileAccessWrite;
    }
    unsigned int const access = ((flags & FileAccessRead) != 0 ? platform::GenericRead : 0U) |
                                ((flags & FileAccessWrite) != 0 ? platform::GenericWrite : 0U);
    unsigned int const share = ((flags & FileAccessShareRead) != 0 ? platform::ShareRead : 0U) |
                               ((flags & FileAccessShareWrite) != 0 ? platform::ShareWrite : 0U);
    unsigned int const error = platform::NtCreateFile(path, access, share, create);
    if (error != platform::ErrorSuccess) {
        platform::SetLastError(error);
    }
    return error == platform::ErrorSuccess;
}

bool fileIsExecutable(CXTString<char16_t> const& path) {
    return platform::SHGetExecutableType(path) != platform::ExecutableNone;
}

bool fileIsShortcut(CXTString<char16_t> const& path, CXTString<char16_t>* target) {
    std::u16string_view const text = detail::View(path);
    // Asking a server for a shortcut of the share's name would wait for it in vain.
    bool const isShare =
        !platform::PathIsRootW(text) && fileIsSlashTerminated(path) && platform::PathIsUNCServerShareW(text);
    std::u16string found;
    bool const isShortcut = !isShare && platform::ReadShortcut(text, found);
    if (target != nullptr) {
        *target = isShortcut ? detail::Text(found) : path;
    }
    return isShortcut;
}
