// SPDX-License-Identifier: MIT
// The parameters of parsers, kept from one run to the next.
#include "zeltools/files/file_io.h"
#include "zeltools/files/io_preferences_private.h"
#include "zeltools/foundation/application_preferences.h"
#include "zeltools/foundation/four_cc.h"

namespace {

/// The key under which a record carries its own id.
constexpr unsigned int IdKey = FourCC("IOCL");

/// The second key of a record.
unsigned int DirectionKey(bool loading) {
    return loading ? 1 : 0;
}

} // namespace

CXTString<char16_t> CFileIo::GetPreferencesFilePath() {
    return detail::GetIoPreferencesPath();
}

bool CFileIo::SaveIoParameters(bool loading, CCustomData const& data, unsigned int id) {
    if (!IsPreferencesSavingEnabled() || IsFlagSet(IoFlagNoParameters)) {
        return false;
    }
    CCustomData record = data;
    record.SetUInt(IdKey, id);
    return record.SaveToPrefs(GetPreferencesFilePath(), id, DirectionKey(loading));
}

bool CFileIo::LoadIoParameters(bool loading, CCustomData& data, unsigned int id) {
    if (!IsPreferencesSavingEnabled() || IsFlagSet(IoFlagNoParameters)) {
        return false;
    }
    return data.LoadFromPrefs(GetPreferencesFilePath(), id, DirectionKey(loading), true);
}
