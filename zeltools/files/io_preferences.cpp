// SPDX-License-Identifier: MIT
#include "zeltools/files/io_preferences_private.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/foundation/application_preferences.h"

namespace detail {

CXTString<char16_t> GetIoPreferencesPath() {
    return fileRemoveExtension(GetPreferencesFile()) + u"io.prefs";
}

} // namespace detail
