// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/file_changes.h"

#include "zeltools/platform/file_names.h"

bool fileDelete(CXTString<char16_t> const& path) {
    return platform::DeleteFileW(path);
}

bool fileCopy(CXTString<char16_t> const& from, CXTString<char16_t> const& to, bool failIfExists) {
    return platform::CopyFileW(from, to, failIfExists);
}

bool fileMove(CXTString<char16_t> const& from, CXTString<char16_t> const& to, bool failIfExists) {
    unsigned int const flags = failIfExists ? 0U : platform::MoveReplaceExisting | platform::MoveCopyAllowed;
    return platform::MoveFileExW(from, to, flags);
}

bool fileRename(CXTString<char16_t> const& from, CXTString<char16_t> const& to) {
    return platform::MoveFileW(from, to);
}
