// SPDX-License-Identifier: MIT
// The process-wide record of who the host is, behind the functions of application_path.h, product_name.h and
// application_data.h.

#pragma once

#include "zeltools/foundation/xstring.h"

#include <atomic>
#include <memory>

namespace detail {

/// Every field but the last is guarded by ApplicationLock. An empty cached path means that it is not computed yet.
struct ApplicationIdentity {
    std::unique_ptr<CXTString<char16_t>> applicationPath; ///< Null until needed.
    std::unique_ptr<CXTString<char16_t>> productName;     ///< Null until needed.
    unsigned int versionNumber = 0;

    CXTString<char16_t> commonData;
    CXTString<char16_t> commonDataWithoutVersion;
    CXTString<char16_t> userData;
    CXTString<char16_t> userDataWithoutVersion;
    CXTString<char16_t> commonPreferences;
    CXTString<char16_t> userPreferences;
    CXTString<char16_t> preferencesFile;

    std::atomic<bool> preferencesSaving = true; ///< Read without the lock.
};

/// The one record. It outlives every static object, since threads may ask for a path to the very end.
ApplicationIdentity& Identity();

/// Frees application path and product name, as the close with AppCloseFreeTables does. The cached paths stay.
void FreeApplicationIdentity();

} // namespace detail
