// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_queries.h"

#include "zeltools/files/paths/attribute_summary_private.h"
#include "zeltools/files/paths/guarded_call_private.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/find_files.h"

namespace {

bool ReadAttributes(CXTString<char16_t> const& path, unsigned int* timeOut, platform::FileAttributeData& data) {
    detail::GuardedCall guard(path, timeOut);
    return guard.Run([&] { return platform::GetFileAttributesExW(path, data); });
}

} // namespace

bool fileExists(CXTString<char16_t> const& path, unsigned int* timeOut) {
    platform::FileAttributeData data;
    return ReadAttributes(path, timeOut, data);
}

bool fileDirectoryExists(CXTString<char16_t> const& path, unsigned int* timeOut) {
    platform::FileAttributeData data;
    return ReadAttributes(path, timeOut, data) &&
           (detail::SummarizeAttributes(data.attributes) & XFILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool fileIsDirectory(CXTString<char16_t> const& path, bool checkDisk, unsigned int* timeOut) {
    if (path.IsEmpty()) {
        return false;
    }
    return checkDisk ? fileDirectoryExists(path, timeOut) : fileIsSlashTerminated(path);
}

bool filePathContainMatchingFile(CXTString<char16_t> const& directory, CXTString<char16_t> const& pattern,
                                 xFileFindInfo* found, unsigned int* timeOut) {
    CXTString<char16_t> const path = directory + pattern;
    platform::FindData entry;
    detail::GuardedCall guard(path, timeOut);
    platform::HANDLE const search = guard.Run([&] { return platform::FindFirstFileW(path, entry); });
    if (search == platform::InvalidHandle) {
        return false;
    }
    platform::FindClose(search);
    if (found != nullptr) {
        found->name = detail::Text(entry.name);
        found->attributes = detail::SummarizeAttributes(entry.attributes);
        found->sizeBytes = entry.sizeBytes;
    }
    return true;
}

unsigned long long fileGetSize(CXTString<char16_t> const& path) {
    platform::FileAttributeData data;
    return platform::GetFileAttributesExW(path, data) ? data.sizeBytes : ~0ULL;
}
