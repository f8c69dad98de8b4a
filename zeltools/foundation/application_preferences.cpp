// SPDX-License-Identifier: MIT
#include "zeltools/foundation/application_preferences.h"

#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/foundation/application_data.h"
#include "zeltools/foundation/application_product_name.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/xsingle_lock.h"

#include <atomic>

namespace {

using WideString = CXTString<char16_t>;

/// Each is empty until it is set or asked for. Guarded by ApplicationLock; never destroyed, so that code that runs at
/// exit may ask too.
struct PreferencesPaths {
    WideString common;
    WideString user;
    WideString file;
};

PreferencesPaths& Paths() {
    static PreferencesPaths& paths = *new PreferencesPaths;
    return paths;
}

std::atomic<bool> savingEnabled{true};

void SetPath(WideString& stored, WideString const& newPath) {
    CXSingleLock const hold(&ApplicationLock(), true);
    stored = newPath;
    if (!stored.IsEmpty()) {
        fileSlashTerminate(stored);
    }
}

WideString GetPath(WideString& stored, bool create, WideString (*productFolder)(bool, char16_t const*)) {
    CXSingleLock const hold(&ApplicationLock(), true);
    if (stored.IsEmpty()) {
        stored = productFolder(false, nullptr);
        stored += u"Preferences\\";
        if (create && !fileDirectoryExists(stored)) {
            platform::CreateDirectoryW(stored);
        }
    }
    return stored;
}

} // namespace

void SetCommonPreferencesPath(CXTString<char16_t> const& path) {
    SetPath(Paths().common, path);
}

void SetUserPreferencesPath(CXTString<char16_t> const& path) {
    SetPath(Paths().user, path);
}

CXTString<char16_t> GetCommonPreferencesPath(bool create) {
    return GetPath(Paths().common, create, &GetCommonApplicationDataPath);
}

CXTString<char16_t> GetUserPreferencesPath(bool create) {
    return GetPath(Paths().user, create, &GetUserApplicationDataPath);
}

CXTString<char16_t> GetPreferencesFile() {
    CXSingleLock const hold(&ApplicationLock(), true);
    WideString& file = Paths().file;
    if (file.IsEmpty()) {
        file = GetUserPreferencesPath(true);
        file += GetInternalProductName(false);
        file += u".prefs";
    }
    return file;
}

void EnablePreferencesSaving(bool enable) {
    savingEnabled.store(enable);
}

bool IsPreferencesSavingEnabled() {
    return savingEnabled.load();
}

namespace detail {

void ForgetPreferencesPaths() {
    CXSingleLock const hold(&ApplicationLock(), true);
    Paths().common.Empty();
    Paths().user.Empty();
    Paths().file.Empty();
}

} // namespace detail
