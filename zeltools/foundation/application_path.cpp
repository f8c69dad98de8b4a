// SPDX-License-Identifier: MIT
#include "zeltools/foundation/application_path.h"

#include "zeltools/files/paths/absolute_paths.h"
#include "zeltools/files/paths/path_kind.h"
#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/platform/modules.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/xsingle_lock.h"

namespace {

using WideString = CXTString<char16_t>;

/// Empty until it is set or asked for. Guarded by ApplicationLock; never destroyed, so that code that runs at exit may
/// ask too.
WideString& StoredPath() {
    static WideString& path = *new WideString;
    return path;
}

WideString RunningProgram() {
    return WideString(platform::GetModuleFileNameW(nullptr).c_str());
}

} // namespace

void SetApplicationPath(CXTString<char16_t> const& newPath) {
    WideString path(newPath);
    fileConvertSlash(path);
    if (fileIsPathRelative(path)) {
        path = fileMakeAbsolutePath(fileStripName(RunningProgram()), path, false);
    }
    if (!fileIsDirectory(fileStripName(path), true)) {
        return;
    }
    if (fileIsDirectory(path, true)) {
        fileSlashTerminate(path);
    }
    if (fileStripPath(path, false).IsEmpty()) {
        path += fileStripPath(RunningProgram(), false);
    }
    CXSingleLock const hold(&ApplicationLock(), true);
    StoredPath() = path;
}

CXTString<char16_t> GetApplicationPath(bool directoryOnly) {
    CXSingleLock const hold(&ApplicationLock(), true);
    if (StoredPath().IsEmpty()) {
        StoredPath() = RunningProgram();
    }
    return directoryOnly ? fileStripName(StoredPath()) : StoredPath();
}

CXTString<char16_t> GetApplicationName(bool removeExtension) {
    return fileStripPath(GetApplicationPath(false), removeExtension);
}

namespace detail {

void ForgetApplicationPath() {
    CXSingleLock const hold(&ApplicationLock(), true);
    StoredPath().Empty();
}

} // namespace detail
