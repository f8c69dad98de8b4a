// SPDX-License-Identifier: MIT
#include "zeltools/persistence/xfile_find.h"

#include "zeltools/files/paths/absolute_paths.h"
#include "zeltools/files/paths/attribute_summary_private.h"
#include "zeltools/files/paths/current_directory.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/foundation/characters.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/find_files.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CXFileFind, CXObject, RuntimeClassNotSerializable)

namespace {

bool EndsInBackslash(CXTString<char16_t> const& text) {
    return !text.IsEmpty() && text[text.GetLength() - 1] == u'\\';
}

/// The folder that a pattern searches.
CXTString<char16_t> FolderOf(CXTString<char16_t> const& pattern) {
    CXTString<char16_t> path = fileMakeAbsolutePath(fileGetCurrentDirectory(), pattern, false);
    if (EndsInBackslash(path) && !EndsInBackslash(pattern)) { // the name of a folder, which is the entry itself
        path.SetLength(static_cast<std::size_t>(path.GetLength()) - 1);
    }
    return fileStripName(path);
}

} // namespace

CXFileFind::~CXFileFind() {
    Close();
}

bool CXFileFind::FindFile(char16_t const* pattern) {
    constexpr std::size_t PathBound = 260;
    Close();
    if (xStrLen(pattern) >= PathBound) {
        platform::SetLastError(platform::ErrorBadArguments);
        return false;
    }
    CXTString<char16_t> const wanted(pattern ? pattern : u"*.*");
    platform::FindData data;
    void* const search = platform::FindFirstFileW(wanted, data);
    if (search == platform::InvalidHandle) {
        return false;
    }
    findHandle = search;
    nextEntry = {data.name.c_str(), detail::SummarizeAttributes(data.attributes), data.sizeBytes};
    root = FolderOf(wanted);
    return true;
}

bool CXFileFind::FindNextFileW() {
    if (!findHandle) {
        return false;
    }
    currentEntry = nextEntry;
    platform::FindData data;
    if (!platform::FindNextFileW(findHandle, data)) {
        return false;
    }
    nextEntry = {data.name.c_str(), detail::SummarizeAttributes(data.attributes), data.sizeBytes};
    return true;
}

void CXFileFind::Close() {
    if (findHandle) {
        platform::FindClose(findHandle);
    }
    findHandle = nullptr;
    root.Empty();
    currentEntry = {};
    nextEntry = {};
}

CXTString<char16_t> CXFileFind::GetFileName() const {
    return currentEntry.name;
}

CXTString<char16_t> CXFileFind::GetFilePath() const {
    if (!findHandle) {
        return {};
    }
    CXTString<char16_t> path = root + currentEntry.name;
    if (IsDirectory() && !EndsInBackslash(path)) {
        path += u'\\';
    }
    return path;
}

unsigned long long CXFileFind::GetFileLength() const {
    return currentEntry.sizeBytes;
}

bool CXFileFind::IsDots() const {
    return IsDirectory() && (currentEntry.name == u"." || currentEntry.name == u"..");
}

bool CXFileFind::AreFileAttributesSet(unsigned int mask, bool all) const {
    if (!findHandle) {
        return false;
    }
    unsigned int const set = currentEntry.attributes & mask;
    return all ? set == mask : set != 0;
}
