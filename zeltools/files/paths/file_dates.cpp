// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/file_dates.h"

#include "zeltools/platform/clock.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/file_names.h"

namespace {

using Field = FILETIME platform::FileAttributeData::*;

bool GetDate(CXTString<char16_t> const& path, Field field, CXTime& date) {
    platform::FileAttributeData data;
    if (!platform::GetFileAttributesExW(path, data)) {
        return false;
    }
    date = platform::FileTimeToSeconds(data.*field);
    return true;
}

/// Opens the file for its attributes alone, which no other open file can forbid, and sets one of its times.
bool SetDate(CXTString<char16_t> const& path, bool isCreation, CXTime const& date) {
    FILETIME time{};
    if (!platform::SecondsToFileTime(date.GetTime(), &time)) {
        platform::SetLastError(platform::ErrorInvalidParameter);
        return false;
    }
    platform::HANDLE const file = platform::CreateFileW(
        path, platform::AccessWriteAttributes, platform::ShareRead | platform::ShareWrite | platform::ShareDelete,
        platform::OpenExisting, platform::FileFlagBackupSemantics);
    if (file == platform::InvalidHandle) {
        return false;
    }
    bool const isSet = platform::SetFileTime(file, isCreation ? &time : nullptr, nullptr, isCreation ? nullptr : &time);
    unsigned int const error = platform::GetLastError();
    platform::CloseFile(file);
    platform::SetLastError(error);
    return isSet;
}

} // namespace

bool fileGetCreationDate(CXTString<char16_t> const& path, CXTime& date) {
    return GetDate(path, &platform::FileAttributeData::creation, date);
}

bool fileSetCreationDate(CXTString<char16_t> const& path, CXTime const& date) {
    return SetDate(path, true, date);
}

bool fileGetLastWriteDate(CXTString<char16_t> const& path, CXTime& date) {
    return GetDate(path, &platform::FileAttributeData::lastWrite, date);
}

bool fileSetLastWriteDate(CXTString<char16_t> const& path, CXTime const& date) {
    return SetDate(path, false, date);
}
