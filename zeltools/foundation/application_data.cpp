// SPDX-License-Identifier: MIT
#include "zeltools/foundation/application_data.h"

#include "zeltools/files/paths/directories.h"
#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/foundation/application_product_name.h"
#include "zeltools/foundation/log_file_private.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/known_folders.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/xsingle_lock.h"

namespace {

using WideString = CXTString<char16_t>;

constexpr int versionsToLookBack = 3;

/// One of the two folders, with its version and without; empty until it is asked for.
struct DataPaths {
    WideString withVersion;
    WideString withoutVersion;

    WideString& For(bool leaveVersionOut) { return leaveVersionOut ? withoutVersion : withVersion; }
};

/// Guarded by ApplicationLock; never destroyed, so that code that runs at exit may ask too.
struct Folders {
    DataPaths common;
    DataPaths user;
};

Folders& TheFolders() {
    static Folders& folders = *new Folders;
    return folders;
}

WideString ProductFolder(platform::KnownFolder base, bool withoutVersion, char16_t const* folderName) {
    WideString path(platform::SHGetKnownFolderPath(base).c_str());
    fileSlashTerminate(path);
    path += u"Quenby\\";
    path += folderName ? WideString(folderName) : GetInternalProductName(!withoutVersion);
    fileSlashTerminate(path);
    return path;
}

/// Makes the folder, if need be, and a folder inside that it takes away again: only that shows whether one may write.
bool IsWritable(WideString const& path) {
    WideString trial(path);
    trial += u"temp\\";
    for (int number = 1; fileExists(trial); ++number) {
        trial = path;
        trial.AppendFormat(u"temp%d\\", number);
    }
    if (!fileCreateDirectory(trial, true)) {
        return false;
    }
    platform::RemoveDirectoryW(trial);
    return true;
}

} // namespace

CXTString<char16_t> GetCommonApplicationDataPath(bool withoutVersion, char16_t const* folderName) {
    CXSingleLock const hold(&ApplicationLock(), true);
    WideString& cached = TheFolders().common.For(withoutVersion);
    if (!folderName && !cached.IsEmpty()) {
        return cached;
    }
    WideString path = ProductFolder(platform::KnownFolder::ProgramData, withoutVersion, folderName);
    if (!IsWritable(path)) {
        path = GetUserApplicationDataPath(folderName != nullptr, nullptr);
    }
    if (!folderName) {
        cached = path;
    }
    return path;
}

CXTString<char16_t> GetUserApplicationDataPath(bool withoutVersion, char16_t const* folderName) {
    CXSingleLock const hold(&ApplicationLock(), true);
    WideString& cached = TheFolders().user.For(withoutVersion);
    if (!folderName && !cached.IsEmpty()) {
        return cached;
    }
    WideString const path = ProductFolder(platform::KnownFolder::LocalAppData, withoutVersion, folderName);
    fileCreateDirectory(path, true);
    if (!folderName) {
        cached = path;
    }
    return path;
}

bool CopyFileFromPreviousVersionIfMissing(CXTString<char16_t> const& path) {
    if (fileExists(path)) {
        return false;
    }
    detail::TraceToLog(u"InitApplication: %s file is missing. Get back from previous version\n",
                       static_cast<char16_t const*>(path));
    int const version = detail::ProductVersion();
    WideString present;
    present.Format(u"%d", version);
    for (int back = 1; back <= versionsToLookBack; ++back) {
        WideString former;
        former.Format(u"%lld", static_cast<long long>(version) - back);
        WideString formerPath(path);
        if (formerPath.Replace(present, former) == 0) {
            return false;
        }
        if (fileExists(formerPath)) {
            platform::CopyFileW(formerPath, path, true);
            return true;
        }
    }
    return false;
}

namespace detail {

void ForgetVersionedDataPaths() {
    CXSingleLock const hold(&ApplicationLock(), true);
    TheFolders().common.withVersion.Empty();
    TheFolders().user.withVersion.Empty();
}

} // namespace detail
