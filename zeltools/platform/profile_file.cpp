// SPDX-License-Identifier: MIT
#include "zeltools/platform/profile_file.h"

#include "zeltools/platform/errors.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/files.h"
#include "zeltools/platform/folder_lock.h"
#include "zeltools/platform/known_folders.h"
#include "zeltools/platform/native_path.h"
#include "zeltools/platform/profile_text.h"

namespace platform {

namespace {

struct FileCloser {
    HANDLE file;
    ~FileCloser() {
        if (file != InvalidHandle) {
            CloseFile(file);
        }
    }
};

bool ReadProfile(char16_t const* path, std::string& bytes) {
    FileCloser const opened{
        CreateFileW(path, GenericRead, ShareRead | ShareWrite | ShareDelete, OpenExisting, FileFlagSequentialScan)};
    unsigned long long size = 0;
    if (opened.file == InvalidHandle || !GetFileSize(opened.file, size)) {
        return false;
    }
    if (size > MaxProfileBytes) {
        SetLastError(ErrorFileTooLarge);
        return false;
    }
    bytes.resize(static_cast<std::size_t>(size));
    std::size_t read = 0;
    if (!ReadFile(opened.file, bytes.data(), bytes.size(), read)) {
        return false;
    }
    bytes.resize(read);
    return true;
}

/// Writes beside the file, waits for the disk, and renames over it.
bool ReplaceFile(std::u16string const& path, std::string const& bytes) {
    std::u16string const beside = path + u".tmp";
    bool isWritten = false;
    {
        FileCloser const opened{CreateFileW(beside.c_str(), GenericWrite, 0, CreateAlways, FileAttributeNormal)};
        CopyPermissions(path.c_str(), beside.c_str()); // of the old file, where there is one
        std::size_t written = 0;
        isWritten = opened.file != InvalidHandle && WriteFile(opened.file, bytes.data(), bytes.size(), written) &&
                    FlushFileBuffers(opened.file);
        if (opened.file == InvalidHandle) {
            return false;
        }
    }
    if (isWritten && MoveFileExW(beside.c_str(), path.c_str(), MoveReplaceExisting)) {
        return true;
    }
    unsigned int const cause = GetLastError();
    DeleteFileW(beside.c_str());
    SetLastError(cause);
    return false;
}

std::u16string UserProfile(bool makeFolder) {
    std::u16string path = SHGetKnownFolderPath(KnownFolder::Configuration);
    for (char16_t const* const name : {u"", u"\\zeltools"}) {
        path += name;
        if (makeFolder && !path.empty()) {
            CreateDirectoryW(path.c_str());
        }
    }
    return path + u"\\profile.ini";
}

} // namespace

bool GetPrivateProfileStringW(std::u16string_view section, std::u16string_view entry, std::u16string& value,
                              char16_t const* path) {
    std::string bytes;
    if (!ReadProfile(path, bytes)) {
        return false;
    }
    if (!FindInProfile(bytes, section, entry, value)) {
        SetLastError(ErrorFileNotFound);
        return false;
    }
    return true;
}

bool WritePrivateProfileStringW(char16_t const* section, char16_t const* entry, char16_t const* value,
                                char16_t const* path) {
    if (!CanBeInProfile(section, entry, value)) {
        SetLastError(ErrorInvalidParameter);
        return false;
    }
    std::string native;
    if (!ToNativePath(path, native)) {
        return false;
    }
    std::size_t const slash = native.rfind('/');
    FolderLock const hold(slash == native.npos ? std::string{} : native.substr(0, slash + 1));
    std::string bytes;
    if (!ReadProfile(path, bytes) && GetLastError() != ErrorFileNotFound) {
        return false; // what cannot be read must not be replaced by less
    }
    return !ChangeProfile(bytes, section, entry, value) || ReplaceFile(path, bytes);
}

bool GetProfileStringW(std::u16string_view section, std::u16string_view entry, std::u16string& value) {
    return GetPrivateProfileStringW(section, entry, value, UserProfile(false).c_str());
}

bool WriteProfileStringW(char16_t const* section, char16_t const* entry, char16_t const* value) {
    return WritePrivateProfileStringW(section, entry, value, UserProfile(true).c_str());
}

} // namespace platform
